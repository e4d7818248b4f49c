#include "app/charts/DailySummaryView.h"

#include "app/Named.h"
#include "app/charts/ChartView.h"
#include "app/grid/GridView.h"
#include "charts/DailySummary.h"
#include "frame/frmMain.h"
#include "seams/grid/GridTableModel.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace pelkor {

DailySummaryView::DailySummaryView(frmMain& logic, std::function<void()> focusMain, QWidget* parent)
    : QWidget(parent), m_(logic), focusMain_(std::move(focusMain))
{
    charts::DailySummary& d = m_.daily();
    setLayoutDirection(Qt::RightToLeft);
    auto* col = new QVBoxLayout(this);
    col->setContentsMargins(0, 0, 0, 0);

    auto* top = new QHBoxLayout();
    title_ = named(new QLabel(this), QStringLiteral("lblTitle"));
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    cmdClose_ = named(new QPushButton(this), QStringLiteral("cmdClose"));
    top->addWidget(title_);
    top->addStretch(1);
    top->addWidget(cmdClose_);
    col->addLayout(top);

    bank_ = named(new grid::GridView(d.msfgBank, this), QStringLiteral("msfgBank"), QStringLiteral("סיכום לפי ימים"));
    bank_->tableModel()->setFigureColumns({charts::dayColIns, charts::dayColOuts, charts::dayColNet,
                                           charts::dayColBalance, charts::dayColExcess});
    col->addWidget(bank_, 3);

    ChartView::Handlers on;
    on.resized = [this](int w, int h) {
        m_.guarded(QStringLiteral("picChart_Resize"), [&] { m_.daily().picChart_Resize(w, h); });
    };
    on.mouseMove = [this](int x, int y) {
        m_.guarded(QStringLiteral("picChart_MouseMove"), [&] { m_.daily().picChart_MouseMove(x, y); });
    };
    on.mouseUp = [this] { m_.guarded(QStringLiteral("picChart_MouseUp"), [&] { m_.daily().picChart_MouseUp(); }); };
    on.wheel = [this](int r) {
        m_.guarded(QStringLiteral("MouseWheel"), [&] { m_.daily().picChart_MouseWheel(r); });
    };
    chart_ = named(new ChartView(d.picChart, std::move(on), this), QStringLiteral("picChart"),
                   QStringLiteral("גרף יתרה יומי"));
    col->addWidget(chart_, 2);

    // The scroll bar's row: its bounds at its ends, the caption beside it.
    auto* bar = new QHBoxLayout();
    auto* lblMin = named(new QLabel(QString::number(charts::ChartShown::HScrollChartMin), this), QStringLiteral("lblMin"));
    auto* lblMax = named(new QLabel(QString::number(charts::ChartShown::HScrollChartMax), this), QStringLiteral("lblMax"));
    scroll_ = named(new QScrollBar(Qt::Horizontal, this), QStringLiteral("HScrollChart"), QStringLiteral("ימים בגרף"));
    scroll_->setRange(charts::ChartShown::HScrollChartMin, charts::ChartShown::HScrollChartMax);
    scroll_->setSingleStep(charts::ChartShown::HScrollChartSmallChange);
    scroll_->setPageStep(charts::ChartShown::HScrollChartLargeChange);
    lblChart_ = named(new QLabel(this), QStringLiteral("lblChart"));
    bar->addWidget(lblChart_);
    bar->addWidget(lblMin);
    bar->addWidget(scroll_, 1);
    bar->addWidget(lblMax);
    col->addLayout(bar);

    connect(scroll_, &QScrollBar::valueChanged, this, [this](int v) {
        m_.guarded(QStringLiteral("HScrollChart_Change"), [&] { m_.daily().HScrollChart_Change(v); });
    });
    connect(bank_, &grid::GridView::cellEntered, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgBank_EnterCell"), [&] { m_.daily().msfgBank_EnterCell(); });
    });
    connect(bank_, &grid::GridView::cellDoubleClicked, this, [this](int, int) {
        m_.guarded(QStringLiteral("msfgBank_DblClick"), [&] { m_.daily().msfgBank_DblClick(); });
    });
    connect(cmdClose_, &QPushButton::clicked, this, [this] { m_.clickControl(QStringLiteral("cmdClose")); });
    connect(&d, &charts::DailySummary::changed, this, &DailySummaryView::mirror);
    connect(&d, &charts::DailySummary::chartDrawn, chart_, qOverload<>(&QWidget::update));
    connect(&d, &charts::DailySummary::focusWanted, this, [this](bool main) {
        if (main && focusMain_)
            focusMain_();
        else if (!main && bank_->isVisible())
            bank_->setFocus();
    });
    connect(&d, &charts::DailySummary::pointerTo, this, [this](QPoint p) { QCursor::setPos(chart_->mapToGlobal(p)); });
    mirror();
}

void DailySummaryView::mirror()
{
    const charts::DailySummary& d = m_.daily();
    const charts::ChartShown& s = d.shown();
    setVisible(s.visible);
    // Each is read by the text it shows.
    title_->setText(s.lblTitle);
    lblChart_->setText(s.lblChart);
    cmdClose_->setText(s.cmdCloseCaption);
    {
        const QSignalBlocker block(scroll_);
        scroll_->setValue(s.HScrollChartValue);
    }
    if (s.visible)
        refit();
}

void DailySummaryView::refit()
{
    bank_->setRedLineRow(m_.daily().iBankRowAboveRed());
    bank_->resizeColumnsToContents();
    // The days' columns side by side, up to half the screen: the main
    // grid beside it scrolls sideways first.
    const QScreen* screen = this->screen();
    bank_->askForAllColumns(screen ? screen->availableGeometry().width() / 2 : 640);
    // The picture's size is the surface's: the first showing makes it.
    m_.guarded(QStringLiteral("picChart_Resize"), [&] { m_.daily().picChart_Resize(chart_->width(), chart_->height()); });
}

} // namespace pelkor
