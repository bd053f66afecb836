#include "Installer.h"

#include "FileUtils.h"
#include "LuaAssignment.h"
#include "logging/Log.h"

#include <QFile>
#include <QFileInfo>

namespace {

const QString binFolder = QStringLiteral("bin");
const QString moduleSourceFolder = QStringLiteral("lrplugins");
const QString moduleFolder = QStringLiteral("Modules");
const QString externalEditorPresetsFolder = QStringLiteral("External Editor Presets");

// Lightroom's external editor preset: %1 the entry's LRUID, %2 its LRName
// (twice), %3 the executable's full path.
const QString presetTemplate = QStringLiteral("\n"
                                              "s = {\n"
                                              "    id = \"%1\",\n"
                                              "    internalName = \"%2\",\n"
                                              "    title = \"%2\",\n"
                                              "    type = \"ExternalEditor\",\n"
                                              "    value = {\n"
                                              "        externalEditingFormat = \"TIFF_None_16_sRGB\",\n"
                                              "        externalEditingFormat_dpi = 240,\n"
                                              "        externalEditorFullPath = \"%3\",\n"
                                              "    },\n"
                                              "    version = 0,\n"
                                              "}");

// A product of the current generation is searched below bin, the others in their own folder.
QString searchRoot(const Catalogue &catalogue, const QString &rootDir, const QString &product)
{
    const QString execDir = catalogue.execDir(product);
    return rootDir + QDir::separator() + (execDir.isEmpty() ? catalogue.folderName(product) : execDir);
}

void writePreset(const PluginEntry &entry, const QString &lrRoot, const QString &executablePath)
{
    QDir presetDir(lrRoot + QDir::separator() + entry.lrPluginFolder);
    fileUtils::createDir(presetDir);
    if (entry.lrUid.isEmpty())
        return;
    fileUtils::createTextFile(QFile(presetDir.filePath(entry.templateName)),
                              presetTemplate.arg(entry.lrUid, entry.lrName, executablePath));
}

// A module product gets its Lua file twice: inside its own module, written by
// the module's installation, and here in the shared module. Both are required.
void deployEntry(const PluginEntry &entry, const QString &moduleSourceDir, const QString &lrRoot,
                 const QString &executablePath, const QDir &moduleDir)
{
    if (entry.lrPluginFolder == moduleFolder)
        Installer::installLightroomModulePlugin(entry, moduleSourceDir, lrRoot, executablePath);
    else
        writePreset(entry, lrRoot, executablePath);
    if (!entry.luaConfigFile.isEmpty())
        writeLuaAssignment(moduleDir.filePath(entry.luaConfigFile), entry.luaVarName, executablePath);
}

// Presets are matched by LRName against the product's name, so products whose
// entries are named otherwise keep theirs; their Lua files and modules stay too.
void removePreset(const QList<PluginEntry> &entries, const QString &product, const QString &lrRoot)
{
    for (const PluginEntry &entry : entries) {
        if (entry.lrName != product)
            continue;
        const QDir presetDir(lrRoot + QDir::separator() + externalEditorPresetsFolder);
        fileUtils::removeFile(QFile(presetDir.filePath(entry.templateName)));
        return;
    }
}

} // namespace

void Installer::installLightroomPlugins(const QJsonArray &plugins, const QString &rootDir, const QString &lrRoot) const
{
    const QDir binDir(rootDir + QDir::separator() + binFolder);
    const QString moduleSourceDir = binDir.filePath(moduleSourceFolder);

    // Every plug-in needs the shared module, so it goes in first and always.
    // When it fails, moduleDir is QDir("") and the Lua files land in the working folder.
    const PluginEntry pluginParam = catalogue.pluginParam();
    const QDir moduleDir = installLightroomModulePlugin(pluginParam, moduleSourceDir, lrRoot,
                                                        binDir.filePath(pluginParam.lightroomNameWin));

    for (const QJsonValue &plugin : plugins) {
        const QString product = plugin.toString();
        KELP_LOG_INFO("Processing lightroom plugin {}", product.toStdString());
        for (const QString &executablePath :
             pathUtils.findFiles(FileKind::ExeFile, searchRoot(catalogue, rootDir, product))) {
            // The folder's other executables have no entry of this product.
            const PluginEntry entry = catalogue.pluginEntry(product, QFileInfo(executablePath).fileName());
            if (entry.lightroomNameWin.isEmpty())
                continue;
            deployEntry(entry, rootDir + QDir::separator() + product, lrRoot, executablePath, moduleDir);
        }
    }

    const QList<PluginEntry> entries = catalogue.allPluginEntries();
    for (const QString &product : catalogue.productsNotIn(plugins))
        removePreset(entries, product, lrRoot);

    fileUtils::removeDir(QDir(moduleSourceDir));
}
