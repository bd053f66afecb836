// The tool runs with an administrator's rights, and any user may prepare
// folders in ProgramData, the collection folder is open to all, and the
// pictures and a host's plug-in folder may be too. A link that such a user
// puts at one of these places must not lead a write, an access grant or a
// deletion anywhere else: the place is refused with a warning, and the job's
// other steps run. The links here belong to "nobody" and lead into a folder
// of root's, whose content, modes and entries must stay as they were. Under
// Wine they are Unix links in the prefix, which Wine shows as reparse points.
#include "FolderState.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr uid_t nobodyId = 65534;
// Wine shows a Unix link of the prefix to the Windows program as a reparse
// point, but deletes what it leads to where Windows deletes the link: the
// removal's part can only be shown on Linux.
const char *const wineDeletesWhatLinksLeadTo =
    "Wine deletes what a Unix link of the prefix leads to, where Windows deletes the link";
const QJsonArray someProducts = {"Grainwick 3", "Tintara 5", "Rectilo", "Graymere 2", "Lumbrio 3"};

class PlantedLinksE2ETest : public testing::Test
{
protected:
    PlantedLinksE2ETest()
    {
        suiteRoot::create(machine->path(Place::Scratch, "suite"));
        machine->writeFile(Place::Scratch, "suite/appData/Licenses/Orv.lic", "licence");
        machine->writeFile(Place::Scratch, "suite/pictures/1033/Sample.jpg", "picture");
        QDir().mkpath(machine->path(Place::Scratch, "hosts/Photoshop"));
        // Root's own folder, with what a machine keeps from its users, and
        // names that the suite uses too.
        machine->writeFile(Place::Scratch, "outside/secret", "root only\n");
        machine->writeFile(Place::Scratch, "outside/Orv Collection/OrvCollection.cfg", "root's\n");
        machine->writeFile(Place::Scratch, "outside/Licenses/Orv.lic", "root's licence\n");
        machine->writeFile(Place::Scratch, "outside/bin/plugins/kept.8bf", "kept\n");
        machine->writeFile(Place::Scratch, "outside/Tintara 5/kept.8bf", "kept\n");
        QFile::setPermissions(outside("secret"), QFile::ReadOwner | QFile::WriteOwner);
        outsideBefore = snapshotOfOutside();
    }

    QString outside(const QString &relative = {}) const
    {
        return machine->path(Place::Scratch, relative.isEmpty() ? "outside" : "outside/" + relative);
    }

    QString snapshotOfOutside() const { return folderState(outside()); }

    // A link of "nobody's" at the place, leading to target.
    void plantLink(Place place, const QString &relative, const QString &target) const
    {
        const QString link = machine->path(place, relative);
        QDir().mkpath(QFileInfo(link).path());
        QDir(link).removeRecursively();
        QFile::remove(link);
        ASSERT_TRUE(QFile::link(target, link)) << link.toStdString();
        ::lchown(QFile::encodeName(link).constData(), nobodyId, nobodyId);
    }

    QJsonObject installRequest() const
    {
        const QJsonArray hosts = {QJsonObject{{"appName", "Photoshop"},
                                              {"pluginPath", machine->toolPath(Place::Scratch, "hosts/Photoshop")},
                                              {"type", 0}}};
        return QJsonObject{{"rootDir", machine->toolPath(Place::Scratch, "suite")},
                           {"hosts", hosts},
                           {"plugins", someProducts},
                           {"language", 1},
                           {"version", "4.2.0"},
                           {"isUpdate", "false"}};
    }

    ToolRun install() const { return machine->runQuietly("--install", installRequest()); }

    ToolRun configureAndUninstall() const
    {
        QJsonObject config = installRequest();
        config.insert("mixpanelEnabled", true);
        machine->runQuietly("--config", config);
        return machine->runQuietly("--uninstall", QJsonObject{{"keepPreferences", "false"}});
    }

    void expectRefused(const ToolRun &run, Place place, const QString &relative) const
    {
        const QString line = "Refused to use " + machine->toolPath(place, relative) + ", because it is a link";
        EXPECT_TRUE(machine->comparable(run.log).contains(machine->comparable(line.toUtf8()))) << run.log.toStdString();
    }

    // The steps of an installation that no planted link stands in the way of.
    void expectTheOtherStepsRan(const ToolRun &run) const
    {
        EXPECT_TRUE(machine->exists(Place::StartMenu, "Tavrin Orv Collection/Tintara 5.lnk")) << run.log.toStdString();
        EXPECT_TRUE(machine->exists(Place::Scratch, "hosts/Photoshop/Tavrin/Tintara 5")) << run.log.toStdString();
        EXPECT_TRUE(machine->exists(Place::LocalAppData, "Tavrin/Orv Collection/OrvCollection.cfg"))
            << run.log.toStdString();
    }

    void expectOutsideUnchanged() const { EXPECT_EQ(snapshotOfOutside(), outsideBefore); }

    bool isLink(Place place, const QString &relative) const
    {
        return QFileInfo(machine->path(place, relative)).isSymLink();
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
    QString outsideBefore;
};

} // namespace

TEST_F(PlantedLinksE2ETest, ACollectionFileLinkedToARootFileIsReplacedNotWrittenThrough)
{
    plantLink(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg", outside("secret"));
    const ToolRun run = install();
    expectOutsideUnchanged();
    EXPECT_FALSE(isLink(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg"));
    EXPECT_TRUE(machine->readFile(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg").contains("4.2.0"));
    expectTheOtherStepsRan(run);
}

TEST_F(PlantedLinksE2ETest, ACollectionFileLinkedAfterTheFirstInstallationIsReplacedToo)
{
    install();
    plantLink(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg", outside("secret"));
    const ToolRun run = install();
    expectOutsideUnchanged();
    EXPECT_FALSE(isLink(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg"));
    expectTheOtherStepsRan(run);
}

TEST_F(PlantedLinksE2ETest, ALinkedCollectionFolderIsRefused)
{
    plantLink(Place::ProgramData, "Tavrin/Orv Collection", outside());
    const ToolRun run = install();
    expectOutsideUnchanged();
    expectRefused(run, Place::ProgramData, "Tavrin/Orv Collection");
    expectTheOtherStepsRan(run);
    EXPECT_TRUE(machine->exists(Place::ProgramData, "Tavrin/Licenses/Orv.lic"));
}

TEST_F(PlantedLinksE2ETest, ALinkedMakerFolderIsRefusedForTheCollectionAndTheApplicationData)
{
    plantLink(Place::ProgramData, "Tavrin", outside());
    const ToolRun run = install();
    expectOutsideUnchanged();
    expectRefused(run, Place::ProgramData, "Tavrin");
    expectTheOtherStepsRan(run);
    // Refused, the application data stay in the root folder for a later run.
    EXPECT_TRUE(machine->exists(Place::Scratch, "suite/appData/Licenses/Orv.lic"));
}

TEST_F(PlantedLinksE2ETest, AMakerFolderLinkedAfterTheInstallationLeadsNoDeletionOutside)
{
    install();
    QDir(machine->path(Place::ProgramData, "Tavrin")).removeRecursively();
    plantLink(Place::ProgramData, "Tavrin", outside());
    const ToolRun run = configureAndUninstall();
    expectOutsideUnchanged();
    expectRefused(run, Place::ProgramData, "Tavrin");
    EXPECT_FALSE(machine->exists(Place::StartMenu, "Tavrin Orv Collection"));
    EXPECT_FALSE(machine->exists(Place::Scratch, "hosts/Photoshop/Tavrin"));
}

TEST_F(PlantedLinksE2ETest, ALinkInTheApplicationDataTargetIsNotWrittenThrough)
{
    install();
    plantLink(Place::ProgramData, "Tavrin/Licenses", outside("Licenses"));
    machine->writeFile(Place::Scratch, "suite/appData/Licenses/Orv.lic", "second licence");
    const ToolRun run = install();
    expectOutsideUnchanged();
    EXPECT_TRUE(machine->comparable(run.log).contains(machine->comparable(
        ("Refused to use " + machine->toolPath(Place::ProgramData, "Tavrin/Licenses") + ", because it is a link")
            .toUtf8())))
        << run.log.toStdString();
    expectTheOtherStepsRan(run);
}

TEST_F(PlantedLinksE2ETest, ALinkedStartMenuFolderGoesAsALinkAndTheMenuIsMadeAnew)
{
    SKIP_UNDER_WINE(wineDeletesWhatLinksLeadTo);
    plantLink(Place::StartMenu, "Tavrin Orv Collection", outside());
    const ToolRun run = install();
    expectOutsideUnchanged();
    EXPECT_FALSE(isLink(Place::StartMenu, "Tavrin Orv Collection"));
    expectTheOtherStepsRan(run);
}

TEST_F(PlantedLinksE2ETest, ALinkedSamplesFolderIsRefusedAndThePicturesKept)
{
    plantLink(Place::CommonPictures, "Rectilo Samples", outside());
    const ToolRun run = install();
    expectOutsideUnchanged();
    expectRefused(run, Place::CommonPictures, "Rectilo Samples");
    EXPECT_TRUE(machine->exists(Place::Scratch, "suite/pictures/1033/Sample.jpg"));
    expectTheOtherStepsRan(run);
}

TEST_F(PlantedLinksE2ETest, AnUninstallationRemovesALinkedSamplesFolderAsALink)
{
    SKIP_UNDER_WINE(wineDeletesWhatLinksLeadTo);
    install();
    plantLink(Place::CommonPictures, "Rectilo Samples", outside());
    configureAndUninstall();
    expectOutsideUnchanged();
    EXPECT_FALSE(isLink(Place::CommonPictures, "Rectilo Samples"));
}

TEST_F(PlantedLinksE2ETest, ALinkedHostPluginFolderIsRefused)
{
    plantLink(Place::Scratch, "hosts/Photoshop/Tavrin", outside());
    const ToolRun run = install();
    expectOutsideUnchanged();
    expectRefused(run, Place::Scratch, "hosts/Photoshop/Tavrin");
    EXPECT_TRUE(machine->exists(Place::StartMenu, "Tavrin Orv Collection/Tintara 5.lnk"));
    EXPECT_TRUE(machine->exists(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg"));
}

TEST_F(PlantedLinksE2ETest, AnUninstallationRemovesALinkedHostPluginFolderAsALink)
{
    SKIP_UNDER_WINE(wineDeletesWhatLinksLeadTo);
    install();
    plantLink(Place::Scratch, "hosts/Photoshop/Tavrin", outside());
    configureAndUninstall();
    expectOutsideUnchanged();
    EXPECT_FALSE(isLink(Place::Scratch, "hosts/Photoshop/Tavrin"));
}

TEST_F(PlantedLinksE2ETest, ALinkInsideTheOpenCollectionFolderIsNotFollowedByTheUninstallation)
{
    SKIP_UNDER_WINE(wineDeletesWhatLinksLeadTo);
    install();
    plantLink(Place::ProgramData, "Tavrin/Orv Collection/logs", outside());
    configureAndUninstall();
    expectOutsideUnchanged();
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/Orv Collection"));
}

TEST_F(PlantedLinksE2ETest, TheSettingsResetLeavesPlantedLinksAndTheirTargetsAlone)
{
    install();
    plantLink(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg", outside("secret"));
    plantLink(Place::ProgramData, "Tavrin/Licenses", outside("Licenses"));
    machine->runQuietly("--resetConfig", QJsonObject{});
    expectOutsideUnchanged();
    EXPECT_TRUE(isLink(Place::ProgramData, "Tavrin/Licenses"));
}

TEST_F(PlantedLinksE2ETest, AMakerFolderOfAnotherUserIsRefusedWhenRunningAsRoot)
{
    SKIP_UNDER_WINE("the prefix's files have no owner that Wine tells the Windows program");
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root checks the owners";
    QDir().mkpath(machine->path(Place::ProgramData, "Tavrin"));
    ::chown(QFile::encodeName(machine->path(Place::ProgramData, "Tavrin")).constData(), nobodyId, nobodyId);
    const ToolRun run = install();
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/Orv Collection"));
    EXPECT_FALSE(machine->exists(Place::ProgramData, "Tavrin/Licenses"));
    const QString line = "Refused to use " + machine->toolPath(Place::ProgramData, "Tavrin") +
                         ", because it belongs to another user (uid 65534)";
    EXPECT_TRUE(run.log.contains(line.toUtf8())) << run.log.toStdString();
    expectTheOtherStepsRan(run);
}

// The grant names the group Users by its well-known identifier S-1-5-32-545,
// whose name differs with the system's language. Where Wine keeps a file's
// security descriptor, it is an extended attribute of the prefix's file, in
// which the identifier can be read; the Wine of Debian 12 keeps none for this
// file, and the test says so. On Linux the grant is the modes 0666 and 0777.
TEST_F(PlantedLinksE2ETest, TheCollectionFileIsOpenToAllUsers)
{
    install();
    const QString file = machine->path(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg");
    if (!machine->isWine()) {
        EXPECT_EQ(QFileInfo(file).permissions() & 0x7777, QFileDevice::Permissions(0x6666));
        EXPECT_EQ(QFileInfo(QFileInfo(file).path()).permissions() & 0x7777, QFileDevice::Permissions(0x7777));
        return;
    }
    QByteArray descriptor(65536, '\0');
    const ssize_t size = ::getxattr(QFile::encodeName(file).constData(), "user.wine.sd", descriptor.data(),
                                    static_cast<size_t>(descriptor.size()));
    if (size < 0)
        GTEST_SKIP() << "Wine kept no access list for the file (no user.wine.sd attribute)";
    descriptor.resize(static_cast<int>(size));
    const QByteArray usersSid = QByteArray::fromHex("01020000000000052000000021020000");
    EXPECT_TRUE(descriptor.contains(usersSid)) << descriptor.toHex().toStdString();
}
