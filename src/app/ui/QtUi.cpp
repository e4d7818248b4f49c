// QtUi: prompts as real right-to-left Qt windows (see the header).
#include "app/reconcile/ReconcileDialogs.h"
#include "app/ui/QtUi.h"

#include "app/Placement.h"
#include "app/ui/frmNoIpusView.h"
#include "app/ui/frmPasswordView.h"
#include "app/ui/dlgKindView.h"
#include "app/ui/frmAddLineView.h"
#include "app/ui/frmConvertView.h"
#include "app/ui/frmCalcView.h"
#include "app/ui/frmConstantTransactionsView.h"
#include "app/ui/frmSubtractFromTzefiView.h"
#include "app/ui/frmTzefiView.h"
#include "app/reports/frmInvoiceKindsView.h"
#include "app/transfer/frmMoveOrCopyView.h"
#include "app/transfer/frmTransferView.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QLocale>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProxyStyle>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace pelkor::ui {

namespace {

QString titleOr(const QString& title)
{
    return title.isEmpty() ? QStringLiteral("פלקור") : title;
}

QMessageBox::ButtonRole roleOf(Answer a)
{
    switch (a) {
    case Answer::OK:
    case Answer::Retry:
    case Answer::Ignore: return QMessageBox::AcceptRole;
    case Answer::Cancel:
    case Answer::Abort: return QMessageBox::RejectRole;
    case Answer::Yes: return QMessageBox::YesRole;
    case Answer::No: return QMessageBox::NoRole;
    }
    return QMessageBox::AcceptRole;
}

QMessageBox::Icon iconOf(Icon i)
{
    switch (i) {
    case Icon::None: return QMessageBox::NoIcon;
    case Icon::Critical: return QMessageBox::Critical;
    case Icon::Question: return QMessageBox::Question;
    case Icon::Exclamation: return QMessageBox::Warning;
    case Icon::Information: return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

// Cells whose text reads left to right, in a view that keeps its
// right-to-left order of columns. The sizes and dates of the dialog's
// files come in the program's forms (Qt writes them in the desktop's
// locale, English where that is unset): "12.5 ק\"ב", "01/06/2025 14:05".
class LeftToRightCells : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->direction = Qt::LeftToRight;
        const auto* files = qobject_cast<const QFileSystemModel*>(index.model());
        if (!files)
            return;
        if (index.column() == sizeColumn && !files->isDir(index))
            option->text = QtUi::fileSize(files->size(index));
        else if (index.column() == dateColumn)
            option->text = files->lastModified(index).toString(QStringLiteral("dd/MM/yyyy HH:mm"));
    }

private:
    // The columns of Qt's file system model.
    static constexpr int sizeColumn = 1, dateColumn = 3;
};

// The text a style draws for a widget, left to right: a combo box draws
// its current text through the painter, whose direction is the
// application's, whatever the combo's own.
class LeftToRightText : public QProxyStyle {
public:
    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& pal, bool enabled,
                      const QString& text, QPalette::ColorRole textRole) const override
    {
        QProxyStyle::drawItemText(painter, rect, flags | Qt::TextForceLeftToRight, pal, enabled, text, textRole);
    }
};

} // namespace

void QtUi::keepPathsLeftToRight(QFileDialog& dlg)
{
    // Qt's own dialog (not the desktop's) names its parts: the folder
    // combo, the file name, the filter combo, and the two views of the
    // folder's files. The side bar of places keeps its own painting.
    for (const char* name : {"lookInCombo", "fileNameEdit", "fileTypeCombo"}) {
        auto* w = dlg.findChild<QWidget*>(QLatin1String(name));
        if (!w)
            continue;
        w->setLayoutDirection(Qt::LeftToRight);
        if (qobject_cast<QComboBox*>(w)) {
            auto* style = new LeftToRightText;
            style->setParent(w);
            w->setStyle(style);
        }
    }
    for (const char* name : {"listView", "treeView"})
        if (auto* v = dlg.findChild<QAbstractItemView*>(QLatin1String(name)))
            v->setItemDelegate(new LeftToRightCells(v));
    // Sizes and dates whole, not cut in the middle; the name takes the rest.
    if (auto* tree = dlg.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        QHeaderView* h = tree->header();
        h->setStretchLastSection(false);
        h->setSectionResizeMode(0, QHeaderView::Stretch);
        for (int c = 1; c < h->count(); ++c)
            h->setSectionResizeMode(c, QHeaderView::ResizeToContents);
        dlg.resize(std::max(dlg.width(), 760), std::max(dlg.height(), 460));
    }
}

QWidget* QtUi::owner() const
{
    if (parent_ && parent_->isVisible() && !parent_->isMinimized())
        return parent_;
    return QApplication::activeWindow();
}

QString QtUi::fileSize(qint64 bytes)
{
    // Qt's own words for the units, in Hebrew where installed.
    const char* units[] = {"%1 KB", "%1 MB", "%1 GB", "%1 TB"};
    if (bytes < 1024)
        return QCoreApplication::translate("QFileSystemModel", "%1 bytes").arg(bytes);
    double v = double(bytes) / 1024;
    int u = 0;
    while (v >= 1024 && u < 3) {
        v /= 1024;
        ++u;
    }
    return QCoreApplication::translate("QFileSystemModel", units[u]).arg(QLocale::c().toString(v, 'f', v < 10 ? 1 : 0));
}

QString QtUi::buttonText(Answer a)
{
    switch (a) {
    case Answer::OK: return QStringLiteral("אישור");
    case Answer::Cancel: return QStringLiteral("ביטול");
    case Answer::Yes: return QStringLiteral("כן");
    case Answer::No: return QStringLiteral("לא");
    case Answer::Abort: return QStringLiteral("בטל");
    case Answer::Retry: return QStringLiteral("נסה שוב");
    case Answer::Ignore: return QStringLiteral("התעלם");
    }
    return {};
}

Answer QtUi::msgBox(const QString& text, const QString& title, Buttons buttons, Icon icon)
{
    QMessageBox box(iconOf(icon), titleOr(title), text, QMessageBox::NoButton, parent_);
    box.setLayoutDirection(Qt::RightToLeft);
    const std::vector<Answer> offered = buttonsOf(buttons);
    std::vector<std::pair<QAbstractButton*, Answer>> made;
    for (Answer a : offered) {
        QPushButton* b = box.addButton(buttonText(a), roleOf(a));
        made.emplace_back(b, a);
        if (a == Answer::Cancel || (offered.size() == 1))
            box.setEscapeButton(b);
    }
    box.setDefaultButton(static_cast<QPushButton*>(made.front().first));
    // Qt centres a box on a parent that shows.
    if (owner() != parent_)
        centreOn(box, owner());
    box.exec();
    for (const auto& [button, answer] : made)
        if (box.clickedButton() == button)
            return answer;
    // Closed some other way: Cancel where the box has it, else its default.
    for (Answer a : offered)
        if (a == Answer::Cancel)
            return a;
    return offered.front();
}

std::optional<QString> QtUi::inputBox(const QString& prompt, const QString& title,
                                      const QString& defaultText)
{
    QInputDialog dlg(parent_);
    dlg.setLayoutDirection(Qt::RightToLeft);
    dlg.setWindowTitle(titleOr(title));
    dlg.setLabelText(prompt);
    dlg.setTextValue(defaultText);
    dlg.setOkButtonText(buttonText(Answer::OK));
    dlg.setCancelButtonText(buttonText(Answer::Cancel));
    if (owner() != parent_)
        centreOn(dlg, owner());
    if (dlg.exec() != QDialog::Accepted)
        return std::nullopt;
    return dlg.textValue();
}

QStringList QtUi::runFileDialog(const FileDialogOptions& spec, bool save)
{
    QFileDialog dlg(parent_, titleOr(spec.title), spec.startDir);
    dlg.setLayoutDirection(Qt::RightToLeft);
    const QStringList filters = qtNameFilters(spec.filter);
    if (!filters.isEmpty())
        dlg.setNameFilters(filters);
    keepPathsLeftToRight(dlg);
    QString ext = spec.defaultExt;
    if (ext.startsWith(QLatin1Char('.')))
        ext.remove(0, 1);
    dlg.setDefaultSuffix(ext);
    if (save) {
        dlg.setAcceptMode(QFileDialog::AcceptSave);
        dlg.setFileMode(QFileDialog::AnyFile);
    } else {
        dlg.setAcceptMode(QFileDialog::AcceptOpen);
        dlg.setFileMode(spec.multiSelect      ? QFileDialog::ExistingFiles
                        : spec.fileMustExist ? QFileDialog::ExistingFile
                                             : QFileDialog::AnyFile);
    }
    if (!spec.fileName.isEmpty())
        dlg.selectFile(spec.fileName);
    centreOn(dlg, owner());
    if (!spec.fileNameLabel.isEmpty())
        dlg.setLabelText(QFileDialog::FileName, spec.fileNameLabel);
    for (;;) {
        if (dlg.exec() != QDialog::Accepted)
            return {};
        QStringList files = dlg.selectedFiles();
        // A saved name whose dots are the filter's no suffix gets its
        // extension, as one with no dot does.
        if (save)
            for (QString& f : files)
                f = withDefaultExt(f, ext, spec.filter);
        bool pathsExist = true;
        for (const QString& f : files)
            pathsExist = pathsExist && QFileInfo(f).absoluteDir().exists();
        if (!spec.pathMustExist || pathsExist)
            return files;
        msgBox(QStringLiteral("התיקייה אינה קיימת"), spec.title, Buttons::OK, Icon::Exclamation);
    }
}

QStringList QtUi::openFileDialog(const FileDialogOptions& spec)
{
    return runFileDialog(spec, false);
}

QString QtUi::saveFileDialog(const FileDialogOptions& spec)
{
    const QStringList files = runFileDialog(spec, true);
    return files.isEmpty() ? QString() : files.first();
}

namespace {

// Shows the view V of a dialog whose logic is of class L; false when the
// dialog is of another class than its name promises.
template <class View, class Logic>
bool show(Dialog& d, QWidget* parent, QWidget* owner)
{
    auto* logic = dynamic_cast<Logic*>(&d);
    if (!logic)
        return false;
    View view(*logic, parent);
    centreOn(view, owner);
    view.exec();
    return true;
}

} // namespace

bool QtUi::runDialog(Dialog& d)
{
    const QString name = d.name();
    bool shown = false;
    if (name == QLatin1String("frmNoIpus"))
        shown = show<frmNoIpusView, frmNoIpus>(d, parent_, owner());
    else if (name == QLatin1String("frmPassword"))
        shown = show<frmPasswordView, frmPassword>(d, parent_, owner());
    else if (name == QLatin1String("dlgKind"))
        shown = show<dlgKindView, dlgKind>(d, parent_, owner());
    else if (name == QLatin1String("frmCalc"))
        shown = show<frmCalcView, frmCalc>(d, parent_, owner());
    else if (name == QLatin1String("frmAddLine"))
        shown = show<frmAddLineView, frmAddLine>(d, parent_, owner());
    else if (name == QLatin1String("frmConstantTransactions"))
        shown = show<frmConstantTransactionsView, frmConstantTransactions>(d, parent_, owner());
    else if (name == QLatin1String("frmTzefi"))
        shown = show<frmTzefiView, frmTzefi>(d, parent_, owner());
    else if (name == QLatin1String("frmSubtractFromTzefi"))
        shown = show<frmSubtractFromTzefiView, frmSubtractFromTzefi>(d, parent_, owner());
    else if (name == QLatin1String("frmSelectAccount"))
        shown = show<frmSelectAccountView, reconcile::frmSelectAccount>(d, parent_, owner());
    else if (name == QLatin1String("frmBalance"))
        shown = show<frmBalanceView, reconcile::frmBalance>(d, parent_, owner());
    else if (name == QLatin1String("frmSetTargetDate"))
        shown = show<frmSetTargetDateView, reconcile::frmSetTargetDate>(d, parent_, owner());
    else if (name == QLatin1String("frmMaxDayDiffForMatch") || name == QLatin1String("frmNDigitsForConfirmComparison"))
        shown = show<frmMatchSettingView, reconcile::frmMatchSetting>(d, parent_, owner());
    else if (name == QLatin1String("frmMoveOrCopy"))
        shown = show<frmMoveOrCopyView, transfer::frmMoveOrCopy>(d, parent_, owner());
    else if (name == QLatin1String("frmTransfer"))
        shown = show<frmTransferView, transfer::frmTransfer>(d, parent_, owner());
    else if (name == QLatin1String("frmInvoiceKinds"))
        shown = show<frmInvoiceKindsView, reports::frmInvoiceKinds>(d, parent_, owner());
    else if (name == QLatin1String("frmConvert"))
        shown = show<frmConvertView, reports::frmConvert>(d, parent_, owner());
    if (!shown)
        qWarning("pelkor: no window for the dialog %s", qUtf8Printable(name));
    if (!d.isClosed())
        d.dismiss();
    return d.accepted();
}

} // namespace pelkor::ui
