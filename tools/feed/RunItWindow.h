// RunItWindow: runIt's window, "עידכון נתונים", a thin view over
// Downloader.
//
// Right to left: the bank's name, a button to pick statement files, what
// was found (files, accounts, dates, rows, sums, closing balance,
// problems), and the buttons to confirm or cancel. Shown, it asks for
// files at once. Confirm writes the feed and ends the program; cancel or
// the close box answer "pelkor CLOSED" and end it. Scripted runs click its
// controls ("cmdOpen", "cmdOK", "cmdCancel") through Ui::windowReady.
#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace pelkor::ui { class Ui; }

namespace pelkor::feed {

class Downloader;

class RunItWindow : public QWidget {
    Q_OBJECT
public:
    RunItWindow(Downloader& downloader, ui::Ui& ui, QWidget* parent = nullptr);

    // Shows the window and asks for the first files.
    void start();
    // Runs a control by name, as a click would ("cmdOpen", "cmdOK",
    // "cmdCancel"); unknown names do nothing.
    void click(const QString& control);
    QString summaryText() const;

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void pick();
    void refresh();
    void confirm();
    void finish(int code);

    Downloader& downloader_;
    ui::Ui& ui_;
    QLabel* lblBank_ = nullptr;
    QLabel* lblFiles_ = nullptr;
    QTableWidget* grdAccounts_ = nullptr;
    QPlainTextEdit* txtSummary_ = nullptr;
    QString summary_;
    QPushButton* cmdOpen_ = nullptr;
    QPushButton* cmdOK_ = nullptr;
    QPushButton* cmdCancel_ = nullptr;
    bool finished_ = false;
};

} // namespace pelkor::feed
