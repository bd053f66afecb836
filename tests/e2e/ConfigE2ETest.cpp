#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QString makerKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin";
const QString uninstallKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Orv Collection";
const QString userKey = "HKEY_CURRENT_USER\\SOFTWARE\\Tavrin";
// The suite's key below the maker's.
const QString suite = "Orv Collection/";

class ConfigE2ETest : public testing::Test
{
protected:
    ConfigE2ETest() { suiteRoot::create(machine->path(Place::Scratch, "suite")); }

    QString root() const { return machine->toolPath(Place::Scratch, "suite"); }
    QString hostFolder(const QString &name) const { return machine->toolPath(Place::Scratch, "hosts/" + name); }

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
        const ToolRun run = machine->run("--config", request);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    // Registry values with the paths in their texts as they compare across the builds.
    QSettings::SettingsMap comparable(QSettings::SettingsMap values) const
    {
        for (QVariant &value : values) {
            if (value.userType() == QMetaType::QString)
                value = machine->comparable(value.toString());
        }
        return values;
    }
    QString comparable(const QString &path) const { return machine->comparable(path); }

    QSettings::SettingsMap values(const QString &key) const { return comparable(machine->registryValues(key)); }
    QSettings::SettingsMap makerValues() const { return values(makerKey); }

    // The names of the machine's values that the config mode writes.
    QStringList machineNames() const
    {
        return machine->registryValues(makerKey).keys() + machine->registryValues(uninstallKey).keys();
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

} // namespace

TEST_F(ConfigE2ETest, RecordsHostsPathsLanguageAndTheUninstallEntry)
{
    configure(request(
        {host("Photoshop CC 2018 (64-Bit)", hostFolder("ps")), host("Lightroom Classic CC 7", hostFolder("lr"))},
        {"Grainwick 3", "Rectilo", "Bracketon 2"}));
    const QString bin = root() + "/bin";
    const QSettings::SettingsMap expected = comparable({
        {suite + "Locations/0_Path", hostFolder("ps")},
        {suite + "Locations/0_Name", "Photoshop CC 2018 (64-Bit)"},
        {suite + "Locations/1_Path", hostFolder("lr")},
        {suite + "Locations/1_Name", "Lightroom Classic CC 7"},
        {suite + "DisplayVersion", "4.2.0"},
        {suite + "UninstallString", bin},
        {suite + "InstallPath", bin},
        {suite + "currentLanguage", 5},
        {suite + "GrainwickPath", bin + "/Grainwick 3.exe"},
        {suite + "Applications/Grainwick 3", bin + "/Grainwick 3.exe"},
        {suite + "Applications/Rectilo", root() + "/Rectilo/Rectilo Launcher.exe"},
        {suite + "Applications/Bracketon 2", root() + "/Bracketon 2/Bracketon 2.exe"},
    });
    EXPECT_EQ(makerValues(), expected);
    const QSettings::SettingsMap expectedEntry = comparable({
        {"DisplayVersion", "4.2.0"},
        {"UninstallString", bin},
        {"Applications/Grainwick 3", bin + "/Grainwick 3.exe"},
        {"Applications/Rectilo", root() + "/Rectilo/Rectilo Launcher.exe"},
        {"Applications/Bracketon 2", root() + "/Bracketon 2/Bracketon 2.exe"},
    });
    EXPECT_EQ(values(uninstallKey), expectedEntry);
    EXPECT_EQ(values(userKey), (QSettings::SettingsMap{{suite + "currentLanguage", 5}}));
}

TEST_F(ConfigE2ETest, EachProductLogsItsOrv4Name)
{
    configure(request({}, {"Tintara 5", "Tintara 4"}));
    EXPECT_TRUE(machine->logContains("] orv4Path written to local settings TintaraPath\n"));
    EXPECT_TRUE(machine->logContains("] orv4Path written to local settings \n"));
    EXPECT_EQ(makerValues().value(suite + "TintaraPath").toString(), comparable(root() + "/bin/Tintara 5.exe"));
}

TEST_F(ConfigE2ETest, NoHostsWritesNoLocationsButEverythingElse)
{
    configure(request({}, {"Rectilo"}));
    for (const QString &name : machineNames())
        EXPECT_FALSE(name.contains("Locations")) << name.toStdString();
    EXPECT_TRUE(makerValues().contains(suite + "InstallPath"));
}

TEST_F(ConfigE2ETest, AFolderNamedTwiceIsRecordedTwice)
{
    configure(request({host("Photoshop", hostFolder("same")), host("Elements", hostFolder("same"))}, {}));
    const QSettings::SettingsMap values = makerValues();
    EXPECT_EQ(values.value(suite + "Locations/0_Path").toString(), comparable(hostFolder("same")));
    EXPECT_EQ(values.value(suite + "Locations/1_Path").toString(), comparable(hostFolder("same")));
}

TEST_F(ConfigE2ETest, AMissingLanguageIsStoredAsOneAndNinetyNineAsItIs)
{
    QJsonObject missing = request({}, {});
    missing.remove("language");
    configure(missing);
    EXPECT_EQ(makerValues().value(suite + "currentLanguage"), QVariant(1));
    EXPECT_EQ(values(userKey).value(suite + "currentLanguage"), QVariant(1));
    QJsonObject odd = request({}, {});
    odd.insert("language", 99);
    configure(odd);
    EXPECT_EQ(makerValues().value(suite + "currentLanguage"), QVariant(99));
}

TEST_F(ConfigE2ETest, FewerHostsLeaveTheEarlierHigherLocations)
{
    configure(request({host("A", hostFolder("a")), host("B", hostFolder("b")), host("C", hostFolder("c"))}, {}));
    configure(request({host("D", hostFolder("d"))}, {}));
    const QSettings::SettingsMap values = makerValues();
    EXPECT_EQ(values.value(suite + "Locations/0_Path").toString(), comparable(hostFolder("d")));
    EXPECT_EQ(values.value(suite + "Locations/2_Path").toString(), comparable(hostFolder("c")));
}

TEST_F(ConfigE2ETest, AProductWithoutAKnownExecutableHasNoApplicationsValue)
{
    QFile::remove(machine->path(Place::Scratch, "suite/Graymere 2/Graymere 2.exe"));
    configure(request({}, {"Graymere 2", "Unknown Product"}));
    for (const QString &name : machineNames())
        EXPECT_FALSE(name.contains("Applications")) << name.toStdString();
}

TEST_F(ConfigE2ETest, AcutaraKeepsOneOfItsTwoExecutables)
{
    configure(request({}, {"Acutara 3"}));
    const QString recorded = makerValues().value(suite + "Applications/Acutara 3").toString();
    EXPECT_TRUE(recorded == comparable(root() + "/Acutara 3/ACU3OST.exe") ||
                recorded == comparable(root() + "/Acutara 3/ACU3RST.exe"))
        << recorded.toStdString();
}
