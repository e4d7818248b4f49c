// MatchFinder: proposed pairs of bank rows and lines during a session, on a
// page the user accepts or rejects them on.
//
// findMatchesNow starts afresh; refreshMatchesNow searches again keeping
// the decisions: pairs accepted on the page stay (their rows are out of the
// search, and they are listed below the new pairs, already accepted), and
// rejected ones are not proposed again until the next fresh search. The
// decisions live on the page only (the pressed pictures shown), and are
// read from it just before the next search rewrites it. OK coordinates each
// accepted pair as the user would by marking its two rows and pressing the
// coordinate button.
//
// Each search writes match_log.txt in the log folder and matchPage.htm in
// the temporary folder (windows-1255).
#pragma once

#include "reconcile/MatchPasses.h"

#include <QString>

#include <functional>
#include <QSet>
#include <vector>

namespace pelkor {
struct MainGrid;
struct OpenLedger;
namespace ui { class Ui; }
namespace web { class WebView; }
}

namespace pelkor::reconcile {

struct BankGrid;
class Coordination;
class RowLinks;

struct MatchParts {
    OpenLedger& ledger;
    MainGrid& main;
    BankGrid& bank;
    RowLinks& links;
    Coordination& coord;
    ui::Ui& ui;
    std::function<web::WebView&()> wb;   // frmMatches' page
    QString tempPath, logDirectory;      // end with a separator
    // Lets pending events run (not the user's): the wait notice paints.
    std::function<void()> letEventsRun;
};

// The colours of the page: by grade, darker for a better proof.
inline const QString qualityColors[5] = {QStringLiteral("#9999ff"), QStringLiteral("#bbbbff"), QStringLiteral("#bbbbff"),
                                         QStringLiteral("#ddddff"), QStringLiteral("#ddddff")};
inline const QString acceptColor = QStringLiteral("#aaffaa");
inline const QString rejectColor = QStringLiteral("#ffaaaa");

class MatchFinder {
public:
    explicit MatchFinder(MatchParts parts) : p_(std::move(parts)) {}

    std::vector<MatchPair> matches, previousMatches;
    QSet<QString> rejectedMatches;   // row pairs, "<iMain> <iBank>"
    int nNew = 0;                                  // new pairs at the head of matches
    bool frmMatchesVisible = false;
    bool chkShowAll = false;
    bool searching = false;                        // the main window and the menu entry are off
    bool waitNotice = false;                       // "מחפש התאמות" is shown: the search is long
    // The window shows or hides frmMatches, or disables the main window.
    std::function<void()> changed;

    void findMatchesNow();
    void refreshMatchesNow();
    void reallyRefreshMatchesNow();
    // Decisions on the page, pair i from 1.
    bool isAcceptedMatch(int i);
    bool isRejectedMatch(int i);
    void applyConfirmedMatches();
    // frmMatches' buttons.
    void cmdOK_Click();
    void cmdCancel_Click();
    void chkShowAll_Click(bool on);
    // The page's text for the pairs in matches, the first n new.
    QString pageHtml(int n) const;
    QString pagePath() const { return p_.tempPath + QStringLiteral("matchPage.htm"); }
    // The page's size in pixels for the pairs in matches: as wide as its
    // header (the main grid's columns from kind to expense, the place cell
    // and the pictures' cell, and room for a scroll bar past nine pairs),
    // as high as nine pairs at most.
    int pageWidth() const;
    int pageHeight() const;

private:
    void nothingFound();
    void unload();
    MatchParts p_;
};

} // namespace pelkor::reconcile
