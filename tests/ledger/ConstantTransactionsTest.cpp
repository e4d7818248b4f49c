// Recurring lines through the dialog as a scripted user fills it in a
// working run: the series the file gets (dates, sums, the rule's number),
// the refusals with nothing written, and a failure midway leaving no part
// of the series.
#include "ledger/ConstantTransactions.h"

#include "ledger/GridFixture.h"

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// Two lines; the zeroing mark on the second (1 March 2025).
const QString twoLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
    "(1,'+1','2025-02-20','11','מכירה',1000,0,1,' ','ללא צבע'),"
    "(2,'-1','2025-03-01','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע');");

class ConstantLines : public GridTest {
protected:
    // Opens the file, runs the dialog with the given fields (then cmdOK)
    // and returns the new lines, "date|in|out" in date order.
    QString run(const QString& fields, const QString& moreRules = {})
    {
        fresh();
        openOn(twoLines, QStringLiteral("frmConstantTransactions => ") + fields + QLatin1Char('\n') + moreRules);
        m->mnuAddConstantTransactions_Click();
        return newLines();
    }
    // A new file and transcript for the next run.
    void fresh()
    {
        m.reset();
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
        QFile::remove(transcriptPath());
    }
    QString newLines() { return query(QStringLiteral("SELECT date, [in], out FROM pelkor WHERE id > 2 ORDER BY date, id")); }
    QStringList messages()
    {
        QStringList out;
        for (const QString& p : prompts())
            if (p.startsWith(QLatin1String("msgbox|")))
                out << p.section(QLatin1Char('|'), 2, 2);
        return out;
    }
};

} // namespace

TEST_F(ConstantLines, TheSeriesDates)
{
    const struct {
        const char* fields;
        const char* lines;
    } cases[] = {
        {"txtFromDate=10/04/2025;txtToDate=10/04/2025;txtJump=חודש;txtOut=250", "10/04/2025|0|250"},
        // End of month moves the only line past the end.
        {"txtFromDate=10/04/2025;txtToDate=10/04/2025;chkEndOfMonth=1;txtJump=חודש;txtOut=250", ""},
        // 15 March 2026 is a Sunday: the first of each next month.
        {"txtFromDate=15/03/2026;txtToDate=30/06/2026;chkEndOfMonth=1;txtJump=חודש;txtIn=80",
         "01/04/2026|80|0;01/05/2026|80|0;01/06/2026|80|0"},
        // 22 March 2025 is a Saturday: every line on the Sunday, the last a
        // day past the end.
        {"txtFromDate=22/03/2025;txtToDate=12/04/2025;txtJump=שבוע;txtOut=40",
         "23/03/2025|0|40;30/03/2025|0|40;06/04/2025|0|40;13/04/2025|0|40"},
        {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש;txtIn=500;txtChangeInPercents=-100",
         "08/04/2025|500|0;08/05/2025|0|0;08/06/2025|0|0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(run(QString::fromUtf8(c.fields)), QString::fromUtf8(c.lines)) << c.fields;
    // The lines take the defaults, and the reload reads them into the grid.
    EXPECT_EQ(query(QStringLiteral("SELECT kind, TypeNum, memo, confirm, ConstantLineNum FROM pelkor WHERE id = 3")),
              QStringLiteral("+0|1|ללא צבע| |NULL"));
    EXPECT_EQ(m->ledger().lines.size(), 5u);
    EXPECT_EQ(stepDate(QDate(2025, 1, 31), QStringLiteral("חודש")), QDate(2025, 2, 28));
    EXPECT_EQ(stepDate(QDate(2025, 2, 28), QStringLiteral("חודש")), QDate(2025, 3, 28));
    EXPECT_EQ(stepDate(QDate(2025, 11, 30), QStringLiteral("רבעון")), QDate(2026, 2, 28));
    EXPECT_FALSE(stepDate(QDate(2025, 1, 1), QStringLiteral("שנה")).isValid());
}

TEST_F(ConstantLines, PercentCompoundsUnroundedAndTheRuleIsKept)
{
    run(QStringLiteral("txtFromDate=08/04/2025;txtToDate=08/10/2025;txtJump=חודש;txtOut=1000;"
                       "txtChangeInPercents=10;chkSaveInDB=1;txtDetails=שכר דירה 'ראשי'"));
    store::Connection cn;
    cn.open(file);
    const auto rs = cn.execute(QStringLiteral("SELECT out, ConstantLineNum, detail FROM pelkor WHERE id > 2 ORDER BY date"));
    ASSERT_EQ(rs.recordCount(), 7);
    double expected = 1000;
    for (long r = 0; r < 7; ++r) {
        EXPECT_EQ(rs.at(r, 0).toDouble(), expected) << r;   // 1000, 1100, 1210, ... each from the one before
        expected *= 1.1;
        EXPECT_EQ(rs.at(r, 1).toInt(), 1);
        EXPECT_EQ(rs.at(r, 2).toString(), QStringLiteral("שכר דירה `ראשי`"));
    }
    EXPECT_EQ(rs.at(2, 0).toDouble(), 1210.0);
    EXPECT_GT(rs.at(6, 0).toDouble() - 1771.56, 0.0009);   // 1771.561: never cut to cents
    EXPECT_EQ(query(QStringLiteral("SELECT ConstantLineNum, KIND, FDate, TDate, Steps, OUT, Percent, TypeNum FROM ConstantLines")),
              QStringLiteral("1|-0|08/04/2025|08/10/2025|חודש|1000|10|2"));
}

TEST_F(ConstantLines, AStartBeforeTheZeroingDateAsksAndCancelWritesNothing)
{
    const QString fields = QStringLiteral("txtFromDate=03/02/2025;txtToDate=03/03/2025;txtJump=חודש;txtOut=10");
    EXPECT_EQ(run(fields, QStringLiteral("מוקדם מתאריך האיפוס => Cancel")), QString());
    EXPECT_TRUE(messages().contains(QStringLiteral("תאריך ההתחלה שמילאת מוקדם מתאריך האיפוס")));
    EXPECT_EQ(run(fields, QStringLiteral("מוקדם מתאריך האיפוס => OK")),
              QStringLiteral("03/02/2025|0|10;03/03/2025|0|10"));
}

TEST_F(ConstantLines, BothSumsZeroCloseTheDialogWithNothingWritten)
{
    EXPECT_EQ(run(QStringLiteral("txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש")), QString());
    EXPECT_TRUE(messages().isEmpty());
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM ConstantLines")), QStringLiteral("0"));
}

TEST_F(ConstantLines, BadInputIsToldAndNothingIsWritten)
{
    const struct {
        const char* fields;
        const char* message;
    } cases[] = {
        {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש;txtOut=100;txtChangeInPercents=abc",
         "המספר בשדה השינוי באחוזים אינו חוקי"},
        {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=0;txtOut=100", "גודל הקפיצה שמילאת אינו חוקי"},
        {"txtFromDate=08/06/2025;txtToDate=08/04/2025;txtJump=חודש;txtOut=100", "תאריך ההתחלה מאוחר מתאריך הסיום"},
        {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש;txtOut=abc", "המספר בשדה ההוצאה אינו חוקי"},
        {"txtFromDate=31/02/2025;txtToDate=08/06/2025;txtJump=חודש;txtOut=100", "תאריך ההתחלה אינו חוקי"},
        {"txtOut=100;txtKind=1+;txtFromDate=08/04/2025;txtToDate=08/06/2025;txtJump=חודש",
         "סיווג חיובי אינו יכול להשתייך להוצאה"},
        {"txtFromDate=08/04/2025;txtToDate=08/06/2025;txtOut=100", "יש למלא גודל קפיצה"},
        {"txtToDate=08/06/2025;txtJump=חודש;txtOut=100", "יש למלא תאריך התחלה"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(run(QString::fromUtf8(c.fields)), QString()) << c.fields;
        EXPECT_EQ(messages().value(0), QString::fromUtf8(c.message)) << c.fields;
        EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM ConstantLines")), QStringLiteral("0"));
    }
}

TEST_F(ConstantLines, AFailureMidwayLeavesNoPartOfTheSeries)
{
    makeLedger(twoLines);
    {
        // The file refuses the third line of a series.
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("CREATE TRIGGER third BEFORE INSERT ON pelkor "
                                     "WHEN (SELECT COUNT(*) FROM pelkor WHERE id > 2) >= 2 "
                                     "BEGIN SELECT RAISE(ABORT, 'disk gone'); END;"));
    }
    start({QStringLiteral("open"), file},
          QStringLiteral("frmConstantTransactions => txtFromDate=08/04/2025;txtToDate=08/08/2025;txtJump=חודש;"
                         "txtOut=100;chkSaveInDB=1\n"));
    m->mnuAddConstantTransactions_Click();
    EXPECT_EQ(newLines(), QString());
    EXPECT_EQ(query(QStringLiteral("SELECT COUNT(*) FROM ConstantLines")), QStringLiteral("0"));
    EXPECT_TRUE(messages().value(0).startsWith(QStringLiteral("הכנסת הפעולות נכשלה")));
}
