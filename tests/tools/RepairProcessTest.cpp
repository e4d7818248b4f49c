// The repair run of the real program, headless: scripted dialogs answer,
// the transcript tells what the user saw, the file shows what was repaired.
#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"

namespace {

QStringList promptsOf(const QString& transcript)
{
    QFile f(transcript);
    QStringList out;
    if (!f.open(QIODevice::ReadOnly))
        return out;
    for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        out << line.split(QLatin1Char('\t')).mid(1).join(QLatin1Char('|'));
    return out;
}

} // namespace

TEST(RepairProcess, DamagedFileIsRepairedAndReported)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("my shop.pkr"));
    {
        pelkor::store::Connection cn;
        cn.open(file, pelkor::store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(pelkor::schema::oldDataFileScript());
        pelkor::schema::fillStandardCatalogue(cn);
        cn.executeRaw(QStringLiteral(
            "INSERT INTO Defaults VALUES (NULL, 0);"
            "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
            "(1,'+1','2025-03-01',NULL,'a',10,0,1,' ','ללא צבע'),"
            "(2,'+77','2025-03-02','2','b',10,0,1,' ','ללא צבע'),"
            "(3,'-1','2025-03-03','3','c',0,4,2,' ','newline אדום');"));
    }
    const QString rules = dir.filePath(QStringLiteral("rules"));
    {
        QFile f(rules);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QStringLiteral("# the file, then the zeroing date\nבחר קובץ => %1\nfrmNoIpus => optDate=1;txtDate=05/03/2025\n")
                    .arg(file).toUtf8());
    }
    const QString transcript = dir.filePath(QStringLiteral("transcript.tsv"));
    QProcess p;
    auto env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("PELKOR_HOME"), dir.filePath(QStringLiteral("home")));
    env.insert(QStringLiteral("PELKOR_DIALOGS"), rules);
    env.insert(QStringLiteral("PELKOR_TRANSCRIPT"), transcript);
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(PELKOR_BINARY_DIR "/prjPelkor"), {});
    ASSERT_TRUE(p.waitForFinished(60000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();

    const QStringList got = promptsOf(transcript);
    ASSERT_EQ(got.size(), 7) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(got[0], QStringLiteral("start||" PELKOR_BINARY_DIR "/prjPelkor|"));
    EXPECT_EQ(got[1], QStringLiteral("open|בחר קובץ|פלקור (*.pkr)|*.pkr|") + file);
    EXPECT_EQ(got[2], QStringLiteral("frmNoIpus|שורת איפוס|מערכת הפלקור לא מצאה שורת איפוס בקובץ הפלקור שבחרת. "
                                     "יש לבחור תאריך משוער בו נעשה איפוס אחרון מול חשבון הבנק.|optDate=1;txtDate=05/03/2025"));
    EXPECT_EQ(got[3], QStringLiteral("msgbox|תאריך איפוס|תאריך האיפוס נקבע ל-03/03/2025,\\nמכיוון שאין שורות בתאריך 05/03/2025|OK"));
    EXPECT_EQ(got[4], QStringLiteral("msgbox|סיווג לא חוקי|נמצאה שורה ללא סיווג חוקי. השורה תמחק מהפלקור\\n77+|OK"));
    EXPECT_EQ(got[5], QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK"));
    EXPECT_EQ(got[6], QStringLiteral("exit||0|"));

    pelkor::store::Connection cn;
    cn.open(file);
    auto rs = cn.execute(QStringLiteral("SELECT id, confirm, zee, memo FROM pelkor ORDER BY id"));
    QStringList lines;
    for (long r = 0; r < rs.recordCount(); ++r)
        lines << QStringLiteral("%1:%2:%3:%4").arg(rs.at(r, 0).toString(), rs.at(r, 1).toString(),
                                                   rs.at(r, 2).toString(), rs.at(r, 3).toString());
    EXPECT_EQ(lines.join(QLatin1Char(',')), QStringLiteral("1: : :ללא צבע,3:3:ZZZZZZZZZZ:אדום"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT isAuto FROM Defaults")).at(0, 0).toString(), QStringLiteral("1"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT detail FROM invoiceCategs")).at(0, 0).toString(), QStringLiteral(" "));
    // The settings were written back in the data directory.
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("home/pelkor.ini"))));
}
