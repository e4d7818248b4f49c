// What every kind of test needs: an application object for the event loop,
// and a file's rows read back as text.
#pragma once

#include "file/Schema.h"
#include "seams/store/Connection.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include <utility>

// A process test runs a program of the build; where that program was not
// built (the windows left out of the build), the test is skipped.
#define PELKOR_REQUIRE_PROGRAM(name)                                              \
    if (!QFileInfo::exists(QStringLiteral(PELKOR_BINARY_DIR "/" name)))            \
    GTEST_SKIP() << name " is not built"

namespace pelkor::testing {

// The test program run again as a process of its own to carry out one test
// (the worker of a kill test, which the test kills at any instant): env is
// added to the environment, windows work offscreen, and the output, both
// channels, is gathered in out.
struct TestWorker {
    QProcess p;
    QString out;
    bool start(const QString& test, std::initializer_list<std::pair<QString, QString>> env = {})
    {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, value] : env)
            e.insert(name, value);
        e.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        p.setProcessEnvironment(e);
        p.setProcessChannelMode(QProcess::MergedChannels);
        QStringList args{QStringLiteral("--gtest_filter=") + test};
        if (test.contains(QLatin1String("DISABLED_")))
            args << QStringLiteral("--gtest_also_run_disabled_tests");
        p.start(QCoreApplication::applicationFilePath(), args);
        return p.waitForStarted(10000);
    }
    // Reads until word has come or the worker has ended; whether it came.
    bool waitFor(const QString& word)
    {
        while (!out.contains(word) && p.state() == QProcess::Running) {
            p.waitForReadyRead(100);
            out += QString::fromUtf8(p.readAll());
        }
        out += QString::fromUtf8(p.readAll());
        return out.contains(word);
    }
};

inline void ensureApplication()
{
    static int argc = 1;
    static char name[] = "pelkor_tests";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

// Rows of a query on the file, "a|b" each (Null as "NULL"), joined by ";".
inline QString queryRows(const QString& file, const QString& sql)
{
    store::Connection cn;
    cn.open(file);
    auto rs = cn.execute(sql);
    QStringList rows;
    for (long r = 0; r < rs.recordCount(); ++r) {
        QStringList f;
        for (int c = 0; c < rs.fieldCount(); ++c)
            f << (rs.at(r, c).isNull() ? QStringLiteral("NULL") : rs.at(r, c).toString());
        rows << f.join(QLatin1Char('|'));
    }
    return rows.join(QLatin1Char(';'));
}

// The settings row of a ledger a test makes.
struct LedgerSettings {
    int credit = 0;
    int nDays = 90;
    const char* invoiceCategs = " ";   // the one row of invoiceCategs
};

// A ledger with the standard kinds and types, a Defaults row and the given
// lines, written with plain SQLite, so damage can be written too. old: a
// file from before the upgrades (no isAuto, NDays, bank columns or
// invoiceCategs).
inline void makeLedger(const QString& file, const QString& linesSql, bool old = false, LedgerSettings s = {})
{
    store::Connection cn;
    cn.open(file, store::Connection::OpenMode::ReadWriteCreate);
    cn.executeRaw(old ? schema::oldDataFileScript() : schema::dataFileScript());
    schema::fillStandardCatalogue(cn);
    cn.executeRaw(old ? QStringLiteral("INSERT INTO Defaults VALUES (NULL, %1);").arg(s.credit)
                      : QStringLiteral("INSERT INTO Defaults VALUES (NULL, %1, %2, 0, 0, '(none)');"
                                       "INSERT INTO invoiceCategs (id, detail) VALUES (1, '%3');")
                            .arg(s.credit)
                            .arg(s.nDays)
                            .arg(QString::fromUtf8(s.invoiceCategs)));
    cn.executeRaw(linesSql);
}

} // namespace pelkor::testing
