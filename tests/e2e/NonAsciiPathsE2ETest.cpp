// Users' machines name their folders in every language: the suite root, the
// host folders, ProgramData, the product data and the user's own folders may
// hold accented, Cyrillic and CJK letters, and every step works as with ASCII,
// with the paths in the log in UTF-8.
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray someProducts = {"Grainwick 3", "Tintara 5", "Rectilo", "Graymere 2", "Lumbrio 3"};
const QString locationsKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\Locations";
const QString suiteFolder = QString::fromUtf8("Suíte Пробный 套件");
const QString hostFolder = QString::fromUtf8("hosts/Фотошоп 写真 Ærø/Plug-ins");
const QString programDataFolder = QString::fromUtf8("Données Программы");
const QString presetName = QString::fromUtf8("Пресет 预设 Ü.preset");

class NonAsciiPathsE2ETest : public testing::Test
{
protected:
    void useMachine(std::unique_ptr<TestMachine> made)
    {
        machine = std::move(made);
        suiteRoot::create(machine->path(Place::Scratch, suiteFolder));
        machine->writeFile(Place::Scratch, suiteFolder + "/appData/Presets/" + presetName, "the user's look");
    }

    QString root() const { return machine->toolPath(Place::Scratch, suiteFolder); }
    QString photoshop() const { return machine->toolPath(Place::Scratch, hostFolder); }
    QString lightroom() const { return machine->toolPath(Place::RoamingAppData, "Adobe/Lightroom"); }

    QJsonObject request(const QJsonArray &hosts) const
    {
        return QJsonObject{{"rootDir", root()}, {"hosts", hosts},     {"plugins", someProducts},
                           {"language", 1},     {"version", "4.2.0"}, {"mixpanelEnabled", true}};
    }

    static QJsonObject host(const QString &appName, const QString &pluginPath, int type)
    {
        return QJsonObject{{"appName", appName}, {"pluginPath", pluginPath}, {"type", type}};
    }

    ToolRun run(const QJsonObject &request, const char *option = "--install",
                const QMap<QString, QString> &environment = {}) const
    {
        return machine->runQuietly(option, request, environment);
    }

    QString linkTarget(Place place, const QString &relative) const
    {
        return machine->comparable(machine->linkTarget(machine->path(place, relative)));
    }

    std::unique_ptr<TestMachine> machine;
};

} // namespace

TEST_F(NonAsciiPathsE2ETest, TheSuiteRootHostsProgramDataAndProductDataInstallAndUninstallAsWithAscii)
{
    useMachine(newTestMachine());
    machine->writeFile(Place::Scratch, programDataFolder + "/Other Maker/kept", "someone else's");
    const QMap<QString, QString> programData{{"ProgramData", machine->toolPath(Place::Scratch, programDataFolder)}};
    const ToolRun installation = run(request({host("Photoshop", photoshop(), 0)}), "--install", programData);
    EXPECT_EQ(linkTarget(Place::Scratch, hostFolder + "/Tavrin/Graymere 2/Graymere 2.8bf.lnk"),
              machine->comparable(root() + "/Graymere 2/Graymere 2.8bf"));
    EXPECT_TRUE(machine->exists(Place::Scratch, hostFolder + "/Tavrin/Rectilo/Rectilo.config"));
    EXPECT_EQ(machine->readFile(Place::Scratch, programDataFolder + "/Tavrin/Presets/" + presetName),
              "the user's look");
    EXPECT_EQ(machine->readFile(Place::Scratch, programDataFolder + "/Tavrin/Licenses/Orv.lic"),
              suiteRoot::contentOf("Orv.lic"));
    EXPECT_TRUE(machine->readFile(Place::Scratch, programDataFolder + "/Tavrin/Orv Collection/OrvCollection.cfg")
                    .contains("<key name=\"AllowSending\" type=\"bool\" value=\"1\"/>"));
    EXPECT_FALSE(machine->exists(Place::Scratch, suiteFolder + "/appData"));
    EXPECT_EQ(linkTarget(Place::StartMenu, "Tavrin Orv Collection/Rectilo.lnk"),
              machine->comparable(root() + "/Rectilo/Rectilo.exe"));
    EXPECT_TRUE(machine->comparable(installation.log).contains(machine->comparable(photoshop()).toUtf8()));
    EXPECT_FALSE(installation.log.contains("] [error] ")) << installation.log.toStdString();

    run(request({host("Photoshop", photoshop(), 0)}), "--config", programData);
    EXPECT_EQ(machine->comparable(machine->registryValues(locationsKey).value("0_Path").toString()),
              machine->comparable(photoshop()));

    run({{"keepPreferences", "false"}}, "--uninstall", programData);
    EXPECT_FALSE(machine->exists(Place::Scratch, hostFolder + "/Tavrin"));
    EXPECT_FALSE(machine->exists(Place::StartMenu, "Tavrin Orv Collection"));
    EXPECT_TRUE(machine->exists(Place::Scratch, suiteFolder + "/Rectilo"));
}

// The Windows program narrowed the log's path through the system's code page
// once, and a user whose name lay outside it got no log file at all.
TEST_F(NonAsciiPathsE2ETest, AUserWithACyrillicNameGetsALogFileAndTheirOwnFiles)
{
    useMachine(newTestMachineFor(QString::fromUtf8("Юрий")));
    const ToolRun report = machine->run({});
    EXPECT_EQ(report.exitCode, 0);
    EXPECT_FALSE(report.standardOutput.contains("] ")) << report.standardOutput.toStdString();
    EXPECT_TRUE(decodeAnswer(report.standardOutput).contains("currentLocale"));
    EXPECT_FALSE(report.log.isEmpty());
    EXPECT_FALSE(machine->entries(Place::RoamingAppData, "Tavrin/Orv Collection/logs").isEmpty());
    EXPECT_TRUE(machine->toolPath(Place::RoamingAppData).contains(QString::fromUtf8("Юрий")));

    const ToolRun installation = run(request({host("Lightroom Classic", lightroom(), 2)}));
    EXPECT_TRUE(machine->exists(Place::RoamingAppData, "Adobe/Lightroom/Modules/PluginParam.lrplugin"));
    EXPECT_TRUE(machine->readFile(Place::LocalAppData, "Tavrin/Orv Collection/OrvCollection.cfg").contains("en-GB"));
    EXPECT_TRUE(machine->comparable(installation.log).contains(machine->comparable(lightroom()).toUtf8()));
    EXPECT_FALSE(installation.log.contains("] [error] ")) << installation.log.toStdString();
}
