#include "Catalogue.h"

#include "CatalogueJson.h"

#include <algorithm>

namespace {

const QString defaultsKey = QStringLiteral("Defaults");
const QString productNameKey = QStringLiteral("ProductName");
const QString pluginsKey = QStringLiteral("plugins");
const QString folderNameKey = QStringLiteral("FolderName");
const QString imageSampleFolderKey = QStringLiteral("ImageSampleFolder");
const QString pluginParamKey = QStringLiteral("PluginParam");
const QString lightroomNameWinKey = QStringLiteral("LightroomNameWin");

PluginEntry makePluginEntry(const QJsonObject &entry)
{
    return PluginEntry{
        entry.value(lightroomNameWinKey).toString(),
        entry.value(QStringLiteral("TemplateName")).toString(),
        entry.value(QStringLiteral("LRPluginFolder")).toString(),
        entry.value(QStringLiteral("LRUID")).toString(),
        entry.value(QStringLiteral("LRName")).toString(),
        entry.value(QStringLiteral("LuaConfigFile")).toString(),
        entry.value(QStringLiteral("LuaVarName")).toString(),
    };
}

} // namespace

Catalogue::Catalogue(QJsonObject catalogueJson)
    : rectiloProductName(QStringLiteral("Rectilo"))
    , zonalToolName(QStringLiteral("Zonal Tool"))
    , zonalPaletteName(QStringLiteral("Zonal Palette"))
    , zonalPrefsFile(QStringLiteral("com.tavrin.zonaltool.lastedit.prefs"))
    , json(std::move(catalogueJson))
{
}

QJsonObject Catalogue::product(const QString &productName) const
{
    return findEntry(json.value(defaultsKey).toArray(), productNameKey, productName);
}

QString Catalogue::productValue(const QString &productName, const QString &key) const
{
    return product(productName).value(key).toString();
}

QString Catalogue::execDir(const QString &productName) const
{
    return productValue(productName, QStringLiteral("ExecDir"));
}

QString Catalogue::folderName(const QString &productName) const
{
    return productValue(productName, folderNameKey);
}

QString Catalogue::configFile(const QString &productName) const
{
    return productValue(productName, QStringLiteral("ConfigFile"));
}

QString Catalogue::settingsFile(const QString &productName) const
{
    return productValue(productName, QStringLiteral("SettingsFile"));
}

QString Catalogue::orv4PathKey(const QString &productName) const
{
    return productValue(productName, QStringLiteral("orv4.path"));
}

QString Catalogue::sampleFolder() const
{
    return productValue(rectiloProductName, imageSampleFolderKey);
}

PluginEntry Catalogue::pluginEntry(const QString &productName, const QString &lightroomNameWin) const
{
    const QJsonArray plugins = product(productName).value(pluginsKey).toArray();
    return makePluginEntry(findEntry(plugins, lightroomNameWinKey, lightroomNameWin));
}

PluginEntry Catalogue::pluginParam() const
{
    return makePluginEntry(json.value(pluginParamKey).toObject());
}

QList<PluginEntry> Catalogue::allPluginEntries() const
{
    QList<PluginEntry> entries;
    for (const QJsonValue productEntry : json.value(defaultsKey).toArray()) {
        for (const QJsonValue plugin : productEntry.toObject().value(pluginsKey).toArray())
            entries.append(makePluginEntry(plugin.toObject()));
    }
    return entries;
}

QStringList Catalogue::productsNotIn(const QJsonArray &productNames) const
{
    QStringList missing;
    for (const QJsonValue productEntry : json.value(defaultsKey).toArray()) {
        const QString name = productEntry.toObject().value(productNameKey).toString();
        const bool requested =
            std::any_of(productNames.begin(), productNames.end(),
                        [&name](const QJsonValue &requestedName) { return requestedName.toString() == name; });
        if (!requested)
            missing.append(name);
    }
    return missing;
}

QStringList Catalogue::allFolderNames() const
{
    QStringList folders;
    for (const QJsonValue productEntry : json.value(defaultsKey).toArray()) {
        const QString folder = productEntry.toObject().value(folderNameKey).toString();
        if (!folder.isEmpty())
            folders.append(folder);
    }
    return folders;
}
