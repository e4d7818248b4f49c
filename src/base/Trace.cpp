#include "base/Trace.h"

#include "seams/platform/ProfileFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace pelkor {

struct Trace::File {
    QFile f;
};

Trace::Trace(QString logDirectory, QString commandLine)
    : dir_(std::move(logDirectory)), commandLine_(std::move(commandLine))
{
}

Trace::~Trace() = default;

bool Trace::wantedBy(const platform::ProfileFile& ini)
{
    const QString v = ini.readString(QStringLiteral("misc"), QStringLiteral("debug"), QStringLiteral("0"));
    return v != QLatin1String("0");
}

QString Trace::filePath() const
{
    // The first four characters of the command line, made safe for a file
    // name (a path on the command line brings separators with it).
    QString head = commandLine_.left(4);
    for (QChar& c : head)
        if (c == QLatin1Char('/') || c == QLatin1Char('\\') || c == QLatin1Char(':') || c.isSpace())
            c = QLatin1Char('_');
    return dir_ + QStringLiteral("/PelkorLog_") + head + QLatin1Char('_')
        + QString::number(QCoreApplication::applicationPid()) + QStringLiteral(".txt");
}

void Trace::setOn(bool on)
{
    if (on == on_)
        return;
    if (!on) {
        file_.reset();
        on_ = false;
        return;
    }
    QDir().mkpath(dir_);
    auto f = std::make_unique<File>();
    f->f.setFileName(filePath());
    if (!f->f.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    file_ = std::move(f);
    on_ = true;
}

void Trace::traceEnter(QString& procLocal, const QString& name)
{
    procLocal = name;
    curProc_ = name;
    traceLine(name, QStringLiteral("<<<< starting"));
}

void Trace::traceLeave(const QString& procLocal)
{
    traceLine(procLocal, QStringLiteral(">>>> finished"));
}

void Trace::traceLine(const QString& proc, const QString& text)
{
    if (!on_)
        return;
    const QByteArray line = (QStringLiteral("*** ") + proc + QStringLiteral(": ") + text + QLatin1Char('\n')).toUtf8();
    file_->f.write(line);
    file_->f.flush();
}

void Trace::DBMsgBox(const QString& proc, const QString& text, int fontSize, const QString& colour,
                     const QString& backColour)
{
    traceLine(proc, text);
    if (panel_)
        panel_(text, fontSize, colour, backColour);
}

} // namespace pelkor
