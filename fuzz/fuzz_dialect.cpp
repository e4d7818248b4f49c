// Feeds arbitrary text to the dialect translator and then runs it against a
// data file with the program's own schema and a few lines, damaged ones
// among them. A StoreError is the expected answer to nonsense; any other
// exception, a crash or a sanitizer report is a bug.
//
// Every input starts from the same file: whatever the previous input
// created, dropped or changed is put back first, so a finding replays alone.
// A second file beside it is there for IN "<file>" to reach; an input names
// it as "m.pkr" and the harness puts its real path in.
#include "file/Schema.h"
#include "seams/store/Connection.h"
#include "seams/store/Dialect.h"
#include "seams/store/StoreError.h"

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

using namespace pelkor;
using namespace pelkor::store;

namespace {

const char* lines = R"(
INSERT INTO category VALUES ('+0','a'),('-0','b'),('+1','c'),('-1','d'),('+10','e');
INSERT INTO TypesCategories VALUES (1,'in',1),(2,'out',2);
INSERT INTO Types VALUES (1,'t1',1),(2,'t2',2);
INSERT INTO Defaults VALUES (NULL,-5000,90,0,0,'(none)');
INSERT INTO pelkor (kind,date,confirm,detail,"in",out,TypeNum,zee,memo,relate,IndTzefi) VALUES
 ('+1','2025-03-01',' ','x',1,0,1,' ','newline ירוק',0,0),('-1','bad',' ','y',0,'abc',2,'3','m',-1,0),
 ('+10',NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL,NULL),('-0','2025-03-02','7','z',0,'1,234.50-',2,'ZZZZZZZZZZ',' ',99,1);
INSERT INTO mergedBanks VALUES (0,'a',0),(1,'b',-4);
INSERT INTO demoOsh VALUES ('123',11,'2025-03-01','5','deposit',100,0,100,1);
INSERT INTO PARAMETER VALUES ('directory','/tmp');
)";

std::string tempName(const char* stem)
{
    std::string name = std::string("/tmp/") + stem + "_XXXXXX";
    const int fd = mkstemp(name.data());
    if (fd >= 0)
        close(fd);
    std::remove(name.c_str());
    return name;
}

void rawExec(sqlite3* db, const std::string& sql)
{
    char* err = nullptr;
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
        std::fprintf(stderr, "harness setup failed: %s\n", err ? err : "?");
        std::abort();
    }
}

// Drops every table of the file and builds the starting state again.
void reset(Connection& cn, const QString& script)
{
    sqlite3* db = cn.handle();
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_exec(db, "DETACH DATABASE pk_in", nullptr, nullptr, nullptr);
    std::string drops;
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type='table'", -1, &st, nullptr);
    while (sqlite3_step(st) == SQLITE_ROW) {
        std::string name = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
        std::string quoted;
        for (char c : name)
            quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
        drops += "DROP TABLE \"" + quoted + "\";";
    }
    sqlite3_finalize(st);
    rawExec(db, drops);
    rawExec(db, script.toStdString());
}

struct Files {
    Connection ledger;
    Connection merged;
    QString ledgerScript;
    QString mergedScript;
    QString mergedPath;

    Files()
    {
        ledgerScript = schema::dataFileScript() + schema::feedScript({QStringLiteral("demoOsh")})
            + schema::paramsScript()
            + QStringLiteral("CREATE TABLE mergedBanks (\"index\" INTEGER, fileName TEXT, conv DOUBLE);\n")
            + QString::fromUtf8(lines);
        mergedScript = schema::mergeTemplateScript();
        mergedPath = QString::fromStdString(tempName("fuzz_merged"));
        ledger.open(QString::fromStdString(tempName("fuzz_ledger")), Connection::OpenMode::ReadWriteCreate);
        merged.open(mergedPath, Connection::OpenMode::ReadWriteCreate);
    }
};

Files& files()
{
    static Files* f = new Files;
    return *f;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size)
{
    if (size > 4096)
        return 0;
    QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        (void)translate(text);
    } catch (const StoreError&) {
        return 0;
    }
    Files& f = files();
    reset(f.ledger, f.ledgerScript);
    reset(f.merged, f.mergedScript);
    text.replace(QLatin1String("m.pkr"), f.mergedPath);
    try {
        Recordset rs = f.ledger.execute(text);
        for (rs.moveFirst(); !rs.eof(); rs.moveNext())
            for (int i = 0; i < rs.fieldCount(); ++i) {
                (void)rs.field(i).toString();
                (void)rs.field(i).toDouble();
                (void)rs.field(rs.fieldName(i)).toDate();
            }
    } catch (const StoreError&) {
    }
    return 0;
}
