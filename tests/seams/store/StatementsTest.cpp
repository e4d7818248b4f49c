// Every statement form the program runs, with its placeholders filled, run
// against a data file with the full schema. Each case checks the effect:
// the rows a SELECT returns, or what a write left in the file (read with
// plain SQLite, so that the stored forms are checked too).
#include "StoreFixture.h"

#include "seams/store/StoreError.h"

namespace pelkor::store::testing {
namespace {

struct Case {
    const char* name;
    const char* before;     // plain SQLite run first, or nullptr
    const char* statement;  // the statement, or several, one per line; %M% is the merged file's path
    const char* check;      // plain SQLite on the file after; nullptr: the statement's own rows
    const char* expect;
    const char* pick = nullptr;  // with no check: the fields to show, by name; "(names)": the field names
    bool onMerged = false;       // run the check on the merged file
};

// Names the case in CTest's listing instead of dumping its bytes.
void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

// tempPelkor in the middle of a reconciliation step: line 3 matched, line 4
// waiting; savedPelkor holding their copies.
#define LINE_COLUMNS \
    "(id INTEGER PRIMARY KEY, kind TEXT, date DATE, confirm TEXT, detail TEXT, \"in\" DOUBLE, out DOUBLE, " \
    "TypeNum INTEGER, zee TEXT, memo TEXT, relate INTEGER, IndTzefi BOOLEAN, ConstantLineNum INTEGER, total DOUBLE)"
constexpr const char* tempSetup =
    "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor;"
    "UPDATE tempPelkor SET zee='coord9' WHERE id=3; UPDATE tempPelkor SET zee='coord2' WHERE id=4;";
constexpr const char* savedSetup =
    "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor WHERE id NOT IN (3,4);"
    "CREATE TABLE savedPelkor " LINE_COLUMNS "; INSERT INTO savedPelkor SELECT * FROM pelkor WHERE id IN (3,4);";
constexpr const char* oldDefaults =
    "DROP TABLE Defaults; CREATE TABLE Defaults (Password TEXT, Credit DOUBLE); INSERT INTO Defaults VALUES (NULL,-5000);";
constexpr const char* lineOrder =
    " ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id";

const Case cases[] = {
    // Upgrades of old files.
    {"AlterAddAccountNum", oldDefaults, "ALTER TABLE Defaults ADD AccountNum CHARACTER(50)",
     "SELECT type FROM pragma_table_info('Defaults') WHERE name='AccountNum'", "CHARACTER(50)"},
    {"AlterAddNDays", oldDefaults, "ALTER TABLE Defaults ADD NDays INTEGER",
     "SELECT type FROM pragma_table_info('Defaults') WHERE name='NDays'", "INTEGER"},
    {"AlterAddIBank", oldDefaults, "ALTER TABLE Defaults ADD iBank INTEGER",
     "SELECT type FROM pragma_table_info('Defaults') WHERE name='iBank'", "INTEGER"},
    {"AlterAddIsAuto", oldDefaults, "ALTER TABLE Defaults ADD isAuto INTEGER",
     "SELECT count(*), typeof(isAuto) FROM Defaults", "1|null"},

    // Deletes.
    {"DeleteStarById", nullptr, "DELETE * from pelkor WHERE id = 3", "SELECT group_concat(id) FROM pelkor",
     "1,2,4,5,6"},
    {"DeleteBankTable", nullptr, "DELETE FROM demoOsh", "SELECT count(*) FROM demoOsh", "0"},
    {"DeleteByIdAndKind", nullptr, "DELETE FROM pelkor WHERE id = 1 AND kind = '-1'",
     "SELECT group_concat(id) FROM pelkor", "2,3,4,5,6"},
    {"DeleteByIdAndOtherKindKeeps", nullptr, "DELETE FROM pelkor WHERE id = 1 AND kind = '+1'",
     "SELECT count(*) FROM pelkor", "6"},
    {"DeleteCategory", nullptr, "DELETE FROM Category", "SELECT count(*) FROM category", "0"},
    {"DeleteTypes", nullptr, "DELETE FROM Types", "SELECT count(*) FROM Types", "0"},
    {"DeleteTypesCategories", nullptr, "DELETE FROM TypesCategories", "SELECT count(*) FROM TypesCategories", "0"},
    {"DeleteMergedBanks", nullptr, "DELETE FROM mergedBanks", "SELECT count(*) FROM mergedBanks", "0"},
    {"DeleteTempById", tempSetup, "DELETE FROM tempPelkor WHERE id=4", "SELECT group_concat(id) FROM tempPelkor",
     "1,2,3,5,6"},
    {"DeleteCoordLines", tempSetup, "DELETE FROM tempPelkor WHERE left(zee,5)='coord'",
     "SELECT group_concat(id) FROM tempPelkor", "1,2,5,6"},

    // Drops.
    {"DropCategory", nullptr, "DROP TABLE Category", "SELECT count(*) FROM sqlite_master WHERE name='category'", "0"},
    {"DropBckp", "CREATE TABLE bckpPelkor AS SELECT * FROM pelkor", "DROP TABLE bckpPelkor",
     "SELECT count(*) FROM sqlite_master WHERE name='bckpPelkor'", "0"},
    {"DropPelkor", nullptr, "DROP TABLE pelkor", "SELECT count(*) FROM sqlite_master WHERE name='pelkor'", "0"},
    {"DropSaved", savedSetup, "DROP TABLE savedPelkor", "SELECT count(*) FROM sqlite_master WHERE name='savedPelkor'",
     "0"},
    {"DropTemp", tempSetup, "DROP TABLE tempPelkor", "SELECT count(*) FROM sqlite_master WHERE name='tempPelkor'",
     "0"},

    // Inserts.
    {"InsertConstantLine", nullptr,
     "INSERT INTO ConstantLines([KIND],[FDate],[TDate],[Steps],[CONFIRM],[DETAIL],[IN],[OUT],[Percent],[TypeNum],"
     "[IndTzefi]) Values('-1',#4/1/2025#,#12/1/2025#,'חודש',' ','rent',0,300,2.5,7,true)",
     "SELECT ConstantLineNum,KIND,FDate,TDate,Steps,\"IN\",OUT,Percent,TypeNum,IndTzefi FROM ConstantLines",
     "1|-1|2025-04-01|2025-12-01|חודש|0.0|300.0|2.5|7|1"},
    {"InsertMergedBank", nullptr, "INSERT INTO mergedBanks([index],fileName,conv) VALUES(3,'c.pkr',-1.5)",
     "SELECT \"index\",fileName,conv FROM mergedBanks WHERE \"index\"=3", "3|c.pkr|-1.5"},
    {"InsertSavedBack", savedSetup, "INSERT INTO tempPelkor SELECT * FROM savedPelkor",
     "SELECT group_concat(id) FROM (SELECT id FROM tempPelkor ORDER BY id)", "1,2,3,4,5,6"},
    {"InsertBalancingLine", tempSetup,
     "INSERT INTO tempPelkor([detail],[in],[out],[date],[kind],[TypeNum],[zee]) values('(שורת איזון יתרה)',12.5,0,"
     "#3/15/2025#,'+0',1,'coord0')",
     "SELECT detail,\"in\",date,kind,TypeNum FROM tempPelkor WHERE zee='coord0'",
     "(שורת איזון יתרה)|12.5|2025-03-15|+0|1"},
    // The bank grid's row number travels in memo as a bare number.
    {"InsertBankLine", tempSetup,
     "INSERT INTO tempPelkor([in],[out],[memo],[kind],[typeNum],[confirm],[detail],[date],[zee]) values(120,0,"
     "7,'+0',1,'88','deposit',#3/16/2025#,'coord1')",
     "SELECT id,\"in\",out,memo,typeof(memo),kind,TypeNum,confirm,date FROM tempPelkor WHERE zee='coord1'",
     "7|120.0|0.0|7|text|+0|1|88|2025-03-16"},
    {"InsertBankExpenseLine", tempSetup,
     "INSERT INTO tempPelkor([in],[out],[memo],[kind],[typeNum],[confirm],[detail],[date],[zee]) values(0,45.9,"
     "12,'-0',2,' ','עמלה',#3/16/2025#,'coord1')",
     "SELECT \"in\",out,memo,kind,TypeNum,detail FROM tempPelkor WHERE zee='coord1'", "0.0|45.9|12|-0|2|עמלה"},
    {"InsertBalancingLineOut", tempSetup,
     "INSERT INTO tempPelkor([detail],[in],[out],[date],[kind],[TypeNum],[zee]) values('(שורת איזון יתרה)',0,3.75,"
     "#3/15/2025#,'-0',2,'coord0')",
     "SELECT id,\"in\",out,kind,TypeNum FROM tempPelkor WHERE zee='coord0'", "7|0.0|3.75|-0|2"},
    {"InsertRoundingOut", tempSetup,
     "INSERT into tempPelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('-0',"
     "#3/31/2025#,' ','עיגול אגורות מול היתרה בבנק',0,0.01,2,' ','ללא צבע')",
     "SELECT id,kind,date,\"in\",out,TypeNum FROM tempPelkor WHERE id=7", "7|-0|2025-03-31|0.0|0.01|2"},
    {"InsertBankRowIntoNewFile", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee]) Values('-0',#12/31/2025#,"
     "'4411',' ',0,1500,2,'ZZZZZZZZZZ')",
     "SELECT id,kind,date,confirm,out,zee FROM pelkor WHERE zee='ZZZZZZZZZZ' ORDER BY id",
     "5|-2|2025-03-15| |400.0|ZZZZZZZZZZ;7|-0|2025-12-31|4411|1500.0|ZZZZZZZZZZ"},
    {"InsertMovedRowIntoTarget", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('-1',#1/5/2026#,"
     "'318','rent`s deposit',0,2400.5,7,' ','אדום')",
     "SELECT id,date,detail,out,memo FROM pelkor WHERE id=7", "7|2026-01-05|rent`s deposit|2400.5|אדום"},
    {"InsertLine", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee]) Values('-2',#3/3/2025#,'55',"
     "'shop',0,99.9,2,' ')",
     "SELECT id,kind,date,out,typeof(date) FROM pelkor WHERE id=(SELECT max(id) FROM pelkor)",
     "7|-2|2025-03-03|99.9|text"},
    {"InsertLineNewlineMemo", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('+1',#3/4/2025#,"
     "' ','sale',10,0,1,' ','newline ירוק')",
     "SELECT id,memo FROM pelkor WHERE id=7", "7|newline ירוק"},
    {"InsertIpusBalancing", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('+0',#3/15/2025#,"
     "' ','שורת איזון יתרה',10,0,1,' ','newline ללא צבע')",
     "SELECT kind,date,detail,memo FROM pelkor WHERE id=7", "+0|2025-03-15|שורת איזון יתרה|newline ללא צבע"},
    {"InsertForecastLine", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) Values('-1',"
     "#4/20/2025#,' ','rent',0,300,7,' ','ללא צבע',true)",
     "SELECT date,IndTzefi FROM pelkor WHERE id=7", "2025-04-20|1"},
    {"InsertLineNotForecast", nullptr,
     "INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) "
     "Values('+1',#3/5/2025#,'9','sale',12,0,1,' ',' ',false)",
     "SELECT \"in\",IndTzefi,memo FROM pelkor WHERE id=7", "12.0|0| "},
    {"InsertLineWithMemo", nullptr,
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('+2',#3/6/2025#,"
     "'1','x',5,0,1,' ','סגול')",
     "SELECT kind,memo FROM pelkor WHERE id=7", "+2|סגול"},
    {"InsertRounding", tempSetup,
     "INSERT into tempPelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('+0',"
     "#3/15/2025#,' ','עיגול אגורות מול היתרה בבנק',0.01,0,1,' ','ללא צבע')",
     "SELECT \"in\",detail FROM tempPelkor WHERE id=7", "0.01|עיגול אגורות מול היתרה בבנק"},
    {"InsertCategoryIntoMerged", nullptr, "INSERT INTO Category IN \"%M%\" SELECT * FROM Category",
     "SELECT count(*) FROM category", "8", nullptr, true},
    {"InsertTypesIntoMerged", nullptr, "INSERT INTO Types IN \"%M%\" SELECT * FROM Types",
     "SELECT group_concat(TypeName) FROM Types", "income,expense,rent", nullptr, true},
    {"InsertTypesCategoriesIntoMerged", nullptr,
     "INSERT INTO TypesCategories IN \"%M%\" SELECT * FROM TypesCategories",
     "SELECT group_concat(CategoryName) FROM TypesCategories", "incomes,expenses", nullptr, true},

    // SELECT INTO.
    {"CopyToBckp", nullptr, "SELECT * INTO bckpPelkor from pelkor",
     "SELECT count(*), (SELECT pk FROM pragma_table_info('bckpPelkor') WHERE name='id') FROM bckpPelkor", "6|1"},
    {"CopyInvoiceCategs", "DROP TABLE invoiceCategs", "SELECT * INTO invoiceCategs from pelkor WHERE [id]=6",
     "SELECT id,detail FROM invoiceCategs", "6|forecast"},
    {"CopyTempBackToPelkor",
     "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor WHERE id<3; DROP TABLE pelkor;",
     "SELECT * INTO pelkor from tempPelkor", "SELECT group_concat(id) FROM pelkor", "1,2"},
    {"CopySaved", tempSetup, "SELECT * INTO savedPelkor from tempPelkor WHERE zee in ('coord9','coord2')",
     "SELECT group_concat(id) FROM savedPelkor", "3,4"},
    {"CopyTemp", nullptr, "SELECT * INTO tempPelkor from pelkor",
     "SELECT count(*), (SELECT type FROM pragma_table_info('tempPelkor') WHERE name='date') FROM tempPelkor",
     "6|DATE"},
    {"CopyToMemberFile", nullptr, "SELECT * INTO pelkor3 IN \"%M%\" FROM pelkor",
     "SELECT count(*) FROM pelkor3", "6", nullptr, true},

    // Updates.
    {"UpdateRestOfLine", nullptr,
     "UPDATE pelkor SET [in]=0,[out]=15.5,[date]=#2/28/2025#,zee=' ',kind='-1',typeNum=7",
     "SELECT DISTINCT \"in\",out,date,zee,kind,TypeNum FROM pelkor", "0.0|15.5|2025-02-28| |-1|7"},
    {"UpdateNotForecast", "UPDATE pelkor SET relate=99 WHERE id=6",
     "UPDATE pelkor set IndTzefi = false, [relate] = 0 WHERE id = 6", "SELECT IndTzefi,relate FROM pelkor WHERE id=6",
     "0|0"},
    {"UpdateForecast", nullptr, "UPDATE pelkor set IndTzefi = true WHERE id = 2",
     "SELECT IndTzefi FROM pelkor WHERE id=2", "1"},
    {"UpdateType", nullptr, "UPDATE pelkor set TypeNum = 2 WHERE id = 1", "SELECT TypeNum FROM pelkor WHERE id=1",
     "2"},
    {"UpdateDate", nullptr, "UPDATE pelkor set [date] = #4/3/2004# WHERE id = 1", "SELECT date FROM pelkor WHERE id=1",
     "2004-04-03"},
    {"UpdateInFromCellText", nullptr, "UPDATE pelkor set [in] = '1,234.50' WHERE id = 2",
     "SELECT \"in\", typeof(\"in\") FROM pelkor WHERE id=2", "1234.5|real"},
    {"UpdateInTrailingMinus", nullptr, "UPDATE pelkor set [in] = '1,234.50-' WHERE id = 2",
     "SELECT \"in\" FROM pelkor WHERE id=2", "-1234.5"},
    {"UpdateInResult", nullptr, "UPDATE pelkor set [in] = '  12 ' WHERE id = 2", "SELECT \"in\" FROM pelkor WHERE id=2",
     "12.0"},
    {"UpdateOutFromCellText", nullptr, "UPDATE pelkor set out = '-3' WHERE id = 1",
     "SELECT out FROM pelkor WHERE id=1", "-3.0"},
    {"UpdateInZeroAndKind", nullptr, "UPDATE pelkor set [in] = 0, kind='-2' WHERE id = 2",
     "SELECT \"in\",kind FROM pelkor WHERE id=2", "0.0|-2"},
    {"UpdateOutZeroAndKind", nullptr, "UPDATE pelkor set out = 0, kind='+2' WHERE id = 1",
     "SELECT out,kind FROM pelkor WHERE id=1", "0.0|+2"},
    {"UpdateMemo", nullptr, "UPDATE pelkor set [memo] = 'אדום' WHERE id = 1", "SELECT memo FROM pelkor WHERE id=1",
     "אדום"},
    {"UpdateMemoDropNewline", "UPDATE pelkor SET memo='newline ירוק' WHERE id=1",
     "UPDATE pelkor set [memo] = mid([memo],9) WHERE id = 1", "SELECT memo FROM pelkor WHERE id=1", "ירוק"},
    {"UpdateRelate99", nullptr, "UPDATE pelkor set [relate] = 99 WHERE id = 1", "SELECT relate FROM pelkor WHERE id=1",
     "99"},
    {"UpdateRelateMinus1", nullptr, "UPDATE pelkor set [relate]=-1 WHERE id = 1",
     "SELECT relate FROM pelkor WHERE id=1", "-1"},
    {"UpdateRelate0", "UPDATE pelkor SET relate=-1", "UPDATE pelkor set [relate]=0 WHERE id = 1",
     "SELECT group_concat(relate) FROM pelkor", "0,-1,-1,-1,-1,-1"},
    {"UpdateRelate0Spaced", "UPDATE pelkor SET relate=-1", "UPDATE pelkor set [relate] = 0 WHERE id = 2",
     "SELECT relate FROM pelkor WHERE id=2", "0"},
    {"UpdateConfirmBlank", nullptr, "UPDATE pelkor set confirm = ' ' WHERE id = 1",
     "SELECT '[' || confirm || ']' FROM pelkor WHERE id=1", "[ ]"},
    {"UpdateConfirmDigitsStayText", nullptr, "UPDATE pelkor set confirm = '00123' WHERE id = 1",
     "SELECT confirm, typeof(confirm) FROM pelkor WHERE id=1", "00123|text"},
    {"UpdateKind", nullptr, "UPDATE pelkor set kind = '+10' WHERE id = 2", "SELECT kind FROM pelkor WHERE id=2", "+10"},
    {"UpdateKindTight", nullptr, "UPDATE pelkor set kind='-10' WHERE id = 1", "SELECT kind FROM pelkor WHERE id=1",
     "-10"},
    {"UpdateZeeClear", nullptr, "UPDATE pelkor set zee = ' ' WHERE id = 5", "SELECT count(*) FROM pelkor WHERE zee=' '",
     "6"},
    {"UpdateZeeIpus", nullptr, "UPDATE pelkor set zee = 'ZZZZZZZZZZ' WHERE id = 6",
     "SELECT group_concat(id) FROM pelkor WHERE zee='ZZZZZZZZZZ'", "5,6"},
    {"UpdateDefaultsAccount", nullptr, "UPDATE Defaults SET AccountNum='123456'",
     "SELECT AccountNum, typeof(AccountNum) FROM Defaults", "123456|text"},
    {"UpdateDefaultsNDays", nullptr, "UPDATE Defaults SET NDays=30", "SELECT NDays FROM Defaults", "30"},
    {"UpdateDefaultsUnbind", "UPDATE Defaults SET AccountNum='1'", "UPDATE Defaults SET accountNum='(none)'",
     "SELECT AccountNum FROM Defaults", "(none)"},
    {"UpdateDefaultsIBank0", "UPDATE Defaults SET iBank=4", "UPDATE Defaults SET iBank=0",
     "SELECT iBank FROM Defaults", "0"},
    {"UpdateDefaultsIBank", nullptr, "UPDATE Defaults SET iBank=5", "SELECT iBank FROM Defaults", "5"},
    {"UpdateDefaultsIsAuto", nullptr, "UPDATE Defaults SET isAuto=1", "SELECT isAuto FROM Defaults", "1"},
    {"UpdateFeedDate", nullptr, "UPDATE demoOsh set [date] = #3/9/2025# WHERE transactionID = 12",
     "SELECT date FROM demoOsh WHERE transactionID=12", "2025-03-09"},
    {"UpdateInvoiceKinds", nullptr, "UPDATE invoiceCategs SET detail='+1,+2'", "SELECT detail FROM invoiceCategs",
     "+1,+2"},
    {"UpdateInvoiceKindsBlank", nullptr, "UPDATE invoiceCategs set detail=' '", "SELECT detail FROM invoiceCategs",
     " "},
    {"UpdateSavedClear", savedSetup, "UPDATE savedPelkor SET zee=' ' WHERE zee in ('coord2','coord9')",
     "SELECT count(*) FROM savedPelkor WHERE zee=' '", "2"},
    {"UpdateTempDate", tempSetup, "UPDATE tempPelkor SET [date]=#3/18/2025# WHERE id=3",
     "SELECT date FROM tempPelkor WHERE id=3", "2025-03-18"},
    {"UpdateTempWaitingDate", tempSetup, "UPDATE tempPelkor SET [date]=#3/16/2025# WHERE zee='coord2'",
     "SELECT date FROM tempPelkor WHERE id=4", "2025-03-16"},
    {"UpdateTempSums", tempSetup, "UPDATE tempPelkor SET [in]=5,[out]=0,[date]=#3/3/2025# WHERE id=3",
     "SELECT \"in\",out,date FROM tempPelkor WHERE id=3", "5.0|0.0|2025-03-03"},
    {"UpdateTempRelateUpToIpus", "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM "
                                 "pelkor; UPDATE tempPelkor SET zee='coord2', relate=-1 WHERE id IN (4,6)",
     "UPDATE tempPelkor SET [relate]=0 WHERE zee='coord2' AND [date]<=#3/15/2025#",
     "SELECT group_concat(id || ':' || relate) FROM tempPelkor WHERE zee='coord2'", "4:0,6:-1"},
    {"UpdateTempIpusClear", tempSetup, "UPDATE tempPelkor SET zee=' ' WHERE id=5",
     "SELECT count(*) FROM tempPelkor WHERE zee='ZZZZZZZZZZ'", "0"},
    {"UpdateTempEndStep", tempSetup, "UPDATE tempPelkor SET zee=' ' WHERE left(zee,5)='coord'",
     "SELECT count(*) FROM tempPelkor WHERE zee LIKE 'coord%'", "0"},
    {"UpdateTempIpusSet", tempSetup, "UPDATE tempPelkor SET zee='ZZZZZZZZZZ' WHERE id=6",
     "SELECT group_concat(id) FROM tempPelkor WHERE zee='ZZZZZZZZZZ'", "5,6"},
    {"UpdateTempWaiting", tempSetup, "UPDATE tempPelkor SET zee='coord2' WHERE id=1",
     "SELECT group_concat(id) FROM tempPelkor WHERE zee='coord2'", "1,4"},
    {"UpdateTempMatched", tempSetup, "UPDATE tempPelkor SET zee='coord9' WHERE id=2",
     "SELECT group_concat(id) FROM tempPelkor WHERE zee='coord9'", "2,3"},
    // Sums in the grid's own form, quoted, as the sum rules write them.
    {"UpdateOutBigFormattedSum", nullptr, "UPDATE pelkor set [out] = '1,234,567.89' WHERE id = 5",
     "SELECT out, typeof(out) FROM pelkor WHERE id=5", "1234567.89|real"},
    {"UpdateInZeroFormatted", nullptr, "UPDATE pelkor set [in] = '0.00' WHERE id = 2",
     "SELECT \"in\", typeof(\"in\") FROM pelkor WHERE id=2", "0.0|real"},
    {"UpdateOutTinyNegativeFormatted", nullptr, "UPDATE pelkor set out = '0.00-' WHERE id = 1",
     "SELECT out = 0 FROM pelkor WHERE id=1", "1"},
    {"UpdateDefaultsIsAutoOff", "UPDATE Defaults SET isAuto=1", "UPDATE Defaults SET isAuto=0",
     "SELECT isAuto FROM Defaults", "0"},
    {"UpdateTempRelateSparesInvoiceKinds",
     "CREATE TABLE tempPelkor " LINE_COLUMNS "; INSERT INTO tempPelkor SELECT * FROM pelkor;"
     "UPDATE tempPelkor SET zee='coord2', relate=-1 WHERE id IN (2,4,5,6)",
     "UPDATE tempPelkor SET [relate]=0 WHERE zee='coord2' AND [date]<=#3/20/2025# AND NOT [kind] IN ('+1','+2')",
     "SELECT group_concat(id || ':' || relate) FROM tempPelkor WHERE zee='coord2'", "2:-1,4:-1,5:0,6:-1"},
    {"RepairIn", "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (9,'+1','2025-03-03','abc',0)",
     "update pelkor set [in]=0 where not isnumeric([in])", "SELECT \"in\", typeof(\"in\") FROM pelkor WHERE id=9",
     "0.0|real"},
    {"RepairOut", "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (9,'-1','2025-03-03',0,'x1')",
     "update pelkor set [out]=0 where not isnumeric([out])", "SELECT group_concat(out) FROM pelkor WHERE out=0",
     "0.0,0.0,0.0,0.0,0.0"},

    // Reads.
    {"SelectFeedForAccount", "INSERT INTO demoOsh VALUES (' 123 ',13,'2025-03-01','7','late',1,0,101,2)",
     "SELECT * FROM demoOsh WHERE trim(accountNum)='123' ORDER BY [date],[part] DESC,transactionID DESC", nullptr,
     "13|01/03/2025;11|01/03/2025", "transactionID,DATE"},
    {"SelectFeedCount", nullptr, "SELECT * FROM demoOsh", nullptr, "11;12", "transactionID"},
    {"SelectGroupsByInOut", nullptr, "SELECT * FROM TypesCategories ORDER BY InOut DESC,CategoryName", nullptr,
     "expenses;incomes", "CategoryName"},
    {"SelectGroups", nullptr, "SELECT * FROM TypesCategories", nullptr, "1|incomes|1;2|expenses|2"},
    {"SelectKinds", nullptr, "SELECT * FROM category ORDER BY Left(id,1) DESC, Len(Mid(id,2)), Mid(id,2)", nullptr,
     "+0;+1;+2;+10;-0;-1;-2;-10", "id"},
    {"SelectInvoiceKinds", nullptr, "SELECT * FROM invoiceCategs", nullptr, "1| ", "id,detail"},
    {"SelectMergedBanksByIndex", "INSERT INTO mergedBanks VALUES (0,'z.pkr',1)", "SELECT * FROM mergedBanks ORDER BY index",
     nullptr, "0|z.pkr;1|a.pkr;2|b.pkr", "index,fileName"},
    {"SelectWaitingLines", tempSetup,
     "SELECT * FROM tempPelkor WHERE left(zee,5)='coord' AND zee<>'coord9' ORDER BY date, Left(kind,1) DESC, "
     "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "4|coord2", "id,zee"},
    {"SelectDatedIds", "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (9,'+1','bad',1,0)",
     "SELECT pelkor.id FROM pelkor WHERE isdate(date) ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), "
     "Mid(kind,2), detail, [in], out, id",
     nullptr, "2;1;4;3;5;6"},
    {"SelectLoad", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "2|+1|01/03/2025;1|-1|01/03/2025;4|+2|02/03/2025;3|+10|02/03/2025;5|-2|15/03/2025;6|+1|20/03/2025",
     "ID,Kind,Date"},
    {"SelectUpToDate", nullptr,
     "SELECT pelkor.id,[date] FROM pelkor WHERE [date]<=#3/2/2025# ORDER BY date, Left(kind,1) DESC, "
     "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "2|01/03/2025;1|01/03/2025;4|02/03/2025;3|02/03/2025"},
    {"SelectOnDate", nullptr,
     "SELECT pelkor.id,[date] FROM pelkor WHERE [date]=#3/2/2025# ORDER BY date, Left(kind,1) DESC, "
     "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "4|02/03/2025;3|02/03/2025"},
    {"SelectCountKinds", nullptr, "SELECT COUNT(id) FROM Category", nullptr, "8"},
    {"SelectCredit", nullptr, "SELECT Credit FROM Defaults", nullptr, "-5000"},
    {"SelectAccounts", "INSERT INTO demoOsh VALUES ('123',14,'2025-03-04','8','x',1,0,1,1)",
     "SELECT DISTINCT accountNum FROM demoOsh", nullptr, "123;124"},
    {"SelectMaxIdLines", nullptr, "SELECT MAX(id) FROM pelkor", nullptr, "6"},
    {"SelectPassword", nullptr, "SELECT Password FROM Defaults", nullptr, "NULL"},
    {"SelectDirectory", nullptr, "SELECT T FROM PARAMETER WHERE PARAMETER='directory'", nullptr, "/home/u/pkr"},
    {"SelectTypesJoined", nullptr,
     "SELECT TypeNum,TypeName,Types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName FROM Types,"
     "TypesCategories WHERE Types.CategoryNum=TypesCategories.CategoryNum ORDER BY CategoryName,TypeName",
     nullptr, "2|expense|2|2|2|expenses;7|rent|2|2|2|expenses;1|income|1|1|1|incomes"},
    {"SelectTypesJoinedLower", nullptr,
     "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName FROM types,"
     "TypesCategories WHERE types.CategoryNum=TypesCategories.CategoryNum ORDER BY CategoryName,TypeName",
     nullptr, "expense;rent;income", "TypeName"},
    {"SelectTypesByInOut", nullptr,
     "SELECT TypeNum,TypeName,types.CategoryNum,InOut,TypesCategories.CategoryNum,CategoryName FROM types,"
     "TypesCategories WHERE types.CategoryNum=TypesCategories.CategoryNum ORDER BY InOut DESC,CategoryName,TypeName",
     nullptr, "expense;rent;income", "TypeName"},
    {"SelectNewestConstantLine", "INSERT INTO ConstantLines (KIND) VALUES ('+1'),('-1')",
     "SELECT [ConstantLineNum] FROM ConstantLines ORDER BY [ConstantLineNum] DESC", nullptr, "2;1"},
    {"SelectTypeReport", nullptr,
     "SELECT [date],[in],[out],Pelkor.TypeNum, Types.TypeNum, Types.CategoryNum, TypesCategories.CategoryNum, "
     "TypesCategories.InOut, zee FROM pelkor,Types,TypesCategories WHERE pelkor.TypeNum=Types.TypeNum AND "
     "Types.CategoryNum=TypesCategories.CategoryNum AND [date]>=#3/2/2025# AND [date]<=#3/15/2025# ORDER BY date, "
     "Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "20|0|1|1;50|0|1|1;0|400|2|2", "in,out,pelkor.TypeNum,InOut"},
    {"SelectKindReport", nullptr,
     "SELECT [date],[in],[out],[kind],zee FROM pelkor WHERE [date]>=#3/2/2025# AND [date]<=#3/20/2025# ORDER BY "
     "date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "+2;+10;-2;+1", "kind"},
    {"SelectMemberLines", nullptr,
     "SELECT [date],[in],[out],[total],[zee] FROM pelkor WHERE [date]<=#3/1/2025# ORDER BY date, Left(kind,1) DESC, "
     "Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "01/03/2025|1000|0|0| ;01/03/2025|0|300|0| "},
    {"SelectLineById", tempSetup, "SELECT [date],[kind],[confirm],[detail],[TypeNum] FROM tempPelkor WHERE id=1", nullptr,
     "01/03/2025|-1|100|rent|7"},
    {"SelectFeedDates", nullptr, "SELECT [date],transactionID FROM demoOsh", nullptr, "01/03/2025|11;02/03/2025|12"},
    {"SelectSumsById", nullptr, "SELECT [in],[out],[date] FROM pelkor WHERE id=1", nullptr, "0|300|01/03/2025"},
    {"SelectAccountNames", nullptr, "SELECT accountNum,description FROM main", nullptr, "123|current"},
    {"SelectDamagedNone", nullptr,
     "SELECT date FROM pelkor,category where kind=category.id and (not isdate([date]) or not isnumeric([in]) or not "
     "isnumeric(out))",
     nullptr, ""},
    {"SelectDamagedFound",
     "INSERT INTO pelkor (id,kind,date,\"in\",out) VALUES (7,'+1','לא תאריך',1,0),(8,'-1','2025-05-05',0,'abc'),"
     "(9,'+1','2025-05-06','x',0),(10,'+1','2025-05-07','1,5',0),(11,'+1',NULL,1,0);",
     "SELECT date FROM pelkor,category where kind=category.id and (not isdate([date]) or not isnumeric([in]) or not "
     "isnumeric(out))",
     nullptr, "לא תאריך;05/05/2025;06/05/2025;NULL"},
    {"SelectIpusDate", nullptr, "SELECT date FROM pelkor WHERE zee='ZZZZZZZZZZ'", nullptr, "15/03/2025"},
    {"SelectIpusDateCaseless", nullptr, "SELECT date FROM pelkor WHERE zee='zzzzzzzzzz'", nullptr, "15/03/2025"},
    {"SelectIpusId", nullptr, "SELECT id,date FROM pelkor WHERE zee='ZZZZZZZZZZ'", nullptr, "5|15/03/2025"},
    {"SelectUpgradeProbe", nullptr, "SELECT iBank,AccountNum FROM Defaults", nullptr, "0|(none)"},
    {"SelectIsAuto", nullptr, "SELECT isAuto FROM Defaults", nullptr, "0"},
    {"SelectIBank", nullptr, "SELECT iBank FROM Defaults", nullptr, "0"},
    {"SelectIdsToIpus", nullptr,
     "SELECT id FROM pelkor WHERE date <= #3/15/2025# ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), "
     "Mid(kind,2), detail, [in], out, id",
     nullptr, "2;1;4;3;5"},
    {"SelectIdExists", nullptr, "SELECT id FROM pelkor WHERE id=4", nullptr, "4"},
    {"SelectWholeLines", nullptr,
     "SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor", nullptr,
     "1|-1|01/03/2025|100|rent|0|300|7| |ללא צבע|0|0", nullptr},
    {"SelectForecastAfterIpus", nullptr,
     "SELECT id, kind, date, detail, [in], out, IndTzefi FROM pelkor WHERE IndTzefi=true AND out=0 AND "
     "[date]>#3/15/2025# ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "6|+1|20/03/2025|forecast|70|0|1"},
    {"SelectForecastExpensesAfterIpus", "UPDATE pelkor SET IndTzefi=1 WHERE id IN (1,5)",
     "SELECT id, kind, date, detail, [in], out, IndTzefi FROM pelkor WHERE IndTzefi=true AND out<>0 AND "
     "[date]>#3/1/2025# ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, id",
     nullptr, "5|-2|15/03/2025|salary|0|400|1"},
    {"SelectFeedSimulated", "INSERT INTO demoOsh VALUES ('123',9,'2025-03-01','4','earlier',3,0,103,1)",
     "SELECT * FROM demoOsh WHERE trim(accountNum)='123' ORDER BY [date],transactionID", nullptr, "9;11",
     "transactionID"},
    {"SelectFeedNewestFirst", "INSERT INTO demoOsh VALUES ('123',9,'2025-03-01','4','earlier',3,0,103,1)",
     "SELECT * FROM demoOsh WHERE trim(accountNum)='123' ORDER BY [date],transactionID DESC", nullptr, "11;9",
     "transactionID"},
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
    {"LoadDayExpenses", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " WHERE [date]=#3/1/2025# AND left(kind,1)='-' ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2),"
     " detail, [in], out, pelkor.id",
     nullptr, "1|-1", "id,kind"},
    {"LoadDay", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " WHERE [date]=#3/1/2025# ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out,"
     " pelkor.id",
     nullptr, "2|+1;1|-1", "id,kind"},
    {"LoadKindInRange", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " WHERE [date]>=#3/1/2025# AND [date]<=#3/31/2025# AND kind='+1' ORDER BY date, Left(kind,1) DESC,"
     " Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, pelkor.id",
     nullptr, "2|01/03/2025;6|20/03/2025", "id,date"},
    {"LoadTypeInRange", nullptr,
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     " WHERE [date]>=#3/2/2025# AND [date]<=#3/20/2025# AND TypeNum=1 ORDER BY date, Left(kind,1) DESC,"
     " Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, pelkor.id",
     nullptr, "4;3;6", "id"},
    {"LoadWaitingLines", tempSetup,
     "SELECT tempPelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM"
     " tempPelkor WHERE left(zee,5)='coord' ORDER BY date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail,"
     " [in], out, tempPelkor.id",
     nullptr, "4|coord2;3|coord9", "id,zee"},
    {"LoadDamagedLines",
     "INSERT INTO pelkor (id,kind,date,detail,\"in\",out) VALUES (7,'+1','32/01/2025','bad date',1,0),"
     "(8,'-1','2025-05-05','bad out',0,'12 ש\"ח'),(9,'+7','nonsense','unknown kind',1,0)",
     "SELECT pelkor.id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, [relate], IndTzefi FROM pelkor"
     ",category where kind=category.id and (not isdate([date]) or not isnumeric([in]) or not isnumeric(out)) ORDER BY"
     " date, Left(kind,1) DESC, Len(Mid(kind,2)), Mid(kind,2), detail, [in], out, pelkor.id",
     nullptr, "8|05/05/2025|12 ש\"ח;7|32/01/2025|0", "id,date,out"},
    {"SelectDateRange", nullptr, "SELECT min([date]),max([date]) FROM pelkor", nullptr, "01/03/2025|20/03/2025"},
    {"SelectFirstDate", nullptr, "SELECT min(date) FROM pelkor", nullptr, "01/03/2025"},
    {"SelectOpening", nullptr, "SELECT sum([in]),sum([out]) FROM pelkor WHERE [date]<#3/15/2025#", nullptr,
     "1070|300"},
    {"SelectMergedOpening",
     "UPDATE pelkor SET zee='1' WHERE id IN (1,2,3); UPDATE pelkor SET zee='2' WHERE id IN (4,5,6);",
     "SELECT sum(iif(conv=0,[in],iif(conv>0,[in]*conv,[in]/-conv))),sum(iif(conv=0,[out],iif(conv>0,[out]*conv,"
     "[out]/-conv))) FROM pelkor,mergedBanks WHERE cint(zee)=[index] AND [date]<#3/16/2025#",
     nullptr, "1090|1100"},

    // Operations of several statements, one per line, as the program runs
    // them; "merged> " runs a line on the merged file's own connection.
    {"FlowCopyThenBalancingLineNumbersItself", nullptr,
     "SELECT * INTO tempPelkor from pelkor\n"
     "INSERT INTO tempPelkor([detail],[in],[out],[date],[kind],[TypeNum],[zee]) values('(שורת איזון יתרה)',0,12.5,"
     "#3/15/2025#,'-0',2,'coord0')\n"
     "INSERT INTO tempPelkor([in],[out],[memo],[kind],[typeNum],[confirm],[detail],[date],[zee]) values(8,0,3,'+0',"
     "1,' ','ריבית',#3/16/2025#,'coord1')",
     "SELECT group_concat(id || ':' || zee) FROM tempPelkor WHERE id > 6", "7:coord0,8:coord1"},
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
    {"FlowFinalSwapKeepsNumbering", "CREATE TABLE bckpPelkor (id INTEGER PRIMARY KEY, detail TEXT)",
     "SELECT * INTO tempPelkor from pelkor\n"
     "INSERT into tempPelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('+0',"
     "#3/20/2025#,' ','עיגול אגורות מול היתרה בבנק',0.01,0,1,' ','ללא צבע')\n"
     "DROP TABLE bckpPelkor\n"
     "SELECT * INTO bckpPelkor from pelkor\n"
     "DROP TABLE pelkor\n"
     "SELECT * INTO pelkor from tempPelkor\n"
     "INSERT into pelkor([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo]) Values('-1',#4/1/2025#,"
     "' ','rent',0,300,7,' ','newline ללא צבע')",
     "SELECT (SELECT count(*) FROM bckpPelkor), group_concat(id), (SELECT type FROM pragma_table_info('pelkor') "
     "WHERE name='date') FROM pelkor",
     "6|1,2,3,4,5,6,7,8|DATE"},
    {"FlowUpgradeIsAuto", oldDefaults,
     "ALTER TABLE Defaults ADD isAuto INTEGER\n"
     "UPDATE Defaults SET isAuto=1\n"
     "SELECT isAuto FROM Defaults",
     nullptr, "1"},
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
    {"FlowUpgradeInvoiceKinds", "DROP TABLE invoiceCategs",
     "SELECT * INTO invoiceCategs from pelkor WHERE [id]=6\n"
     "UPDATE invoiceCategs set detail=' '\n"
     "UPDATE invoiceCategs SET detail='+1,+10,'\n"
     "SELECT * FROM invoiceCategs",
     nullptr, "6|+1,+10,", "id,detail"},
    // The merged report's file: each member's lines under its own name and
    // place, their union as the lines, the kinds of the file with the most.
    {"FlowMergedReportFile", nullptr,
     "SELECT * INTO pelkor0 IN \"%M%\" FROM pelkor\n"
     "UPDATE pelkor0 IN \"%M%\" SET ZEE='0'\n"
     "SELECT * INTO pelkor1 IN \"%M%\" FROM pelkor\n"
     "UPDATE pelkor1 IN \"%M%\" SET ZEE='1'\n"
     "merged> SELECT * INTO pelkor FROM (SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, "
     "[relate], IndTzefi FROM pelkor0 UNION SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, "
     "[relate], IndTzefi FROM pelkor1)\n"
     "merged> DROP TABLE Category\n"
     "SELECT * INTO Category IN \"%M%\" FROM Category\n"
     "merged> INSERT INTO mergedBanks([index],fileName,conv) VALUES(0,'ledger',0)\n"
     "merged> INSERT INTO mergedBanks([index],fileName,conv) VALUES(1,'ledger',-4)",
     "SELECT count(*), count(DISTINCT id), group_concat(DISTINCT zee), (SELECT count(*) FROM category), "
     "(SELECT type FROM pragma_table_info('pelkor') WHERE name='in') FROM pelkor",
     "12|6|0,1|8|DOUBLE", nullptr, true},
    {"FlowMergedOpeningConverted", nullptr,
     "SELECT * INTO pelkor0 IN \"%M%\" FROM pelkor\n"
     "UPDATE pelkor0 IN \"%M%\" SET ZEE='0'\n"
     "merged> SELECT * INTO pelkor FROM (SELECT id, kind, date, confirm, detail, [in], out, TypeNum, zee, memo, "
     "[relate], IndTzefi FROM pelkor0 UNION SELECT id, kind, date, confirm, detail, [in], out, TypeNum, '1', memo, "
     "[relate], IndTzefi FROM pelkor0)\n"
     "merged> INSERT INTO mergedBanks([index],fileName,conv) VALUES(0,'a',0)\n"
     "merged> INSERT INTO mergedBanks([index],fileName,conv) VALUES(1,'b',-4)\n"
     "merged> SELECT sum(iif(conv=0,[in],iif(conv>0,[in]*conv,[in]/-conv))),sum(iif(conv=0,[out],iif(conv>0,"
     "[out]*conv,[out]/-conv))) FROM pelkor,mergedBanks WHERE cint(zee)=[index] AND [date]<#3/15/2025#",
     nullptr, "1337.5|375"},
};

class Statements : public StoreFile, public ::testing::WithParamInterface<Case> {};

TEST_P(Statements, HasItsEffect)
{
    const Case& c = GetParam();
    const QString merged = newFile(QStringLiteral("merged.pkr"), templateSchema());
    if (c.before && *c.before)
        cn.executeRaw(QString::fromUtf8(c.before));
    QString statements = QString::fromUtf8(c.statement);
    statements.replace(QLatin1String("%M%"), merged);
    Recordset rs;
    Connection mergedCn;
    try {
        for (QString statement : statements.split(QLatin1Char('\n'))) {
            Connection* on = &cn;
            if (statement.startsWith(QLatin1String("merged> "))) {
                if (!mergedCn.isOpen())
                    mergedCn.open(merged);
                on = &mergedCn;
                statement.remove(0, 8);
            }
            rs = on->execute(statement);
        }
    } catch (const StoreError& e) {
        FAIL() << e.what();
    }
    mergedCn.close();
    if (c.check) {
        QString got;
        if (c.onMerged) {
            Connection m;
            m.open(merged);
            got = rawOn(m.handle(), QString::fromUtf8(c.check));
        } else {
            got = raw(QString::fromUtf8(c.check));
        }
        EXPECT_EQ(got.toStdString(), std::string(c.expect)) << c.statement;
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
    } else if (QByteArray(c.name) == "SelectWholeLines") {
        got = rows(rs).section(QLatin1Char(';'), 0, 0);  // the first line is enough
        EXPECT_EQ(rs.recordCount(), 6);
    } else {
        got = rows(rs);
    }
    EXPECT_EQ(got.toStdString(), std::string(c.expect)) << c.statement;
}

INSTANTIATE_TEST_SUITE_P(EveryForm, Statements, ::testing::ValuesIn(cases),
                         [](const ::testing::TestParamInfo<Case>& i) { return std::string(i.param.name); });

} // namespace
} // namespace pelkor::store::testing
