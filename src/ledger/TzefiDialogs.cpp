#include "ledger/TzefiDialogs.h"

#include "base/Format.h"
#include "seams/web/Html.h"

#include <QDir>

#include <cmath>

namespace pelkor {

namespace {
const QString tzefiLine = QStringLiteral("chkTzefiLine");
const QString hashavshevet = QStringLiteral("chkHashavshevet");
const QString on = QStringLiteral("1");
const QString off = QStringLiteral("0");
} // namespace

// ---- frmTzefi ---------------------------------------------------------------

frmTzefi::frmTzefi(bool isTzefi, int relate) : Dialog(QStringLiteral("צפי"), QString())
{
    addControl(tzefiLine, Kind::CheckBox, QStringLiteral("שורת צפי"), isTzefi ? on : off);
    addControl(hashavshevet, Kind::CheckBox, QStringLiteral("הורדה אוטומטית של תנועות מיבוא חיצוני"),
               isTzefi && relate == 99 ? on : off);
    setVisible(hashavshevet, isTzefi);
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setFocus(tzefiLine);
}

void frmTzefi::onClick(const QString& name)
{
    if (name == tzefiLine) {
        setVisible(hashavshevet, isOn(control(tzefiLine)));
    } else if (name == QLatin1String("cmdOK")) {
        wasTzefiChecked_ = isOn(control(tzefiLine));
        wasHashavshevetChecked_ = isOn(control(hashavshevet));
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        didCancelTzefi_ = true;
        close(false);
    }
}

// ---- frmSubtractFromTzefi -----------------------------------------------------

int makeNum(const QString& str1)
{
    bool ok = false;
    const double v = str1.trimmed().toDouble(&ok);
    return ok ? int(std::lround(v)) : -1;
}

frmSubtractFromTzefi::frmSubtractFromTzefi(const std::vector<TzefiCandidate>& candidates, QString txt1, QString tempPath)
    : Dialog(QStringLiteral("הורדה משורת צפי"), QStringLiteral("בחר את שורת הצפי שממנה תורד השורה")),
      txt1_(std::move(txt1)),
      tempPath_(std::move(tempPath))
{
    QStringList& rows = rows_;
    for (int i = 0; i < int(candidates.size()); ++i) {
        const TzefiCandidate& c = candidates[size_t(i)];
        rows << QStringLiteral("%1 %2 | %3 | %4 | %5")
                    .arg(i)
                    .arg(FormatKind(c.kind), formatDate224(c.date), tzefiDetail(c.detail), FormatSum(std::round(c.sum)));
    }
    addControl(QStringLiteral("wb"), Kind::ListBox).items = rows;
    addControl(QStringLiteral("imgArrow"), Kind::Button);
    addControl(QStringLiteral("cmdOK"), Kind::Button, QStringLiteral("אישור"));
    addControl(QStringLiteral("cmdCancel"), Kind::Button, QStringLiteral("ביטול"));
    setEnabled(QStringLiteral("cmdOK"), false);
}

void frmSubtractFromTzefi::attachView(web::WebView& wb)
{
    wb_ = &wb;
    wb_->setDocumentComplete([this](const QString& target) { wb_DocumentComplete(target); });
}

void frmSubtractFromTzefi::detachView()
{
    if (wb_)
        wb_->setDocumentComplete({});
    wb_ = nullptr;
}

bool frmSubtractFromTzefi::Form_Load()
{
    if (!wb_) {
        scripted_ = std::make_unique<web::ScriptedWebView>();
        attachView(*scripted_);
    }
    // The temporary folder may not be there yet (a fresh data directory).
    QDir().mkpath(tempPath_);
    pagePath_ = web::writePage(tempPath_, pageName(), txt1_);
    return !pagePath_.isEmpty();
}

void frmSubtractFromTzefi::Timer1_Timer()
{
    if (navigated_ || pagePath_.isEmpty() || !wb_)
        return;
    navigated_ = true;
    wb_->navigate(pagePath_);
}

void frmSubtractFromTzefi::wb_DocumentComplete(const QString& target)
{
    if (!wb_ || target != pagePath_)
        return;
    wb_->attachNotifier(web::clsForward([this] { cellEventHandler(); }));
}

void frmSubtractFromTzefi::cellEventHandler()
{
    if (!wb_)
        return;
    const int row = makeNum(wb_->value(QStringLiteral("theRowIndx")));
    if (row < 0 || row >= int(rows_.size()))
        return;
    picked_ = row;
    setValue(QStringLiteral("wb"), rows_[row]);
    setEnabled(QStringLiteral("cmdOK"), true);
    if (changed)
        changed();
}

void frmSubtractFromTzefi::onClick(const QString& name)
{
    if (name == QLatin1String("wb")) {
        const int row = control(name).section(QLatin1Char(' '), 0, 0).toInt();
        if (!scripted_) {
            // A window's list is its page; this is a click the page did not see.
            picked_ = row;
            setEnabled(QStringLiteral("cmdOK"), true);
            return;
        }
        // No window: the click is played on the written page.
        Timer1_Timer();
        scripted_->clickRow(QStringLiteral("t1"), row);
    } else if (name == QLatin1String("imgArrow")) {
        wbVisible_ = !wbVisible_;
        if (changed)
            changed();
    } else if (name == QLatin1String("cmdOK")) {
        if (picked_ < 0)
            return;
        rwIndex_ = picked_;
        close(true);
    } else if (name == QLatin1String("cmdCancel")) {
        rwIndex_ = -1;
        close(false);
    }
}

} // namespace pelkor
