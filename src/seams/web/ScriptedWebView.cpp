// ScriptedWebView: a small reader of the program's pages and the test's
// side of their events.
#include "seams/web/ScriptedWebView.h"

#include "seams/web/CodePages.h"

#include <QFile>

namespace pelkor::web {

namespace {

bool isVoid(const QString& tag)
{
    static const QStringList voids{QStringLiteral("input"), QStringLiteral("br"), QStringLiteral("img"),
                                   QStringLiteral("meta"), QStringLiteral("hr"), QStringLiteral("link"),
                                   QStringLiteral("col"), QStringLiteral("area"), QStringLiteral("base")};
    return voids.contains(tag);
}

// Character references and the named entities the program writes.
QString decodeEntities(QStringView s)
{
    QString out;
    out.reserve(s.size());
    for (qsizetype i = 0; i < s.size(); ++i) {
        if (s[i] != u'&') {
            out += s[i];
            continue;
        }
        const qsizetype semi = s.indexOf(u';', i);
        if (semi < 0 || semi - i > 10) {
            out += s[i];
            continue;
        }
        const QStringView name = s.mid(i + 1, semi - i - 1);
        char32_t cp = 0;
        bool ok = true;
        if (name.startsWith(u"#x") || name.startsWith(u"#X"))
            cp = name.mid(2).toUInt(&ok, 16);
        else if (name.startsWith(u'#'))
            cp = name.mid(1).toUInt(&ok, 10);
        else if (name == u"amp") cp = '&';
        else if (name == u"lt") cp = '<';
        else if (name == u"gt") cp = '>';
        else if (name == u"quot") cp = '"';
        else if (name == u"apos") cp = '\'';
        else if (name == u"nbsp") cp = 0xA0;
        else ok = false;
        if (!ok || cp == 0) {
            out += s[i];
            continue;
        }
        out += QString::fromUcs4(&cp, 1);
        i = semi;
    }
    return out;
}

// The attributes of a start tag's inside ("td id=x class='a b' nowrap").
QHash<QString, QString> attributesOf(QStringView inside)
{
    QHash<QString, QString> a;
    qsizetype i = 0;
    const qsizetype n = inside.size();
    while (i < n && !inside[i].isSpace() && inside[i] != u'/')
        ++i;  // the tag's name
    while (i < n) {
        while (i < n && (inside[i].isSpace() || inside[i] == u'/'))
            ++i;
        const qsizetype nameStart = i;
        while (i < n && !inside[i].isSpace() && inside[i] != u'=' && inside[i] != u'/')
            ++i;
        const QString name = inside.mid(nameStart, i - nameStart).toString().toLower();
        while (i < n && inside[i].isSpace())
            ++i;
        QString value;
        if (i < n && inside[i] == u'=') {
            ++i;
            while (i < n && inside[i].isSpace())
                ++i;
            if (i < n && (inside[i] == u'"' || inside[i] == u'\'')) {
                const QChar q = inside[i];
                const qsizetype end = inside.indexOf(q, i + 1);
                const qsizetype stop = end < 0 ? n : end;
                value = decodeEntities(inside.mid(i + 1, stop - i - 1));
                i = stop + 1;
            } else {
                const qsizetype start = i;
                while (i < n && !inside[i].isSpace())
                    ++i;
                value = decodeEntities(inside.mid(start, i - start));
            }
        }
        if (!name.isEmpty())
            a.insert(name, value);
    }
    return a;
}

// "display: none; color: red" -> "none".
QString displayOf(const QString& style)
{
    for (const QString& part : style.split(QLatin1Char(';'))) {
        const qsizetype colon = part.indexOf(QLatin1Char(':'));
        if (colon > 0 && part.left(colon).trimmed().compare(QLatin1String("display"), Qt::CaseInsensitive) == 0)
            return part.mid(colon + 1).trimmed();
    }
    return {};
}

} // namespace

void ScriptedWebView::navigate(const QString& target)
{
    navigations_ << target;
    location_ = target;
    complete_ = false;
    forward_ = clsForward();
    QString html;
    if (target != QLatin1String("about:blank")) {
        QFile f(target.section(QLatin1Char('?'), 0, 0));
        if (f.open(QIODevice::ReadOnly))
            html = codepage::fromWindows1255(f.readAll());
    }
    load(html);
    if (autoComplete_)
        finishLoading();
}

void ScriptedWebView::load(const QString& html)
{
    source_ = html;
    elements_.clear();
    tables_.clear();
    scripts_.clear();
    struct Open {
        QString tag;
        int element = -1;  // index into elements_, -1 for an element with no id
    };
    std::vector<Open> open;
    // The table, row and cell being filled, by table id.
    std::vector<QString> tables;   // stack of table ids ("" for a table without one)
    const QStringView s(html);
    qsizetype i = 0;
    const qsizetype n = s.size();
    auto addText = [&](QStringView raw) {
        if (raw.isEmpty())
            return;
        const QString t = decodeEntities(raw);
        for (const Open& o : open)
            if (o.element >= 0)
                elements_[size_t(o.element)].text += t;
        if (!tables.empty() && !tables.back().isEmpty()) {
            auto& rows = tables_[tables.back()];
            if (!rows.empty() && !rows.back().isEmpty())
                rows.back().back() += t;
        }
    };
    while (i < n) {
        const qsizetype lt = s.indexOf(u'<', i);
        if (lt < 0) {
            addText(s.mid(i));
            break;
        }
        addText(s.mid(i, lt - i));
        if (s.mid(lt, 4) == u"<!--") {
            const qsizetype end = s.indexOf(u"-->", lt + 4);
            i = end < 0 ? n : end + 3;
            continue;
        }
        const qsizetype gt = s.indexOf(u'>', lt + 1);
        if (gt < 0)
            break;
        const QStringView inside = s.mid(lt + 1, gt - lt - 1);
        i = gt + 1;
        if (inside.startsWith(u'!') || inside.startsWith(u'?'))
            continue;
        if (inside.startsWith(u'/')) {
            const QString tag = inside.mid(1).trimmed().toString().toLower();
            if (tag == QLatin1String("table") && !tables.empty())
                tables.pop_back();
            for (qsizetype k = qsizetype(open.size()) - 1; k >= 0; --k)
                if (open[size_t(k)].tag == tag) {
                    open.resize(size_t(k));
                    break;
                }
            continue;
        }
        qsizetype nameEnd = 0;
        while (nameEnd < inside.size() && !inside[nameEnd].isSpace() && inside[nameEnd] != u'/')
            ++nameEnd;
        const QString tag = inside.left(nameEnd).toString().toLower();
        const QHash<QString, QString> attrs = attributesOf(inside);
        int element = -1;
        if (attrs.contains(QStringLiteral("id"))) {
            Element e;
            e.id = attrs.value(QStringLiteral("id"));
            e.tag = tag;
            e.value = attrs.value(QStringLiteral("value"));
            e.display = displayOf(attrs.value(QStringLiteral("style")));
            e.attributes = attrs;
            elements_.push_back(std::move(e));
            element = int(elements_.size()) - 1;
        }
        if (tag == QLatin1String("table")) {
            tables.push_back(attrs.value(QStringLiteral("id")));
        } else if (tag == QLatin1String("tr") && !tables.empty() && !tables.back().isEmpty()) {
            tables_[tables.back()].push_back({});
        } else if ((tag == QLatin1String("td") || tag == QLatin1String("th")) && !tables.empty()
                   && !tables.back().isEmpty()) {
            auto& rows = tables_[tables.back()];
            if (rows.empty())
                rows.push_back({});
            rows.back() << QString();
        }
        if (tag == QLatin1String("script") || tag == QLatin1String("style")) {
            // Raw text up to the closing tag: nothing inside is markup.
            const QString close = QStringLiteral("</") + tag;
            const qsizetype end = s.indexOf(close, i, Qt::CaseInsensitive);
            const qsizetype stop = end < 0 ? n : end;
            if (tag == QLatin1String("script"))
                scripts_ << s.mid(i, stop - i).toString();
            const qsizetype endGt = end < 0 ? n : s.indexOf(u'>', end);
            i = endGt < 0 ? n : endGt + 1;
            continue;
        }
        if (!isVoid(tag) && !inside.endsWith(u'/'))
            open.push_back({tag, element});
    }
}

ScriptedWebView::Element* ScriptedWebView::find(const QString& id, int index)
{
    int seen = 0;
    for (Element& e : elements_)
        if (e.id == id && seen++ == index)
            return &e;
    return nullptr;
}

bool ScriptedWebView::attachNotifier(const clsForward& forward)
{
    if (!complete_ || !find(QStringLiteral("notifier"), 0))
        return false;
    forward_ = forward;
    return true;
}

int ScriptedWebView::count(const QString& id)
{
    int c = 0;
    for (const Element& e : elements_)
        c += e.id == id;
    return c;
}

QString ScriptedWebView::value(const QString& id, int index)
{
    const Element* e = find(id, index);
    return e ? e->value : QString();
}

void ScriptedWebView::setValue(const QString& id, const QString& value, int index)
{
    if (Element* e = find(id, index))
        e->value = value;
}

QString ScriptedWebView::text(const QString& id, int index)
{
    const Element* e = find(id, index);
    return e ? e->text : QString();
}

void ScriptedWebView::setText(const QString& id, const QString& text, int index)
{
    if (Element* e = find(id, index))
        e->text = text;
}

void ScriptedWebView::setInnerHtml(const QString& id, const QString& html, int index)
{
    Element* e = find(id, index);
    if (!e)
        return;
    // The markup's text, as a browser would show it.
    ScriptedWebView inner;
    inner.load(QStringLiteral("<div id=x>") + html + QStringLiteral("</div>"));
    e->text = inner.text(QStringLiteral("x"));
}

QString ScriptedWebView::display(const QString& id, int index)
{
    const Element* e = find(id, index);
    return e ? e->display : QString();
}

void ScriptedWebView::setDisplay(const QString& id, const QString& display, int index)
{
    if (Element* e = find(id, index))
        e->display = display;
}

bool ScriptedWebView::checked(const QString& id, int index)
{
    const Element* e = find(id, index);
    return e && e->attributes.contains(QStringLiteral("checked"));
}

void ScriptedWebView::click(const QString& id, int index)
{
    Element* e = find(id, index);
    if (e && e->tag == QLatin1String("input") && e->attributes.value(QStringLiteral("type")) == QLatin1String("checkbox")) {
        if (!e->attributes.remove(QStringLiteral("checked")))
            e->attributes.insert(QStringLiteral("checked"), QString());
        return;
    }
    if (!e || id != QLatin1String("notifier") || !forward_.isSet())
        return;
    ++notifications_;
    forward_();
}

int ScriptedWebView::scrollTop(const QString& id) { return scroll_.value(id); }

void ScriptedWebView::setScrollTop(int top, const QString& id) { scroll_.insert(id, std::max(0, top)); }

void ScriptedWebView::finishLoading()
{
    if (complete_)
        return;
    complete_ = true;
    if (onComplete_)
        onComplete_(location_);
}

void ScriptedWebView::sendEvent(const QString& text)
{
    setValue(QStringLiteral("theID"), text);
    click(QStringLiteral("notifier"));
}

bool ScriptedWebView::clickRow(const QString& tableId, int rowIndex)
{
    const auto it = tables_.constFind(tableId);
    if (it == tables_.constEnd() || rowIndex < 0 || rowIndex >= int(it->size()))
        return false;
    setValue(QStringLiteral("theRowIndx"), QString::number(rowIndex));
    click(QStringLiteral("notifier"));
    return true;
}

std::vector<QStringList> ScriptedWebView::rows(const QString& tableId) const { return tables_.value(tableId); }

} // namespace pelkor::web
