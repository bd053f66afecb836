#include "DeployerRun.h"
#include "Machine.h"
#include "MachineLog.h"
#include "RegistryHiveFormat.h"
#include "SuiteRoot.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};

class InstallE2ETest : public testing::Test
{
protected:
    InstallE2ETest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }
    QString photoshop() const { return machine.path("hosts/Photoshop/Plug-ins"); }
    QString lightroom() const { return machine.path("home/.config/Adobe/Lightroom/"); }
    QString configHome() const { return machine.path("home/.local/share/Tavrin"); }
    QString startMenu() const { return machine.path("usr/share/applications/Tavrin Orv Collection"); }
    QString samples() const { return machine.path("home/Pictures/Rectilo Samples"); }

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

    DeployerRun run(const char *option, const QJsonObject &request) const
    {
        const DeployerRun result = runDeployer(machine, {option, encodeRequest(request)});
        EXPECT_TRUE(result.exitedNormally);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.standardOutput, "");
        return result;
    }

    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    static QStringList entries(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }

    QByteArray log() const { return machineLog(machine); }

    Machine machine;
};

} // namespace

TEST_F(InstallE2ETest, AFullInstallationDeploysConfiguresLinksAndMovesTheData)
{
    run("--install", request(bothHosts()));
    EXPECT_EQ(entries(photoshop() + "/Tavrin").size(), 13);
    EXPECT_TRUE(QDir(lightroom() + "Modules/PluginParam.lrplugin").exists());
    EXPECT_TRUE(contentOf(configHome() + "/Rectilo/Rectilo.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(contentOf(configHome() + "/Orv Collection/OrvCollection.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(contentOf(machine.path("ProgramData/Tavrin/Orv Collection/OrvCollection.cfg"))
                    .contains("<key name=\"AllowSending\" type=\"bool\" value=\"1\"/>"));
    EXPECT_EQ(entries(startMenu()).size(), 9);
    EXPECT_FALSE(entries(startMenu()).contains("Rectilo Launcher.lnk"));
    EXPECT_EQ(entries(samples()), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_EQ(contentOf(machine.path("ProgramData/Tavrin/Licenses/Orv.lic")), suiteRoot::contentOf("Orv.lic"));
    EXPECT_FALSE(QDir(root() + "/pictures").exists());
    EXPECT_FALSE(QDir(root() + "/appData").exists());
    EXPECT_FALSE(QDir(root() + "/bin/lrplugins").exists());
}

TEST_F(InstallE2ETest, OnlyTheStringTrueIsAnUpdate)
{
    const QByteArray uninstall = "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    const QByteArray hive = "Windows Registry Editor Version 5.00\n\n" + uninstall +
                            "{0D5A3B0E}]\n\"DisplayName\"=\"Orv Collection\"\n\n" + uninstall +
                            "OrvOld]\n\"DisplayName\"=\"Orv Collection\"\n\n" + uninstall +
                            "Other]\n\"DisplayName\"=\"orv collection\"\n\n";
    const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";
    machine.writeFile(userHive, hive);
    QJsonObject asBoolean = request({});
    asBoolean.insert("isUpdate", true);
    run("--install", asBoolean);
    EXPECT_EQ(registryHive::parse(contentOf(machine.path(userHive)), "HKEY_CURRENT_USER").size(), 3);
    QJsonObject asString = request({});
    asString.insert("isUpdate", "true");
    run("--install", asString);
    EXPECT_EQ(registryHive::parse(contentOf(machine.path(userHive)), "HKEY_CURRENT_USER").keys(),
              QStringList{"Software/Microsoft/Windows/CurrentVersion/Uninstall/Other/DisplayName"});
}

TEST_F(InstallE2ETest, AFolderNamedTwiceIsServedOnceForTheFirstHost)
{
    run("--install", request({host("Photoshop", lightroom(), 0), host("Lightroom", lightroom(), 2)}));
    EXPECT_TRUE(QDir(lightroom() + "Tavrin").exists());
    EXPECT_FALSE(QDir(lightroom() + "Modules").exists());
    EXPECT_FALSE(log().contains("Unknown host type"));
}

TEST_F(InstallE2ETest, AHostWithoutTypeIsAPhotoshop)
{
    run("--install", request({QJsonObject{{"pluginPath", photoshop()}}}));
    EXPECT_TRUE(QDir(photoshop() + "/Tavrin/Rectilo").exists());
}

TEST_F(InstallE2ETest, AnUnknownTypeIsLoggedAndTheRestGoesOn)
{
    run("--install", request({host("Mystery", machine.path("hosts/x"), 7),
                              host("Negative", machine.path("hosts/y"), -1), host("Photoshop", photoshop(), 1)}));
    EXPECT_TRUE(log().contains(
        "] Unknown host type requested - app: Mystery, path: " + machine.path("hosts/x").toUtf8() + ", type: 7\n"));
    EXPECT_TRUE(log().contains(
        "Unknown host type requested - app: Negative, path: " + machine.path("hosts/y").toUtf8() + ", type: -1\n"));
    EXPECT_FALSE(QDir(machine.path("hosts/x")).exists());
    EXPECT_TRUE(QDir(photoshop() + "/Tavrin/Rectilo").exists());
}

TEST_F(InstallE2ETest, LanguageSixteenIsThai)
{
    QJsonObject thai = request({});
    thai.insert("language", 16);
    run("--install", thai);
    EXPECT_TRUE(contentOf(configHome() + "/Orv Collection/OrvCollection.cfg").contains("value=\"th\""));
}

TEST_F(InstallE2ETest, LanguageSeventeenSkipsTheInstallationButNotTheSamples)
{
    QJsonObject wrong = request(bothHosts());
    wrong.insert("language", 17);
    run("--install", wrong);
    EXPECT_TRUE(log().contains("] Wrong language ID provided, skip processing\n"));
    EXPECT_FALSE(QDir(photoshop()).exists());
    EXPECT_FALSE(QDir(configHome()).exists());
    EXPECT_FALSE(QDir(startMenu()).exists());
    EXPECT_EQ(entries(samples()), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_TRUE(QFile::exists(machine.path("ProgramData/Tavrin/Licenses/Orv.lic")));
}

TEST_F(InstallE2ETest, WithoutLanguageTheSamplesAreGerman)
{
    QJsonObject missing = request(bothHosts());
    missing.remove("language");
    run("--install", missing);
    EXPECT_TRUE(log().contains("Wrong language ID provided, skip processing"));
    EXPECT_EQ(entries(samples()), (QStringList{"Harbour.jpg", "Schild.jpg", "Sunset.jpg", "Tafel.jpg"}));
}

TEST_F(InstallE2ETest, NoHostsStillWritesConfigurationAndLinks)
{
    run("--install", request({}));
    EXPECT_TRUE(QFile::exists(configHome() + "/Orv Collection/OrvCollection.cfg"));
    EXPECT_TRUE(QFile::exists(machine.path("ProgramData/Tavrin/Orv Collection/OrvCollection.cfg")));
    EXPECT_EQ(entries(startMenu()).size(), 9);
}

TEST_F(InstallE2ETest, TheWizardsLocalFolderIsASecondDestination)
{
    QJsonObject nonAdmin = request({});
    nonAdmin.insert("localAppDataDir", machine.path("wizard/Local"));
    run("--install", nonAdmin);
    EXPECT_TRUE(log().contains("Potentially non-admin Installation. 2 destinations with configFiles will be filled: "));
    EXPECT_TRUE(QFile::exists(machine.path("wizard/Local/Tavrin/Tintara 5/Tintara5.cfg")));
    EXPECT_TRUE(QFile::exists(configHome() + "/Tintara 5/Tintara5.cfg"));
}

TEST_F(InstallE2ETest, ARerunWithAnotherLanguageKeepsTheProductFilesButNotTheLanguageFile)
{
    run("--install", request({}));
    suiteRoot::create(root());
    QJsonObject french = request({});
    french.insert("language", 5);
    run("--install", french);
    EXPECT_TRUE(contentOf(configHome() + "/Orv Collection/OrvCollection.cfg").contains("value=\"fr\""));
    EXPECT_TRUE(contentOf(configHome() + "/Rectilo/Rectilo.cfg").contains("value=\"en-GB\""));
    EXPECT_TRUE(log().contains("Failed to copy file Rectilo.cfg to folder " + configHome().toUtf8() + "/Rectilo\n"));
}

TEST_F(InstallE2ETest, TheVersionLandsLiterally)
{
    QJsonObject odd = request({});
    odd.insert("version", "%3 <beta>");
    odd.insert("mixpanelEnabled", false);
    run("--install", odd);
    const QByteArray file = contentOf(machine.path("ProgramData/Tavrin/Orv Collection/OrvCollection.cfg"));
    EXPECT_EQ(file.count("<key name=\"Version\" type=\"string\" value=\"%3 <beta>\"/>"), 2);
    EXPECT_TRUE(file.contains("<key name=\"AllowSending\" type=\"bool\" value=\"0\"/>"));
}

TEST_F(InstallE2ETest, AMissingProgramDataFolderOnlyLosesTheCollectionFile)
{
    QProcessEnvironment environment = machine.environment();
    environment.insert("ProgramData", machine.path("Missing"));
    const DeployerRun result = runDeployer(environment, machine.root(), {"--install", encodeRequest(request({}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(log().contains("] Failed to find program data folder!\n"));
    EXPECT_FALSE(QFileInfo::exists(machine.path("Missing/Tavrin/Orv Collection")));
    EXPECT_EQ(entries(startMenu()).size(), 9);
}

TEST_F(InstallE2ETest, AnExecutableTwiceInTheTreeGivesOneLinkAndAWarning)
{
    machine.writeFile("suite/old/Tintara 5.exe", "older copy");
    run("--install", request({}));
    EXPECT_EQ(entries(startMenu()).count("Tintara 5.lnk"), 1);
    EXPECT_TRUE(log().contains("] Failed to create link from "));
}

TEST_F(InstallE2ETest, SamplesModeReadsLangAndNotLanguage)
{
    run("--samples", QJsonObject{{"rootDir", root()}, {"language", 12}});
    EXPECT_EQ(entries(samples()), (QStringList{"Harbour.jpg", "Schild.jpg", "Sunset.jpg", "Tafel.jpg"}));
}

TEST_F(InstallE2ETest, SamplesForLanguageThreeAndNinetyNineAreFrom1033)
{
    for (int language : {3, 99}) {
        suiteRoot::create(root());
        QDir(samples()).removeRecursively();
        run("--samples", QJsonObject{{"rootDir", root()}, {"lang", language}});
        EXPECT_EQ(entries(samples()), (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"})) << language;
    }
}

TEST_F(InstallE2ETest, SamplesModeDoesNothingElse)
{
    run("--samples", QJsonObject{{"rootDir", root()}, {"lang", 13}, {"hosts", bothHosts()}});
    EXPECT_FALSE(QDir(photoshop()).exists());
    EXPECT_TRUE(QDir(root() + "/appData").exists());
    EXPECT_FALSE(QDir(root() + "/pictures").exists());
}

TEST_F(InstallE2ETest, AppDataMergesAndAFailingCopyStillRemovesTheSource)
{
    machine.writeFile("ProgramData/Tavrin/Presets/Mine.preset", "user's own");
    machine.writeFile("ProgramData/Tavrin/Licenses", "a file where the suite has a folder");
    run("--install", request({}));
    EXPECT_TRUE(log().contains("] failed to move files "));
    EXPECT_EQ(contentOf(machine.path("ProgramData/Tavrin/Presets/Mine.preset")), "user's own");
    EXPECT_FALSE(QDir(root() + "/appData").exists());
}
