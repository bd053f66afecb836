#include "PathUtils.h"

#include <QStandardPaths>

namespace {

const QString startMenuFolderName =
    QStringLiteral("%1 %2").arg(QStringLiteral("Tavrin"), QStringLiteral("Orv Collection"));
const QString applicationsFolder = QStringLiteral("/applications");
const QString defaultDataDir = QStringLiteral("/usr/local/share");
const QString defaultDataHomeTail = QStringLiteral("/.local/share");

QString orFallback(const QString &folder, const QString &fallback)
{
    return folder.isEmpty() ? fallback : folder;
}

} // namespace

// The environment is read at each call: a test or a second run may change it.

QDir PathUtils::startMenuDir() const
{
    const QString firstDataDir =
        qEnvironmentVariable("XDG_DATA_DIRS").split(QLatin1Char(':'), Qt::SkipEmptyParts).value(0);
    return QDir(orFallback(firstDataDir, defaultDataDir) + applicationsFolder + QLatin1Char('/') + startMenuFolderName);
}

QString PathUtils::commonPicturesPath() const
{
    return QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
}

QString PathUtils::localAppDataPath() const
{
    return orFallback(qEnvironmentVariable("XDG_DATA_HOME"), qEnvironmentVariable("HOME") + defaultDataHomeTail);
}
