// A reconciliation under way without a window: the ledger loaded from its
// working table in the split screen, the bank grid filled from a feed, and
// the marks and pairs of the session.
#pragma once

#include "FeedFixture.h"

#include "base/Instance.h"
#include "base/Shown.h"
#include "base/WindowCalls.h"
#include "file/Display.h"
#include "file/Loader.h"
#include "file/MainGrid.h"
#include "reconcile/AccountBinding.h"
#include "reconcile/BankGrid.h"
#include "reconcile/Coordination.h"
#include "reconcile/RowLinks.h"

namespace pelkor::testing {

// What the window was asked, recorded.
struct RecordingWindow : WindowCalls {
    QStringList asked;
    std::function<void()> onRefresh;
    void shownChanged() override {}
    void linesLoaded() override {}
    void openNewDialog(NewLineDialogType type) override { asked << QStringLiteral("openNewDialog %1").arg(int(type)); }
    void handleZeroLines() override { asked << QStringLiteral("handleZeroLines"); }
    void exitProg() override { asked << QStringLiteral("exitProg"); }
    void refresh() override
    {
        asked << QStringLiteral("refresh");
        if (onRefresh)
            onRefresh();
    }
    void keyboardLanguage(bool) override {}
};

class SessionTest : public FeedTest {
protected:
    // The file's lines (plain SQLite) and the bank's rows of account "1";
    // the zeroing mark on the line given, the target date as given.
    void startSession(const QString& linesSql, const QString& bankRowsSql, const QDate& target)
    {
        makeLedgerBound(1, QStringLiteral("1"), linesSql);
        makeFeed(0, bankRowsSql);
        led.cn.execute(QStringLiteral("SELECT * INTO tempPelkor from pelkor"));
        led.linesTable = QStringLiteral("tempPelkor");
        inst.progMode = modeSplitScreen;
        load(false);
        reconcile::BindingParts bp{led, feed, scripted({}), tempPath, dir.path(), QStringLiteral("shop")};
        auto rows = reconcile::readBoundAccount(bp);
        ASSERT_TRUE(rows.has_value());
        fillBankGrid(bank, *rows, target, 0, false);
        links.targetDate = target;
        led.targetDate = target;
        links.restoreLooksAfterLoad(false);
        window.onRefresh = [this] { load(true); };
    }
    void load(bool refresh)
    {
        if (!ui_)
            scripted({});
        LoadParts p{led, inst, main, shown, *ui_, window};
        ASSERT_EQ(openDB(p, refresh), LoadResult::Loaded);
        if (refresh)
            links.restoreLooksAfterLoad(true);
    }
    // The answers the next questions take.
    void answer(const QString& rules) { scripted(rules); }

    // Grid row of the line with that detail; -1 none.
    int rowOf(const QString& detail) const
    {
        for (size_t i = 0; i < led.lines.size(); ++i)
            if (led.lines[i].detail == detail)
                return int(i) + 1;
        return -1;
    }
    void clickLine(const QString& detail)
    {
        main.msfgMain.setRow(rowOf(detail));
        links.msfgMainMarkClicked();
    }
    void clickBank(int row)
    {
        bank.msfgBank.setRow(row);
        links.msfgBankMarkClicked();
    }
    bool confirmedLine(const QString& detail) const { return main.msfgMain.text(rowOf(detail), colMark) == QLatin1String("v"); }
    bool confirmedBank(int row) const { return bank.msfgBank.text(row, colMark) == QLatin1String("v"); }
    QString pelkorRows() { return query(QStringLiteral("SELECT * FROM pelkor ORDER BY id")); }

    Instance inst;
    MainGrid main;
    Shown shown;
    RecordingWindow window;
    reconcile::BankFeed feed;
    reconcile::BankGrid bank;
    reconcile::RowLinks links{reconcile::LinkParts{led, inst, main, bank, forward}};
    reconcile::Coordination coord{reconcile::CoordinationParts{
        reconcile::LinkParts{led, inst, main, bank, forward}, links, window, {}, {}, {}, {}, {}}};
};

} // namespace pelkor::testing
