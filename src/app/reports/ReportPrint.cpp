#include "app/reports/ReportPrint.h"

#include "app/ui/QtUi.h"

#include <QAction>
#include <QEventLoop>
#include <QPageLayout>
#include <QPageSize>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QToolBar>
#include <QWebEnginePage>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace pelkor {

QPrintPreviewDialog* makeReportPreview(QWidget* owner, QWebEngineView* engine, bool backgroundColors,
                                       std::function<QString()> pdfName)
{
    engine->settings()->setAttribute(QWebEngineSettings::PrintElementBackgrounds, backgroundColors);
    auto* printer = new QPrinter(QPrinter::HighResolution);
    printer->setPageOrientation(QPageLayout::Landscape);
    auto* dlg = new QPrintPreviewDialog(printer, owner);
    dlg->setAttribute(Qt::WA_DeleteOnClose);
    dlg->setObjectName(QStringLiteral("dlgPrintPreview"));
    dlg->setWindowTitle(QStringLiteral("תצוגה לפני הדפסה"));
    QObject::connect(dlg, &QObject::destroyed, [printer] { delete printer; });
    // The engine prints on its own time: the preview waits for it.
    QObject::connect(dlg, &QPrintPreviewDialog::paintRequested, owner, [engine](QPrinter* p) {
        QEventLoop loop;
        const auto done = QObject::connect(engine, &QWebEngineView::printFinished, &loop, &QEventLoop::quit);
        engine->print(p);
        loop.exec();
        QObject::disconnect(done);
    });
    // Saving as PDF, from the preview's own tool bar.
    if (auto* bar = dlg->findChild<QToolBar*>()) {
        QAction* pdf = bar->addAction(QStringLiteral("שמור כ-PDF"));
        pdf->setObjectName(QStringLiteral("cmdSavePdf"));
        QObject::connect(pdf, &QAction::triggered, dlg, [engine, dlg, pdfName] {
            // The program's own file dialog: Hebrew, its paths and names left to right.
            ui::FileDialogOptions spec;
            spec.title = QStringLiteral("שמור כ-PDF");
            spec.filter = QStringLiteral("PDF (*.pdf)|*.pdf");
            spec.defaultExt = QStringLiteral("pdf");
            spec.fileName = pdfName();
            const QString path = ui::QtUi(dlg).saveFileDialog(spec);
            if (!path.isEmpty())
                engine->page()->printToPdf(path, QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF(10, 10, 10, 10)));
        });
    }
    return dlg;
}

void showReportPreview(QWidget* owner, QWebEngineView* engine, bool backgroundColors, std::function<QString()> pdfName,
                       QWidget*& preview, bool modeless)
{
    auto* dlg = makeReportPreview(owner, engine, backgroundColors, std::move(pdfName));
    preview = dlg;
    QObject::connect(dlg, &QObject::destroyed, owner, [&preview] { preview = nullptr; });
    if (modeless)
        dlg->open();
    else
        dlg->exec();
}

} // namespace pelkor
