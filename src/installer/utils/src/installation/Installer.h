#pragma once

#include "Catalogue.h"
#include "IPathUtils.h"
#include "PluginEntry.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QSettings>
#include <QString>

// Carries out the wizard's jobs on the machine. It holds the path utilities
// and the catalogue by reference and nothing else: all state of a job lives in
// the request and on the disk. No operation reports failure to its caller;
// each step logs and the next one runs.
class Installer
{
public:
    Installer(const IPathUtils &pathUtils, const Catalogue &catalogue);

    // The --install job: on an update the user's old uninstall entries go;
    // then, for a valid language, the plug-ins go into each distinct host and
    // the configuration files, the global collection file and the start-menu
    // links are written, in that order.
    void fullInstall(const QJsonObject &request) const;

    // Each product's *.cfg with the language written into it, into the user's
    // local application data (and the wizard's, when that is another
    // folder), and the suite's Language configuration file.
    void installCfgFiles(const QJsonArray &plugins, const QString &rootDir, const QString &localAppDataDir,
                         const QString &language) const;

    // The machine-wide OrvCollection.cfg below ProgramData, open to all users.
    static void createGlobalCollectionCfgFile(bool mixpanelEnabled, const QString &version);

    // Rebuilds the suite's start-menu folder with a link per listed executable below rootDir.
    void createStartMenuLinks(const QString &rootDir) const;

    // Copies the sample pictures of the language, then the neutral ones, into
    // the common pictures folder, and removes them from the suite root.
    void installSampleImages(const QString &rootDir, int language) const;

    // Merges the suite root's appData into the maker's ProgramData folder and removes it.
    static void moveAppData(const QString &rootDir);

    // The --config job: records hosts, paths, language and the uninstall
    // entry in the machine's and the user's settings. Writes no file.
    void installGlobalSettings(const QJsonObject &request) const;

    // Version, uninstall folder and each product's executable, into the store given.
    void writeUninstallInfo(const QJsonObject &request, QSettings &settings) const;

    // The product's executable under its orv4.path name, for products that have one.
    void writeOrv4Path(const QString &productName, const QString &productFolder, QSettings &settings) const;

    // Links the products into one Photoshop or Elements plug-in folder, copies
    // their configuration files, removes what wasn't chosen and rebuilds the
    // Zonal Tool folder.
    void installPhotoshopPlugins(const QJsonArray &plugins, const QString &rootDir, const QString &pluginPath) const;

    // Installs the shared module, the presets, the products' own modules and
    // the Lua files into one Lightroom data folder.
    void installLightroomPlugins(const QJsonArray &plugins, const QString &rootDir, const QString &lrRoot) const;

    // Copies one module folder whole into lrRoot with its export presets and
    // writes its Lua file. The module's destination, or QDir("") on failure.
    static QDir installLightroomModulePlugin(const PluginEntry &entry, const QString &sourceDir, const QString &lrRoot,
                                             const QString &executablePath);

private:
    const IPathUtils &pathUtils;
    const Catalogue &catalogue;
};
