// DialogRules: parsing a rules file and finding the answer to a prompt.
#include "seams/ui/DialogRules.h"

#include <QFile>

#include <algorithm>

namespace pelkor::ui {

DialogRules DialogRules::parse(const QString& text, QStringList* errors)
{
    DialogRules rules;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QString line = lines[i];
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')))
            continue;
        const int lineNo = int(i) + 1;
        const qsizetype arrow = line.lastIndexOf(QStringLiteral("=>"));
        if (arrow < 0) {
            if (errors)
                errors->append(QStringLiteral("line %1: no \"=>\": %2").arg(lineNo).arg(trimmed));
            continue;
        }
        const QString pattern = line.left(arrow).trimmed();
        const QString answer = line.mid(arrow + 2).trimmed();
        QRegularExpression re(pattern, QRegularExpression::UseUnicodePropertiesOption);
        if (!re.isValid()) {
            if (errors)
                errors->append(QStringLiteral("line %1: bad expression \"%2\": %3")
                                   .arg(lineNo).arg(pattern, re.errorString()));
            continue;
        }
        Rule r;
        r.line = lineNo;
        r.expression = re;
        for (const QString& a : answer.split(QStringLiteral("||")))
            r.answers << a.trimmed();
        rules.rules_.push_back(std::move(r));
    }
    return rules;
}

DialogRules DialogRules::load(const QString& path, QStringList* errors)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        if (errors)
            errors->append(QStringLiteral("cannot read the rules file %1: %2").arg(path, f.errorString()));
        return {};
    }
    QString text = QString::fromUtf8(f.readAll());
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return parse(text, errors);
}

int DialogRules::match(const QStringList& subjects) const
{
    for (size_t i = 0; i < rules_.size(); ++i)
        for (const QString& s : subjects)
            if (rules_[i].expression.match(s).hasMatch())
                return int(i);
    return -1;
}

std::optional<QString> DialogRules::peek(const QStringList& subjects) const
{
    const int i = match(subjects);
    if (i < 0)
        return std::nullopt;
    const Rule& r = rules_[size_t(i)];
    return r.answers[std::min<qsizetype>(r.used, r.answers.size() - 1)];
}

std::optional<QString> DialogRules::answer(const QStringList& subjects)
{
    std::optional<QString> a = peek(subjects);
    if (a)
        ++rules_[size_t(match(subjects))].used;
    return a;
}

} // namespace pelkor::ui
