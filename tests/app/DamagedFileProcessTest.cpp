// Files that are not what they seem, met by the real program: a file that
// is no database, a ledger cut short, a ledger on a read-only file system,
// sums no number can hold, a zeroing mark on a line the load deletes, and
// kinds the old delete could not match. Each says what it is in Hebrew,
// leaves the file as it was where nothing was meant to change, and leaves
// nothing beside it.
#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/mount.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

QByteArray hashOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256) : QByteArray();
}

QStringList besides(const QString& dir)
{
    return QDir(dir).entryList({QStringLiteral("*.pkr*")}, QDir::Files, QDir::Name);
}

// A working run on file with the rules; its exit code (it ends by itself
// when the file is refused) or -1 when it is still up after its window
// came (then it is killed).
int openRun(Program& run, const QString& file, const QString& rules)
{
    if (!run.traceOn() || !run.setRules(rules) || !run.start({QStringLiteral("open"), file}))
        return -2;
    return run.finish(60000);
}

QString lines(int n)
{
    QString sql = QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES ");
    for (int i = 1; i <= n; ++i)
        sql += QStringLiteral("(%1,'+1','2025-03-%2','%1','שורה מספר %1 עם פירוט ארוך למדי',%1,0,1,'%3','ללא צבע')%4")
                   .arg(i)
                   .arg(1 + i % 28, 2, 10, QLatin1Char('0'))
                   .arg(i == 1 ? QStringLiteral("ZZZZZZZZZZ") : QStringLiteral(" "))
                   .arg(i == n ? QLatin1Char(';') : QLatin1Char(','));
    return sql;
}

} // namespace

TEST(DamagedFile, AFileThatIsNoDatabaseIsRefusedAndLeftAlone)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("date,detail,sum\n01/03/2025,rent,100\n");
    }
    const QByteArray before = hashOf(file);
    Program run(dir.path());
    EXPECT_EQ(openRun(run, file, QString()), 1);
    EXPECT_TRUE(run.prompts().contains(
        QStringLiteral("msgbox|פלקור|הקובץ \"\u2068%1\u2069\" אינו קובץ פלקור: אין בו נתונים שפלקור יודע לקרוא.|OK").arg(file)))
        << run.prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(hashOf(file), before);
    EXPECT_EQ(besides(dir.path()), QStringList{QStringLiteral("shop.pkr")});
}

// A ledger cut short (a copy that stopped half way): it is not called
// "not a ledger"; it is left untouched, and what can be read of it is
// saved beside it and opened, when the user says so.
TEST(DamagedFile, ACutLedgerIsOfferedASavedCopy)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    for (const bool yes : {false, true}) {
        SCOPED_TRACE(yes ? "save" : "leave");
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("shop.pkr"));
        makeLedger(file, lines(3000));
        {
            store::Connection cn;
            cn.open(file);
            cn.executeRaw(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE); PRAGMA journal_mode=DELETE;"));
        }
        QFile f(file);
        ASSERT_TRUE(f.resize(f.size() * 6 / 10));
        const QByteArray before = hashOf(file);

        Program run(dir.path());
        const QString rules = QStringLiteral("קובץ פגום => %1\n").arg(yes ? "Yes" : "No");
        if (!yes) {
            EXPECT_EQ(openRun(run, file, rules), 1);
            EXPECT_TRUE(run.prompts().contains(QStringLiteral("msgbox|פלקור|הקובץ \"\u2068shop.pkr\u2069\" פגום ולא נפתח. הוא נשאר כפי שהיה.|OK")))
                << run.prompts().join(QLatin1Char('\n')).toStdString();
            EXPECT_EQ(besides(dir.path()), QStringList{QStringLiteral("shop.pkr")});
        } else {
            ASSERT_TRUE(run.traceOn() && run.setRules(rules) && run.start({QStringLiteral("open"), file}));
            ASSERT_TRUE(run.waitForWindow(QStringLiteral("mode 1"))) << run.prompts().join(QLatin1Char('\n')).toStdString();
            const QString saved = dir.filePath(QStringLiteral("shop - משוחזר.pkr"));
            const QStringList got = run.prompts();
            EXPECT_TRUE(got.filter(QStringLiteral("window|frmMain|פלקור - shop - משוחזר | mode 1")).size() == 1)
                << got.join(QLatin1Char('\n')).toStdString();
            const long kept = query(saved, QStringLiteral("SELECT count(*) FROM pelkor")).toLong();
            EXPECT_GT(kept, 100);
            EXPECT_LT(kept, 3000);
        }
        EXPECT_EQ(hashOf(file), before);
        for (const QString& name : besides(dir.path()))
            EXPECT_FALSE(name.startsWith(QLatin1String("shop.pkr-"))) << name.toStdString();
    }
}

TEST(DamagedFile, ALedgerOnAReadOnlyFileSystemSaysSo)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString ro = dir.filePath(QStringLiteral("ro"));
    ASSERT_TRUE(QDir().mkpath(ro));
    const QString file = ro + QStringLiteral("/shop.pkr");
    makeLedger(file, lines(3));
    {
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("PRAGMA journal_mode=DELETE;"));
    }
    const QByteArray rofs = QFile::encodeName(ro);
    if (::mount(rofs.constData(), rofs.constData(), nullptr, MS_BIND, nullptr) != 0
        || ::mount(nullptr, rofs.constData(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0) {
        ::umount(rofs.constData());
        GTEST_SKIP() << "no read-only mount here";
    }
    const QByteArray before = hashOf(file);
    Program run(dir.path());
    const int code = openRun(run, file, QString());
    const QStringList got = run.prompts();
    ::umount(rofs.constData());
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(got.contains(QStringLiteral("msgbox|פלקור|לא ניתן לעבוד בקובץ \"\u2068shop.pkr\u2069\": הכונן שהוא נמצא בו הוא לקריאה בלבד.\\n"
                                            "העתק את הקובץ לתיקייה שאפשר לכתוב בה ופתח אותו משם.|OK")))
        << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(hashOf(file), before);
    EXPECT_EQ(besides(ro), QStringList{QStringLiteral("shop.pkr")});
}

// Sums another tool stored as infinity are bad sums, like text: the load
// hands their lines to the bad-lines child, whose OK makes them 0.
TEST(DamagedFile, AnInfiniteSumIsABadSum)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, lines(3));
    QProcess shell;
    shell.start(QStringLiteral("sqlite3"), {file, QStringLiteral("UPDATE pelkor SET out=9e999 WHERE id=2;")});
    ASSERT_TRUE(shell.waitForFinished(30000));
    ASSERT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString();
    ASSERT_EQ(query(file, QStringLiteral("SELECT out FROM pelkor WHERE id=2")), QStringLiteral("inf"));

    Program run(dir.path());
    ASSERT_TRUE(run.setRules(QStringLiteral("בחר קובץ => %1\nfrmMain.*mode 4 type 3 => cmdOK\n").arg(file)));
    ASSERT_TRUE(run.start({}));
    EXPECT_EQ(run.finish(), 0);
    const QStringList got = run.prompts();
    EXPECT_EQ(got.filter(QStringLiteral("mode 4 type 3")).size(), 1) << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(got.contains(QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK")));
    EXPECT_EQ(query(file, QStringLiteral("SELECT out FROM pelkor WHERE id=2")), QStringLiteral("0"));
}

// The zeroing mark stands on the first line, whose kind is no kind: the
// load deletes that line and puts the mark on the first line left; and a
// line whose kind is Null, or holds a quote, is deleted as announced, so
// the next run says nothing of it.
TEST(DamagedFile, LinesOfNoKindGoAndTheMarkStays)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, QStringLiteral(
                         "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                         "(1,'+77','2025-03-01','1','a',10,0,1,'ZZZZZZZZZZ','ללא צבע'),"
                         "(2,NULL,'2025-03-02','2','b',10,0,1,' ','ללא צבע'),"
                         "(3,'+1''x','2025-03-03','3','c',10,0,1,' ','ללא צבע'),"
                         "(4,'+1','2025-03-04','4','d',10,0,1,' ','ללא צבע'),"
                         "(5,'-1','2025-03-05','5','e',0,4,2,' ','ללא צבע');"));
    for (int pass = 0; pass < 2; ++pass) {
        SCOPED_TRACE(pass);
        QTemporaryDir runDir;
        Program run(runDir.path());
        ASSERT_TRUE(run.setRules(QStringLiteral("בחר קובץ => %1\n").arg(file)));
        ASSERT_TRUE(run.start({}));
        EXPECT_EQ(run.finish(), 0);
        const QStringList got = run.prompts();
        EXPECT_EQ(got.filter(QStringLiteral("סיווג לא חוקי")).size(), pass == 0 ? 3 : 0) << got.join(QLatin1Char('\n')).toStdString();
        EXPECT_TRUE(got.contains(QStringLiteral("msgbox|פלקור|תיקון הקובץ הסתיים בהצלחה|OK")));
        EXPECT_EQ(query(file, QStringLiteral("SELECT id, zee FROM pelkor ORDER BY id")), QStringLiteral("4|ZZZZZZZZZZ;5| "));
    }
}
