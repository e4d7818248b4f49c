#include "gen/DemoLedger.h"

#include "file/Schema.h"
#include "base/Format.h"
#include "seams/store/Connection.h"

#include <QFile>

#include <cmath>
#include <random>

namespace pelkor::generator {

namespace {

struct Writer {
    store::Connection& cn;
    std::mt19937& rng;

    int ref() { return 10000 + int(rng() % 90000); }
    double around(double v, double spread)
    {
        std::uniform_real_distribution<double> u(1.0 - spread, 1.0 + spread);
        return std::round(v * u(rng) * 100.0) / 100.0;
    }
    // One line: a "+" kind puts the sum in "in", a "-" kind in "out".
    void line(const QDate& d, const char* kind, int type, const QString& detail, double sum,
              const QString& confirm = {}, const char* memo = "ללא צבע", int relate = 0, bool tzefi = false)
    {
        const bool income = kind[0] == '+';
        cn.execute(QStringLiteral("INSERT INTO pelkor ([kind],[date],[confirm],[detail],[in],[out],[TypeNum],[zee],"
                                  "[memo],[relate],[IndTzefi]) VALUES ('%1',%2,'%3','%4',%5,%6,%7,' ','%8',%9,%10)")
                       .arg(QLatin1String(kind), formatDateForSQL(d), confirm.isEmpty() ? QStringLiteral(" ") : confirm,
                            fixString(detail))
                       .arg(income ? sum : 0.0, 0, 'f', 2)
                       .arg(income ? 0.0 : sum, 0, 'f', 2)
                       .arg(type)
                       .arg(QString::fromUtf8(memo))
                       .arg(relate)
                       .arg(tzefi ? QStringLiteral("true") : QStringLiteral("false")));
    }
};

bool workingDay(const QDate& d)
{
    return d.dayOfWeek() != 6 && d.dayOfWeek() != 5;   // Friday and Saturday closed
}

} // namespace

void generateDemoLedger(const QString& path, const QDate& today)
{
    for (const char* s : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(s));
    store::Connection cn;
    cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
    cn.executeRaw(schema::dataFileScript());
    schema::fillStandardCatalogue(cn);
    cn.executeRaw(QStringLiteral("INSERT INTO Defaults VALUES (Null, -40000, 90, 1, 99, '(none)');"
                                 "INSERT INTO invoiceCategs (id, detail) VALUES (1, ' ');"));
    std::mt19937 rng(unsigned(today.toJulianDay()));
    Writer w{cn, rng};
    store::Transaction tx(cn);

    const QDate first = today.addYears(-1).addDays(1);
    const QStringList customers{QStringLiteral("כהן הפקות"), QStringLiteral("עיריית חולון"), QStringLiteral("מזרחי שיווק"),
                                QStringLiteral("גן ילדים הדקל"), QStringLiteral("לוי אדריכלים"), QStringLiteral("בית ספר אורט")};
    const QStringList suppliers{QStringLiteral("נייר ישראל"), QStringLiteral("דיו וצבע בע״מ"), QStringLiteral("שליחויות מהיר")};
    w.line(first, "+0", 1, QStringLiteral("יתרת פתיחה"), 18500.00);
    const QDate loanDay = first.addMonths(3);
    for (QDate d = first; d <= today.addDays(30); d = d.addDays(1)) {
        const bool ahead = d > today;
        const int day = d.day();
        if (day == 1) {
            if (!ahead) {
                w.line(d, "-2", 6, QStringLiteral("משכורות - עובדים"), w.around(21400, 0.04), QString::number(w.ref()));
            } else {
                w.line(d, "-2", 6, QStringLiteral("משכורות - צפי"), 21500, {}, "ללא צבע", 0, true);
            }
        }
        if (day == 5)
            w.line(d, "-3", 8, QStringLiteral("שכר דירה - בית הדפוס"), 6800, {}, "ללא צבע", 0, ahead);
        if (day == 15) {
            w.line(d, "-4", 6, QStringLiteral("מע״מ לתקופה"), w.around(7900, 0.25), QString::number(w.ref()), "אדום", -1, ahead);
            w.line(d, "-4", 8, QStringLiteral("מקדמות מס הכנסה"), 2350, {}, "ללא צבע", 0, ahead);
        }
        if (d == loanDay)
            w.line(d, "+4", 3, QStringLiteral("הלוואה לרכישת מכונת דפוס"), 85000, QString::number(w.ref()), "סגול");
        if (d > loanDay && day == 10)
            w.line(d, "-5", 8, QStringLiteral("החזר הלוואה - מכונת דפוס"), 3150, {}, "ללא צבע", 0, ahead);
        // The machine is paid three days before the loan arrives: the account
        // runs past its credit line for those days.
        if (d == loanDay.addDays(-3))
            w.line(d, "-1", 7, QStringLiteral("מכונת דפוס דיגיטלית"), 84500, QString::number(w.ref()), "סגול");
        if (ahead) {
            if (workingDay(d) && d.dayOfWeek() == 2)
                w.line(d, "+3", 4, QStringLiteral("גבייה צפויה - ") + customers[int(rng() % customers.size())],
                       w.around(9000, 0.3), {}, "ירוק", 99, true);
            continue;
        }
        if (!workingDay(d))
            continue;
        // The day's receipts: cheques and cards most days, a transfer now and then.
        // A busy autumn and a slow summer.
        const double season = 1.0 + 0.2 * std::cos(2.0 * M_PI * (d.month() - 10) / 12.0);
        const int sales = 1 + int(rng() % 2);
        for (int k = 0; k < sales; ++k) {
            const QString who = customers[int(rng() % customers.size())];
            switch (rng() % 3) {
            case 0: w.line(d, "+1", 4, QStringLiteral("הפקדת שיקים - ") + who, w.around(1850 * season, 0.6), QString::number(w.ref())); break;
            case 1: w.line(d, "+1", 5, QStringLiteral("זיכוי כרטיסי אשראי"), w.around(1250 * season, 0.5)); break;
            default: w.line(d, "+2", 3, QStringLiteral("העברה מלקוח - ") + who, w.around(2600 * season, 0.5), QString::number(w.ref())); break;
            }
        }
        if (rng() % 3 == 0) {
            const QString who = suppliers[int(rng() % suppliers.size())];
            w.line(d, "-1", 7, QStringLiteral("ספק - ") + who, w.around(2400, 0.6), QString::number(w.ref()),
                   rng() % 5 == 0 ? "ירוק" : "ללא צבע");
        }
        if (day == 2 || day == 16)
            w.line(d, "-6", 8, QStringLiteral("עמלות בנק"), w.around(45, 0.4));
        if (rng() % 9 == 0)
            w.line(d, "-8", 9, QStringLiteral("משיכת מזומן לקופה קטנה"), 500);
    }
    // The zeroing line: the last line of a day three weeks back.
    QDate ipus = today.addDays(-21);
    while (!workingDay(ipus))
        ipus = ipus.addDays(-1);
    auto rs = cn.execute(QStringLiteral("SELECT id FROM pelkor WHERE [date]<=%1 ORDER BY %2")
                             .arg(formatDateForSQL(ipus), QLatin1String(schema::lineOrder)));
    rs.moveLast();
    cn.execute(QStringLiteral("UPDATE pelkor set zee = '%1' WHERE id = %2")
                   .arg(QLatin1String(schema::ipusMark), rs.field(0).toString()));
    tx.commit();
    cn.executeRaw(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE);"));
    cn.close();
}

} // namespace pelkor::generator
