#include "seams/web/frmWaitMessage.h"

#include "seams/web/Html.h"

namespace pelkor::web {

frmWaitMessage::frmWaitMessage(WebView& wb, QString programDir) : wb_(wb), programDir_(std::move(programDir))
{
    wb_.setDocumentComplete([this](const QString& target) { wb_DocumentComplete(target); });
}

void frmWaitMessage::showMessage(const QString& message)
{
    message_ = message;
    const QString page = fixedPage(programDir_, pageName());
    if (wb_.location() == page && wb_.isComplete())
        return wb_DocumentComplete(page);
    wb_.navigate(page);
}

void frmWaitMessage::wb_DocumentComplete(const QString& target)
{
    if (!target.endsWith(pageName()) || message_.isEmpty())
        return;
    wb_.setText(QStringLiteral("msg"), message_);
    setVisible(true);
    bringUp();
}

void frmWaitMessage::close()
{
    message_.clear();
    setVisible(false);
    wb_.navigate(QStringLiteral("about:blank"));
}

void frmWaitMessage::bringUp()
{
    if (visible_ && raise)
        raise();
}

void frmWaitMessage::setVisible(bool v)
{
    if (visible_ == v)
        return;
    visible_ = v;
    if (visibilityChanged)
        visibilityChanged(v);
}

} // namespace pelkor::web
