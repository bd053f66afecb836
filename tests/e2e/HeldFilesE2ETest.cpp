// A running host holds its plug-in files open, and on Windows without sharing
// them: a file that can't be replaced or deleted is logged with the system's
// error, and the job goes on with everything else, ends with 0 and never
// waits for the host. Linux keeps no one from a file that another program
// holds, so there the same jobs replace and delete it as always.
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};
const QString heldLink = "hosts/Photoshop/Plug-ins/Tavrin/Graymere 2/Graymere 2.8bf.lnk";
const QString heldModuleFile = "Adobe/Lightroom/Modules/PluginParam.lrplugin/Info.lua";

class HeldFilesE2ETest : public testing::Test
{
protected:
    HeldFilesE2ETest() { suiteRoot::create(machine->path(Place::Scratch, "suite")); }

    QString root() const { return machine->toolPath(Place::Scratch, "suite"); }
    QString photoshop() const { return machine->toolPath(Place::Scratch, "hosts/Photoshop/Plug-ins"); }
    QString lightroom() const { return machine->toolPath(Place::RoamingAppData, "Adobe/Lightroom"); }

    QJsonObject request() const
    {
        const QJsonArray hosts = {QJsonObject{{"appName", "Photoshop"}, {"pluginPath", photoshop()}, {"type", 0}},
                                  QJsonObject{{"appName", "Lightroom"}, {"pluginPath", lightroom()}, {"type", 2}}};
        return QJsonObject{{"rootDir", root()}, {"hosts", hosts},     {"plugins", allProducts},
                           {"language", 1},     {"version", "4.2.0"}, {"isUpdate", "true"}};
    }

    ToolRun run(const char *option, const QJsonObject &request) const { return machine->runQuietly(option, request); }

    // A first installation, recorded as the wizard does, and a new suite root for the update.
    void installOnce() const
    {
        run("--install", request());
        run("--config", request());
        suiteRoot::create(machine->path(Place::Scratch, "suite"));
    }

    QString inLog(const ToolRun &run) const { return machine->comparable(QString::fromUtf8(run.log)); }
    QString comparable(const QString &path) const { return machine->comparable(path); }

    void expectTheRestInstalled() const
    {
        EXPECT_TRUE(machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins/Tavrin/Rectilo"));
        EXPECT_TRUE(machine->exists(Place::LocalAppData, "Tavrin/Orv Collection/OrvCollection.cfg"));
        EXPECT_FALSE(machine->entries(Place::StartMenu, "Tavrin Orv Collection").isEmpty());
        EXPECT_EQ(machine->entries(Place::CommonPictures, "Rectilo Samples"),
                  (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

} // namespace

TEST_F(HeldFilesE2ETest, AnUninstallationGoesOnPastAPlugInLinkThatAHostHolds)
{
    installOnce();
    ToolRun uninstallation;
    {
        const auto host = machine->holdFile(Place::Scratch, heldLink);
        ASSERT_TRUE(host->isRunning());
        uninstallation = run("--uninstall", {{"keepPreferences", "false"}});
    }
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins/Tavrin/Rectilo"));
    EXPECT_FALSE(machine->exists(Place::StartMenu, "Tavrin Orv Collection"));
    EXPECT_FALSE(machine->exists(Place::RoamingAppData, "Adobe/Lightroom/Modules/PluginParam.lrplugin"));
    if (machine->isWine()) {
        EXPECT_TRUE(machine->exists(Place::Scratch, heldLink));
        EXPECT_TRUE(inLog(uninstallation).contains("] [warning] ")) << inLog(uninstallation).toStdString();
        EXPECT_TRUE(inLog(uninstallation).contains("Failed to completely delete folder " + comparable(photoshop())));
    } else {
        EXPECT_FALSE(machine->exists(Place::Scratch, heldLink));
    }
    // Once the host has ended, the next uninstallation takes the rest.
    run("--uninstall", {{"keepPreferences", "false"}});
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/Photoshop/Plug-ins/Tavrin"));
}

TEST_F(HeldFilesE2ETest, AnUpdateGoesOnPastALightroomModuleFileThatAHostHolds)
{
    installOnce();
    machine->writeFile(Place::Scratch, "suite/bin/lrplugins/PluginParam.lrplugin/Info.lua", "the new module\n");
    ToolRun update;
    {
        const auto host = machine->holdFile(Place::RoamingAppData, heldModuleFile);
        ASSERT_TRUE(host->isRunning());
        update = run("--install", request());
    }
    const QString log = inLog(update);
    if (machine->isWine()) {
        EXPECT_TRUE(log.contains("] Failed to install, because of following issue: ")) << log.toStdString();
        EXPECT_TRUE(log.contains(comparable(machine->toolPath(Place::RoamingAppData, heldModuleFile))));
        EXPECT_NE(machine->readFile(Place::RoamingAppData, heldModuleFile), "the new module\n");
    } else {
        EXPECT_FALSE(log.contains("] Failed to install, because")) << log.toStdString();
        EXPECT_TRUE(machine->readFile(Place::RoamingAppData, heldModuleFile).startsWith("the new module\n"));
    }
    expectTheRestInstalled();
}

TEST_F(HeldFilesE2ETest, AnUpdateGoesOnPastAnApplicationDataFileThatAHostHolds)
{
    installOnce();
    machine->writeFile(Place::Scratch, "suite/appData/Licenses/Orv.lic", "the new licence\n");
    ToolRun update;
    {
        const auto host = machine->holdFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic");
        ASSERT_TRUE(host->isRunning());
        update = run("--install", request());
    }
    const QString log = inLog(update);
    if (machine->isWine()) {
        EXPECT_TRUE(log.contains("] failed to move files ")) << log.toStdString();
        EXPECT_TRUE(log.contains(comparable(machine->toolPath(Place::ProgramData, "Tavrin/Licenses/Orv.lic"))));
        EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), suiteRoot::contentOf("Orv.lic"));
    } else {
        EXPECT_FALSE(log.contains("] failed to move files ")) << log.toStdString();
        EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), "the new licence\n");
    }
    expectTheRestInstalled();
}
