#include "Catalogue.h"
#include "CatalogueJson.h"
#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "PathUtils.h"
#include "RegistrySettings.h"
#include "ScopedEnvironment.h"
#include "SuiteRoot.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

// Readable failure messages for the Qt texts compared below.
static void PrintTo(const QString &string, std::ostream *out)
{
    *out << '"' << string.toStdString() << '"';
}

static void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}

namespace {

const QString function = "Installer::installPhotoshopPlugins";
const QString rectiloKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Rectilo\\";

const QStringList allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                 "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};

// The plug-ins of the current generation, which all lie in the shared bin/plugins.
const QStringList sharedPluginLinks = {"Grainwick 3.8bf.lnk", "Graymere 3.8bf.lnk", "Lumbrio 3.8bf.lnk",
                                       "Tintara 5.8bf.lnk"};

QJsonArray names(const QStringList &products)
{
    QJsonArray array;
    for (const QString &product : products)
        array.append(product);
    return array;
}

std::string text(const QString &string)
{
    return string.toStdString();
}

class InstallPhotoshopPluginsTest : public testing::Test
{
protected:
    InstallPhotoshopPluginsTest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }
    QString source(const QString &relativePath) const { return root() + "/" + relativePath; }
    QString host() const { return machine.path("Adobe/Plug-ins/CC"); }
    QString maker(const QString &pluginPath) const { return pluginPath + "/Tavrin"; }
    QString target(const QString &folder, const QString &pluginPath = {}) const
    {
        return maker(pluginPath.isEmpty() ? host() : pluginPath) + "/" + folder;
    }
    QString machineHive() const { return machine.path("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"); }

    void install(const QStringList &products, const QString &pluginPath = {}) const
    {
        install(names(products), pluginPath);
    }
    void install(const QJsonArray &plugins, const QString &pluginPath = {}) const
    {
        Installer(pathUtils, catalogue)
            .installPhotoshopPlugins(plugins, root(), pluginPath.isEmpty() ? host() : pluginPath);
    }

    // The names in a folder, broken links included.
    static QStringList entriesOf(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                      QDir::Name);
    }

    // Everything below a folder, sorted by relative path: folders end in "/",
    // links show their target relative to the suite root.
    QStringList treeOf(const QString &folder) const
    {
        QStringList tree;
        QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QFileInfo entry(entries.next());
            QString line = QDir(folder).relativeFilePath(entry.filePath());
            if (entry.isSymLink())
                line += " -> " + QDir(root()).relativeFilePath(entry.symLinkTarget());
            else if (entry.isDir())
                line += "/";
            tree.append(line);
        }
        std::sort(tree.begin(), tree.end());
        return tree;
    }

    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    // What a product's folder holds in the host: its links and its config file.
    QStringList productTree(const QString &product, const QStringList &links, const QString &configFile) const
    {
        QStringList tree{product + "/", product + "/" + configFile};
        const QString folder = catalogue.folderName(product);
        for (const QString &link : links)
            tree.append(product + "/" + link + " -> " + folder + "/" + link.chopped(4));
        std::sort(tree.begin(), tree.end());
        return tree;
    }

    QStringList zonalToolTree() const
    {
        return {"Zonal Tool/", "Zonal Tool/ZonalPalette.8li.lnk -> bin/automation/Palette/ZonalPalette.8li",
                "Zonal Tool/ZonalTool.8li.lnk -> bin/automation/ZonalTool.8li"};
    }

    std::vector<std::string> texts() const { return log.texts(); }

    void expectAllLinesFromTheOperation() const
    {
        for (const LoggedLine &line : log.lines())
            EXPECT_EQ(line.function, text(function)) << line.text;
    }

    std::string installingLine(const QString &product, const QString &pluginPath = {}) const
    {
        return "info: Installing PS(E) plugin " + text(product) + " from " +
               text(source(catalogue.folderName(product))) + " to " + text(target(product, pluginPath));
    }

    std::string copiedLine(const QString &product, const QString &pluginPath = {}) const
    {
        return "info: Copied config file " + text(target(product, pluginPath) + "/" + catalogue.configFile(product)) +
               " for plugin " + text(product);
    }

    QByteArray rectiloHive() const
    {
        return "Windows Registry Editor Version 5.00\n\n"
               "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Rectilo]\n"
               "\"loggerEnabled\"=dword:00000001\n"
               "\"loggerLevel\"=\"D\"\n"
               "\"TavrinPSQtPlugInDllDir\"=\"" +
               source("Rectilo/Rectilo (64-Bit)").toUtf8() + "\"\n\n";
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(InstallPhotoshopPluginsTest, LinksTheProductsPluginsAndCopiesItsConfigFile)
{
    install(QStringList{"Tintara 4"});
    EXPECT_EQ(entriesOf(maker(host())), (QStringList{"Tintara 4", "Zonal Tool"}));
    EXPECT_EQ(entriesOf(target("Tintara 4")), (QStringList{"Tintara 4.8bf.lnk", "Tintara4.config"}));
    const QFileInfo link(target("Tintara 4/Tintara 4.8bf.lnk"));
    EXPECT_TRUE(link.isSymLink());
    EXPECT_EQ(link.symLinkTarget(), source("Tintara 4/Tintara 4.8bf"));
    EXPECT_EQ(contentOf(link.filePath()), suiteRoot::contentOf("Tintara 4.8bf"));
    const QFileInfo config(target("Tintara 4/Tintara4.config"));
    EXPECT_FALSE(config.isSymLink());
    EXPECT_EQ(contentOf(config.filePath()), suiteRoot::contentOf("Tintara4.config"));
    EXPECT_EQ(texts(), (std::vector<std::string>{installingLine("Tintara 4"), copiedLine("Tintara 4")}));
    expectAllLinesFromTheOperation();
}

TEST_F(InstallPhotoshopPluginsTest, TheSourceFolderOfTheCurrentGenerationIsTheSharedBinPlugins)
{
    install(QStringList{"Grainwick 3", "Tintara 5"});
    EXPECT_EQ(treeOf(maker(host())), productTree("Grainwick 3", sharedPluginLinks, "Grainwick 3.config") +
                                         productTree("Tintara 5", sharedPluginLinks, "Tintara 5.config") +
                                         zonalToolTree());
    EXPECT_EQ(texts(), (std::vector<std::string>{installingLine("Grainwick 3"), copiedLine("Grainwick 3"),
                                                 installingLine("Tintara 5"), copiedLine("Tintara 5")}));
    EXPECT_EQ(installingLine("Tintara 5"), "info: Installing PS(E) plugin Tintara 5 from " + text(root()) +
                                               "/bin/plugins to " + text(host()) + "/Tavrin/Tintara 5");
}

TEST_F(InstallPhotoshopPluginsTest, EveryPluginBelowTheSourceFolderGetsALinkWhateverItsName)
{
    machine.writeFile("suite/Quietar 2/Legacy/Quietar Classic.8bf", "classic");
    machine.writeFile("suite/Quietar 2/Quietar Helper.8li", "helper");
    install(QStringList{"Quietar 2"});
    EXPECT_EQ(entriesOf(target("Quietar 2")),
              (QStringList{"Quietar Classic.8bf.lnk", "Quietar2.8bf.lnk", "Quietar2.config"}));
    EXPECT_EQ(QFileInfo(target("Quietar 2/Quietar Classic.8bf.lnk")).symLinkTarget(),
              source("Quietar 2/Legacy/Quietar Classic.8bf"));
}

TEST_F(InstallPhotoshopPluginsTest, AnUnknownProductWalksTheWholeSuiteAndCopiesNoConfigFile)
{
    install(QStringList{"Tintara 4"});
    install(QStringList{"Tintara 9"});
    const QStringList links = {"ACU3OST.8bf.lnk",     "ACU3RST.8bf.lnk",     "Bracketon 2.8bf.lnk",
                               "Grainwick 2.8bf.lnk", "Grainwick 3.8bf.lnk", "Graymere 2.8bf.lnk",
                               "Graymere 3.8bf.lnk",  "Lumbrio 3.8bf.lnk",   "Lumbrio2.8bf.lnk",
                               "Quietar2.8bf.lnk",    "Tintara 4.8bf.lnk",   "Tintara 5.8bf.lnk"};
    EXPECT_EQ(entriesOf(target("Tintara 9")), links);
    for (const QString &link : links) {
        const QFileInfo info(target("Tintara 9/" + link));
        EXPECT_TRUE(info.isSymLink()) << text(link);
        EXPECT_EQ(contentOf(info.filePath()), suiteRoot::contentOf(link.chopped(4))) << text(link);
    }
    EXPECT_EQ(QFileInfo(target("Tintara 9/Tintara 5.8bf.lnk")).symLinkTarget(), source("bin/plugins/Tintara 5.8bf"));
    // The catalogue doesn't know the name, so every product of it counts as not selected.
    EXPECT_EQ(entriesOf(maker(host())), (QStringList{"Tintara 9", "Zonal Tool"}));
    const std::vector<std::string> lines = texts();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[2], "info: Installing PS(E) plugin Tintara 9 from " + text(root()) + "/ to " + text(host()) +
                            "/Tavrin/Tintara 9");
    EXPECT_EQ(lines[3], "info: Cleaning up PS(E) ZonalTool plugin from " + text(target("Zonal Tool")));
    expectAllLinesFromTheOperation();
}

TEST_F(InstallPhotoshopPluginsTest, ANameInAnotherCaseIsAnUnknownProduct)
{
    install(QStringList{"Tintara 4"});
    install(QStringList{"tintara 4"});
    EXPECT_FALSE(QFileInfo::exists(target("Tintara 4")));
    EXPECT_EQ(entriesOf(target("tintara 4")).size(), 12);
    EXPECT_FALSE(QFileInfo::exists(target("tintara 4/Tintara4.config")));
}

TEST_F(InstallPhotoshopPluginsTest, AnEmptySelectionRemovesAllProductFoldersAndLeavesTheZonalTool)
{
    install(allProducts);
    machine.writeFile("Adobe/Plug-ins/CC/Tavrin/Zonal Tool/notes.txt", "kept");
    machine.writeFile("Adobe/Plug-ins/CC/Tavrin/Other Maker Tool/tool.8bf", "foreign");
    machine.writeFile("Adobe/Plug-ins/CC/Unrelated.8bf", "foreign");
    const QStringList zonalTool = treeOf(target("Zonal Tool"));
    const LogCapture quiet;

    install(QJsonArray());

    EXPECT_EQ(entriesOf(maker(host())), (QStringList{"Other Maker Tool", "Zonal Tool"}));
    EXPECT_EQ(treeOf(target("Zonal Tool")), zonalTool);
    EXPECT_EQ(treeOf(target("Zonal Tool")),
              (QStringList{"ZonalPalette.8li.lnk -> bin/automation/Palette/ZonalPalette.8li",
                           "ZonalTool.8li.lnk -> bin/automation/ZonalTool.8li", "notes.txt"}));
    EXPECT_EQ(contentOf(host() + "/Unrelated.8bf"), "foreign");
    EXPECT_TRUE(quiet.lines().empty());
    // The links of the products pointed into the suite: what they pointed to stays.
    EXPECT_EQ(contentOf(source("Tintara 4/Tintara 4.8bf")), suiteRoot::contentOf("Tintara 4.8bf"));
    EXPECT_EQ(contentOf(source("bin/plugins/Tintara 5.8bf")), suiteRoot::contentOf("Tintara 5.8bf"));
}

TEST_F(InstallPhotoshopPluginsTest, AnEmptySelectionOnAnEmptyHostMakesNothing)
{
    install(QJsonArray());
    EXPECT_FALSE(QFileInfo::exists(host()));
    EXPECT_TRUE(log.lines().empty());
    EXPECT_FALSE(QFileInfo::exists(machineHive()));
}

TEST_F(InstallPhotoshopPluginsTest, TheZonalToolTakesEveryToolPluginBelowTheAutomationFolder)
{
    install(QStringList{"Lumbrio 2"});
    EXPECT_EQ(treeOf(target("Zonal Tool")),
              (QStringList{"ZonalPalette.8li.lnk -> bin/automation/Palette/ZonalPalette.8li",
                           "ZonalTool.8li.lnk -> bin/automation/ZonalTool.8li"}));
}

TEST_F(InstallPhotoshopPluginsTest, WithoutToolPluginsInTheAutomationFolderTheZonalToolFolderIsGone)
{
    install(QStringList{"Lumbrio 2"});
    ASSERT_TRUE(QFileInfo(target("Zonal Tool")).isDir());
    QFile::remove(source("bin/automation/ZonalTool.8li"));
    QFile::remove(source("bin/automation/Palette/ZonalPalette.8li"));
    machine.writeFile("suite/bin/automation/readme.txt", "not a plug-in");
    const LogCapture rerun;

    install(QStringList{"Lumbrio 2"});

    EXPECT_FALSE(QFileInfo::exists(target("Zonal Tool")));
    EXPECT_TRUE(QFileInfo(target("Lumbrio 2")).isDir());
    ASSERT_FALSE(rerun.texts().empty());
    EXPECT_EQ(rerun.texts().back(), "info: Cleaning up PS(E) ZonalTool plugin from " + text(target("Zonal Tool")));
    EXPECT_EQ(rerun.lines().back().function, text(function));
}

TEST_F(InstallPhotoshopPluginsTest, WithoutAnAutomationFolderNoZonalToolFolderIsMade)
{
    QDir(source("bin/automation")).removeRecursively();
    install(QStringList{"Lumbrio 2"});
    EXPECT_EQ(entriesOf(maker(host())), QStringList{"Lumbrio 2"});
    EXPECT_EQ(texts(), (std::vector<std::string>{installingLine("Lumbrio 2"), copiedLine("Lumbrio 2")}));
}

TEST_F(InstallPhotoshopPluginsTest, AMissingConfigFileIsAnErrorAndTheLinksStay)
{
    QFile::remove(source("Tintara 4/Tintara4.config"));
    install(QStringList{"Tintara 4", "Quietar 2"});
    EXPECT_EQ(entriesOf(target("Tintara 4")), QStringList{"Tintara 4.8bf.lnk"});
    EXPECT_EQ(entriesOf(target("Quietar 2")), (QStringList{"Quietar2.8bf.lnk", "Quietar2.config"}));
    EXPECT_EQ(texts(),
              (std::vector<std::string>{installingLine("Tintara 4"),
                                        "error: Failed to copy config file " +
                                            text(target("Tintara 4/Tintara4.config")) + " for plugin Tintara 4",
                                        installingLine("Quietar 2"), copiedLine("Quietar 2")}));
    ASSERT_EQ(log.lines().size(), 4u);
    EXPECT_EQ(log.lines()[1].level, spdlog::level::err);
    expectAllLinesFromTheOperation();
}

TEST_F(InstallPhotoshopPluginsTest, AMissingConfigFileTakesAwayTheCopyOfAnEarlierRun)
{
    install(QStringList{"Tintara 4"});
    QFile::remove(source("Tintara 4/Tintara4.config"));
    install(QStringList{"Tintara 4"});
    EXPECT_EQ(entriesOf(target("Tintara 4")), QStringList{"Tintara 4.8bf.lnk"});
}

TEST_F(InstallPhotoshopPluginsTest, AProductWhoseSourceFolderIsMissingIsCleanedUp)
{
    install(QStringList{"Quietar 2", "Graymere 2"});
    ASSERT_TRUE(QFileInfo(target("Quietar 2")).isDir());
    QDir(source("Quietar 2")).removeRecursively();
    const LogCapture rerun;

    install(QStringList{"Quietar 2", "Graymere 2"});

    EXPECT_EQ(entriesOf(maker(host())), (QStringList{"Graymere 2", "Zonal Tool"}));
    ASSERT_FALSE(rerun.texts().empty());
    EXPECT_EQ(rerun.texts().front(),
              "info: Cleaning up PS(E) plugin Quietar 2 from " + text(host()) + "/Tavrin/Quietar 2");
    EXPECT_EQ(rerun.lines().front().function, text(function));
}

TEST_F(InstallPhotoshopPluginsTest, AProductWhoseSourceFolderIsMissingGetsNoFolderOnAFirstRun)
{
    QDir(source("Acutara 3")).removeRecursively();
    install(QStringList{"Acutara 3"});
    EXPECT_EQ(entriesOf(maker(host())), QStringList{"Zonal Tool"});
    EXPECT_EQ(texts(),
              (std::vector<std::string>{"info: Cleaning up PS(E) plugin Acutara 3 from " + text(target("Acutara 3"))}));
}

TEST_F(InstallPhotoshopPluginsTest, AFolderLeftEmptyIsRemovedAndTheLineNamesTheSourceFolder)
{
    const Catalogue bare(QJsonObject{
        {"Defaults",
         QJsonArray{QJsonObject{{"ProductName", "Bare 1"}, {"FolderName", "Bare 1"}, {"plugins", QJsonArray()}}}}});
    QDir(root()).mkpath("Bare 1/Docs");
    machine.writeFile("suite/Bare 1/Docs/readme.txt", "no plug-ins");

    Installer(pathUtils, bare).installPhotoshopPlugins(QJsonArray{"Bare 1"}, root(), host());

    EXPECT_FALSE(QFileInfo::exists(target("Bare 1")));
    EXPECT_EQ(entriesOf(maker(host())), QStringList{"Zonal Tool"});
    EXPECT_EQ(texts(), (std::vector<std::string>{"info: Installing PS(E) plugin Bare 1 from " + text(source("Bare 1")) +
                                                     " to " + text(target("Bare 1")),
                                                 "error: Plugin folder " + text(source("Bare 1")) +
                                                     " turned out to be empty!"}));
    ASSERT_EQ(log.lines().size(), 2u);
    EXPECT_EQ(log.lines()[1].level, spdlog::level::err);
    expectAllLinesFromTheOperation();
}

TEST_F(InstallPhotoshopPluginsTest, AProductWithoutPluginsAndConfigFileLeavesNoTrace)
{
    QFile::remove(source("Bracketon 2/Bracketon 2.8bf"));
    QFile::remove(source("Bracketon 2/Bracketon2.config"));
    install(QStringList{"Bracketon 2"});
    EXPECT_FALSE(QFileInfo::exists(target("Bracketon 2")));
    EXPECT_EQ(texts(), (std::vector<std::string>{
                           installingLine("Bracketon 2"),
                           "error: Failed to copy config file " + text(target("Bracketon 2/Bracketon2.config")) +
                               " for plugin Bracketon 2",
                           "error: Plugin folder " + text(source("Bracketon 2")) + " turned out to be empty!"}));
}

TEST_F(InstallPhotoshopPluginsTest, RectiloGetsItsToolPluginAndItsRegistryValues)
{
    install(QStringList{"Rectilo"});
    EXPECT_EQ(treeOf(target("Rectilo")), (QStringList{"PhotoshopPlugin-automationRectilo64.8li.lnk -> "
                                                      "Rectilo/PhotoshopPlugin-automationRectilo64.8li",
                                                      "Rectilo.config"}));
    EXPECT_EQ(contentOf(machineHive()), rectiloHive());

    const std::unique_ptr<QSettings> key = openRegistryKey(rectiloKey);
    EXPECT_EQ(key->childKeys(), (QStringList{"TavrinPSQtPlugInDllDir", "loggerEnabled", "loggerLevel"}));
    EXPECT_EQ(key->value("loggerEnabled").userType(), QMetaType::Int);
    EXPECT_EQ(key->value("loggerEnabled").toInt(), 1);
    EXPECT_EQ(key->value("loggerLevel").toString(), "D");
    EXPECT_EQ(key->value("TavrinPSQtPlugInDllDir").toString(), root() + "/Rectilo/Rectilo (64-Bit)");
    EXPECT_EQ(texts(), (std::vector<std::string>{installingLine("Rectilo"), copiedLine("Rectilo")}));
}

TEST_F(InstallPhotoshopPluginsTest, RectilosValuesJoinWhatTheMachineHiveHolds)
{
    machine.writeFile("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg",
                      "Windows Registry Editor Version 5.00\n\n"
                      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                      "\"Installed\"=dword:00000001\n\n"
                      "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Rectilo]\n"
                      "\"loggerLevel\"=\"E\"\n"
                      "\"userNote\"=\"kept\"\n\n");
    install(QStringList{"Rectilo"});
    EXPECT_EQ(contentOf(machineHive()), "Windows Registry Editor Version 5.00\n\n"
                                        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                                        "\"Installed\"=dword:00000001\n\n"
                                        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin\\Rectilo]\n"
                                        "\"loggerEnabled\"=dword:00000001\n"
                                        "\"loggerLevel\"=\"D\"\n"
                                        "\"TavrinPSQtPlugInDllDir\"=\"" +
                                            source("Rectilo/Rectilo (64-Bit)").toUtf8() +
                                            "\"\n"
                                            "\"userNote\"=\"kept\"\n\n");
}

TEST_F(InstallPhotoshopPluginsTest, RectilosValuesAreWrittenOnlyWhenItsSourceFolderExists)
{
    QDir(source("Rectilo")).removeRecursively();
    install(QStringList{"Rectilo", "Tintara 4"});
    EXPECT_FALSE(QFileInfo::exists(machineHive()));
    EXPECT_TRUE(openRegistryKey(rectiloKey)->allKeys().isEmpty());
    EXPECT_EQ(entriesOf(maker(host())), (QStringList{"Tintara 4", "Zonal Tool"}));
}

TEST_F(InstallPhotoshopPluginsTest, OtherProductsWriteNoRegistryValues)
{
    install(QStringList{"Acutara 3", "Lumbrio 3"});
    EXPECT_FALSE(QFileInfo::exists(machineHive()));
}

TEST_F(InstallPhotoshopPluginsTest, RectilosValuesStayWhenItIsNoLongerSelected)
{
    install(QStringList{"Rectilo"});
    install(QStringList{"Tintara 4"});
    install(QJsonArray());
    EXPECT_FALSE(QFileInfo::exists(target("Rectilo")));
    EXPECT_EQ(contentOf(machineHive()), rectiloHive());
}

TEST_F(InstallPhotoshopPluginsTest, ASecondHostGetsTheSameAndRectilosValuesAreWrittenAgain)
{
    const QString elements = machine.path("Adobe/Photoshop Elements 2018/Plug-Ins");
    const QStringList products = {"Rectilo", "Grainwick 2", "Lumbrio 3"};
    install(products);
    openRegistryKey(rectiloKey)->setValue("loggerLevel", "E");
    openRegistryKey(rectiloKey)->remove("loggerEnabled");
    ASSERT_NE(contentOf(machineHive()), rectiloHive());
    const LogCapture second;

    install(products, elements);

    EXPECT_EQ(treeOf(maker(elements)), treeOf(maker(host())));
    EXPECT_EQ(treeOf(maker(elements)),
              productTree("Grainwick 2", {"Grainwick 2.8bf.lnk"}, "Grainwick2.config") +
                  productTree("Lumbrio 3", sharedPluginLinks, "Lumbrio 3.config") +
                  productTree("Rectilo", {"PhotoshopPlugin-automationRectilo64.8li.lnk"}, "Rectilo.config") +
                  zonalToolTree());
    EXPECT_EQ(contentOf(machineHive()), rectiloHive());
    EXPECT_EQ(second.texts(),
              (std::vector<std::string>{installingLine("Rectilo", elements), copiedLine("Rectilo", elements),
                                        installingLine("Grainwick 2", elements), copiedLine("Grainwick 2", elements),
                                        installingLine("Lumbrio 3", elements), copiedLine("Lumbrio 3", elements)}));
}

TEST_F(InstallPhotoshopPluginsTest, ARerunReplacesTheConfigFileKeepsOldLinksAndRebuildsTheZonalTool)
{
    install(QStringList{"Tintara 4", "Quietar 2"});
    machine.writeFile("Adobe/Plug-ins/CC/Tavrin/Tintara 4/Tintara4.config", "edited by hand");
    ASSERT_TRUE(QFile::link(source("Tintara 4/Tintara 4.8bf"), target("Tintara 4/Tintara 3.8bf.lnk")));
    machine.writeFile("Adobe/Plug-ins/CC/Tavrin/Zonal Tool/Old Zonal.8li.lnk", "stale");
    const LogCapture rerun;

    install(QStringList{"Tintara 4"});

    EXPECT_EQ(treeOf(maker(host())),
              (QStringList{"Tintara 4/", "Tintara 4/Tintara 3.8bf.lnk -> Tintara 4/Tintara 4.8bf",
                           "Tintara 4/Tintara 4.8bf.lnk -> Tintara 4/Tintara 4.8bf", "Tintara 4/Tintara4.config"} +
               zonalToolTree()));
    EXPECT_EQ(contentOf(target("Tintara 4/Tintara4.config")), suiteRoot::contentOf("Tintara4.config"));
    // A link of the earlier run is in the way of the new one; the old one stays.
    EXPECT_EQ(rerun.texts(), (std::vector<std::string>{
                                 installingLine("Tintara 4"),
                                 "warning: Failed to create link from " + text(source("Tintara 4/Tintara 4.8bf")) +
                                     " to " + text(target("Tintara 4/Tintara 4.8bf.lnk")),
                                 copiedLine("Tintara 4"),
                                 "info: Cleaning up PS(E) ZonalTool plugin from " + text(target("Zonal Tool"))}));
    const std::vector<LoggedLine> lines = rerun.lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].function, text(function));
    EXPECT_EQ(lines[1].function, "PathUtils::findAndProcess");
    EXPECT_EQ(lines[2].function, text(function));
    EXPECT_EQ(lines[3].function, text(function));
}

TEST_F(InstallPhotoshopPluginsTest, AllTwelveProductsInOneHost)
{
    install(allProducts);

    const QStringList tree = treeOf(maker(host()));
    std::cout << "Below " << text(maker(host())) << " (links relative to the suite root " << text(root()) << "):\n";
    for (const QString &line : tree)
        std::cout << "  " << text(line) << "\n";

    const QStringList expected = {
        "Acutara 3/",
        "Acutara 3/ACU3.config",
        "Acutara 3/ACU3OST.8bf.lnk -> Acutara 3/ACU3OST.8bf",
        "Acutara 3/ACU3RST.8bf.lnk -> Acutara 3/ACU3RST.8bf",
        "Bracketon 2/",
        "Bracketon 2/Bracketon 2.8bf.lnk -> Bracketon 2/Bracketon 2.8bf",
        "Bracketon 2/Bracketon2.config",
        "Grainwick 2/",
        "Grainwick 2/Grainwick 2.8bf.lnk -> Grainwick 2/Grainwick 2.8bf",
        "Grainwick 2/Grainwick2.config",
        "Grainwick 3/",
        "Grainwick 3/Grainwick 3.8bf.lnk -> bin/plugins/Grainwick 3.8bf",
        "Grainwick 3/Grainwick 3.config",
        "Grainwick 3/Graymere 3.8bf.lnk -> bin/plugins/Graymere 3.8bf",
        "Grainwick 3/Lumbrio 3.8bf.lnk -> bin/plugins/Lumbrio 3.8bf",
        "Grainwick 3/Tintara 5.8bf.lnk -> bin/plugins/Tintara 5.8bf",
        "Graymere 2/",
        "Graymere 2/Graymere 2.8bf.lnk -> Graymere 2/Graymere 2.8bf",
        "Graymere 2/Graymere2.config",
        "Graymere 3/",
        "Graymere 3/Grainwick 3.8bf.lnk -> bin/plugins/Grainwick 3.8bf",
        "Graymere 3/Graymere 3.8bf.lnk -> bin/plugins/Graymere 3.8bf",
        "Graymere 3/Graymere 3.config",
        "Graymere 3/Lumbrio 3.8bf.lnk -> bin/plugins/Lumbrio 3.8bf",
        "Graymere 3/Tintara 5.8bf.lnk -> bin/plugins/Tintara 5.8bf",
        "Lumbrio 2/",
        "Lumbrio 2/Lumbrio2.8bf.lnk -> Lumbrio 2/Lumbrio2.8bf",
        "Lumbrio 2/Lumbrio2.config",
        "Lumbrio 3/",
        "Lumbrio 3/Grainwick 3.8bf.lnk -> bin/plugins/Grainwick 3.8bf",
        "Lumbrio 3/Graymere 3.8bf.lnk -> bin/plugins/Graymere 3.8bf",
        "Lumbrio 3/Lumbrio 3.8bf.lnk -> bin/plugins/Lumbrio 3.8bf",
        "Lumbrio 3/Lumbrio 3.config",
        "Lumbrio 3/Tintara 5.8bf.lnk -> bin/plugins/Tintara 5.8bf",
        "Quietar 2/",
        "Quietar 2/Quietar2.8bf.lnk -> Quietar 2/Quietar2.8bf",
        "Quietar 2/Quietar2.config",
        "Rectilo/",
        "Rectilo/PhotoshopPlugin-automationRectilo64.8li.lnk -> Rectilo/PhotoshopPlugin-automationRectilo64.8li",
        "Rectilo/Rectilo.config",
        "Tintara 4/",
        "Tintara 4/Tintara 4.8bf.lnk -> Tintara 4/Tintara 4.8bf",
        "Tintara 4/Tintara4.config",
        "Tintara 5/",
        "Tintara 5/Grainwick 3.8bf.lnk -> bin/plugins/Grainwick 3.8bf",
        "Tintara 5/Graymere 3.8bf.lnk -> bin/plugins/Graymere 3.8bf",
        "Tintara 5/Lumbrio 3.8bf.lnk -> bin/plugins/Lumbrio 3.8bf",
        "Tintara 5/Tintara 5.8bf.lnk -> bin/plugins/Tintara 5.8bf",
        "Tintara 5/Tintara 5.config",
        "Zonal Tool/",
        "Zonal Tool/ZonalPalette.8li.lnk -> bin/automation/Palette/ZonalPalette.8li",
        "Zonal Tool/ZonalTool.8li.lnk -> bin/automation/ZonalTool.8li",
    };
    EXPECT_EQ(tree, expected);

    std::vector<std::string> lines;
    for (const QString &product : allProducts) {
        lines.push_back(installingLine(product));
        lines.push_back(copiedLine(product));
    }
    EXPECT_EQ(texts(), lines);
    expectAllLinesFromTheOperation();
    EXPECT_EQ(contentOf(machineHive()), rectiloHive());
}
