#include "reconcile/Importer.h"

#include <QFileInfo>
#include <QProcess>

namespace pelkor::reconcile {

QString importerProgram(const QString& programDir)
{
    for (const QString& place : {QStringLiteral("/runIt"), QStringLiteral("/tools/feed/runIt")}) {
        const QFileInfo f(programDir + place);
        if (f.isFile() && f.isExecutable())
            return f.absoluteFilePath();
    }
    return programDir + QStringLiteral("/runIt");
}

namespace {

class ProcessImporter : public Importer {
public:
    ProcessImporter(QString program, std::function<bool(const QString&)> raise)
        : program_(std::move(program)), raise_(std::move(raise))
    {
    }
    QString program() const override { return program_; }

    bool prepare(const QStringList& args) override
    {
        QProcess p;
        p.setProcessChannelMode(QProcess::ForwardedChannels);
        p.start(program_, args);
        if (!p.waitForStarted(10000))
            return false;
        // It clears what an interrupted run left and ends at once.
        if (!p.waitForFinished(10000)) {
            p.kill();
            p.waitForFinished(2000);
            return false;
        }
        return p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }

    bool start(const QStringList& args) override
    {
        close();
        proc_ = std::make_unique<QProcess>();
        proc_->setProcessChannelMode(QProcess::ForwardedChannels);
        proc_->start(program_, args);
        if (!proc_->waitForStarted(10000)) {
            proc_.reset();
            return false;
        }
        return true;
    }

    bool running() const override { return proc_ && proc_->state() != QProcess::NotRunning; }
    bool crashed() const override { return proc_ && proc_->exitStatus() == QProcess::CrashExit; }
    int exitCode() const override { return proc_ ? proc_->exitCode() : -1; }

    bool bringToFront(const QString& title) override { return !raise_ || raise_(title); }

    void close() override
    {
        if (!running())
            return;
        // As a close box would: the importer ends; a window that does not
        // go within two seconds is ended.
        proc_->terminate();
        if (!proc_->waitForFinished(2000)) {
            proc_->kill();
            proc_->waitForFinished(2000);
        }
    }

private:
    QString program_;
    std::function<bool(const QString&)> raise_;
    std::unique_ptr<QProcess> proc_;
};

} // namespace

std::unique_ptr<Importer> processImporter(QString program, std::function<bool(const QString&)> raise)
{
    return std::make_unique<ProcessImporter>(std::move(program), std::move(raise));
}

} // namespace pelkor::reconcile
