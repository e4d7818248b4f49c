// runIt: the statement downloader's program. It parses the command line,
// prepares on "f<n>", and for "c +<n> <box> <nDays>" either runs headless
// (--from) or shows the window; the exit code is Downloader's ExitCode.
#include "Downloader.h"
#include "RunItWindow.h"

#include "app/ui/QtHebrew.h"
#include "app/ui/QtUi.h"
#include "seams/platform/Paths.h"
#include "seams/ui/ScriptedUi.h"

#include <QApplication>
#include <QCoreApplication>

#include <cstdio>
#include <memory>

using namespace pelkor;

int main(int argc, char** argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    const feed::ParsedCommand parsed = feed::parseCommand(args);
    if (!parsed.command) {
        std::fprintf(stderr, "runIt: %s\n", parsed.error.toUtf8().constData());
        return int(feed::ExitCode::BadCommand);
    }
    const feed::Command& command = *parsed.command;
    // The folder the ledger looks for the feed in; no application object is
    // needed for it (the program folder is unused here).
    const platform::Paths paths = platform::Paths::fromEnvironment(QString());
    if (command.kind == feed::Command::Kind::Prepare)
        return int(feed::prepare(paths, command.bank));

    std::unique_ptr<ui::ScriptedUi> scripted = ui::makeUiFromEnvironment();
    if (!command.from.isEmpty()) {
        // Without a window, and without a display: a question (a missing
        // closing balance) is answered by the rules when there are any, and
        // otherwise goes unanswered.
        QCoreApplication app(argc, argv);
        if (!scripted)
            scripted = std::make_unique<ui::ScriptedUi>(QString(), QString());
        feed::Downloader downloader(*scripted, paths, command);
        const int code = int(downloader.runHeadless());
        scripted->recordExit(code);
        return code;
    }

    QApplication app(argc, argv);
    app.setLayoutDirection(Qt::RightToLeft);
    app.setApplicationName(QStringLiteral("pelkor"));
    ui::installQtHebrew(app);
    ui::QtUi qtUi;
    ui::Ui& ui = scripted ? static_cast<ui::Ui&>(*scripted) : static_cast<ui::Ui&>(qtUi);
    feed::Downloader downloader(ui, paths, command);
    feed::RunItWindow window(downloader, ui);
    qtUi.setParentWindow(&window);
    window.start();
    const int code = app.exec();
    if (scripted)
        scripted->recordExit(code);
    return code;
}
