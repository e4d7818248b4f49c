// The comparison of two periods: the percent and difference cells, the
// choice of kinds and types between two files, the ranges and their
// checks, the clicks on amounts, and files that can't be compared.
#include "reports/CompareReport.h"
#include "reports/ReportFixture.h"
#include "reports/frmCompare.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>

namespace pelkor::testing {

using namespace pelkor::reports;

TEST(CompareCells, APercentAgainstAZeroPeriodIsEmptyAndNeverInfinite)
{
    EXPECT_EQ(percentText(0, 500), QStringLiteral("-100%"));
    EXPECT_EQ(percentText(500, 0), QString());
    EXPECT_EQ(percentText(0, 0), QString());
    EXPECT_EQ(percentText(300, 200), QStringLiteral("50%"));
    EXPECT_EQ(percentText(100, 200), QStringLiteral("-50%"));
    EXPECT_EQ(percentText(200, 200), QStringLiteral("0%"));
    // A deficit against a deficit: one sign, by which lies lower.
    EXPECT_EQ(percentText(-300, -200), QStringLiteral("-50%"));
    EXPECT_EQ(percentText(-100, -200), QStringLiteral("50%"));
    // More spending in the first period is red; more income green.
    EXPECT_EQ(nodifftd(0), QStringLiteral("nodifftd"));
    EXPECT_EQ(nodifftd(50), QStringLiteral("negdifftd"));
    EXPECT_EQ(nodifftd(-50), QStringLiteral("posdifftd"));
    EXPECT_EQ(colourText(cmpColors[0]), QStringLiteral("#ffff80"));
    EXPECT_EQ(colourText(cmpColors[1]), QStringLiteral("#c1c1ff"));
}

TEST(CompareRanges, DefaultsMovesAndTheirWords)
{
    const auto r = defaultCompareRanges(QDate(2025, 6, 15));
    EXPECT_EQ(r[0].toDate, QDate(2025, 5, 31));
    EXPECT_EQ(r[0].fromDate, QDate(2024, 5, 1));
    EXPECT_EQ(r[1].toDate, QDate(2024, 4, 30));
    EXPECT_EQ(r[1].fromDate, QDate(2024, 4, 1).addDays(-500));

    // A range wholly after the lines closes onto the last day.
    DateRange late{QDate(2026, 1, 1), QDate(2026, 2, 1)};
    const QStringList w = adjustCompareRange(1, late, QDate(2025, 1, 1), QDate(2025, 4, 2));
    EXPECT_EQ(late.fromDate, QDate(2025, 4, 2));
    EXPECT_EQ(late.toDate, QDate(2025, 4, 2));
    EXPECT_EQ(w, QStringList{QStringLiteral("תאריך הסיום השני יוזז אחורה אל היום האחרון בו יש תנועות: 02/04/2025")});
    DateRange early{QDate(2024, 1, 1), QDate(2025, 2, 1)};
    EXPECT_EQ(adjustCompareRange(0, early, QDate(2025, 1, 1), QDate(2025, 4, 2)),
              QStringList{QStringLiteral("תאריך ההתחלה הראשון יוזז קדימה אל היום הראשון בו יש תנועות: 01/01/2025")});
}

TEST(CompareKinds, TheLargerListOrTheFirstOneWithTheirWarnings)
{
    KindNames a{{QStringLiteral("מכירות"), QStringLiteral("ספקים")}, {QStringLiteral("+0"), QStringLiteral("-0")}};
    KindNames more{{QStringLiteral("מכירות"), QStringLiteral("שירות"), QStringLiteral("ספקים"), QStringLiteral("שכר")},
                   {QStringLiteral("+0"), QStringLiteral("+1"), QStringLiteral("-0"), QStringLiteral("-1")}};
    KindNames renamed{{QStringLiteral("מכירות"), QStringLiteral("קניות")}, {QStringLiteral("+0"), QStringLiteral("-0")}};

    const KindChoice same = chooseKinds(a, nullptr);
    EXPECT_TRUE(same.warning.isEmpty());
    EXPECT_EQ(same.names.descs, a.descs);
    const KindChoice larger = chooseKinds(a, &more);
    EXPECT_EQ(larger.warning, QString::fromUtf8(kindsLargerWarning));
    EXPECT_EQ(larger.names.nCategories(), 4);
    // Fewer in the second: the first list stands, with the same warning.
    EXPECT_EQ(chooseKinds(more, &a).names.nCategories(), 4);
    EXPECT_EQ(chooseKinds(more, &a).warning, QString::fromUtf8(kindsLargerWarning));
    const KindChoice first = chooseKinds(a, &renamed);
    EXPECT_EQ(first.warning, QString::fromUtf8(kindsFirstWarning));
    EXPECT_EQ(first.names.descs, a.descs);
}

// The comparison window over the report fixture's ledger, on scripted views.
class CompareTest : public ReportTest {
protected:
    void openCompare(const QString& rules = {}, const QString& lines = reportLines())
    {
        makeLedger(lines);
        start({QStringLiteral("open"), file}, rules);
        ASSERT_FALSE(m->ended());
        ReportParts parts = m->compareParts();
        parts.children = &children;
        parts.openAddLine = [this](std::function<void(const QString&)> tell) {
            ++addLinesOpened;
            tell(QStringLiteral("nochange"));
        };
        ReportViews views;
        views.wbReport[1] = &kindReport;
        views.wbList[1] = &kindList;
        views.wbReport[0] = &typeReport;
        views.wbList[0] = &typeList;
        c = std::make_unique<frmCompare>(std::move(parts), views, cwindow);
        c->setImmediate(true);
        c->setTxtMessageId(0x00c0ffee);
        c->Form_Load();
    }
    // A second ledger beside the first, made by sql after the same lines.
    QString secondLedger(const QString& sql, const QString& lines = reportLines())
    {
        const QString path = dir.filePath(QStringLiteral("other.pkr"));
        testing::makeLedger(path, lines, false, {-2000, 60, " "});
        if (!sql.isEmpty()) {
            store::Connection cn;
            cn.open(path);
            cn.executeRaw(sql);
        }
        return path;
    }
    // The message boxes among the prompts.
    QStringList boxes() const { return prompts().filter(QRegularExpression(QStringLiteral("^msgbox\\|"))); }
    int kindRow(const QString& id) const { return int(c->sums().names.ids.indexOf(id)); }

    struct Calls : CompareWindowCalls {
        QString focus;
        QList<std::pair<int, bool>> charts;
        void shownChanged() override {}
        void setFocus(const QString& name) override { focus = name; }
        void drawCharts(int which, bool animate) override { charts.append({which, animate}); }
    } cwindow;
    std::unique_ptr<frmCompare> c;
};

TEST_F(CompareTest, AFileAgainstItselfOverTheSameRangeDiffersByNothing)
{
    openCompare();
    EXPECT_TRUE(c->shown().visible);
    EXPECT_TRUE(c->shown().typesEnabled);
    EXPECT_EQ(c->ranges()[0].fromDate, QDate(2025, 1, 1));
    EXPECT_EQ(c->ranges()[1].toDate, QDate(2025, 4, 2));
    // No warning: the second file is the first.
    EXPECT_TRUE(prompts().isEmpty()) << prompts().join(QLatin1Char('\n')).toStdString();
    const SumSet& k = c->sums().kinds;
    EXPECT_EQ(k.sum(kindRow(QStringLiteral("+1")), 0), 1200);
    EXPECT_EQ(k.sum(kindRow(QStringLiteral("+1")), 1), 1200);
    EXPECT_EQ(k.sum(kindRow(QStringLiteral("-2")), 0), 450);
    EXPECT_EQ(c->sums().opening[0], 10000);
    EXPECT_EQ(c->sums().credit[1], -5000);
    for (const QString& page : {kindReport.source(), typeReport.source()}) {
        EXPECT_FALSE(page.contains(QStringLiteral("inf"), Qt::CaseInsensitive));
        EXPECT_FALSE(page.contains(QStringLiteral("nan"), Qt::CaseInsensitive));
        EXPECT_FALSE(page.contains(QStringLiteral("negdifftd>")));
        EXPECT_FALSE(page.contains(QStringLiteral("posdifftd>")));
        EXPECT_TRUE(page.contains(QStringLiteral("<td class=nodifftd>0</td>")));
        EXPECT_TRUE(page.contains(QStringLiteral("<td class=percenttd>0%</td>")));
        EXPECT_TRUE(page.contains(QStringLiteral("id=tdTitle")));
    }
    // The amount cells carry the period's colour and index.
    EXPECT_TRUE(kindReport.source().contains(
        QStringLiteral("class=sumtd bgcolor=#c1c1ff><a class=sumlink href=javascript:event_handler(this,3,'+1',1,1)>1,200</a>")));
    EXPECT_EQ(cwindow.charts.last(), (std::pair<int, bool>{1, true}));
}

TEST_F(CompareTest, APeriodWithNothingAgainstOneWithLinesShowsMinusAHundred)
{
    openCompare();
    // February has no lines; January has a sale of 1,000.
    c->txtFrom_Change(0, QStringLiteral("1/2/2025"));
    c->txtTo_Change(0, QStringLiteral("28/2/2025"));
    c->txtFrom_Change(1, QStringLiteral("1/1/2025"));
    c->txtTo_Change(1, QStringLiteral("31/1/2025"));
    c->cmdShow_Click();
    const QString page = kindReport.source();
    // Empty amount, less income in the first period (red), minus a hundred.
    EXPECT_TRUE(page.contains(QStringLiteral("event_handler(this,3,'+1',0,0)></a>")));
    EXPECT_TRUE(page.contains(QStringLiteral("<td class=negdifftd>-1,000</td>")));
    EXPECT_TRUE(page.contains(QStringLiteral("<td class=percenttd>-100%</td>")));
    // Each period's own opening balance: before February the January lines count.
    EXPECT_EQ(c->sums().opening[0], 10700);
    EXPECT_EQ(c->sums().opening[1], 10000);
    // A second period of 0 against the first's 300 of suppliers: no percent.
    c->cmdLikeOther_Click(0);
    c->txtFrom_Change(1, QStringLiteral("1/2/2025"));
    c->txtTo_Change(1, QStringLiteral("28/2/2025"));
    c->cmdShow_Click();
    EXPECT_TRUE(kindReport.source().contains(QStringLiteral("<td class=negdifftd>300</td>")));
    EXPECT_FALSE(kindReport.source().contains(QStringLiteral("%</td>")));
}

TEST_F(CompareTest, RangesTurnedRoundOrNoDatesAreRefusedByPeriod)
{
    openCompare();
    c->txtFrom_Change(1, QStringLiteral("1/3/2025"));
    c->txtTo_Change(1, QStringLiteral("1/2/2025"));
    c->cmdShow_Click();
    EXPECT_EQ(cwindow.focus, QStringLiteral("txtTo1"));
    c->txtFrom_Change(0, QStringLiteral("32/1/2025"));
    c->cmdShow_Click();
    EXPECT_EQ(cwindow.focus, QStringLiteral("txtFrom0"));
    // Past the lines: both ends move, told by the period's word.
    c->txtFrom_Change(0, QStringLiteral("1/1/2024"));
    c->txtFrom_Change(1, QStringLiteral("1/1/2025"));
    c->txtTo_Change(1, QStringLiteral("1/1/2026"));
    c->cmdShow_Click();
    EXPECT_EQ(prompts(), (QStringList{
                             QStringLiteral("msgbox|שגיאה|תאריך הסיום השני מאוחר מתאריך ההתחלה|OK"),
                             QStringLiteral("msgbox|שגיאה|התאריך אינו חוקי|OK"),
                             QStringLiteral("msgbox|אזהרה|תאריך ההתחלה הראשון יוזז קדימה אל היום הראשון בו יש תנועות: 31/12/2024|OK"),
                             QStringLiteral("msgbox|אזהרה|תאריך הסיום השני יוזז אחורה אל היום האחרון בו יש תנועות: 02/04/2025|OK"),
                         }));
    EXPECT_EQ(c->proposedSaveName(),
              QStringLiteral("השוואה לפי סיווגים תקופה א- shop 31.12.2024-02.04.2025 תקופה ב- shop 01.01.2025-02.04.2025"));
}

TEST_F(CompareTest, ASecondFileWithMoreKindsAndOtherTypes)
{
    const QString other = secondLedger(QStringLiteral(
        "INSERT INTO category (id, category) SELECT '+' || (SELECT count(*) FROM category WHERE id LIKE '+%'), 'ייעוץ';"
        "INSERT INTO category (id, category) SELECT '-' || (SELECT count(*) FROM category WHERE id LIKE '-%'), 'פרסום';"
        "UPDATE Types SET TypeName='אחר' WHERE TypeNum=7;"
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(20,'-2','2025-02-03','9','משכורת',0,900,2,' ','ללא צבע');"));
    openCompare(QStringLiteral("בחר קובץ שני => ") + other + QLatin1Char('\n'));
    const int before = int(c->sums().names.nCategories());
    c->cmdBrowse_Click(1);
    EXPECT_EQ(c->fileNames()[1], other);
    EXPECT_EQ(c->shown().txtFileName[1], QStringLiteral("other"));
    EXPECT_EQ(c->sums().names.nCategories(), before + 2);
    EXPECT_TRUE(c->sums().names.descs.contains(QStringLiteral("פרסום")));
    EXPECT_FALSE(c->shown().typesEnabled);
    EXPECT_EQ(c->shown().optKindsOrTypes, 1);
    EXPECT_EQ(boxes(), (QStringList{
                             QStringLiteral("msgbox|אזהרה|") + QString::fromUtf8(kindsLargerWarning) + QStringLiteral("|OK"),
                             QStringLiteral("msgbox|אזהרה|") + QString::fromUtf8(typesDifferWarning) + QStringLiteral("|OK"),
                         }));
    c->cmdShow_Click();
    EXPECT_EQ(c->sums().kinds.sum(kindRow(QStringLiteral("-2")), 1), 1350);
    EXPECT_EQ(c->sums().credit[1], -2000);
    // An amount of the second period opens that file over its range.
    kindReport.sendEvent(QStringLiteral("3 -2 1 1"));
    ASSERT_EQ(children.started.size(), 1);
    EXPECT_EQ(children.started[0], QStringLiteral("detail 00c0ffee 3 01/01/2025 02/04/2025 -2 ") + other);
    EXPECT_FALSE(c->shown().enabled);
    c->txtMessage_Change(QStringLiteral("nochange"));
    kindReport.sendEvent(QStringLiteral("3 +3 0 0"));
    EXPECT_EQ(addLinesOpened, 1);
    EXPECT_EQ(children.started.size(), 1);
}

TEST_F(CompareTest, AFileMissingOrNoLedgerLeavesThePeriodAsItWas)
{
    const QString junk = dir.filePath(QStringLiteral("junk.pkr"));
    {
        QFile f(junk);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("this is no database at all, only words");
    }
    const QString empty = dir.filePath(QStringLiteral("empty.pkr"));
    {
        store::Connection cn;
        cn.open(empty, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(QStringLiteral("CREATE TABLE other (a INTEGER);"));
    }
    openCompare(QStringLiteral("בחר קובץ ראשון => ") + junk + QStringLiteral("\nבחר קובץ שני => ") + empty + QLatin1Char('\n'));
    c->cmdBrowse_Click(0);
    c->cmdBrowse_Click(1);
    EXPECT_EQ(c->fileNames()[0], file);
    EXPECT_EQ(c->fileNames()[1], file);
    const QStringList p = boxes();
    ASSERT_EQ(p.size(), 2);
    EXPECT_TRUE(p[0].startsWith(QStringLiteral("msgbox|שגיאה|לא ניתן לקרוא את הקובץ ")));
    EXPECT_TRUE(p[1].startsWith(QStringLiteral("msgbox|שגיאה|לא ניתן לקרוא את הקובץ ")));
    // The file removed under a built comparison: told, and the window stays.
    QFile::remove(file);
    c->guarded(QStringLiteral("cmdShow_Click"), [this] { c->cmdShow_Click(); });
    EXPECT_FALSE(c->shown().busy);
}

TEST_F(CompareTest, UntickingAKindTakesItsBarsOutAndRedrawsAtOnce)
{
    openCompare();
    const ChartSeries before = kindChartSeries(c->sums(), false);
    ASSERT_EQ(before.labels.size(), 1);   // only sales have income
    EXPECT_EQ(before.a[0], 1200);
    const int n = c->sums().names.nCategories();
    // The list row of kind +1 (incomes come after the expenses).
    kindList.sendEvent(QStringLiteral("knd%1").arg(n / 2 + 1));
    EXPECT_TRUE(kindChartSeries(c->sums(), false).labels.isEmpty());
    EXPECT_FALSE(c->sums().kinds.showIncomesTotal);
    EXPECT_EQ(c->sums().kinds.periodNet[0], -750);
    EXPECT_EQ(cwindow.charts.last(), (std::pair<int, bool>{1, false}));
    EXPECT_TRUE(kindReport.source().contains(QStringLiteral("<tr id=r%1 style=\"display:none\">").arg(n / 2 + 2 + 1)));
    // The types' chart is by category.
    const ChartSeries out = typeChartSeries(c->sums(), true);
    EXPECT_FALSE(out.labels.isEmpty());
}

} // namespace pelkor::testing
