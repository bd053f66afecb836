#include "ScratchFolder.h"
#include "TreeRemoval.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class TreeRemovalTest : public testing::Test
{
protected:
    ~TreeRemovalTest() override { setRemovalDescentHook(nullptr); }

    QString path(const QString &relativePath) const { return scratch.path(relativePath); }
    void writeFile(const QString &relativePath, const QByteArray &content) const
    {
        ASSERT_TRUE(scratch.writeFile(relativePath, content));
    }

    // Puts a link to the outside folder in the place of the folder, at the
    // moment the removal is about to enter it.
    void swapForALinkBeforeEntering(const QString &swapped)
    {
        setRemovalDescentHook([this, swapped](const QString &folder) {
            if (folder != path(swapped))
                return;
            ++swaps;
            ASSERT_TRUE(QDir(folder).removeRecursively());
            ASSERT_TRUE(QFile::link(path("outside"), folder));
        });
    }

    QStringList entriesOf(const QString &relativePath) const
    {
        return QDir(path(relativePath)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }

    ScratchFolder scratch;
    int swaps = 0;
};

TEST_F(TreeRemovalTest, RemovesAFolderWithAllThatIsInIt)
{
    writeFile("tree/a.txt", "a");
    writeFile("tree/sub/deeper/b.txt", "b");
    EXPECT_TRUE(removeTree(path("tree")));
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
}

TEST_F(TreeRemovalTest, AMissingPathIsNoFailure)
{
    EXPECT_TRUE(removeTree(path("missing")));
    EXPECT_TRUE(removeTree(path("missing/deeper")));
}

TEST_F(TreeRemovalTest, ALinkAtThePathGoesAsALink)
{
    writeFile("outside/kept.txt", "kept");
    ASSERT_TRUE(QFile::link(path("outside"), path("link")));
    EXPECT_TRUE(removeTree(path("link")));
    EXPECT_FALSE(QFileInfo(path("link")).isSymLink());
    EXPECT_EQ(entriesOf("outside"), QStringList{"kept.txt"});
}

// The moment that matters: the walk has seen a folder, and before it enters
// it, someone puts a link to a folder outside in its place.
TEST_F(TreeRemovalTest, AFolderSwappedForALinkBeforeTheDescentIsNotEntered)
{
    writeFile("outside/precious.txt", "precious");
    writeFile("outside/deeper/more.txt", "more");
    writeFile("tree/sub/own.txt", "own");
    writeFile("tree/other.txt", "other");
    swapForALinkBeforeEntering("tree/sub");
    EXPECT_TRUE(removeTree(path("tree")));
    EXPECT_EQ(swaps, 1);
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
    EXPECT_EQ(entriesOf("outside"), (QStringList{"deeper", "precious.txt"}));
    EXPECT_EQ(entriesOf("outside/deeper"), QStringList{"more.txt"});
}

TEST_F(TreeRemovalTest, TheTopFolderSwappedForALinkGoesAsALink)
{
    writeFile("outside/precious.txt", "precious");
    writeFile("tree/own.txt", "own");
    swapForALinkBeforeEntering("tree");
    EXPECT_TRUE(removeTree(path("tree")));
    EXPECT_EQ(swaps, 1);
    EXPECT_FALSE(QFileInfo(path("tree")).isSymLink());
    EXPECT_EQ(entriesOf("outside"), QStringList{"precious.txt"});
}

TEST_F(TreeRemovalTest, LinksInsideTheTreeAreRemovedWithoutFollowingThem)
{
    writeFile("outside/folder/kept.txt", "kept");
    writeFile("outside/file.txt", "kept");
    writeFile("tree/sub/own.txt", "own");
    ASSERT_TRUE(QFile::link(path("outside/folder"), path("tree/folderLink")));
    ASSERT_TRUE(QFile::link(path("outside/file.txt"), path("tree/sub/fileLink")));
    ASSERT_TRUE(QFile::link(path("nowhere"), path("tree/dangling")));
    EXPECT_TRUE(removeTree(path("tree")));
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
    EXPECT_EQ(entriesOf("outside"), (QStringList{"file.txt", "folder"}));
    EXPECT_EQ(entriesOf("outside/folder"), QStringList{"kept.txt"});
}

TEST_F(TreeRemovalTest, NamesBeyondAsciiAreRemoved)
{
    writeFile(QString::fromUtf8("tree/Пресет 预设/Ü.txt"), "u");
    EXPECT_TRUE(removeTree(path("tree")));
    EXPECT_FALSE(QFileInfo::exists(path("tree")));
}

} // namespace
