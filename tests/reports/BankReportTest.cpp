// The merged bank report: merge.ini, rates and their dialog, the day
// arrays, a file's sums with its zeroing line, the page's events, and the
// window over real files of which some can't take part.
#include "reports/BankReport.h"
#include "reports/MergedFile.h"
#include "reports/ReportFixture.h"
#include "reports/frmBankReportMain.h"
#include "reports/frmConvert.h"
#include "seams/platform/ProfileFile.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace pelkor::testing {

using namespace pelkor::reports;

namespace {

// A ui that records its boxes and answers nothing else.
struct BoxesUi : ui::Ui {
    QStringList boxes;
    ui::Answer msgBox(const QString& text, const QString& title, ui::Buttons, ui::Icon) override
    {
        boxes << title + QStringLiteral(": ") + text;
        return ui::Answer::OK;
    }
    std::optional<QString> inputBox(const QString&, const QString&, const QString&) override { return std::nullopt; }
    QStringList openFileDialog(const ui::FileDialogOptions&) override { return {}; }
    QString saveFileDialog(const ui::FileDialogOptions&) override { return {}; }
    bool runDialog(ui::Dialog&) override { return false; }
    void windowReady(const QString&, const QString&, std::function<void(const QString&)>) override {}
};

} // namespace

TEST(MergeIni, WritingEndsTheListAndReadingStopsAtTheFirstGap)
{
    QTemporaryDir dir;
    const QString ini = dir.filePath(QStringLiteral("merge.ini"));
    const QStringList three = {QStringLiteral("/נתונים/חשבון עסקי ראשי.pkr"), QStringLiteral("/a/b.pkr"), QStringLiteral("/a/c d.pkr")};
    ASSERT_TRUE(writeMergeIni(ini, three));
    EXPECT_EQ(readMergeIni(ini), three);
    // A shorter list ends at its empty key; the old third key stays unread.
    ASSERT_TRUE(writeMergeIni(ini, {three[1]}));
    EXPECT_EQ(readMergeIni(ini), QStringList{three[1]});
    EXPECT_EQ(platform::ProfileFile(ini).readString(mergeSection, QStringLiteral("file3")), three[2]);

    // A gap ends the list; 999 keys are read and a thousandth is not.
    platform::ProfileFile gaps(dir.filePath(QStringLiteral("gaps.ini")));
    gaps.writeString(mergeSection, QStringLiteral("file1"), QStringLiteral("/x1.pkr"));
    gaps.writeString(mergeSection, QStringLiteral("file2"), QStringLiteral("/x2.pkr"));
    gaps.writeString(mergeSection, QStringLiteral("file4"), QStringLiteral("/x4.pkr"));
    EXPECT_EQ(readMergeIni(gaps.path()).size(), 2);
    QStringList many;
    for (int i = 1; i <= 1000; ++i)
        many << QStringLiteral("/f%1.pkr").arg(i);
    const QString full = dir.filePath(QStringLiteral("full.ini"));
    {
        QFile f(full);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        QByteArray text = "[files]\n";
        for (int i = 0; i < many.size(); ++i)
            text += QStringLiteral("file%1=%2\n").arg(i + 1).arg(many[i]).toUtf8();
        f.write(text);
    }
    const QStringList read = readMergeIni(full);
    ASSERT_EQ(read.size(), maxMergeKeys);
    EXPECT_EQ(read.last(), QStringLiteral("/f999.pkr"));
}

TEST(BankRates, TextsRefusalsAndTheConversionDialog)
{
    EXPECT_EQ(conversionText(0), QStringLiteral("ללא המרה"));
    EXPECT_EQ(conversionText(3.5), QStringLiteral("מוכפל ב: 3.5"));
    EXPECT_EQ(conversionText(-4), QStringLiteral("מחולק ב: 4"));
    double r = 0;
    QString why;
    for (const char* bad : {"", "abc", "1e300", "3x"}) {
        EXPECT_FALSE(parseRate(QString::fromUtf8(bad), r, why)) << bad;
        EXPECT_EQ(why, QStringLiteral("יש למלא מספר")) << bad;
    }
    for (const char* bad : {"0", "-3", "0.0"}) {
        EXPECT_FALSE(parseRate(QString::fromUtf8(bad), r, why)) << bad;
        EXPECT_EQ(why, QStringLiteral("יש למלא מספר חיובי")) << bad;
    }
    EXPECT_FALSE(parseRate(QStringLiteral("1") + QString(300, QLatin1Char('0')), r, why));
    ASSERT_TRUE(parseRate(QStringLiteral("1,234.5"), r, why));
    EXPECT_EQ(r, 1234.5);

    BoxesUi ui;
    frmConvert divided(ui, -4);
    EXPECT_TRUE(ui::Dialog::isOn(divided.control(QStringLiteral("optDiv"))));
    EXPECT_EQ(divided.control(QStringLiteral("txtDiv")), QStringLiteral("4.0000"));
    EXPECT_TRUE(divided.control(QStringLiteral("txtMult")).isEmpty());
    // Typing in the other box chooses its option; a zero rate is refused.
    divided.setControl(QStringLiteral("txtMult"), QStringLiteral("0"));
    EXPECT_TRUE(ui::Dialog::isOn(divided.control(QStringLiteral("optMult"))));
    divided.click(QStringLiteral("cmdOK"));
    EXPECT_FALSE(divided.isClosed());
    EXPECT_EQ(ui.boxes, QStringList{QStringLiteral("שגיאה: יש למלא מספר חיובי")});
    divided.setControl(QStringLiteral("txtMult"), QStringLiteral("2.5"));
    divided.click(QStringLiteral("cmdOK"));
    ASSERT_TRUE(divided.accepted());
    EXPECT_EQ(divided.rate(), 2.5);
    frmConvert toDivisor(ui, 0);
    toDivisor.setControl(QStringLiteral("optDiv"), QStringLiteral("1"));
    toDivisor.setControl(QStringLiteral("txtDiv"), QStringLiteral("3"));
    toDivisor.click(QStringLiteral("cmdOK"));
    EXPECT_EQ(toDivisor.rate(), -3);
}

TEST(BankDaysTest, ADivisorAndAMultiplierReachBalancesAndExcessesButNotTheTotalCredit)
{
    BankFileSums a, b;
    a.opening = 4000;
    a.credit = -8000;
    a.dayIns = {400, 0, 0};
    a.dayOuts = {0, 0, 800};
    b.opening = 100;
    b.credit = -1000;
    b.dayIns = {0, 50, 0};
    b.dayOuts = {0, 0, 0};
    const BankDays d = calcBankDays({a, b}, {-4, 2}, QDate(2025, 3, 1), QDate(2025, 3, 3));
    ASSERT_EQ(d.nReportDays, 3);
    // Divided by 4: 1,000 + 100 on the first day, 200 out on the third.
    EXPECT_EQ(d.in(0, 0), 100);
    EXPECT_EQ(d.balance(0, 0), 1100);
    EXPECT_EQ(d.balance(2, 0), 900);
    EXPECT_EQ(d.excess(2, 0), 900 + 2000);       // the credit divided too
    // Multiplied by 2.
    EXPECT_EQ(d.balance(0, 1), 200);
    EXPECT_EQ(d.balance(1, 1), 300);
    EXPECT_EQ(d.excess(1, 1), 300 + 2000);
    EXPECT_EQ(d.dayTotalIns[1], 100);
    EXPECT_EQ(d.dayTotalBalances[2], 900 + 300);
    EXPECT_EQ(d.dayTotalExcesses[2], 2900 + 2300);
    // The chart's credit line adds the credits as stored.
    EXPECT_EQ(d.totalCredit, -9000);
    const BankChartData c = bankChartData(d);
    EXPECT_EQ(c.labels, (QStringList{QStringLiteral("1/3/25"), QStringLiteral("2/3/25"), QStringLiteral("3/3/25")}));
    EXPECT_EQ(c.separate, (std::vector<double>{1100, 1100, 900, 200, 300, 300}));
    EXPECT_EQ(c.totalCredit, -9000);
    // The sixteenth series colour is the first, as a number, times 0.7.
    EXPECT_EQ(fileColor(0), rgb(0, 0, 255));
    EXPECT_EQ(fileColor(15), std::uint32_t(std::lround(double(rgb(0, 0, 255)) * 0.7)));
}

TEST(BankEvents, ConversionCellsAndWrongFieldCounts)
{
    const BankEvent cnv = parseBankEvent(QStringLiteral("cnv 2"));
    EXPECT_EQ(cnv.kind, BankEvent::Kind::Conversion);
    EXPECT_EQ(cnv.f, 2);
    const BankEvent cell = parseBankEvent(QStringLiteral("1 14 0 1"));
    EXPECT_EQ(cell.kind, BankEvent::Kind::Cell);
    EXPECT_EQ(cell.t, 1);
    EXPECT_EQ(cell.d, 14);
    EXPECT_TRUE(cell.nonZero);
    EXPECT_FALSE(parseBankEvent(QStringLiteral("0 3 1 0")).nonZero);
    EXPECT_EQ(parseBankEvent(QStringLiteral("1 2 3")).kind, BankEvent::Kind::WrongFieldCount);
    EXPECT_EQ(parseBankEvent(QStringLiteral("1 2 3 4 5")).kind, BankEvent::Kind::WrongFieldCount);
    EXPECT_EQ(parseBankEvent(QStringLiteral("x 2 3 1")).kind, BankEvent::Kind::Invalid);
    EXPECT_EQ(parseBankEvent(QString()).kind, BankEvent::Kind::None);
}

// A ledger whose zeroing line lies inside the range: March's third day.
inline QString rangeLines()
{
    return QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(1,'+0','2025-02-20','1','יתרה',1000,0,1,' ','ללא צבע'),"
        "(2,'-1','2025-02-28','2','ספק',0,300,2,' ','ללא צבע'),"
        "(3,'+1','2025-03-01','3','מכירה',500,0,1,' ','ללא צבע'),"
        "(4,'+1','2025-03-01','4','מכירה',20,0,1,' ','ללא צבע'),"
        "(5,'-1','2025-03-03','5','ספק',0,100,2,'ZZZZZZZZZZ','ללא צבע'),"
        "(6,'+1','2025-03-09','6','אחרי',999,0,1,' ','ללא צבע'),"
        "(7,'+1','לא תאריך','7','פגום',5,0,1,' ','ללא צבע');");
}

TEST(BankFile, ItsDaysOpeningAndAZeroingLineInsideTheRangeReachThePage)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("a.pkr"));
    makeLedger(file, rangeLines(), false, {-5000, 60, " "});
    store::Connection cn;
    cn.open(file);
    const BankFileSums s = readBankFile(cn, QDate(2025, 3, 1), QDate(2025, 3, 5));
    EXPECT_EQ(s.opening, 700);
    EXPECT_EQ(s.credit, -5000);
    EXPECT_EQ(s.dayIns, (std::vector<double>{520, 0, 0, 0, 0}));
    EXPECT_EQ(s.dayOuts, (std::vector<double>{0, 0, 100, 0, 0}));
    EXPECT_EQ(s.ipusDayPlus1, 3);
    // The zeroing line before the range colours no row.
    EXPECT_EQ(readBankFile(cn, QDate(2025, 3, 4), QDate(2025, 3, 5)).ipusDayPlus1, 0);

    const BankDays d = calcBankDays({s}, {0}, QDate(2025, 3, 1), QDate(2025, 3, 5));
    const QString page = bankReportPage(d, BankPageHead{{QStringLiteral("a")}, true, {}});
    const auto rowOf = [&page](int day) {
        const qsizetype at = page.indexOf(QStringLiteral("<tr id=r%1 ").arg(day));
        return page.mid(at, page.indexOf(QStringLiteral("</tr>"), at) - at);
    };
    EXPECT_EQ(rowOf(2).count(QStringLiteral("bgcolor=#ffcccc")), 4);
    EXPECT_EQ(rowOf(1).count(QStringLiteral("bgcolor=#ffcccc")), 0);
    // A day without lines: zeros, and a plain balance, not a link; the
    // third day's expense and its balance are links.
    EXPECT_TRUE(rowOf(1).contains(QStringLiteral("event_handler(this,0,1,0,0)")));
    EXPECT_FALSE(rowOf(1).contains(QStringLiteral("event_handler(this,2,")));
    EXPECT_TRUE(rowOf(2).contains(QStringLiteral("event_handler(this,1,2,0,1)>100<")));
    EXPECT_TRUE(rowOf(2).contains(QStringLiteral("event_handler(this,2,2,0,1)>1,120<")));
    // One screen copy and one printed page of two groups.
    EXPECT_EQ(page.count(QStringLiteral("id=tst ")), 4);
    EXPECT_TRUE(page.contains(QStringLiteral("<style id=stl>.incExp {display: }</style>")));
}

// The window over files in a folder, on a scripted page; the main window's
// run lends its parts.
class BankReportWindowTest : public ReportTest {
protected:
    void SetUp() override
    {
        ReportTest::SetUp();
        makeLedger(reportLines());
        a = dir.filePath(QStringLiteral("חשבון א.pkr"));
        b = dir.filePath(QStringLiteral("b.pkr"));
        testing::makeLedger(a, rangeLines(), false, {-5000, 60, " "});
        testing::makeLedger(b, reportLines(), false, {-1000, 60, " "});
    }
    void open(const QStringList& listed, const QString& rules = {})
    {
        start({QStringLiteral("open"), file}, rules);
        ASSERT_FALSE(m->ended());
        BankReportParts parts = m->bankReportParts();
        parts.report.children = &children;
        parts.report.today = QDate(2025, 3, 4);
        parts.openAddLine = [this](const QString& f, std::function<void(const QString&)> tell) {
            addLineFiles << f;
            tell(QStringLiteral("nochange"));
        };
        parts.report.closed = [this] { ++closedCalls; };
        parts.templatePath = dir.filePath(QStringLiteral("merge.pkr"));
        if (!QFile::exists(parts.templatePath)) {
            store::Connection t;
            t.open(parts.templatePath, store::Connection::OpenMode::ReadWriteCreate);
            t.executeRaw(schema::mergeFileTemplateScript());
        }
        ini = parts.mergeIniPath;
        writeMergeIni(ini, listed);
        r = std::make_unique<frmBankReportMain>(std::move(parts), page, window);
        r->setImmediate(true);
        r->setTxtMessageId(0x00c0ffee);
        r->Form_Load();
    }
    struct Window : BankWindowCalls {
        int charts = 0, closes = 0;
        void shownChanged() override {}
        void drawCharts() override { ++charts; }
        void closeWindow() override { ++closes; }
    } window;
    web::ScriptedWebView page;
    std::unique_ptr<frmBankReportMain> r;
    QString a, b, ini;
    QStringList addLineFiles;
};

TEST_F(BankReportWindowTest, MissingDamagedAndForeignFilesAreLeftOutWithTheirReasonAndTheRestStands)
{
    const QString missing = dir.filePath(QStringLiteral("gone.pkr"));
    const QString damaged = dir.filePath(QStringLiteral("damaged.pkr"));
    const QString foreign = dir.filePath(QStringLiteral("foreign.pkr"));
    {
        QFile f(damaged);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(4096, 'x'));
        store::Connection p;
        p.open(foreign, store::Connection::OpenMode::ReadWriteCreate);
        p.executeRaw(schema::paramsScript());
    }
    open({a, missing, damaged, foreign, b});
    EXPECT_EQ(prompts().filter(QStringLiteral("אזהרה")).size(), 1);
    EXPECT_TRUE(prompts().join(QLatin1Char('\n')).contains(QStringLiteral("קובץ זה מופיע בקובץ התצורה אולם אינו קיים:")))
        << prompts().join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(prompts().join(QLatin1Char('\n')).contains(missing));
    // The missing file leaves the ini; the others stay listed.
    EXPECT_EQ(readMergeIni(ini), (QStringList{a, damaged, foreign, b}));
    EXPECT_EQ(r->includedFiles(), (QStringList{a, b}));
    EXPECT_EQ(r->leftOut(), (QStringList{QStringLiteral("damaged: הקובץ פגום ולא ניתן לקרוא אותו"),
                                         QStringLiteral("foreign: הקובץ אינו קובץ פלקור")}));
    EXPECT_EQ(r->shown().lstFiles[1], QStringLiteral("damaged (לא נכלל: הקובץ פגום ולא ניתן לקרוא אותו)"));
    EXPECT_TRUE(r->shown().reportCommandsEnabled);
    EXPECT_EQ(r->reportTitle(), QStringLiteral("חשבון א,b"));
    // The page stands on the two good files: 1/3 to 3/5, the zeroing line's
    // day marked in the first file only.
    EXPECT_TRUE(page.source().contains(QStringLiteral("id=divLeftOut")));
    EXPECT_EQ(r->days().nReportDays, 64);
    EXPECT_EQ(r->days().balance(0, 0), 1220);
    EXPECT_EQ(r->days().ipusDayPlus1, (std::vector<int>{3, 0}));
    EXPECT_EQ(page.notifications(), 0);
    EXPECT_TRUE(page.navigations().last().endsWith(QStringLiteral("bankReport.htm")));
}

TEST_F(BankReportWindowTest, ClicksOpenTheDaysLinesAConversionRebuildsAndAWrongEventIsTold)
{
    open({a, b});
    ASSERT_EQ(r->includedFiles().size(), 2);
    // An expense of the third day in the first file: a detail child.
    page.sendEvent(QStringLiteral("1 2 0 1"));
    ASSERT_EQ(children.started.size(), 1);
    EXPECT_EQ(children.started[0], QStringLiteral("detail 00c0ffee 1 03/03/2025 0.0000 ") + a);
    EXPECT_FALSE(r->shown().taskPaneEnabled);
    EXPECT_TRUE(r->txtMessage_Change(QStringLiteral("nochange")));
    EXPECT_TRUE(r->shown().taskPaneEnabled);
    // An empty income: the add-line dialog on that file.
    page.sendEvent(QStringLiteral("0 1 1 0"));
    EXPECT_EQ(addLineFiles, QStringList{b});
    page.sendEvent(QStringLiteral("1 2 3"));
    EXPECT_TRUE(prompts().last().contains(QStringLiteral("error in split")));

    // The second file divided by 2 through its link's dialog.
    const double before = r->days().balance(10, 1);
    ASSERT_NE(before, 0);
    r.reset();
    open({a, b}, QStringLiteral("המרת מטבעות => optDiv=1;txtDiv=2\n"));
    page.sendEvent(QStringLiteral("cnv 1"));
    EXPECT_EQ(r->fileConvs(), (std::vector<double>{0, -2}));
    EXPECT_EQ(r->days().balance(10, 1), before / 2);
    EXPECT_TRUE(page.source().contains(QStringLiteral("מחולק ב: 2")));
    page.sendEvent(QStringLiteral("2 10 1 1"));
    EXPECT_TRUE(children.started.last().startsWith(QStringLiteral("detail 00c0ffee 2 11/03/2025 -2.0000 ")));
}

TEST_F(BankReportWindowTest, TheListRefusesATwiceAddedFileAndATurnedRoundRange)
{
    open({a}, QStringLiteral("בחר קובץ/קבצים => ") + b + QLatin1Char(';') + a + QLatin1Char('\n'));
    r->clickControl(QStringLiteral("cmdAdd"));
    EXPECT_EQ(r->fileList(), (QStringList{a, b}));
    EXPECT_TRUE(prompts().join(QLatin1Char('\n')).contains(QStringLiteral("כבר נמצא ברשימה")));
    EXPECT_EQ(r->includedFiles().size(), 2);
    r->txtFrom_Change(QStringLiteral("10/04/2025"));
    r->txtTo_Change(QStringLiteral("01/04/2025"));
    r->clickControl(QStringLiteral("cmdShow"));
    EXPECT_TRUE(prompts().last().contains(QStringLiteral("תאריך הסיום מאוחר מתאריך ההתחלה")));
    EXPECT_EQ(r->days().fromDate, QDate(2025, 3, 1));
    // Removing every file goes back to the first page.
    r->lstFiles_Click({0, 1});
    r->clickControl(QStringLiteral("cmdRemove"));
    EXPECT_TRUE(r->fileList().isEmpty());
    EXPECT_TRUE(r->shown().initialPage);
    EXPECT_FALSE(r->shown().cmdShowEnabled);
}

TEST_F(BankReportWindowTest, ASummaryStartsAMergedInstanceOnAFileOfEveryLine)
{
    open({a, b});
    r->setConversion(1, 3);
    r->clickControl(QStringLiteral("cmdWeekReport"));
    const QString merged = r->mergedFile();
    ASSERT_TRUE(QFile::exists(merged));
    EXPECT_EQ(children.started.last(), QStringLiteral("merged ktrpw 01/03/2025 03/05/2025 00c0ffee ") + merged);
    EXPECT_FALSE(r->shown().taskPaneEnabled);
    EXPECT_EQ(queryRows(merged, QStringLiteral("SELECT zee, count(*) FROM pelkor GROUP BY zee ORDER BY zee")), QStringLiteral("0|7;1|6"));
    EXPECT_EQ(queryRows(merged, QStringLiteral("SELECT [index], fileName, conv FROM mergedBanks ORDER BY 1")),
              QStringLiteral("0|חשבון א|0;1|b|3"));
    EXPECT_NE(queryRows(merged, QStringLiteral("SELECT count(*) FROM category")), QStringLiteral("0"));
    EXPECT_NE(queryRows(merged, QStringLiteral("SELECT count(*) FROM Types")), QStringLiteral("0"));
    // Its answer gives the pane back and rebuilds; closing takes the files away.
    EXPECT_TRUE(r->txtMessage_Change(QStringLiteral("closed")));
    EXPECT_TRUE(r->shown().taskPaneEnabled);
    r->Form_Unload();
    EXPECT_FALSE(QFile::exists(merged));
    EXPECT_FALSE(QFile::exists(r->pagePath()));
    EXPECT_EQ(closedCalls, 1);
}

} // namespace pelkor::testing
