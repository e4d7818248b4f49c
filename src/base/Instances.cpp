#include "base/Instances.h"

#include <QPointer>
#include <QProcess>

namespace pelkor {

QStringList splitCommand(const QString& theCommand, int fieldsBeforeFile)
{
    QStringList out;
    QString rest = theCommand;
    for (int i = 0; i < fieldsBeforeFile; ++i) {
        const qsizetype sp = rest.indexOf(QLatin1Char(' '));
        if (sp < 0)
            break;
        out << rest.left(sp);
        rest = rest.mid(sp + 1);
    }
    if (!rest.isEmpty())
        out << rest;
    return out;
}

WindowShow takeWindowShow()
{
    const QString v = qEnvironmentVariable(windowShowVariable);
    qunsetenv(windowShowVariable);
    if (v == QLatin1String("minimized"))
        return WindowShow::Minimized;
    if (v == QLatin1String("maximized"))
        return WindowShow::Maximized;
    return WindowShow::Normal;
}

namespace {

class ProcessChildren : public Children {
public:
    explicit ProcessChildren(QString program) : program_(std::move(program)) {}
    ~ProcessChildren() override
    {
        // A child outlives its parent's object: it is its own instance.
        if (proc_)
            proc_->setParent(nullptr);
    }
    bool start(const QString& theCommand) override
    {
        // "new<t> h1 h2 h3 file": four fields, then the file.
        const int fields = theCommand.startsWith(QLatin1String("new")) ? 4 : 0;
        auto* p = new QProcess();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QString::fromLatin1(windowShowVariable), QStringLiteral("minimized"));
        p->setProcessEnvironment(env);
        p->setProgram(program_);
        p->setArguments(fields ? splitCommand(theCommand, fields) : QStringList{theCommand});
        p->setProcessChannelMode(QProcess::ForwardedChannels);
        QObject::connect(p, &QProcess::finished, p, &QObject::deleteLater);
        p->start();
        if (!p->waitForStarted(10000)) {
            delete p;
            return false;
        }
        proc_ = p;
        return true;
    }
    bool running() const override { return proc_ && proc_->state() != QProcess::NotRunning; }

private:
    QString program_;
    QPointer<QProcess> proc_;
};

} // namespace

bool startAnotherInstance(const QString& program, const QStringList& arguments)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QString::fromLatin1(windowShowVariable), QStringLiteral("maximized"));
    p.setProcessEnvironment(env);
    p.setProgram(program);
    p.setArguments(arguments);
    return p.startDetached();
}

std::unique_ptr<Children> processChildren(const QString& program)
{
    return std::make_unique<ProcessChildren>(program);
}

} // namespace pelkor
