// A ledger made from SQL in a temporary folder, and frmMain started on it
// with scripted dialogs, a transcript and a child instance the test plays.
#pragma once

#include "file/Schema.h"
#include "base/CommandLine.h"
#include "base/Instances.h"
#include "frame/frmMain.h"
#include "seams/platform/ProfileFile.h"
#include "seams/store/Connection.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "QtPrinters.h"
#include "TestSupport.h"

namespace pelkor::testing {

// The child instance as the test plays it: on start it runs act (which may
// change the file and set the parent's caption), and it "runs" until the
// test says it ended.
class PlayedChildren : public Children {
public:
    std::function<void(const QString& command)> act;
    QStringList started;
    bool alive = false;
    bool start(const QString& theCommand) override
    {
        started << theCommand;
        alive = true;
        if (act)
            act(theCommand);
        return true;
    }
    bool running() const override { return alive; }
};

// Texts to other processes, recorded: "<id> <text>" each.
struct RecordingBus : Bus {
    QStringList sent;
    bool send(std::uint32_t id, const QString& text) override
    {
        sent << idText(id) + QLatin1Char(' ') + text;
        return true;
    }
    bool sendToHost(std::uint32_t a, std::uint32_t b, const QString& text) override
    {
        sent << QStringLiteral("host %1 %2 %3").arg(idText(a), idText(b), text);
        return true;
    }
};

class LoadTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ensureApplication();
        ASSERT_TRUE(dir.isValid());
        file = dir.filePath(QStringLiteral("shop.pkr"));
    }

    // The file under test, with the settings these tests read (a credit
    // line, 60 days of statement, one invoice kind).
    void makeLedger(const QString& linesSql, bool old = false)
    {
        testing::makeLedger(file, linesSql, old, {-5000, 60, " +1 "});
    }

    // Rows of a plain SQLite query on the file, "a|b" each, joined by ";".
    QString query(const QString& sql) { return queryRows(file, sql); }

    // Starts frmMain with the arguments and the rules, and runs the event
    // loop until the instance ends (or a minute passes).
    frmMain& start(const QStringList& args, const QString& rules)
    {
        ui_ = std::make_unique<ui::ScriptedUi>(ui::DialogRules::parse(rules), transcriptPath(),
                                               QStringList{QStringLiteral("prjPelkor")} + args);
        frmMain::Environment env;
        env.ui = ui_.get();
        env.paths = platform::Paths::under(dir.path());
        env.today = QDate(2025, 6, 1);
        env.arguments = args;
        env.children = &children;
        env.messages = &messages;
        env.bus = busOverride;
        env.layouts = layouts;
        env.importer = importer;
        env.endProcess = [this](int code) { endCode = code; };
        env.startInstance = [this](const QStringList& arguments) {
            startedInstances << arguments;
            return true;
        };
        m = std::make_unique<frmMain>(env);
        m->Form_Load();
        return *m;
    }
    void runUntilEnded(int ms = 60000)
    {
        QElapsedTimer t;
        t.start();
        while (!m->ended() && t.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
        ui_->recordExit(endCode);
    }
    // The repair run: the open dialog picks the file, then the rest.
    frmMain& repair(const QString& moreRules = {})
    {
        start({}, QStringLiteral("בחר קובץ => ") + file + QLatin1Char('\n') + moreRules);
        runUntilEnded();
        return *m;
    }

    QString transcriptPath() const { return dir.filePath(QStringLiteral("transcript.tsv")); }
    // "kind|title|text|answer" of every prompt, in order.
    QStringList prompts() const { return records(false); }
    // "window|title|text|answer" of each window that became ready.
    QStringList windows() const { return records(true); }
    QStringList records(bool windows) const
    {
        QFile f(transcriptPath());
        QStringList out;
        if (!f.open(QIODevice::ReadOnly))
            return out;
        for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList p = line.split(QLatin1Char('\t'));
            // The window's readiness is no question to the user.
            const bool window = p.value(1) == QLatin1String("window");
            if (p.value(1) != QLatin1String("start") && p.value(1) != QLatin1String("exit") && window == windows)
                out << p.mid(1).join(QLatin1Char('|'));
        }
        return out;
    }
    QByteArray bytes(const QString& path) const
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    QTemporaryDir dir;
    QString file;
    PlayedChildren children;
    QList<QStringList> startedInstances;   // other main instances started (their arguments)
    LocalMessages messages{0x1234abcd};
    Bus* busOverride = nullptr;
    platform::KeyboardLayouts* layouts = nullptr;   // none switched when null
    reconcile::Importer* importer = nullptr;        // the statement importer a session starts
    std::unique_ptr<ui::ScriptedUi> ui_;
    std::unique_ptr<frmMain> m;
    int endCode = -1;
};

// Lines: two dates in March, one line with an invalid kind, one Null and
// one empty reference, a "newline" memo, and the marker on line 2.
inline QString sampleLines()
{
    return QStringLiteral(
        "INSERT INTO pelkor (id,kind,date,confirm,detail,\"in\",out,TypeNum,zee,memo,relate,IndTzefi) VALUES "
        "(1,'+1','2025-03-01','11','מכירה',1000,0,1,' ','ללא צבע',0,0),"
        "(2,'-1','2025-03-01',NULL,'ספק',0,300,2,'ZZZZZZZZZZ','אדום',NULL,NULL),"
        "(3,'+2','2025-03-05','','שירות',200,0,1,' ','newline ירוק',0,0),"
        "(4,'+99','2025-03-06','5','סיווג שאבד',10,0,1,' ','ללא צבע',0,0),"
        "(5,'-2','2025-03-10','6','משכורת',0,500,2,' ',NULL,-1,1);");
}

} // namespace pelkor::testing
