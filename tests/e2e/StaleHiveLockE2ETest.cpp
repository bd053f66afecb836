#include "DeployerRun.h"
#include "HostMachine.h"
#include "LockHolderProcess.h"
#include "Machine.h"
#include "RegistryHiveFormat.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

// A run takes well under a second; a lock that Qt waited for to go stale
// would hold it 30 seconds, and this guard ends such a run as hung.
constexpr int hangGuardMilliseconds = 20000;
const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";
// What QLockFile writes into its file: the owner's process, name and host.
const QByteArray lockOfAProcessThatIsGone = "2147483646\nSuiteDeployer\nmachine\n";

class StaleHiveLockE2ETest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE(
            "leaves lock files beside the Linux build's registry hive files, which Windows' registry doesn't have");
    }

    StaleHiveLockE2ETest()
    {
        suiteRoot::create(machine.path("suite"));
        hostMachine::writeMachineHive(machine,
                                      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n"
                                      "@=\"/opt/pse/plugins\"\n");
        machine.writeFile(userHive, "[HKEY_CURRENT_USER\\SOFTWARE\\Other]\n\"x\"=\"1\"\n");
    }

    // What a run killed while it held a hive's lock leaves beside the hive.
    void leaveLocksBesideTheHives(const QByteArray &content) const
    {
        machine.writeFile(hostMachine::machineHive + ".lock", content);
        machine.writeFile(userHive + ".lock", content);
    }

    DeployerRun run(const QStringList &arguments) const
    {
        return runDeployer(machine.environment(), machine.root(), arguments, hangGuardMilliseconds);
    }

    QSettings::SettingsMap hive(const QString &path, const QString &name) const
    {
        return registryHive::parse(machine.readFile(path), name);
    }

    QStringList filesBesideTheHives() const
    {
        return QDir(machine.path("etc/xdg/winreg")).entryList(QDir::Files | QDir::Hidden) +
               QDir(machine.path("home/.config/winreg")).entryList(QDir::Files | QDir::Hidden);
    }

    QStringList configArguments() const
    {
        const QJsonObject request{{"rootDir", machine.path("suite")},
                                  {"plugins", QJsonArray{"Tintara 5"}},
                                  {"hosts", QJsonArray{QJsonObject{{"appName", "Photoshop"}, {"pluginPath", "/ps"}}}},
                                  {"language", 3},
                                  {"version", "4.2.0"}};
        return {"--config", encodeRequest(request)};
    }

    void expectTheConfigRecorded() const
    {
        EXPECT_EQ(hive(hostMachine::machineHive, "HKEY_LOCAL_MACHINE")
                      .value("SOFTWARE/WOW6432Node/Tavrin/Orv Collection/currentLanguage"),
                  3);
        EXPECT_EQ(hive(userHive, "HKEY_CURRENT_USER").value("SOFTWARE/Tavrin/Orv Collection/currentLanguage"), 3);
        EXPECT_EQ(hive(userHive, "HKEY_CURRENT_USER").value("SOFTWARE/Other/x"), "1");
    }

    Machine machine;
};

} // namespace

// The report only reads, and reading takes no lock: it leaves the leftovers
// as they are, for the next run that writes to remove.
TEST_F(StaleHiveLockE2ETest, AnEmptyLockBesideEachHiveDoesNotHoldUpTheReport)
{
    leaveLocksBesideTheHives("");
    const QStringList before = filesBesideTheHives();
    const DeployerRun report = run({});
    EXPECT_FALSE(report.hung);
    EXPECT_EQ(report.exitCode, 0);
    const QJsonObject system = decodeAnswer(report.standardOutput).value("system").toObject();
    EXPECT_EQ(system.value("detectedHosts"), 1);
    EXPECT_EQ(system.value("hosts").toArray().first().toObject().value("pluginPath"), "/opt/pse/plugins");
    EXPECT_EQ(filesBesideTheHives(), before);
}

TEST_F(StaleHiveLockE2ETest, AnEmptyLockBesideEachHiveDoesNotHoldUpTheConfig)
{
    leaveLocksBesideTheHives("");
    const DeployerRun config = run(configArguments());
    EXPECT_FALSE(config.hung);
    EXPECT_EQ(config.exitCode, 0);
    expectTheConfigRecorded();
    EXPECT_EQ(filesBesideTheHives(), (QStringList{"HKEY_LOCAL_MACHINE.reg", "HKEY_CURRENT_USER.reg"}));
}

TEST_F(StaleHiveLockE2ETest, ALockOfAProcessThatIsGoneDoesNotHoldUpTheConfig)
{
    leaveLocksBesideTheHives(lockOfAProcessThatIsGone);
    const DeployerRun config = run(configArguments());
    EXPECT_FALSE(config.hung);
    EXPECT_EQ(config.exitCode, 0);
    expectTheConfigRecorded();
    EXPECT_EQ(filesBesideTheHives(), (QStringList{"HKEY_LOCAL_MACHINE.reg", "HKEY_CURRENT_USER.reg"}));
}

// An installation in another process holds the hives' locks while it writes;
// the report only reads, and a hive is replaced whole, so it does not wait.
TEST_F(StaleHiveLockE2ETest, TheReportDoesNotWaitForAWriterOfTheHives)
{
    LockHolderProcess writer({"registry", "HKEY_CURRENT_USER\\SOFTWARE\\Other"}, machine.environment());
    ASSERT_TRUE(writer.holds());
    const DeployerRun report = run({});
    EXPECT_FALSE(report.hung);
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_EQ(decodeAnswer(report.standardOutput).value("system").toObject().value("detectedHosts"), 1);
}

// The report and the probe only read the hives: where there are none, they
// leave no hive, no lock file and no folder for them.
TEST_F(StaleHiveLockE2ETest, ModesThatOnlyReadMakeNothingWhereNoHiveIs)
{
    QFile::remove(machine.path(hostMachine::machineHive));
    QFile::remove(machine.path(userHive));
    QDir(machine.path("etc/xdg/winreg")).removeRecursively();
    QDir(machine.path("home/.config/winreg")).removeRecursively();
    for (const QStringList &arguments : {QStringList{}, QStringList{"--background"}}) {
        const DeployerRun readingRun = run(arguments);
        EXPECT_EQ(readingRun.exitCode, 0);
        EXPECT_FALSE(QFileInfo::exists(machine.path("etc/xdg/winreg")));
        EXPECT_FALSE(QFileInfo::exists(machine.path("home/.config/winreg")));
    }
    EXPECT_TRUE(
        QDir(machine.path("etc/xdg")).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
}
