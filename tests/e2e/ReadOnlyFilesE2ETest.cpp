// A suite root unpacked from an archive may hold read-only files, and the
// copies of the application data and the Lightroom modules take that along
// (the configuration files are copied once and never replaced anyway):
// an update must still replace them, and an uninstallation remove them. On
// Linux the tool runs without root's rights here, which would write anyway;
// Wine run by root lets the Windows program write them as well.
#include "LinuxTestMachine.h"
#include "SuiteRoot.h"
#include "TestMachine.h"
#include "UnprivilegedRun.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray someProducts = {"Grainwick 3", "Tintara 5", "Rectilo", "Graymere 2", "Lumbrio 3"};
const QString moduleFile = "Adobe/Lightroom/Modules/PluginParam.lrplugin/Info.lua";
const QStringList machineFolders = {"home", "etc", "usr", "ProgramData", "suite"};

void makeFilesReadOnly(const QString &folder)
{
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        QFile::setPermissions(walk.next(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
}

class ReadOnlyFilesE2ETest : public testing::Test
{
protected:
    ReadOnlyFilesE2ETest() { unpackSuiteRoot("first\n"); }

    // The wizard unpacks each edition into the same place.
    void unpackSuiteRoot(const QByteArray &edition) const
    {
        QDir(machine->path(Place::Scratch, "suite")).removeRecursively();
        suiteRoot::create(machine->path(Place::Scratch, "suite"));
        machine->writeFile(Place::Scratch, "suite/appData/Licenses/Orv.lic", edition);
        machine->writeFile(Place::Scratch, "suite/bin/lrplugins/PluginParam.lrplugin/Info.lua", edition);
        makeFilesReadOnly(machine->path(Place::Scratch, "suite/appData"));
        makeFilesReadOnly(machine->path(Place::Scratch, "suite/bin/lrplugins"));
    }

    QJsonObject request(const char *isUpdate) const
    {
        const QJsonArray hosts = {
            QJsonObject{{"appName", "Lightroom"},
                        {"pluginPath", machine->toolPath(Place::RoamingAppData, "Adobe/Lightroom")},
                        {"type", 2}}};
        return QJsonObject{{"rootDir", machine->toolPath(Place::Scratch, "suite")},
                           {"hosts", hosts},
                           {"plugins", someProducts},
                           {"language", 1},
                           {"version", "4.2.0"},
                           {"isUpdate", isUpdate}};
    }

    ToolRun run(const QStringList &arguments) const
    {
        ToolRun result;
        if (machine->isWine()) {
            result = machine->run(arguments);
        } else {
            const Machine &linuxMachine = dynamic_cast<const LinuxTestMachine &>(*machine).machine();
            static_cast<DeployerRun &>(result) = runDeployerWithoutRights(linuxMachine, machineFolders, arguments);
        }
        expectRanQuietly(result);
        return result;
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

} // namespace

TEST_F(ReadOnlyFilesE2ETest, AnUpdateReplacesTheReadOnlyFilesOfTheInstallation)
{
    run({"--install", encodeRequest(request("false"))});
    ASSERT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), "first\n");
    ASSERT_TRUE(machine->readFile(Place::RoamingAppData, moduleFile).startsWith("first\n"));
    unpackSuiteRoot("second\n");
    run({"--install", encodeRequest(request("true"))});
    EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), "second\n");
    EXPECT_TRUE(machine->readFile(Place::RoamingAppData, moduleFile).startsWith("second\n"));
    EXPECT_FALSE(machine->log().contains("] failed to move files ")) << machine->log().toStdString();
    EXPECT_FALSE(machine->log().contains("] Failed to install, because")) << machine->log().toStdString();
}

TEST_F(ReadOnlyFilesE2ETest, AnUninstallationRemovesTheReadOnlyFilesOfTheInstallation)
{
    run({"--install", encodeRequest(request("false"))});
    run({"--config", encodeRequest(request("false"))});
    run({"--uninstall", encodeRequest({{"keepPreferences", "false"}})});
    EXPECT_FALSE(machine->exists(Place::RoamingAppData, "Adobe/Lightroom/Modules/PluginParam.lrplugin"));
    EXPECT_FALSE(machine->log().contains("] [warning] ")) << machine->log().toStdString();
}
