#include "HostAppUtils.h"

#include "SpecialFolders.h"
#include "logging/Log.h"

#include <QDir>

namespace {

const QString dataFolderTail = nativePathTail(QStringLiteral("\\Adobe\\Lightroom\\"));
const QString preferencesFolderTail = nativePathTail(QStringLiteral("\\Adobe\\Lightroom\\Preferences"));
const QString preferencesFilter = QStringLiteral("Lightroom*Preferences.agprefs");
const QString preferencesMarker = QStringLiteral("Preferences");
const char *const existsWord = "exists";
const char *const missingWord = "does not exist";

// "Lightroom Classic CC 7 Preferences.agprefs" gives "Lightroom Classic CC 7":
// the text before the marker less one character, the blank. Without the
// marker in that case, left() gets a negative count and keeps the whole name.
QString appNameOf(const QString &preferencesFile)
{
    return preferencesFile.left(preferencesFile.lastIndexOf(preferencesMarker, -1, Qt::CaseSensitive) - 1);
}

} // namespace

void detectLightroomHosts(QJsonArray &hosts)
{
    const QString roamingFolder = roamingAppDataPath();
    const QString preferencesFolder = roamingFolder + preferencesFolderTail;
    const QDir preferences(preferencesFolder);
    const QStringList files = preferences.entryList(QStringList{preferencesFilter});
    if (files.isEmpty()) {
        KELP_LOG_WARN("No LR preferences found in dir ({}): {}, ", preferences.exists() ? existsWord : missingWord,
                      preferencesFolder.toStdString());
        return;
    }
    // All versions share one data folder: the first file by name names the host.
    addHostRecord(hosts, appNameOf(files.first()), roamingFolder + dataFolderTail, qint32(HostType::Lightroom));
}
