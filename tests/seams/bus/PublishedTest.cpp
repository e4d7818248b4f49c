// Boxes listed under a process: found by its id and the name, gone with the
// listing, and a dead process's listing swept away.
#include "seams/bus/Published.h"

#include <QDir>
#include <QProcess>
#include <gtest/gtest.h>

#include <unistd.h>

#include "BusTestSupport.h"

using namespace pelkor::bus;
using pelkor::bus::bustest::RuntimeFolder;

namespace {

// Writes a listing by hand, as a process that was killed left it.
void leaveListing(const RuntimeFolder& folder, qint64 pid, const QByteArray& content)
{
    QDir().mkpath(folder.boxes());
    QFile f(folder.boxes() + QStringLiteral("/p%1.txtMessage").arg(pid));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(content);
}

} // namespace

TEST(Published, ABoxIsFoundUnderItsProcessWhileItIsListed)
{
    RuntimeFolder folder;
    Mailbox box;
    ASSERT_TRUE(box.isListening());
    {
        Publication listed(QStringLiteral("txtMessage"), box.id());
        ASSERT_TRUE(listed.isListed()) << listed.error().toStdString();
        EXPECT_EQ(findPublished(::getpid(), QStringLiteral("txtMessage")), box.id());
        EXPECT_EQ(findPublished(::getpid(), QStringLiteral("frmMessages")), 0u);
        EXPECT_EQ(findPublished(::getpid() + 1, QStringLiteral("txtMessage")), 0u);
        // A found id is one to send to.
        EXPECT_EQ(send(findPublished(::getpid(), QStringLiteral("txtMessage")), QStringLiteral("close")),
                  SendResult::Delivered);
        EXPECT_EQ(box.text(), QStringLiteral("close"));
    }
    EXPECT_EQ(findPublished(::getpid(), QStringLiteral("txtMessage")), 0u);
    // Only the box's own files are left.
    EXPECT_EQ(QDir(folder.boxes()).entryList(QDir::Files | QDir::System).size(), 2);

    // Nothing is listed for a box that does not listen or under a name that
    // could leave the folder.
    EXPECT_FALSE(Publication(QStringLiteral("txtMessage"), 0).isListed());
    EXPECT_FALSE(Publication(QStringLiteral("../x"), box.id()).isListed());
    EXPECT_FALSE(Publication(QString(), box.id()).isListed());
}

TEST(Published, ADeadProcessesListingIsSweptAndAGarbledOneFindsNothing)
{
    RuntimeFolder folder;
    QProcess gone;
    gone.start(QStringLiteral("true"), {});
    ASSERT_TRUE(gone.waitForStarted(10000));
    const qint64 deadPid = gone.processId();
    ASSERT_TRUE(gone.waitForFinished(10000));
    leaveListing(folder, deadPid, "1234abcd\n");
    EXPECT_EQ(findPublished(deadPid, QStringLiteral("txtMessage")), 0x1234abcdu);

    leaveListing(folder, ::getppid(), "not an id");
    EXPECT_EQ(findPublished(::getppid(), QStringLiteral("txtMessage")), 0u);

    Mailbox box;
    Publication listed(QStringLiteral("txtMessage"), box.id());
    EXPECT_EQ(findPublished(deadPid, QStringLiteral("txtMessage")), 0u);
    // A live process's listing stays, garbled or not.
    EXPECT_TRUE(QFile::exists(folder.boxes() + QStringLiteral("/p%1.txtMessage").arg(::getppid())));
}
