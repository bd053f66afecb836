#include "Installer.h"

#include "FileUtils.h"
#include "GuardedFolder.h"
#include "StartMenuLinkNames.h"
#include "StartMenuShell.h"
#include "logging/Log.h"

#include <QDirIterator>
#include <QFileInfo>

void Installer::createStartMenuLinks(const QString &rootDir) const
{
    StartMenuShell shell;
    QDir startMenu = pathUtils.startMenuDir();
    // Links of an earlier run, and whatever else lies there, go: a rerun
    // leaves the same folder.
    fileUtils::removeDir(startMenu);
    // Made anew below the menu's own folder and kept open, so that no link
    // put in its place can lead the links elsewhere.
    const QFileInfo place(startMenu.absolutePath());
    const GuardedFolder folder(place.path(), place.fileName());
    KELP_LOG_INFO("going to create start menu links at {}", startMenu.absolutePath().toStdString());

    if (fileUtils::isWalkable(rootDir)) {
        QDirIterator executables(rootDir, QStringList{pathUtils.filePattern(FileKind::ExeFile)}, QDir::Files,
                                 QDirIterator::Subdirectories);
        while (executables.hasNext()) {
            const QString executable = executables.next();
            const QString linkName = startMenuLinkFileName(executables.fileName());
            if (linkName.isEmpty())
                continue;
            const QString linkPath = startMenu.absoluteFilePath(linkName);
            KELP_LOG_INFO("Creating link from {} to {}", executable.toStdString(), linkPath.toStdString());
            if (!folder.makeLink(executable, linkName))
                KELP_LOG_WARN("Failed to create link from {} to {}", executable.toStdString(), linkPath.toStdString());
            shell.createShellLinkObject();
        }
    }
    shell.notifyStartMenusChanged();
}
