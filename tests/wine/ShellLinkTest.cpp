#include "ShellLink.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// The start-menu link to Rectilo.exe as the program made it under Wine 8:
// header, item ID list, LinkInfo with the local path in ANSI, working folder.
const QByteArray wineLink = QByteArray::fromHex("4c0000000114020000000000c00000000000004693000000000000000000"
                                                "000000000000000000000000000000000000000000000000000000000000"
                                                "01000000000000000000000000000000e90014001f00e04fd020ea3a6910"
                                                "a2d808002b30309d190023433a5c00000000000000000000000000000000"
                                                "0000003600310000000000775db4b9100073756974650022000000000000"
                                                "00775db4b9775db4b90000000073007500690074006500000014003c0031"
                                                "0000000000775db2b9100052656374696c6f002600000000000000775db2"
                                                "b9775db2b900000000520065006300740069006c006f0000001600480032"
                                                "000000000000000000000052656374696c6f2e657865002e000000000000"
                                                "00000000000000000000000000520065006300740069006c006f002e0065"
                                                "007800650000001a0000004b0000001c000000010000001c0000002d0000"
                                                "00000000004a0000001100000003000000000000431000000000433a5c73"
                                                "756974655c52656374696c6f5c52656374696c6f2e657865000011004300"
                                                "3a005c00730075006900740065005c00520065006300740069006c006f00"
                                                "000000000000");

void appendNumber(QByteArray &bytes, std::uint32_t value, int size)
{
    for (int index = 0; index < size; ++index)
        bytes.append(static_cast<char>((value >> (8 * index)) & 0xff));
}

void appendWide(QByteArray &bytes, const QString &text)
{
    for (const QChar character : text)
        appendNumber(bytes, character.unicode(), 2);
}

// A link without an ID list whose LinkInfo carries the Unicode offsets, and a
// name before the working folder.
QByteArray unicodeLink(const QString &base, const QString &suffix, const QString &name, const QString &workingFolder)
{
    QByteArray link = QByteArray::fromHex("4c0000000114020000000000c000000000000046");
    appendNumber(link, 0x2 | 0x4 | 0x10 | 0x80, 4);
    link.append(QByteArray(0x4c - link.size(), '\0'));

    const std::uint32_t headerSize = 0x24;
    const std::uint32_t baseOffset = headerSize;
    const std::uint32_t suffixOffset = baseOffset + 2 * (base.size() + 1);
    const std::uint32_t size = suffixOffset + 2 * (suffix.size() + 1);
    QByteArray info;
    appendNumber(info, size, 4);
    appendNumber(info, headerSize, 4);
    appendNumber(info, 0x1, 4);
    // No volume ID and ANSI strings are needed to find the Unicode ones.
    for (int unused = 0; unused < 4; ++unused)
        appendNumber(info, 0, 4);
    appendNumber(info, baseOffset, 4);
    appendNumber(info, suffixOffset, 4);
    appendWide(info, base);
    appendNumber(info, 0, 2);
    appendWide(info, suffix);
    appendNumber(info, 0, 2);
    link.append(info);

    for (const QString &text : {name, workingFolder}) {
        appendNumber(link, static_cast<std::uint32_t>(text.size()), 2);
        appendWide(link, text);
    }
    appendNumber(link, 0, 4);
    return link;
}

} // namespace

TEST(ShellLinkTest, ReadsTheTargetAndWorkingFolderOfALinkThatWineWrote)
{
    const ShellLink link = readShellLink(wineLink);
    EXPECT_TRUE(link.valid);
    EXPECT_EQ(link.target, QStringLiteral("C:\\suite\\Rectilo\\Rectilo.exe"));
    EXPECT_EQ(link.workingFolder, QStringLiteral("C:\\suite\\Rectilo"));
}

TEST(ShellLinkTest, ReadsTheUnicodeStringsOfLinkInfoWhenItHasThem)
{
    const ShellLink link =
        readShellLink(unicodeLink(QStringLiteral("C:\\Bilder\\Gr\u00fc\u00dfe"), QStringLiteral("\\\u65e5.jpg"),
                                  QStringLiteral("a name"), QStringLiteral("C:\\Bilder")));
    EXPECT_TRUE(link.valid);
    EXPECT_EQ(link.target, QStringLiteral("C:\\Bilder\\Gr\u00fc\u00dfe\\\u65e5.jpg"));
    EXPECT_EQ(link.workingFolder, QStringLiteral("C:\\Bilder"));
}

TEST(ShellLinkTest, ALinkCutShortIsNoLink)
{
    // Cut inside the header, the ID list, LinkInfo and the working folder.
    for (const int size : {0, 20, 0x4c, 0x100, 0x140, 0x180, wineLink.size() - 10})
        EXPECT_FALSE(readShellLink(wineLink.left(size)).valid) << size;
}

TEST(ShellLinkTest, OtherFilesAreNoLinks)
{
    EXPECT_FALSE(readShellLink("contents of Rectilo.exe\n").valid);
    QByteArray otherClass = wineLink;
    otherClass[4] = '\x02';
    EXPECT_FALSE(readShellLink(otherClass).valid);
}

TEST(ShellLinkTest, OffsetsBeyondTheEndAreNoLink)
{
    QByteArray broken = wineLink;
    // LinkInfo starts behind the ID list; its local base path offset lies 16 bytes in.
    const int linkInfo = 0x4c + 2 + 0xe9;
    broken[linkInfo + 16] = '\x7f';
    broken[linkInfo + 17] = '\x7f';
    EXPECT_FALSE(readShellLink(broken).valid);
}
