// An automatic session on the demonstration file, started from the bank
// button, with the file's lines and the bank's rows as each test gives them
// and the zeroing mark kept as the window keeps it.
#pragma once

#include "reconcile/Session.h"

#include "SessionFixture.h"
#include "file/Loader.h"
#include "ledger/Zeroing.h"
#include "seams/web/ScriptedWebView.h"

#include <QFile>

namespace pelkor::testing {

// A line of the file (plain SQLite); the mark when mark is set.
inline QString fileLine(int id, const char* date, const QString& detail, double in, double out, bool mark = false,
                        const char* confirm = " ")
{
    return QStringLiteral("INSERT INTO pelkor (id, kind, date, confirm, detail, \"in\", out, TypeNum, zee, memo, relate, IndTzefi)"
                          " VALUES (%1, '%2', '%3', '%4', '%5', %6, %7, %8, '%9', NULL, 0, 0);")
        .arg(id)
        .arg(QString::fromLatin1(out > 0 ? "-0" : "+0"), QString::fromLatin1(date), QString::fromLatin1(confirm), detail)
        .arg(in)
        .arg(out)
        .arg(out > 0 ? 2 : 1)
        .arg(QString::fromLatin1(mark ? "ZZZZZZZZZZ" : " "));
}

// A row of the demonstration feed.
inline QString feedRow(int id, const char* date, double in, double out, double balance, const char* confirm = "c",
                       const char* detail = "d")
{
    return QStringLiteral("INSERT INTO demoOsh VALUES ('1', %1, '%2', '%3', '%4', %5, %6, %7, 0);")
        .arg(id)
        .arg(QString::fromLatin1(date), QString::fromLatin1(confirm), QString::fromLatin1(detail))
        .arg(in)
        .arg(out)
        .arg(balance);
}

class AutoSessionTest : public FeedTest {
protected:
    void begin(const QString& linesSql, const QString& feedSql, const QDate& target)
    {
        makeLedgerBound(99, QStringLiteral("(none)"), linesSql);
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET isAuto=1;"));
        cn.close();
        makeFeed(98, feedSql, true);
        QFile::copy(QStringLiteral(PELKOR_SOURCE_DIR "/share/BankMenu.html"), dir.filePath(QStringLiteral("BankMenu.html")));
        led.isAutomatic = true;
        led.targetDate = target;
        inst.progMode = modeFullScreen;
        if (!ui_)
            scripted({});
        load(false);
        window.onRefresh = [this] { load(true); };
        session = std::make_unique<reconcile::Session>(reconcile::SessionParts{
            led, inst, main, shown, forward, window, [this]() -> web::WebView& { return web; }, tempPath, dir.path(),
            target.addDays(1), [this] { led.cn.close(); }, [this] { if (!led.cn.isOpen()) led.cn.open(file); }, {},
            [this] { updateIpus(led, inst); }, {}, {}, {}, {}});
    }
    // The bank button, and the first bank on the menu page: the opening proof.
    void start()
    {
        session->cmdBankCoordination_Click();
        web.sendEvent(QStringLiteral("0"));
    }
    void load(bool refresh)
    {
        LoadParts p{led, inst, main, shown, forward, window};
        ASSERT_EQ(openDB(p, refresh), LoadResult::Loaded);
        if (session)
            session->afterLoad(refresh);
    }
    QString marked() { return query(QStringLiteral("SELECT date FROM %1 WHERE zee='ZZZZZZZZZZ'").arg(led.linesTable)); }

    Instance inst;
    MainGrid main;
    Shown shown;
    RecordingWindow window;
    web::ScriptedWebView web;
    std::unique_ptr<reconcile::Session> session;
};

} // namespace pelkor::testing
