// Paths grow long on users' machines: a suite root and a host folder deeper
// than the 260 characters of Windows' old limit install, record and uninstall
// as short ones do. The Windows program declares itself long-path aware in its
// manifest, and Qt and the program's own calls take such paths. Only links
// can't: a shell link holds 259 characters of target, so there the link is
// refused with a warning that names both paths, and everything else is done.
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QJsonArray someProducts = {"Grainwick 3", "Tintara 5", "Rectilo", "Graymere 2", "Lumbrio 3"};
const QString locationsKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\Locations";

// Seven levels of forty characters and more: well beyond 260 with any base.
QString deep(const QString &leaf)
{
    QString path;
    for (int level = 1; level <= 7; ++level)
        path += QString("level %1 of a folder tree that grows deep/").arg(level);
    return path + leaf;
}

class LongPathsE2ETest : public testing::Test
{
protected:
    LongPathsE2ETest() { suiteRoot::create(machine->path(Place::Scratch, deep("suite"))); }

    QString root() const { return machine->toolPath(Place::Scratch, deep("suite")); }
    QString photoshop() const { return machine->toolPath(Place::Scratch, deep("Photoshop/Plug-ins")); }
    QString comparable(const QString &path) const { return machine->comparable(path); }

    ToolRun run(const char *option, const QJsonObject &request) const { return machine->runQuietly(option, request); }

    QJsonObject request() const
    {
        const QJsonArray hosts = {QJsonObject{{"appName", "Photoshop"}, {"pluginPath", photoshop()}, {"type", 0}}};
        return QJsonObject{{"rootDir", root()}, {"hosts", hosts},     {"plugins", someProducts},
                           {"language", 1},     {"version", "4.2.0"}, {"mixpanelEnabled", true}};
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

} // namespace

TEST_F(LongPathsE2ETest, ADeepSuiteRootAndHostFolderInstallRecordAndUninstall)
{
    ASSERT_GT(root().size(), 300);
    const ToolRun installation = run("--install", request());
    const QString graymereLink = deep("Photoshop/Plug-ins/Tavrin/Graymere 2/Graymere 2.8bf.lnk");
    const QString graymere = root() + "/Graymere 2/Graymere 2.8bf";
    const QString rectiloLink = "Tavrin Orv Collection/Rectilo.lnk";
    if (machine->isWine()) {
        EXPECT_FALSE(machine->exists(Place::Scratch, graymereLink));
        EXPECT_FALSE(machine->exists(Place::StartMenu, rectiloLink));
        EXPECT_TRUE(comparable(QString::fromUtf8(installation.log))
                        .contains("] Failed to create link from " + comparable(graymere) + " to "));
    } else {
        EXPECT_EQ(comparable(machine->linkTarget(machine->path(Place::Scratch, graymereLink))), comparable(graymere));
        EXPECT_EQ(comparable(machine->linkTarget(machine->path(Place::StartMenu, rectiloLink))),
                  comparable(root() + "/Rectilo/Rectilo.exe"));
        EXPECT_FALSE(installation.log.contains("] [warning] ")) << installation.log.toStdString();
    }
    EXPECT_TRUE(machine->exists(Place::Scratch, deep("Photoshop/Plug-ins/Tavrin/Rectilo/Rectilo.config")));
    EXPECT_EQ(machine->readFile(Place::ProgramData, "Tavrin/Licenses/Orv.lic"), suiteRoot::contentOf("Orv.lic"));
    EXPECT_FALSE(machine->exists(Place::Scratch, deep("suite/appData")));
    EXPECT_EQ(machine->entries(Place::CommonPictures, "Rectilo Samples"),
              (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_TRUE(machine->readFile(Place::LocalAppData, "Tavrin/Rectilo/Rectilo.cfg").contains("en-GB"));
    EXPECT_FALSE(installation.log.contains("] [error] ")) << installation.log.toStdString();

    run("--config", request());
    EXPECT_EQ(comparable(machine->registryValues(locationsKey).value("0_Path").toString()), comparable(photoshop()));

    const ToolRun uninstallation = run("--uninstall", {{"keepPreferences", "false"}});
    EXPECT_FALSE(machine->exists(Place::Scratch, deep("Photoshop/Plug-ins/Tavrin")));
    EXPECT_TRUE(machine->exists(Place::Scratch, deep("suite/Rectilo/Rectilo.exe")));
    EXPECT_FALSE(uninstallation.log.contains("] [warning] ")) << uninstallation.log.toStdString();
}
