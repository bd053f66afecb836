#include "SleepingProcess.h"
#include "TemporaryFolder.h"
#include "ToolhelpListing.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

const std::string lineEnd = "\r\r\n";

std::string ownImageName()
{
    std::wstring self(MAX_PATH, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
    return std::filesystem::path(self).filename().u8string();
}

std::size_t linesOf(const std::string &list, const std::string &name)
{
    const std::string line = lineEnd + name + lineEnd;
    std::size_t count = 0;
    for (std::size_t at = list.find(line); at != std::string::npos; at = list.find(line, at + 1))
        ++count;
    return count;
}

// The lines between the separators; an empty one would stand for a doubled separator.
std::vector<std::string> linesBetweenSeparators(const std::string &list)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = list.find(lineEnd); end != std::string::npos; end = list.find(lineEnd, start)) {
        lines.push_back(list.substr(start, end - start));
        start = end + lineEnd.size();
    }
    lines.push_back(list.substr(start));
    return lines;
}

} // namespace

TEST(ToolhelpListingTest, WritesTheNamesInWmicsForm)
{
    EXPECT_EQ(captionListOf({L"Photoshop.exe", L"Tintara 5.exe"}),
              "Caption\r\r\nPhotoshop.exe\r\r\nTintara 5.exe\r\r\n");
}

TEST(ToolhelpListingTest, NoNamesGiveTheHeaderLineAlone)
{
    EXPECT_EQ(captionListOf({}), "Caption\r\r\n");
}

TEST(ToolhelpListingTest, ANameWithItsFolderIsCutToTheLastComponent)
{
    EXPECT_EQ(captionListOf({L"C:\\Program Files\\Adobe\\Photoshop.exe", L"/opt/orv/Lumbrio 2.exe"}),
              "Caption\r\r\nPhotoshop.exe\r\r\nLumbrio 2.exe\r\r\n");
}

TEST(ToolhelpListingTest, EmptyNamesAreLeftOut)
{
    EXPECT_EQ(captionListOf({L"", L"System", L"C:\\folder\\"}), "Caption\r\r\nSystem\r\r\n");
}

TEST(ToolhelpListingTest, NamesAreWrittenInUtf8)
{
    EXPECT_EQ(captionListOf({L"Gr\u00e4inwick \u65e5.exe"}), "Caption\r\r\nGr\xc3\xa4inwick \xe6\x97\xa5.exe\r\r\n");
}

TEST(ToolhelpListingTest, AProcessIsListedByItsImageName)
{
    const TemporaryFolder folder;
    const SleepingProcess tintara(folder.path(), L"Tintara 5.exe");
    ASSERT_TRUE(tintara.isRunning());
    EXPECT_EQ(linesOf(toolhelpCaptionList(), "Tintara 5.exe"), 1u);
}

TEST(ToolhelpListingTest, TheListHoldsItsOwnProcess)
{
    EXPECT_EQ(linesOf(toolhelpCaptionList(), ownImageName()), 1u);
}

TEST(ToolhelpListingTest, AnImageNameBeyondAsciiIsListedInUtf8)
{
    const TemporaryFolder folder;
    const SleepingProcess lumbrio(folder.path(), L"Lumbrio \u00e9t\u00e9.exe");
    ASSERT_TRUE(lumbrio.isRunning());
    EXPECT_EQ(linesOf(toolhelpCaptionList(), "Lumbrio \xc3\xa9t\xc3\xa9.exe"), 1u);
}

TEST(ToolhelpListingTest, AProgramRunningTwiceIsListedTwice)
{
    const TemporaryFolder folder;
    const SleepingProcess first(folder.path(), L"Photoshop.exe");
    const SleepingProcess second(folder.path(), L"Photoshop.exe");
    EXPECT_EQ(linesOf(toolhelpCaptionList(), "Photoshop.exe"), 2u);
}

TEST(ToolhelpListingTest, EveryLineOfTheSystemsListEndsInCrCrLf)
{
    const std::string list = toolhelpCaptionList();
    ASSERT_EQ(list.rfind("Caption" + lineEnd, 0), 0u);
    ASSERT_GE(list.size(), lineEnd.size());
    EXPECT_EQ(list.substr(list.size() - lineEnd.size()), lineEnd);
    std::vector<std::string> lines = linesBetweenSeparators(list);
    EXPECT_EQ(lines.back(), "");
    lines.pop_back();
    EXPECT_GT(lines.size(), 1u);
    for (const std::string &line : lines) {
        EXPECT_FALSE(line.empty());
        EXPECT_EQ(line.find_first_of("\r\n\\/"), std::string::npos) << line;
    }
}
