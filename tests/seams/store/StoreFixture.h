// A data file with the full schema and a handful of lines, in a temporary
// folder, for the store's tests. Raw reads go straight to SQLite so that the
// tests check what the store wrote, not what it reads back.
#pragma once

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace pelkor::store::testing {

// The tables of a current data file, exactly as the program creates them,
// plus the feed, parameter and merged-report tables that some statements
// read, in the same file so that one connection reaches them all.
inline QString fullSchema()
{
    return schema::dataFileScript() + schema::feedScript({QStringLiteral("demoOsh"), QStringLiteral("poalimOsh")})
        + schema::paramsScript()
        + QStringLiteral("CREATE TABLE mergedBanks (\"index\" INTEGER, fileName TEXT, conv DOUBLE);\n");
}

// Lines chosen so that the ledger order has something to do: +10 and +2 on
// one date, - kinds before + kinds in id order, an ipus line.
inline const char* sampleData()
{
    return R"(
INSERT INTO category VALUES ('+0','balance in'),('-0','balance out'),('+1','sales'),('-1','rent'),
  ('+2','service'),('-2','salaries'),('+10','grants'),('-10','tax');
INSERT INTO TypesCategories VALUES (1,'incomes',1),(2,'expenses',2);
INSERT INTO Types VALUES (1,'income',1),(2,'expense',2),(7,'rent',2);
INSERT INTO Defaults VALUES (NULL,-5000,90,0,0,'(none)');
INSERT INTO pelkor (id,kind,date,confirm,detail,"in",out,TypeNum,zee,memo,relate,IndTzefi,total) VALUES
 (1,'-1','2025-03-01','100','rent',0,300,7,' ','ללא צבע',0,0,0),
 (2,'+1','2025-03-01',' ','opening',1000,0,1,' ','ללא צבע',0,0,0),
 (3,'+10','2025-03-02',' ','grant',50,0,1,' ','אדום',0,0,0),
 (4,'+2','2025-03-02','7','service',20,0,1,' ','ירוק',0,0,0),
 (5,'-2','2025-03-15',' ','salary',0,400,2,'ZZZZZZZZZZ','ללא צבע',0,0,0),
 (6,'+1','2025-03-20',' ','forecast',70,0,1,' ','ללא צבע',0,1,0);
INSERT INTO mergedBanks VALUES (1,'a.pkr',0),(2,'b.pkr',2);
INSERT INTO demoOsh VALUES ('123',11,'2025-03-01','5','deposit',100,0,100,1),('124',12,'2025-03-02','6','fee',0,5,95,1);
INSERT INTO main VALUES ('123','current');
INSERT INTO PARAMETER VALUES ('directory','/home/u/pkr'),('CURRENTFILE','/home/u/pkr/a.pkr');
INSERT INTO invoiceCategs (id,detail) VALUES (1,' ');
)";
}

// The merged-report template: the tables a merged file starts with.
inline QString templateSchema() { return schema::mergeTemplateScript(); }

class StoreFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        path = dir.filePath(QStringLiteral("ledger.pkr"));
        cn.open(path, Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(fullSchema());
        cn.executeRaw(QString::fromUtf8(sampleData()));
    }

    // Rows of a plain SQLite query on the open file, "a|b;c|d"; Null as NULL.
    QString raw(const QString& sql) { return rawOn(cn.handle(), sql); }

    static QString rawOn(sqlite3* db, const QString& sql)
    {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << "raw query failed: " << sqlite3_errmsg(db) << " in " << sql.toStdString();
            return QString();
        }
        QStringList rows;
        while (sqlite3_step(st) == SQLITE_ROW) {
            QStringList cells;
            for (int c = 0; c < sqlite3_column_count(st); ++c)
                cells << (sqlite3_column_type(st, c) == SQLITE_NULL
                              ? QStringLiteral("NULL")
                              : QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, c))));
            rows << cells.join(QLatin1Char('|'));
        }
        sqlite3_finalize(st);
        return rows.join(QLatin1Char(';'));
    }

    // A recordset as "a|b;c|d" through Value::toString; Null as NULL.
    static QString rows(const Recordset& rs)
    {
        QStringList out;
        for (long r = 0; r < rs.recordCount(); ++r) {
            QStringList cells;
            for (int c = 0; c < rs.fieldCount(); ++c)
                cells << (rs.at(r, c).isNull() ? QStringLiteral("NULL") : rs.at(r, c).toString());
            out << cells.join(QLatin1Char('|'));
        }
        return out.join(QLatin1Char(';'));
    }

    QString newFile(const QString& name, const QString& script)
    {
        const QString p = dir.filePath(name);
        Connection other;
        other.open(p, Connection::OpenMode::ReadWriteCreate);
        if (!script.isEmpty())
            other.executeRaw(script);
        return p;
    }

    QTemporaryDir dir;
    QString path;
    Connection cn;
};

} // namespace pelkor::store::testing
