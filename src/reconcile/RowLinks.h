// RowLinks: the marks and the pairs of a reconciliation.
//
// During a session a line of the file and a bank row each look plain,
// marked (pink: chosen for the next pairing) or confirmed (green with "v":
// paired). A pair, a row link, ties one bank row to many lines, or one line
// to many bank rows, or one of each; it is undone whole. Lines are held by
// their id, bank rows by their row number (the bank grid is never sorted or
// refilled while the session runs).
//
// Toggling follows the cursor of each grid: togglePaint acts on the main
// grid's current row, toggleBankPaint on the bank grid's. Two calls with
// isConfirmed true confirm a marked row (the first clears it, the second
// turns it green); a call with true on a confirmed row clears it when
// alreadyAsked is set, else asks whether to undo its pair.
//
// Every operation here costs the same whatever the size of the file: lines
// are found by id through an index, and the summaries add the marked rows
// alone.
//
// Not here: which rows may be paired and what pairing writes
// (Coordination), the session's life (Session).
#pragma once

#include <QDate>
#include <QHash>
#include <algorithm>
#include <QString>

#include <functional>
#include <vector>

namespace pelkor {
struct Instance;
struct MainGrid;
struct OpenLedger;
namespace ui { class Ui; }
}

namespace pelkor::reconcile {

struct BankGrid;

// A collection in the order of insertion, each key once.
template <class T>
class Keyed {
public:
    bool contains(const T& k) const { return std::find(items_.begin(), items_.end(), k) != items_.end(); }
    void add(const T& k) { if (!contains(k)) items_.push_back(k); }
    bool remove(const T& k)
    {
        auto it = std::find(items_.begin(), items_.end(), k);
        if (it == items_.end())
            return false;
        items_.erase(it);
        return true;
    }
    void clear() { items_.clear(); }
    int size() const { return int(items_.size()); }
    bool isEmpty() const { return items_.empty(); }
    const T& operator[](int i) const { return items_[size_t(i)]; }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    const std::vector<T>& items() const { return items_; }

private:
    std::vector<T> items_;
};

// One pair: the ids of its lines and the numbers of its bank rows.
struct RowLink {
    std::vector<QString> ids;
    std::vector<int> bankRows;
};

struct LinkParts {
    OpenLedger& ledger;
    const Instance& instance;
    MainGrid& main;
    BankGrid& bank;
    ui::Ui& ui;
};

// The texts under the grids while rows are marked.
struct MarkSummary {
    QString totalIn, totalOut, linesSelected;
};

class RowLinks {
public:
    explicit RowLinks(LinkParts parts) : p_(parts) {}

    // ---- state of the session ---------------------------------------------
    std::vector<RowLink> rowLinks;   // in order of creation
    Keyed<QString> paintedIDs;       // lines marked and not confirmed
    Keyed<int> paintedBankRows;      // bank rows marked and not confirmed
    QDate targetDate;                // bank rows after it take no part

    // Flags of a batch: each true only while a batch runs.
    bool forcePaint = false;         // rows above the red line may be toggled
    bool alreadyAsked = false;       // a confirmed row is toggled with no question
    bool suppressSummary = false;    // the summaries wait for the batch's end
    bool isMainGridBusy = false;     // the main grid is not redrawn per row
    bool isChangingTargetDate = false;  // bank rows after targetDate may be toggled

    // Empties the collections (a new session).
    void reset();

    // ---- marking ----------------------------------------------------------
    void togglePaint(bool isConfirmed);
    void toggleBankPaint(bool isConfirmed);
    // A click in the mark column of either grid (the row is current).
    void msfgMainMarkClicked() { togglePaint(false); }
    void msfgBankMarkClicked() { toggleBankPaint(false); }

    // ---- links ------------------------------------------------------------
    // Adds a link of the marked rows as they stand (the collections copied).
    int addLinkOfMarked();
    // Undoes link i: its lines get their sums and dates back from pelkor
    // (a line born in the session is hidden and deleted), both sides turn
    // plain, and the link goes.
    void cancelRowLink(int i);
    // The link that holds the line or the bank row; -1 none.
    int linkOfLine(const QString& id) const;
    int linkOfBankRow(int row) const;
    void highlightRowLink(int i);
    void unhighlightRowLinks();
    // After a cursor move on either grid: the pair under the cursor lit.
    void followCursor(bool onBankGrid);

    // ---- lines --------------------------------------------------------------
    // Index into lines of the line with that id; -1 none.
    int getLineIndexByID(const QString& id);
    // The line takes its sums and date from pelkor again (a cancelled pair
    // leaves no trace of the bank's sums).
    void revertRow(const QString& id);
    // The line takes what a dialog instance left of it in the working table;
    // a line the instance deleted is hidden. False for a kind the file does
    // not know (reported).
    bool refreshRow(const QString& id);
    void setInOutAndDate(int i, double in, double out, const QDate& date);
    void setTheDate(int i, const QDate& date);

    // After a load of the lines during a pairing: rows above the red line
    // confirmed, the lines of every link confirmed (on the working table),
    // and on a refresh the marked lines marked again. A marked line that
    // is gone leaves the marks.
    void restoreLooksAfterLoad(bool isRefresh);

    // ---- summaries ----------------------------------------------------------
    MarkSummary mainSummary() const { return mainSummary_; }
    MarkSummary bankSummary() const { return bankSummary_; }
    void refreshMainSummaryLabels();
    void refreshBankSummaryLabels();
    // Told whenever a summary changed.
    std::function<void()> summariesChanged;

    // ---- visibility of confirmed rows --------------------------------------
    bool chkShowCoordinatedRows = true;
    // Confirmed rows of both grids hidden (height 0) or shown again.
    void toggleCoordinatedRowsVisibility(bool show);
    // With the check off, the rows of a new link are hidden and the cursors
    // moved to rows that show.
    void maybeHideNewRowLink(int i);

private:
    bool isConfirmedMain(int row) const;
    bool isConfirmedBank(int row) const;
    void paintBankRow(int row, bool painted, bool isConfirmed, bool lit = false);
    void restyleMain(int row);
    void redrawLine(int i);
    void goToVisibleRows();

    LinkParts p_;
    QHash<QString, int> indexById_;
    int litLink_ = -1;
    MarkSummary mainSummary_, bankSummary_;
};

} // namespace pelkor::reconcile
