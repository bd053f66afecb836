#include "Installer.h"

#include "FileUtils.h"
#include "SpecialFolders.h"
#include "logging/Log.h"

#include <filesystem>

namespace {

const QString appDataFolder = QStringLiteral("appData");
const QString makerFolder = QStringLiteral("Tavrin");

} // namespace

void Installer::moveAppData(const QString &rootDir)
{
    const QDir source(rootDir + QDir::separator() + appDataFolder);
    if (!source.exists())
        return;
    QDir target(programDataPath() + QDir::separator() + makerFolder);
    fileUtils::createDir(target);
    try {
        std::filesystem::copy(source.path().toStdWString(), target.path().toStdWString(),
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
    } catch (const std::exception &error) {
        KELP_LOG_ERROR("failed to move files {}", error.what());
    }
    // Also after a failed copy: what wasn't copied by then is lost, as the wizard expects.
    fileUtils::removeDir(source);
}
