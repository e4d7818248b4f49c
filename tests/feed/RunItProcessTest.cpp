// runIt as the ledger starts it: the real program, headless, answering a
// mailbox that this test owns.
#include "FeedTestSupport.h"

#include "TestSupport.h"
#include "seams/bus/BusTestSupport.h"
#include "seams/bus/Mailbox.h"

#include <QCryptographicHash>
#include <QProcess>

using namespace pelkor;
using namespace pelkor::feedtest;

namespace {

const QString runIt = QStringLiteral(PELKOR_BINARY_DIR "/tools/feed/runIt");

// A run in dir: TMPDIR is dir/temp (where the feed goes), rules and a
// transcript in dir. Waits with the event loop running, so the box answers.
struct RunItRun {
    QTemporaryDir dir;
    bus::bustest::RuntimeFolder runtime;
    bus::Mailbox box;
    QProcess process;

    QString temp() const { return dir.filePath(QStringLiteral("temp")); }
    QString feedFile(int bank) const { return temp() + QStringLiteral("/atl613o%1.dll").arg(bank); }

    int run(const QStringList& args, const QString& rules = {})
    {
        QDir().mkpath(temp());
        writeBytes(dir.filePath(QStringLiteral("rules")), rules.toUtf8());
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TMPDIR"), temp());
        env.insert(QStringLiteral("PELKOR_HOME"), dir.filePath(QStringLiteral("home")));
        env.insert(QStringLiteral("PELKOR_DIALOGS"), dir.filePath(QStringLiteral("rules")));
        env.insert(QStringLiteral("PELKOR_TRANSCRIPT"), dir.filePath(QStringLiteral("transcript.tsv")));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(env);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(runIt, args);
        if (!process.waitForStarted(30000))
            return -2;
        if (!bus::bustest::spinUntil([&] { return process.state() == QProcess::NotRunning; }, 60000))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    // The ledger's command line for bank: from a file when one is given,
    // else through the window.
    int feed(int bank, const QString& from, const QString& rules = {})
    {
        QStringList args{QStringLiteral("c"), QStringLiteral("+%1").arg(bank), box.idText(), QStringLiteral("90")};
        if (!from.isEmpty())
            args << QStringLiteral("--from") << from;
        return run(args, rules);
    }
    QString transcript() const
    {
        QFile t(dir.filePath(QStringLiteral("transcript.tsv")));
        return t.open(QIODevice::ReadOnly) ? QString::fromUtf8(t.readAll()) : QString();
    }
    QString statement(const QByteArray& bytes)
    {
        const QString path = dir.filePath(QStringLiteral("statement.csv"));
        writeBytes(path, bytes);
        return path;
    }
};

const QByteArray statementCsv = "מספר חשבון: 20-433\nתאריך,תיאור,אסמכתא,זכות,חובה,יתרה\n"
                                "01/03/2025,העברה,1,500.00,,1500.00\n02/03/2025,שיק,2,,200.00,1300.00\n";

QByteArray digestOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha1) : QByteArray();
}

} // namespace

TEST(RunItProcess, FromAFileWritesTheBanksTableAndAnswersOK)
{
    if (!QFileInfo::exists(runIt))
        GTEST_SKIP() << "runIt is not built";
    RunItRun r;
    const QString file = r.statement(statementCsv);
    ASSERT_EQ(r.run({QStringLiteral("f4")}), 0);
    ASSERT_EQ(r.feed(4, file), 0);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor OK"));
    EXPECT_EQ(pelkor::testing::queryRows(r.feedFile(4), QStringLiteral("SELECT accountNum, transactionID, description, balance "
                                                           "FROM mizrahiOsh")),
              QStringLiteral("20-433|1|העברה|1500;20-433|2|שיק|1300"));
}

TEST(RunItProcess, AnUnusableFileAnswersClosedAndLeavesTheFeed)
{
    if (!QFileInfo::exists(runIt))
        GTEST_SKIP() << "runIt is not built";
    RunItRun r;
    const QString good = r.statement(statementCsv);
    ASSERT_EQ(r.feed(4, good), 0);
    const QByteArray before = digestOf(r.feedFile(4));
    r.box.setText(QStringLiteral("pelkor messages"));
    const QString page = r.statement("<html><head><title>Error 500</title></head></html>");
    EXPECT_EQ(r.feed(4, page), 2);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor CLOSED"));
    EXPECT_EQ(digestOf(r.feedFile(4)), before);
    // A command line that is not runIt's.
    EXPECT_EQ(r.feed(12, {}), 1);
}

TEST(RunItProcess, TheWindowPicksByRuleAndConfirms)
{
    if (!QFileInfo::exists(runIt))
        GTEST_SKIP() << "runIt is not built";
    RunItRun r;
    const QString file = r.statement(statementCsv);
    ASSERT_EQ(r.feed(0, {}, QStringLiteral("בחר דפי חשבון => %1\nfrmRunIt => cmdOK\n").arg(file)), 0);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor OK"));
    EXPECT_EQ(pelkor::testing::queryRows(r.feedFile(0), QStringLiteral("SELECT count(*) FROM poalimOsh")), QStringLiteral("2"));
    // The window showed what it found before the click.
    EXPECT_TRUE(r.transcript().contains(QStringLiteral("חשבון 20-433: 2 שורות, 01/03/2025 עד 02/03/2025")))
        << r.transcript().toStdString();

    // Cancelled: the box hears CLOSED and the feed stays as it was.
    const QByteArray before = digestOf(r.feedFile(0));
    ASSERT_EQ(r.feed(0, {}, QStringLiteral("בחר דפי חשבון => %1\nfrmRunIt => cmdCancel\n").arg(file)), 3);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor CLOSED"));
    EXPECT_EQ(digestOf(r.feedFile(0)), before);

    // A page saved instead of a statement: the user is told why, the file is
    // left out, and closing the window answers CLOSED.
    const QString page = r.dir.filePath(QStringLiteral("page.csv"));
    writeBytes(page, "<!DOCTYPE html><html><head><title>Login</title></head></html>");
    r.box.setText(QStringLiteral("pelkor messages"));
    ASSERT_EQ(r.feed(0, {}, QStringLiteral("בחר דפי חשבון => %1\nfrmRunIt => cmdCancel\n").arg(page)), 3);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor CLOSED"));
    EXPECT_EQ(digestOf(r.feedFile(0)), before);
    EXPECT_TRUE(r.transcript().contains(QStringLiteral("msgbox\tעידכון נתונים\tpage.csv: הקובץ הוא דף אינטרנט (HTML) ולא דף חשבון: \"Login\"")));
}

TEST(RunItProcess, AStatementWithoutBalanceAsksForTheClosingOne)
{
    if (!QFileInfo::exists(runIt))
        GTEST_SKIP() << "runIt is not built";
    RunItRun r;
    const QString file = r.statement("Date,Description,Amount\n01/03/2025,a,-20.00\n02/03/2025,b,5.00\n");
    // A rule answers the question; without one the run ends with no feed.
    ASSERT_EQ(r.feed(6, file, QStringLiteral("אין יתרה => 1,000.00\n")), 0);
    EXPECT_EQ(pelkor::testing::queryRows(r.feedFile(6), QStringLiteral("SELECT balance FROM otsarOsh")),
              QStringLiteral("995;1000"));
    QFile::remove(r.feedFile(6));
    EXPECT_EQ(r.feed(6, file), 3);
    EXPECT_EQ(r.box.text(), QStringLiteral("pelkor CLOSED"));
    EXPECT_FALSE(QFileInfo::exists(r.feedFile(6)));
}
