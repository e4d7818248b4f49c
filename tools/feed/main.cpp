// runIt: the statement downloader's program. It parses the command line,
// prepares on "f<n>", and for "c +<n> <box> <nDays>" either runs headless
// (--from) or shows the window; the exit code is Downloader's ExitCode.
#include "Downloader.h"
#include "RunItWindow.h"

#include "app/ui/QtUi.h"
#include "seams/platform/Paths.h"
#include "seams/ui/ScriptedUi.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

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

    QApplication app(argc, argv);
    app.setLayoutDirection(Qt::RightToLeft);
    app.setApplicationName(QStringLiteral("pelkor"));
    QTranslator qtHebrew;
    if (qtHebrew.load(QStringLiteral("qt_he"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        app.installTranslator(&qtHebrew);
    std::unique_ptr<ui::ScriptedUi> scripted = ui::makeUiFromEnvironment();
    ui::QtUi qtUi;
    ui::Ui& ui = scripted ? static_cast<ui::Ui&>(*scripted) : static_cast<ui::Ui&>(qtUi);

    feed::Downloader downloader(ui, paths, command);
    int code = 0;
    if (!command.from.isEmpty()) {
        code = int(downloader.runHeadless());
    } else {
        feed::RunItWindow window(downloader, ui);
        qtUi.setParentWindow(&window);
        window.start();
        code = app.exec();
    }
    if (scripted)
        scripted->recordExit(code);
    return code;
}
