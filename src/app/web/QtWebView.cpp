#include "app/web/QtWebView.h"

#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include <memory>
#include <unistd.h>

namespace pelkor::web {

// The object the injected script calls; it lives in the program's world.
class NotifierBridge : public QObject {
    Q_OBJECT
public:
    explicit NotifierBridge(QtWebView& view) : QObject(&view), view_(view) {}
    Q_INVOKABLE void notify(const QString& href, const QString& theID, const QString& theRowIndx)
    {
        view_.notified(href, theID, theRowIndx);
    }

private:
    QtWebView& view_;
};

namespace {

// The world of the bridge and of every read and write: the page's own
// scripts cannot reach the bridge from theirs.
constexpr quint32 programWorld = QWebEngineScript::ApplicationWorld;

// One listener on the document catches a click on notifier however the page
// came to hold it (written whole, or put into the body after loading), and
// tells the bridge which page clicked.
const char notifierHook[] = R"JS(
(function () {
    if (window.__pelkorHooked) return;
    window.__pelkorHooked = true;
    new QWebChannel(qt.webChannelTransport, function (ch) { window.__pelkorBridge = ch.objects.pelkorBridge; });
    document.addEventListener('click', function (e) {
        if (!e.target || e.target.id !== 'notifier' || !window.__pelkorBridge) return;
        var id = document.getElementById('theID'), row = document.getElementById('theRowIndx');
        window.__pelkorBridge.notify(location.href, id ? String(id.value) : '', row ? String(row.value) : '');
    }, true);
})();
)JS";

QString webChannelScript()
{
    QFile f(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

QUrl urlOf(const QString& target)
{
    if (target == QLatin1String("about:blank"))
        return QUrl(target);
    const qsizetype q = target.indexOf(QLatin1Char('?'));
    QUrl url = QUrl::fromLocalFile(q < 0 ? target : target.left(q));
    if (q >= 0)
        url.setQuery(target.mid(q + 1));
    return url;
}

} // namespace

QString jsString(const QString& s)
{
    QString out;
    out.reserve(s.size() + 2);
    out += QLatin1Char('"');
    for (QChar c : s) {
        const char16_t u = c.unicode();
        if (u == u'"' || u == u'\\')
            out += QLatin1Char('\\') + c;
        else if (u < 0x20 || u > 0x7E)
            out += QStringLiteral("\\u%1").arg(int(u), 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    out += QLatin1Char('"');
    return out;
}

void QtWebView::prepareEngine()
{
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

QtWebView::QtWebView(QWidget* parent) : QWidget(parent)
{
    prepareEngine();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    view_ = new QWebEngineView(this);
    view_->setObjectName(QStringLiteral("wb"));
    layout->addWidget(view_);
    QWebEngineSettings* s = view_->settings();
    s->setDefaultTextEncoding(QStringLiteral("windows-1255"));
    s->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, true);
    s->setAttribute(QWebEngineSettings::JavascriptEnabled, true);

    bridge_ = new NotifierBridge(*this);
    channel_ = new QWebChannel(this);
    channel_->registerObject(QStringLiteral("pelkorBridge"), bridge_);
    view_->page()->setWebChannel(channel_, programWorld);
    QWebEngineScript hook;
    hook.setName(QStringLiteral("pelkorNotifier"));
    hook.setSourceCode(webChannelScript() + QString::fromUtf8(notifierHook));
    hook.setInjectionPoint(QWebEngineScript::DocumentReady);
    hook.setWorldId(programWorld);
    hook.setRunsOnSubFrames(false);
    view_->page()->scripts().insert(hook);

    connect(view_, &QWebEngineView::loadStarted, this, [this] {
        complete_ = false;
        forward_ = clsForward();
    });
    connect(view_, &QWebEngineView::loadFinished, this, &QtWebView::loadFinished);
}

QtWebView::~QtWebView() = default;

void QtWebView::setSpokenName(const QString& name)
{
    setAccessibleName(name);
    view_->setAccessibleName(name);
}

void QtWebView::navigate(const QString& target)
{
    ++navigation_;
    location_ = target;
    complete_ = false;
    forward_ = clsForward();
    view_->setUrl(urlOf(target));
}

void QtWebView::loadFinished(bool ok)
{
    Q_UNUSED(ok);  // a page that failed is still "complete": the logic finds its ids missing
    // A finished load of a page navigated away from already is not ours.
    const QUrl expected = urlOf(location_);
    if (!location_.isEmpty() && view_->url().adjusted(QUrl::RemoveQuery) != expected.adjusted(QUrl::RemoveQuery))
        return;
    complete_ = true;
    // The handler reads and writes the page: out of the engine's own signal,
    // inside which the answers to its scripts would wait.
    const int navigation = navigation_;
    QTimer::singleShot(0, this, [this, navigation] {
        if (navigation != navigation_ || !complete_)
            return;
        if (onComplete_)
            onComplete_(location_);
        if (navigation == navigation_)
            emit documentCompleted(location_);
    });
}

bool QtWebView::attachNotifier(const clsForward& forward)
{
    // No round trip to the page here: its hook listens for a notifier
    // whenever one comes to be (a page may write its body after loading).
    if (!complete_)
        return false;
    forward_ = forward;
    return true;
}

void QtWebView::notified(const QString& href, const QString& theID, const QString& theRowIndx)
{
    if (!complete_ || !forward_.isSet())
        return;
    if (QUrl(href).adjusted(QUrl::RemoveQuery) != urlOf(location_).adjusted(QUrl::RemoveQuery))
        return;  // a click of the page before this one
    // Out of the channel's own message handling; the event's values come
    // with it, so the handler reads them without asking the page again.
    const int navigation = navigation_;
    QTimer::singleShot(0, this, [this, navigation, theID, theRowIndx] {
        if (navigation != navigation_ || !complete_)
            return;
        event_ = {true, theID, theRowIndx};
        const clsForward f = forward_;
        f();
        event_ = {};
    });
}

QVariant QtWebView::evaluate(const QString& script)
{
    struct Answer {
        QVariant value;
        bool done = false;
        QEventLoop* loop = nullptr;
    };
    auto answer = std::make_shared<Answer>();
    view_->page()->runJavaScript(script, programWorld, [answer](const QVariant& v) {
        answer->value = v;
        answer->done = true;
        if (answer->loop)
            answer->loop->quit();
    });
    if (!answer->done) {
        QEventLoop loop;
        answer->loop = &loop;
        // Five seconds: a page that gives no answer in that time has lost
        // its renderer; the caller reads an empty value rather than hang.
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
        answer->loop = nullptr;
    }
    return answer->value;
}

QString QtWebView::element(const QString& id, int index)
{
    return QStringLiteral("document.querySelectorAll('[id=' + JSON.stringify(%1) + ']')[%2]").arg(jsString(id)).arg(index);
}

int QtWebView::count(const QString& id)
{
    return evaluate(QStringLiteral("document.querySelectorAll('[id=' + JSON.stringify(%1) + ']').length").arg(jsString(id)))
        .toInt();
}

QString QtWebView::value(const QString& id, int index)
{
    if (event_.running && index == 0 && id == QLatin1String("theID"))
        return event_.theID;
    if (event_.running && index == 0 && id == QLatin1String("theRowIndx"))
        return event_.theRowIndx;
    return evaluate(QStringLiteral("(function(e){ return e ? String(e.value) : ''; })(%1)").arg(element(id, index))).toString();
}

void QtWebView::setValue(const QString& id, const QString& value, int index)
{
    if (index == 0 && id == QLatin1String("theID"))
        event_.theID = value;
    if (index == 0 && id == QLatin1String("theRowIndx"))
        event_.theRowIndx = value;
    evaluate(QStringLiteral("(function(e){ if (e) e.value = %2; })(%1)").arg(element(id, index), jsString(value)));
}

bool QtWebView::checked(const QString& id, int index)
{
    return evaluate(QStringLiteral("(function(e){ return !!(e && e.checked); })(%1)").arg(element(id, index))).toBool();
}

QString QtWebView::text(const QString& id, int index)
{
    return evaluate(QStringLiteral("(function(e){ return e ? e.innerText : ''; })(%1)").arg(element(id, index))).toString();
}

void QtWebView::setText(const QString& id, const QString& text, int index)
{
    evaluate(QStringLiteral("(function(e){ if (e) e.textContent = %2; })(%1)").arg(element(id, index), jsString(text)));
}

void QtWebView::setInnerHtml(const QString& id, const QString& html, int index)
{
    evaluate(QStringLiteral("(function(e){ if (e) e.innerHTML = %2; })(%1)").arg(element(id, index), jsString(html)));
}

QString QtWebView::display(const QString& id, int index)
{
    return evaluate(QStringLiteral("(function(e){ return e ? e.style.display : ''; })(%1)").arg(element(id, index)))
        .toString();
}

void QtWebView::setDisplay(const QString& id, const QString& display, int index)
{
    evaluate(QStringLiteral("(function(e){ if (e) e.style.display = %2; })(%1)").arg(element(id, index), jsString(display)));
}

void QtWebView::click(const QString& id, int index)
{
    evaluate(QStringLiteral("(function(e){ if (e) e.click(); })(%1)").arg(element(id, index)));
}

int QtWebView::scrollTop(const QString& id)
{
    const QString target = id.isEmpty() ? QStringLiteral("document.scrollingElement") : element(id, 0);
    return evaluate(QStringLiteral("(function(e){ return e ? e.scrollTop : 0; })(%1)").arg(target)).toInt();
}

void QtWebView::setScrollTop(int top, const QString& id)
{
    const QString target = id.isEmpty() ? QStringLiteral("document.scrollingElement") : element(id, 0);
    evaluate(QStringLiteral("(function(e){ if (e) e.scrollTop = %2; })(%1)").arg(target).arg(top));
}

void QtWebView::execScript(const QString& script)
{
    // The page's own scripts live in the main world: run it there.
    view_->page()->runJavaScript(script, QWebEngineScript::MainWorld);
}

} // namespace pelkor::web

#include "QtWebView.moc"
