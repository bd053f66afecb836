#include "PathUtils.h"

#include "ShellFolders.h"

namespace {

const QString startMenuFolderName =
    QStringLiteral("%1 %2").arg(QStringLiteral("Tavrin"), QStringLiteral("Orv Collection"));
constexpr int commonProgramsFolder = 23; // CSIDL_COMMON_PROGRAMS
constexpr int commonPicturesFolder = 54; // CSIDL_COMMON_PICTURES
constexpr int localAppDataFolder = 28;   // CSIDL_LOCAL_APPDATA

QString shellFolder(int folder)
{
    return QString::fromStdWString(shellFolderPath(folder));
}

} // namespace

QDir PathUtils::startMenuDir() const
{
    return QDir(shellFolder(commonProgramsFolder) + QLatin1Char('/') + startMenuFolderName);
}

QString PathUtils::commonPicturesPath() const
{
    return shellFolder(commonPicturesFolder);
}

QString PathUtils::localAppDataPath() const
{
    return shellFolder(localAppDataFolder);
}
