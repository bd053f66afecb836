#include "SpecialFolders.h"

#include <QDir>
#include <QStandardPaths>

// The application's own data folder lies directly below the roaming folder.
QString roamingAppDataPath()
{
    const QString appData = QDir::toNativeSeparators(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return appData.left(appData.lastIndexOf(QLatin1Char('\\'), -1, Qt::CaseSensitive));
}

QString nativePathTail(const QString &windowsTail)
{
    return windowsTail;
}

QString programDataPath()
{
    return qEnvironmentVariable("ProgramData");
}
