// The connection's promises beyond single statements: opening bad files,
// copies that keep numbering themselves, other files through IN "<file>",
// conversions of quoted sums, Null and counts, two connections on a file.
#include "StoreFixture.h"

#include "seams/store/Dialect.h"
#include "seams/store/StoreError.h"

#include <QDir>
#include <QFile>
#include <unistd.h>

namespace pelkor::store::testing {
namespace {

using Kind = StoreError::Kind;

// Runs f, which must throw StoreError of kind k whose text names `names`.
template <class F>
void expectError(F f, Kind k, const QString& names)
{
    try {
        f();
        ADD_FAILURE() << "no StoreError; expected one naming " << names.toStdString();
    } catch (const StoreError& e) {
        EXPECT_EQ(int(e.kind()), int(k)) << e.what();
        EXPECT_TRUE(e.fullText().contains(names)) << e.what();
    }
}

TEST(Open, RefusesMissingNonDatabaseAndReadOnlyFiles)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("none.pkr"));
    Connection cn;
    expectError([&] { cn.open(missing); }, Kind::Open, missing);
    EXPECT_FALSE(cn.isOpen());
    EXPECT_FALSE(QFile::exists(missing)) << "ReadWrite must not create the file";

    const QString text = dir.filePath(QStringLiteral("notes.pkr"));
    {
        QFile f(text);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(4096, 'x'));
    }
    expectError([&] { cn.open(text); }, Kind::Open, text);
    expectError([&] { cn.open(text, Connection::OpenMode::ReadOnly); }, Kind::Open, text);
    EXPECT_FALSE(cn.isOpen());

    const QString ro = dir.filePath(QStringLiteral("ro.pkr"));
    {
        Connection w;
        w.open(ro, Connection::OpenMode::ReadWriteCreate);
        w.executeRaw(QStringLiteral("CREATE TABLE t (a INTEGER); INSERT INTO t VALUES (1);"));
    }
    // A connection that failed to open refuses statements.
    expectError([&] { cn.execute(QStringLiteral("SELECT 1")); }, Kind::Statement, QStringLiteral("SELECT 1"));

    QFile::setPermissions(ro, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    if (geteuid() != 0) {  // root writes anyway
        expectError([&] { cn.open(ro); }, Kind::Open, ro);
    }
    Connection reader;
    reader.open(ro, Connection::OpenMode::ReadOnly);
    EXPECT_EQ(reader.execute(QStringLiteral("SELECT a FROM t")).at(0, 0).toInt(), 1);
}

TEST_F(StoreFile, TwoConnectionsSeeEachOthersCommittedWrites)
{
    Connection other;
    other.open(path);
    other.execute(QStringLiteral("UPDATE pelkor set [relate] = 99 WHERE id = 1"));
    EXPECT_EQ(cn.execute(QStringLiteral("SELECT [relate] FROM pelkor WHERE id=1")).at(0, 0).toInt(), 99);

    Transaction tx(cn);
    cn.execute(QStringLiteral("UPDATE pelkor set kind = '+2' WHERE id = 2"));
    EXPECT_EQ(other.execute(QStringLiteral("SELECT kind FROM pelkor WHERE id=2")).at(0, 0).toString(),
              QStringLiteral("+1"));
    tx.commit();
    EXPECT_EQ(other.execute(QStringLiteral("SELECT kind FROM pelkor WHERE id=2")).at(0, 0).toString(),
              QStringLiteral("+2"));
    // data_version moves for the other connection's commits only.
    const long long seen = cn.dataVersion();
    cn.execute(QStringLiteral("UPDATE pelkor set [relate] = 0 WHERE id = 1"));
    EXPECT_EQ(cn.dataVersion(), seen);
    other.execute(QStringLiteral("UPDATE pelkor set [relate] = 99 WHERE id = 1"));
    EXPECT_NE(cn.dataVersion(), seen);
    EXPECT_EQ(raw(QStringLiteral("PRAGMA journal_mode")), QStringLiteral("wal"));
    other.close();
    cn.close();
    EXPECT_EQ(cn.dataVersion(), -1);
}

// A copy of the file alone, taken while connections hold it between two
// writes, has every committed write; nothing is left beside the file once
// they close.
TEST_F(StoreFile, TheFileAloneHoldsEveryCommittedWrite)
{
    const auto copyHas = [&](const QString& sql) {
        const QString copy = dir.filePath(QStringLiteral("copy.pkr"));
        QFile::remove(copy);
        EXPECT_TRUE(QFile::copy(path, copy));
        sqlite3* db = nullptr;
        sqlite3_open_v2(copy.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
        const QString got = rawOn(db, sql);
        sqlite3_close(db);
        QFile::remove(copy);
        return got;
    };
    Connection other;
    other.open(path);
    cn.execute(QStringLiteral("UPDATE pelkor set detail = 'one' WHERE id = 1"));
    EXPECT_EQ(copyHas(QStringLiteral("SELECT detail FROM pelkor WHERE id = 1")), QStringLiteral("one"));
    other.execute(QStringLiteral("UPDATE pelkor set detail = 'two' WHERE id = 2"));
    {
        Transaction tx(cn);
        cn.execute(QStringLiteral("DELETE FROM pelkor WHERE id = 3"));
        cn.execute(QStringLiteral("INSERT INTO pelkor (kind, detail) VALUES ('+1', 'three')"));
        tx.commit();
    }
    EXPECT_EQ(copyHas(QStringLiteral("SELECT group_concat(detail, ',') FROM pelkor WHERE id IN (1,2) OR id > 6")),
              QStringLiteral("one,two,three"));
    EXPECT_EQ(copyHas(QStringLiteral("SELECT count(*) FROM pelkor WHERE id = 3")), QStringLiteral("0"));
    other.close();
    cn.close();
    EXPECT_EQ(QDir(dir.path()).entryList({QStringLiteral("ledger.pkr-*")}, QDir::Files), QStringList());
}

TEST_F(StoreFile, TransactionRollsBackUnlessCommitted)
{
    {
        Transaction tx(cn);
        cn.execute(QStringLiteral("DELETE FROM pelkor"));
    }
    EXPECT_EQ(raw(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("6"));
}

TEST_F(StoreFile, CopyKeepsTheKeySoInsertsNumberThemselves)
{
    cn.execute(QStringLiteral("DROP TABLE invoiceCategs"));
    const long maxId = long(cn.execute(QStringLiteral("SELECT MAX(id) FROM pelkor")).at(0, 0).toInt());
    cn.execute(QStringLiteral("SELECT * INTO invoiceCategs from pelkor WHERE [id]=%1").arg(maxId));
    cn.execute(QStringLiteral("UPDATE invoiceCategs set detail=' '"));
    cn.execute(QStringLiteral("INSERT INTO invoiceCategs (detail) VALUES ('x')"));
    EXPECT_EQ(raw(QStringLiteral("SELECT id, detail FROM invoiceCategs ORDER BY id")), QStringLiteral("6| ;7|x"));
    EXPECT_EQ(cn.columnType(QStringLiteral("INVOICECATEGS"), QStringLiteral("DATE")), QStringLiteral("DATE"));
    EXPECT_EQ(cn.columnType(QStringLiteral("invoiceCategs"), QStringLiteral("in")), QStringLiteral("DOUBLE"));
    EXPECT_TRUE(cn.tableExists(QStringLiteral("InvoiceCategs")));
    // Copying into a table that exists fails and leaves it as it was.
    expectError([&] { cn.execute(QStringLiteral("SELECT * INTO invoiceCategs from pelkor")); }, Kind::Statement,
                QStringLiteral("SELECT * INTO invoiceCategs"));
    EXPECT_EQ(raw(QStringLiteral("SELECT count(*) FROM invoiceCategs")), QStringLiteral("2"));
}

TEST_F(StoreFile, MergedReportBuildsItsFileThroughInFile)
{
    // Each member file's lines go to the merged file under their own name,
    // marked with the member's place; then the union becomes the lines.
    const QString merged = newFile(QStringLiteral("merged.pkr"), templateSchema());
    const QString member2 = newFile(QStringLiteral("second.pkr"), fullSchema());
    {
        Connection m2;
        m2.open(member2);
        m2.executeRaw(QStringLiteral("INSERT INTO pelkor (id,kind,date,\"in\",out,zee) VALUES "
                                     "(1,'-1','2025-03-01',0,300,' '),(2,'+1','2025-04-01',5,0,' ')"));
        m2.execute(QStringLiteral("SELECT * INTO pelkor2 IN \"%1\" FROM pelkor").arg(merged));
        m2.execute(QStringLiteral("UPDATE pelkor2 IN \"%1\" SET ZEE='2'").arg(merged));
    }
    cn.execute(QStringLiteral("SELECT * INTO pelkor1 IN \"%1\" FROM pelkor").arg(merged));
    cn.execute(QStringLiteral("UPDATE pelkor1 IN \"%1\" SET ZEE='1'").arg(merged));
    cn.execute(QStringLiteral("INSERT INTO Category IN \"%1\" SELECT * FROM Category").arg(merged));

    Connection m;
    m.open(merged);
    const QString cols = QStringLiteral("SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, "
                                        "[relate], IndTzefi FROM pelkor");
    m.execute(QStringLiteral("SELECT * INTO pelkor FROM (%1 UNION %1 UNION %2)")
                  .arg(cols + QLatin1Char('1'), cols + QLatin1Char('2')));
    // UNION drops the repeated member; ids repeat across members and stay.
    EXPECT_EQ(rawOn(m.handle(), QStringLiteral("SELECT count(*), count(DISTINCT id) FROM pelkor")),
              QStringLiteral("8|6"));
    EXPECT_EQ(rawOn(m.handle(), QStringLiteral("SELECT group_concat(zee) FROM (SELECT DISTINCT zee FROM pelkor "
                                                "ORDER BY zee)")),
              QStringLiteral("1,2"));
    EXPECT_EQ(m.columnType(QStringLiteral("pelkor"), QStringLiteral("date")), QStringLiteral("DATE"));
    EXPECT_TRUE(m.execute(QStringLiteral("SELECT min([date]),max([date]) FROM pelkor")).at(0, 1).isDate());

    m.execute(QStringLiteral("DROP TABLE Category"));
    cn.execute(QStringLiteral("SELECT * INTO Category IN \"%1\" FROM Category").arg(merged));
    EXPECT_EQ(rawOn(m.handle(), QStringLiteral("SELECT count(*) FROM category")), QStringLiteral("8"));
    // The attached file is gone again after each statement.
    EXPECT_EQ(raw(QStringLiteral("SELECT count(*) FROM pragma_database_list")), QStringLiteral("1"));

    expectError([&] { cn.execute(QStringLiteral("UPDATE p IN \"/no/such.pkr\" SET zee='1'")); }, Kind::Open,
                QStringLiteral("/no/such.pkr"));
}

TEST_F(StoreFile, QuotedTextsBecomeNumbersAndDatesOrFail)
{
    cn.execute(QStringLiteral("UPDATE pelkor set [in] = '1,234.50' WHERE id = 2"));
    EXPECT_DOUBLE_EQ(cn.execute(QStringLiteral("SELECT [in] FROM pelkor WHERE id=2")).at(0, 0).toDouble(), 1234.5);
    cn.execute(QStringLiteral("UPDATE pelkor set [date] = '15/03/2025' WHERE id = 2"));
    cn.execute(QStringLiteral("INSERT INTO ConstantLines (FDate, TDate, [IN], TypeNum) VALUES ('2025-03-15', "
                              "'1.4.2025', '7.5', '2.5')"));
    EXPECT_EQ(raw(QStringLiteral("SELECT date FROM pelkor WHERE id=2")), QStringLiteral("2025-03-15"));
    EXPECT_EQ(raw(QStringLiteral("SELECT FDate, TDate, \"IN\", TypeNum FROM ConstantLines")),
              QStringLiteral("2025-03-15|2025-04-01|7.5|2"));
    // Positions when there is no column list.
    cn.execute(QStringLiteral("INSERT INTO mergedBanks VALUES ('4', 'x.pkr', '1,000')"));
    EXPECT_EQ(raw(QStringLiteral("SELECT \"index\", typeof(\"index\"), conv FROM mergedBanks WHERE fileName='x.pkr'")),
              QStringLiteral("4|integer|1000.0"));

    const QString bad = QStringLiteral("UPDATE pelkor set out = '12abc' WHERE id = 1");
    expectError([&] { cn.execute(bad); }, Kind::Conversion, bad);
    expectError([&] { cn.execute(QStringLiteral("UPDATE pelkor set [date] = '31/02/2025' WHERE id = 1")); },
                Kind::Conversion, QStringLiteral("31/02/2025"));
    expectError([&] { cn.execute(QStringLiteral("INSERT INTO pelkor ([in]) VALUES ('')")); }, Kind::Conversion,
                QStringLiteral("INSERT INTO pelkor"));
    EXPECT_EQ(raw(QStringLiteral("SELECT out, date FROM pelkor WHERE id=1")), QStringLiteral("300.0|2025-03-01"));
    EXPECT_EQ(raw(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("6"));
}

TEST_F(StoreFile, AColumnAnotherConnectionAddsIsConvertedByItsTypeAtOnce)
{
    // The columns are known between statements; a table changed by another
    // process is read again at the next one.
    cn.execute(QStringLiteral("INSERT INTO mergedBanks VALUES ('4', 'x.pkr', '1,000')"));
    {
        Connection other;
        other.open(path);
        other.executeRaw(QStringLiteral("ALTER TABLE mergedBanks ADD COLUMN rate DOUBLE"));
    }
    cn.execute(QStringLiteral("INSERT INTO mergedBanks ([index], fileName, rate) VALUES ('5', 'y.pkr', '1,5.25')"));
    EXPECT_EQ(raw(QStringLiteral("SELECT rate, typeof(rate) FROM mergedBanks WHERE fileName='y.pkr'")),
              QStringLiteral("15.25|real"));
    const QString bad = QStringLiteral("UPDATE mergedBanks set rate = 'abc'");
    expectError([&] { cn.execute(bad); }, Kind::Conversion, bad);
}

TEST_F(StoreFile, SchemaFailuresTheProgramReliesOn)
{
    expectError([&] { cn.execute(QStringLiteral("ALTER TABLE Defaults ADD isAuto INTEGER")); }, Kind::Statement,
                QStringLiteral("isAuto"));
    expectError([&] { cn.execute(QStringLiteral("DROP TABLE tempPelkor")); }, Kind::Statement,
                QStringLiteral("tempPelkor"));
    expectError([&] { cn.execute(QStringLiteral("SELECT noSuchColumn FROM Defaults")); }, Kind::Statement,
                QStringLiteral("noSuchColumn"));
    expectError([&] { cn.execute(QStringLiteral("SELECT * FROM invoiceCategz")); }, Kind::Statement,
                QStringLiteral("invoiceCategz"));
    cn.execute(QStringLiteral("ALTER TABLE Defaults ADD Extra CHARACTER(50)"));
    EXPECT_EQ(cn.columnType(QStringLiteral("defaults"), QStringLiteral("extra")), QStringLiteral("CHARACTER(50)"));
    EXPECT_EQ(cn.columnType(QStringLiteral("defaults"), QStringLiteral("nothing")), QString());
}

TEST_F(StoreFile, UntranslatableStatementsNameThemselves)
{
    for (const char* s : {"PRAGMA writable_schema=1", "SELECT * FROM pelkor WHERE [date]=#13/45/2025#",
                          "SELECT 'open FROM pelkor", "SELECT [in FROM pelkor", "SELECT * FROM pelkor; DELETE FROM pelkor",
                          "SELECT left(kind) FROM pelkor", "SELECT (1 FROM pelkor", "", "  ;  "}) {
        expectError([&] { cn.execute(QString::fromUtf8(s)); }, Kind::Translate, QString::fromUtf8(s));
    }
    EXPECT_EQ(raw(QStringLiteral("SELECT count(*) FROM pelkor")), QStringLiteral("6"));
}

TEST_F(StoreFile, DamagedRowsComeBackAsTextAndNullStaysNull)
{
    cn.executeRaw(QStringLiteral("INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (7,'+1','32/13/2025','x',NULL)"));
    Recordset rs = cn.execute(QStringLiteral("SELECT date, [in], out, TypeNum, zee FROM pelkor WHERE id=7"));
    ASSERT_EQ(rs.recordCount(), 1);
    EXPECT_TRUE(rs.field(QStringLiteral("DATE")).isText());
    EXPECT_FALSE(rs.field(QStringLiteral("date")).toDate().isValid());
    EXPECT_TRUE(rs.field(QStringLiteral("IN")).isText());
    EXPECT_TRUE(rs.field(QStringLiteral("out")).isNull());
    EXPECT_TRUE(rs.field(QStringLiteral("typenum")).isNull());
    EXPECT_EQ(rs.field(QStringLiteral("zee")).toString(), QString());
    EXPECT_THROW(rs.field(QStringLiteral("nothing")), StoreError);

    Recordset good = cn.execute(QStringLiteral("SELECT date, [in], TypeNum FROM pelkor WHERE id=2"));
    EXPECT_EQ(good.at(0, 0).toDate(), QDate(2025, 3, 1));
    EXPECT_EQ(good.at(0, 1).type(), Value::Type::Double);
    EXPECT_EQ(good.at(0, 2).type(), Value::Type::Integer);
    EXPECT_TRUE(cn.execute(QStringLiteral("SELECT sum([in]) FROM pelkor WHERE id > 99")).at(0, 0).isNull());
}

TEST_F(StoreFile, RecordCountAndCursor)
{
    Recordset rs = cn.execute(QStringLiteral("SELECT id FROM pelkor ORDER BY id"));
    rs.moveLast();
    EXPECT_EQ(rs.field(0).toInt(), 6);
    rs.moveNext();
    EXPECT_TRUE(rs.eof());
    EXPECT_THROW(rs.field(0), StoreError);
    Recordset none = cn.execute(QStringLiteral("SELECT id FROM pelkor WHERE id < 0"));
    EXPECT_TRUE(none.eof());
    EXPECT_EQ(none.fieldCount(), 1);
    EXPECT_EQ(cn.execute(QStringLiteral("UPDATE pelkor SET zee=' '")).recordsAffected(), 6);
}

TEST_F(StoreFile, CintRoundsHalfToEvenAndRefusesText)
{
    Recordset rs = cn.execute(QStringLiteral("SELECT cint(2.5), cint(3.5), cint('7'), cint(-2.5), cint(NULL), "
                                             "cint(' 1,234.6 ')"));
    EXPECT_EQ(rs.at(0, 0).toInt(), 2);
    EXPECT_EQ(rs.at(0, 1).toInt(), 4);
    EXPECT_EQ(rs.at(0, 2).toInt(), 7);
    EXPECT_EQ(rs.at(0, 3).toInt(), -2);
    EXPECT_TRUE(rs.at(0, 4).isNull());
    EXPECT_EQ(rs.at(0, 5).toInt(), 1235);
    expectError([&] { cn.execute(QStringLiteral("SELECT cint('abc')")); }, Kind::Statement,
                QStringLiteral("Type mismatch"));
    expectError([&] { cn.execute(QStringLiteral("SELECT cint(40000)")); }, Kind::Statement,
                QStringLiteral("Overflow"));
}

TEST_F(StoreFile, OnlyDateAndNumberColumnsSortWithoutTheTextOrder)
{
    // The ledger's order sorts its date column as stored; a text column of
    // the same name, made later and by another connection, keeps the text
    // order ('-' below '+', no case).
    EXPECT_EQ(rows(cn.execute(QStringLiteral("SELECT id FROM pelkor ORDER BY date, Left(kind,1) DESC, "
                                             "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, pelkor.id"))),
              QStringLiteral("2;1;4;3;5;6"));
    {
        Connection other;
        other.open(path);
        other.executeRaw(QStringLiteral("CREATE TABLE notes (date TEXT, n INTEGER);"
                                        "INSERT INTO notes VALUES ('b',1),('A',2),('+',3),('-',4),('a',5)"));
    }
    EXPECT_EQ(rows(cn.execute(QStringLiteral("SELECT n FROM notes ORDER BY date, n"))), QStringLiteral("4;3;2;5;1"));
    EXPECT_EQ(rows(cn.execute(QStringLiteral("SELECT n FROM notes ORDER BY notes.date DESC, n"))),
              QStringLiteral("1;2;5;3;4"));
    const std::string withHint =
        translate(QStringLiteral("SELECT id FROM pelkor ORDER BY date, Left(kind,1) DESC, pelkor.id, p.[in], x"),
                  [](const QString& table, const QString& column) {
                      return (table.isEmpty() || table == QLatin1String("pelkor"))
                          && (column == QLatin1String("date") || column == QLatin1String("id"));
                  })
            .sql.toStdString();
    EXPECT_EQ(withHint, "SELECT id FROM pelkor ORDER BY date, substr(kind, 1, 1) COLLATE JETTEXT DESC, pelkor . id, "
                        "p . \"in\" COLLATE JETTEXT, x COLLATE JETTEXT");
}

} // namespace
} // namespace pelkor::store::testing
