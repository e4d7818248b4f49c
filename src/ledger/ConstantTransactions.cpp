// ConstantTransactions: the generation loop of a recurring transaction.
#include "ledger/ConstantTransactions.h"

#include "base/Format.h"
#include "base/Titles.h"
#include "file/OpenLedger.h"
#include "seams/store/Connection.h"
#include "seams/store/Value.h"
#include "seams/ui/Ui.h"

#include <vector>

namespace pelkor {

namespace {

const QString proc = QStringLiteral("addLines");

// A sum or percent as the store writes a double: in full, no exponent.
QString plain(double x) { return store::Value::real(x).toString(); }

QString boolText(bool b) { return b ? QStringLiteral("true") : QStringLiteral("false"); }

// An empty reference or detail goes as one blank.
QString orBlank(const QString& s) { return s.isEmpty() ? QStringLiteral(" ") : fixString(s); }

// Phase: the rule into ConstantLines; returns its number.
int saveRule(OpenLedger& led, const ConstantRule& r, int typeNum)
{
    const Line& L = r.theLine;
    led.sql.executeSQL(proc, QStringLiteral("INSERT INTO ConstantLines([KIND],[FDate],[TDate],[Steps],[CONFIRM],[DETAIL],"
                                            "[IN],[OUT],[Percent],[TypeNum],[IndTzefi]) Values('%1',%2,%3,'%4','%5','%6',"
                                            "%7,%8,%9,%10,%11)")
                                 .arg(fixString(L.kind), formatDateForSQL(r.FDate), formatDateForSQL(r.TDate),
                                      fixString(r.jump), orBlank(L.confirm), orBlank(L.detail), plain(L.In),
                                      plain(L.out), plain(r.percent))
                                 .arg(typeNum)
                                 .arg(boolText(L.isTzefi)));
    const store::Recordset rs = led.sql.executeSQL(
        proc, QStringLiteral("SELECT [ConstantLineNum] FROM ConstantLines ORDER BY [ConstantLineNum] DESC"));
    return rs.recordCount() > 0 ? int(rs.at(0, 0).toInt()) : -1;
}

} // namespace

QDate stepDate(const QDate& d, const QString& jump)
{
    switch (jumpWords().indexOf(jump)) {
    case 0: return d.addDays(1);
    case 1: return d.addDays(7);
    case 2: return d.addMonths(1);
    case 3: return d.addMonths(2);
    case 4: return d.addMonths(3);
    default: return {};
    }
}

AddLinesOutcome addLines(OpenLedger& led, ui::Ui& ui, const ConstantRule& r)
{
    AddLinesOutcome outcome;
    const Line& L = r.theLine;
    if (L.In == 0 && L.out == 0)
        return outcome;

    // The series first: each line's date and sums.
    struct Step {
        QDate date;
        double in, out;
    };
    std::vector<Step> series;
    bool wrongJump = false;
    const double factor = 1 + r.percent / 100;
    double curIn = L.In, curOut = L.out;
    for (QDate curDate = r.FDate;;) {
        QDate lineDate = curDate;
        if (r.endOfMonth)
            lineDate = QDate(lineDate.year(), lineDate.month(), 1).addMonths(1);
        if (lineDate > r.TDate)
            break;
        if (curDate.dayOfWeek() == Qt::Saturday)
            lineDate = lineDate.addDays(1);
        series.push_back({lineDate, curIn, curOut});
        curDate = stepDate(curDate, r.jump);
        if (!curDate.isValid()) {
            wrongJump = true;
            break;
        }
        curIn *= factor;
        curOut *= factor;
    }
    // A sum grown past what a line holds refuses the whole series.
    for (const Step& s : series) {
        if (isSumTooLarge(s.in) || isSumTooLarge(s.out)) {
            ui.msgBox(sumTooLargeMessage(), errorTitle, ui::Buttons::OK, ui::Icon::Exclamation);
            outcome.result = AddLinesResult::SumTooLarge;
            return outcome;
        }
    }
    if (led.ipusDate.isValid() && r.FDate < led.ipusDate
        && ui.msgBox(QStringLiteral("תאריך ההתחלה שמילאת מוקדם מתאריך האיפוס"), QStringLiteral("אזהרה"),
                     ui::Buttons::OKCancel, ui::Icon::Exclamation)
               == ui::Answer::Cancel) {
        outcome.result = AddLinesResult::Cancelled;
        return outcome;
    }
    const int typeNum = led.catalogue.typeNumOf(L.Type);

    store::Transaction tx(led.cn);
    if (r.saveInDB)
        outcome.ruleNumber = saveRule(led, r, typeNum);
    const QString columns = (r.saveInDB ? QStringLiteral("[ConstantLineNum],") : QString())
        + QStringLiteral("[kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]");
    const QString ruleValue = r.saveInDB ? QString::number(outcome.ruleNumber) + QLatin1Char(',') : QString();
    // The parts of each insert that do not change along the series.
    const QString fixedFront = QStringLiteral("INSERT into %1(%2) Values(%3'%4',").arg(led.linesTable, columns, ruleValue, fixString(L.kind));
    const QString fixedMiddle = QStringLiteral(",'%1','%2',").arg(orBlank(L.confirm), orBlank(L.detail));
    const QString fixedBack = QStringLiteral(",%1,' ','%2',%3)").arg(typeNum).arg(fixString(L.Memo), boolText(L.isTzefi));
    for (const Step& s : series) {
        led.sql.executeSQL(proc, fixedFront + formatDateForSQL(s.date) + fixedMiddle + plain(s.in) + QLatin1Char(',')
                                     + plain(s.out) + fixedBack);
        ++outcome.linesWritten;
    }
    tx.commit();
    outcome.result = AddLinesResult::Written;
    if (wrongJump) {
        ui.msgBox(QStringLiteral("wrong jump"), QStringLiteral("פלקור"));
        outcome.result = AddLinesResult::WrongJump;
    }
    return outcome;
}

} // namespace pelkor
