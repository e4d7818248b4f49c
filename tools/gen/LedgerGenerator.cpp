#include "gen/LedgerGenerator.h"

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QFile>
#include <sqlite3.h>

#include <cmath>
#include <random>
#include <vector>

namespace pelkor::generator {

namespace {

struct Template { const char* kind; int type; const char* detail; double low, high; };

// What a day of a small business is made of. Kinds and types agree with the
// side of the sum: "+" kinds carry income types (group 1), "-" kinds expense.
const Template templates[] = {
    {"+1", 4, "הפקדת שיקים מלקוחות", 500, 12000},
    {"+1", 3, "העברה מלקוח", 800, 25000},
    {"+1", 5, "זיכוי כרטיסי אשראי", 200, 6000},
    {"+2", 3, "תשלום עבור עבודה", 1000, 18000},
    {"+3", 4, "גבייה מלקוח ותיק", 300, 9000},
    {"+8", 1, "הכנסה שונה", 50, 900},
    {"-1", 7, "ספק חומרי גלם", 400, 15000},
    {"-1", 6, "העברה לספק", 600, 20000},
    {"-7", 8, "עמלות בנק", 15, 180},
    {"-8", 9, "משיכת מזומן לקופה", 200, 2000},
    {"-8", 2, "הוצאות משרד", 40, 1500},
};

const char* const customers[] = {"כהן בע״מ", "לוי ושות׳", "מזרחי שיווק", "אברהם הפקות", "דוד מערכות",
                                 "פרץ מסחר", "ביטון יבוא", "אוחיון בנייה", "חדד תקשורת", "עזרא מזון"};

} // namespace

void generateLedger(const QString& path, const GeneratorOptions& o)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    store::Connection cn;
    cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
    cn.executeRaw(schema::dataFileScript());
    schema::fillStandardCatalogue(cn);
    cn.executeRaw(QStringLiteral("INSERT INTO Defaults VALUES (Null, -50000, 90, 0, 0, '(none)');"));

    std::mt19937 rng(o.seed);
    const QDate first = o.lastDate.addYears(-o.years);
    std::vector<QDate> days;
    for (QDate d = first; d <= o.lastDate; d = d.addDays(1)) {
        const int dow = d.dayOfWeek();   // 5 Friday, 6 Saturday
        if (dow == 6 || (dow == 5 && d.day() % 2))
            continue;
        days.push_back(d);
    }
    const double perDay = double(o.lines) / double(days.size());
    const QDate ipus = o.lastDate.addDays(-21);

    sqlite3* db = cn.handle();
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db,
                       "INSERT INTO pelkor (kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo,relate,IndTzefi)"
                       " VALUES (?,?,?,?,?,?,?,?,?,0,?)",
                       -1, &st, nullptr);
    static const char* const colours[] = {"ללא צבע", "ללא צבע", "ללא צבע", "ללא צבע", "אדום", "סגול", "ירוק"};
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    long written = 0;
    long ipusRow = -1;
    double carry = 0;
    for (size_t di = 0; di < days.size() && written < o.lines; ++di) {
        const QDate d = days[di];
        carry += perDay;
        long n = long(carry);
        if (di + 1 == days.size())
            n = o.lines - written;
        carry -= double(n);
        const QByteArray iso = d.toString(Qt::ISODate).toUtf8();
        for (long k = 0; k < n && written < o.lines; ++k, ++written) {
            const Template& t = templates[rng() % std::size(templates)];
            const double sum = std::round((t.low + unit(rng) * (t.high - t.low)) * 100.0) / 100.0;
            const bool income = t.kind[0] == '+';
            QByteArray detail = QByteArray(t.detail) + " - " + customers[rng() % std::size(customers)];
            const QByteArray confirm = (rng() % 3) ? QByteArray::number(100000 + int(rng() % 900000)) : QByteArray(" ");
            sqlite3_bind_text(st, 1, t.kind, -1, SQLITE_STATIC);
            sqlite3_bind_text(st, 2, iso.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(st, 3, confirm.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(st, 4, detail.constData(), -1, SQLITE_TRANSIENT);
            sqlite3_bind_double(st, 5, income ? sum : 0.0);
            sqlite3_bind_double(st, 6, income ? 0.0 : sum);
            sqlite3_bind_int(st, 7, t.type);
            const bool isIpus = ipusRow < 0 && d >= ipus;
            if (isIpus)
                ipusRow = written;
            sqlite3_bind_text(st, 8, isIpus ? schema::ipusMark : " ", -1, SQLITE_STATIC);
            sqlite3_bind_text(st, 9, colours[rng() % std::size(colours)], -1, SQLITE_STATIC);
            sqlite3_bind_int(st, 10, d > o.lastDate.addDays(-7) && (rng() % 4 == 0) ? 1 : 0);
            sqlite3_step(st);
            sqlite3_reset(st);
        }
    }
    sqlite3_finalize(st);
    // Damaged rows as an old or broken file may hold them: text where a date
    // or a sum belongs.
    for (int i = 0; i < o.damagedRows; ++i) {
        const char* const forms[] = {
            "INSERT INTO pelkor (kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES ('+1','לא תאריך',' ','שורה פגומה',100,0,1,' ','ללא צבע')",
            "INSERT INTO pelkor (kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES ('-1','2020-05-05',' ','סכום פגום',0,'abc',2,' ','ללא צבע')",
            "INSERT INTO pelkor (kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES ('+2','2021-06-06',Null,'הכנסה פגומה','x12',0,1,' ','ללא צבע')",
        };
        sqlite3_exec(db, forms[i % 3], nullptr, nullptr, nullptr);
    }
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    cn.executeRaw(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE);"));
    cn.close();
}

} // namespace pelkor::generator
