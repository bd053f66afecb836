#include "Machine.h"
#include "PathUtils.h"
#include "ScopedEnvironment.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

const QString startMenuTail = QStringLiteral("/applications/Tavrin Orv Collection");

class PathUtilsLinuxTest : public testing::Test
{
protected:
    void writeUserDirs(const QByteArray &content) const
    {
        QFile file(machine.path("home/.config/user-dirs.dirs"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const IPathUtils &paths = pathUtils;
};

} // namespace

TEST_F(PathUtilsLinuxTest, StartMenuDirIsTheSuitesFolderInTheFirstDataDirsApplications)
{
    environment.set("XDG_DATA_DIRS", (machine.path("first") + ":" + machine.path("second")).toUtf8());
    const QDir startMenu = paths.startMenuDir();
    EXPECT_EQ(startMenu.path(), machine.path("first") + startMenuTail);
    EXPECT_FALSE(startMenu.exists());
    EXPECT_FALSE(QFileInfo::exists(machine.path("first")));
}

TEST_F(PathUtilsLinuxTest, StartMenuDirFallsBackToUsrLocalShare)
{
    environment.set("XDG_DATA_DIRS", "");
    EXPECT_EQ(paths.startMenuDir().path(), "/usr/local/share" + startMenuTail);
    environment.unset("XDG_DATA_DIRS");
    EXPECT_EQ(paths.startMenuDir().path(), "/usr/local/share" + startMenuTail);
}

TEST_F(PathUtilsLinuxTest, StartMenuDirReadsTheEnvironmentAtEachCall)
{
    EXPECT_EQ(paths.startMenuDir().path(), machine.path("usr/share") + startMenuTail);
    environment.set("XDG_DATA_DIRS", machine.path("other").toUtf8());
    EXPECT_EQ(paths.startMenuDir().path(), machine.path("other") + startMenuTail);
}

TEST_F(PathUtilsLinuxTest, CommonPicturesPathIsThePicturesFolderOfTheHome)
{
    EXPECT_EQ(paths.commonPicturesPath(), machine.path("home/Pictures"));
}

TEST_F(PathUtilsLinuxTest, CommonPicturesPathFollowsTheUsersFolderNames)
{
    writeUserDirs("XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    EXPECT_EQ(paths.commonPicturesPath(), machine.path("home/Bilder"));
    writeUserDirs("XDG_PICTURES_DIR=\"$HOME/Images\"\n");
    EXPECT_EQ(paths.commonPicturesPath(), machine.path("home/Images"));
}

TEST_F(PathUtilsLinuxTest, CommonPicturesPathReadsTheEnvironmentAtEachCall)
{
    environment.set("HOME", machine.path("elsewhere").toUtf8());
    environment.set("XDG_CONFIG_HOME", machine.path("elsewhere/.config").toUtf8());
    EXPECT_EQ(paths.commonPicturesPath(), machine.path("elsewhere/Pictures"));
}

TEST_F(PathUtilsLinuxTest, LocalAppDataPathIsXdgDataHome)
{
    environment.set("XDG_DATA_HOME", machine.path("data").toUtf8());
    EXPECT_EQ(paths.localAppDataPath(), machine.path("data"));
}

TEST_F(PathUtilsLinuxTest, LocalAppDataPathFallsBackToTheHomesLocalShare)
{
    environment.set("XDG_DATA_HOME", "");
    EXPECT_EQ(paths.localAppDataPath(), machine.path("home/.local/share"));
    environment.unset("XDG_DATA_HOME");
    EXPECT_EQ(paths.localAppDataPath(), machine.path("home/.local/share"));
}

TEST_F(PathUtilsLinuxTest, LocalAppDataPathReadsTheEnvironmentAtEachCall)
{
    environment.unset("XDG_DATA_HOME");
    environment.set("HOME", machine.path("first").toUtf8());
    EXPECT_EQ(paths.localAppDataPath(), machine.path("first/.local/share"));
    environment.set("HOME", machine.path("second").toUtf8());
    EXPECT_EQ(paths.localAppDataPath(), machine.path("second/.local/share"));
}
