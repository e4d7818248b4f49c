// The command-line programs as a person uses them: prjPelkor --create makes a
// ledger that pelkor-sql answers on; failures exit non-zero with a message.
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "TestSupport.h"

namespace {

struct ToolRun {
    int code = -1;
    QString out, err;
};

ToolRun run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral(PELKOR_BINARY_DIR "/") + program, args);
    ToolRun r;
    if (!p.waitForFinished(30000)) {
        p.kill();
        return r;
    }
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

} // namespace

TEST(CommandLineTools, CreateThenQueryAndWrite)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("my shop.pkr"));
    ToolRun c = run(QStringLiteral("prjPelkor"), {QStringLiteral("--create"), file});
    ASSERT_EQ(c.code, 0) << c.err.toStdString();

    ToolRun q = run(QStringLiteral("pelkor-sql"),
                {file, QStringLiteral("UPDATE pelkor set [in] = '1,234.50' WHERE id = 1"),
                 QStringLiteral("SELECT id, kind, detail, [in], out, zee FROM pelkor")});
    ASSERT_EQ(q.code, 0) << q.err.toStdString();
    const QStringList lines = q.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0], QStringLiteral("id\tkind\tdetail\tin\tout\tzee"));
    EXPECT_EQ(lines[1], QStringLiteral("1\t+0\tיתרה התחלתית\t1234.5\t0\tZZZZZZZZZZ"));

    // A second --create on the same path refuses and keeps the file.
    ToolRun again = run(QStringLiteral("prjPelkor"), {QStringLiteral("--create"), file});
    EXPECT_NE(again.code, 0);
    EXPECT_FALSE(again.err.isEmpty());
}

TEST(CommandLineTools, FailuresExitNonZeroWithTheEnginesMessage)
{
    PELKOR_REQUIRE_PROGRAM("prjPelkor");
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("a.pkr"));
    ASSERT_EQ(run(QStringLiteral("prjPelkor"), {QStringLiteral("--create"), file}).code, 0);

    ToolRun bad = run(QStringLiteral("pelkor-sql"), {file, QStringLiteral("SELECT nosuchcolumn FROM pelkor")});
    EXPECT_EQ(bad.code, 1);
    EXPECT_TRUE(bad.err.contains(QStringLiteral("nosuchcolumn"))) << bad.err.toStdString();

    ToolRun notNumber = run(QStringLiteral("pelkor-sql"), {file, QStringLiteral("UPDATE pelkor set out = 'abc' WHERE id = 1")});
    EXPECT_EQ(notNumber.code, 1);

    ToolRun missing = run(QStringLiteral("pelkor-sql"), {dir.filePath(QStringLiteral("none.pkr")), QStringLiteral("SELECT 1")});
    EXPECT_EQ(missing.code, 3);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("none.pkr")));

    ToolRun usage = run(QStringLiteral("pelkor-sql"), {file});
    EXPECT_EQ(usage.code, 2);
}
