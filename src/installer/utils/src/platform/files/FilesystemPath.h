#pragma once

#include <QString>

#include <filesystem>

// A path of the program's as the filesystem library takes it, whatever its
// letters: UTF-16 on Windows, UTF-8 on Linux. A wide string would be narrowed
// through the C locale on Linux, which refuses every letter beyond ASCII.
inline std::filesystem::path filesystemPath(const QString &path)
{
    return std::filesystem::path(path.toStdU16String());
}
