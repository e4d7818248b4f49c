// Forecast lines in a working run with scripted dialogs: the subtraction,
// the forecast dialog and F4, and the pick page against its golden file.
// The pick list is clicked by the rule "wb=<row>".
#include "ledger/Tzefi.h"
#include "ledger/TzefiDialogs.h"

#include "file/Display.h"
#include "ledger/GridFixture.h"
#include "seams/store/Connection.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;

namespace {

// The zeroing line is id 2 (05/03/2025). Forecasts: id 3 on the zeroing
// date, id 4 income after it, id 5 expense with relate 99. Real lines:
// id 6 income 300, id 7 expense 100.
const QString ledgerLines = QStringLiteral(
    "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo,relate,IndTzefi) VALUES "
    "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע',0,0),"
    "(2,'-1','2025-03-05','12','ספק',0,300,2,'ZZZZZZZZZZ','ללא צבע',0,0),"
    "(3,'+2','2025-03-05','13','צפי ישן',500,0,1,' ','ללא צבע',0,1),"
    "(4,'+3','2025-04-01','14','צפי לקוח',200,0,1,' ','ללא צבע',0,1),"
    "(5,'-4','2025-04-10','15','צפי ספק',0,800,2,' ','ללא צבע',99,1),"
    "(6,'+1','2025-04-15','16','תקבול',300,0,1,' ','ללא צבע',0,0),"
    "(7,'-2','2025-04-20','17','תשלום',0,100,2,' ','ללא צבע',0,0);");

class Forecasts : public GridTest {
protected:
    frmMain& open(const QString& rules = {}) { return openOn(ledgerLines, rules); }
    // The grid row of the line with this id.
    int rowOf(const QString& id)
    {
        const auto& lines = m->ledger().lines;
        for (size_t i = 0; i < lines.size(); ++i)
            if (lines[i].Id == id)
                return int(i) + 1;
        return -1;
    }
    QString stored(const QString& columns, int id)
    {
        return query(QStringLiteral("SELECT %1 FROM pelkor WHERE id = %2").arg(columns).arg(id));
    }
    QStringList messages()
    {
        QStringList out;
        for (const QString& p : prompts())
            if (p.startsWith(QLatin1String("msgbox|")))
                out << p.section(QLatin1Char('|'), 1, 2);
        return out;
    }
    bool forecastLook(int row, int col) const
    {
        const grid::CellStyle s = m->mainGrid().msfgMain.style(row, col);
        return s.bold && s.fore == colors::forecastSum;
    }
};

} // namespace

TEST_F(Forecasts, OnlyLaterForecastsOfTheSameDirectionAreOfferedAndNoneGoesBelowZero)
{
    open(QStringLiteral("frmSubtractFromTzefi => wb=0"));
    // Income: the forecast on the zeroing date and the expense one are not offered.
    const auto income = m->tzefi().collectTzefiLines(true);
    ASSERT_EQ(income.size(), 1u);
    EXPECT_EQ(income[0].id, QStringLiteral("4"));
    ASSERT_EQ(m->tzefi().collectTzefiLines(false).size(), 1u);

    // 300 from a forecast of 200: 0, not -100; the real line is not touched.
    ASSERT_TRUE(forecastLook(rowOf(QStringLiteral("4")), colIn));
    go(rowOf(QStringLiteral("6")), colDetail);
    m->cmdSubtractFromTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("[in], IndTzefi"), 4), QStringLiteral("0|1"));
    EXPECT_EQ(stored(QStringLiteral("[in]"), 6), QStringLiteral("300"));
    // After the reload the forecast shows 0.00 without the forecast look.
    EXPECT_FALSE(forecastLook(rowOf(QStringLiteral("4")), colIn));

    // An expense takes from the expense forecast, which keeps its relate.
    go(rowOf(QStringLiteral("7")), colOut);
    m->cmdSubtractFromTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("out, relate"), 5), QStringLiteral("700|99"));
}

TEST_F(Forecasts, TheDialogMarksARealLineAndAForecastIsNotTakenFromAForecast)
{
    open(QStringLiteral("frmTzefi => chkTzefiLine=1;chkHashavshevet=1"));
    // A forecast cannot be taken from a forecast.
    go(rowOf(QStringLiteral("4")), colDetail);
    m->cmdSubtractFromTzefi_Click();
    EXPECT_EQ(messages().last(), QStringLiteral("שגיאה|אי-אפשר להוריד שורת צפי משורת צפי"));

    // Marking a real line: forecast and relate 99, blue bold sum, yellow kind.
    const int r6 = rowOf(QStringLiteral("6"));
    go(r6, colDetail);
    m->cmdTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("IndTzefi, relate"), 6), QStringLiteral("1|99"));
    EXPECT_TRUE(forecastLook(r6, colIn));
    EXPECT_EQ(g().style(r6, colKind).back, colors::relateKind);
}

TEST_F(Forecasts, ClearingTheBoxClearsRelate99Too)
{
    open(QStringLiteral("frmTzefi => chkTzefiLine=0"));
    const int r5 = rowOf(QStringLiteral("5"));
    go(r5, colDetail);
    m->cmdTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("IndTzefi, relate"), 5), QStringLiteral("0|0"));
    EXPECT_FALSE(forecastLook(r5, colOut));
    EXPECT_NE(g().style(r5, colKind).back, colors::relateKind);
    // Then no expense forecast is left to take from.
    go(rowOf(QStringLiteral("7")), colOut);
    m->cmdSubtractFromTzefi_Click();
    EXPECT_EQ(messages().last(), QStringLiteral("שגיאה|אין שורות צפי הוצאה"));
    EXPECT_EQ(stored(QStringLiteral("out"), 7), QStringLiteral("100"));
}

TEST_F(Forecasts, F4TogglesRelateOnRealLinesAndIsSilentOnForecasts)
{
    open();
    const int r6 = rowOf(QStringLiteral("6"));
    go(r6, colDetail);
    ed().msfgMain_KeyDown(Qt::Key_F4, Qt::NoModifier);
    EXPECT_EQ(stored(QStringLiteral("relate"), 6), QStringLiteral("-1"));
    EXPECT_EQ(g().style(r6, colKind).back, colors::relateKind);
    EXPECT_EQ(messages().last(), QStringLiteral("פלקור|שורה זו תלקח בחשבון בסינכרון הפלקור מול תנועות יבוא חיצוני"));
    ed().msfgMain_KeyDown(Qt::Key_F4, Qt::NoModifier);
    EXPECT_EQ(stored(QStringLiteral("relate"), 6), QStringLiteral("0"));
    EXPECT_NE(g().style(r6, colKind).back, colors::relateKind);
    EXPECT_EQ(messages().last(), QStringLiteral("פלקור|שורה זו לא תלקח בחשבון בסינכרון הפלקור מול תנועות יבוא חיצוני"));

    // A forecast, plain or with relate 99: nothing changes and nothing is said.
    const qsizetype said = messages().size();
    for (const char* id : {"4", "5"}) {
        go(rowOf(QString::fromLatin1(id)), colDetail);
        ed().msfgMain_KeyDown(Qt::Key_F4, Qt::NoModifier);
    }
    EXPECT_EQ(query(QStringLiteral("SELECT relate FROM pelkor WHERE id IN (4,5) ORDER BY id")), QStringLiteral("0;99"));
    EXPECT_EQ(messages().size(), said);
}

TEST_F(Forecasts, TheUnsavedNewLineGivesItsSumAndStaysUnsaved)
{
    open(QStringLiteral("frmSubtractFromTzefi => wb=0\nfrmTzefi => chkTzefiLine=1"));
    ed().msfgMain_KeyDown(Qt::Key_Insert, Qt::NoModifier);
    const int last = g().Rows() - 1;
    type(last, colIn, QStringLiteral("150"));
    ASSERT_TRUE(ed().isOnNewLine());

    m->cmdSubtractFromTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("[in]"), 4), QStringLiteral("50"));
    EXPECT_TRUE(m->editState().isThereNewLine);
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("7"));

    // Marked as a forecast: the record carries it, the file is not written.
    m->cmdTzefi_Click();
    EXPECT_TRUE(m->ledger().lines.back().isTzefi);
    ASSERT_NE(g().Col(), colIn);
    EXPECT_TRUE(forecastLook(last, colIn));
    EXPECT_EQ(query(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("7"));
}

TEST_F(Forecasts, ATypeOneChildTakesTheForecastsFromTheFileAnew)
{
    open(QStringLiteral("frmSubtractFromTzefi => wb=1"));
    // Another process adds a forecast the grid has not loaded.
    {
        store::Connection other;
        other.open(file);
        other.execute(QStringLiteral("INSERT INTO pelkor (id,kind,date,confirm,detail,[in],out,TypeNum,zee,memo,relate,IndTzefi) "
                                     "VALUES (8,'+5',#3/20/2025#,'18','צפי חדש',400,0,1,' ','ללא צבע',0,true)"));
    }
    m->instance().progMode = modeNewLines;
    m->instance().newLineDialogType = lineDialogUnconfirmedBank;
    const auto found = m->tzefi().collectTzefiLines(true);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].id + found[1].id, QStringLiteral("84"));   // by date
    EXPECT_EQ(found[0].lineIndex, -1);

    go(rowOf(QStringLiteral("6")), colDetail);
    m->tzefi().cmdSubtractFromTzefi_Click();
    EXPECT_EQ(stored(QStringLiteral("[in]"), 4), QStringLiteral("0"));
    EXPECT_EQ(stored(QStringLiteral("[in]"), 8), QStringLiteral("400"));
}

// The written page byte for byte: Hebrew in windows-1255, a character the
// code page lacks as a reference, markup in a detail as text, the cut
// detail, sums rounded. PELKOR_UPDATE_GOLDEN=1 writes it anew.
TEST(TzefiPage, MatchesItsGoldenFile)
{
    QTemporaryDir dir;
    const std::vector<TzefiCandidate> c{
        {QStringLiteral("4"), QStringLiteral("+3"), QDate(2025, 4, 1), QStringLiteral("שכר דירה"), 1234.5, 3},
        {QStringLiteral("5"), QStringLiteral("-12"), QDate(2025, 4, 10), QStringLiteral("ספק <script>alert(1)</script> & \"בניו\""), 999.49, 4},
        {QStringLiteral("6"), QStringLiteral("+1"), QDate(2025, 12, 31), QStringLiteral("תשלום ללקוח Müller בגין"), 5, 5},
        {QStringLiteral("7"), QStringLiteral("+1"), QDate(2026, 1, 2), QStringLiteral("1234567890123456789012345"), 0.5, 6}};
    frmSubtractFromTzefi dlg(c, tzefiPage(c, QStringLiteral("Arial")), dir.path());
    ASSERT_TRUE(dlg.Form_Load());
    QFile written(dlg.pagePath());
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    const QByteArray bytes = written.readAll();
    const QString golden = QStringLiteral(PELKOR_SOURCE_DIR "/tests/ledger/golden/tempTzefi.htm");
    if (qEnvironmentVariable("PELKOR_UPDATE_GOLDEN") == QLatin1String("1")) {
        QFile out(golden);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    QFile expected(golden);
    ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << "no golden file " << golden.toStdString();
    EXPECT_EQ(bytes, expected.readAll());
}
