#include "ShellLink.h"

#include <cstdint>
#include <optional>

namespace {

constexpr int headerSize = 0x4c;
// The class ID of a shell link, {00021401-0000-0000-C000-000000000046}, as it lies in the file.
const QByteArray linkClassId = QByteArray::fromHex("0114020000000000c000000000000046");

constexpr std::uint32_t hasLinkTargetIdList = 0x1;
constexpr std::uint32_t hasLinkInfo = 0x2;
constexpr std::uint32_t hasName = 0x4;
constexpr std::uint32_t hasRelativePath = 0x8;
constexpr std::uint32_t hasWorkingDir = 0x10;
constexpr std::uint32_t isUnicode = 0x80;

constexpr std::uint32_t volumeIdAndLocalBasePath = 0x1;
// A LinkInfo header at least this long carries the Unicode offsets.
constexpr std::uint32_t unicodeHeaderSize = 0x24;

// Little-endian reads that fail, rather than read past the end.
class Reader
{
public:
    explicit Reader(const QByteArray &bytes)
        : bytes_(bytes)
    {
    }

    std::optional<std::uint32_t> number(int at, int size) const
    {
        if (at < 0 || size <= 0 || at > bytes_.size() - size)
            return std::nullopt;
        std::uint32_t value = 0;
        for (int index = size - 1; index >= 0; --index)
            value = (value << 8) | static_cast<std::uint8_t>(bytes_.at(at + index));
        return value;
    }

    // A string ended by a zero byte (or two for UTF-16), starting at `at`.
    std::optional<QString> terminated(int at, bool wide) const
    {
        if (at < 0 || at >= bytes_.size())
            return std::nullopt;
        QString text;
        for (int index = at;; index += wide ? 2 : 1) {
            const std::optional<std::uint32_t> unit = number(index, wide ? 2 : 1);
            if (!unit)
                return std::nullopt;
            if (*unit == 0)
                return wide ? text : ansiText(text.toLatin1());
            text.append(QChar(static_cast<char16_t>(*unit)));
        }
    }

    // ANSI strings stand in the code page of the program that made the link:
    // for SuiteDeployer.exe, whose manifest asks for it, UTF-8.
    static QString ansiText(const QByteArray &bytes)
    {
        const QString utf8 = QString::fromUtf8(bytes);
        return utf8.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : utf8;
    }

    // A string of the string data: a count of characters, then the characters.
    std::optional<QString> counted(int &at, bool wide) const
    {
        const std::optional<std::uint32_t> count = number(at, 2);
        if (!count)
            return std::nullopt;
        at += 2;
        QString text;
        for (std::uint32_t index = 0; index < *count; ++index) {
            const std::optional<std::uint32_t> unit = number(at, wide ? 2 : 1);
            if (!unit)
                return std::nullopt;
            text.append(QChar(static_cast<char16_t>(*unit)));
            at += wide ? 2 : 1;
        }
        return text;
    }

private:
    const QByteArray &bytes_;
};

std::optional<QString> localPath(const Reader &reader, int linkInfo)
{
    const std::optional<std::uint32_t> infoHeaderSize = reader.number(linkInfo + 4, 4);
    const std::optional<std::uint32_t> infoFlags = reader.number(linkInfo + 8, 4);
    if (!infoHeaderSize || !infoFlags)
        return std::nullopt;
    if (!(*infoFlags & volumeIdAndLocalBasePath))
        return QString();
    const bool wide = *infoHeaderSize >= unicodeHeaderSize;
    const std::optional<std::uint32_t> baseOffset = reader.number(linkInfo + (wide ? 0x1c : 0x10), 4);
    const std::optional<std::uint32_t> suffixOffset = reader.number(linkInfo + (wide ? 0x20 : 0x18), 4);
    if (!baseOffset || !suffixOffset)
        return std::nullopt;
    const std::optional<QString> base = reader.terminated(linkInfo + static_cast<int>(*baseOffset), wide);
    const std::optional<QString> suffix = reader.terminated(linkInfo + static_cast<int>(*suffixOffset), wide);
    if (!base || !suffix)
        return std::nullopt;
    return *base + *suffix;
}

} // namespace

ShellLink readShellLink(const QByteArray &bytes)
{
    const Reader reader(bytes);
    ShellLink link;
    if (reader.number(0, 4) != std::optional<std::uint32_t>(headerSize) || bytes.mid(4, 16) != linkClassId)
        return link;
    const std::optional<std::uint32_t> flags = reader.number(20, 4);
    if (!flags)
        return link;
    int at = headerSize;
    if (*flags & hasLinkTargetIdList) {
        const std::optional<std::uint32_t> idListSize = reader.number(at, 2);
        if (!idListSize)
            return link;
        at += 2 + static_cast<int>(*idListSize);
    }
    if (*flags & hasLinkInfo) {
        const std::optional<std::uint32_t> linkInfoSize = reader.number(at, 4);
        const std::optional<QString> target = localPath(reader, at);
        if (!linkInfoSize || !target || at > bytes.size() - static_cast<int>(*linkInfoSize))
            return link;
        link.target = *target;
        at += static_cast<int>(*linkInfoSize);
    }
    const bool wide = *flags & isUnicode;
    for (const std::uint32_t stringFlag : {hasName, hasRelativePath, hasWorkingDir}) {
        if (!(*flags & stringFlag))
            continue;
        const std::optional<QString> text = reader.counted(at, wide);
        if (!text)
            return link;
        // Wine counts the terminating zero character too, which the format does not.
        if (stringFlag == hasWorkingDir) {
            link.workingFolder = *text;
            while (link.workingFolder.endsWith(QChar(0)))
                link.workingFolder.chop(1);
        }
    }
    link.valid = true;
    return link;
}
