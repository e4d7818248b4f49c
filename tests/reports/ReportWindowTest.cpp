// The period report window's logic over a real load, on scripted views:
// ticks and totals in place, clicks on amounts, printed copies, the range
// boxes, and files that hold too little or the wrong things.
#include "reports/PeriodSums.h"
#include "reports/ReportFixture.h"
#include "seams/store/Connection.h"

#include <QFile>
#include <QRegularExpression>

using namespace pelkor;
using namespace pelkor::reports;
using namespace pelkor::testing;

namespace {
// The kind report's rows for the 18 standard kinds.
constexpr int rowMinus1 = 2, expensesRow = 10, rowPlus0 = 11, rowPlus1 = 12, incomesRow = 20, balanceRow = 22;
} // namespace

TEST_F(ReportTest, UntickingAKindHidesItsRowsAndRewritesTheLaterBalancesInPlace)
{
    openReport(PeriodType::Month);
    // The first build moves the end back to April without a word.
    EXPECT_EQ(r->shown().txtFrom, QStringLiteral("01/01/2025"));
    EXPECT_EQ(r->shown().txtTo, QStringLiteral("30/04/2025"));
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
    ASSERT_EQ(r->periods().nPeriods, 4);
    // Ticked by their totals: the opening line's kind lies before the range.
    EXPECT_EQ(rowDisplay(kindReport, rowPlus0), QStringLiteral("none"));
    EXPECT_EQ(rowDisplay(kindReport, rowMinus1), QString());
    EXPECT_EQ(cell(kindReport, expensesRow, 0), QStringLiteral("750"));
    EXPECT_EQ(cell(kindReport, balanceRow, 4), QStringLiteral("10,450"));   // the close, after April
    EXPECT_EQ(cell(kindReport, balanceRow, 2), QStringLiteral("10,700"));   // February: empty, carried

    kindList.sendEvent(QStringLiteral("knd1"));   // "-1": January's 300
    for (int i = 0; i < kindReport.count(QStringLiteral("r2")); ++i)
        EXPECT_EQ(rowDisplay(kindReport, rowMinus1, i), QStringLiteral("none")) << i;
    EXPECT_EQ(kindReport.count(QStringLiteral("r2")), 12);   // the name tables of two copies, ten amount tables
    EXPECT_EQ(cell(kindReport, expensesRow, 0), QStringLiteral("450"));
    EXPECT_EQ(cell(kindReport, balanceRow, 4), QStringLiteral("10,750"));
    EXPECT_EQ(cell(kindReport, balanceRow, 9), QStringLiteral("10,750"));     // the printed copy too
    // The type report is another pair: untouched.
    EXPECT_EQ(typeReport.text(QStringLiteral("c%1").arg(r->typeRows().expensesTotalRow), 0), QStringLiteral("750"));

    // The income section's box hides every income kind and its total.
    kindList.sendEvent(QStringLiteral("kin"));
    EXPECT_EQ(rowDisplay(kindReport, rowPlus1), QStringLiteral("none"));
    EXPECT_EQ(rowDisplay(kindReport, incomesRow), QStringLiteral("none"));
    EXPECT_EQ(cell(kindReport, incomesRow, 0), QStringLiteral("0"));
    EXPECT_EQ(cell(kindReport, balanceRow, 4), QStringLiteral("9,550"));

    // A refresh rebuilds: every kind with a non-zero total is ticked again.
    EXPECT_TRUE(r->txtMessage_Change(QStringLiteral("refresh")));
    EXPECT_TRUE(r->kindSums().checked[10]);
    EXPECT_EQ(rowDisplay(kindReport, rowMinus1), QString());
    EXPECT_EQ(rowDisplay(kindReport, incomesRow), QString());
    EXPECT_EQ(cell(kindReport, balanceRow, 4), QStringLiteral("10,450"));
}

TEST_F(ReportTest, TypeTicksWalkTheirCategories)
{
    openReport(PeriodType::Month);
    const TypeTotals& t = r->typeTotals();
    ASSERT_TRUE(r->isTypeReportIncluded());
    const int cheques = t.getIndexOfTypeNum(7), general = t.getIndexOfTypeNum(2);
    ASSERT_GE(cheques, 0);
    const TypeRows& rows = r->typeRows();
    EXPECT_EQ(typeReport.text(QStringLiteral("c%1").arg(rows.categRowIndex[0]), 0), QStringLiteral("750"));
    typeList.sendEvent(QStringLiteral("typ%1").arg(cheques));
    EXPECT_EQ(typeReport.display(QStringLiteral("r%1").arg(rows.typeRowIndex[size_t(cheques)])), QStringLiteral("none"));
    EXPECT_EQ(typeReport.text(QStringLiteral("c%1").arg(rows.categRowIndex[0]), 0), QStringLiteral("450"));
    // Unticking the last ticked type of the category unticks it and its section.
    typeList.sendEvent(QStringLiteral("typ%1").arg(general));
    EXPECT_FALSE(t.categChecked[0]);
    EXPECT_FALSE(t.sums.showExpensesTotal);
    EXPECT_EQ(typeReport.display(QStringLiteral("r%1").arg(rows.expensesTotalRow)), QStringLiteral("none"));
    // The category's box ticks all its types again.
    typeList.sendEvent(QStringLiteral("ctg0"));
    EXPECT_TRUE(t.sums.checked[size_t(cheques)]);
    EXPECT_TRUE(t.sums.showExpensesTotal);
    EXPECT_EQ(typeReport.text(QStringLiteral("c%1").arg(rows.expensesTotalRow), 0), QStringLiteral("750"));
    // The kind report is untouched by all of it.
    EXPECT_EQ(cell(kindReport, expensesRow, 0), QStringLiteral("750"));
}

TEST_F(ReportTest, AClickOnAnAmountStartsADetailChildWithItsPeriodsDates)
{
    openReport(PeriodType::Month);
    kindReport.sendEvent(QStringLiteral("3 +1 0 1"));
    ASSERT_EQ(children.started.size(), 1);
    EXPECT_EQ(children.started[0], QStringLiteral("detail 00c0ffee 3 01/01/2025 31/01/2025 +1 ") + file);
    EXPECT_FALSE(r->shown().enabled);
    EXPECT_TRUE(r->txtMessage_Change(QStringLiteral("nochange")));
    EXPECT_TRUE(r->shown().enabled);
    EXPECT_EQ(window.raised, 1);

    // A type's cell carries its place in the list; the child selects by number.
    const int cheques = r->typeTotals().getIndexOfTypeNum(7);
    typeReport.sendEvent(QStringLiteral("4 %1 2 1").arg(cheques));
    EXPECT_EQ(children.started.last(), QStringLiteral("detail 00c0ffee 4 01/03/2025 31/03/2025 7 ") + file);

    // An amount of 0 opens the add-line dialog, and no child; its "closed"
    // rebuilds the report.
    r->txtMessage_Change(QStringLiteral("nochange"));
    kindReport.sendEvent(QStringLiteral("3 +2 1 0"));
    EXPECT_EQ(addLinesOpened, 1);
    EXPECT_EQ(children.started.size(), 2);
    EXPECT_TRUE(r->shown().enabled);

    // A range ending mid-month: the last cell passes toDate.
    r->txtTo_Change(QStringLiteral("15/4/25"));
    r->cmdShow_Click();
    kindReport.sendEvent(QStringLiteral("3 -2 3 1"));
    EXPECT_EQ(children.started.last(), QStringLiteral("detail 00c0ffee 3 01/04/2025 15/04/2025 -2 ") + file);

    // A broken event string starts nothing.
    r->txtMessage_Change(QStringLiteral("nochange"));
    kindReport.sendEvent(QStringLiteral("3 +1 0"));
    EXPECT_EQ(children.started.size(), 3);
}

TEST_F(ReportTest, TwentyThreeDaysPrintOnThreePages)
{
    openReport(PeriodType::Day);
    r->txtFrom_Change(QStringLiteral("01/01/2025"));
    r->txtTo_Change(QStringLiteral("23/01/2025"));
    r->cmdShow_Click();
    ASSERT_EQ(r->periods().nPeriods, 23);
    const QString src = kindReport.source();
    const QString printed = src.mid(src.indexOf(QStringLiteral("id=divprn")));
    const QStringList pages = printed.split(QRegularExpression(QStringLiteral("<div class=(?=printcopy|lastcopy)"))).mid(1);
    ASSERT_EQ(pages.size(), 3);
    // The total's column and ten days, ten days, the last two days.
    for (int i : {0, 1, 2})
        EXPECT_EQ(pages[i].count(QStringLiteral("id=tblperiodsums")), i == 2 ? 2 : 11) << i;
    EXPECT_TRUE(pages[1].contains(QStringLiteral(">11/1/25</td>")));
    EXPECT_TRUE(pages[2].startsWith(QStringLiteral("lastcopy")));
    // A cut range on a day report: the amount of day 3 has its own date.
    kindReport.sendEvent(QStringLiteral("3 +1 4 1"));
    EXPECT_EQ(children.started.last(), QStringLiteral("detail 00c0ffee 3 05/01/2025 05/01/2025 +1 ") + file);
}

TEST_F(ReportTest, TheRangeBoxesRefuseWhatIsNoRangeAndWarnOfMoves)
{
    openReport(PeriodType::Month);
    r->txtFrom_Change(QStringLiteral("31/02/2025"));
    r->cmdShow_Click();
    EXPECT_EQ(window.focus, QStringLiteral("txtFrom"));
    r->txtFrom_Change(QStringLiteral("1/3/2025"));
    r->txtTo_Change(QStringLiteral("1/2/2025"));
    r->cmdShow_Click();
    EXPECT_EQ(window.focus, QStringLiteral("txtTo"));
    r->txtTo_Change(QStringLiteral("abc"));
    r->txtTo_LostFocus();
    // A range wider than the lines: both moves told, the start first.
    r->txtFrom_Change(QStringLiteral("1/6/2024"));
    r->txtTo_Change(QStringLiteral("31/12/2025"));
    r->txtTo_Enter();
    EXPECT_EQ(prompts(), (QStringList{
                             QStringLiteral("msgbox|שגיאה|התאריך אינו חוקי|OK"),
                             QStringLiteral("msgbox|שגיאה|תאריך הסיום מאוחר מתאריך ההתחלה|OK"),
                             QStringLiteral("msgbox|סיכום חודשי|תאריך הסיום אינו חוקי|OK"),
                             QStringLiteral("msgbox|אזהרה|תאריך ההתחלה יוזז קדימה אל תחילת החודש הראשון בו יש תנועות: 01/12/2024|OK"),
                             QStringLiteral("msgbox|אזהרה|תאריך הסיום יוזז אחורה אל סוף החודש האחרון בו יש תנועות: 30/04/2025|OK"),
                         }));
    EXPECT_EQ(r->periods().nPeriods, 5);
    EXPECT_EQ(r->proposedSaveName(), QStringLiteral("shop - סיכום חודשי לפי סיווגים מ- 01.12.2024 עד 30.04.2025"));
}

TEST_F(ReportTest, SavingWritesTheShownReportUnderTheProposedName)
{
    const QString saved = dir.filePath(QStringLiteral("saved.htm"));
    openReport(PeriodType::Month, reportLines(), QStringLiteral("בחר שם לשמירה => ") + saved + QLatin1Char('\n'));
    r->optKindsOrTypes_Click(0);
    r->cmdSave_Click();
    EXPECT_EQ(bytes(saved), bytes(r->pagePath(QStringLiteral("typeReport.htm"))));
    EXPECT_EQ(r->proposedSaveName(), QStringLiteral("shop - סיכום חודשי לפי סוגים מ- 01.01.2025 עד 30.04.2025"));
    // The print setting is the program's own, kept in pelkor.ini.
    EXPECT_TRUE(r->shown().chkPrintBGColors);
    r->chkPrintBGColors_Click(false);
    EXPECT_EQ(platform::ProfileFile(m->reportParts().settingsFile).readString(QStringLiteral("print"), QStringLiteral("backgroundColors")),
              QStringLiteral("no"));
}

TEST_F(ReportTest, AFileEmptiedByAnotherInstanceGivesAnEmptyReportAndClosingCleansUp)
{
    openReport(PeriodType::Month);
    {
        store::Connection cn;
        cn.open(file);
        cn.execute(QStringLiteral("DELETE * FROM pelkor"));
    }
    EXPECT_TRUE(r->txtMessage_Change(QStringLiteral("closed")));
    EXPECT_EQ(cell(kindReport, balanceRow, 4), QStringLiteral("0"));
    EXPECT_EQ(rowDisplay(kindReport, expensesRow), QStringLiteral("none"));
    EXPECT_TRUE(QFile::exists(r->pagePath(QStringLiteral("kindReport.htm"))));
    r->Form_Unload();
    EXPECT_EQ(closedCalls, 1);
    for (const char* f : {"kindList.htm", "typeList.htm", "kindReport.htm", "typeReport.htm"})
        EXPECT_FALSE(QFile::exists(r->pagePath(QString::fromLatin1(f)))) << f;
}

TEST(PeriodSums, BadKindsAreLeftOutAndAMergedDivisorOfFourQuartersEverything)
{
    ensureApplication();
    QTemporaryDir dir;
    const QString f = dir.filePath(QStringLiteral("m.pkr"));
    makeLedger(f, QStringLiteral(
                      "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
                      "(1,'+1','2024-12-01','1','a',800,0,1,'0','x'),"
                      "(2,'-1','2025-01-05','2','b',0,400,2,'0','x'),"
                      "(3,'-1','2025-01-06','3','c',40,0,2,'0','x'),"
                      "(4,'+99','2025-01-07','4','d',7,0,1,'0','x'),"
                      "(5,'x1','2025-01-07','5','e',7,0,1,'0','x'),"
                      "(6,'+1','2025-02-01','6','f',100,0,1,'1','x'),"
                      "(7,'+2','2025-01-09','7','g',5,0,77,'0','x');"));
    store::Connection cn;
    cn.open(f);
    const Periods p = Periods::make(PeriodType::Month, QDate(2025, 1, 1), QDate(2025, 2, 28));
    SumSet s;
    s.periodBalance.assign(1, 0);
    TypeTotals t;
    readTypeCatalogue(cn, t);
    t.sums.periodBalance.assign(1, 0);
    EXPECT_EQ(readPeriodSums(cn, p, 18, MergedRates{}, s, &t), 2);
    EXPECT_EQ(s.sum(10, 0), 360);   // "-1": 400 spent, 40 back
    EXPECT_EQ(s.sum(2, 0), 5);
    // By type: the general payment type as the kind; a type with no row in
    // Types counts nowhere, and a bad kind's line still counts by its type.
    EXPECT_EQ(t.sums.sum(t.getIndexOfTypeNum(2), 0), 360);
    EXPECT_EQ(t.sums.sum(t.getIndexOfTypeNum(1), 0), 14);
    EXPECT_EQ(t.getIndexOfTypeNum(77), -1);
    EXPECT_EQ(readOpeningBalance(cn, p.fromDate, MergedRates{}), 800);

    const MergedRates quarter{true, {-4, 2}};
    readPeriodSums(cn, p, 18, quarter, s, nullptr);
    EXPECT_EQ(s.sum(10, 0), 90);
    EXPECT_EQ(s.sum(1, 1), 200);    // the second file doubles
    EXPECT_EQ(readOpeningBalance(cn, p.fromDate, quarter), 200);
    const MergedRates negative{true, {-4}};
    EXPECT_EQ(readOpeningBalance(cn, QDate(2025, 1, 6), negative), (800 - 400) / 4.0);

    // A file without lines: no span, a zero opening.
    cn.execute(QStringLiteral("DELETE * FROM pelkor"));
    EXPECT_TRUE(readDateSpan(cn).isEmpty());
    EXPECT_EQ(readOpeningBalance(cn, p.fromDate, MergedRates{}), 0);
}
