#include "FolderCopy.h"
#include "LogCapture.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path &path, const std::string &content)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string contentOf(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// The error that copying throws; when none comes, the test fails.
fs::filesystem_error errorOf(const fs::path &from, const fs::path &to)
{
    try {
        copyTree(from, to);
    } catch (const fs::filesystem_error &error) {
        return error;
    }
    ADD_FAILURE() << "nothing thrown copying " << from << " to " << to;
    return fs::filesystem_error("nothing thrown", std::error_code());
}

// The log shows what() alone, so that text has to say what failed and where.
void expectNamesTheCopy(const fs::filesystem_error &error, const fs::path &from, const fs::path &to)
{
    const std::string what = error.what();
    EXPECT_NE(what.find("copy"), std::string::npos) << what;
    EXPECT_NE(what.find(from.string()), std::string::npos) << what;
    EXPECT_NE(what.find(to.string()), std::string::npos) << what;
}

class FolderCopyLinuxTest : public testing::Test
{
protected:
    QTemporaryDir temporary;
    const fs::path root = temporary.path().toStdString();
    const fs::path from = root / "bin" / "PluginParam.lrplugin";
    const fs::path to = root / "Modules" / "PluginParam.lrplugin";
};

} // namespace

TEST_F(FolderCopyLinuxTest, CopiesTheWholeTreeIntoAMissingFolder)
{
    writeFile(from / "Info.lua", "info");
    writeFile(from / "Orv Collection" / "Default.lrtemplate", "preset");
    writeFile(from / "resources" / "icons" / "small.png", "icon");
    fs::create_directories(from / "empty");
    fs::create_directories(to.parent_path());

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / "Info.lua"), "info");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Default.lrtemplate"), "preset");
    EXPECT_EQ(contentOf(to / "resources" / "icons" / "small.png"), "icon");
    EXPECT_TRUE(fs::is_directory(to / "empty"));
    EXPECT_EQ(contentOf(from / "Info.lua"), "info");
}

TEST_F(FolderCopyLinuxTest, MergesIntoAnExistingFolder)
{
    writeFile(from / "Info.lua", "new info");
    writeFile(from / "Orv Collection" / "Default.lrtemplate", "new preset");
    writeFile(from / "Orv Collection" / "Deep" / "Inner.txt", "new inner");
    writeFile(to / "Info.lua", "old info");
    writeFile(to / "Mine.lua", "the user's own");
    writeFile(to / "Orv Collection" / "Default.lrtemplate", "old preset");
    writeFile(to / "Orv Collection" / "Own.lrtemplate", "own preset");
    writeFile(to / "Orv Collection" / "Deep" / "Kept.txt", "kept");

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / "Info.lua"), "new info");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Default.lrtemplate"), "new preset");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Deep" / "Inner.txt"), "new inner");
    EXPECT_EQ(contentOf(to / "Mine.lua"), "the user's own");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Own.lrtemplate"), "own preset");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Deep" / "Kept.txt"), "kept");
}

TEST_F(FolderCopyLinuxTest, ASecondCopyReplacesTheFirstAndKeepsWhatCameSince)
{
    writeFile(from / "Info.lua", "first");
    writeFile(from / "Orv Collection" / "Default.lrtemplate", "first preset");
    fs::create_directories(to.parent_path());
    copyTree(from, to);
    writeFile(from / "Info.lua", "second");
    writeFile(to / "Orv Collection" / "Default.lrtemplate", "changed by the user");
    writeFile(to / "Orv Collection" / "Added.lrtemplate", "added by the user");

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / "Info.lua"), "second");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Default.lrtemplate"), "first preset");
    EXPECT_EQ(contentOf(to / "Orv Collection" / "Added.lrtemplate"), "added by the user");
}

TEST_F(FolderCopyLinuxTest, AMissingSourceThrowsNamingTheCopyAndBothPaths)
{
    fs::create_directories(to);

    const fs::filesystem_error error = errorOf(from, to);

    expectNamesTheCopy(error, from, to);
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(fs::is_empty(to));
}

TEST_F(FolderCopyLinuxTest, AFolderWhereTheTargetHasAFileThrowsNamingTheWholeCopy)
{
    writeFile(from / "Orv Collection" / "Default.lrtemplate", "preset");
    writeFile(to / "Orv Collection", "a file where the source has a folder");

    const fs::filesystem_error error = errorOf(from, to);

    expectNamesTheCopy(error, from, to);
    EXPECT_EQ(error.code(), std::errc::is_a_directory);
    EXPECT_EQ(contentOf(to / "Orv Collection"), "a file where the source has a folder");
}

// An update over an earlier copy of a read-only source; root may write such a file anyway.
TEST_F(FolderCopyLinuxTest, AReadOnlyFileInTheTargetIsReplaced)
{
    writeFile(from / "Info.lua", "new info");
    writeFile(to / "Info.lua", "old info");
    const fs::perms readOnly = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    fs::permissions(from / "Info.lua", readOnly);
    fs::permissions(to / "Info.lua", readOnly);

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / "Info.lua"), "new info");
    EXPECT_EQ(fs::status(to / "Info.lua").permissions(), readOnly);
}

TEST_F(FolderCopyLinuxTest, AReadOnlySingleFileInTheTargetFolderIsReplaced)
{
    writeFile(from / "Info.lua", "new info");
    writeFile(to / "Info.lua", "old info");
    fs::permissions(to / "Info.lua", fs::perms::owner_read);

    copyTree(from / "Info.lua", to);

    EXPECT_EQ(contentOf(to / "Info.lua"), "new info");
}

TEST_F(FolderCopyLinuxTest, AReadOnlyFileBelowALinkedSourceFolderIsReplaced)
{
    writeFile(root / "shared" / "icons" / "large.png", "new icon");
    fs::create_directories(from);
    fs::create_directory_symlink(root / "shared" / "icons", from / "icons");
    writeFile(to / "icons" / "large.png", "old icon");
    fs::permissions(to / "icons" / "large.png", fs::perms::owner_read);

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / "icons" / "large.png"), "new icon");
}

TEST_F(FolderCopyLinuxTest, AFolderOrFileIsNotItsOwnTarget)
{
    writeFile(from / "Info.lua", "info");
    const fs::path sameFolder = root / "bin" / "." / "PluginParam.lrplugin";

    EXPECT_EQ(errorOf(from, sameFolder).code(), std::errc::file_exists);
    EXPECT_EQ(errorOf(from / "Info.lua", sameFolder / "Info.lua").code(), std::errc::file_exists);
    EXPECT_EQ(contentOf(from / "Info.lua"), "info");
}

TEST_F(FolderCopyLinuxTest, ASingleFileReplacesAFileOrLandsInAFolder)
{
    writeFile(from / "Info.lua", "new info");
    writeFile(to / "Info.lua", "old info");
    const fs::path other = root / "Other";
    fs::create_directories(other);

    copyTree(from / "Info.lua", to / "Info.lua");
    copyTree(from / "Info.lua", other);

    EXPECT_EQ(contentOf(to / "Info.lua"), "new info");
    EXPECT_EQ(contentOf(other / "Info.lua"), "new info");
}

TEST_F(FolderCopyLinuxTest, ALinkInTheSourceIsCopiedAsWhatItLeadsTo)
{
    writeFile(root / "shared" / "Common.lua", "common");
    writeFile(root / "shared" / "icons" / "large.png", "large icon");
    fs::create_directories(from);
    fs::create_symlink(root / "shared" / "Common.lua", from / "Common.lua");
    fs::create_directory_symlink(root / "shared" / "icons", from / "icons");
    fs::create_directories(to.parent_path());

    copyTree(from, to);

    EXPECT_FALSE(fs::is_symlink(to / "Common.lua"));
    EXPECT_EQ(contentOf(to / "Common.lua"), "common");
    EXPECT_FALSE(fs::is_symlink(to / "icons"));
    EXPECT_EQ(contentOf(to / "icons" / "large.png"), "large icon");
}

// Someone else may have put a link in the target: what it leads to is never
// written, the link is named in a warning, and the rest is copied.
TEST_F(FolderCopyLinuxTest, LinksInTheTargetAreLeftAloneWithAWarningAndTheRestIsCopied)
{
    writeFile(root / "outside" / "secret", "secret");
    writeFile(root / "outside" / "folder" / "kept.lua", "kept");
    writeFile(from / "Info.lua", "info");
    writeFile(from / "icons" / "large.png", "large icon");
    writeFile(from / "Common.lua", "common");
    fs::create_directories(to);
    fs::create_symlink(root / "outside" / "secret", to / "Info.lua");
    fs::create_directory_symlink(root / "outside" / "folder", to / "icons");
    const LogCapture capture;

    copyTree(from, to);

    EXPECT_EQ(contentOf(root / "outside" / "secret"), "secret");
    EXPECT_EQ(contentOf(root / "outside" / "folder" / "kept.lua"), "kept");
    EXPECT_FALSE(fs::exists(root / "outside" / "folder" / "large.png"));
    EXPECT_TRUE(fs::is_symlink(to / "Info.lua"));
    EXPECT_EQ(contentOf(to / "Common.lua"), "common");
    ASSERT_EQ(capture.texts().size(), 2u);
    const std::vector<std::string> expected = {
        "warning: Refused to use " + (to / "Info.lua").string() + ", because it is a link",
        "warning: Refused to use " + (to / "icons").string() + ", because it is a link"};
    std::vector<std::string> texts = capture.texts();
    std::sort(texts.begin(), texts.end());
    EXPECT_EQ(texts, expected);
}

// The warning names a link beyond ASCII as it is, and the copy goes on.
TEST_F(FolderCopyLinuxTest, ALinkInTheTargetWithANameBeyondAsciiIsNamedInTheWarning)
{
    writeFile(root / "outside" / "kept.lua", "kept");
    writeFile(from / "Пресеты 预设" / "Ü.lua", "new");
    writeFile(from / "Info.lua", "info");
    fs::create_directories(to);
    fs::create_directory_symlink(root / "outside", to / "Пресеты 预设");
    const LogCapture capture;

    copyTree(from, to);

    EXPECT_EQ(contentOf(root / "outside" / "kept.lua"), "kept");
    EXPECT_FALSE(fs::exists(root / "outside" / "Ü.lua"));
    EXPECT_EQ(contentOf(to / "Info.lua"), "info");
    ASSERT_EQ(capture.texts().size(), 1u);
    EXPECT_EQ(capture.texts()[0],
              "warning: Refused to use " + (to / "Пресеты 预设").string() + ", because it is a link");
}
