#include "ProcFsListing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class FakeProcFs
{
public:
    void addProcess(const QString &entry, const QByteArray &commandLine, const QByteArray &command)
    {
        QDir(dir_.path()).mkpath(entry);
        write(entry + "/cmdline", commandLine);
        write(entry + "/comm", command);
    }
    void addEmptyFolder(const QString &entry) { QDir(dir_.path()).mkpath(entry); }
    QString root() const { return dir_.path(); }

private:
    void write(const QString &relativePath, const QByteArray &content)
    {
        QFile file(dir_.filePath(relativePath));
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }
    QTemporaryDir dir_;
};

} // namespace

TEST(ProcFsListingTest, ListsImageNamesInProcessNumberOrderWithWmicLineEnds)
{
    FakeProcFs proc;
    proc.addProcess("10", QByteArray("/opt/adobe/Photoshop.exe\0--flag\0", 33), "Photoshop.exe\n");
    proc.addProcess("2", QByteArray("C:\\Tools\\Lightroom.exe\0", 23), "Lightroom.exe\n");
    proc.addProcess("1", QByteArray("init\0", 5), "systemd\n");
    EXPECT_EQ(procFsCaptionList(proc.root()), "Caption\r\r\ninit\r\r\nLightroom.exe\r\r\nPhotoshop.exe\r\r\n");
}

TEST(ProcFsListingTest, KeepsBlanksInsideImageNames)
{
    FakeProcFs proc;
    proc.addProcess("7", QByteArray("/home/u/Graymere 3.exe\0", 23), "Graymere 3.exe\n");
    EXPECT_EQ(procFsCaptionList(proc.root()), "Caption\r\r\nGraymere 3.exe\r\r\n");
}

TEST(ProcFsListingTest, AnEmptyCommandLineFallsBackToTheCommandName)
{
    FakeProcFs proc;
    proc.addProcess("2", "", "kthreadd\n");
    EXPECT_EQ(procFsCaptionList(proc.root()), "Caption\r\r\nkthreadd\r\r\n");
}

TEST(ProcFsListingTest, ACommandLineWithoutNulIsTakenWhole)
{
    FakeProcFs proc;
    proc.addProcess("3", "/usr/sbin/Lightroom helper", "x\n");
    EXPECT_EQ(procFsCaptionList(proc.root()), "Caption\r\r\nLightroom helper\r\r\n");
}

TEST(ProcFsListingTest, SkipsEntriesThatAreNotProcessesOrAreGone)
{
    FakeProcFs proc;
    proc.addProcess("self", QByteArray("/bin/self\0", 10), "self\n");
    proc.addProcess("sys", "", "");
    proc.addEmptyFolder("4");
    proc.addProcess("5", QByteArray("a.exe\0", 6), "a.exe\n");
    EXPECT_EQ(procFsCaptionList(proc.root()), "Caption\r\r\na.exe\r\r\n");
}

TEST(ProcFsListingTest, AMissingRootGivesTheHeaderAlone)
{
    EXPECT_EQ(procFsCaptionList("/nonexistent/proc"), "Caption\r\r\n");
}

TEST(ProcFsListingTest, TheRealProcListsThisProcess)
{
    const QByteArray ownName = QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8();
    const QByteArray list = procFsCaptionList("/proc");
    EXPECT_TRUE(list.startsWith("Caption\r\r\n"));
    EXPECT_TRUE(list.contains("\r\r\n" + ownName + "\r\r\n"));
}
