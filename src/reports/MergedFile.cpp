#include "reports/MergedFile.h"

#include "base/Format.h"
#include "reports/CompareReport.h"
#include "reports/PeriodSums.h"
#include "seams/store/Connection.h"
#include "seams/store/StoreError.h"

#include <QDir>
#include <QFile>

namespace pelkor::reports {

const char mergedKindsLargerWarning[] = "הסיווגים בקבצים אינם זהים, ולכן יבוצע סיכום לפי רשימת הסיווגים הגדולה ביותר";
const char mergedKindsFirstWarning[] = "הסיווגים בקבצים אינם זהים, ולכן יבוצע סיכום לפי רשימת הסיווגים הראשונה";
const char mergedTypesDifferWarning[] = "הסוגים בקבצים אינם זהים, ולכן לא יוצג סיכום לפי סוגים";

namespace {

QString quotedPath(const QString& path) { return QLatin1Char('"') + path + QLatin1Char('"'); }

} // namespace

QString buildMergedFile(const QString& templatePath, const QString& tempFolder, const QString& title,
                        const std::vector<MergedMember>& members)
{
    QDir().mkpath(tempFolder);
    const QString building = QDir(tempFolder).filePath(QStringLiteral("tempPelkorMerged.pkr"));
    const QString mergedFile = QDir(tempFolder).filePath(title + QStringLiteral(".pkr"));
    QFile::remove(building);
    if (!QFile::copy(templatePath, building))
        throw store::StoreError(store::StoreError::Kind::Open, QStringLiteral("the template could not be copied"), templatePath);
    // A copy keeps the template's read-only mode where it had one.
    QFile(building).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    try {
        QString unionText;
        for (size_t f = 0; f < members.size(); ++f) {
            store::Connection source;
            source.open(members[f].path);
            const QString table = QStringLiteral("pelkor%1").arg(f);
            source.execute(QStringLiteral("SELECT * INTO %1 IN %2 FROM pelkor").arg(table, quotedPath(building)));
            if (f > 0)
                unionText += QStringLiteral(" UNION ");
            unionText += QStringLiteral("SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM ")
                + table;
        }
        store::Connection cn;
        cn.open(building);
        store::Transaction t(cn);
        for (size_t f = 0; f < members.size(); ++f)
            cn.execute(QStringLiteral("UPDATE pelkor%1 SET ZEE='%1'").arg(f));
        cn.execute(QStringLiteral("SELECT * INTO pelkor FROM (") + unionText + QLatin1Char(')'));
        for (size_t f = 0; f < members.size(); ++f)
            cn.execute(QStringLiteral("DROP TABLE pelkor%1").arg(f));
        t.commit();
        cn.close();
    } catch (...) {
        QFile::remove(building);
        throw;
    }
    QFile::remove(mergedFile);
    if (!QFile::rename(building, mergedFile)) {
        QFile::remove(building);
        throw store::StoreError(store::StoreError::Kind::Open, QStringLiteral("the merged file could not be named"), mergedFile);
    }
    return mergedFile;
}

bool updateMergedBanksData(const QString& mergedFile, const std::vector<MergedMember>& members, bool mustWarn,
                           const std::function<void(const QString&)>& warn)
{
    store::Connection cn;
    cn.open(mergedFile);
    {
        store::Transaction t(cn);
        for (const char* table : {"mergedBanks", "Category", "Types", "TypesCategories"})
            cn.execute(QStringLiteral("DELETE FROM ") + QLatin1String(table));
        for (size_t i = 0; i < members.size(); ++i)
            cn.execute(QStringLiteral("INSERT INTO mergedBanks([index],fileName,conv) VALUES(%1,'%2',%3)")
                           .arg(i)
                           .arg(fixString(members[i].shortName))
                           .arg(QString::number(members[i].rate, 'f', 4)));
        t.commit();
    }
    cn.close();
    if (members.empty())
        return false;

    // selectKindList: the longest list; among lists of one length the first.
    std::vector<store::Connection> sources(members.size());
    for (size_t i = 0; i < members.size(); ++i)
        sources[i].open(members[i].path);
    KindNames kinds = readKindNames(sources[0]);
    size_t chosen = 0;
    bool sizeDiffers = false, contentDiffers = false;
    for (size_t i = 1; i < members.size(); ++i) {
        const KindNames other = readKindNames(sources[i]);
        if (other.nCategories() != kinds.nCategories()) {
            sizeDiffers = true;
            if (other.nCategories() > kinds.nCategories()) {
                kinds = other;
                chosen = i;
            }
        } else if (other.ids != kinds.ids || other.descs != kinds.descs) {
            contentDiffers = true;
        }
    }
    if (mustWarn && sizeDiffers)
        warn(QString::fromUtf8(mergedKindsLargerWarning));
    else if (mustWarn && contentDiffers)
        warn(QString::fromUtf8(mergedKindsFirstWarning));
    sources[chosen].execute(QStringLiteral("INSERT INTO Category IN %1 SELECT * FROM Category").arg(quotedPath(mergedFile)));

    // areTypesIdentical: against the first file, in order.
    TypeTotals first;
    readTypeCatalogue(sources[0], first);
    for (size_t i = 1; i < members.size(); ++i) {
        TypeTotals other;
        readTypeCatalogue(sources[i], other);
        if (!typesAgree(first, other)) {
            if (mustWarn)
                warn(QString::fromUtf8(mergedTypesDifferWarning));
            return false;
        }
    }
    sources[0].execute(QStringLiteral("INSERT INTO Types IN %1 SELECT * FROM Types").arg(quotedPath(mergedFile)));
    sources[0].execute(QStringLiteral("INSERT INTO TypesCategories IN %1 SELECT * FROM TypesCategories").arg(quotedPath(mergedFile)));
    return true;
}

} // namespace pelkor::reports
