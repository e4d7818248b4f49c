#include "app/transfer/frmTransferView.h"

#include "app/Named.h"
#include "app/grid/GridView.h"

#include <QCompleter>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringListModel>
#include <QTimer>
#include <QVBoxLayout>

namespace pelkor::ui {

using transfer::frmTransfer;

frmTransferView::frmTransferView(frmTransfer& logic, QWidget* parent)
    : QDialog(parent), logic_(logic), binder_(logic, *this)
{
    setLayoutDirection(Qt::RightToLeft);
    setWindowTitle(logic.caption());
    setObjectName(logic.name());

    auto* layout = new QVBoxLayout(this);
    for (int i = 0; i < 2; ++i) {
        const QString n = QString::number(i);
        auto* label = new QLabel(logic.label(QStringLiteral("txtFileName") + n), this);
        auto* file = named(new QLineEdit(this), QStringLiteral("txtFileName") + n,
                           QStringLiteral("קובץ ") + frmTransfer::rowName(i));
        file->setReadOnly(true);
        // A file name reads left to right inside the Hebrew window.
        file->setLayoutDirection(Qt::LeftToRight);
        file->setMinimumWidth(300);
        label->setBuddy(file);
        label->setMinimumWidth(40);
        auto* browse = named(new QPushButton(logic.label(QStringLiteral("cmdBrowse") + n), this), QStringLiteral("cmdBrowse") + n);
        browse->setAccessibleName(QStringLiteral("עיון ") + frmTransfer::rowName(i));
        auto* row = new QHBoxLayout;
        row->addWidget(label);
        row->addWidget(file, 1);
        row->addWidget(browse);
        layout->addLayout(row);
        binder_.bindText(QStringLiteral("txtFileName") + n, file);
        binder_.bindButton(QStringLiteral("cmdBrowse") + n, browse);
    }

    table_ = named(new grid::GridView(logic.msfg(), this), QStringLiteral("msfg"), QStringLiteral("שורות ההעברה"));
    table_->setFillColumn(transfer::tcDetail - 1, 160);
    // The two rows whole, no scrolling.
    table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->setMinimumWidth(760);
    layout->addWidget(table_);

    editor_ = named(new QLineEdit(table_->viewport()), QStringLiteral("txtCell"), QStringLiteral("עריכת תא"));
    editor_->hide();
    editor_->installEventFilter(this);
    completer_ = new QCompleter(new QStringListModel(this), this);
    completer_->setCompletionMode(QCompleter::InlineCompletion);
    completer_->setCaseSensitivity(Qt::CaseSensitive);
    connect(editor_, &QLineEdit::textEdited, this, [this](const QString& t) { logic_.setEditorText(t); });
    // The inline completion writes the rest of the name without an edit.
    connect(editor_, &QLineEdit::textChanged, this, [this](const QString& t) {
        if (logic_.editorOpen())
            logic_.setEditorText(t);
    });

    auto* cmdOK = named(new QPushButton(logic.label(QStringLiteral("cmdOK")), this), QStringLiteral("cmdOK"));
    auto* cmdCancel = named(new QPushButton(logic.label(QStringLiteral("cmdCancel")), this), QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons);
    binder_.bindButton(QStringLiteral("cmdOK"), cmdOK);
    binder_.bindButton(QStringLiteral("cmdCancel"), cmdCancel);
    // The OK button's click runs after the buttons' own sync.
    connect(cmdOK, &QPushButton::pressed, this, [this] {
        if (logic_.editorOpen()) {
            logic_.setEditorText(editor_->text());
            logic_.commitEditor();
            sync();
        }
    });

    // The cursor: a commit before it leaves; a refusal brings it back.
    connect(table_, &grid::GridView::cellLeaving, this, [this] {
        const int r = logic_.msfg().Row(), c = logic_.msfg().Col();
        if (logic_.editorOpen())
            logic_.setEditorText(editor_->text());
        const bool ok = logic_.editorOpen() ? logic_.commitEditor() : logic_.msfg_LeaveCell();
        backRow_ = ok ? -1 : r;
        backCol_ = c;
    });
    connect(table_, &grid::GridView::cellEntered, this, [this](int row, int col) {
        auto& g = logic_.msfg();
        if (backRow_ >= 0) {
            const int r = backRow_, c = backCol_;
            backRow_ = -1;
            QTimer::singleShot(0, this, [this, r, c] {
                logic_.msfg().setRow(r);
                logic_.msfg().setCol(c);
                sync();
            });
            return;
        }
        if (row < frmTransfer::sourceRow || col < transfer::tcKind) {
            g.setRow(std::max(row, int(frmTransfer::sourceRow)));
            g.setCol(std::max(col, int(transfer::tcKind)));
        }
        sync();
    });
    connect(table_, &grid::GridView::cellDoubleClicked, this, [this](int, int) {
        logic_.dblClick();
        sync();
    });
    table_->setKeyHandler([this](QKeyEvent* k) {
        bool taken = logic_.keyDown(k->key(), k->modifiers());
        const QString text = k->text();
        if (!taken && text.size() == 1 && text[0].unicode() >= 32 && !(k->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
            openEditor(text[0]);
            taken = true;
        }
        sync();
        return taken;
    });

    binder_.sync();
    resize(900, 260);
    sync();
}

void frmTransferView::openEditor(QChar first)
{
    logic_.gridEdit(first);
}

bool frmTransferView::eventFilter(QObject* watched, QEvent* e)
{
    if (watched == editor_ && e->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(e);
        logic_.setEditorText(editor_->text());
        // The caret inside the text moves with Left and Right until an end.
        const bool sideways = k->key() == Qt::Key_Left || k->key() == Qt::Key_Right;
        if (sideways) {
            const bool atEnd = editor_->cursorPosition() >= editor_->text().size();
            const bool atStart = editor_->cursorPosition() == 0;
            if ((k->key() == Qt::Key_Left && !atEnd) || (k->key() == Qt::Key_Right && !atStart))
                return false;
        }
        if (logic_.keyDown(k->key(), k->modifiers())) {
            sync();
            return true;
        }
    }
    if (watched == editor_ && e->type() == QEvent::FocusOut && logic_.editorOpen()) {
        // The window keeps the text; the commit runs when the cursor moves or OK.
        logic_.setEditorText(editor_->text());
    }
    return QDialog::eventFilter(watched, e);
}

void frmTransferView::sync()
{
    binder_.sync();
    auto& g = logic_.msfg();
    const int rowsHeight = table_->rowHeight(0) + table_->rowHeight(1);
    table_->setFixedHeight(table_->horizontalHeader()->sizeHint().height() + rowsHeight + 2 * table_->frameWidth() + 2);
    if (logic_.editorOpen()) {
        const QRect r = table_->cellRect(g.Row(), g.Col());
        const bool isType = g.Col() == transfer::tcType;
        static_cast<QStringListModel*>(completer_->model())->setStringList(isType ? logic_.typeNames(g.Row()) : QStringList());
        editor_->setCompleter(isType ? completer_ : nullptr);
        editor_->setGeometry(r);
        if (!editor_->isVisible() || editor_->text() != logic_.editorText()) {
            const QSignalBlocker b(editor_);
            editor_->setText(logic_.editorText());
            editor_->end(false);
        }
        editor_->show();
        editor_->setFocus();
    } else if (editor_->isVisible()) {
        editor_->hide();
        table_->setFocus();
    }
    table_->viewport()->update();
}

} // namespace pelkor::ui
