#include "FilePermissions.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace {

constexpr std::uint32_t invalidParameter = 87;
constexpr mode_t fileMode = 0666;
constexpr mode_t folderMode = 0777;
constexpr char32_t replacementCharacter = 0xFFFD;

void appendUtf8(std::string &text, char32_t codePoint)
{
    const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (isSurrogate || codePoint > 0x10FFFF)
        codePoint = replacementCharacter;
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0 | (codePoint >> 6));
        text += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0 | (codePoint >> 12));
        text += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (codePoint >> 18));
        text += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

// wchar_t holds one UTF-32 code point here; file names are UTF-8, whatever
// the C locale says.
std::string toUtf8(const wchar_t *wideText)
{
    static_assert(sizeof(wchar_t) == sizeof(char32_t), "wide text is UTF-32 on this system");
    std::string text;
    for (const wchar_t *character = wideText; *character != L'\0'; ++character)
        appendUtf8(text, static_cast<char32_t>(*character));
    return text;
}

std::string folderOf(const std::string &path)
{
    const std::string::size_type slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::uint32_t lastError()
{
    return static_cast<std::uint32_t>(errno);
}

} // namespace

// Only what the one use needs: every user may read, write and delete the file.
std::uint32_t grantAccess(const wchar_t *objectName, std::int32_t /*objectType*/, const wchar_t * /*trustee*/,
                          std::int32_t /*trusteeForm*/, std::uint32_t /*accessRights*/, std::int32_t /*accessMode*/,
                          std::uint32_t /*inheritance*/)
{
    if (objectName == nullptr)
        return invalidParameter;
    const std::string path = toUtf8(objectName);
    if (::chmod(path.c_str(), fileMode) != 0)
        return lastError();
    if (::chmod(folderOf(path).c_str(), folderMode) != 0)
        return lastError();
    return 0;
}

std::uint32_t grantUsersAccess(std::intptr_t file, std::intptr_t folder)
{
    if (::fchmod(static_cast<int>(file), fileMode) != 0)
        return lastError();
    if (::fchmod(static_cast<int>(folder), folderMode) != 0)
        return lastError();
    return 0;
}
