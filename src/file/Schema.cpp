// Creation scripts for data files, the parameter database, the merge
// template and bank feeds. See Schema.h for what each table means.
#include "file/Schema.h"

#include "seams/store/Connection.h"

#include <QFile>
#include <QFileInfo>

#include <functional>

namespace pelkor::schema {

namespace {

// The columns of the ledger's line tables. Every copy made by SELECT * INTO
// gets the same layout, so one definition serves pelkor and invoiceCategs.
const char* const lineTableColumns =
    "(id INTEGER PRIMARY KEY, kind TEXT, date DATE, confirm TEXT, detail TEXT,"
    " \"in\" DOUBLE, out DOUBLE, TypeNum INTEGER, zee TEXT, memo TEXT,"
    " relate INTEGER, IndTzefi BOOLEAN, ConstantLineNum INTEGER, total DOUBLE)";

QString catalogueTables()
{
    return QStringLiteral(
        "CREATE TABLE category (id TEXT PRIMARY KEY, category TEXT);\n"
        "CREATE TABLE TypesCategories (CategoryNum INTEGER PRIMARY KEY, CategoryName TEXT, InOut INTEGER);\n"
        "CREATE TABLE Types (TypeNum INTEGER PRIMARY KEY, TypeName TEXT, CategoryNum INTEGER);\n");
}

QString lineTable(const char* name)
{
    return QStringLiteral("CREATE TABLE %1 %2;\n").arg(QLatin1String(name), QLatin1String(lineTableColumns));
}

QString constantLinesTable()
{
    return QStringLiteral(
        "CREATE TABLE ConstantLines (ConstantLineNum INTEGER PRIMARY KEY, KIND TEXT, FDate DATE,"
        " TDate DATE, Steps TEXT, CONFIRM TEXT, DETAIL TEXT, \"IN\" DOUBLE, OUT DOUBLE,"
        " Percent DOUBLE, TypeNum INTEGER, IndTzefi BOOLEAN);\n");
}

const char* const defaultsTable =
    "CREATE TABLE Defaults (Password TEXT, Credit DOUBLE, NDays INTEGER, isAuto INTEGER,"
    " iBank INTEGER, AccountNum CHARACTER(50));\n";

QString commonTables()
{
    return lineTable("pelkor") + catalogueTables() +
           constantLinesTable();
}

} // namespace

QString dataFileScript()
{
    return commonTables() + lineTable("invoiceCategs") + QLatin1String(defaultsTable);
}

QString oldDataFileScript()
{
    return commonTables() + QStringLiteral("CREATE TABLE Defaults (Password TEXT, Credit DOUBLE);\n");
}

QString paramsScript()
{
    return QStringLiteral("CREATE TABLE PARAMETER (PARAMETER TEXT PRIMARY KEY, T TEXT);\n");
}

QString mergeTemplateScript()
{
    return QStringLiteral("CREATE TABLE mergedBanks (\"index\" INTEGER, fileName TEXT, conv DOUBLE);\n") +
           catalogueTables();
}

QString mergeFileTemplateScript()
{
    return mergeTemplateScript() + constantLinesTable() + lineTable("invoiceCategs") + QLatin1String(defaultsTable)
        + QStringLiteral("INSERT INTO Defaults VALUES (NULL, 0, 90, 0, 0, '(none)');\n");
}

QStringList bankFeedTables()
{
    // The twelve banks' feed tables in bank order; three banks share poalimOsh.
    return {QStringLiteral("poalimOsh"), QStringLiteral("leumiOsh"), QStringLiteral("discountOsh"),
            QStringLiteral("mercantileOsh"), QStringLiteral("mizrahiOsh"), QStringLiteral("beinleumiOsh"),
            QStringLiteral("otsarOsh"), QStringLiteral("igudOsh"), QStringLiteral("arabOsh")};
}

QString feedScript(const QStringList& feedTables)
{
    QString s;
    for (const QString& t : feedTables)
        s += QStringLiteral("CREATE TABLE %1 (accountNum TEXT, transactionID INTEGER, date DATE, confirm TEXT,"
                            " description TEXT, \"in\" DOUBLE, out DOUBLE, balance DOUBLE, part INTEGER);\n")
                 .arg(t);
    s += QStringLiteral("CREATE TABLE main (accountNum TEXT, description TEXT);\n");
    return s;
}

void fillStandardCatalogue(store::Connection& cn)
{
    // Kind pairs from 0 up with no gap. 0 is the kind the system gives its own
    // balancing and rounding lines.
    struct Pair { const char* in; const char* out; };
    static const Pair kinds[] = {
        {"איזון ועיגול", "איזון ועיגול"},
        {"מכירות", "ספקים וחומרים"},
        {"שירותים ועבודות", "משכורות"},
        {"גבייה מלקוחות", "שכר דירה ואחזקה"},
        {"הלוואות שהתקבלו", "מיסים ומע״מ"},
        {"החזרי מס", "החזר הלוואות"},
        {"העברות בין חשבונות", "העברות בין חשבונות"},
        {"ריבית וזיכויים", "עמלות וריבית"},
        {"הכנסות אחרות", "הוצאות אחרות"},
    };
    int n = 0;
    for (const Pair& p : kinds) {
        cn.execute(QStringLiteral("INSERT INTO category (id, category) VALUES ('+%1', '%2')")
                       .arg(n).arg(QString::fromUtf8(p.in)));
        cn.execute(QStringLiteral("INSERT INTO category (id, category) VALUES ('-%1', '%2')")
                       .arg(n).arg(QString::fromUtf8(p.out)));
        ++n;
    }
    cn.execute(QStringLiteral("INSERT INTO TypesCategories (CategoryNum, CategoryName, InOut) VALUES (1, 'תקבולים', 1)"));
    cn.execute(QStringLiteral("INSERT INTO TypesCategories (CategoryNum, CategoryName, InOut) VALUES (2, 'תשלומים', 0)"));
    struct Type { int num; const char* name; int group; };
    static const Type types[] = {
        {1, "תקבול כללי", 1},       {2, "תשלום כללי", 2},
        {3, "העברה בנקאית נכנסת", 1}, {4, "הפקדת שיקים", 1},
        {5, "כרטיסי אשראי", 1},      {6, "העברה בנקאית יוצאת", 2},
        {7, "שיקים יוצאים", 2},      {8, "הוראת קבע", 2},
        {9, "משיכת מזומן", 2},
    };
    for (const Type& t : types)
        cn.execute(QStringLiteral("INSERT INTO Types (TypeNum, TypeName, CategoryNum) VALUES (%1, '%2', %3)")
                       .arg(t.num).arg(QString::fromUtf8(t.name)).arg(t.group));
}

namespace {

// Builds a database beside path and renames it into place at the end, so a
// failure never leaves a half-made file under the user's name.
void buildThenRename(const QString& path, const std::function<void(store::Connection&)>& fill)
{
    if (QFileInfo::exists(path))
        throw store::StoreError(store::StoreError::Kind::Open, QStringLiteral("הקובץ כבר קיים"), path);
    const QString building = path + QStringLiteral(".new");
    auto removeBuilding = [&] {
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(building + QLatin1String(suffix));
    };
    removeBuilding();
    try {
        store::Connection cn;
        cn.open(building, store::Connection::OpenMode::ReadWriteCreate);
        store::Transaction tx(cn);
        fill(cn);
        tx.commit();
        // Left with a rollback journal: a file that is only read (the
        // parameters) then gets no log files beside it; a working run's
        // connection puts a ledger back in WAL mode when it opens it.
        cn.executeRaw(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE); PRAGMA journal_mode=DELETE;"));
        cn.close();
    } catch (...) {
        removeBuilding();
        throw;
    }
    QFile::remove(building + QStringLiteral("-wal"));
    QFile::remove(building + QStringLiteral("-shm"));
    if (!QFile::rename(building, path)) {
        QFile::remove(building);
        throw store::StoreError(store::StoreError::Kind::Open, QStringLiteral("לא ניתן ליצור את הקובץ"), path);
    }
}

} // namespace

void createLedger(const QString& path, const QDate& today)
{
    buildThenRename(path, [&](store::Connection& cn) {
        cn.executeRaw(dataFileScript());
        fillStandardCatalogue(cn);
        cn.execute(QStringLiteral("INSERT INTO Defaults (Password, Credit, NDays, isAuto, iBank, AccountNum)"
                                  " VALUES (Null, 0, 90, 0, 0, '(none)')"));
        cn.execute(QStringLiteral(
                       "INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[relate],[IndTzefi])"
                       " Values('+0',#%1/%2/%3#,' ','יתרה התחלתית',0,0,1,'ZZZZZZZZZZ','ללא צבע',0,false)")
                       .arg(today.month()).arg(today.day()).arg(today.year()));
        cn.execute(QStringLiteral(
            "INSERT INTO invoiceCategs ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo])"
            " SELECT [kind],[date],[confirm],' ',[In],[out],[TypeNum],' ',[memo] FROM pelkor"));
    });
}

void createParams(const QString& path, const QString& directory, const QString& currentFile)
{
    buildThenRename(path, [&](store::Connection& cn) {
        cn.executeRaw(paramsScript());
        cn.execute(QStringLiteral("INSERT INTO PARAMETER (PARAMETER, T) VALUES ('directory', '%1')").arg(directory));
        cn.execute(QStringLiteral("INSERT INTO PARAMETER (PARAMETER, T) VALUES ('CURRENTFILE', '%1')").arg(currentFile));
    });
}

} // namespace pelkor::schema
