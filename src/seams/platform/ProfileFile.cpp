#include "seams/platform/ProfileFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace pelkor::platform {

namespace {

// "[name]" -> name, trimmed; a line that is no header gives a null string.
QString sectionOf(const QString& line)
{
    const QString t = line.trimmed();
    if (t.size() < 2 || t.front() != QLatin1Char('[') || !t.contains(QLatin1Char(']')))
        return {};
    return t.mid(1, t.indexOf(QLatin1Char(']')) - 1).trimmed();
}

bool isComment(const QString& line)
{
    const QString t = line.trimmed();
    return t.isEmpty() || t.front() == QLatin1Char(';');
}

// The key of an entry line, trimmed; a line without "=" gives a null string.
QString keyOf(const QString& line)
{
    if (isComment(line))
        return {};
    const qsizetype eq = line.indexOf(QLatin1Char('='));
    return eq < 0 ? QString() : line.left(eq).trimmed();
}

bool same(const QString& a, const QString& b)
{
    return a.compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

// Where a section's lines run: [begin, end) after its header; begin -1 when
// the section is absent.
struct Span { int header = -1, begin = -1, end = -1; };

Span findSection(const QStringList& lines, const QString& section)
{
    Span s;
    for (int i = 0; i < lines.size(); ++i) {
        const QString name = sectionOf(lines[i]);
        if (name.isNull())
            continue;
        if (s.header >= 0) {
            s.end = i;
            return s;
        }
        if (same(name, section)) {
            s.header = i;
            s.begin = i + 1;
        }
    }
    if (s.header >= 0)
        s.end = int(lines.size());
    return s;
}

} // namespace

QStringList ProfileFile::readLines() const
{
    QFile f(path_);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(f.readAll());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.back().isEmpty())
        lines.removeLast();
    return lines;
}

bool ProfileFile::writeLines(const QStringList& lines) const
{
    QDir().mkpath(QFileInfo(path_).absolutePath());
    QSaveFile f(path_);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    QByteArray data;
    for (const QString& l : lines) {
        data += l.toUtf8();
        data += "\r\n";
    }
    f.write(data);
    return f.commit();
}

QString ProfileFile::readString(const QString& section, const QString& key, const QString& def) const
{
    const QStringList lines = readLines();
    const Span s = findSection(lines, section);
    for (int i = s.begin; i >= 0 && i < s.end; ++i) {
        if (!same(keyOf(lines[i]), key))
            continue;
        QString v = lines[i].mid(lines[i].indexOf(QLatin1Char('=')) + 1).trimmed();
        if (v.size() >= 2 && ((v.front() == QLatin1Char('"') && v.back() == QLatin1Char('"'))
                              || (v.front() == QLatin1Char('\'') && v.back() == QLatin1Char('\''))))
            v = v.mid(1, v.size() - 2);
        return v.left(maxValueLength);
    }
    return def.left(maxValueLength);
}

int ProfileFile::readInt(const QString& section, const QString& key, int def) const
{
    bool ok = false;
    const int v = readString(section, key).toInt(&ok);
    return ok ? v : def;
}

bool ProfileFile::writeString(const QString& section, const QString& key, const QString& value)
{
    QStringList lines = readLines();
    const Span s = findSection(lines, section);
    const QString entry = key.trimmed() + QLatin1Char('=') + value;
    if (s.header < 0) {
        if (value.isNull())
            return true;
        if (!lines.isEmpty() && !lines.back().trimmed().isEmpty())
            lines << QString();
        lines << QLatin1Char('[') + section.trimmed() + QLatin1Char(']') << entry;
        return writeLines(lines);
    }
    int lastEntry = s.header;
    for (int i = s.begin; i < s.end; ++i) {
        if (!keyOf(lines[i]).isNull())
            lastEntry = i;
        if (same(keyOf(lines[i]), key)) {
            if (value.isNull())
                lines.removeAt(i);
            else   // the key keeps the spelling it has in the file
                lines[i] = keyOf(lines[i]) + QLatin1Char('=') + value;
            return writeLines(lines);
        }
    }
    if (value.isNull())
        return true;
    lines.insert(lastEntry + 1, entry);
    return writeLines(lines);
}

bool ProfileFile::deleteSection(const QString& section)
{
    QStringList lines = readLines();
    const Span s = findSection(lines, section);
    if (s.header < 0)
        return true;
    lines.erase(lines.begin() + s.header, lines.begin() + s.end);
    return writeLines(lines);
}

QStringList ProfileFile::keys(const QString& section) const
{
    const QStringList lines = readLines();
    const Span s = findSection(lines, section);
    QStringList out;
    for (int i = s.begin; i >= 0 && i < s.end; ++i) {
        const QString k = keyOf(lines[i]);
        if (!k.isEmpty())
            out << k;
    }
    return out;
}

} // namespace pelkor::platform
