#include "DeployerRun.h"
#include "HostMachine.h"
#include "LinuxTestMachine.h"
#include "MachineLog.h"
#include "MachineSnapshot.h"
#include "RegistryHiveFormat.h"
#include "SuiteRoot.h"
#include "TestMachine.h"
#include "UnprivilegedRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

const QJsonArray someProducts = {"Grainwick 3", "Tintara 5", "Rectilo", "Graymere 2", "Lumbrio 3"};
const QStringList wholeMachine = {"home", "etc", "usr", "ProgramData", "suite", "hosts"};
const char *const withoutRights = "runs the tool as a user without rights on some folders, which only the Linux "
                                  "build's machine can";
const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";
const QByteArray foreignMachineKeys = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                                      "\"PluginPath\"=\"/opt/ps/Plug-ins\"\n\n"
                                      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n"
                                      "\"InstallPath\"=\"/earlier/bin\"\n\n";

// Folders and files of a tree without write rights for anyone but root, or back with them.
void setTreeWritable(const QString &folder, bool writable)
{
    const QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const QFile::Permissions search = QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    const QFile::Permissions write = writable ? QFile::WriteOwner : QFile::Permissions();
    QDirIterator walk(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QFileInfo entry(walk.next());
        if (!entry.isSymLink())
            QFile::setPermissions(entry.filePath(), read | write | (entry.isDir() ? search : QFile::Permissions()));
    }
    QFile::setPermissions(folder, read | search | write);
}

// The tests that run the tool without rights, or with the XDG variables, work
// on the Linux build's own machine (`machine` below); the others on either.
class FaultsE2ETest : public testing::Test
{
protected:
    FaultsE2ETest()
    {
        suiteRoot::create(testMachine->path(Place::Scratch, "suite"));
        QDir().mkpath(testMachine->path(Place::Scratch, "hosts/Photoshop/Plug-ins"));
    }

    ~FaultsE2ETest() override
    {
        for (const QString &folder : readOnly_)
            setTreeWritable(folder, true);
    }

    QString root() const { return testMachine->toolPath(Place::Scratch, "suite"); }
    QString photoshop() const { return testMachine->toolPath(Place::Scratch, "hosts/Photoshop/Plug-ins"); }
    QString lightroom() const { return machine.path("lightroom"); }
    QString configHome() const { return machine.path("home/.local/share/Tavrin"); }
    QString collectionFile() const { return machine.path("ProgramData/Tavrin/Orv Collection/OrvCollection.cfg"); }
    QStringList startMenu() const { return testMachine->entries(Place::StartMenu, "Tavrin Orv Collection"); }

    static QJsonObject host(const QString &appName, const QString &pluginPath, int type)
    {
        return QJsonObject{{"appName", appName}, {"pluginPath", pluginPath}, {"type", type}};
    }

    QJsonObject request(const QJsonArray &hosts) const
    {
        return QJsonObject{{"rootDir", root()}, {"hosts", hosts},     {"plugins", someProducts},
                           {"language", 1},     {"version", "4.2.0"}, {"mixpanelEnabled", true}};
    }

    void makeReadOnly(const QString &folder)
    {
        readOnly_.append(folder);
        setTreeWritable(folder, false);
    }

    // One top-level folder of the machine with all it holds.
    QString snapshotOf(const QString &topFolder) const
    {
        QStringList others = QDir(machine.root()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        others.removeAll(topFolder);
        return machineSnapshot(machine, others);
    }

    static QStringList entries(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }

    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    static void completedQuietly(const DeployerRun &run)
    {
        EXPECT_TRUE(run.exitedNormally);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    // What the installation does outside the suite root and the hosts.
    void expectTheUsersAndMachinesPartsDone() const
    {
        EXPECT_TRUE(contentOf(configHome() + "/Rectilo/Rectilo.cfg").contains("<key name=\"Language\""));
        EXPECT_TRUE(contentOf(configHome() + "/Orv Collection/OrvCollection.cfg").contains("value=\"en-GB\""));
        EXPECT_TRUE(contentOf(collectionFile()).contains("<key name=\"AllowSending\" type=\"bool\" value=\"1\"/>"));
        EXPECT_FALSE(startMenu().isEmpty());
        EXPECT_EQ(testMachine->entries(Place::CommonPictures, "Rectilo Samples"),
                  (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    }

    void expectTheApplicationDataMoved() const
    {
        EXPECT_EQ(contentOf(machine.path("ProgramData/Tavrin/Licenses/Orv.lic")), suiteRoot::contentOf("Orv.lic"));
        EXPECT_FALSE(QFileInfo::exists(root() + "/appData"));
    }

    // The link to Graymere's filter in a host folder, `relative` below Scratch.
    QString linkedPlugin(const QString &relative) const
    {
        return testMachine->comparable(testMachine->linkTarget(
            testMachine->path(Place::Scratch, relative + "/Tavrin/Graymere 2/Graymere 2.8bf.lnk")));
    }
    QString graymere() const { return testMachine->comparable(root() + "/Graymere 2/Graymere 2.8bf"); }

    QByteArray log() const { return machineLog(machine); }

    const std::unique_ptr<TestMachine> testMachine = newTestMachine();
    // The Linux build's machine, for the tests that only it can run; under Wine a bystander.
    const Machine &machine =
        testMachine->isWine() ? spareMachine_ : dynamic_cast<LinuxTestMachine &>(*testMachine).machine();

private:
    Machine spareMachine_;
    QStringList readOnly_;
};

// The answer stands behind whatever the console logger printed before it.
QJsonObject answerBehindLogLines(const QByteArray &standardOutput)
{
    return decodeAnswer(standardOutput.mid(standardOutput.lastIndexOf('\n') + 1));
}

} // namespace

TEST_F(FaultsE2ETest, AReadOnlySuiteRootIsInstalledFromAndLeftAsItWas)
{
    SKIP_UNDER_WINE(withoutRights);
    makeReadOnly(root());
    const QString before = snapshotOf("suite");
    const QStringList owned = {"home", "etc", "usr", "ProgramData", "hosts"};
    completedQuietly(runDeployerWithoutRights(
        machine, owned, {"--install", encodeRequest(request({host("Photoshop", photoshop(), 0)}))}));
    EXPECT_EQ(snapshotOf("suite"), before);
    EXPECT_TRUE(log().contains("] Failed to create text file " + root().toUtf8() + "/Rectilo/Rectilo.cfg\n"));
    EXPECT_TRUE(log().contains("] Failed to completely delete folder " + root().toUtf8() + "/pictures\n"));
    EXPECT_TRUE(log().contains("] Failed to completely delete folder " + root().toUtf8() + "/appData\n"));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    expectTheUsersAndMachinesPartsDone();
}

TEST_F(FaultsE2ETest, ReadOnlyHostFoldersAreLoggedAndTheRestIsDone)
{
    SKIP_UNDER_WINE(withoutRights);
    const QString locked = machine.path("locked/Plug-ins");
    machine.writeFile("locked/Plug-ins/Tavrin/Grainwick 3/earlier.8bf.lnk", "from an earlier installation");
    machine.writeFile("locked/Plug-ins/Other Maker/filter.8bf", "someone else's");
    machine.writeFile("lightroom/Modules/Someone.lrplugin/Info.lua", "someone else's");
    machine.writeFile("lightroom/Export Presets/User Presets/Mine.lrtemplate", "the user's own");
    makeReadOnly(machine.path("locked"));
    makeReadOnly(lightroom());
    const QString lockedBefore = snapshotOf("locked");
    const QString lightroomBefore = snapshotOf("lightroom");
    const QJsonArray hosts = {host("Photoshop Locked", locked, 0), host("Photoshop", photoshop(), 0),
                              host("Lightroom", lightroom(), 2)};
    completedQuietly(runDeployerWithoutRights(machine, wholeMachine, {"--install", encodeRequest(request(hosts))}));
    EXPECT_EQ(snapshotOf("locked"), lockedBefore);
    EXPECT_EQ(snapshotOf("lightroom"), lightroomBefore);
    EXPECT_TRUE(log().contains("] Failed to create directory " + locked.toUtf8() + "/Tavrin/Tintara 5\n"));
    EXPECT_TRUE(
        log().contains("] Failed to create directory " + lightroom().toUtf8() + "/Modules/PluginParam.lrplugin\n"));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    expectTheUsersAndMachinesPartsDone();
    expectTheApplicationDataMoved();
}

TEST_F(FaultsE2ETest, WithoutRightsOnTheMachineHiveOnlyTheUsersValuesAreWritten)
{
    SKIP_UNDER_WINE(withoutRights);
    hostMachine::writeMachineHive(machine, foreignMachineKeys);
    const QByteArray machineHiveBefore = contentOf(machine.path(hostMachine::machineHive));
    const QString hiveFolder = QFileInfo(machine.path(hostMachine::machineHive)).path();
    makeReadOnly(hiveFolder);
    const QJsonObject config{{"rootDir", root()},
                             {"plugins", someProducts},
                             {"language", 7},
                             {"version", "4.2.0"},
                             {"hosts", QJsonArray{host("Photoshop", photoshop(), 0)}}};
    completedQuietly(runDeployerWithoutRights(machine, {"home"}, {"--config", encodeRequest(config)}));
    EXPECT_EQ(contentOf(machine.path(hostMachine::machineHive)), machineHiveBefore);
    EXPECT_EQ(entries(hiveFolder), QStringList{"HKEY_LOCAL_MACHINE.reg"});
    EXPECT_EQ(registryHive::parse(contentOf(machine.path(userHive)), "HKEY_CURRENT_USER"),
              (QSettings::SettingsMap{{"SOFTWARE/Tavrin/Orv Collection/currentLanguage", 7}}));
    EXPECT_TRUE(log().contains("] orv4Path written to local settings GrainwickPath\n"));
    EXPECT_FALSE(log().contains("] [warning] "));
    EXPECT_FALSE(log().contains("] [error] "));
}

TEST_F(FaultsE2ETest, ProgramDataNamingAMissingFolderLosesOnlyTheMachineFile)
{
    const QMap<QString, QString> environment{{"ProgramData", testMachine->toolPath(Place::Scratch, "Missing")}};
    const QJsonObject installation = request({host("Photoshop", photoshop(), 0)});
    completedQuietly(testMachine->run({"--install", encodeRequest(installation)}, environment));
    EXPECT_TRUE(testMachine->logContains("] Failed to find program data folder!\n"));
    EXPECT_FALSE(testMachine->exists(Place::Scratch, "Missing/Tavrin/Orv Collection"));
    EXPECT_EQ(testMachine->readFile(Place::Scratch, "Missing/Tavrin/Licenses/Orv.lic"),
              suiteRoot::contentOf("Orv.lic"));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    EXPECT_FALSE(startMenu().isEmpty());
    completedQuietly(testMachine->run({"--uninstall", encodeRequest({})}, environment));
    EXPECT_FALSE(testMachine->exists(Place::StartMenu, "Tavrin Orv Collection"));
}

// Without the variable the machine's data lies in /var/lib, which is not the test's to write.
TEST_F(FaultsE2ETest, WithoutProgramDataTheMachinesDataFailsAndTheRestIsDone)
{
    SKIP_UNDER_WINE("the Linux build's fallback for a missing ProgramData variable is /var/lib");
    if (QFileInfo::exists("/var/lib/Tavrin") || (!runsAsAnotherUser() && ::access("/var/lib", W_OK) == 0))
        GTEST_SKIP() << "this user may write /var/lib, or /var/lib/Tavrin exists";
    QProcessEnvironment environment = machine.environment();
    environment.remove("ProgramData");
    const QJsonObject installation = request({host("Photoshop", photoshop(), 0)});
    completedQuietly(
        runDeployerWithoutRights(machine, environment, wholeMachine, {"--install", encodeRequest(installation)}));
    EXPECT_TRUE(log().contains("] Failed to create directory /var/lib/Tavrin/Orv Collection\n"));
    EXPECT_TRUE(log().contains("] Failed to create text file /var/lib/Tavrin/Orv Collection/OrvCollection.cfg\n"));
    EXPECT_TRUE(log().contains("] failed to move files "));
    EXPECT_FALSE(QFileInfo::exists("/var/lib/Tavrin"));
    EXPECT_TRUE(contentOf(configHome() + "/Orv Collection/OrvCollection.cfg").contains("value=\"en-GB\""));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    EXPECT_FALSE(startMenu().isEmpty());
    completedQuietly(runDeployerWithoutRights(machine, environment, wholeMachine, {"--uninstall", encodeRequest({})}));
    EXPECT_FALSE(testMachine->exists(Place::StartMenu, "Tavrin Orv Collection"));
}

TEST_F(FaultsE2ETest, WithEveryLogRootReadOnlyTheReportIsStillAnswered)
{
    SKIP_UNDER_WINE(withoutRights);
    for (const char *logRoot : {"home/.config", "home/.local/share", "ProgramData"})
        makeReadOnly(machine.path(logRoot));
    const DeployerRun run = runDeployerWithoutRights(machine, {}, {});
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.standardOutput.contains("] Cannot create any folder for logger 'app'\n"));
    EXPECT_TRUE(answerBehindLogLines(run.standardOutput).contains("currentLocale"));
    EXPECT_FALSE(QFileInfo::exists(machine.path("home/.config/Tavrin")));
    EXPECT_FALSE(QFileInfo::exists(machine.path("home/.local/share/Tavrin")));
    EXPECT_FALSE(QFileInfo::exists(machine.path("ProgramData/Tavrin")));
}

TEST_F(FaultsE2ETest, WithEveryLogRootAFileTheRunsStillComplete)
{
    SKIP_UNDER_WINE("the XDG variables that name the log roots are the Linux build's");
    QProcessEnvironment environment = machine.environment();
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "ProgramData"}) {
        machine.writeFile(QString(variable) + ".file", "a file where a folder should be");
        environment.insert(variable, machine.path(QString(variable) + ".file"));
    }
    const DeployerRun report = runDeployer(environment, machine.root(), {});
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_TRUE(report.standardOutput.contains("] Cannot create any folder for logger 'app'\n"));
    EXPECT_TRUE(answerBehindLogLines(report.standardOutput).contains("currentLocale"));
    const QJsonObject installation = request({host("Photoshop", photoshop(), 0)});
    const DeployerRun run = runDeployer(environment, machine.root(), {"--install", encodeRequest(installation)});
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.standardOutput.endsWith('\n'));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    EXPECT_FALSE(startMenu().isEmpty());
}

// The first root can't even be looked into: the folder check throws, and the
// front end has no handler, so the run ends before any job, with no answer.
// The wizard sees no answer and goes on; nothing on the machine was changed.
TEST_F(FaultsE2ETest, ALogRootThatCannotBeSearchedEndsTheRunBeforeAnyJob)
{
    SKIP_UNDER_WINE(withoutRights);
    QFile::setPermissions(machine.path("home/.config"), QFile::Permissions());
    const DeployerRun run = runDeployerWithoutRights(machine, {}, {});
    QFile::setPermissions(machine.path("home/.config"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_FALSE(run.exitedNormally && run.exitCode == 0);
    EXPECT_FALSE(run.standardOutput.contains("currentLocale"));
}

// The same on either machine: where each log root should hold the maker's
// folder, a file of that name stands.
TEST_F(FaultsE2ETest, WithTheMakersFolderAFileInEveryLogRootTheRunsStillComplete)
{
    for (const Place root : {Place::RoamingAppData, Place::LocalAppData, Place::ProgramData})
        testMachine->writeFile(root, "Tavrin", "a file where a folder should be");
    const ToolRun report = testMachine->run({});
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_TRUE(
        testMachine->comparable(report.standardOutput).contains("] Cannot create any folder for logger 'app'\n"));
    EXPECT_TRUE(answerBehindLogLines(testMachine->comparable(report.standardOutput)).contains("currentLocale"));
    const ToolRun run = testMachine->run("--install", request({host("Photoshop", photoshop(), 0)}));
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.standardOutput.endsWith('\n'));
    EXPECT_EQ(linkedPlugin("hosts/Photoshop/Plug-ins"), graymere());
    EXPECT_FALSE(startMenu().isEmpty());
    EXPECT_EQ(testMachine->readFile(Place::ProgramData, "Tavrin"), "a file where a folder should be");
}
