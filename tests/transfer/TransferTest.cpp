// A transfer between two ledgers as a user makes it in frmTransfer: the
// files chosen by rule, the cells typed, OK; and the pair of writes when
// the second file refuses.
#include "TestSupport.h"
#include "base/Trace.h"
#include "seams/store/Connection.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"
#include "transfer/TransferJournal.h"
#include "transfer/TransferTestFiles.h"
#include "transfer/frmTransfer.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelkor;
using namespace pelkor::testing;
using transfer::frmTransfer;

namespace {

constexpr int src = frmTransfer::sourceRow;
constexpr int dst = frmTransfer::destRow;

// A busy policy that gives up at once.
struct GiveUp : store::BusyPolicy {
    void waiting(const QString&, int) override {}
    bool retry(const QString&) override { return false; }
    void done(const QString&) override {}
    int patienceMs() const override { return 50; }
};

class Transfer : public ::testing::Test {
protected:
    void SetUp() override
    {
        ensureApplication();
        a = dir.filePath(QStringLiteral("עסק.pkr"));
        b = dir.filePath(QStringLiteral("חיסכון.pkr"));
        makeTransferPair(a, b);
    }
    frmTransfer& open(const QString& source, const QString& dest, const QString& moreRules = {})
    {
        ui = std::make_unique<ui::ScriptedUi>(
            ui::DialogRules::parse(moreRules + QStringLiteral("\nבחר קובץ מקור => ") + source
                                   + QStringLiteral("\nבחר קובץ יעד => ") + dest),
            dir.filePath(QStringLiteral("transcript.tsv")));
        transfer::TransferParts parts{*ui, trace, QDate(2025, 6, 1), dir.path(), QString()};
        parts.busy = &giveUp;
        dlg = std::make_unique<frmTransfer>(std::move(parts));
        dlg->click(QStringLiteral("cmdBrowse0"));
        dlg->click(QStringLiteral("cmdBrowse1"));
        return *dlg;
    }
    // The message boxes shown, "title|text" each.
    QStringList messages() const
    {
        QFile f(dir.filePath(QStringLiteral("transcript.tsv")));
        QStringList out;
        if (f.open(QIODevice::ReadOnly))
            for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
                const QStringList p = line.split(QLatin1Char('\t'));
                if (p.value(1) == QLatin1String("msgbox"))
                    out << p.value(2) + QLatin1Char('|') + p.value(3);
            }
        return out;
    }
    QString lines(const QString& file)
    {
        return queryRows(file, QStringLiteral("SELECT kind, date, confirm, detail, [In], out, TypeNum FROM pelkor "
                                              "WHERE id > 1 ORDER BY id"));
    }

    QTemporaryDir dir;
    QString a, b;
    Trace trace{dir.path(), QStringLiteral("test")};
    GiveUp giveUp;
    std::unique_ptr<ui::ScriptedUi> ui;
    std::unique_ptr<frmTransfer> dlg;
};

} // namespace

TEST_F(Transfer, EachLineTakesItsOwnFilesKindsAndTypesAndTheSumAndDateAreShared)
{
    frmTransfer& t = open(a, b);
    // Each row's detail names the other file.
    EXPECT_EQ(t.msfg().text(src, transfer::tcDetail), QStringLiteral("העברה ל: חיסכון.pkr"));
    EXPECT_EQ(t.msfg().text(dst, transfer::tcDetail), QStringLiteral("העברה מ: עסק.pkr"));
    EXPECT_FALSE(t.isEnabled(QStringLiteral("cmdOK")));

    // The destination's file lacks +7: refused there, kept as +0.
    EXPECT_FALSE(t.typeInto(dst, transfer::tcKind, QStringLiteral("7+")));
    EXPECT_EQ(t.msfg().text(dst, transfer::tcKind), QStringLiteral("0+"));
    EXPECT_TRUE(t.typeInto(dst, transfer::tcKind, QStringLiteral("6+")));
    // An income kind on the expense row is refused whatever the file holds.
    EXPECT_FALSE(t.typeInto(src, transfer::tcKind, QStringLiteral("6+")));
    EXPECT_TRUE(t.typeInto(src, transfer::tcKind, QStringLiteral("6-")));
    // The type only the destination's file has.
    EXPECT_FALSE(t.typeInto(src, transfer::tcType, QStringLiteral("העברה מחשבון אחר")));
    EXPECT_TRUE(t.typeInto(dst, transfer::tcType, QStringLiteral("העברה מחשבון אחר")));
    EXPECT_TRUE(t.typeInto(src, transfer::tcType, QStringLiteral("העברה בנקאית יוצאת")));
    // Typing in the destination's income fills the source's expense; the
    // two other sum cells take no input.
    EXPECT_TRUE(t.typeInto(dst, transfer::tcIn, QStringLiteral("500")));
    EXPECT_EQ(t.msfg().text(src, transfer::tcOut), QStringLiteral("500.00"));
    EXPECT_FALSE(t.typeInto(src, transfer::tcIn, QStringLiteral("700")));
    EXPECT_FALSE(t.typeInto(dst, transfer::tcOut, QStringLiteral("700")));
    EXPECT_EQ(t.msfg().text(src, transfer::tcIn), QString());
    EXPECT_TRUE(t.typeInto(src, transfer::tcOut, QStringLiteral("1250.5")));
    EXPECT_EQ(t.msfg().text(dst, transfer::tcIn), QStringLiteral("1,250.50"));
    // One date for both rows; F8 moves both a day on.
    EXPECT_TRUE(t.typeInto(dst, transfer::tcDate, QStringLiteral("9/4/2025")));
    t.keyDown(Qt::Key_F8);
    EXPECT_EQ(t.msfg().text(src, transfer::tcDate), QStringLiteral("10/04/2025"));
    // A reference over 50 characters is cut on its own row.
    EXPECT_TRUE(t.typeInto(src, transfer::tcConfirm, QString(60, QLatin1Char('7'))));
    EXPECT_EQ(t.msfg().text(src, transfer::tcConfirm).size(), 50);
    EXPECT_EQ(t.msfg().text(dst, transfer::tcConfirm), QString());
    ASSERT_TRUE(t.isEnabled(QStringLiteral("cmdOK")));

    t.click(QStringLiteral("cmdOK"));
    EXPECT_TRUE(t.isClosed());
    EXPECT_TRUE(messages().contains(QStringLiteral("העברה|בוצע בהצלחה")));
    EXPECT_EQ(lines(a), QStringLiteral("-6|10/04/2025|%1|העברה ל: חיסכון.pkr|0|1250.5|6").arg(QString(50, QLatin1Char('7'))));
    // The destination's own type number and, for the kind left alone, its own default.
    EXPECT_EQ(lines(b), QStringLiteral("+6|10/04/2025| |העברה מ: עסק.pkr|1250.5|0|10"));
}

TEST_F(Transfer, EmptyTypesTakeEachFilesOwnDefaults)
{
    frmTransfer& t = open(a, b);
    t.typeInto(src, transfer::tcOut, QStringLiteral("80"));
    t.typeInto(src, transfer::tcDate, QStringLiteral("01/05/2025"));
    t.click(QStringLiteral("cmdOK"));
    ASSERT_TRUE(t.isClosed());
    EXPECT_EQ(lines(a), QStringLiteral("-0|01/05/2025| |העברה ל: חיסכון.pkr|0|80|2"));
    // The destination calls its type 1 by a name of its own.
    EXPECT_EQ(queryRows(b, QStringLiteral("SELECT kind, TypeNum, [In] FROM pelkor WHERE id > 1")), QStringLiteral("+0|1|80"));
}

TEST_F(Transfer, RefusalsTellTheUserAndWriteNothing)
{
    // The same file on both sides: refused at OK, not at the choice.
    {
        frmTransfer& t = open(a, a);
        EXPECT_EQ(t.fileName(1), a);
        t.typeInto(src, transfer::tcOut, QStringLiteral("10"));
        t.typeInto(src, transfer::tcDate, QStringLiteral("01/05/2025"));
        EXPECT_FALSE(t.cmdOK_Click());
        EXPECT_TRUE(messages().contains(QStringLiteral("שגיאה|קובץ המקור הוא גם קובץ היעד")));
        EXPECT_FALSE(t.isClosed());
    }
    // A sum that is no number: the cell shows the sum it had, and OK says so.
    frmTransfer& t = open(a, b);
    t.typeInto(src, transfer::tcOut, QStringLiteral("500"));
    EXPECT_FALSE(t.typeInto(src, transfer::tcOut, QStringLiteral("חמש מאות")));
    EXPECT_TRUE(messages().contains(QStringLiteral("שגיאה|הערך בטור ההוצאה אינו מספר")));
    EXPECT_EQ(t.msfg().text(src, transfer::tcOut), QStringLiteral("500.00"));
    EXPECT_EQ(t.msfg().text(dst, transfer::tcIn), QStringLiteral("500.00"));
    t.msfg().setText(src, transfer::tcOut, QStringLiteral("abc"));
    t.typeInto(src, transfer::tcDate, QStringLiteral("01/05/2025"));
    EXPECT_FALSE(t.cmdOK_Click());
    // A date not after the destination's zeroing date (01/03/2025), though
    // after the source's: refused naming the destination and its date.
    t.typeInto(src, transfer::tcOut, QStringLiteral("500"));
    t.typeInto(src, transfer::tcDate, QStringLiteral("01/03/2025"));
    EXPECT_FALSE(t.cmdOK_Click());
    EXPECT_TRUE(messages().contains(QStringLiteral("שגיאה|יש למלא תאריך מאוחר מתאריך האיפוס של קובץ היעד:\\n01/03/2025")))
        << messages().join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(t.msfg().Row(), dst);
    EXPECT_EQ(lines(a), QString());
    EXPECT_EQ(lines(b), QString());
}

TEST_F(Transfer, ADestinationHeldByAnotherProcessUndoesTheSourceLine)
{
    frmTransfer& t = open(a, b);
    t.typeInto(src, transfer::tcOut, QStringLiteral("300"));
    t.typeInto(src, transfer::tcDate, QStringLiteral("01/05/2025"));
    store::Connection holder;
    holder.open(b);
    holder.executeRaw(QStringLiteral("BEGIN IMMEDIATE"));
    EXPECT_FALSE(t.cmdOK_Click());
    holder.executeRaw(QStringLiteral("ROLLBACK"));
    const QString told = messages().join(QLatin1Char('\n'));
    EXPECT_TRUE(told.contains(QStringLiteral("קובץ היעד \"\u2068חיסכון.pkr\u2069\" לא קיבל את השורה"))) << told.toStdString();
    EXPECT_TRUE(told.contains(QStringLiteral("דבר לא השתנה באף אחד מהקבצים")));
    EXPECT_EQ(lines(a), QString());
    EXPECT_EQ(lines(b), QString());
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT count(*) FROM transferJournal")), QStringLiteral("0"));
    // Free again, the same dialog writes the pair.
    EXPECT_TRUE(t.cmdOK_Click());
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT out FROM pelkor WHERE id > 1")), QStringLiteral("300"));
    EXPECT_EQ(queryRows(b, QStringLiteral("SELECT [In] FROM pelkor WHERE id > 1")), QStringLiteral("300"));
}

TEST_F(Transfer, ASecondFileThatVanishedOrIsReadOnlyUndoesTheFirstLine)
{
    const QString insert = QStringLiteral("INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) "
                                          "Values('-0',#5/1/2025#,' ','x',0,5,2,' ',' ',false)");
    const QString insert2 = QStringLiteral("INSERT into pelkor ([kind],[date],[confirm],[detail],[In],[out],[TypeNum],[zee],[memo],[IndTzefi]) "
                                           "Values('+0',#5/1/2025#,' ','x',5,0,1,' ',' ',false)");
    store::Connection first;
    first.open(a);
    // Gone between the choice and OK.
    const QString gone = dir.filePath(QStringLiteral("gone.pkr"));
    transfer::PairWrite w = transfer::writeTransferPair(
        first, insert, [&](store::Connection& c) { c.open(gone); }, gone, insert2);
    EXPECT_FALSE(w.done);
    EXPECT_EQ(w.refused, 1);
    EXPECT_TRUE(w.firstUndone);
    EXPECT_EQ(lines(a), QString());
    // Open only for reading.
    w = transfer::writeTransferPair(
        first, insert, [&](store::Connection& c) { c.open(b, store::Connection::OpenMode::ReadOnly); }, b, insert2);
    EXPECT_EQ(w.refused, 1);
    EXPECT_TRUE(w.firstUndone);
    EXPECT_EQ(lines(a), QString());
    EXPECT_EQ(lines(b), QString());
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT count(*) FROM transferJournal")), QStringLiteral("0"));
    // And whole when both take it.
    w = transfer::writeTransferPair(first, insert, [&](store::Connection& c) { c.open(b); }, b, insert2);
    EXPECT_TRUE(w.done);
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT detail, out FROM pelkor WHERE id > 1")), QStringLiteral("x|5"));
    EXPECT_EQ(queryRows(b, QStringLiteral("SELECT detail, [In] FROM pelkor WHERE id > 1")), QStringLiteral("x|5"));
}

TEST_F(Transfer, ANoteLeftByADeadProcessIsSettledByTheSecondFilesWord)
{
    // Two notes as a killed run leaves them: one whose second line was
    // written (its marker is there), one whose second line never came.
    store::Connection cn;
    cn.open(a);
    cn.executeRaw(QStringLiteral(
        "CREATE TABLE transferJournal (token TEXT NOT NULL, secondPath TEXT NOT NULL, pid INTEGER, lineId INTEGER);"
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo) VALUES "
        "(50,'-0','2025-05-01',' ','whole',0,5,2,' ',' '),(51,'-0','2025-05-02',' ','half',0,6,2,' ',' ');"));
    cn.executeRaw(QStringLiteral("INSERT INTO transferJournal VALUES ('t-whole', '%1', 0, 50), ('t-half', '%1', 0, 51);").arg(b));
    {
        store::Connection second;
        second.open(b);
        second.executeRaw(QStringLiteral("CREATE TABLE movedLines (token TEXT PRIMARY KEY); INSERT INTO movedLines VALUES ('t-whole');"));
    }
    const transfer::PendingTransfers p = transfer::finishPendingTransfers(cn, QStringLiteral("pelkor"));
    EXPECT_EQ(p.kept, 1);
    EXPECT_EQ(p.undone, 1);
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT detail FROM pelkor WHERE id > 1")), QStringLiteral("whole"));
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT count(*) FROM transferJournal")), QStringLiteral("0"));
    // A note whose second file cannot be read waits for a later open.
    cn.executeRaw(QStringLiteral("INSERT INTO transferJournal VALUES ('t-away', '/nowhere/x.pkr', 0, 50);"));
    const transfer::PendingTransfers later = transfer::finishPendingTransfers(cn, QStringLiteral("pelkor"));
    EXPECT_EQ(later.left, 1);
    EXPECT_EQ(later.problems, QStringList{QStringLiteral("/nowhere/x.pkr")});
    EXPECT_EQ(queryRows(a, QStringLiteral("SELECT detail FROM pelkor WHERE id > 1")), QStringLiteral("whole"));
}
