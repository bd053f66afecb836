#include "DeployerRun.h"
#include "Machine.h"
#include "MachineLog.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

// A machine as an installation and the config mode leave it, written by hand
// so that each removal can be seen on its own.
class UninstallE2ETest : public testing::Test
{
protected:
    UninstallE2ETest()
    {
        writeMachineHive({"Tintara 5", "Rectilo", "Bracketon 2"}, "\"0_Path\"=\"" + photoshop() +
                                                                      "\"\n\"0_Name\"=\"Photoshop\"\n"
                                                                      "\"1_Path\"=\"" +
                                                                      lightroom() + "\"\n\"1_Name\"=\"Lightroom\"\n");
        for (const char *file : {"usr/share/applications/Tavrin Orv Collection/Tintara 5.lnk",
                                 "hosts/ps/Tavrin/Tintara 5/Tintara 5.8bf.lnk",
                                 "hosts/ps/Other/kept.8bf",
                                 "hosts/lr/Modules/Bracketon2.lrplugin/Info.lua",
                                 "hosts/lr/Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                 "hosts/lr/Modules/Other.lrplugin/Info.lua",
                                 "hosts/lr/External Editor Presets/Tintara5.lrtemplate",
                                 "hosts/lr/External Editor Presets/Mine.lrtemplate",
                                 "hosts/lr/Export Presets/Orv Collection/x.lrtemplate",
                                 "home/Pictures/Rectilo Samples/Sign.jpg",
                                 "home/Pictures/Holiday.jpg",
                                 "home/.local/share/Tavrin/Tintara 5/Tintara5.cfg",
                                 "home/.local/share/Tavrin/Tintara 5/LastEdit",
                                 "home/.local/share/Tavrin/Tintara 5/LastEdit.cfg",
                                 "home/.local/share/Tavrin/Tintara 5/crash_reports/1.dmp",
                                 "home/.local/share/Tavrin/Tintara 5/Presets/Mine.preset",
                                 "home/.local/share/Tavrin/Tintara 4/Tintara4.cfg",
                                 "home/.local/share/Tintara 5/cache/c.bin",
                                 "home/.local/share/Tintara 4/cache/c.bin",
                                 "home/.local/share/Tavrin/Zonal Palette/cache/p.bin",
                                 "home/.local/share/Tavrin/Zonal Palette/com.tavrin.zonaltool.lastedit.prefs",
                                 "home/.local/share/Tavrin/Zonal Palette/layout.xml",
                                 "ProgramData/Tavrin/bin/plugins/x.dat",
                                 "ProgramData/Tavrin/Rectilo/r.dat",
                                 "ProgramData/Tavrin/Orv Collection/OrvCollection.cfg",
                                 "ProgramData/Tavrin/Presets/Default.preset",
                                 "suite/bin/Tintara 5.exe"})
            machine.writeFile(file, "x");
    }

    QString photoshop() const { return machine.path("hosts/ps"); }
    QString lightroom() const { return machine.path("hosts/lr"); }

    void writeMachineHive(const QStringList &recorded, const QString &locations)
    {
        QByteArray hive = "Windows Registry Editor Version 5.00\n\n"
                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\Locations]\n" +
                          locations.toUtf8() +
                          "\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\"
                          "Uninstall\\Orv Collection\\Applications]\n";
        for (const QString &product : recorded)
            hive += "\"" + product.toUtf8() + "\"=\"/suite/" + product.toUtf8() + ".exe\"\n";
        machine.writeFile("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg", hive);
    }

    void uninstall(const QJsonObject &request) const
    {
        const DeployerRun run = runDeployer(machine, {"--uninstall", encodeRequest(request)});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.standardOutput, "");
    }

    bool exists(const QString &relative) const { return QFileInfo::exists(machine.path(relative)); }

    int warnings() const { return machineLog(machine).count("] [warning] "); }

    Machine machine;
};

} // namespace

TEST_F(UninstallE2ETest, RemovesWhatTheInstallationSpreadAndKeepsTheRest)
{
    uninstall({{"keepPreferences", "true"}});
    EXPECT_FALSE(exists("usr/share/applications/Tavrin Orv Collection"));
    EXPECT_FALSE(exists("hosts/ps/Tavrin"));
    EXPECT_TRUE(exists("hosts/ps/Other/kept.8bf"));
    EXPECT_FALSE(exists("hosts/lr/Modules/Bracketon2.lrplugin"));
    EXPECT_FALSE(exists("hosts/lr/Modules/PluginParam.lrplugin"));
    EXPECT_TRUE(exists("hosts/lr/Modules/Other.lrplugin/Info.lua"));
    EXPECT_FALSE(exists("hosts/lr/External Editor Presets/Tintara5.lrtemplate"));
    EXPECT_TRUE(exists("hosts/lr/External Editor Presets/Mine.lrtemplate"));
    EXPECT_FALSE(exists("hosts/lr/Export Presets/Orv Collection"));
    EXPECT_FALSE(exists("home/Pictures/Rectilo Samples"));
    EXPECT_TRUE(exists("home/Pictures/Holiday.jpg"));
    EXPECT_FALSE(exists("ProgramData/Tavrin/bin/plugins"));
    EXPECT_FALSE(exists("ProgramData/Tavrin/Rectilo"));
    EXPECT_FALSE(exists("ProgramData/Tavrin/Orv Collection"));
    EXPECT_TRUE(exists("ProgramData/Tavrin/Presets/Default.preset"));
    EXPECT_TRUE(exists("suite/bin/Tintara 5.exe"));
    EXPECT_TRUE(exists("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, KeepingPreferencesTakesOnlyTheFourItems)
{
    uninstall({{"keepPreferences", "true"}});
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Tintara 5/Tintara5.cfg"));
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Tintara 5/LastEdit"));
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Tintara 5/LastEdit.cfg"));
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Tintara 5/crash_reports"));
    EXPECT_TRUE(exists("home/.local/share/Tavrin/Tintara 5/Presets/Mine.preset"));
    EXPECT_FALSE(exists("home/.local/share/Tintara 5/cache"));
    EXPECT_TRUE(exists("home/.local/share/Tintara 5"));
}

TEST_F(UninstallE2ETest, OnlyTheStringFalseTakesTheWholeProductFolder)
{
    for (const QJsonObject &keeping : {QJsonObject{{"keepPreferences", false}}, QJsonObject{}}) {
        uninstall(keeping);
        EXPECT_TRUE(exists("home/.local/share/Tavrin/Tintara 5/Presets/Mine.preset"));
    }
    uninstall({{"keepPreferences", "false"}});
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Tintara 5"));
    EXPECT_TRUE(exists("home/.local/share/Tavrin"));
}

TEST_F(UninstallE2ETest, AProductNotRecordedKeepsItsDataAndCache)
{
    uninstall({{"keepPreferences", "false"}});
    EXPECT_TRUE(exists("home/.local/share/Tavrin/Tintara 4/Tintara4.cfg"));
    EXPECT_TRUE(exists("home/.local/share/Tintara 4/cache/c.bin"));
}

TEST_F(UninstallE2ETest, TheZonalPaletteLosesItsCacheAndPrefsOnly)
{
    uninstall({});
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Zonal Palette/cache"));
    EXPECT_FALSE(exists("home/.local/share/Tavrin/Zonal Palette/com.tavrin.zonaltool.lastedit.prefs"));
    EXPECT_TRUE(exists("home/.local/share/Tavrin/Zonal Palette/layout.xml"));
}

TEST_F(UninstallE2ETest, WithoutTheMakersLocalFolderTheCachesOutsideItStay)
{
    QDir(machine.path("home/.local/share/Tavrin")).removeRecursively();
    uninstall({{"keepPreferences", "false"}});
    EXPECT_TRUE(exists("home/.local/share/Tintara 5/cache/c.bin"));
    EXPECT_FALSE(exists("hosts/ps/Tavrin"));
}

TEST_F(UninstallE2ETest, ATemplateFileAtAModulesPlaceGoesAsAFile)
{
    QDir(machine.path("hosts/lr/Modules/Bracketon2.lrplugin")).removeRecursively();
    machine.writeFile("hosts/lr/Modules/Bracketon2.lrplugin", "a file, not a module");
    machine.writeFile("hosts/lr/External Editor Presets/Grainwick3.lrtemplate/inside.txt", "a folder, not a preset");
    uninstall({});
    EXPECT_FALSE(exists("hosts/lr/Modules/Bracketon2.lrplugin"));
    EXPECT_FALSE(exists("hosts/lr/External Editor Presets/Grainwick3.lrtemplate"));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, ADoubledPathAndAnyKeyWithPathAreTaken)
{
    writeMachineHive({}, "\"0_Path\"=\"" + photoshop() + "\"\n\"1_Path\"=\"" + photoshop() + "\"\n\"MyPathName\"=\"" +
                             lightroom() + "\"\n\"2_Name\"=\"" + machine.path("hosts") + "\"\n");
    uninstall({});
    EXPECT_FALSE(exists("hosts/ps/Tavrin"));
    EXPECT_FALSE(exists("hosts/lr/Modules/Bracketon2.lrplugin"));
    EXPECT_TRUE(exists("hosts/ps/Other/kept.8bf"));
    EXPECT_EQ(warnings(), 0);
}

TEST_F(UninstallE2ETest, ASecondRunFindsNothingAndSaysNothing)
{
    uninstall({{"keepPreferences", "false"}});
    const QByteArray firstLog = machineLog(machine);
    uninstall({{"keepPreferences", "false"}});
    const QByteArray secondRun = machineLog(machine).mid(firstLog.size());
    EXPECT_EQ(secondRun.count("] [warning] "), 0) << secondRun.toStdString();
    EXPECT_EQ(secondRun.count("] [error] "), 0) << secondRun.toStdString();
}
