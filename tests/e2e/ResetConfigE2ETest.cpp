#include "LinuxTestMachine.h"
#include "TestMachine.h"
#include "UnprivilegedRun.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <gtest/gtest.h>

namespace {

const QString machineMakerKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin";
const QString machineSuiteMakerKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin";
const QString machineUninstallKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
const QString userMakerKey = "HKEY_CURRENT_USER\\SOFTWARE\\Tavrin";
const QString userUninstallKey = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

// A text as it stands quoted in the registry editor's form.
QByteArray quoted(QString text)
{
    return '"' + text.replace("\\", "\\\\").replace("\"", "\\\"").toUtf8() + '"';
}

QByteArray section(const QString &key, const QByteArray &values)
{
    return "[" + key.toUtf8() + "]\n" + values + "\n";
}

class ResetConfigE2ETest : public testing::Test
{
protected:
    ResetConfigE2ETest()
    {
        machine->seedRegistry(
            section(machineMakerKey + "\\Other", "\"x\"=\"kept\"\n") +
            section(machineMakerKey + "\\Rectilo", "\"loggerLevel\"=\"D\"\n") +
            section(machineUninstallKey + "\\Orv Collection", "\"DisplayVersion\"=\"4.2.0\"\n") +
            section(machineUninstallKey + "\\Other Suite", "\"DisplayVersion\"=\"1\"\n") +
            section(machineSuiteMakerKey + "\\Orv Collection",
                    "\"InstallPath\"=" + quoted(machine->toolPath(Place::Scratch, "suite/bin")) + "\n") +
            section(machineSuiteMakerKey + "\\Orv Collection\\Locations",
                    "\"0_Path\"=" + quoted(machine->toolPath(Place::Scratch, "hosts/ps")) + "\n") +
            section(machineSuiteMakerKey + "\\Other Suite", "\"x\"=\"kept\"\n") +
            section(userUninstallKey + "\\OrvOld", "\"DisplayName\"=\"Orv Collection\"\n") +
            section(userMakerKey, "\"Beside\"=\"kept\"\n") +
            section(userMakerKey + "\\Orv Collection",
                    "\"app_loglevel\"=\"info\"\n\"currentLanguage\"=dword:00000005\n") +
            section(userMakerKey + "\\Orv Collection\\Window", "\"x\"=\"1\"\n") +
            section(userMakerKey + "\\Rectilo", "\"x\"=\"1\"\n") +
            section(userMakerKey + "\\Zonal Palette", "\"x\"=\"1\"\n") +
            section(userMakerKey + "\\Zonal Tool", "\"x\"=\"1\"\n") +
            section(userMakerKey + "\\Unrelated", "\"x\"=\"kept\"\n"));
    }

    QStringList names(const QString &key) const { return machine->registryValues(key).keys(); }

    // Every value of the keys that the machine was seeded with, key by key.
    QMap<QString, QSettings::SettingsMap> registry() const
    {
        QMap<QString, QSettings::SettingsMap> values;
        for (const QString &key :
             {machineMakerKey, machineSuiteMakerKey, machineUninstallKey, userMakerKey, userUninstallKey})
            values.insert(key, machine->registryValues(key));
        return values;
    }

    void reset(const DeployerRun &run) const
    {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

const QStringList userNamesAfterReset = {"Beside", "Unrelated/x"};

} // namespace

TEST_F(ResetConfigE2ETest, RemovesTheSuitesKeysAndKeepsEverythingElse)
{
    reset(machine->run({"--resetConfig", "ignored"}));
    EXPECT_EQ(names(machineMakerKey), QStringList{"Other/x"});
    EXPECT_EQ(names(machineUninstallKey + "\\Orv Collection"), QStringList());
    EXPECT_EQ(names(machineUninstallKey + "\\Other Suite"), QStringList{"DisplayVersion"});
    EXPECT_EQ(names(machineSuiteMakerKey), QStringList{"Other Suite/x"});
    EXPECT_EQ(names(userUninstallKey + "\\OrvOld"), QStringList{"DisplayName"});
    EXPECT_EQ(names(userMakerKey), userNamesAfterReset);
    EXPECT_FALSE(machine->log().contains("] [warning] "));
}

TEST_F(ResetConfigE2ETest, ASecondRunChangesNothing)
{
    reset(machine->run({"-r", "x"}));
    const QMap<QString, QSettings::SettingsMap> after = registry();
    reset(machine->run({"-r", "x"}));
    EXPECT_EQ(registry(), after);
}

// Without machine rights the machine's keys stay, silently, and the user's key is emptied.
TEST_F(ResetConfigE2ETest, WithoutMachineRightsOnlyTheUsersKeysGo)
{
    SKIP_UNDER_WINE("runs the tool as a user without machine rights, which only the Linux build's machine can");
    const Machine &linuxMachine = dynamic_cast<LinuxTestMachine &>(*machine).machine();
    const QByteArray machineHiveBefore = linuxMachine.readFile(LinuxTestMachine::machineHive);
    ASSERT_FALSE(machineHiveBefore.isEmpty());
    const QString folder = QFileInfo(linuxMachine.path(LinuxTestMachine::machineHive)).path();
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    reset(runDeployerWithoutRights(linuxMachine, {"home"}, {"--resetConfig", "x"}));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(linuxMachine.readFile(LinuxTestMachine::machineHive), machineHiveBefore);
    EXPECT_EQ(names(userUninstallKey + "\\OrvOld"), QStringList{"DisplayName"});
    EXPECT_EQ(names(userMakerKey), userNamesAfterReset);
    EXPECT_FALSE(machine->log().contains("] [warning] "));
}
