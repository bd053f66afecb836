#include "SuiteRoot.h"

#include "CatalogueJson.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace suiteRoot {
namespace {

void writeFile(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(contentOf(QFileInfo(path).fileName()));
}

void createModule(const QString &moduleDir, const QString &productName)
{
    writeFile(moduleDir + "/Info.lua");
    writeFile(moduleDir + "/Orv Collection/" + productName + " Export.lrtemplate");
}

void createProduct(const QString &root, const QJsonObject &product)
{
    const QString name = product.value("ProductName").toString();
    const QString folder = root + "/" + product.value("FolderName").toString();
    const QString execDir = product.contains("ExecDir") ? root + "/" + product.value("ExecDir").toString() : folder;
    writeFile(folder + "/" + product.value("ConfigFile").toString());
    writeFile(folder + "/" + product.value("SettingsFile").toString());
    for (const QJsonValue &value : product.value("plugins").toArray()) {
        const QJsonObject plugin = value.toObject();
        writeFile(folder + "/" + plugin.value("PhotoshopName").toString());
        writeFile(execDir + "/" + plugin.value("LightroomNameWin").toString());
        if (plugin.value("LRPluginFolder").toString() == "Modules")
            createModule(root + "/" + name + "/" + plugin.value("TemplateName").toString(), name);
    }
}

} // namespace

QByteArray contentOf(const QString &fileName)
{
    return "contents of " + fileName.toUtf8() + "\n";
}

void create(const QString &root)
{
    const QJsonObject catalogue = loadCatalogueJson(":/PluginsConfiguration.json");
    for (const QJsonValue &product : catalogue.value("Defaults").toArray())
        createProduct(root, product.toObject());
    writeFile(root + "/Rectilo/Rectilo.exe");
    writeFile(root + "/bin/automation/ZonalTool.8li");
    writeFile(root + "/bin/automation/Palette/ZonalPalette.8li");
    writeFile(root + "/bin/reversible_util.exe");
    createModule(root + "/bin/lrplugins/PluginParam.lrplugin", "PluginParam");
}

} // namespace suiteRoot
