// QtUi: the Ui of the real program: right-to-left message boxes, input
// boxes and file dialogs, and a Qt view for each of the program's own
// dialogs (picked by the dialog's name).
//
// Every window is modal to the parent window given (or to the application),
// opens centred on the window the user works in (the parent when it shows,
// else the active window), and carries the title the caller gives; an
// empty title becomes "פלקור".
//
// A file dialog is right to left like the rest, but what it shows of the
// file system reads left to right: the folder's path, the file name, the
// filters ("פלקור (*.pkr)") and the names, sizes and dates of the files.
// Laid out right to left, "/tmp/ledgers" showed as "tmp/ledgers/" and "*.pkr"
// as "pkr.*".
#pragma once

#include "seams/ui/Ui.h"

#include <QPointer>
#include <QWidget>

class QFileDialog;

namespace pelkor::ui {

class QtUi : public Ui {
public:
    explicit QtUi(QWidget* parent = nullptr) : parent_(parent) {}

    // The window the next prompts belong to.
    void setParentWindow(QWidget* parent) { parent_ = parent; }

    Answer msgBox(const QString& text, const QString& title, Buttons buttons = Buttons::OK,
                  Icon icon = Icon::None) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText = {}) override;
    QStringList openFileDialog(const FileDialogOptions& spec) override;
    QString saveFileDialog(const FileDialogOptions& spec) override;
    // A dialog without a view is closed unanswered (with a warning).
    bool runDialog(Dialog& d) override;

    // Sets the parts of Qt's own file dialog that show paths, file names,
    // filters, sizes and dates left to right (nothing in the desktop's).
    static void keepPathsLeftToRight(QFileDialog& dlg);
    // A file's size as the file dialog shows it: "940 בתים", "91.8 ק\"ב".
    static QString fileSize(qint64 bytes);

    // The user clicks for themselves: nothing to do.
    void windowReady(const QString&, const QString&, std::function<void(const QString&)>) override {}

    // The Hebrew text of a button: "אישור", "ביטול", "כן", "לא", "בטל",
    // "נסה שוב", "התעלם".
    static QString buttonText(Answer a);

private:
    QStringList runFileDialog(const FileDialogOptions& spec, bool save);
    // The window a prompt opens over.
    QWidget* owner() const;

    QPointer<QWidget> parent_;
};

} // namespace pelkor::ui
