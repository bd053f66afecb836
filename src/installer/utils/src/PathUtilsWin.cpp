#include "PathUtils.h"

#include <windows.h>

#include <shlobj.h>

namespace {

const QString startMenuFolderName =
    QStringLiteral("%1 %2").arg(QStringLiteral("Tavrin"), QStringLiteral("Orv Collection"));
constexpr int commonProgramsFolder = 23; // CSIDL_COMMON_PROGRAMS
constexpr int commonPicturesFolder = 54; // CSIDL_COMMON_PICTURES
constexpr int localAppDataFolder = 28;   // CSIDL_LOCAL_APPDATA
constexpr int folderPathLength = 260;    // MAX_PATH

// The folder as the shell gives it, with backslashes; empty when the shell
// doesn't know it.
QString shellFolderPath(int folder)
{
    wchar_t path[folderPathLength] = {};
    if (SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        return QString();
    return QString::fromWCharArray(path);
}

} // namespace

QDir PathUtils::startMenuDir() const
{
    return QDir(shellFolderPath(commonProgramsFolder) + QLatin1Char('/') + startMenuFolderName);
}

QString PathUtils::commonPicturesPath() const
{
    return shellFolderPath(commonPicturesFolder);
}

QString PathUtils::localAppDataPath() const
{
    return shellFolderPath(localAppDataFolder);
}
