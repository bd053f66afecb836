#include "Installer.h"

#include "FileCopy.h"
#include "FileUtils.h"
#include "GuardedFolder.h"
#include "LanguageTables.h"

#include <QDirIterator>

namespace {

const QString picturesFolder = QStringLiteral("pictures");

} // namespace

void Installer::installSampleImages(const QString &rootDir, int language) const
{
    const QString sourceRoot = rootDir + QDir::separator() + picturesFolder;
    QDir target(pathUtils.commonPicturesPath() + QStringLiteral("/") + catalogue.sampleFolder());
    // All users share the pictures folder. A refused target keeps the
    // pictures in the root folder, where a later run can still place them.
    const GuardedFolder targetFolder(pathUtils.commonPicturesPath(), catalogue.sampleFolder());
    if (targetFolder.outcome() == GuardedFolder::Outcome::Refused)
        return;

    // The language's pictures come first: the copy doesn't overwrite, so a
    // neutral picture of the same name doesn't replace them.
    const QString languageFolder = sampleLanguageFolders.value(language, defaultSampleLanguageId);
    pathUtils.findAndProcess(sourceRoot + QStringLiteral("/") + languageFolder, target.absolutePath(),
                             FileKind::JpgFile, QDir::Files, ProcessAction::Copy);
    QDirIterator neutral(sourceRoot, QStringList{pathUtils.filePattern(FileKind::JpgFile)}, QDir::Files);
    while (neutral.hasNext()) {
        neutral.next();
        copyFile(neutral.filePath(), target.absoluteFilePath(neutral.fileName()));
    }
    // The pictures of every language go, not only those that were used.
    fileUtils::removeDir(QDir(sourceRoot));
}
