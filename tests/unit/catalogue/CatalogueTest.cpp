#include "Catalogue.h"
#include "CatalogueJson.h"

#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

const QString plugins = QStringLiteral("plugins");

class CatalogueTest : public testing::Test
{
protected:
    const Catalogue catalogue{loadCatalogueJson(QStringLiteral(":/PluginsConfiguration.json"))};
};

QStringList lightroomNames(const QList<PluginEntry> &entries)
{
    QStringList names;
    for (const PluginEntry &entry : entries)
        names.append(entry.lightroomNameWin);
    return names;
}

void expectEmpty(const PluginEntry &entry)
{
    EXPECT_TRUE(entry.lightroomNameWin.isEmpty());
    EXPECT_TRUE(entry.templateName.isEmpty());
    EXPECT_TRUE(entry.lrPluginFolder.isEmpty());
    EXPECT_TRUE(entry.lrUid.isEmpty());
    EXPECT_TRUE(entry.lrName.isEmpty());
    EXPECT_TRUE(entry.luaConfigFile.isEmpty());
    EXPECT_TRUE(entry.luaVarName.isEmpty());
}

} // namespace

TEST_F(CatalogueTest, ListsTheTwelveProductsInCatalogueOrder)
{
    const QStringList expected = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                  "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};
    EXPECT_EQ(catalogue.productsNotIn(QJsonArray()), expected);
}

TEST_F(CatalogueTest, HasExactlyTheTwoTopLevelKeys)
{
    EXPECT_EQ(catalogue.json.keys(), (QStringList{"Defaults", "PluginParam"}));
}

TEST_F(CatalogueTest, ProductEntriesCarryOnlyTheKeysOfTheirGeneration)
{
    const QStringList oldGeneration = {"ConfigFile",  "FilesFolder",  "FolderName",
                                       "ProductName", "SettingsFile", "plugins"};
    const QStringList currentGeneration = {"ConfigFile",  "ExecDir",      "FilesFolder", "FolderName",
                                           "ProductName", "SettingsFile", "orv4.path",   "plugins"};
    const QSet<QString> current = {"Grainwick 3", "Tintara 5", "Graymere 3", "Lumbrio 3"};
    for (const QJsonValue &value : catalogue.json.value("Defaults").toArray()) {
        const QJsonObject product = value.toObject();
        const QString name = product.value("ProductName").toString();
        QStringList expected = current.contains(name) ? currentGeneration : oldGeneration;
        if (name == "Rectilo") {
            expected.insert(3, "ImageSampleFolder");
        }
        EXPECT_EQ(product.keys(), expected) << name.toStdString();
    }
}

TEST_F(CatalogueTest, ExecDirOnlyForTheCurrentGeneration)
{
    EXPECT_EQ(catalogue.execDir("Tintara 4"), "");
    EXPECT_EQ(catalogue.execDir("Tintara 5"), "bin");
}

TEST_F(CatalogueTest, Orv4PathKeyOnlyForTheCurrentGeneration)
{
    EXPECT_EQ(catalogue.orv4PathKey("Bracketon 2"), "");
    EXPECT_EQ(catalogue.orv4PathKey("Grainwick 3"), "GrainwickPath");
    EXPECT_EQ(catalogue.orv4PathKey("Tintara 5"), "TintaraPath");
    EXPECT_EQ(catalogue.orv4PathKey("Graymere 3"), "GraymerePath");
    EXPECT_EQ(catalogue.orv4PathKey("Lumbrio 3"), "LumbrioPath");
}

TEST_F(CatalogueTest, FileNamesKeepTheirIrregularForms)
{
    EXPECT_EQ(catalogue.folderName("Grainwick 3"), "bin/plugins");
    EXPECT_EQ(catalogue.folderName("Grainwick 2"), "Grainwick 2");
    EXPECT_EQ(catalogue.configFile("Grainwick 3"), "Grainwick 3.config");
    EXPECT_EQ(catalogue.settingsFile("Grainwick 3"), "Grainwick3.cfg");
    EXPECT_EQ(catalogue.configFile("Acutara 3"), "ACU3.config");
    EXPECT_EQ(catalogue.settingsFile("Acutara 3"), "Acutara3.cfg");
    EXPECT_EQ(catalogue.productValue("Lumbrio 2", "FilesFolder"), "Lumbrio2");
}

TEST_F(CatalogueTest, SampleFolderIsRectilos)
{
    EXPECT_EQ(catalogue.sampleFolder(), "Rectilo Samples");
}

TEST_F(CatalogueTest, UnknownProductAndAbsentKeyBothGiveAnEmptyText)
{
    EXPECT_EQ(catalogue.productValue("Tintara 6", "FolderName"), "");
    EXPECT_EQ(catalogue.productValue("Tintara 4", "ExecDir"), "");
    EXPECT_EQ(catalogue.folderName("tintara 5"), "");
    EXPECT_EQ(catalogue.folderName(""), "");
}

TEST_F(CatalogueTest, PluginEntryFindsTheSecondPluginOfAcutara)
{
    const PluginEntry entry = catalogue.pluginEntry("Acutara 3", "ACU3RST.exe");
    EXPECT_EQ(entry.lightroomNameWin, "ACU3RST.exe");
    EXPECT_EQ(entry.templateName, "Acutara3_1_RAWPrestage.lrtemplate");
    EXPECT_EQ(entry.lrPluginFolder, "External Editor Presets");
    EXPECT_EQ(entry.lrName, "Acutara 3: RAW Prestage");
    EXPECT_EQ(entry.luaConfigFile, "ACU3RSTconfig.lua");
    EXPECT_EQ(entry.luaVarName, "ACU3RSTAppPath");
    EXPECT_NE(entry.lrUid, catalogue.pluginEntry("Acutara 3", "ACU3OST.exe").lrUid);
}

TEST_F(CatalogueTest, RectiloIsFoundOnlyByItsLauncher)
{
    expectEmpty(catalogue.pluginEntry("Rectilo", "Rectilo.exe"));
    const PluginEntry launcher = catalogue.pluginEntry("Rectilo", "Rectilo Launcher.exe");
    EXPECT_EQ(launcher.templateName, "Rectilo.lrtemplate");
    EXPECT_EQ(launcher.lrName, "Rectilo");
}

TEST_F(CatalogueTest, PluginEntryOfAnUnknownProductOrExecutableIsEmpty)
{
    expectEmpty(catalogue.pluginEntry("Tintara 6", "Tintara 5.exe"));
    expectEmpty(catalogue.pluginEntry("Tintara 5", "Tintara 4.exe"));
    expectEmpty(catalogue.pluginEntry("tintara 5", "Tintara 5.exe"));
}

TEST_F(CatalogueTest, BracketonIsAModuleWithoutIdentifierOrName)
{
    const PluginEntry entry = catalogue.pluginEntry("Bracketon 2", "Bracketon 2.exe");
    EXPECT_EQ(entry.templateName, "Bracketon2.lrplugin");
    EXPECT_EQ(entry.lrPluginFolder, "Modules");
    EXPECT_EQ(entry.lrUid, "");
    EXPECT_EQ(entry.lrName, "");
    EXPECT_EQ(entry.luaConfigFile, "BKT2config.lua");
    EXPECT_EQ(entry.luaVarName, "BKT2ExternalAppPath");
}

TEST_F(CatalogueTest, ThreePluginsHaveNoLuaFile)
{
    const QSet<QString> withoutLua = {"Graymere 2.exe", "Lumbrio 2.exe", "Rectilo Launcher.exe"};
    for (const PluginEntry &entry : catalogue.allPluginEntries()) {
        const bool expectLua = !withoutLua.contains(entry.lightroomNameWin);
        EXPECT_EQ(!entry.luaConfigFile.isEmpty(), expectLua) << entry.lightroomNameWin.toStdString();
        EXPECT_EQ(!entry.luaVarName.isEmpty(), expectLua) << entry.lightroomNameWin.toStdString();
    }
}

TEST_F(CatalogueTest, AllPluginEntriesAreTheThirteenInOrderWithoutPluginParam)
{
    const QStringList expected = {"Bracketon 2.exe", "Grainwick 2.exe", "Grainwick 3.exe",      "Tintara 4.exe",
                                  "Tintara 5.exe",   "Quietar2.exe",    "Graymere 2.exe",       "Graymere 3.exe",
                                  "Lumbrio 2.exe",   "Lumbrio 3.exe",   "Rectilo Launcher.exe", "ACU3OST.exe",
                                  "ACU3RST.exe"};
    EXPECT_EQ(lightroomNames(catalogue.allPluginEntries()), expected);
}

TEST_F(CatalogueTest, EveryPresetHasItsOwnUpperCaseGuid)
{
    const QRegularExpression guid("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$");
    QSet<QString> seen;
    for (const PluginEntry &entry : catalogue.allPluginEntries()) {
        if (entry.lightroomNameWin == "Bracketon 2.exe")
            continue;
        EXPECT_TRUE(guid.match(entry.lrUid).hasMatch()) << entry.lrUid.toStdString();
        seen.insert(entry.lrUid);
    }
    EXPECT_EQ(seen.size(), 12);
}

TEST_F(CatalogueTest, PluginParamIsTheSharedModule)
{
    const PluginEntry entry = catalogue.pluginParam();
    EXPECT_EQ(entry.lightroomNameWin, "reversible_util.exe");
    EXPECT_EQ(entry.templateName, "PluginParam.lrplugin");
    EXPECT_EQ(entry.lrPluginFolder, "Modules");
    EXPECT_EQ(entry.lrUid, "");
    EXPECT_EQ(entry.lrName, "");
    EXPECT_EQ(entry.luaConfigFile, "RevUtil1config.lua");
    EXPECT_EQ(entry.luaVarName, "RevUtil1AppPath");
    EXPECT_EQ(catalogue.json.value("PluginParam").toObject().value("LightroomNameMac").toString(),
              "reversible_util.app");
}

TEST_F(CatalogueTest, TintaraFourKeepsItsWindowsNameForTheMac)
{
    const QJsonObject tintara4 = findEntry(catalogue.json.value("Defaults").toArray(), "ProductName", "Tintara 4");
    const QJsonObject plugin = tintara4.value(plugins).toArray().first().toObject();
    EXPECT_EQ(plugin.value("LightroomNameMac").toString(), "Tintara 4.exe");
}

TEST_F(CatalogueTest, ProductsNotInComparesNamesExactly)
{
    const QStringList missing = catalogue.productsNotIn(QJsonArray{"grainwick 3", "Tintara 5", 42, QJsonValue()});
    EXPECT_EQ(missing.size(), 11);
    EXPECT_TRUE(missing.contains("Grainwick 3"));
    EXPECT_FALSE(missing.contains("Tintara 5"));
}

TEST_F(CatalogueTest, ProductsNotInOfEveryProductIsEmpty)
{
    const QStringList all = catalogue.productsNotIn(QJsonArray());
    EXPECT_TRUE(catalogue.productsNotIn(QJsonArray::fromStringList(all)).isEmpty());
}

TEST_F(CatalogueTest, AllFolderNamesKeepsTheRepeatedBinPlugins)
{
    const QStringList folders = catalogue.allFolderNames();
    EXPECT_EQ(folders.size(), 12);
    EXPECT_EQ(folders.count("bin/plugins"), 4);
    EXPECT_EQ(folders.first(), "Bracketon 2");
    EXPECT_EQ(folders.last(), "Acutara 3");
}

TEST_F(CatalogueTest, TheFourNamesAreConstantsOfTheProgram)
{
    EXPECT_EQ(catalogue.rectiloProductName, "Rectilo");
    EXPECT_EQ(catalogue.zonalToolName, "Zonal Tool");
    EXPECT_EQ(catalogue.zonalPaletteName, "Zonal Palette");
    EXPECT_EQ(catalogue.zonalPrefsFile, "com.tavrin.zonaltool.lastedit.prefs");
}

TEST(EmptyCatalogueTest, EveryLookUpIsEmpty)
{
    const Catalogue empty{QJsonObject()};
    EXPECT_EQ(empty.folderName("Tintara 5"), "");
    EXPECT_EQ(empty.sampleFolder(), "");
    expectEmpty(empty.pluginEntry("Tintara 5", "Tintara 5.exe"));
    expectEmpty(empty.pluginParam());
    EXPECT_TRUE(empty.allPluginEntries().isEmpty());
    EXPECT_TRUE(empty.productsNotIn(QJsonArray{"Tintara 5"}).isEmpty());
    EXPECT_TRUE(empty.productsNotIn(QJsonArray()).isEmpty());
    EXPECT_TRUE(empty.allFolderNames().isEmpty());
    EXPECT_EQ(empty.rectiloProductName, "Rectilo");
}
