#pragma once

#include "Catalogue.h"
#include "IPathUtils.h"

#include <QJsonObject>
#include <QSettings>
#include <QString>

// Takes away what an installation spread over the machine, reading what the
// config mode recorded, and resets the suite's registry data. Every removal
// is tried; a failure is only a warning line, and removing what isn't there
// is silent.
class Uninstaller
{
public:
    Uninstaller(const IPathUtils &pathUtils, const Catalogue &catalogue);

    // Start menu, host items, samples, the user's product data and the
    // machine-wide data. The suite root and the registry stay.
    void uninstall(const QJsonObject &request) const;

    // The maker's folder and the Lightroom items of every recorded host path.
    void removeHostItems(QSettings &locations) const;

    // The suite's modules, presets and export presets in one host folder.
    void removeLightroomItems(const QString &hostFolder) const;

    // Deletes the suite's keys of the machine and empties the user's suite key.
    void resetConfig() const;

private:
    void removeProductData(const QJsonObject &request) const;

    const IPathUtils &pathUtils;
    const Catalogue &catalogue;
};
