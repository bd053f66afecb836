#include "DeployerRun.h"
#include "Machine.h"
#include "MachineLog.h"
#include "RegistryHiveFormat.h"
#include "UnprivilegedRun.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

const QByteArray machineHiveText =
    "Windows Registry Editor Version 5.00\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Other]\n\"x\"=\"kept\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Rectilo]\n\"loggerLevel\"=\"D\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Orv Collection]\n"
    "\"DisplayVersion\"=\"4.2.0\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Other Suite]\n"
    "\"DisplayVersion\"=\"1\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n\"InstallPath\"=\"/suite/bin\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\Locations]\n\"0_Path\"=\"/ps\"\n\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Other Suite]\n\"x\"=\"kept\"\n\n";

const QByteArray userHiveText =
    "Windows Registry Editor Version 5.00\n\n"
    "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\OrvOld]\n"
    "\"DisplayName\"=\"Orv Collection\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin]\n\"Beside\"=\"kept\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection]\n\"app_loglevel\"=\"info\"\n\"currentLanguage\"=dword:00000005\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection\\Window]\n\"x\"=\"1\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Rectilo]\n\"x\"=\"1\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Zonal Palette]\n\"x\"=\"1\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Zonal Tool]\n\"x\"=\"1\"\n\n"
    "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Unrelated]\n\"x\"=\"kept\"\n\n";

const QString machineHive = "etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg";
const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";

class ResetConfigE2ETest : public testing::Test
{
protected:
    ResetConfigE2ETest()
    {
        machine.writeFile(machineHive, machineHiveText);
        machine.writeFile(userHive, userHiveText);
    }

    QStringList keysOf(const QString &relative, const char *hiveName) const
    {
        return registryHive::parse(machine.readFile(relative), hiveName).keys();
    }

    void reset(const DeployerRun &run) const
    {
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    Machine machine;
};

// "Software" is the spelling met first in the user's hive, so both keys carry it.
const QStringList userKeysAfterReset = {"Software/Microsoft/Windows/CurrentVersion/Uninstall/OrvOld/DisplayName",
                                        "Software/Tavrin/Beside", "Software/Tavrin/Unrelated/x"};

} // namespace

TEST_F(ResetConfigE2ETest, RemovesTheSuitesKeysAndKeepsEverythingElse)
{
    reset(runDeployer(machine, {"--resetConfig", "ignored"}));
    EXPECT_EQ(keysOf(machineHive, "HKEY_LOCAL_MACHINE"),
              (QStringList{"SOFTWARE/Tavrin/Other/x",
                           "SOFTWARE/WOW6432Node/Microsoft/Windows/CurrentVersion/Uninstall/Other Suite/DisplayVersion",
                           "SOFTWARE/WOW6432Node/Tavrin/Other Suite/x"}));
    EXPECT_EQ(keysOf(userHive, "HKEY_CURRENT_USER"), userKeysAfterReset);
    EXPECT_FALSE(machineLog(machine).contains("] [warning] "));
}

TEST_F(ResetConfigE2ETest, ASecondRunChangesNothing)
{
    reset(runDeployer(machine, {"-r", "x"}));
    const QByteArray machineAfter = machine.readFile(machineHive);
    const QByteArray userAfter = machine.readFile(userHive);
    reset(runDeployer(machine, {"-r", "x"}));
    EXPECT_EQ(machine.readFile(machineHive), machineAfter);
    EXPECT_EQ(machine.readFile(userHive), userAfter);
}

// Without machine rights the machine's keys stay, silently, and the user's key is emptied.
TEST_F(ResetConfigE2ETest, WithoutMachineRightsOnlyTheUsersKeysGo)
{
    const QString folder = QFileInfo(machine.path(machineHive)).path();
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    reset(runDeployerWithoutRights(machine, {"home"}, {"--resetConfig", "x"}));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(machine.readFile(machineHive), machineHiveText);
    EXPECT_EQ(keysOf(userHive, "HKEY_CURRENT_USER"), userKeysAfterReset);
    EXPECT_FALSE(machineLog(machine).contains("] [warning] "));
}
