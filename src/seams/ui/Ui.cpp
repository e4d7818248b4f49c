// Ui: the name helpers and the conversion of the old file filter form.
#include "seams/ui/Ui.h"

#include <QFileInfo>

namespace pelkor::ui {

namespace {

struct AnswerName {
    Answer answer;
    const char* name;
};

constexpr AnswerName kAnswerNames[] = {
    {Answer::OK, "OK"},       {Answer::Cancel, "Cancel"}, {Answer::Yes, "Yes"},
    {Answer::No, "No"},       {Answer::Abort, "Abort"},   {Answer::Retry, "Retry"},
    {Answer::Ignore, "Ignore"},
};

} // namespace

QString answerName(Answer a)
{
    for (const auto& n : kAnswerNames)
        if (n.answer == a)
            return QString::fromLatin1(n.name);
    return {};
}

std::optional<Answer> parseAnswer(const QString& name)
{
    const QString t = name.trimmed();
    for (const auto& n : kAnswerNames)
        if (t.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0)
            return n.answer;
    return std::nullopt;
}

std::vector<Answer> buttonsOf(Buttons b)
{
    switch (b) {
    case Buttons::OK: return {Answer::OK};
    case Buttons::OKCancel: return {Answer::OK, Answer::Cancel};
    case Buttons::AbortRetryIgnore: return {Answer::Abort, Answer::Retry, Answer::Ignore};
    case Buttons::YesNoCancel: return {Answer::Yes, Answer::No, Answer::Cancel};
    case Buttons::YesNo: return {Answer::Yes, Answer::No};
    case Buttons::RetryCancel: return {Answer::Retry, Answer::Cancel};
    }
    return {Answer::OK};
}

Answer defaultAnswer(Buttons b)
{
    return buttonsOf(b).front();
}

QStringList qtNameFilters(const QString& oldFilter)
{
    QStringList out;
    const QStringList parts = oldFilter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString desc = parts[i].trimmed();
        QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& p : patterns)
            p = p.trimmed();
        const QString joined = patterns.join(QLatin1Char(' '));
        if (joined.isEmpty())
            continue;
        const QString bracketed = QLatin1Char('(') + joined + QLatin1Char(')');
        if (desc.endsWith(bracketed))
            out << desc;
        else if (desc.isEmpty())
            out << bracketed;
        else
            out << desc + QLatin1Char(' ') + bracketed;
    }
    return out;
}

QString qtFilter(const QString& oldFilter)
{
    return qtNameFilters(oldFilter).join(QStringLiteral(";;"));
}

QString withDefaultExt(const QString& path, const QString& defaultExt, const QString& filter)
{
    QString ext = defaultExt.trimmed();
    if (ext.startsWith(QLatin1Char('.')))
        ext.remove(0, 1);
    if (path.isEmpty() || ext.isEmpty())
        return path;
    const QString suffix = QFileInfo(path).suffix();
    if (suffix.isEmpty())
        return path + QLatin1Char('.') + ext;
    // The filter's patterns are every other part of "desc|*.a;*.b|...".
    const QStringList parts = filter.split(QLatin1Char('|'));
    bool named = false, any = parts.size() < 2;
    for (qsizetype i = 1; i < parts.size(); i += 2)
        for (const QString& p : parts[i].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString pattern = p.trimmed();
            if (pattern == QLatin1String("*.*") || pattern == QLatin1String("*"))
                any = true;
            else if (pattern.startsWith(QLatin1String("*.")) && pattern.mid(2).compare(suffix, Qt::CaseInsensitive) == 0)
                named = true;
        }
    return named || any ? path : path + QLatin1Char('.') + ext;
}

} // namespace pelkor::ui
