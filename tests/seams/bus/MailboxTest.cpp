// Boxes: their folder and files, their ids, and their events.
#include "seams/bus/Mailbox.h"

#include <QDir>
#include <QSet>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "BusTestSupport.h"

using namespace pelkor::bus;
using pelkor::bus::bustest::RuntimeFolder;

namespace {
mode_t modeOf(const QString& path)
{
    struct stat st {};
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_mode : 0;
}
} // namespace

TEST(MailboxFolder, PrivateFolderOwnerOnlySocketAndNothingLeftBehind)
{
    RuntimeFolder folder;
    ASSERT_FALSE(QFile::exists(folder.boxes()));
    QString socket;
    {
        Mailbox box;
        ASSERT_TRUE(box.isListening()) << box.error().toStdString();
        socket = box.socketPath();
        EXPECT_EQ(socket, folder.boxes() + QLatin1Char('/') + box.idText());
        EXPECT_EQ(modeOf(folder.boxes()), mode_t(S_IFDIR | 0700));
        EXPECT_TRUE(S_ISSOCK(modeOf(socket)));
        EXPECT_EQ(modeOf(socket) & 0777, mode_t(0600));
    }
    EXPECT_FALSE(QFile::exists(socket));
    EXPECT_EQ(QDir(folder.boxes()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
              QStringList());
}

TEST(MailboxFolder, OpenFolderIsClosedAndStrangeFoldersAreRefused)
{
    RuntimeFolder folder;
    ASSERT_TRUE(QDir().mkpath(folder.boxes()));
    ASSERT_EQ(::chmod(QFile::encodeName(folder.boxes()).constData(), 0777), 0);
    {
        Mailbox box;
        EXPECT_TRUE(box.isListening());
        EXPECT_EQ(modeOf(folder.boxes()) & 0777, mode_t(0700));
    }

    // A link in the folder's place might lead anywhere: refused, and the box
    // still works inside the process.
    ASSERT_TRUE(QDir(folder.boxes()).removeRecursively());
    ASSERT_TRUE(QDir().mkpath(folder.root() + QStringLiteral("/elsewhere")));
    ASSERT_TRUE(QFile::link(folder.root() + QStringLiteral("/elsewhere"), folder.boxes()));
    {
        Mailbox box;
        EXPECT_FALSE(box.isListening());
        EXPECT_EQ(box.id(), 0u);
        EXPECT_TRUE(box.error().contains(QStringLiteral("not a folder"))) << box.error().toStdString();
        int changed = 0;
        QObject::connect(&box, &Mailbox::changed, [&] { ++changed; });
        box.setText(QStringLiteral("refresh"));
        EXPECT_EQ(changed, 1);
    }

    // A folder of another user; only root can make one to try.
    if (::geteuid() == 0) {
        ASSERT_TRUE(QFile::remove(folder.boxes()));
        ASSERT_TRUE(QDir().mkpath(folder.boxes()));
        ASSERT_EQ(::chmod(QFile::encodeName(folder.boxes()).constData(), 0700), 0);
        ASSERT_EQ(::chown(QFile::encodeName(folder.boxes()).constData(), 65534, 65534), 0);
        Mailbox box;
        EXPECT_FALSE(box.isListening());
        EXPECT_TRUE(box.error().contains(QStringLiteral("another user"))) << box.error().toStdString();
    }
}

TEST(Mailbox, IdsAreDistinctNonZeroAndNeverShared)
{
    RuntimeFolder folder;
    std::vector<std::unique_ptr<Mailbox>> boxes;
    QSet<quint32> ids;
    for (int i = 0; i < 40; ++i) {
        boxes.push_back(std::make_unique<Mailbox>());
        ASSERT_NE(boxes.back()->id(), 0u);
        EXPECT_EQ(boxes.back()->idText(), idToText(boxes.back()->id()));
        ids.insert(boxes.back()->id());
    }
    EXPECT_EQ(ids.size(), 40);

    // A live box's id is not taken again, even when asked for by name.
    const quint32 taken = boxes.front()->id();
    Mailbox second(taken);
    EXPECT_TRUE(second.isListening());
    EXPECT_NE(second.id(), taken);

    // Nor one answered by a live socket that keeps no lock.
    const quint32 foreign = 0x0badf00d;
    const int listener = bustest::rawListener(foreign, true);
    ASSERT_GE(listener, 0);
    Mailbox third(foreign);
    EXPECT_NE(third.id(), foreign);
    ::close(listener);
}

TEST(Mailbox, SocketOfADeadBoxIsTakenOver)
{
    RuntimeFolder folder;
    const quint32 id = 0x00c0ffee;
    ASSERT_TRUE(QDir().mkpath(folder.boxes()));
    const int dead = bustest::rawListener(id, true);
    ASSERT_GE(dead, 0);
    ::close(dead); // the file stays, nobody listens: as a killed process leaves it
    ASSERT_TRUE(QFile::exists(socketPathFor(id)));

    Mailbox box(id);
    ASSERT_EQ(box.id(), id) << box.error().toStdString();
    box.setText(QStringLiteral("pelkor messages"));
    const int client = bustest::rawConnect(id);
    EXPECT_GE(client, 0);
    if (client >= 0)
        ::close(client);
}

TEST(Mailbox, LocalTextRaisesEventsOnlyWhenItChanges)
{
    RuntimeFolder folder;
    Mailbox box;
    QStringList handled;
    box.setHandler([&](const QString& t) { handled << t; });
    int changed = 0;
    QObject::connect(&box, &Mailbox::changed, [&] { ++changed; });

    box.setText(QStringLiteral("refresh"));
    box.setText(QStringLiteral("refresh"));
    box.setText(QStringLiteral("closed"));
    box.setText(QString());
    EXPECT_EQ(handled, (QStringList{QStringLiteral("refresh"), QStringLiteral("closed"), QString()}));
    EXPECT_EQ(changed, 3);
    EXPECT_EQ(box.text(), QString());

    // A handler that sets its own box again runs again, as on the desktop.
    handled.clear();
    box.setHandler([&](const QString& t) {
        handled << t;
        if (t == QStringLiteral("gotoipus"))
            box.setText(QStringLiteral("setipus"));
    });
    box.setText(QStringLiteral("gotoipus"));
    EXPECT_EQ(handled, (QStringList{QStringLiteral("gotoipus"), QStringLiteral("setipus")}));
    EXPECT_EQ(box.text(), QStringLiteral("setipus"));
}
