#include "app/reconcile/MatchesWindow.h"

#include "app/Named.h"
#include "app/web/QtWebView.h"
#include "frame/frmMain.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace pelkor {

frmMatchesView::frmMatchesView(frmMain& logic, QWidget* owner) : QWidget(owner, Qt::Window | Qt::Dialog), m_(logic)
{
    setObjectName(QStringLiteral("frmMatches"));
    setWindowTitle(QStringLiteral("התאמות"));
    setAccessibleName(QStringLiteral("התאמות"));
    setLayoutDirection(Qt::RightToLeft);
    // Non-modal in the program's flow, but the main window takes no input
    // while the pairs wait for a decision: their rows are grid rows.
    setWindowModality(Qt::WindowModal);
    auto* col = new QVBoxLayout(this);
    wb_ = named(new web::QtWebView(this), QStringLiteral("wb"));
    wb_->setSpokenName(QStringLiteral("ההתאמות המוצעות"));
    col->addWidget(wb_, 1);
    frame1_ = new QWidget(this);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    auto* row = new QHBoxLayout(frame1_);
    row->setContentsMargins(0, 0, 0, 0);
    chkShowAll_ = named(new QCheckBox(QStringLiteral("הצג את כל השורות"), frame1_), QStringLiteral("chkShowAll"));
    auto* refresh = named(new QPushButton(QStringLiteral("מצא מחדש"), frame1_), QStringLiteral("cmdRefreshMatches"));
    auto* ok = named(new QPushButton(QStringLiteral("אישור"), frame1_), QStringLiteral("cmdOK"));
    auto* cancel = named(new QPushButton(QStringLiteral("ביטול"), frame1_), QStringLiteral("cmdCancel"));
    row->addWidget(chkShowAll_);
    row->addStretch(1);
    row->addWidget(refresh);
    row->addWidget(ok);
    row->addWidget(cancel);
    col->addWidget(frame1_);
    connect(ok, &QPushButton::clicked, this,
            [this] { m_.guarded(QStringLiteral("frmMatches.cmdOK_Click"), [this] { m_.frmMatches_cmdOK_Click(); }); });
    connect(cancel, &QPushButton::clicked, this,
            [this] { m_.guarded(QStringLiteral("frmMatches.cmdCancel_Click"), [this] { m_.frmMatches_cmdCancel_Click(); }); });
    connect(refresh, &QPushButton::clicked, this, [this] {
        setEnabled(false);
        m_.guarded(QStringLiteral("frmMatches.cmdRefreshMatches_Click"),
                   [this] { m_.frmMatches_cmdRefreshMatches_Click(); });
        setEnabled(true);
    });
    connect(chkShowAll_, &QCheckBox::toggled, this, [this](bool on) {
        m_.guarded(QStringLiteral("frmMatches.chkShowAll_Click"), [this, on] { m_.frmMatches_chkShowAll_Click(on); });
    });
}

void frmMatchesView::mirror()
{
    const reconcile::MatchFinder& finder = m_.session().finder;
    {
        const QSignalBlocker block(chkShowAll_);
        chkShowAll_->setChecked(finder.chkShowAll);
    }
    const bool wanted = m_.session().shown.split && finder.frmMatchesVisible;
    if (!wanted) {
        hide();
        return;
    }
    // Nine pairs show without scrolling; the buttons stand below the page.
    // As wide as the page's header, with room for the page's own margin.
    const int width = std::max(finder.pageWidth() + 24, 640);
    wb_->setFixedSize(width, finder.pageHeight());
    if (!isVisible()) {
        adjustSize();
        if (QWidget* owner = parentWidget() ? parentWidget()->window() : nullptr)
            move(owner->geometry().center() - rect().center());
        show();
        raise();
        activateWindow();
    }
}

void frmMatchesView::closeEvent(QCloseEvent* e)
{
    // The close box leaves as the cancel button does.
    if (m_.session().finder.frmMatchesVisible)
        m_.guarded(QStringLiteral("frmMatches.cmdCancel_Click"), [this] { m_.frmMatches_cmdCancel_Click(); });
    e->accept();
}

frmButtonView::frmButtonView(frmMain& logic, QWidget* parent) : QWidget(parent), m_(logic)
{
    setObjectName(QStringLiteral("frmButton"));
    setAccessibleName(QStringLiteral("מציאת התאמות"));
    setLayoutDirection(Qt::RightToLeft);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    auto* text = new QLabel(QStringLiteral("תוכנת הפלקור יכולה למצוא התאמות בין השורות לשורות הבנק"), this);
    text->setWordWrap(true);
    cmdGo_ = named(new QPushButton(QStringLiteral("מצא התאמות"), this), QStringLiteral("cmdGo"));
    cmdClose_ = named(new QPushButton(QStringLiteral("סגור"), this), QStringLiteral("cmdClose"), QStringLiteral("סגור את ההזמנה"));
    row->addWidget(text, 1);
    cmdGo_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    row->addWidget(cmdGo_);
    row->addStretch(0);
    row->addWidget(cmdClose_);
    connect(cmdGo_, &QPushButton::clicked, this, [this] { go(); });
    connect(cmdClose_, &QPushButton::clicked, this, [this] {
        m_.guarded(QStringLiteral("frmButton.cmdClose_Click"), [this] { m_.frmButton_cmdClose_Click(); });
    });
}

void frmButtonView::go()
{
    m_.guarded(QStringLiteral("frmButton.cmdGo_Click"), [this] { m_.frmButton_cmdGo_Click(); });
}

void frmButtonView::mirror()
{
    const reconcile::SessionShown& s = m_.session().shown;
    setVisible(s.split && s.frmButton);
    setEnabled(!m_.session().finder.searching);
    // Folded, the invitation keeps its button and gives up the rest.
    cmdClose_->setVisible(!s.frmButtonShrunk);
    findChild<QLabel*>()->setVisible(!s.frmButtonShrunk);
}

void frmButtonView::mousePressEvent(QMouseEvent* e)
{
    // A click anywhere on the invitation starts the search.
    QWidget::mousePressEvent(e);
    go();
}

void frmButtonView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x77, 0x77, 0xc0), 1.5));
    p.setBrush(QColor(0xff, 0xf9, 0xbd));
    p.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 10, 10);
}

} // namespace pelkor
