// KeyboardLayouts: the do-nothing desktop, and XKB layout names to ids.
#include "seams/platform/KeyboardLayouts.h"

#include <array>
#include <utility>

namespace pelkor::platform {

namespace {

class NoKeyboardLayouts final : public KeyboardLayouts {
public:
    QString active() override { return {}; }
    bool activate(const QString&) override { return false; }
};

// XKB layout names and the ids the program speaks. English is one id
// whatever the country's variant of it.
constexpr std::array<std::pair<const char16_t*, const char16_t*>, 17> layoutIds{{
    {u"il", u"0000040d"},
    {u"us", u"00000409"},
    {u"gb", u"00000409"},
    {u"au", u"00000409"},
    {u"ie", u"00000409"},
    {u"nz", u"00000409"},
    {u"za", u"00000409"},
    {u"ara", u"00000401"},
    {u"ru", u"00000419"},
    {u"ua", u"00000422"},
    {u"fr", u"0000040c"},
    {u"de", u"00000407"},
    {u"es", u"0000040a"},
    {u"it", u"00000410"},
    {u"pt", u"00000816"},
    {u"br", u"00000416"},
    {u"pl", u"00000415"},
}};

} // namespace

std::unique_ptr<KeyboardLayouts> noKeyboardLayouts()
{
    return std::make_unique<NoKeyboardLayouts>();
}

QString xkbLayoutId(QStringView xkbLayout)
{
    // "il(phonetic)" and "il:2" (as a symbols list writes it) are still "il".
    QStringView name = xkbLayout.trimmed();
    for (const QChar stop : {QLatin1Char('('), QLatin1Char(':')}) {
        const qsizetype at = name.indexOf(stop);
        if (at >= 0)
            name = name.left(at);
    }
    for (const auto& [xkb, id] : layoutIds)
        if (name.compare(QStringView(xkb), Qt::CaseInsensitive) == 0)
            return QString::fromUtf16(id);
    return {};
}

QStringList xkbRulesLayouts(const QByteArray& rulesNames)
{
    const QList<QByteArray> fields = rulesNames.split('\0');
    if (fields.size() < 3 || fields[2].trimmed().isEmpty())
        return {};
    QStringList layouts;
    for (const QByteArray& layout : fields[2].split(','))
        layouts << QString::fromLatin1(layout.trimmed());
    return layouts;
}

QStringList xkbSymbolsLayouts(QStringView symbols)
{
    const QList<QStringView> parts = symbols.split(QLatin1Char('+'));
    // XKB has at most four groups.
    constexpr int maxGroups = 4;
    QStringList layouts;
    for (qsizetype i = 1; i < parts.size(); ++i) {
        QStringView part = parts[i].trimmed();
        int group = 1;
        const qsizetype colon = part.indexOf(QLatin1Char(':'));
        if (colon >= 0) {
            bool ok = false;
            group = part.mid(colon + 1).toInt(&ok);
            if (!ok || group < 1 || group > maxGroups)
                continue;
            part = part.left(colon);
        } else if (i != 1) {
            continue;
        }
        while (layouts.size() < group)
            layouts << QString();
        if (layouts[group - 1].isEmpty())
            layouts[group - 1] = part.toString();
    }
    return layouts;
}

} // namespace pelkor::platform
