// The match finder on screen: frmMatches, the proposed pairs in a window of
// their own over the main window, which it blocks while it is open; and
// frmButton, the invitation to let the pairs be found, at the top of the
// reconciliation pane.
#pragma once

#include <QWidget>

class QCheckBox;
class QPushButton;

namespace pelkor::web { class QtWebView; }

namespace pelkor {

class frmMain;

class frmMatchesView : public QWidget {
public:
    frmMatchesView(frmMain& logic, QWidget* owner);
    web::QtWebView* page() const { return wb_; }
    // Mirrors the finder: shown (sized to its pairs) or hidden, the box.
    void mirror();

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    frmMain& m_;
    web::QtWebView* wb_ = nullptr;
    QCheckBox* chkShowAll_ = nullptr;
    QWidget* frame1_ = nullptr;
};

class frmButtonView : public QWidget {
public:
    frmButtonView(frmMain& logic, QWidget* parent);
    void mirror();

protected:
    void mousePressEvent(QMouseEvent* e) override;
    void paintEvent(QPaintEvent* e) override;

private:
    void go();
    frmMain& m_;
    QPushButton* cmdGo_ = nullptr;
    QPushButton* cmdClose_ = nullptr;
};

} // namespace pelkor
