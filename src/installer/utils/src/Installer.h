#pragma once

#include "Catalogue.h"
#include "IPathUtils.h"
#include "PluginEntry.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// Carries out the wizard's jobs on the machine. It holds the path utilities
// and the catalogue by reference and nothing else: all state of a job lives in
// the request and on the disk. No operation reports failure to its caller;
// each step logs and the next one runs.
class Installer
{
public:
    Installer(const IPathUtils &pathUtils, const Catalogue &catalogue);

    // Links the products into one Photoshop or Elements plug-in folder, copies
    // their configuration files, removes what wasn't chosen and rebuilds the
    // Zonal Tool folder.
    void installPhotoshopPlugins(const QJsonArray &plugins, const QString &rootDir, const QString &pluginPath) const;

    // Installs the shared module, the presets, the products' own modules and
    // the Lua files into one Lightroom data folder.
    void installLightroomPlugins(const QJsonArray &plugins, const QString &rootDir, const QString &lrRoot) const;

    // Copies one module folder whole into lrRoot with its export presets and
    // writes its Lua file. The module's destination, or QDir("") on failure.
    static QDir installLightroomModulePlugin(const PluginEntry &entry, const QString &sourceDir,
                                             const QString &lrRoot, const QString &executablePath);

private:
    const IPathUtils &pathUtils;
    const Catalogue &catalogue;
};
