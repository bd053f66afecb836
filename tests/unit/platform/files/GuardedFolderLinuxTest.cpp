#include "GuardedFolder.h"
#include "LogCapture.h"
#include "ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t nobodyId = 65534;

class GuardedFolderTest : public testing::Test
{
protected:
    QString path(const QString &relativePath) const { return scratch.path(relativePath); }
    void writeFile(const QString &relativePath, const QByteArray &content) const
    {
        ASSERT_TRUE(scratch.writeFile(relativePath, content));
    }
    QByteArray contentOf(const QString &relativePath) const { return scratch.contentOf(relativePath); }

    static mode_t modeOf(const QString &file)
    {
        struct stat status = {};
        ::lstat(QFile::encodeName(file).constData(), &status);
        return status.st_mode & 07777;
    }

    ScratchFolder scratch;
};

TEST_F(GuardedFolderTest, MakesTheMissingFoldersAndWritesTheFile)
{
    const GuardedFolder folder(scratch.path(), "Tavrin/Orv Collection");
    ASSERT_TRUE(folder.isOpen());
    EXPECT_EQ(folder.path(), path("Tavrin/Orv Collection"));
    const LogCapture capture;
    folder.writeTextFile("Orv.cfg", QString::fromUtf8("\nÜber\n"));
    EXPECT_EQ(contentOf("Tavrin/Orv Collection/Orv.cfg"), QByteArray("\nÜber\n"));
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "info: Text file created " + path("Tavrin/Orv Collection/Orv.cfg").toStdString() +
                                      " with content \nÜber\n");
    EXPECT_EQ(QDir(path("Tavrin/Orv Collection")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{"Orv.cfg"});
}

TEST_F(GuardedFolderTest, OpenToAllUsersGivesTheFile0666AndItsFolder0777)
{
    const GuardedFolder folder(scratch.path(), "Tavrin/Orv Collection");
    folder.writeTextFile("Orv.cfg", "text", GuardedFolder::Access::OpenToAllUsers);
    EXPECT_EQ(modeOf(path("Tavrin/Orv Collection/Orv.cfg")), 0666u);
    EXPECT_EQ(modeOf(path("Tavrin/Orv Collection")), 0777u);
}

TEST_F(GuardedFolderTest, AFileThatIsALinkIsReplacedAndItsTargetKept)
{
    writeFile("secret", "root only");
    ASSERT_TRUE(QFile::setPermissions(path("secret"), QFile::ReadOwner | QFile::WriteOwner));
    QDir().mkpath(path("Tavrin"));
    ASSERT_TRUE(QFile::link(path("secret"), path("Tavrin/Orv.cfg")));
    const GuardedFolder folder(scratch.path(), "Tavrin");
    folder.writeTextFile("Orv.cfg", "new", GuardedFolder::Access::OpenToAllUsers);
    EXPECT_FALSE(QFileInfo(path("Tavrin/Orv.cfg")).isSymLink());
    EXPECT_EQ(contentOf("Tavrin/Orv.cfg"), "new");
    EXPECT_EQ(contentOf("secret"), "root only");
    EXPECT_EQ(modeOf(path("secret")), 0600u);
}

TEST_F(GuardedFolderTest, AWriteThatFailsOpensNothingToAll)
{
    QDir().mkpath(path("Tavrin/Orv.cfg/inside"));
    ASSERT_TRUE(QFile::setPermissions(path("Tavrin"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const GuardedFolder folder(scratch.path(), "Tavrin");
    const LogCapture capture;
    folder.writeTextFile("Orv.cfg", "text", GuardedFolder::Access::OpenToAllUsers);
    EXPECT_EQ(modeOf(path("Tavrin")), 0700u);
    EXPECT_TRUE(QFileInfo(path("Tavrin/Orv.cfg/inside")).isDir());
    EXPECT_EQ(QDir(path("Tavrin")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
              QStringList{"Orv.cfg"});
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create text file " + path("Tavrin/Orv.cfg").toStdString());
}

TEST_F(GuardedFolderTest, ALinkOnTheWayIsRefusedWithAWarningAndNothingIsWritten)
{
    QDir().mkpath(path("elsewhere"));
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("Tavrin")));
    const LogCapture capture;
    const GuardedFolder folder(scratch.path(), "Tavrin/Orv Collection");
    EXPECT_EQ(folder.outcome(), GuardedFolder::Outcome::Refused);
    folder.writeTextFile("Orv.cfg", "text", GuardedFolder::Access::OpenToAllUsers);
    EXPECT_FALSE(folder.makeLink(path("elsewhere"), "link.lnk"));
    EXPECT_TRUE(QDir(path("elsewhere")).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Refused to use " + path("Tavrin").toStdString() + ", because it is a link");
}

TEST_F(GuardedFolderTest, AFolderOfAnotherUserIsRefusedWhenRunningAsRoot)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root checks the owners";
    QDir().mkpath(path("Tavrin"));
    ASSERT_EQ(::chown(QFile::encodeName(path("Tavrin")).constData(), nobodyId, nobodyId), 0);
    const LogCapture capture;
    const GuardedFolder folder(scratch.path(), "Tavrin/Orv Collection");
    EXPECT_EQ(folder.outcome(), GuardedFolder::Outcome::Refused);
    EXPECT_FALSE(QFileInfo::exists(path("Tavrin/Orv Collection")));
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Refused to use " + path("Tavrin").toStdString() +
                                      ", because it belongs to another user (uid 65534)");
    // Deleting in a user's folder is no threat, and the users' own folders are among those places.
    EXPECT_NE(GuardedFolder(scratch.path(), "Tavrin", GuardedFolder::Purpose::Delete).outcome(),
              GuardedFolder::Outcome::Refused);
}

TEST_F(GuardedFolderTest, AFolderThatCannotBeMadeLogsTheFileActionsLines)
{
    writeFile("Tavrin", "a file in the way");
    const LogCapture capture;
    const GuardedFolder folder(scratch.path(), "Tavrin/Orv Collection");
    EXPECT_EQ(folder.outcome(), GuardedFolder::Outcome::Failed);
    folder.writeTextFile("Orv.cfg", "text");
    ASSERT_EQ(capture.texts().size(), 2u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create directory " + path("Tavrin/Orv Collection").toStdString());
    EXPECT_EQ(capture.texts()[1],
              "warning: Failed to create text file " + path("Tavrin/Orv Collection/Orv.cfg").toStdString());
}

TEST_F(GuardedFolderTest, CheckingForWritingMakesNothing)
{
    const GuardedFolder folder(scratch.path(), "Tavrin/Zonal", GuardedFolder::Purpose::CheckForWriting);
    EXPECT_EQ(folder.outcome(), GuardedFolder::Outcome::Missing);
    EXPECT_FALSE(QFileInfo::exists(path("Tavrin")));
}

TEST_F(GuardedFolderTest, MakesLinksInTheFolderAndNeverOverAName)
{
    writeFile("root/Tintara 5.exe", "exe");
    const GuardedFolder folder(scratch.path(), "menu");
    EXPECT_TRUE(folder.makeLink(path("root/Tintara 5.exe"), "Tintara 5.lnk"));
    EXPECT_EQ(QFileInfo(path("menu/Tintara 5.lnk")).symLinkTarget(), path("root/Tintara 5.exe"));
    EXPECT_FALSE(folder.makeLink(path("root/Tintara 5.exe"), "Tintara 5.lnk"));
}

TEST_F(GuardedFolderTest, ClimbingOutOfTheBaseIsResolvedAsText)
{
    const GuardedFolder folder(path("base/missing/.."), "Tavrin");
    ASSERT_TRUE(folder.isOpen());
    EXPECT_TRUE(QFileInfo(path("base/Tavrin")).isDir());
    EXPECT_FALSE(QFileInfo::exists(path("base/missing")));
}

} // namespace

TEST_F(GuardedFolderTest, NamesBeyondAsciiAreMadeWrittenAndRefusedAsTheyAre)
{
    const QString collection = QString::fromUtf8("Tavrin/Коллекция 集");
    const GuardedFolder folder(scratch.path(), collection);
    folder.writeTextFile(QString::fromUtf8("Ü.cfg"), "text");
    EXPECT_EQ(contentOf(collection + QString::fromUtf8("/Ü.cfg")), "text");

    QDir().mkpath(path("elsewhere"));
    ASSERT_TRUE(QFile::link(path("elsewhere"), path(QString::fromUtf8("Tavrin/Ссылка"))));
    const LogCapture capture;
    const GuardedFolder refused(scratch.path(), QString::fromUtf8("Tavrin/Ссылка/Orv"));
    EXPECT_EQ(refused.outcome(), GuardedFolder::Outcome::Refused);
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Refused to use " + path(QString::fromUtf8("Tavrin/Ссылка")).toStdString() +
                                      ", because it is a link");
}
