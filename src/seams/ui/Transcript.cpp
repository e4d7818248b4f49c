// Transcript: formatting and appending the records of a scripted run.
#include "seams/ui/Transcript.h"

#include <QCoreApplication>
#include <QFile>

#include <utility>

namespace pelkor::ui {

Transcript::Transcript(QString path) : path_(std::move(path)) {}

QString Transcript::escape(const QString& field)
{
    QString s = field;
    s.replace(QLatin1String("\r\n"), QLatin1String("\\n"));
    s.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    s.replace(QLatin1Char('\r'), QLatin1String("\\n"));
    s.replace(QLatin1Char('\t'), QLatin1Char(' '));
    return s;
}

QString Transcript::format(qint64 pid, const QString& kind, const QString& title,
                           const QString& text, const QString& answer)
{
    const QChar tab(QLatin1Char('\t'));
    return QString::number(pid) + tab + escape(kind) + tab + escape(title) + tab + escape(text)
         + tab + escape(answer) + QLatin1Char('\n');
}

QString Transcript::commandLine(const QStringList& arguments)
{
    QStringList parts;
    for (const QString& a : arguments) {
        if (a.isEmpty() || a.contains(QLatin1Char(' ')) || a.contains(QLatin1Char('\t')))
            parts << QLatin1Char('"') + a + QLatin1Char('"');
        else
            parts << a;
    }
    return parts.join(QLatin1Char(' '));
}

bool Transcript::append(const QString& kind, const QString& title, const QString& text,
                        const QString& answer) const
{
    if (path_.isEmpty())
        return true;
    const QByteArray line =
        format(QCoreApplication::applicationPid(), kind, title, text, answer).toUtf8();
    QFile f(path_);
    // Append maps to O_APPEND and Unbuffered hands the whole line to one
    // write(): the kernel places it at the end whole, whatever other
    // processes append meanwhile.
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return false;
    const bool ok = f.write(line) == line.size();
    f.close();
    return ok;
}

} // namespace pelkor::ui
