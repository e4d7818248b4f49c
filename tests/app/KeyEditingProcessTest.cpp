// Editing by the keyboard alone, on a real X display: the program runs on
// an Xvfb of the test's own, and xdotool sends it key presses as a user's
// keyboard would (arrows, typing, Enter, F2). The file must show each
// change at once. Skipped where Xvfb or xdotool is missing.
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "XvfbServer.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

namespace {

// The zeroing line is the first; the lines after it are no history, so no
// question stops the typing.
const QString ledgerLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-03-01','1','פתיחה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
    "(2,'+1','2025-03-05','2','מכירה',200,0,1,' ','ללא צבע'),"
    "(3,'+2','2025-03-06','3','שירות',300,0,3,' ','ללא צבע');");

class KeyEditing : public ::testing::Test {
protected:
    void SetUp() override
    {
        PELKOR_REQUIRE_PROGRAM("prjPelkor");
        for (const char* tool : {"Xvfb", "xdotool"})
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                GTEST_SKIP() << tool << " is not installed";
        display = server.start(QStringLiteral("1280x800x24"));
        ASSERT_FALSE(display.isEmpty()) << "Xvfb gave no display";
    }
    // xdotool on the test's display; its standard output.
    QString xdotool(const QStringList& args)
    {
        QProcess p;
        auto env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DISPLAY"), display);
        p.setProcessEnvironment(env);
        p.start(QStringLiteral("xdotool"), args);
        p.waitForFinished(30000);
        return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
    }
    void keys(const QStringList& names)
    {
        for (const QString& k : names) {
            xdotool({QStringLiteral("key"), QStringLiteral("--window"), window, k});
            spinUntil([] { return false; }, 150);   // the program handles one key before the next comes
        }
    }
    void type(const QString& text)
    {
        xdotool({QStringLiteral("type"), QStringLiteral("--window"), window, QStringLiteral("--delay"), QStringLiteral("60"), text});
        spinUntil([] { return false; }, 300);
    }

    pelkor::testing::XvfbServer server;
    QString display;
    QString window;
};

} // namespace

TEST_F(KeyEditing, ADetailAndASumTypedAtTheKeyboardReachTheFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, ledgerLines);
    Program run(dir.path());
    ASSERT_TRUE(run.traceOn());
    ASSERT_TRUE(run.setRules(QString()));
    ASSERT_TRUE(run.start({QStringLiteral("open"), file}, display));
    ASSERT_TRUE(run.waitForWindow(QStringLiteral("mode 1"))) << run.prompts().join(QLatin1Char('\n')).toStdString();
    window = xdotool({QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--name"), QStringLiteral("shop")})
                 .split(QLatin1Char('\n'))
                 .value(0);
    ASSERT_FALSE(window.isEmpty());
    xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window});
    xdotool({QStringLiteral("windowfocus"), QStringLiteral("--sync"), window});

    // The cursor starts on the first line's kind. Down to line 2, on to its
    // description (the next column lies to the left), type, Enter.
    keys({QStringLiteral("Down"), QStringLiteral("Left"), QStringLiteral("Left"), QStringLiteral("Left")});
    type(QStringLiteral("Rent March"));
    keys({QStringLiteral("Return")});
    ASSERT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT detail FROM pelkor WHERE id=2")) == QLatin1String("Rent March"); }, 10000))
        << query(file, QStringLiteral("SELECT detail FROM pelkor WHERE id=2")).toStdString() << "\n"
        << run.prompts().join(QLatin1Char('\n')).toStdString();
    // Enter moved the cursor on to the income: a new sum.
    type(QStringLiteral("1234.5"));
    keys({QStringLiteral("Return")});
    ASSERT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT [in] FROM pelkor WHERE id=2")) == QLatin1String("1234.5"); }, 10000))
        << query(file, QStringLiteral("SELECT * FROM pelkor WHERE id=2")).toStdString() << "\n" << run.trace().toStdString();
    // F2 on the next line's description repeats the last description typed;
    // leaving the cell commits it.
    keys({QStringLiteral("Down"), QStringLiteral("Right"), QStringLiteral("Right"), QStringLiteral("F2"), QStringLiteral("Up")});
    ASSERT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT detail FROM pelkor WHERE id=3")) == QLatin1String("Rent March"); }, 10000))
        << query(file, QStringLiteral("SELECT detail FROM pelkor WHERE id=3")).toStdString();
    // No question or refusal on the way.
    EXPECT_TRUE(run.prompts().filter(QStringLiteral("msgbox")).isEmpty()) << run.prompts().join(QLatin1Char('\n')).toStdString();
}

// A repair run hands a line with text in its sum to the bad-lines child; the
// user mends the sum there by keys, and the file holds the mended line.
TEST_F(KeyEditing, ABadLineIsMendedInTheChildByKeys)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, QStringLiteral(
                         "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                         "(1,'+1','2025-03-01','1','פתיחה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
                         "(2,'+1','2025-03-07','2','מכירה','12,5a',0,1,' ','ללא צבע');"));
    Program run(dir.path());
    ASSERT_TRUE(run.setRules(QStringLiteral("בחר קובץ => ") + file + QLatin1Char('\n')));
    ASSERT_TRUE(run.start({}, display));
    ASSERT_TRUE(run.waitForWindow(QStringLiteral("mode 4 type 3"))) << run.prompts().join(QLatin1Char('\n')).toStdString();
    // The child is the newest window of the file; it starts minimised.
    window = xdotool({QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--name"), QStringLiteral("shop")})
                 .split(QLatin1Char('\n'))
                 .last();
    ASSERT_FALSE(window.isEmpty());
    xdotool({QStringLiteral("windowmap"), QStringLiteral("--sync"), window});
    xdotool({QStringLiteral("windowfocus"), QStringLiteral("--sync"), window});
    // The bad line's income: four columns to the left of its kind.
    keys({QStringLiteral("Left"), QStringLiteral("Left"), QStringLiteral("Left"), QStringLiteral("Left")});
    type(QStringLiteral("125"));
    keys({QStringLiteral("Return")});
    EXPECT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT [in] FROM pelkor WHERE id=2")) == QLatin1String("125"); }, 10000))
        << query(file, QStringLiteral("SELECT [in] FROM pelkor WHERE id=2")).toStdString() << "\n"
        << run.prompts().join(QLatin1Char('\n')).toStdString();
}

// A new line, a delete and the zeroing line by keys alone, with the real
// question windows answered by keys: Insert opens a line at the end, the
// typing fills it, leaving it writes it; Shift+Space marks a row whole and
// Delete asks (Enter is Yes); F6 sets the zeroing line on the cursor's line.
TEST_F(KeyEditing, ALineIsAddedDeletedAndMadeTheZeroingLineByKeys)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    makeLedger(file, ledgerLines);
    Program run(dir.path());
    run.scripted = false;
    ASSERT_TRUE(run.start({QStringLiteral("open"), file}, display));
    window = xdotool({QStringLiteral("search"), QStringLiteral("--sync"), QStringLiteral("--name"), QStringLiteral("shop")})
                 .split(QLatin1Char('\n'))
                 .value(0);
    ASSERT_FALSE(window.isEmpty());
    spinUntil([] { return false; }, 1500);   // the load and the first paint
    xdotool({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window});
    xdotool({QStringLiteral("windowfocus"), QStringLiteral("--sync"), window});

    // Insert: the cursor on the new line's kind. Its date, then its
    // description and income; Up leaves the line and writes it.
    keys({QStringLiteral("Insert"), QStringLiteral("Left")});
    type(QStringLiteral("20/03/2025"));
    keys({QStringLiteral("Return"), QStringLiteral("Left")});
    type(QStringLiteral("Keys"));
    keys({QStringLiteral("Return")});
    type(QStringLiteral("77"));
    keys({QStringLiteral("Return"), QStringLiteral("Up")});
    const auto row = [&](const QString& where) {
        return query(file, QStringLiteral("SELECT kind, date, detail, [in], out, TypeNum FROM pelkor WHERE ") + where);
    };
    ASSERT_TRUE(spinUntil([&] { return row(QStringLiteral("detail='Keys'")) == QLatin1String("+0|20/03/2025|Keys|77|0|1"); }, 10000))
        << query(file, QStringLiteral("SELECT * FROM pelkor")).toStdString();

    // The cursor is on line 3 (שירות): marked whole and deleted.
    keys({QStringLiteral("shift+space"), QStringLiteral("Delete")});
    spinUntil([] { return false; }, 800);   // the question's window
    keys({QStringLiteral("Return")});
    ASSERT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT count(*) FROM pelkor WHERE id=3")) == QLatin1String("0"); }, 10000))
        << query(file, QStringLiteral("SELECT id, detail FROM pelkor")).toStdString();
    EXPECT_EQ(query(file, QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("3"));

    // F6 on the last line (the new one, after the reload): the zeroing line.
    keys({QStringLiteral("ctrl+End"), QStringLiteral("F6")});
    EXPECT_TRUE(spinUntil([&] { return query(file, QStringLiteral("SELECT detail FROM pelkor WHERE zee='ZZZZZZZZZZ'")) == QLatin1String("Keys"); }, 10000))
        << query(file, QStringLiteral("SELECT id, detail, zee FROM pelkor")).toStdString();
}
