// How the real program starts: the usage and the version with or without a
// display, a wrong option, and a working run with no current file.
#include "base/CommandLine.h"
#include "seams/bus/Bus.h"
#include "seams/bus/Published.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "app/ProcessSupport.h"

using namespace pelkor;
using namespace pelkor::proctest;

TEST(StartProcess, HelpAndVersionNeedNoDisplayAndAWrongOptionIsSaid)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    for (const bool display : {false, true}) {
        for (const char* option : {"--help", "--version"}) {
            SCOPED_TRACE(std::string(option) + (display ? " offscreen" : " no display"));
            QProcess p;
            auto env = QProcessEnvironment::systemEnvironment();
            for (const char* v : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "PELKOR_DIALOGS", "PELKOR_TRANSCRIPT"})
                env.remove(QString::fromLatin1(v));
            if (display)
                env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
            p.setProcessEnvironment(env);
            p.start(QStringLiteral(PELKOR_BINARY_DIR "/prjPelkor"), {QString::fromLatin1(option)});
            ASSERT_TRUE(p.waitForFinished(60000));
            EXPECT_EQ(p.exitStatus(), QProcess::NormalExit);
            EXPECT_EQ(p.exitCode(), 0);
            const QString out = QString::fromUtf8(p.readAllStandardOutput());
            if (QByteArray(option) == "--help")
                EXPECT_TRUE(out.contains(QStringLiteral("prjPelkor open [<file.pkr>]"))) << out.toStdString();
            else
                EXPECT_EQ(out, QStringLiteral("prjPelkor %1\n").arg(QLatin1String(programVersion)));
        }
    }
    QTemporaryDir dir;
    Program run(dir.path());
    ASSERT_TRUE(run.setRules(QString()) && run.start({QStringLiteral("--helpme")}));
    run.finish();
    EXPECT_TRUE(run.prompts().contains(QStringLiteral("msgbox|פלקור|wrong option|OK")))
        << run.prompts().join(QLatin1Char('\n')).toStdString();
}

// Started from the desktop's menu ("open" with no current file): the open
// dialog, and the working run on the ledger chosen there.
TEST(StartProcess, AWorkingRunWithNoCurrentFileOpensTheLedgerChosen)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("shop.pkr"));
    schema::createLedger(file, QDate::currentDate());
    Program run(dir.path());
    const quint32 box =
        startWorkingRun(run, {QStringLiteral("open")}, QStringLiteral("בחר קובץ פלקור => ") + file);
    ASSERT_NE(box, 0u) << run.prompts().join(QLatin1Char('\n')).toStdString();
    const QStringList got = run.prompts();
    EXPECT_EQ(got.value(1), QStringLiteral("open|בחר קובץ פלקור, או הקלד שם לקובץ חדש|פלקור (*.pkr)|*.pkr|") + file);
    EXPECT_TRUE(got.filter(QStringLiteral("window|frmMain|פלקור - shop | mode 1")).size() == 1)
        << got.join(QLatin1Char('\n')).toStdString();
    EXPECT_EQ(bus::send(box, QStringLiteral("close"), 30000), bus::SendResult::Delivered);
    EXPECT_EQ(run.finish(), 0);
    // Nothing is left beside the ledger or the parameters.
    for (const QString& folder : {dir.path(), run.home()})
        EXPECT_EQ(QDir(folder).entryList({QStringLiteral("*-wal"), QStringLiteral("*-shm")}, QDir::Files), QStringList());
}
