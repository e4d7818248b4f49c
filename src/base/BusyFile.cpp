#include "base/BusyFile.h"

#include "base/Shown.h"
#include "base/Trace.h"
#include "base/WindowCalls.h"
#include "seams/ui/Ui.h"

#include <QFileInfo>

namespace pelkor {

namespace {
QString shortName(const QString& file) { return QFileInfo(file).fileName(); }
} // namespace

void BusyFile::waiting(const QString& file, int waitedMs)
{
    if (!showing_) {
        statusBefore_ = shown_.lblStatus;
        showing_ = true;
        trace_.traceLine(QStringLiteral("busy"), file + QStringLiteral(": held by another process"));
    }
    shown_.lblStatus = QStringLiteral("הקובץ \"\u2068%1\u2069\" תפוס בידי תוכנה אחרת, ממתין לו... (%2 שניות)")
                           .arg(shortName(file))
                           .arg(waitedMs / 1000 + 1);
    window_.shownChanged();
}

QString BusyFile::question(const QString& file)
{
    return QStringLiteral("הקובץ \"\u2068%1\u2069\" תפוס כעת בידי תוכנה אחרת (אולי חלון פלקור נוסף, או תוכנה שכותבת בו).\n"
                          "הפעולה ממתינה לו ועדיין לא בוצעה.\n\n"
                          "נסה שוב: להמתין לו עוד.\n"
                          "ביטול: לוותר על הפעולה. הקובץ יישאר כפי שהיה.")
        .arg(shortName(file));
}

bool BusyFile::retry(const QString& file)
{
    const ui::Answer a = ui_.msgBox(question(file), QStringLiteral("הקובץ תפוס"), ui::Buttons::RetryCancel,
                                    ui::Icon::Exclamation);
    trace_.traceLine(QStringLiteral("busy"), a == ui::Answer::Retry ? QStringLiteral("wait again") : QStringLiteral("give up"));
    return a == ui::Answer::Retry;
}

void BusyFile::done(const QString&)
{
    if (!showing_)
        return;
    showing_ = false;
    shown_.lblStatus = statusBefore_;
    window_.shownChanged();
}

} // namespace pelkor
