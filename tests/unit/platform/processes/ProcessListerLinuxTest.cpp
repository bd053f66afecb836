#include "Machine.h"
#include "ProcessLister.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

// Points this process's search path at the machine for the time of a test.
class SearchPath
{
public:
    explicit SearchPath(const QString &path)
        : saved_(qgetenv("PATH"))
    {
        qputenv("PATH", path.toUtf8());
    }
    ~SearchPath() { qputenv("PATH", saved_); }

private:
    QByteArray saved_;
};

} // namespace

TEST(ProcessListerLinuxTest, RunsTheWmicCommandWhenItIsOnThePath)
{
    Machine machine;
    machine.installFakeWmic("Caption\r\r\nPhotoshop.exe\r\r\n", "Lightroom.exe\r\r\n");
    const SearchPath path(machine.binDir() + ":/usr/bin:/bin");
    const QByteArray list = processCaptionList();
    EXPECT_EQ(list, "Caption\r\r\nPhotoshop.exe\r\r\nLightroom.exe\r\r\n");
    EXPECT_EQ(machine.fakeWmicArguments(), "/OUTPUT:STDOUT\nPROCESS\nget\nCaption\n");
}

TEST(ProcessListerLinuxTest, ListsProcFsWithoutWmic)
{
    Machine machine;
    const SearchPath path(machine.binDir() + ":/usr/bin:/bin");
    const QByteArray ownName = QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8();
    const QByteArray list = processCaptionList();
    EXPECT_TRUE(list.startsWith("Caption\r\r\n"));
    EXPECT_TRUE(list.contains("\r\r\n" + ownName + "\r\r\n"));
}
