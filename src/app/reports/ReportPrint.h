// ReportPrint: the print preview of a report page, shared by the report
// windows: landscape, background colours by the setting, and a button of
// its own that saves the page as PDF under a proposed name.
#pragma once

#include <QString>

#include <functional>

class QPrintPreviewDialog;
class QWidget;
class QWebEngineView;

namespace pelkor {

// The preview of engine's page, owned by owner and deleted on close; not
// yet shown.
QPrintPreviewDialog* makeReportPreview(QWidget* owner, QWebEngineView* engine, bool backgroundColors,
                                       std::function<QString()> pdfName);

// The preview shown: preview holds it while it is open (null after), and a
// modeless preview returns at once, as the view tests want.
void showReportPreview(QWidget* owner, QWebEngineView* engine, bool backgroundColors, std::function<QString()> pdfName,
                       QWidget*& preview, bool modeless);

} // namespace pelkor
