#include "FileUtils.h"
#include "LogCapture.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN
const QByteArray lineEnd = "\r\n";
#else
const QByteArray lineEnd = "\n";
#endif

#ifdef Q_OS_UNIX
constexpr uid_t nobodyId = 65534;

// Root may delete anything, so a failed deletion is only seen by an ordinary
// user: when the tests run as root, the files are made and removed as
// "nobody", with root's rights back at the end.
class AsOrdinaryUser
{
public:
    explicit AsOrdinaryUser(const QString &ownedFolder)
    {
        if (geteuid() != 0)
            return;
        switching_ =
            chown(QFile::encodeName(ownedFolder).constData(), nobodyId, nobodyId) == 0 && seteuid(nobodyId) == 0;
    }
    ~AsOrdinaryUser()
    {
        if (switching_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    AsOrdinaryUser(const AsOrdinaryUser &) = delete;
    AsOrdinaryUser &operator=(const AsOrdinaryUser &) = delete;

    bool isOrdinary() const { return geteuid() != 0; }

private:
    bool switching_ = false;
};
#endif

class FileUtilsTest : public testing::Test
{
protected:
    QString path(const QString &relativePath) const { return temporary.path() + "/" + relativePath; }

    void writeFile(const QString &relativePath, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path(relativePath)).path());
        QFile file(path(relativePath));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray contentOf(const QString &relativePath) const
    {
        QFile file(path(relativePath));
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    QTemporaryDir temporary;
};

} // namespace

TEST_F(FileUtilsTest, CreateDirMakesTheFolderWithItsParents)
{
    const LogCapture capture;
    QDir dir(path("a/b/c"));
    fileUtils::createDir(dir);
    EXPECT_TRUE(QFileInfo(path("a/b/c")).isDir());
    EXPECT_EQ(dir.path(), path("a/b/c"));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, CreateDirOnAnExistingFolderLogsNothing)
{
    writeFile("a/kept.txt", "kept");
    const LogCapture capture;
    QDir dir(path("a"));
    fileUtils::createDir(dir);
    EXPECT_EQ(contentOf("a/kept.txt"), "kept");
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, CreateDirThatCannotBeMadeLogsAWarning)
{
    writeFile("file", "a file, not a folder");
    const LogCapture capture;
    QDir dir(path("file/sub"));
    fileUtils::createDir(dir);
    EXPECT_FALSE(QFileInfo::exists(path("file/sub")));
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create directory " + path("file/sub").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::createDir");
}

TEST_F(FileUtilsTest, CreateTextFileWritesTheContentWithTheSystemsLineEnds)
{
    fileUtils::createTextFile(QFile(path("plain.cfg")), "[Settings]\nLanguage = 2\n");
    EXPECT_EQ(contentOf("plain.cfg"), "[Settings]" + lineEnd + "Language = 2" + lineEnd);
}

TEST_F(FileUtilsTest, CreateTextFileReplacesAnExistingFileInFull)
{
    writeFile("config.xml", "a much longer content than the new one\nwith a second line\n");
    fileUtils::createTextFile(QFile(path("config.xml")), "short");
    EXPECT_EQ(contentOf("config.xml"), "short");
}

TEST_F(FileUtilsTest, CreateTextFileWritesUtf8WithoutByteOrderMark)
{
    fileUtils::createTextFile(QFile(path("text.cfg")), QString::fromUtf8("Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC"));
    EXPECT_EQ(contentOf("text.cfg"), "Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC");
}

TEST_F(FileUtilsTest, CreateTextFileInAMissingFolderLogsAndMakesNothing)
{
    const LogCapture capture;
    fileUtils::createTextFile(QFile(path("missing/text.cfg")), "content");
    EXPECT_FALSE(QFileInfo::exists(path("missing")));
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create text file " + path("missing/text.cfg").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::createTextFile");
}

TEST_F(FileUtilsTest, CreateTextFileLogsTheWholeContentInOneInfoLine)
{
    const LogCapture capture;
    const QString content = QString::fromUtf8("<configuration>\n  <group name=\"Z\xC3\xBCrich\"/>\n</configuration>\n");
    fileUtils::createTextFile(QFile(path("several.xml")), content);
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "info: Text file created " + path("several.xml").toStdString() + " with content " +
                                      content.toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::createTextFile");
}

TEST_F(FileUtilsTest, CreateTextFileLeavesTheFileClosed)
{
    QFile file(path("closed.cfg"));
    fileUtils::createTextFile(std::move(file), "x");
    EXPECT_FALSE(file.isOpen()); // NOLINT(bugprone-use-after-move): taken by reference, never moved from
}

TEST_F(FileUtilsTest, RemoveDirDeletesTheFolderWithAllThatIsInIt)
{
    writeFile("tree/a/b/deep.txt", "1");
    writeFile("tree/.hidden", "2");
    writeFile("tree/top.txt", "3");
    QDir().mkpath(path("tree/empty"));
    const LogCapture capture;
    fileUtils::removeDir(QDir(path("tree")));
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveDirOnAMissingFolderLogsNothing)
{
    const LogCapture capture;
    fileUtils::removeDir(QDir(path("missing")));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveDirLeavesAFileAlone)
{
    writeFile("file.txt", "kept");
    const LogCapture capture;
    fileUtils::removeDir(QDir(path("file.txt")));
    EXPECT_EQ(contentOf("file.txt"), "kept");
    EXPECT_TRUE(capture.lines().empty());
}

#ifdef Q_OS_UNIX
// Symbolic links, and an ordinary user for the deletions that fail.

TEST_F(FileUtilsTest, RemoveDirOnALinkToAFolderRemovesOnlyTheLink)
{
    writeFile("target/kept.txt", "kept");
    ASSERT_TRUE(QFile::link(path("target"), path("link")));
    const LogCapture capture;
    fileUtils::removeDir(QDir(path("link")));
    EXPECT_FALSE(QFileInfo(path("link")).isSymLink());
    EXPECT_FALSE(QFileInfo::exists(path("link")));
    EXPECT_EQ(contentOf("target/kept.txt"), "kept");
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveDirRemovesLinksInsideTheTreeWithoutFollowingThem)
{
    writeFile("outside/folder/kept.txt", "kept folder");
    writeFile("outside/kept.txt", "kept file");
    writeFile("tree/sub/own.txt", "own");
    ASSERT_TRUE(QFile::link(path("outside/folder"), path("tree/folderLink")));
    ASSERT_TRUE(QFile::link(path("outside/kept.txt"), path("tree/sub/fileLink")));
    const LogCapture capture;
    fileUtils::removeDir(QDir(path("tree")));
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
    EXPECT_EQ(contentOf("outside/folder/kept.txt"), "kept folder");
    EXPECT_EQ(contentOf("outside/kept.txt"), "kept file");
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveDirThatFailsLogsAWarningAndKeepsWhatWasDeleted)
{
    const LogCapture capture;
    {
        const AsOrdinaryUser user(temporary.path());
        if (!user.isOrdinary())
            GTEST_SKIP() << "root can't become an ordinary user here";
        writeFile("tree/loose.txt", "deletable");
        writeFile("tree/locked/kept.txt", "kept");
        ASSERT_TRUE(QFile::setPermissions(path("tree/locked"), QFile::ReadOwner | QFile::ExeOwner));
        fileUtils::removeDir(QDir(path("tree")));
        QFile::setPermissions(path("tree/locked"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    EXPECT_FALSE(QFileInfo::exists(path("tree/loose.txt")));
    EXPECT_EQ(contentOf("tree/locked/kept.txt"), "kept");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to completely delete folder " + path("tree").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::removeDir");
}

TEST_F(FileUtilsTest, RemoveDirOnALinkThatCannotBeRemovedLogsTheSameWarning)
{
    const LogCapture capture;
    {
        const AsOrdinaryUser user(temporary.path());
        if (!user.isOrdinary())
            GTEST_SKIP() << "root can't become an ordinary user here";
        writeFile("target/kept.txt", "kept");
        QDir().mkpath(path("locked"));
        ASSERT_TRUE(QFile::link(path("target"), path("locked/link")));
        ASSERT_TRUE(QFile::setPermissions(path("locked"), QFile::ReadOwner | QFile::ExeOwner));
        fileUtils::removeDir(QDir(path("locked/link")));
        QFile::setPermissions(path("locked"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    EXPECT_TRUE(QFileInfo(path("locked/link")).isSymLink());
    EXPECT_EQ(contentOf("target/kept.txt"), "kept");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to completely delete folder " + path("locked/link").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::removeDir");
}

#endif

TEST_F(FileUtilsTest, RemoveFileDeletesTheFile)
{
    writeFile("gone.lua", "x");
    const LogCapture capture;
    fileUtils::removeFile(QFile(path("gone.lua")));
    EXPECT_FALSE(QFileInfo::exists(path("gone.lua")));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveFileOnAMissingFileLogsNothing)
{
    const LogCapture capture;
    fileUtils::removeFile(QFile(path("missing.lua")));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(FileUtilsTest, RemoveFileThatFailsLogsAWarning)
{
    writeFile("folder/kept.txt", "kept");
    const LogCapture capture;
    fileUtils::removeFile(QFile(path("folder")));
    EXPECT_EQ(contentOf("folder/kept.txt"), "kept");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to remove file " + path("folder").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "fileUtils::removeFile");
}

// Below a base, as outside one, a file's removal never takes a folder of that
// name with all that is in it: it fails with the warning, as QFile::remove does.
TEST_F(FileUtilsTest, RemoveFileBelowABaseLeavesAFolderOfThatNameWithAWarning)
{
    writeFile(QString::fromUtf8("data/Продукт/LastEdit/kept.txt"), "kept");
    const LogCapture capture;
    fileUtils::removeFile(QFile(path(QString::fromUtf8("data/Продукт/LastEdit"))), path("data"));
    EXPECT_EQ(contentOf(QString::fromUtf8("data/Продукт/LastEdit/kept.txt")), "kept");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0],
              "warning: Failed to remove file " + path(QString::fromUtf8("data/Продукт/LastEdit")).toStdString());
}

TEST_F(FileUtilsTest, RemoveFileBelowABaseRemovesTheFile)
{
    writeFile(QString::fromUtf8("data/Продукт/LastEdit"), "last");
    writeFile(QString::fromUtf8("data/Продукт/kept.txt"), "kept");
    const LogCapture capture;
    fileUtils::removeFile(QFile(path(QString::fromUtf8("data/Продукт/LastEdit"))), path("data"));
    EXPECT_FALSE(QFileInfo::exists(path(QString::fromUtf8("data/Продукт/LastEdit"))));
    EXPECT_EQ(contentOf(QString::fromUtf8("data/Продукт/kept.txt")), "kept");
    EXPECT_TRUE(capture.lines().empty());
}
