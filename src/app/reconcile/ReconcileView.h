// ReconcileView: a reconciliation beside the main grid: the bank's name and
// account, the bank grid (msfgBank) or the bank menu page (wbMain), the
// sums of the marked bank rows, and the session's buttons. The sums of
// the marked lines stand under the main grid (mainMarksBar).
//
// It mirrors reconcile::Session and forwards the user's acts to frmMain
// through its guard; it decides nothing.
#pragma once

#include <QWidget>

#include <functional>

class QCheckBox;
class QDialog;
class QLabel;
class QPushButton;

namespace pelkor::grid { class GridView; }
namespace pelkor::web { class QtWebView; }

namespace pelkor {

class frmMain;
class frmButtonView;
class frmMatchesView;
class AmountLabel;

class ReconcileView : public QWidget {
    Q_OBJECT
public:
    ReconcileView(frmMain& logic, std::function<void()> focusMain, QWidget* parent = nullptr);

    grid::GridView* bankGrid() const { return bank_; }
    // The sums of the marked lines, to stand under the main grid.
    QWidget* mainMarksBar() const { return mainMarks_; }
    // Mirrors the session; the owner calls it on every change of the logic.
    void mirror();

private:
    void click(const QString& name, const std::function<void()>& act);

    frmMain& m_;
    std::function<void()> focusMain_;
    QLabel* lblBankInfo_ = nullptr;
    QLabel* lblBrowser_ = nullptr;
    QLabel* lblParting_ = nullptr;
    web::QtWebView* wbMain_ = nullptr;
    grid::GridView* bank_ = nullptr;
    AmountLabel* lblBankTotalIn_ = nullptr;
    AmountLabel* lblBankTotalOut_ = nullptr;
    QLabel* lblBankLinesSelected_ = nullptr;
    QWidget* bankMarks_ = nullptr;
    QWidget* mainMarks_ = nullptr;
    AmountLabel* lblMainTotalIn_ = nullptr;
    AmountLabel* lblMainTotalOut_ = nullptr;
    QLabel* lblMainLinesSelected_ = nullptr;
    QPushButton* cmdCoordinate_ = nullptr;
    QPushButton* cmdSetTargetDate_ = nullptr;
    QPushButton* cmdExitCoordination_ = nullptr;
    QPushButton* cmdGoToAutomaticCoordination_ = nullptr;
    QPushButton* cmdSpecialFind_ = nullptr;
    QPushButton* cmdNext_ = nullptr;
    QPushButton* cmdPrev_ = nullptr;
    QCheckBox* chkShowCoordinatedRows_ = nullptr;
    // frmMatches: the proposed pairs, over the main window; frmButton: the
    // invitation to find them.
    frmMatchesView* frmMatches_ = nullptr;
    frmButtonView* frmButton_ = nullptr;
    void makeMatchesWindow();
    int fills_ = -1;
};

} // namespace pelkor
