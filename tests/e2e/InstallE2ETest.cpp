#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QDir>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};

const QString uninstallKey = "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

class InstallE2ETest : public testing::Test
{
protected:
    InstallE2ETest() { suiteRoot::create(machine->path(Place::Scratch, "suite")); }

    QString root() const { return machine->toolPath(Place::Scratch, "suite"); }
    QString photoshop() const { return machine->toolPath(Place::Scratch, "hosts/Photoshop/Plug-ins"); }
    QString lightroom() const { return machine->toolPath(Place::RoamingAppData, "Adobe/Lightroom/"); }

    bool inPhotoshop(const QString &relative) const
    {
        return machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins/" + relative);
    }
    bool inLightroom(const QString &relative) const
    {
        return machine->exists(Place::RoamingAppData, "Adobe/Lightroom/" + relative);
    }
    QByteArray configFile(const QString &relative) const
    {
        return machine->readFile(Place::LocalAppData, "Tavrin/" + relative);
    }
    QByteArray collectionFile() const
    {
        return machine->readFile(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg");
    }
    QStringList startMenu() const { return machine->entries(Place::StartMenu, "Tavrin Orv Collection"); }
    QStringList samples() const { return machine->entries(Place::CommonPictures, "Rectilo Samples"); }

    QJsonObject request(const QJsonArray &hosts, const QJsonArray &plugins = allProducts) const
    {
        return QJsonObject{{"rootDir", root()}, {"hosts", hosts},     {"plugins", plugins},
                           {"language", 1},     {"version", "4.2.0"}, {"mixpanelEnabled", true}};
    }

    static QJsonObject host(const QString &appName, const QString &pluginPath, int type)
    {
        return QJsonObject{{"appName", appName}, {"pluginPath", pluginPath}, {"type", type}};
    }

    QJsonArray bothHosts() const
    {
        return {host("Photoshop CC 2018 (64-Bit)", photoshop(), 0), host("Lightroom Classic CC 7", lightroom(), 2)};
    }

    ToolRun run(const char *option, const QJsonObject &request) const { return machine->runQuietly(option, request); }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

} // namespace

TEST_F(InstallE2ETest, AFullInstallationDeploysConfiguresLinksAndMovesTheData)
{
    run("--install", request(bothHosts()));
    EXPECT_EQ(machine->entries(Place::Scratch, "hosts/Photoshop/Plug-ins/Tavrin").size(), 13);
    EXPECT_TRUE(inLightroom("Modules/PluginParam.lrplugin"));
    EXPECT_TRUE(configFile("Rectilo/Rectilo.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(configFile("Orv Collection/OrvCollection.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(collectionFile().contains("<key name=\"AllowSending\" type=\"bool\" value=\"1\"/>"));
    EXPECT_EQ(startMenu().size(), 9);
    EXPECT_FALSE(startMenu().contains("Rectilo Launcher.lnk"));
    EXPECT_EQ(samples(), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), suiteRoot::contentOf("Orv.lic"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/pictures"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/appData"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/bin/lrplugins"));
}

TEST_F(InstallE2ETest, OnlyTheStringTrueIsAnUpdate)
{
    const QByteArray entry = "[" + uninstallKey.toUtf8() + "\\";
    machine->seedRegistry(entry + "{0D5A3B0E}]\n\"DisplayName\"=\"Orv Collection\"\n\n" + entry +
                          "OrvOld]\n\"DisplayName\"=\"Orv Collection\"\n\n" + entry +
                          "Other]\n\"DisplayName\"=\"orv collection\"\n\n");
    QJsonObject asBoolean = request({});
    asBoolean.insert("isUpdate", true);
    run("--install", asBoolean);
    EXPECT_EQ(machine->registryValues(uninstallKey).keys(),
              (QStringList{"OrvOld/DisplayName", "Other/DisplayName", "{0D5A3B0E}/DisplayName"}));
    QJsonObject asString = request({});
    asString.insert("isUpdate", "true");
    run("--install", asString);
    EXPECT_EQ(machine->registryValues(uninstallKey).keys(), QStringList{"Other/DisplayName"});
}

TEST_F(InstallE2ETest, AFolderNamedTwiceIsServedOnceForTheFirstHost)
{
    run("--install", request({host("Photoshop", lightroom(), 0), host("Lightroom", lightroom(), 2)}));
    EXPECT_TRUE(inLightroom("Tavrin"));
    EXPECT_FALSE(inLightroom("Modules"));
    EXPECT_FALSE(machine->logContains("Unknown host type"));
}

TEST_F(InstallE2ETest, AHostWithoutTypeIsAPhotoshop)
{
    run("--install", request({QJsonObject{{"pluginPath", photoshop()}}}));
    EXPECT_TRUE(inPhotoshop("Tavrin/Rectilo"));
}

TEST_F(InstallE2ETest, AnUnknownTypeIsLoggedAndTheRestGoesOn)
{
    run("--install", request({host("Mystery", machine->toolPath(Place::Scratch, "hosts/x"), 7),
                              host("Negative", machine->toolPath(Place::Scratch, "hosts/y"), -1),
                              host("Photoshop", photoshop(), 1)}));
    EXPECT_TRUE(machine->logContains("] Unknown host type requested - app: Mystery, path: " +
                                     machine->toolPath(Place::Scratch, "hosts/x") + ", type: 7\n"));
    EXPECT_TRUE(machine->logContains("Unknown host type requested - app: Negative, path: " +
                                     machine->toolPath(Place::Scratch, "hosts/y") + ", type: -1\n"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/x"));
    EXPECT_TRUE(inPhotoshop("Tavrin/Rectilo"));
}

TEST_F(InstallE2ETest, LanguageSixteenIsThai)
{
    QJsonObject thai = request({});
    thai.insert("language", 16);
    run("--install", thai);
    EXPECT_TRUE(configFile("Orv Collection/OrvCollection.cfg").contains("value=\"th\""));
}

TEST_F(InstallE2ETest, LanguageSeventeenSkipsTheInstallationButNotTheSamples)
{
    QJsonObject wrong = request(bothHosts());
    wrong.insert("language", 17);
    run("--install", wrong);
    EXPECT_TRUE(machine->logContains("] Wrong language ID provided, skip processing\n"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins"));
    EXPECT_FALSE(machine->exists(Place::LocalAppData, "Tavrin"));
    EXPECT_FALSE(machine->exists(Place::StartMenu, "Tavrin Orv Collection"));
    EXPECT_EQ(samples(), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_TRUE(machine->exists(Place::ProgramData, "Tavrin/Licenses/Orv.lic"));
}

TEST_F(InstallE2ETest, WithoutLanguageTheSamplesAreGerman)
{
    QJsonObject missing = request(bothHosts());
    missing.remove("language");
    run("--install", missing);
    EXPECT_TRUE(machine->logContains("Wrong language ID provided, skip processing"));
    EXPECT_EQ(samples(), (QStringList{"Harbour.jpg", "Schild.jpg", "Sunset.jpg", "Tafel.jpg"}));
}

TEST_F(InstallE2ETest, NoHostsStillWritesConfigurationAndLinks)
{
    run("--install", request({}));
    EXPECT_FALSE(configFile("Orv Collection/OrvCollection.cfg").isEmpty());
    EXPECT_FALSE(collectionFile().isEmpty());
    EXPECT_EQ(startMenu().size(), 9);
}

TEST_F(InstallE2ETest, TheWizardsLocalFolderIsASecondDestination)
{
    QJsonObject nonAdmin = request({});
    nonAdmin.insert("localAppDataDir", machine->toolPath(Place::Scratch, "wizard/Local"));
    run("--install", nonAdmin);
    EXPECT_TRUE(
        machine->logContains("Potentially non-admin Installation. 2 destinations with configFiles will be filled: "));
    EXPECT_TRUE(machine->exists(Place::Scratch, "wizard/Local/Tavrin/Tintara 5/Tintara5.cfg"));
    EXPECT_FALSE(configFile("Tintara 5/Tintara5.cfg").isEmpty());
}

TEST_F(InstallE2ETest, ARerunWithAnotherLanguageKeepsTheProductFilesButNotTheLanguageFile)
{
    run("--install", request({}));
    suiteRoot::create(machine->path(Place::Scratch, "suite"));
    QJsonObject french = request({});
    french.insert("language", 5);
    run("--install", french);
    EXPECT_TRUE(configFile("Orv Collection/OrvCollection.cfg").contains("value=\"fr\""));
    EXPECT_TRUE(configFile("Rectilo/Rectilo.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(machine->logContains("Failed to copy file Rectilo.cfg to folder " +
                                     machine->toolPath(Place::LocalAppData, "Tavrin") + "/Rectilo\n"));
}

TEST_F(InstallE2ETest, TheVersionLandsLiterally)
{
    QJsonObject odd = request({});
    odd.insert("version", "%3 <beta>");
    odd.insert("mixpanelEnabled", false);
    run("--install", odd);
    const QByteArray file = collectionFile();
    EXPECT_EQ(file.count("<key name=\"Version\" type=\"string\" value=\"%3 <beta>\"/>"), 2);
    EXPECT_TRUE(file.contains("<key name=\"AllowSending\" type=\"bool\" value=\"0\"/>"));
}

TEST_F(InstallE2ETest, AMissingProgramDataFolderOnlyLosesTheCollectionFile)
{
    const ToolRun result = machine->run({"--install", encodeRequest(request({}))},
                                        {{"ProgramData", machine->toolPath(Place::Scratch, "Missing")}});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(machine->logContains("] Failed to find program data folder!\n"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "Missing/Tavrin/Orv Collection"));
    EXPECT_EQ(startMenu().size(), 9);
}

TEST_F(InstallE2ETest, AnExecutableTwiceInTheTreeGivesOneLinkAndAWarning)
{
    machine->writeFile(Place::Scratch, "suite/old/Tintara 5.exe", "older copy");
    run("--install", request({}));
    EXPECT_EQ(startMenu().count("Tintara 5.lnk"), 1);
    EXPECT_TRUE(machine->logContains("] Failed to create link from "));
}

TEST_F(InstallE2ETest, SamplesModeReadsLangAndNotLanguage)
{
    run("--samples", QJsonObject{{"rootDir", root()}, {"language", 12}});
    EXPECT_EQ(samples(), (QStringList{"Harbour.jpg", "Schild.jpg", "Sunset.jpg", "Tafel.jpg"}));
}

TEST_F(InstallE2ETest, SamplesForLanguageThreeAndNinetyNineAreFrom1033)
{
    for (int language : {3, 99}) {
        suiteRoot::create(machine->path(Place::Scratch, "suite"));
        QDir(machine->path(Place::CommonPictures, "Rectilo Samples")).removeRecursively();
        run("--samples", QJsonObject{{"rootDir", root()}, {"lang", language}});
        EXPECT_EQ(samples(), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"})) << language;
    }
}

TEST_F(InstallE2ETest, SamplesModeDoesNothingElse)
{
    run("--samples", QJsonObject{{"rootDir", root()}, {"lang", 13}, {"hosts", bothHosts()}});
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins"));
    EXPECT_TRUE(machine->exists(Place::Scratch, "suite/appData"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/pictures"));
}

TEST_F(InstallE2ETest, AppDataMergesAndAFailingCopyStillRemovesTheSource)
{
    machine->writeFile(Place::ProgramData, "Tavrin/Presets/Mine.preset", "user's own");
    machine->writeFile(Place::ProgramData, "Tavrin/Licenses", "a file where the suite has a folder");
    run("--install", request({}));
    EXPECT_TRUE(machine->logContains("] failed to move files "));
    EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Presets/Mine.preset"), "user's own");
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/appData"));
}
