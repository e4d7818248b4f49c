// How children are started: their arguments as the child joins them back,
// and the word that tells them to show themselves minimised.
#include "base/Instances.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "QtPrinters.h"
#include "seams/bus/BusTestSupport.h"

using namespace pelkor;

namespace {

// A stand-in for the program that writes down what it was given.
QString recorder(const QTemporaryDir& dir)
{
    const QString path = dir.filePath(QStringLiteral("child.sh"));
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write("#!/bin/sh\n"
            "out=\"$(dirname \"$0\")/seen\"\n"
            "echo \"show=$PELKOR_SHOW\" >> \"$out\"\n"
            "for a in \"$@\"; do echo \"arg=$a\" >> \"$out\"; done\n");
    f.close();
    f.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return path;
}

QStringList seen(const QTemporaryDir& dir)
{
    QFile f(dir.filePath(QStringLiteral("seen")));
    f.open(QIODevice::ReadOnly);
    return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

TEST(Children, StartMinimisedWithTheLineTheyJoinBack)
{
    bus::bustest::ensureApplication();
    QTemporaryDir dir;
    auto children = processChildren(recorder(dir));
    // A new-line child: four fields, then the file whole; any other verb
    // goes as one argument, which the child's join gives back unchanged.
    ASSERT_TRUE(children->start(QStringLiteral("new3 1a2b3c4d 00000000 00000000 /d/my shop.pkr")));
    ASSERT_TRUE(bus::bustest::spinUntil([&] { return !children->running(); }, 30000));
    ASSERT_TRUE(children->start(QStringLiteral("detail 0000beef 2 01/03/2025 0.0000 /d/my shop.pkr")));
    ASSERT_TRUE(bus::bustest::spinUntil([&] { return !children->running(); }, 30000));
    EXPECT_EQ(seen(dir), (QStringList{QStringLiteral("show=minimized"), QStringLiteral("arg=new3"),
                                      QStringLiteral("arg=1a2b3c4d"), QStringLiteral("arg=00000000"),
                                      QStringLiteral("arg=00000000"), QStringLiteral("arg=/d/my shop.pkr"),
                                      QStringLiteral("show=minimized"),
                                      QStringLiteral("arg=detail 0000beef 2 01/03/2025 0.0000 /d/my shop.pkr")}));
}

// The word is taken once: an instance passes on only what it says itself.
TEST(Children, TheWordToShowIsTakenOnce)
{
    qputenv(windowShowVariable, "minimized");
    EXPECT_EQ(takeWindowShow(), WindowShow::Minimized);
    EXPECT_FALSE(qEnvironmentVariableIsSet(windowShowVariable));
    EXPECT_EQ(takeWindowShow(), WindowShow::Normal);
    qputenv(windowShowVariable, "maximized");
    EXPECT_EQ(takeWindowShow(), WindowShow::Maximized);
    qputenv(windowShowVariable, "sideways");
    EXPECT_EQ(takeWindowShow(), WindowShow::Normal);
}
