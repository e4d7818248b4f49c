// Feeds arbitrary text to the dialect translator and then runs it against an
// in-memory data file with the full schema. A StoreError is the expected
// answer to nonsense; any other exception, a crash or a sanitizer report is
// a bug.
#include "seams/store/Connection.h"
#include "seams/store/Dialect.h"
#include "seams/store/StoreError.h"

#include <cstdint>
#include <cstdlib>
#include <cstdio>

using namespace pelkor::store;

namespace {

const char* schema = R"(
CREATE TABLE pelkor (id INTEGER PRIMARY KEY, kind TEXT, date DATE, confirm TEXT, detail TEXT, "in" DOUBLE,
  out DOUBLE, TypeNum INTEGER, zee TEXT, memo TEXT, relate INTEGER, IndTzefi INTEGER, ConstantLineNum INTEGER,
  total DOUBLE);
CREATE TABLE category (id TEXT PRIMARY KEY, category TEXT);
CREATE TABLE Types (TypeNum INTEGER PRIMARY KEY, TypeName TEXT, CategoryNum INTEGER);
CREATE TABLE TypesCategories (CategoryNum INTEGER PRIMARY KEY, CategoryName TEXT, InOut INTEGER);
CREATE TABLE Defaults (Password TEXT, Credit DOUBLE, NDays INTEGER, isAuto INTEGER, iBank INTEGER,
  AccountNum CHARACTER(50));
CREATE TABLE mergedBanks ("index" INTEGER, fileName TEXT, conv DOUBLE);
INSERT INTO category VALUES ('+1','a'),('-1','b'),('+10','c');
INSERT INTO pelkor (kind,date,confirm,detail,"in",out,TypeNum,zee,memo) VALUES
 ('+1','2025-03-01',' ','x',1,0,1,' ','m'),('-1','bad',' ','y',0,'abc',2,'3','m'),('+10',NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL);
INSERT INTO mergedBanks VALUES (3,'a',0);
)";

Connection* db()
{
    static Connection* c = [] {
        auto* cn = new Connection;
        // A file per process in the temporary folder: IN "<file>" and the
        // schema statements need a real file to work on.
        char name[] = "/tmp/fuzz_dialect_XXXXXX";
        const int fd = mkstemp(name);
        if (fd >= 0)
            close(fd);
        std::remove(name);
        cn->open(QString::fromLatin1(name), Connection::OpenMode::ReadWriteCreate);
        return cn;
    }();
    return c;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size)
{
    if (size > 4096)
        return 0;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        (void)translate(text);
    } catch (const StoreError&) {
        return 0;
    }
    Connection* cn = db();
    try {
        // A fresh copy of the schema for every input, so one input's DROP
        // does not decide what the next one sees.
        cn->executeRaw(QStringLiteral(
            "DROP TABLE IF EXISTS pelkor; DROP TABLE IF EXISTS category; DROP TABLE IF EXISTS Types;"
            "DROP TABLE IF EXISTS TypesCategories; DROP TABLE IF EXISTS Defaults; DROP TABLE IF EXISTS mergedBanks;"));
        cn->executeRaw(QString::fromLatin1(schema));
    } catch (const StoreError&) {
        std::abort();
    }
    try {
        Recordset rs = cn->execute(text);
        for (rs.moveFirst(); !rs.eof(); rs.moveNext())
            for (int i = 0; i < rs.fieldCount(); ++i)
                (void)rs.field(i).toString();
    } catch (const StoreError&) {
    }
    // Leave no open transaction or other tables behind.
    try {
        cn->executeRaw(QStringLiteral("ROLLBACK"));
    } catch (const StoreError&) {
    }
    return 0;
}
