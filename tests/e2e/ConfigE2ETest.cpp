#include "DeployerRun.h"
#include "Machine.h"
#include "MachineLog.h"
#include "RegistryHiveFormat.h"
#include "SuiteRoot.h"

#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QString suiteKey = "SOFTWARE/WOW6432Node/Tavrin/Orv Collection/";
const QString uninstallKey = "SOFTWARE/WOW6432Node/Microsoft/Windows/CurrentVersion/Uninstall/Orv Collection/";
const QString userKey = "SOFTWARE/Tavrin/Orv Collection/";

class ConfigE2ETest : public testing::Test
{
protected:
    ConfigE2ETest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }

    static QJsonObject host(const QString &appName, const QString &pluginPath)
    {
        return QJsonObject{{"appName", appName}, {"pluginPath", pluginPath}, {"type", 0}};
    }

    QJsonObject request(const QJsonArray &hosts, const QJsonArray &plugins) const
    {
        return QJsonObject{
            {"rootDir", root()}, {"hosts", hosts}, {"plugins", plugins}, {"language", 5}, {"version", "4.2.0"}};
    }

    void configure(const QJsonObject &request) const
    {
        const DeployerRun run = runDeployer(machine, {"--config", encodeRequest(request)});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    QSettings::SettingsMap hive(const char *name) const
    {
        QFile file(machine.path(name == QString("HKEY_CURRENT_USER") ? "home/.config/winreg/HKEY_CURRENT_USER.reg"
                                                                     : "etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"));
        file.open(QIODevice::ReadOnly);
        return registryHive::parse(file.readAll(), name);
    }
    QSettings::SettingsMap machineHive() const { return hive("HKEY_LOCAL_MACHINE"); }

    Machine machine;
};

} // namespace

TEST_F(ConfigE2ETest, RecordsHostsPathsLanguageAndTheUninstallEntry)
{
    configure(request({host("Photoshop CC 2018 (64-Bit)", "/ps"), host("Lightroom Classic CC 7", "/lr")},
                      {"Grainwick 3", "Rectilo", "Bracketon 2"}));
    const QSettings::SettingsMap values = machineHive();
    const QString bin = root() + "/bin";
    const QSettings::SettingsMap expected = {
        {suiteKey + "Locations/0_Path", "/ps"},
        {suiteKey + "Locations/0_Name", "Photoshop CC 2018 (64-Bit)"},
        {suiteKey + "Locations/1_Path", "/lr"},
        {suiteKey + "Locations/1_Name", "Lightroom Classic CC 7"},
        {suiteKey + "DisplayVersion", "4.2.0"},
        {suiteKey + "UninstallString", bin},
        {suiteKey + "InstallPath", bin},
        {suiteKey + "currentLanguage", 5},
        {suiteKey + "GrainwickPath", bin + "/Grainwick 3.exe"},
        {suiteKey + "Applications/Grainwick 3", bin + "/Grainwick 3.exe"},
        {suiteKey + "Applications/Rectilo", root() + "/Rectilo/Rectilo Launcher.exe"},
        {suiteKey + "Applications/Bracketon 2", root() + "/Bracketon 2/Bracketon 2.exe"},
        {uninstallKey + "DisplayVersion", "4.2.0"},
        {uninstallKey + "UninstallString", bin},
        {uninstallKey + "Applications/Grainwick 3", bin + "/Grainwick 3.exe"},
        {uninstallKey + "Applications/Rectilo", root() + "/Rectilo/Rectilo Launcher.exe"},
        {uninstallKey + "Applications/Bracketon 2", root() + "/Bracketon 2/Bracketon 2.exe"},
    };
    EXPECT_EQ(values, expected);
    EXPECT_EQ(hive("HKEY_CURRENT_USER"), (QSettings::SettingsMap{{userKey + "currentLanguage", 5}}));
}

TEST_F(ConfigE2ETest, EachProductLogsItsOrv4Name)
{
    configure(request({}, {"Tintara 5", "Tintara 4"}));
    const QByteArray log = machineLog(machine);
    EXPECT_TRUE(log.contains("] orv4Path written to local settings TintaraPath\n"));
    EXPECT_TRUE(log.contains("] orv4Path written to local settings \n"));
    EXPECT_EQ(machineHive().value(suiteKey + "TintaraPath").toString(), root() + "/bin/Tintara 5.exe");
}

TEST_F(ConfigE2ETest, NoHostsWritesNoLocationsButEverythingElse)
{
    configure(request({}, {"Rectilo"}));
    for (const QString &key : machineHive().keys())
        EXPECT_FALSE(key.contains("Locations")) << key.toStdString();
    EXPECT_TRUE(machineHive().contains(suiteKey + "InstallPath"));
}

TEST_F(ConfigE2ETest, AFolderNamedTwiceIsRecordedTwice)
{
    configure(request({host("Photoshop", "/same"), host("Elements", "/same")}, {}));
    EXPECT_EQ(machineHive().value(suiteKey + "Locations/0_Path").toString(), "/same");
    EXPECT_EQ(machineHive().value(suiteKey + "Locations/1_Path").toString(), "/same");
}

TEST_F(ConfigE2ETest, AMissingLanguageIsStoredAsOneAndNinetyNineAsItIs)
{
    QJsonObject missing = request({}, {});
    missing.remove("language");
    configure(missing);
    EXPECT_EQ(machineHive().value(suiteKey + "currentLanguage"), QVariant(1));
    EXPECT_EQ(hive("HKEY_CURRENT_USER").value(userKey + "currentLanguage"), QVariant(1));
    QJsonObject odd = request({}, {});
    odd.insert("language", 99);
    configure(odd);
    EXPECT_EQ(machineHive().value(suiteKey + "currentLanguage"), QVariant(99));
}

TEST_F(ConfigE2ETest, FewerHostsLeaveTheEarlierHigherLocations)
{
    configure(request({host("A", "/a"), host("B", "/b"), host("C", "/c")}, {}));
    configure(request({host("D", "/d")}, {}));
    const QSettings::SettingsMap values = machineHive();
    EXPECT_EQ(values.value(suiteKey + "Locations/0_Path").toString(), "/d");
    EXPECT_EQ(values.value(suiteKey + "Locations/2_Path").toString(), "/c");
}

TEST_F(ConfigE2ETest, AProductWithoutAKnownExecutableHasNoApplicationsValue)
{
    QFile::remove(root() + "/Graymere 2/Graymere 2.exe");
    configure(request({}, {"Graymere 2", "Unknown Product"}));
    for (const QString &key : machineHive().keys())
        EXPECT_FALSE(key.contains("Applications")) << key.toStdString();
}

TEST_F(ConfigE2ETest, AcutaraKeepsOneOfItsTwoExecutables)
{
    configure(request({}, {"Acutara 3"}));
    const QString recorded = machineHive().value(suiteKey + "Applications/Acutara 3").toString();
    EXPECT_TRUE(recorded == root() + "/Acutara 3/ACU3OST.exe" || recorded == root() + "/Acutara 3/ACU3RST.exe")
        << recorded.toStdString();
}
