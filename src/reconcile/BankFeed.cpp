#include "reconcile/BankFeed.h"

#include "base/Modes.h"

#include <QFile>
#include <QSaveFile>

namespace pelkor::reconcile {

QString bankInternalName(int iBank)
{
    const QStringList& names = bankNames();
    return iBank >= 0 && iBank < names.size() ? names[iBank] : QString();
}

QString feedTable(int iBank, bool isSimulate)
{
    if (isSimulate)
        return QStringLiteral("demoOsh");
    const QString t = bankInternalName(iBank) + QStringLiteral("Osh");
    if (t == QLatin1String("poalimBusinessesOsh") || t == QLatin1String("massadOsh") ||
        t == QLatin1String("yahavOsh"))
        return QStringLiteral("poalimOsh");
    return t;
}

QString feedFilePath(int iBank, bool isSimulate, const QString& tempPath, const QString& programDir)
{
    if (isSimulate)
        return programDir + QStringLiteral("/demo.mdb");
    return tempPath + QStringLiteral("atl613o%1.dll").arg(iBank);
}

bool textArrivesInScreenOrder(int iBank)
{
    const QString n = bankInternalName(iBank);
    return n == QLatin1String("igud") || n == QLatin1String("leumi") || n == QLatin1String("arab");
}

QString accountRowsQuery(int iBank, bool isSimulate, const QString& account)
{
    QString q = QStringLiteral("SELECT * FROM %1 WHERE trim(accountNum)='%2' ORDER BY [date],")
                    .arg(feedTable(iBank, isSimulate), account);
    const QString n = bankInternalName(iBank);
    if (!isSimulate && (n == QLatin1String("mercantile") || n == QLatin1String("discount")))
        q += QStringLiteral("[part] DESC,");
    q += QStringLiteral("transactionID");
    if (!isSimulate && textArrivesInScreenOrder(iBank))
        q += QStringLiteral(" DESC");
    return q;
}

void BankFeed::openCnNew(const QString& path)
{
    cnNew.open(path, store::Connection::OpenMode::ReadWrite);
}

void BankFeed::closeCnNew()
{
    cnNew.close();
}

void killDB(const QString& feedPath, bool isSimulate, bool chkSimulate)
{
    if (chkSimulate || isSimulate || feedPath.isEmpty())
        return;
    QFile::remove(feedPath);
    QFile::remove(feedPath + QStringLiteral("-wal"));
    QFile::remove(feedPath + QStringLiteral("-shm"));
}

void writeOkFile(const QString& tempPath)
{
    QSaveFile f(tempPath + QStringLiteral("ok"));
    if (!f.open(QIODevice::WriteOnly))
        return;
    f.write("ok ok\r\n");
    f.commit();
}

} // namespace pelkor::reconcile
