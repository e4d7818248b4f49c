// Moving the demonstration file's dates and its feed's by whole months.
#include "file/LoadFixture.h"
#include "transfer/MoveDates.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

TEST(MoveDate, MonthEndsStayMonthEndsAndOtherDaysAreCutToShorterMonths)
{
    using transfer::moveDate;
    // 31 January is a month-end: by either branch the end of February.
    EXPECT_EQ(moveDate(QDate(2025, 1, 31), 1), QDate(2025, 2, 28));
    EXPECT_EQ(moveDate(QDate(2024, 1, 31), 1), QDate(2024, 2, 29));
    EXPECT_EQ(moveDate(QDate(2025, 2, 28), 1), QDate(2025, 3, 31));
    EXPECT_EQ(moveDate(QDate(2025, 2, 27), 1), QDate(2025, 3, 27));
    EXPECT_EQ(moveDate(QDate(2025, 1, 30), 1), QDate(2025, 2, 28));
    // Past 29 February and across years, both ways.
    EXPECT_EQ(moveDate(QDate(2024, 2, 29), 12), QDate(2025, 2, 28));
    EXPECT_EQ(moveDate(QDate(2024, 2, 28), 12), QDate(2025, 2, 28));
    EXPECT_EQ(moveDate(QDate(2023, 2, 28), 12), QDate(2024, 2, 29));
    EXPECT_EQ(moveDate(QDate(2024, 12, 31), 2), QDate(2025, 2, 28));
    EXPECT_EQ(moveDate(QDate(2025, 3, 31), -1), QDate(2025, 2, 28));
    EXPECT_EQ(moveDate(QDate(2025, 1, 15), -13), QDate(2023, 12, 15));
    EXPECT_EQ(moveDate(QDate(2025, 5, 17), 0), QDate(2025, 5, 17));
}

class MoveDates : public LoadTest {};

TEST_F(MoveDates, TheFileAndTheFeedMoveTogetherAfterWrongNumbersAreAskedAgain)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-01-31','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע'),"
        "(2,'-1','2025-02-10','12','ספק',0,300,2,' ','ללא צבע');"
        "UPDATE Defaults SET iBank = 99;"));
    const QString program = platform::Paths::under(dir.path()).programDir;
    QDir().mkpath(program);
    const QString feed = program + QStringLiteral("/demo.mdb");
    {
        store::Connection cn;
        cn.open(feed, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(schema::feedScript({QStringLiteral("demoOsh")}));
        cn.executeRaw(QStringLiteral("INSERT INTO demoOsh (transactionID, date) VALUES (1, '2024-12-31'), (2, '2025-02-28');"));
    }
    start({QStringLiteral("open"), file},
          QStringLiteral("מספר חודשים => 1\n"));
    // The entry shows on the demonstration file alone (iBank 99).
    EXPECT_TRUE(m->shown().mnuMoveDatesVisible);
    const QString before = m->ledger().lines[0].Date.toString(Qt::ISODate);
    m->mnuMoveDates_Click();
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM pelkor ORDER BY id")), QStringLiteral("28/02/2025;10/03/2025"));
    EXPECT_EQ(queryRows(feed, QStringLiteral("SELECT date FROM demoOsh ORDER BY transactionID")),
              QStringLiteral("31/01/2025;31/03/2025"));
    EXPECT_TRUE(prompts().contains(QStringLiteral("msgbox|הזזת תאריכים|התאריכים הוזזו בהצלחה|OK")));
    // The lines in memory keep their dates until the next load.
    EXPECT_EQ(m->ledger().lines[0].Date.toString(Qt::ISODate), before);
}

TEST_F(MoveDates, ANumberThatIsNoWholeNumberIsAskedForAgainAndEmptyMovesNothing)
{
    makeLedger(QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+1','2025-01-31','11','מכירה',1000,0,1,'ZZZZZZZZZZ','ללא צבע');"));
    start({QStringLiteral("open"), file}, QString());
    QStringList answers{QStringLiteral("abc"), QStringLiteral("1.5"), QString()};
    struct Answering : ui::ScriptedUi {
        using ScriptedUi::ScriptedUi;
        QStringList* answers = nullptr;
        std::optional<QString> inputBox(const QString& p, const QString& t, const QString& d) override
        {
            ScriptedUi::inputBox(p, t, d);
            return answers->takeFirst();
        }
    } answering(ui::DialogRules::parse(QString()), transcriptPath(), {});
    answering.answers = &answers;
    transfer::MoveDatesParts parts{m->ledger(), answering, dir.filePath(QStringLiteral("none.mdb")), {}, {}};
    transfer::mnuMoveDates_Click(parts);
    const QStringList p = prompts();
    EXPECT_TRUE(p.contains(QStringLiteral("msgbox|שגיאה|מספר לא חוקי|OK")));
    EXPECT_TRUE(p.contains(QStringLiteral("msgbox|שגיאה|מספר לא שלם|OK")));
    EXPECT_TRUE(answers.isEmpty());
    EXPECT_EQ(query(QStringLiteral("SELECT date FROM pelkor")), QStringLiteral("31/01/2025"));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("none.mdb"))));
}
