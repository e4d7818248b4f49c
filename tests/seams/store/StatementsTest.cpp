// The program's statement forms, one case for each thing the translation or
// the conversion of values does differently, run against a data file with
// the full schema. Each case checks the effect:
// the rows a SELECT returns, or what a write left in the file (read with
// plain SQLite, so that the stored forms are checked too).
#include "StoreFixture.h"

#include "seams/store/StoreError.h"

namespace pelkor::store::testing {
namespace {

struct Case {
    const char* name;
    const char* before;     // plain SQLite run first, or nullptr
    const char* statement;  // the statement, or several, one per line
    const char* check;      // plain SQLite on the file after; nullptr: the statement's own rows
    const char* expect;
    const char* pick = nullptr;  // with no check: the fields to show, by name; "(names)": the field names
};

// Names the case in CTest's listing instead of dumping its bytes.
void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

// tempPelkor in the middle of a reconciliation step: line 3 matched, line 4
// waiting.
#define LINE_COLUMNS \
    "(id INTEGER PRIMARY KEY, kind TEXT, date DATE, confirm TEXT, detail TEXT, \"in\" DOUBLE, out DOUBLE, " \
    "TypeNum INTEGER, zee TEXT, memo TEXT, relate INTEGER, IndTzefi BOOLEAN, ConstantLineNum INTEGER, total DOUBLE)"
constexpr const char* tempSetup =
    "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor;"
    "UPDATE tempPelkor SET zee='coord9' WHERE id=3; UPDATE tempPelkor SET zee='coord2' WHERE id=4;";
constexpr const char* oldDefaults =
    "DROP TABLE Defaults; CREATE TABLE Defaults (Password TEXT, Credit DOUBLE); INSERT INTO Defaults VALUES (NULL,-5000);";
#define LINE_ORDER " ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id"

const Case cases[] = {
    // Upgrades of old files.
    {"AlterAddAccountNum", oldDefaults, "ALTER TABLE Defaults ADD AccountNum CHARACTER(50)",
     "SELECT type FROM pragma_table_info('Defaults') WHERE name='AccountNum'", "CHARACTER(50)"},
    {"AlterAddIsAuto", oldDefaults, "ALTER TABLE Defaults ADD isAuto INTEGER",
     "SELECT count(*), typeof(isAuto) FROM Defaults", "1|null"},

    // Deletes and drops.
    {"DeleteStarById", nullptr, "DELETE * from pelkor WHERE id = 3", "SELECT group_concat(id) FROM pelkor",
     "1,2,4,5,6"},
    // '-1' and '+1' sort apart in the text order but are never equal.
    {"DeleteByIdAndKind", nullptr, "DELETE FROM pelkor WHERE id <= 2 AND kind = '-1'",
     "SELECT group_concat(id) FROM pelkor", "2,3,4,5,6"},
    {"DropCategory", nullptr, "DROP TABLE Category", "SELECT count(*) FROM sqlite_master WHERE name='category'", "0"},

    // Inserts.
    {"InsertConstantLine", nullptr,
     "INSERT INTO ConstantLines([KIND],[FDate],[TDate],[Steps],[CONFIRM],[DETAIL],[IN],[OUT],[Percent],[TypeNum],"
     "[IndTzefi]) Values('-1',#4/1/2025#,#12/1/2025#,'חודש',' ','rent',0,300,2.5,7,true)",
     "SELECT ConstantLineNum,KIND,FDate,TDate,Steps,\"IN\",OUT,Percent,TypeNum,IndTzefi FROM ConstantLines",
     "1|-1|2025-04-01|2025-12-01|חודש|0.0|300.0|2.5|7|1"},
    // The bank grid's row number travels in memo as a bare number.
    {"InsertBankLine", tempSetup,
     "INSERT INTO tempPelkor([in],[out],[memo],[kind],[typeNum],[confirm],[detail],[date],[zee]) values(120,0,"
     "7,'+0',1,'88','deposit',#3/16/2025#,'coord1')",
     "SELECT id,\"in\",out,memo,typeof(memo),kind,TypeNum,confirm,date FROM tempPelkor WHERE zee='coord1'",
     "7|120.0|0.0|7|text|+0|1|88|2025-03-16"},
    {"InsertLine", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee]) Values('-2',#3/3/2025#,'55',"
     "'shop',0,99.9,2,' ')",
     "SELECT id,kind,date,out,typeof(date) FROM pelkor WHERE id=(SELECT max(id) FROM pelkor)",
     "7|-2|2025-03-03|99.9|text"},
    {"InsertLineNotForecast", nullptr,
     "INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) "
     "Values('+1',#3/5/2025#,'9','sale',12,0,1,' ',' ',false)",
     "SELECT \"in\",IndTzefi,memo FROM pelkor WHERE id=7", "12.0|0| "},

    // SELECT INTO.
    {"CopyTemp", nullptr, "SELECT * INTO tempPelkor from pelkor",
     "SELECT count(*), (SELECT type FROM pragma_table_info('tempPelkor') WHERE name='date'), "
     "(SELECT pk FROM pragma_table_info('tempPelkor') WHERE name='id') FROM tempPelkor",
     "6|DATE|1"},

    // Updates.
    {"UpdateRestOfLine", nullptr,
     "UPDATE pelkor SET [in]=0,[out]=15.5,[date]=#2/28/2025#,zee=' ',kind='-1',typeNum=7",
     "SELECT DISTINCT \"in\",out,date,zee,kind,TypeNum FROM pelkor", "0.0|15.5|2025-02-28| |-1|7"},
    {"UpdateDate", nullptr, "UPDATE pelkor set [date] = #4/3/2004# WHERE id = 1", "SELECT date FROM pelkor WHERE id=1",
     "2004-04-03"},
    {"UpdateInFromCellText", nullptr, "UPDATE pelkor set [in] = '1,234.50' WHERE id = 2",
     "SELECT \"in\", typeof(\"in\") FROM pelkor WHERE id=2", "1234.5|real"},
    {"UpdateMemoDropNewline", "UPDATE pelkor SET memo='newline ירוק' WHERE id=1",
     "UPDATE pelkor set [memo] = mid([memo],9) WHERE id = 1", "SELECT memo FROM pelkor WHERE id=1", "ירוק"},
    {"UpdateRelate0", "UPDATE pelkor SET relate=-1", "UPDATE pelkor set [relate]=0 WHERE id = 1",
     "SELECT group_concat(relate) FROM pelkor", "0,-1,-1,-1,-1,-1"},
    {"UpdateConfirmDigitsStayText", nullptr, "UPDATE pelkor set confirm = '00123' WHERE id = 1",
     "SELECT confirm, typeof(confirm) FROM pelkor WHERE id=1", "00123|text"},
    {"UpdateDefaultsAccount", nullptr, "UPDATE Defaults SET AccountNum='123456'",
     "SELECT AccountNum, typeof(AccountNum) FROM Defaults", "123456|text"},
    // Sums in the grid's own form, quoted, as the sum rules write them.
    {"UpdateOutBigFormattedSum", nullptr, "UPDATE pelkor set [out] = '1,234,567.89' WHERE id = 5",
     "SELECT out, typeof(out) FROM pelkor WHERE id=5", "1234567.89|real"},
    {"UpdateOutTinyNegativeFormatted", nullptr, "UPDATE pelkor set out = '0.00-' WHERE id = 1",
     "SELECT out = 0 FROM pelkor WHERE id=1", "1"},
    {"UpdateTempRelateSparesInvoiceKinds",
     "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor;"
     "UPDATE tempPelkor SET zee='coord2', relate=-1 WHERE id IN (2,4,5,6)",
     "UPDATE tempPelkor SET [relate]=0 WHERE zee='coord2' AND [date]<=#3/20/2025# AND NOT [kind] IN ('+1','+2')",
     "SELECT group_concat(id || ':' || relate) FROM tempPelkor WHERE zee='coord2'", "2:-1,4:-1,5:0,6:-1"},
    {"RepairIn", "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (9,'+1','2025-03-03','abc',0)",
     "update pelkor set [in]=0 where not isnumeric([in])", "SELECT \"in\", typeof(\"in\") FROM pelkor WHERE id=9",
     "0.0|real"},

    // Reads.
    {"SelectFeedForAccount", "INSERT INTO demoOsh VALUES (' 123 ',13,'2025-03-01','7','late',1,0,101,2)",
     "SELECT * FROM demoOsh WHERE trim(accountNum)='123' ORDER BY [date],[part] DESC,transactionID DESC", nullptr,
     "13|01/03/2025;11|01/03/2025", "transactionID,DATE"},
    {"SelectKinds", nullptr, "SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)", nullptr,
     "+0;+1;+2;+10;-0;-1;-2;-10", "id"},
    {"SelectMergedBanksByIndex", "INSERT INTO mergedBanks VALUES (0,'z.pkr',1)", "SELECT * FROM mergedBanks ORDER BY index",
     nullptr, "0|z.pkr;1|a.pkr;2|b.pkr", "index,fileName"},
    {"SelectLoad", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     LINE_ORDER,
     nullptr, "2|+1|01/03/2025;1|-1|01/03/2025;4|+2|02/03/2025;3|+10|02/03/2025;5|-2|15/03/2025;6|+1|20/03/2025",
     "ID,Kind,Date"},
    {"SelectUpToDate", nullptr,
     "SELECT pelkor.id,[date] FROM pelkor WHERE [date]<=#3/2/2025#" LINE_ORDER,
     nullptr, "2|01/03/2025;1|01/03/2025;4|02/03/2025;3|02/03/2025"},
    {"SelectDirectory", nullptr, "SELECT T FROM PARAMETER WHERE PARAMETER='directory'", nullptr, "/home/u/pkr"},
    {"SelectTypeReport", nullptr,
     "SELECT [date],[in],[out],Pelkor.TypeNum, Types.TypeNum, Types.CategoryNum, TypesCategories.CategoryNum, "
     "TypesCategories.InOut, zee FROM pelkor,Types,TypesCategories WHERE pelkor.TypeNum=Types.TypeNum AND "
     "Types.CategoryNum=TypesCategories.CategoryNum AND [date]>=#3/2/2025# AND [date]<=#3/15/2025#" LINE_ORDER,
     nullptr, "20|0|1|1;50|0|1|1;0|400|2|2", "in,out,pelkor.TypeNum,InOut"},
    {"SelectDamagedFound",
     "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (7,'+1','לא תאריך',1,0),(8,'-1','2025-05-05',0,'abc'),"
     "(9,'+1','2025-05-06','x',0),(10,'+1','2025-05-07','1,5',0),(11,'+1',NULL,1,0);",
     "SELECT date FROM pelkor,category where kind=category.id and (not isdate([date]) or not isnumeric([in]) or not "
     "isnumeric(out))",
     nullptr, "לא תאריך;05/05/2025;06/05/2025;NULL"},
    {"SelectIpusDateCaseless", nullptr, "SELECT date FROM pelkor WHERE zee='zzzzzzzzzz'", nullptr, "15/03/2025"},
    {"SelectForecastExpensesAfterIpus", "UPDATE pelkor SET IndTzefi=1 WHERE id IN (1,5)",
     "SELECT id, kind, date, detail, [in], out, IndTzefi FROM pelkor WHERE IndTzefi=true AND out<>0 AND "
     "[date]>#3/1/2025#" LINE_ORDER,
     nullptr, "5|-2|15/03/2025|salary|0|400|1"},
    // The settings dialog walks the fields for NDays: an old file has none.
    {"SelectDefaultsFields", nullptr, "SELECT * FROM Defaults", nullptr,
     "Password,Credit,NDays,isAuto,iBank,AccountNum", "(names)"},
    {"SelectOldDefaultsFields", oldDefaults, "SELECT * FROM Defaults", nullptr, "Password,Credit", "(names)"},

    // The load's statement with each filter a child instance adds.
    {"LoadDayIncomes", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " WHERE [date]=#3/2/2025# AND left(kind,1)='+' ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2),"
     " detail, [in], out, pelkor.id",
     nullptr, "4|+2;3|+10", "id,kind"},
    {"LoadDamagedLines",
     "INSERT INTO pelkor (id,kind,date,detail,\"in\",out) VALUES (7,'+1','32/01/2025','bad date',1,0),"
     "(8,'-1','2025-05-05','bad out',0,'12 ש\"ח'),(9,'+7','nonsense','unknown kind',1,0)",
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     ",category where kind=category.id and (not isdate([date]) or not isnumeric([in]) or not isnumeric(out)) ORDER BY"
     " date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, pelkor.id",
     nullptr, "8|05/05/2025|12 ש\"ח;7|32/01/2025|0", "id,date,out"},
    {"SelectDateRange", nullptr, "SELECT min([date]),max([date]) FROM pelkor", nullptr, "01/03/2025|20/03/2025"},
    {"SelectOpening", nullptr, "SELECT sum([in]),sum([out]) FROM pelkor WHERE [date]<#3/15/2025#", nullptr,
     "1070|300"},
    {"SelectMergedOpening",
     "UPDATE pelkor SET zee='1' WHERE id IN (1,2,3); UPDATE pelkor SET zee='2' WHERE id IN (4,5,6);",
     "SELECT sum(iif(conv=0,[in],iif(conv>0,[in]*conv,[in]/-conv))),sum(iif(conv=0,[out],iif(conv>0,[out]*conv,"
     "[out]/-conv))) FROM pelkor,mergedBanks WHERE cint(zee)=[index] AND [date]<#3/16/2025#",
     nullptr, "1090|1100"},

    // Operations of several statements, one per line, as the program runs them.
    {"FlowCancelledDialogPutsLinesBack", nullptr,
     "SELECT * INTO tempPelkor from pelkor\n"
     "UPDATE tempPelkor SET zee='coord9' WHERE id=3\n"
     "UPDATE tempPelkor SET zee='coord2' WHERE id=4\n"
     "SELECT * INTO savedPelkor from tempPelkor WHERE zee in ('coord9','coord2')\n"
     "UPDATE savedPelkor SET zee=' ' WHERE zee in ('coord2','coord9')\n"
     "UPDATE tempPelkor SET [date]=#3/18/2025# WHERE id=3\n"
     "INSERT INTO tempPelkor([detail],[in],[out],[date],[kind],[TypeNum],[zee]) values('(שורת איזון יתרה)',5,0,"
     "#3/18/2025#,'+0',1,'coord0')\n"
     "DELETE FROM tempPelkor WHERE left(zee,5)='coord'\n"
     "INSERT INTO tempPelkor SELECT * FROM savedPelkor",
     "SELECT group_concat(id || ':' || date || ':' || zee, ',') FROM (SELECT * FROM tempPelkor ORDER BY id)",
     "1:2025-03-01: ,2:2025-03-01: ,3:2025-03-02: ,4:2025-03-02: ,5:2025-03-15:ZZZZZZZZZZ,6:2025-03-20: "},
    {"FlowUpgradeNDays", oldDefaults,
     "SELECT * FROM Defaults\n"
     "ALTER TABLE Defaults ADD NDays INTEGER\n"
     "UPDATE Defaults SET NDays=45\n"
     "SELECT * FROM Defaults",
     nullptr, "NULL|-5000|45"},
    {"FlowBindAccount", oldDefaults,
     "ALTER TABLE Defaults ADD iBank INTEGER\n"
     "ALTER TABLE Defaults ADD AccountNum CHARACTER(50)\n"
     "UPDATE Defaults SET iBank=3\n"
     "UPDATE Defaults SET AccountNum='0012345'\n"
     "SELECT iBank,AccountNum FROM Defaults",
     nullptr, "3|0012345"},
};

class Statements : public StoreFile, public ::testing::WithParamInterface<Case> {};

TEST_P(Statements, HasItsEffect)
{
    const Case& c = GetParam();
    if (c.before && *c.before)
        cn.executeRaw(QString::fromUtf8(c.before));
    Recordset rs;
    try {
        for (const QString& statement : QString::fromUtf8(c.statement).split(QLatin1Char('\n')))
            rs = cn.execute(statement);
    } catch (const StoreError& e) {
        FAIL() << e.what();
    }
    if (c.check) {
        EXPECT_EQ(raw(QString::fromUtf8(c.check)).toStdString(), std::string(c.expect)) << c.statement;
        return;
    }
    QString got;
    if (c.pick && QByteArray(c.pick) == "(names)") {
        got = rs.fieldNames().join(QLatin1Char(','));
    } else if (c.pick) {
        QStringList out;
        const QStringList fields = QString::fromUtf8(c.pick).split(QLatin1Char(','));
        for (rs.moveFirst(); !rs.eof(); rs.moveNext()) {
            QStringList cells;
            for (const QString& f : fields)
                cells << (rs.field(f).isNull() ? QStringLiteral("NULL") : rs.field(f).toString());
            out << cells.join(QLatin1Char('|'));
        }
        got = out.join(QLatin1Char(';'));
    } else {
        got = rows(rs);
    }
    EXPECT_EQ(got.toStdString(), std::string(c.expect)) << c.statement;
}

INSTANTIATE_TEST_SUITE_P(EveryForm, Statements, ::testing::ValuesIn(cases),
                         [](const ::testing::TestParamInfo<Case>& i) { return std::string(i.param.name); });

} // namespace
} // namespace pelkor::store::testing
