// prjPelkor: the program's entry.
//
//   prjPelkor --create <file.pkr>   create a new empty ledger and exit
//   prjPelkor                       the repair run: pick a file, repair, report
//   prjPelkor open [<file.pkr>]     a working run (without a file: the current one)
//   prjPelkor <file.pkr>            the same, as a desktop starts it
//   prjPelkor new<t> ... / detail ... / merged ...   child instances
//   prjPelkor host <h1> <h2> [...]  any main form under the outer host
//   prjPelkor --help, --version     the usage or the version on the standard output
//
// With PELKOR_DIALOGS or PELKOR_TRANSCRIPT set, every question goes to the
// scripted dialogs instead of a window, so whole runs work headless.
#include "app/frmMainView.h"
#include "app/platform/X11KeyboardLayouts.h"
#include "app/ui/QtHebrew.h"
#include "app/ui/QtUi.h"
#include "file/Schema.h"
#include "base/BusLinks.h"
#include "base/CommandLine.h"
#include "base/Instances.h"
#include "seams/bus/Mailbox.h"
#include "seams/bus/Published.h"
#include "frame/frmMain.h"
#include "reconcile/Importer.h"
#include "seams/platform/Paths.h"
#include "seams/store/StoreError.h"
#include "seams/ui/ScriptedUi.h"

#include <QApplication>
#include <QDate>
#include <QTimer>

#include <cstdio>

using namespace pelkor;

int main(int argc, char** argv)
{
    // --help, --version and --create need no display: answer before a GUI
    // application is built.
    {
        QStringList args;
        for (int i = 1; i < argc; ++i)
            args << QString::fromLocal8Bit(argv[i]);
        switch (infoOption(args)) {
        case InfoOption::Help:
            std::fputs(usageText().toUtf8().constData(), stdout);
            return 0;
        case InfoOption::Version:
            std::printf("prjPelkor %s\n", programVersion);
            return 0;
        case InfoOption::None:
            break;
        }
    }
    if (argc == 3 && QByteArray(argv[1]) == "--create") {
        QCoreApplication core(argc, argv);
        const QString path = core.arguments().at(2);
        try {
            schema::createLedger(path, QDate::currentDate());
        } catch (const store::StoreError& e) {
            std::fprintf(stderr, "%s\n",
                         QStringLiteral("יצירת הקובץ %1 נכשלה: %2").arg(path, e.message()).toUtf8().constData());
            return 1;
        }
        return 0;
    }

    // A parent starts its children minimised (base/Instances.h).
    const WindowShow show = takeWindowShow();

    QApplication app(argc, argv);
    app.setLayoutDirection(Qt::RightToLeft);
    app.setApplicationName(QStringLiteral("pelkor"));
    // Qt's own words (file dialogs, standard buttons) in Hebrew.
    ui::installQtHebrew(app);

    std::unique_ptr<ui::ScriptedUi> scripted = ui::makeUiFromEnvironment();
    ui::QtUi qtUi;
    auto children = processChildren(QCoreApplication::applicationFilePath());

    frmMain::Environment env;
    env.ui = scripted ? static_cast<ui::Ui*>(scripted.get()) : &qtUi;
    env.paths = platform::Paths::fromEnvironment(QCoreApplication::applicationDirPath());
    env.today = QDate::currentDate();
    env.arguments = app.arguments().mid(1);
    env.children = children.get();
    // frmMessages: the caption a new-line child answers through.
    MailboxMessages messages;
    env.messages = &messages;
    MailboxBus bus;
    env.bus = &bus;
    env.endProcess = [](int code) { QCoreApplication::exit(code); };
    env.startInstance = [](const QStringList& arguments) {
        return startAnotherInstance(QCoreApplication::applicationFilePath(), arguments);
    };
    // The keyboard follows the column where the desktop lets us switch it.
    const auto layouts = desktopKeyboardLayouts();
    env.layouts = layouts.get();
    // The statement importer a reconciliation starts (runIt).
    const auto importer = reconcile::processImporter(reconcile::importerProgram(QCoreApplication::applicationDirPath()));
    env.importer = importer.get();

    frmMain logic(env);
    // txtMessage: the texts a parent's child or the outer host put here.
    bus::Mailbox txtMessage;
    txtMessage.setHandler([&logic](const QString& text) {
        logic.guarded(QStringLiteral("txtMessage_Change"), [&] { logic.txtMessage_Change(text); });
    });
    logic.instance().txtMessageId = txtMessage.id();
    // Listed under our process id, so the outer host that started us finds
    // it (seams/bus/Published.h).
    bus::Publication listed(QStringLiteral("txtMessage"), txtMessage.id());
    frmMainView view(logic);
    qtUi.setParentWindow(&view);
    QTimer::singleShot(0, &logic, [&] {
        logic.guarded(QStringLiteral("Form_Load"), [&] { logic.Form_Load(); });
        if (logic.ended() || logic.isReportOnly())
            return;
        switch (show) {
        case WindowShow::Minimized:
            // Whether a minimised window holds the keyboard focus is the
            // desktop's choice; asking for it would make most desktops
            // restore the window, so we do not.
            view.showMinimized();
            break;
        case WindowShow::Maximized:
            view.showMaximized();
            break;
        case WindowShow::Normal:
            view.show();
            break;
        }
    });
    const int code = logic.ended() ? logic.exitCode() : app.exec();
    if (scripted)
        scripted->recordExit(code);
    return code;
}
