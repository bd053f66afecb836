#include "Installer.h"

#include "FileUtils.h"
#include "GuardedFolder.h"
#include "FilesystemPath.h"
#include "FolderCopy.h"
#include "SpecialFolders.h"
#include "logging/Log.h"

#include <exception>

namespace {

const QString appDataFolder = QStringLiteral("appData");
const QString makerFolder = QStringLiteral("Tavrin");

} // namespace

void Installer::moveAppData(const QString &rootDir)
{
    const QDir source(rootDir + QDir::separator() + appDataFolder);
    if (!source.exists())
        return;
    const QDir target(programDataPath() + QDir::separator() + makerFolder);
    // Any user may create the maker's folder in ProgramData before the first
    // installation. A refused target keeps the source for a later run.
    const GuardedFolder targetFolder(programDataPath(), makerFolder);
    if (targetFolder.outcome() == GuardedFolder::Outcome::Refused)
        return;
    try {
        copyTree(filesystemPath(source.path()), filesystemPath(target.path()));
    } catch (const std::exception &error) {
        KELP_LOG_ERROR("failed to move files {}", error.what());
    }
    // Also after a failed copy: what wasn't copied by then is lost, as the wizard expects.
    fileUtils::removeDir(source);
}
