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
    // The settings file is looked for by product name, also for the current generation.
    writeFile(root + "/" + name + "/" + product.value("SettingsFile").toString());
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
    if (fileName.endsWith(".cfg"))
        return "<configuration>\n"
               "    <group name=\"Language\">\n"
               "        <key name=\"Language\" type=\"string\" value=\"en\"/>\n"
               "    </group>\n"
               "    <group name=\"" +
               fileName.toUtf8() +
               "\">\n"
               "        <key name=\"Sharpen\" type=\"bool\" value=\"1\"/>\n"
               "    </group>\n"
               "</configuration>\n";
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
    for (const char *picture :
         {"pictures/Sunset.jpg", "pictures/Harbour.jpg", "pictures/1033/Sign.jpg", "pictures/1031/Schild.jpg",
          "pictures/1031/Details/Tafel.jpg", "pictures/1041/Kanban.jpg", "pictures/readme.txt"})
        writeFile(root + "/" + picture);
    writeFile(root + "/appData/Presets/Default.preset");
    writeFile(root + "/appData/Licenses/Orv.lic");
}

} // namespace suiteRoot
