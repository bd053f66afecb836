#include "TestMachine.h"

#include <QDir>

#include <gtest/gtest.h>

#include <utility>

namespace {

const QString locationsKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\Locations";
const QString applicationsKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Orv Collection\\"
    "Applications";

// What an installation spreads over the machine, and what it finds there of others.
const std::pair<Place, const char *> spreadFiles[] = {
    {Place::StartMenu, "Tavrin Orv Collection/Tintara 5.lnk"},
    {Place::Scratch, "hosts/ps/Tavrin/Tintara 5/Tintara 5.8bf.lnk"},
    {Place::Scratch, "hosts/ps/Other/kept.8bf"},
    {Place::Scratch, "hosts/lr/Modules/Bracketon2.lrplugin/Info.lua"},
    {Place::Scratch, "hosts/lr/Modules/PluginParam.lrplugin/RevUtil1config.lua"},
    {Place::Scratch, "hosts/lr/Modules/Other.lrplugin/Info.lua"},
    {Place::Scratch, "hosts/lr/External Editor Presets/Tintara5.lrtemplate"},
    {Place::Scratch, "hosts/lr/External Editor Presets/Mine.lrtemplate"},
    {Place::Scratch, "hosts/lr/Export Presets/Orv Collection/x.lrtemplate"},
    {Place::CommonPictures, "Rectilo Samples/Sign.jpg"},
    {Place::CommonPictures, "Holiday.jpg"},
    {Place::LocalAppData, "Tavrin/Tintara 5/Tintara5.cfg"},
    {Place::LocalAppData, "Tavrin/Tintara 5/LastEdit"},
    {Place::LocalAppData, "Tavrin/Tintara 5/LastEdit.cfg"},
    {Place::LocalAppData, "Tavrin/Tintara 5/crash_reports/1.dmp"},
    {Place::LocalAppData, "Tavrin/Tintara 5/Presets/Mine.preset"},
    {Place::LocalAppData, "Tavrin/Tintara 4/Tintara4.cfg"},
    {Place::LocalAppData, "Tintara 5/cache/c.bin"},
    {Place::LocalAppData, "Tintara 4/cache/c.bin"},
    {Place::LocalAppData, "Tavrin/Zonal Palette/cache/p.bin"},
    {Place::LocalAppData, "Tavrin/Zonal Palette/com.tavrin.zonaltool.lastedit.prefs"},
    {Place::LocalAppData, "Tavrin/Zonal Palette/layout.xml"},
    {Place::ProgramData, "Tavrin/bin/plugins/x.dat"},
    {Place::ProgramData, "Tavrin/Rectilo/r.dat"},
    {Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg"},
    {Place::ProgramData, "Tavrin/Presets/Default.preset"},
    {Place::Scratch, "suite/bin/Tintara 5.exe"},
};

// A text as it stands quoted in the registry editor's form.
QByteArray quoted(QString text)
{
    return '"' + text.replace("\\", "\\\\").replace("\"", "\\\"").toUtf8() + '"';
}

// A machine as an installation and the config mode leave it, written by hand
// so that each removal can be seen on its own.
class UninstallE2ETest : public testing::Test
{
protected:
    UninstallE2ETest()
    {
        for (const auto &[place, file] : spreadFiles)
            machine->writeFile(place, file, "x");
    }

    QString photoshop() const { return machine->toolPath(Place::Scratch, "hosts/ps"); }
    QString lightroom() const { return machine->toolPath(Place::Scratch, "hosts/lr"); }

    // The host folders as the config mode records them.
    QSettings::SettingsMap hostLocations() const
    {
        return {{"0_Path", photoshop()}, {"0_Name", "Photoshop"}, {"1_Path", lightroom()}, {"1_Name", "Lightroom"}};
    }

    // Records the products and the host locations of the installation; a test
    // that records nothing of its own has the three products and both hosts.
    void record(const QStringList &products, const QSettings::SettingsMap &locations)
    {
        QByteArray sections = "[" + locationsKey.toUtf8() + "]\n";
        for (auto location = locations.begin(); location != locations.end(); ++location)
            sections += quoted(location.key()) + "=" + quoted(location.value().toString()) + "\n";
        sections += "\n[" + applicationsKey.toUtf8() + "]\n";
        for (const QString &product : products)
            sections +=
                quoted(product) + "=" + quoted(machine->toolPath(Place::Scratch, "suite/" + product + ".exe")) + "\n";
        machine->seedRegistry(sections);
        recorded = true;
    }

    ToolRun uninstall(const QJsonObject &request)
    {
        if (!recorded)
            record({"Tintara 5", "Rectilo", "Bracketon 2"}, hostLocations());
        const ToolRun run = machine->run("--uninstall", request);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
        return run;
    }

    bool inHosts(const QString &relative) const { return machine->exists(Place::Scratch, "hosts/" + relative); }
    bool inLocalData(const QString &relative) const { return machine->exists(Place::LocalAppData, relative); }

    int warnings() const { return machine->log().count("] [warning] "); }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
    bool recorded = false;
};

} // namespace

TEST_F(UninstallE2ETest, RemovesWhatTheInstallationSpreadAndKeepsTheRest)
{
    uninstall({{"keepPreferences", "true"}});
    EXPECT_FALSE(machine->exists(Place::StartMenu, "Tavrin Orv Collection"));
    EXPECT_FALSE(inHosts("ps/Tavrin"));
    EXPECT_TRUE(inHosts("ps/Other/kept.8bf"));
    EXPECT_FALSE(inHosts("lr/Modules/Bracketon2.lrplugin"));
    EXPECT_FALSE(inHosts("lr/Modules/PluginParam.lrplugin"));
    EXPECT_TRUE(inHosts("lr/Modules/Other.lrplugin/Info.lua"));
    EXPECT_FALSE(inHosts("lr/External Editor Presets/Tintara5.lrtemplate"));
    EXPECT_TRUE(inHosts("lr/External Editor Presets/Mine.lrtemplate"));
    EXPECT_FALSE(inHosts("lr/Export Presets/Orv Collection"));
    EXPECT_FALSE(machine->exists(Place::CommonPictures, "Rectilo Samples"));
    EXPECT_TRUE(machine->exists(Place::CommonPictures, "Holiday.jpg"));
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/bin/plugins"));
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/Rectilo"));
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/Orv Collection"));
    EXPECT_TRUE(machine->exists(Place::ProgramData, "Tavrin/Presets/Default.preset"));
    EXPECT_TRUE(machine->exists(Place::Scratch, "suite/bin/Tintara 5.exe"));
    EXPECT_EQ(machine->registryValues(locationsKey), hostLocations());
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, KeepingPreferencesTakesOnlyTheFourItems)
{
    uninstall({{"keepPreferences", "true"}});
    EXPECT_FALSE(inLocalData("Tavrin/Tintara 5/Tintara5.cfg"));
    EXPECT_FALSE(inLocalData("Tavrin/Tintara 5/LastEdit"));
    EXPECT_FALSE(inLocalData("Tavrin/Tintara 5/LastEdit.cfg"));
    EXPECT_FALSE(inLocalData("Tavrin/Tintara 5/crash_reports"));
    EXPECT_TRUE(inLocalData("Tavrin/Tintara 5/Presets/Mine.preset"));
    EXPECT_FALSE(inLocalData("Tintara 5/cache"));
    EXPECT_TRUE(inLocalData("Tintara 5"));
}

TEST_F(UninstallE2ETest, OnlyTheStringFalseTakesTheWholeProductFolder)
{
    for (const QJsonObject &keeping : {QJsonObject{{"keepPreferences", false}}, QJsonObject{}}) {
        uninstall(keeping);
        EXPECT_TRUE(inLocalData("Tavrin/Tintara 5/Presets/Mine.preset"));
    }
    uninstall({{"keepPreferences", "false"}});
    EXPECT_FALSE(inLocalData("Tavrin/Tintara 5"));
    EXPECT_TRUE(inLocalData("Tavrin"));
}

TEST_F(UninstallE2ETest, AProductNotRecordedKeepsItsDataAndCache)
{
    uninstall({{"keepPreferences", "false"}});
    EXPECT_TRUE(inLocalData("Tavrin/Tintara 4/Tintara4.cfg"));
    EXPECT_TRUE(inLocalData("Tintara 4/cache/c.bin"));
}

TEST_F(UninstallE2ETest, TheZonalPaletteLosesItsCacheAndPrefsOnly)
{
    uninstall({});
    EXPECT_FALSE(inLocalData("Tavrin/Zonal Palette/cache"));
    EXPECT_FALSE(inLocalData("Tavrin/Zonal Palette/com.tavrin.zonaltool.lastedit.prefs"));
    EXPECT_TRUE(inLocalData("Tavrin/Zonal Palette/layout.xml"));
}

TEST_F(UninstallE2ETest, WithoutTheMakersLocalFolderTheCachesOutsideItStay)
{
    QDir(machine->path(Place::LocalAppData, "Tavrin")).removeRecursively();
    uninstall({{"keepPreferences", "false"}});
    EXPECT_TRUE(inLocalData("Tintara 5/cache/c.bin"));
    EXPECT_FALSE(inHosts("ps/Tavrin"));
}

TEST_F(UninstallE2ETest, ATemplateFileAtAModulesPlaceGoesAsAFile)
{
    QDir(machine->path(Place::Scratch, "hosts/lr/Modules/Bracketon2.lrplugin")).removeRecursively();
    machine->writeFile(Place::Scratch, "hosts/lr/Modules/Bracketon2.lrplugin", "a file, not a module");
    machine->writeFile(Place::Scratch, "hosts/lr/External Editor Presets/Grainwick3.lrtemplate/inside.txt",
                       "a folder, not a preset");
    uninstall({});
    EXPECT_FALSE(inHosts("lr/Modules/Bracketon2.lrplugin"));
    EXPECT_FALSE(inHosts("lr/External Editor Presets/Grainwick3.lrtemplate"));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, ADoubledPathAndAnyKeyWithPathAreTaken)
{
    record({}, {{"0_Path", photoshop()},
                {"1_Path", photoshop()},
                {"MyPathName", lightroom()},
                {"2_Name", machine->toolPath(Place::Scratch, "hosts")}});
    uninstall({});
    EXPECT_FALSE(inHosts("ps/Tavrin"));
    EXPECT_FALSE(inHosts("lr/Modules/Bracketon2.lrplugin"));
    EXPECT_TRUE(inHosts("ps/Other/kept.8bf"));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, ASecondRunFindsNothingAndSaysNothing)
{
    uninstall({{"keepPreferences", "false"}});
    const QByteArray secondRun = uninstall({{"keepPreferences", "false"}}).log;
    EXPECT_EQ(secondRun.count("] [warning] "), 0) << secondRun.toStdString();
    EXPECT_EQ(secondRun.count("] [error] "), 0) << secondRun.toStdString();
}
