#include "FolderCopy.h"
#include "TemporaryFolder.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

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
    ADD_FAILURE() << "nothing thrown copying " << from.string() << " to " << to.string();
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

// The attribute goes again before the temporary folder, which cannot remove a read-only file.
class ReadOnlyFile
{
public:
    explicit ReadOnlyFile(fs::path path)
        : path_(std::move(path))
    {
        SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_READONLY);
    }
    ~ReadOnlyFile() { SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL); }
    ReadOnlyFile(const ReadOnlyFile &) = delete;
    ReadOnlyFile &operator=(const ReadOnlyFile &) = delete;

private:
    fs::path path_;
};

// Open for reading without sharing, as a running program may hold one of its files.
class HeldFile
{
public:
    explicit HeldFile(const fs::path &path)
        : handle_(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr))
    {
    }
    ~HeldFile() { release(); }
    HeldFile(const HeldFile &) = delete;
    HeldFile &operator=(const HeldFile &) = delete;

    bool isHeld() const { return handle_ != INVALID_HANDLE_VALUE; }

    void release()
    {
        if (isHeld())
            CloseHandle(handle_);
        handle_ = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE handle_;
};

class FolderCopyWinTest : public testing::Test
{
protected:
    TemporaryFolder folder;
    const fs::path from = folder.path() / L"bin" / L"PluginParam.lrplugin";
    const fs::path to = folder.path() / L"Modules" / L"PluginParam.lrplugin";
};

} // namespace

TEST_F(FolderCopyWinTest, CopiesTheWholeTreeIntoAMissingFolder)
{
    writeFile(from / L"Info.lua", "info");
    writeFile(from / L"Orv Collection" / L"Default.lrtemplate", "preset");
    writeFile(from / L"resources" / L"icons" / L"small.png", "icon");
    fs::create_directories(from / L"empty");
    fs::create_directories(to.parent_path());

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / L"Info.lua"), "info");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Default.lrtemplate"), "preset");
    EXPECT_EQ(contentOf(to / L"resources" / L"icons" / L"small.png"), "icon");
    EXPECT_TRUE(fs::is_directory(to / L"empty"));
    EXPECT_EQ(contentOf(from / L"Info.lua"), "info");
}

TEST_F(FolderCopyWinTest, MergesIntoAnExistingFolder)
{
    writeFile(from / L"Info.lua", "new info");
    writeFile(from / L"Orv Collection" / L"Default.lrtemplate", "new preset");
    writeFile(from / L"Orv Collection" / L"Deep" / L"Inner.txt", "new inner");
    writeFile(to / L"Info.lua", "old info");
    writeFile(to / L"Mine.lua", "the user's own");
    writeFile(to / L"Orv Collection" / L"Default.lrtemplate", "old preset");
    writeFile(to / L"Orv Collection" / L"Own.lrtemplate", "own preset");
    writeFile(to / L"Orv Collection" / L"Deep" / L"Kept.txt", "kept");

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / L"Info.lua"), "new info");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Default.lrtemplate"), "new preset");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Deep" / L"Inner.txt"), "new inner");
    EXPECT_EQ(contentOf(to / L"Mine.lua"), "the user's own");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Own.lrtemplate"), "own preset");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Deep" / L"Kept.txt"), "kept");
}

TEST_F(FolderCopyWinTest, ASecondCopyReplacesTheFirstAndKeepsWhatCameSince)
{
    writeFile(from / L"Info.lua", "first");
    writeFile(from / L"Orv Collection" / L"Default.lrtemplate", "first preset");
    fs::create_directories(to.parent_path());
    copyTree(from, to);
    writeFile(from / L"Info.lua", "second");
    writeFile(to / L"Orv Collection" / L"Default.lrtemplate", "changed by the user");
    writeFile(to / L"Orv Collection" / L"Added.lrtemplate", "added by the user");

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / L"Info.lua"), "second");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Default.lrtemplate"), "first preset");
    EXPECT_EQ(contentOf(to / L"Orv Collection" / L"Added.lrtemplate"), "added by the user");
}

TEST_F(FolderCopyWinTest, AMissingSourceThrowsNamingTheCopyAndBothPaths)
{
    fs::create_directories(to);

    const fs::filesystem_error error = errorOf(from, to);

    expectNamesTheCopy(error, from, to);
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(fs::is_empty(to));
}

TEST_F(FolderCopyWinTest, AFolderWhereTheTargetHasAFileThrowsNamingTheWholeCopy)
{
    writeFile(from / L"Orv Collection" / L"Default.lrtemplate", "preset");
    writeFile(to / L"Orv Collection", "a file where the source has a folder");

    const fs::filesystem_error error = errorOf(from, to);

    expectNamesTheCopy(error, from, to);
    EXPECT_EQ(error.code(), std::errc::is_a_directory);
    EXPECT_EQ(contentOf(to / L"Orv Collection"), "a file where the source has a folder");
}

// An update over an earlier copy of a read-only source: CopyFileW carried the
// attribute over. Wine run by root lets anyone write such a file anyway.
TEST_F(FolderCopyWinTest, AReadOnlyFileInTheTargetIsReplaced)
{
    writeFile(from / L"Info.lua", "new info");
    writeFile(to / L"Info.lua", "old info");
    const ReadOnlyFile readOnlySource(from / L"Info.lua");
    const ReadOnlyFile readOnlyTarget(to / L"Info.lua");

    copyTree(from, to);

    EXPECT_EQ(contentOf(to / L"Info.lua"), "new info");
}

// Beyond MAX_PATH the program's own calls take the extended-length form.
TEST_F(FolderCopyWinTest, AReadOnlyFileBeyondMaxPathIsReplaced)
{
    const fs::path deepTo = to / std::wstring(120, L'd') / std::wstring(120, L'e');
    writeFile(from / std::wstring(120, L'd') / std::wstring(120, L'e') / L"Info.lua", "new info");
    writeFile(deepTo / L"Info.lua", "old info");
    ASSERT_GT((deepTo / L"Info.lua").native().size(), std::size_t(MAX_PATH));
    const ReadOnlyFile readOnlyTarget(deepTo / L"Info.lua");

    copyTree(from, to);

    EXPECT_EQ(contentOf(deepTo / L"Info.lua"), "new info");
}

TEST_F(FolderCopyWinTest, AFileInUseInTheTargetThrowsAndStays)
{
    writeFile(from / L"Info.lua", "new info");
    writeFile(to / L"Info.lua", "old info");
    HeldFile held(to / L"Info.lua");
    ASSERT_TRUE(held.isHeld());

    const fs::filesystem_error error = errorOf(from, to);
    held.release();

    expectNamesTheCopy(error, from / L"Info.lua", to / L"Info.lua");
    EXPECT_EQ(error.path1(), from / L"Info.lua");
    EXPECT_EQ(error.path2(), to / L"Info.lua");
    EXPECT_EQ(error.code(), std::error_code(ERROR_SHARING_VIOLATION, std::system_category()));
    EXPECT_EQ(contentOf(to / L"Info.lua"), "old info");
}

TEST_F(FolderCopyWinTest, AFolderOrFileIsNotItsOwnTarget)
{
    writeFile(from / L"Info.lua", "info");
    const fs::path sameFolder = folder.path() / L"bin" / L"." / L"PluginParam.lrplugin";

    EXPECT_EQ(errorOf(from, sameFolder).code(), std::errc::file_exists);
    EXPECT_EQ(errorOf(from / L"Info.lua", sameFolder / L"Info.lua").code(), std::errc::file_exists);
    EXPECT_EQ(contentOf(from / L"Info.lua"), "info");
}

TEST_F(FolderCopyWinTest, ASingleFileReplacesAFileOrLandsInAFolder)
{
    writeFile(from / L"Info.lua", "new info");
    writeFile(to / L"Info.lua", "old info");
    const fs::path other = folder.path() / L"Other";
    fs::create_directories(other);

    copyTree(from / L"Info.lua", to / L"Info.lua");
    copyTree(from / L"Info.lua", other);

    EXPECT_EQ(contentOf(to / L"Info.lua"), "new info");
    EXPECT_EQ(contentOf(other / L"Info.lua"), "new info");
}
