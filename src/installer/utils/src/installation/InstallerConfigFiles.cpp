#include "Installer.h"

#include "FileCopy.h"
#include "FileUtils.h"
#include "logging/Log.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

const QString makerFolder = QStringLiteral("Tavrin");
const QString collectionFolder = QStringLiteral("Orv Collection");
const QString languageFileName = QStringLiteral("OrvCollection.cfg");
const QString englishLanguageKey = QStringLiteral("<key name=\"Language\" type=\"string\" value=\"en\"/>");
const QString languageKeyTemplate = QStringLiteral("<key name=\"Language\" type=\"string\" value=\"%1\"/>");
const QString languageFileTemplate = QStringLiteral(
    "<configuration>\n"
    "                                               <group name=\"Language\">\n"
    "                                                   <key name=\"Language\" type=\"string\" value=\"%1\"/>\n"
    "                                               </group>\n"
    "                                           </configuration>\n");

// Writes the language into the product's source file itself; an unreadable
// source becomes empty.
void writeLanguageIntoSource(const QString &sourcePath, const QString &language)
{
    QString text;
    QFile source(sourcePath);
    if (source.open(QIODevice::ReadOnly)) {
        text = QTextStream(&source).readAll();
        source.close();
    }
    text.replace(englishLanguageKey, languageKeyTemplate.arg(language), Qt::CaseSensitive);
    fileUtils::createTextFile(QFile(sourcePath), text);
}

} // namespace

void Installer::installCfgFiles(const QJsonArray &plugins, const QString &rootDir, const QString &localAppDataDir,
                                const QString &language) const
{
    QList<QDir> destinations{QDir(pathUtils.localAppDataPath() + QStringLiteral("/") + makerFolder)};
    const QDir second(localAppDataDir + QDir::separator() + makerFolder);
    // A non-admin installation may name another local data folder: both get everything.
    if (!localAppDataDir.isEmpty() && second != destinations.first()) {
        KELP_LOG_INFO("Potentially non-admin Installation. 2 destinations with configFiles will be filled: {} and {}",
                      destinations.first().path().toStdString(), second.path().toStdString());
        destinations.append(second);
    }
    for (QDir &destination : destinations)
        fileUtils::createDir(destination);

    for (const QJsonValue &plugin : plugins) {
        const QString product = plugin.toString();
        for (const QDir &destination : destinations) {
            QDir productDir(destination.absolutePath() + QDir::separator() + product);
            fileUtils::createDir(productDir);
            const QStringList sources = pathUtils.findFiles(FileKind::CfgFile, rootDir + QDir::separator() + product);
            if (sources.isEmpty())
                continue;
            // Only the first file found counts; it lands flat in the product folder.
            const QString &source = sources.first();
            writeLanguageIntoSource(source, language);
            const QString fileName = QFileInfo(source).fileName();
            // The copy never overwrites: a rerun keeps the file of the first run.
            if (copyFile(source, productDir.filePath(fileName)))
                KELP_LOG_INFO("Sucessfully copied file {} to folder {}", fileName.toStdString(),
                              productDir.path().toStdString());
            else
                KELP_LOG_ERROR("Failed to copy file {} to folder {}", fileName.toStdString(),
                               productDir.path().toStdString());
        }
    }

    for (const QDir &destination : destinations) {
        QDir languageDir(destination.path() + QDir::separator() + collectionFolder);
        fileUtils::createDir(languageDir);
        fileUtils::createTextFile(QFile(languageDir.filePath(languageFileName)), languageFileTemplate.arg(language));
    }
}
