// A ledger and a bank feed in a temporary folder, the open ledger on the
// first and scripted dialogs with a transcript, for the reconciliation's
// core tests.
#pragma once

#include "base/Trace.h"
#include "file/OpenLedger.h"
#include "file/Schema.h"
#include "reconcile/BankFeed.h"
#include "seams/store/Connection.h"
#include "seams/ui/DialogRules.h"
#include "seams/ui/ScriptedUi.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

#include "TestSupport.h"

namespace pelkor::testing {

class FeedTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ensureApplication();
        ASSERT_TRUE(dir.isValid());
        file = dir.filePath(QStringLiteral("shop.pkr"));
        tempPath = dir.path() + QLatin1Char('/');
    }

    // The ledger, bound as given (iBank as stored: 0 none, 1..12, 99 demo).
    void makeLedgerBound(int storedBank, const QString& account, const QString& linesSql = {})
    {
        led.cn.close();
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
        makeLedger(file, linesSql);
        store::Connection cn;
        cn.open(file);
        cn.executeRaw(QStringLiteral("UPDATE Defaults SET iBank=%1, AccountNum='%2';").arg(storedBank).arg(account));
        led.cn.open(file);
        led.iBank = storedBank - 1;
        led.accountNum = account;
        led.isSimulate = storedBank == 99;
    }
    // The feed of bank iBank (in memory, from 0) with the given rows
    // (plain SQLite inserts).
    QString makeFeed(int iBank, const QString& rowsSql, bool simulate = false)
    {
        const QString path = reconcile::feedFilePath(iBank, simulate, tempPath, dir.path());
        QFile::remove(path);
        store::Connection cn;
        cn.open(path, store::Connection::OpenMode::ReadWriteCreate);
        cn.executeRaw(schema::feedScript({reconcile::feedTable(iBank, simulate)}));
        cn.executeRaw(rowsSql);
        return path;
    }
    ui::Ui& scripted(const QString& rules)
    {
        ui_ = std::make_unique<ui::ScriptedUi>(ui::DialogRules::parse(rules), transcript());
        return *ui_;
    }
    QString transcript() const { return dir.filePath(QStringLiteral("transcript.tsv")); }
    // "kind|title|text|answer" of each prompt.
    QStringList prompts() const
    {
        QFile f(transcript());
        QStringList out;
        if (!f.open(QIODevice::ReadOnly))
            return out;
        for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList p = line.split(QLatin1Char('\t'));
            if (p.value(1) != QLatin1String("start") && p.value(1) != QLatin1String("exit"))
                out << p.mid(1).join(QLatin1Char('|'));
        }
        return out;
    }
    QString query(const QString& sql) { return queryRows(file, sql); }

    // The Ui the parts under test hold: it asks whatever scripted Ui the
    // test last set up (scripted() replaces it with new answers).
    struct ForwardUi : ui::Ui {
        explicit ForwardUi(FeedTest* t) : t_(t) {}
        FeedTest* t_;
        ui::Ui& to() { return *t_->ui_; }
        ui::Answer msgBox(const QString& a, const QString& b, ui::Buttons c, ui::Icon d) override { return to().msgBox(a, b, c, d); }
        std::optional<QString> inputBox(const QString& a, const QString& b, const QString& c) override { return to().inputBox(a, b, c); }
        QStringList openFileDialog(const ui::FileDialogOptions& s) override { return to().openFileDialog(s); }
        QString saveFileDialog(const ui::FileDialogOptions& s) override { return to().saveFileDialog(s); }
        bool runDialog(ui::Dialog& d) override { return to().runDialog(d); }
        void windowReady(const QString& a, const QString& b, std::function<void(const QString&)> c) override
        {
            to().windowReady(a, b, std::move(c));
        }
    };

    QTemporaryDir dir;
    QString file, tempPath;
    Trace trace{QString(), QString()};
    OpenLedger led{trace};
    std::unique_ptr<ui::ScriptedUi> ui_;
    ForwardUi forward{this};
};

} // namespace pelkor::testing
