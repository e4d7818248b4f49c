// DialogBinder: ties the widgets of a dialog's Qt view to its logic.
//
// Each widget change is handed to the logic (a click, an option turned on, a
// text typed), and after each the logic's values, enabled states, focus and
// closing are mirrored back onto the widgets. The view builds and lays out
// its widgets and binds them by the controls' names; it holds no rules.
#pragma once

#include "seams/ui/Dialog.h"

#include <QHash>
#include <QString>

class QAbstractButton;
class QDialog;
class QLineEdit;
class QRadioButton;
class QCheckBox;
class QWidget;

namespace pelkor::ui {

class DialogBinder {
public:
    // The window's close box and Esc close the logic through dismiss().
    DialogBinder(Dialog& logic, QDialog& window);

    void bindButton(const QString& name, QAbstractButton* button);
    void bindOption(const QString& name, QRadioButton* option);
    void bindCheck(const QString& name, QCheckBox* check);
    void bindText(const QString& name, QLineEdit* edit);

    // Mirrors the logic onto the widgets; closes the window once the logic
    // has closed.
    void sync();

private:
    Dialog& logic_;
    QDialog& window_;
    QHash<QString, QWidget*> widgets_;
    QString lastFocus_;
    bool syncing_ = false;
};

} // namespace pelkor::ui
