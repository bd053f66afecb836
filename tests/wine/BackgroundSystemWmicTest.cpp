// Which wmic.exe the Windows program starts for --background: only the one in
// the system folder's wbem folder, by its full path. The program runs with
// administrator rights, so a wmic.exe found by its name, one planted beside
// the program, in the working folder or in a folder on the search path, would
// run with them; none of those is started, with or without the system's own.
#include "WineTestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QString systemWmic = QStringLiteral("C:\\windows\\system32\\wbem\\wmic.exe");
const QString programFolder = QStringLiteral("C:\\setup");
const QString workingFolder = QStringLiteral("C:\\machine");
const QString pathFolder = QStringLiteral("C:\\tools");
// The folder of the planted wmic.exe first, the system's wbem folder on it too.
const QString searchPath =
    pathFolder + QStringLiteral(";C:\\windows\\system32;C:\\windows;C:\\windows\\system32\\wbem");

// What the system's stand-in prints, and what a planted one prints.
const QByteArray systemList = "Caption\r\r\nexplorer.exe\r\r\nLightroom.exe\r\r\n";
const QByteArray plantedList = "Caption\r\r\nPhotoshop.exe\r\r\n";

class BackgroundSystemWmicTest : public testing::Test
{
protected:
    QJsonArray probe(const QString &path = searchPath) const
    {
        const ToolRun run = machine.run(QStringList{"--background"}, {{"PATH", path}});
        EXPECT_TRUE(run.exitedNormally);
        EXPECT_EQ(run.exitCode, 0);
        return decodeAnswer(run.standardOutput).value("background").toArray();
    }

    bool ran(const QString &folder) const { return !machine.fakeWmicRecord(folder, "arguments").isEmpty(); }

    WineTestMachine machine;
};

} // namespace

TEST_F(BackgroundSystemWmicTest, TheSystemsWmicIsStartedByItsFullPath)
{
    machine.installFakeWmic(systemList);
    EXPECT_EQ(probe(), QJsonArray{"Lightroom.exe"});
    EXPECT_EQ(machine.fakeWmicRecord("C:\\windows\\system32\\wbem", "program"), systemWmic);
    EXPECT_EQ(machine.fakeWmicArguments(), "/OUTPUT:STDOUT\nPROCESS\nget\nCaption\n");
}

TEST_F(BackgroundSystemWmicTest, TheSystemsWmicIsStartedWhenTheSearchPathLacksItsFolder)
{
    machine.installFakeWmic(systemList);
    EXPECT_EQ(probe(QStringLiteral("C:\\windows\\system32;C:\\windows")), QJsonArray{"Lightroom.exe"});
}

TEST_F(BackgroundSystemWmicTest, AWmicBesideTheProgramIsNotStarted)
{
    machine.installFakeWmic(systemList);
    machine.installFakeWmicIn(programFolder, plantedList);
    EXPECT_EQ(probe(), QJsonArray{"Lightroom.exe"});
    EXPECT_FALSE(ran(programFolder));
}

TEST_F(BackgroundSystemWmicTest, AWmicInTheWorkingFolderIsNotStarted)
{
    machine.installFakeWmic(systemList);
    machine.installFakeWmicIn(workingFolder, plantedList);
    EXPECT_EQ(probe(), QJsonArray{"Lightroom.exe"});
    EXPECT_FALSE(ran(workingFolder));
}

TEST_F(BackgroundSystemWmicTest, AWmicOnTheSearchPathIsNotStarted)
{
    machine.installFakeWmic(systemList);
    machine.installFakeWmicIn(pathFolder, plantedList);
    EXPECT_EQ(probe(), QJsonArray{"Lightroom.exe"});
    EXPECT_FALSE(ran(pathFolder));
}

// Without the system's wmic.exe the Toolhelp listing answers: it finds the
// running Tintara and nothing that a planted wmic.exe would print.
TEST_F(BackgroundSystemWmicTest, WithoutTheSystemsWmicNoneElsewhereIsStarted)
{
    for (const QString &folder : {programFolder, workingFolder, pathFolder})
        machine.installFakeWmicIn(folder, plantedList);
    const auto tintara = machine.startProgram("Tintara 5.exe");
    ASSERT_TRUE(tintara->isRunning());
    EXPECT_EQ(probe(), QJsonArray{"Tintara5.exe"});
    for (const QString &folder : {programFolder, workingFolder, pathFolder})
        EXPECT_FALSE(ran(folder)) << folder.toStdString();
}
