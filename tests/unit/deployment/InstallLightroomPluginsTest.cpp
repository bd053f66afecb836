#include "Catalogue.h"
#include "CatalogueJson.h"
#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "PathUtils.h"
#include "SuiteRoot.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <iostream>
#include <stdexcept>

namespace {

#ifdef Q_OS_WIN
const QByteArray lineEnd = "\r\n";
#else
const QByteArray lineEnd = "\n";
#endif

// Lightroom's external editor preset as it must stand on disk, written out
// here on its own so that the program's template is checked, not repeated.
QByteArray expectedPreset(const QString &uid, const QString &name, const QString &executablePath)
{
    const QByteArray text = "\n"
                            "s = {\n"
                            "    id = \"" +
                            uid.toUtf8() +
                            "\",\n"
                            "    internalName = \"" +
                            name.toUtf8() +
                            "\",\n"
                            "    title = \"" +
                            name.toUtf8() +
                            "\",\n"
                            "    type = \"ExternalEditor\",\n"
                            "    value = {\n"
                            "        externalEditingFormat = \"TIFF_None_16_sRGB\",\n"
                            "        externalEditingFormat_dpi = 240,\n"
                            "        externalEditorFullPath = \"" +
                            executablePath.toUtf8() +
                            "\",\n"
                            "    },\n"
                            "    version = 0,\n"
                            "}";
    return QByteArray(text).replace("\n", lineEnd);
}

// Every entry below the folder by its relative path, folders ending in "/", sorted.
QStringList treeOf(const QString &folder)
{
    QStringList entries;
    QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        const QString relative = QDir(folder).relativeFilePath(it.filePath());
        entries.append(it.fileInfo().isDir() ? relative + "/" : relative);
    }
    entries.sort();
    return entries;
}

// Lua files written by bare name land in the working folder, so some tests move it.
class ScopedWorkingFolder
{
public:
    explicit ScopedWorkingFolder(const QString &folder)
        : previous_(QDir::currentPath())
    {
        QDir().mkpath(folder);
        if (!QDir::setCurrent(folder))
            throw std::runtime_error("cannot enter " + folder.toStdString());
    }
    ~ScopedWorkingFolder() { QDir::setCurrent(previous_); }
    ScopedWorkingFolder(const ScopedWorkingFolder &) = delete;
    ScopedWorkingFolder &operator=(const ScopedWorkingFolder &) = delete;

private:
    QString previous_;
};

class InstallLightroomPluginsTest : public testing::Test
{
protected:
    InstallLightroomPluginsTest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }
    QString lrRoot() const { return machine.path("home/.config/Adobe/Lightroom"); }
    QString lrPath(const QString &relative) const { return lrRoot() + "/" + relative; }
    QString sharedModule(const QString &relative = {}) const
    {
        return lrPath("Modules/PluginParam.lrplugin") + (relative.isEmpty() ? "" : "/" + relative);
    }
    QString preset(const QString &templateName) const { return lrPath("External Editor Presets/" + templateName); }

    void install(const QJsonArray &plugins) const { install(plugins, lrRoot()); }
    void install(const QJsonArray &plugins, const QString &lightroomRoot) const
    {
        Installer(pathUtils, catalogue).installLightroomPlugins(plugins, root(), lightroomRoot);
    }

    QByteArray contentOf(const QString &path) const
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    QByteArray presetOf(const QString &product, const QString &executableRelative) const
    {
        const PluginEntry entry = catalogue.pluginEntry(product, QFileInfo(executableRelative).fileName());
        return expectedPreset(entry.lrUid, entry.lrName, root() + "/" + executableRelative);
    }

    QByteArray luaLine(const QString &name, const QString &executableRelative) const
    {
        return name.toUtf8() + " = \"" + (root() + "/" + executableRelative).toUtf8() + "\"";
    }

    // The lines after "Processing lightroom plugin <product>", up to the next product.
    std::vector<std::string> linesOf(const std::string &product) const
    {
        std::vector<std::string> found;
        bool inside = false;
        for (const std::string &text : log.texts()) {
            if (text.rfind("info: Processing lightroom plugin ", 0) == 0)
                inside = text == "info: Processing lightroom plugin " + product;
            else if (inside)
                found.push_back(text);
        }
        return found;
    }

    std::vector<std::string> functions() const
    {
        std::vector<std::string> names;
        for (const LoggedLine &line : log.lines())
            names.push_back(line.function);
        return names;
    }

    std::string textFileLine(const QString &path, const QByteArray &content) const
    {
        return "info: Text file created " + path.toStdString() + " with content " + content.toStdString();
    }

    // The three lines of the shared module of the suite root.
    std::vector<std::string> sharedModuleLines() const
    {
        return {
            "info: Installing lightroom module plugin  from " + root().toStdString() +
                "/bin/lrplugins/PluginParam.lrplugin to " + sharedModule().toStdString(),
            "info: Installing  preset from " + root().toStdString() + "/bin/lrplugins/PluginParam.lrplugin to " +
                lrPath("Export Presets/Orv Collection").toStdString(),
            textFileLine(sharedModule("RevUtil1config.lua"), luaLine("RevUtil1AppPath", "bin/reversible_util.exe")),
        };
    }

    Machine machine;
    const PathUtils pathUtils;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(InstallLightroomPluginsTest, ThePresetIsTheFilledTemplateByteForByte)
{
    install({"Tintara 4"});
    const QString executable = root() + "/Tintara 4/Tintara 4.exe";
    const QByteArray expected = expectedPreset("5B32CD5E-C418-4BFD-A360-63D59FF93D41", "Tintara 4", executable);
    const QByteArray written = contentOf(preset("Tintara4.lrtemplate"));
    EXPECT_EQ(written, expected);
    // 266 characters of template less its four two-character placeholders, plus what fills them.
    EXPECT_EQ(written.size(), 266 - 4 * 2 + 36 + 2 * QByteArray("Tintara 4").size() + executable.toUtf8().size() +
                                  (lineEnd.size() - 1) * 12);
    EXPECT_FALSE(written.startsWith("\xef\xbb\xbf"));
    EXPECT_EQ(written.count('\n'), 12);
    EXPECT_TRUE(written.endsWith("}"));
}

TEST_F(InstallLightroomPluginsTest, TheLuaFileHoldsOneAssignmentWithoutLineEnd)
{
    install({"Tintara 4"});
    EXPECT_EQ(contentOf(sharedModule("Tintara4config.lua")),
              "Tintara4AppPath = \"" + (root() + "/Tintara 4/Tintara 4.exe").toUtf8() + "\"");
    EXPECT_EQ(contentOf(sharedModule("RevUtil1config.lua")),
              "RevUtil1AppPath = \"" + (root() + "/bin/reversible_util.exe").toUtf8() + "\"");
}

TEST_F(InstallLightroomPluginsTest, TheSharedModuleGoesInFirstThenEachProduct)
{
    install({"Tintara 5", "Graymere 2"});
    std::vector<std::string> expected = sharedModuleLines();
    expected.push_back("info: Processing lightroom plugin Tintara 5");
    expected.push_back(textFileLine(preset("Tintara5.lrtemplate"), presetOf("Tintara 5", "bin/Tintara 5.exe")));
    expected.push_back(
        textFileLine(sharedModule("Tintara5config.lua"), luaLine("Tintara5AppPath", "bin/Tintara 5.exe")));
    expected.push_back("info: Processing lightroom plugin Graymere 2");
    expected.push_back(
        textFileLine(preset("Graymere2.lrtemplate"), presetOf("Graymere 2", "Graymere 2/Graymere 2.exe")));
    EXPECT_EQ(log.texts(), expected);
    EXPECT_EQ(functions(), (std::vector<std::string>{
                               "Installer::installLightroomModulePlugin",
                               "Installer::installLightroomModulePlugin",
                               "fileUtils::createTextFile",
                               "Installer::installLightroomPlugins",
                               "fileUtils::createTextFile",
                               "fileUtils::createTextFile",
                               "Installer::installLightroomPlugins",
                               "fileUtils::createTextFile",
                           }));
    for (const LoggedLine &line : log.lines())
        EXPECT_EQ(line.level, spdlog::level::info) << line.text;
}

TEST_F(InstallLightroomPluginsTest, AnEmptyListInstallsTheSharedModuleRemovesPresetsAndDeletesTheSource)
{
    for (const PluginEntry &entry : catalogue.allPluginEntries())
        if (entry.lrPluginFolder != "Modules")
            machine.writeFile("home/.config/Adobe/Lightroom/External Editor Presets/" + entry.templateName, "old");
    machine.writeFile("home/.config/Adobe/Lightroom/External Editor Presets/Mine.lrtemplate", "user's own");

    install({});

    EXPECT_EQ(log.texts(), sharedModuleLines());
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Export Presets/Orv Collection/PluginParam Export.lrtemplate",
                                    "External Editor Presets/",
                                    "External Editor Presets/Acutara3_1_RAWPrestage.lrtemplate",
                                    "External Editor Presets/Acutara3_2_OutputStage.lrtemplate",
                                    "External Editor Presets/Mine.lrtemplate",
                                    "Modules/",
                                    "Modules/PluginParam.lrplugin/",
                                    "Modules/PluginParam.lrplugin/Info.lua",
                                    "Modules/PluginParam.lrplugin/Orv Collection/",
                                    "Modules/PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate",
                                    "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                }));
    EXPECT_EQ(contentOf(sharedModule("Info.lua")), suiteRoot::contentOf("Info.lua"));
    EXPECT_FALSE(QFileInfo::exists(root() + "/bin/lrplugins"));
    EXPECT_TRUE(QFileInfo::exists(root() + "/bin/reversible_util.exe"));
}

TEST_F(InstallLightroomPluginsTest, APresetWithoutLuaConfigFileGetsNoLuaFile)
{
    install({"Graymere 2"});
    EXPECT_EQ(contentOf(preset("Graymere2.lrtemplate")), presetOf("Graymere 2", "Graymere 2/Graymere 2.exe"));
    EXPECT_EQ(treeOf(sharedModule()), (QStringList{
                                          "Info.lua",
                                          "Orv Collection/",
                                          "Orv Collection/PluginParam Export.lrtemplate",
                                          "RevUtil1config.lua",
                                      }));
    EXPECT_EQ(linesOf("Graymere 2").size(), 1u);
}

TEST_F(InstallLightroomPluginsTest, AProductWithoutItsExecutableGetsNothing)
{
    ASSERT_TRUE(QFile::remove(root() + "/Grainwick 2/Grainwick 2.exe"));
    install({"Grainwick 2"});
    std::vector<std::string> expected = sharedModuleLines();
    expected.push_back("info: Processing lightroom plugin Grainwick 2");
    EXPECT_EQ(log.texts(), expected);
    EXPECT_FALSE(QFileInfo::exists(lrPath("External Editor Presets")));
    EXPECT_FALSE(QFileInfo::exists(sharedModule("Grainwick2config.lua")));
}

TEST_F(InstallLightroomPluginsTest, ExecutablesNotListedForTheProductArePassedOver)
{
    // Rectilo.exe lies in the suite's Rectilo folder already; another product's executable is no better.
    machine.writeFile("suite/Rectilo/Tools/Tintara 4.exe", "stray");
    install({"Rectilo"});
    EXPECT_EQ(treeOf(lrPath("External Editor Presets")), QStringList{"Rectilo.lrtemplate"});
    EXPECT_EQ(contentOf(preset("Rectilo.lrtemplate")), presetOf("Rectilo", "Rectilo/Rectilo Launcher.exe"));
    EXPECT_EQ(linesOf("Rectilo"),
              std::vector<std::string>{
                  textFileLine(preset("Rectilo.lrtemplate"), presetOf("Rectilo", "Rectilo/Rectilo Launcher.exe"))});
    EXPECT_FALSE(QFileInfo::exists(sharedModule("Tintara4config.lua")));
}

TEST_F(InstallLightroomPluginsTest, TheExecutableNameMustMatchCaseIncluded)
{
    // The search finds "*.exe" in any case, the catalogue look-up doesn't.
    ASSERT_TRUE(QFile::rename(root() + "/Rectilo/Rectilo Launcher.exe", root() + "/Rectilo/Rectilo Launcher.EXE"));
    machine.writeFile("suite/Rectilo/rectilo launcher.exe", "lower case");
    install({"Rectilo"});
    EXPECT_TRUE(linesOf("Rectilo").empty());
    EXPECT_FALSE(QFileInfo::exists(lrPath("External Editor Presets")));
}

TEST_F(InstallLightroomPluginsTest, AcutaraGivesTwoPresetsAndTwoLuaFiles)
{
    install({"Acutara 3"});
    EXPECT_EQ(treeOf(lrPath("External Editor Presets")),
              (QStringList{"Acutara3_1_RAWPrestage.lrtemplate", "Acutara3_2_OutputStage.lrtemplate"}));
    EXPECT_EQ(contentOf(preset("Acutara3_2_OutputStage.lrtemplate")), presetOf("Acutara 3", "Acutara 3/ACU3OST.exe"));
    EXPECT_EQ(contentOf(preset("Acutara3_1_RAWPrestage.lrtemplate")), presetOf("Acutara 3", "Acutara 3/ACU3RST.exe"));
    EXPECT_TRUE(contentOf(preset("Acutara3_2_OutputStage.lrtemplate")).contains("\"Acutara 3: Output Stage\""));
    EXPECT_EQ(contentOf(sharedModule("ACU3OSTconfig.lua")), luaLine("ACU3OSTAppPath", "Acutara 3/ACU3OST.exe"));
    EXPECT_EQ(contentOf(sharedModule("ACU3RSTconfig.lua")), luaLine("ACU3RSTAppPath", "Acutara 3/ACU3RST.exe"));
    EXPECT_EQ(linesOf("Acutara 3").size(), 4u);
}

TEST_F(InstallLightroomPluginsTest, BracketonBringsItsOwnModuleAndItsLuaFileGoesInTwice)
{
    install({"Bracketon 2"});
    const QString executable = "Bracketon 2/Bracketon 2.exe";
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate",
                                    "Export Presets/Orv Collection/PluginParam Export.lrtemplate",
                                    "Modules/",
                                    "Modules/Bracketon2.lrplugin/",
                                    "Modules/Bracketon2.lrplugin/BKT2config.lua",
                                    "Modules/Bracketon2.lrplugin/Info.lua",
                                    "Modules/Bracketon2.lrplugin/Orv Collection/",
                                    "Modules/Bracketon2.lrplugin/Orv Collection/Bracketon 2 Export.lrtemplate",
                                    "Modules/PluginParam.lrplugin/",
                                    "Modules/PluginParam.lrplugin/BKT2config.lua",
                                    "Modules/PluginParam.lrplugin/Info.lua",
                                    "Modules/PluginParam.lrplugin/Orv Collection/",
                                    "Modules/PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate",
                                    "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                }));
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/BKT2config.lua")),
              luaLine("BKT2ExternalAppPath", executable));
    EXPECT_EQ(contentOf(sharedModule("BKT2config.lua")), luaLine("BKT2ExternalAppPath", executable));
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate")),
              suiteRoot::contentOf("Bracketon 2 Export.lrtemplate"));
    // Bracketon 2 has no LRName either.
    const std::string module = root().toStdString() + "/Bracketon 2/Bracketon2.lrplugin";
    EXPECT_EQ(
        linesOf("Bracketon 2"),
        (std::vector<std::string>{
            "info: Installing lightroom module plugin  from " + module + " to " +
                lrPath("Modules/Bracketon2.lrplugin").toStdString(),
            "info: Installing  preset from " + module + " to " + lrPath("Export Presets/Orv Collection").toStdString(),
            textFileLine(lrPath("Modules/Bracketon2.lrplugin/BKT2config.lua"),
                         luaLine("BKT2ExternalAppPath", executable)),
            textFileLine(sharedModule("BKT2config.lua"), luaLine("BKT2ExternalAppPath", executable)),
        }));
    // The product's module source isn't the shared one and stays.
    EXPECT_TRUE(QFileInfo::exists(root() + "/Bracketon 2/Bracketon2.lrplugin/Info.lua"));
}

TEST_F(InstallLightroomPluginsTest, ASharedModuleWithoutPresetsLeavesThePresetFolderEmpty)
{
    ASSERT_TRUE(QDir(root() + "/bin/lrplugins/PluginParam.lrplugin/Orv Collection").removeRecursively());
    install({});
    EXPECT_EQ(log.texts(), (std::vector<std::string>{sharedModuleLines()[0], sharedModuleLines()[2]}));
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Modules/",
                                    "Modules/PluginParam.lrplugin/",
                                    "Modules/PluginParam.lrplugin/Info.lua",
                                    "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                }));
}

TEST_F(InstallLightroomPluginsTest, ASecondDeploymentInTheSameJobWritesLuaFilesIntoTheWorkingFolder)
{
    const QJsonArray plugins{"Tintara 5", "Bracketon 2", "Graymere 2"};
    const QString secondRoot = machine.path("home/.config/Adobe/Lightroom 2");
    const QString work = machine.path("work");
    const ScopedWorkingFolder inWork(work);
    install(plugins);
    const size_t firstRunLines = log.lines().size();
    install(plugins, secondRoot);

    // The shared module's source went with the first run: its copy fails and
    // the Lua files go by bare name into the working folder.
    EXPECT_EQ(treeOf(work), (QStringList{"BKT2config.lua", "Tintara5config.lua"}));
    EXPECT_EQ(contentOf(work + "/Tintara5config.lua"), luaLine("Tintara5AppPath", "bin/Tintara 5.exe"));
    EXPECT_EQ(contentOf(work + "/BKT2config.lua"), luaLine("BKT2ExternalAppPath", "Bracketon 2/Bracketon 2.exe"));
    EXPECT_EQ(treeOf(secondRoot), (QStringList{
                                      "Export Presets/",
                                      "Export Presets/Orv Collection/",
                                      "Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate",
                                      "External Editor Presets/",
                                      "External Editor Presets/Graymere2.lrtemplate",
                                      "External Editor Presets/Tintara5.lrtemplate",
                                      "Modules/",
                                      "Modules/Bracketon2.lrplugin/",
                                      "Modules/Bracketon2.lrplugin/BKT2config.lua",
                                      "Modules/Bracketon2.lrplugin/Info.lua",
                                      "Modules/Bracketon2.lrplugin/Orv Collection/",
                                      "Modules/Bracketon2.lrplugin/Orv Collection/Bracketon 2 Export.lrtemplate",
                                      "Modules/PluginParam.lrplugin/",
                                  }));
    EXPECT_EQ(contentOf(secondRoot + "/External Editor Presets/Tintara5.lrtemplate"),
              presetOf("Tintara 5", "bin/Tintara 5.exe"));

    const std::vector<LoggedLine> lines = log.lines();
    ASSERT_GT(lines.size(), firstRunLines + 3);
    const std::string source = root().toStdString() + "/bin/lrplugins/PluginParam.lrplugin";
    const std::string destination = secondRoot.toStdString() + "/Modules/PluginParam.lrplugin";
    EXPECT_EQ(lines[firstRunLines].text, "Installing lightroom module plugin  from " + source + " to " + destination);
    const LoggedLine &failure = lines[firstRunLines + 1];
    EXPECT_EQ(failure.level, spdlog::level::err);
    EXPECT_EQ(failure.text, "Failed to install, because of following issue: filesystem error: cannot copy: No such "
                            "file or directory [" +
                                source + "] [" + destination + "]");
    EXPECT_EQ(failure.function, "Installer::installLightroomModulePlugin");
    EXPECT_EQ(lines[firstRunLines + 2].text, "Processing lightroom plugin Tintara 5");
    EXPECT_EQ(lines[firstRunLines + 4].text, "Text file created ./Tintara5config.lua with content " +
                                                 luaLine("Tintara5AppPath", "bin/Tintara 5.exe").toStdString());
}

TEST_F(InstallLightroomPluginsTest, ARerunReplacesPresetsAndModuleFilesAndKeepsExtraFiles)
{
    const QString earlier = "home/.config/Adobe/Lightroom/";
    machine.writeFile(earlier + "External Editor Presets/Tintara5.lrtemplate",
                      QByteArray(2000, 'x') + "\nold preset of a much longer text\n");
    machine.writeFile(earlier + "External Editor Presets/Mine.lrtemplate", "user's own");
    machine.writeFile(earlier + "Modules/PluginParam.lrplugin/Info.lua", "old info");
    machine.writeFile(earlier + "Modules/PluginParam.lrplugin/Retired.lua", "no longer delivered");
    machine.writeFile(earlier + "Modules/PluginParam.lrplugin/Tintara5config.lua", "Tintara5AppPath = \"old\"");
    machine.writeFile(earlier + "Modules/Bracketon2.lrplugin/Info.lua", "old info");
    machine.writeFile(earlier + "Modules/Bracketon2.lrplugin/Extra.lua", "extra");
    machine.writeFile(earlier + "Export Presets/Orv Collection/PluginParam Export.lrtemplate", "old export");
    machine.writeFile(earlier + "Export Presets/Orv Collection/Mine.lrtemplate", "user's own export");

    install({"Tintara 5", "Bracketon 2"});

    EXPECT_EQ(contentOf(preset("Tintara5.lrtemplate")), presetOf("Tintara 5", "bin/Tintara 5.exe"));
    EXPECT_EQ(contentOf(preset("Mine.lrtemplate")), "user's own");
    EXPECT_EQ(contentOf(sharedModule("Info.lua")), suiteRoot::contentOf("Info.lua"));
    EXPECT_EQ(contentOf(sharedModule("Retired.lua")), "no longer delivered");
    EXPECT_EQ(contentOf(sharedModule("Tintara5config.lua")), luaLine("Tintara5AppPath", "bin/Tintara 5.exe"));
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/Info.lua")), suiteRoot::contentOf("Info.lua"));
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/Extra.lua")), "extra");
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/PluginParam Export.lrtemplate")),
              suiteRoot::contentOf("PluginParam Export.lrtemplate"));
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/Mine.lrtemplate")), "user's own export");
}

TEST_F(InstallLightroomPluginsTest, ProductsLeftOutLoseOnlyThePresetWhoseLRNameIsTheirName)
{
    const QString earlier = "home/.config/Adobe/Lightroom/";
    for (const PluginEntry &entry : catalogue.allPluginEntries()) {
        if (entry.lrPluginFolder != "Modules")
            machine.writeFile(earlier + "External Editor Presets/" + entry.templateName, "old");
        if (!entry.luaConfigFile.isEmpty())
            machine.writeFile(earlier + "Modules/PluginParam.lrplugin/" + entry.luaConfigFile, "old lua");
    }
    machine.writeFile(earlier + "Modules/Bracketon2.lrplugin/Info.lua", "old module");
    machine.writeFile(earlier + "External Editor Presets/Bracketon2.lrplugin", "named like Bracketon's module");
    machine.writeFile(earlier + "Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate", "old export");

    install({"Grainwick 2", "Tintara 4"});

    EXPECT_EQ(treeOf(lrPath("External Editor Presets")), (QStringList{
                                                             "Acutara3_1_RAWPrestage.lrtemplate",
                                                             "Acutara3_2_OutputStage.lrtemplate",
                                                             "Bracketon2.lrplugin",
                                                             "Grainwick2.lrtemplate",
                                                             "Tintara4.lrtemplate",
                                                         }));
    EXPECT_EQ(contentOf(preset("Acutara3_1_RAWPrestage.lrtemplate")), "old");
    EXPECT_EQ(contentOf(preset("Grainwick2.lrtemplate")), presetOf("Grainwick 2", "Grainwick 2/Grainwick 2.exe"));
    // Modules and Lua files of the products left out stay.
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/Info.lua")), "old module");
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate")), "old export");
    EXPECT_EQ(contentOf(sharedModule("Tintara5config.lua")), "old lua");
    EXPECT_EQ(contentOf(sharedModule("BKT2config.lua")), "old lua");
    EXPECT_EQ(contentOf(sharedModule("ACU3RSTconfig.lua")), "old lua");
    EXPECT_EQ(contentOf(sharedModule("Tintara4config.lua")), luaLine("Tintara4AppPath", "Tintara 4/Tintara 4.exe"));
    // Removing logs nothing.
    EXPECT_EQ(log.texts().size(), sharedModuleLines().size() + 2 + 2 + 2);
}

TEST_F(InstallLightroomPluginsTest, OnlyTheFixedPresetFolderIsLookedAt)
{
    machine.writeFile("home/.config/Adobe/Lightroom/Modules/Tintara5.lrtemplate", "elsewhere");
    machine.writeFile("home/.config/Adobe/Lightroom/External Editor Presets/Tintara5.lrtemplate", "old");
    install({});
    EXPECT_FALSE(QFileInfo::exists(preset("Tintara5.lrtemplate")));
    EXPECT_EQ(contentOf(lrPath("Modules/Tintara5.lrtemplate")), "elsewhere");
}

TEST_F(InstallLightroomPluginsTest, ANameInAnotherCaseIsNotTheProduct)
{
    machine.writeFile("home/.config/Adobe/Lightroom/External Editor Presets/Tintara5.lrtemplate", "old");
    install({"tintara 5"});
    // Unknown to the catalogue, the name searches the whole root and matches nothing,
    // and Tintara 5 counts as left out.
    EXPECT_TRUE(linesOf("tintara 5").empty());
    EXPECT_FALSE(QFileInfo::exists(preset("Tintara5.lrtemplate")));
    EXPECT_FALSE(QFileInfo::exists(sharedModule("Tintara5config.lua")));
}

TEST_F(InstallLightroomPluginsTest, AllTwelveProductsIntoOneLightroom)
{
    const QJsonArray everything = QJsonArray::fromStringList(catalogue.productsNotIn({}));
    ASSERT_EQ(everything.size(), 12);
    install(everything);

    const QStringList tree = treeOf(lrRoot());
    std::cout << "Lightroom data folder after deploying all 12 products:\n";
    for (const QString &entry : tree)
        std::cout << "  " << entry.toStdString() << "\n";
    EXPECT_EQ(tree, (QStringList{
                        "Export Presets/",
                        "Export Presets/Orv Collection/",
                        "Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate",
                        "Export Presets/Orv Collection/PluginParam Export.lrtemplate",
                        "External Editor Presets/",
                        "External Editor Presets/Acutara3_1_RAWPrestage.lrtemplate",
                        "External Editor Presets/Acutara3_2_OutputStage.lrtemplate",
                        "External Editor Presets/Grainwick2.lrtemplate",
                        "External Editor Presets/Grainwick3.lrtemplate",
                        "External Editor Presets/Graymere2.lrtemplate",
                        "External Editor Presets/Graymere3.lrtemplate",
                        "External Editor Presets/Lumbrio2.lrtemplate",
                        "External Editor Presets/Lumbrio3.lrtemplate",
                        "External Editor Presets/Quietar2.lrtemplate",
                        "External Editor Presets/Rectilo.lrtemplate",
                        "External Editor Presets/Tintara4.lrtemplate",
                        "External Editor Presets/Tintara5.lrtemplate",
                        "Modules/",
                        "Modules/Bracketon2.lrplugin/",
                        "Modules/Bracketon2.lrplugin/BKT2config.lua",
                        "Modules/Bracketon2.lrplugin/Info.lua",
                        "Modules/Bracketon2.lrplugin/Orv Collection/",
                        "Modules/Bracketon2.lrplugin/Orv Collection/Bracketon 2 Export.lrtemplate",
                        "Modules/PluginParam.lrplugin/",
                        "Modules/PluginParam.lrplugin/ACU3OSTconfig.lua",
                        "Modules/PluginParam.lrplugin/ACU3RSTconfig.lua",
                        "Modules/PluginParam.lrplugin/BKT2config.lua",
                        "Modules/PluginParam.lrplugin/Grainwick2config.lua",
                        "Modules/PluginParam.lrplugin/Grainwick3config.lua",
                        "Modules/PluginParam.lrplugin/Graymere3config.lua",
                        "Modules/PluginParam.lrplugin/Info.lua",
                        "Modules/PluginParam.lrplugin/Lumbrio3config.lua",
                        "Modules/PluginParam.lrplugin/Orv Collection/",
                        "Modules/PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate",
                        "Modules/PluginParam.lrplugin/Quietar2config.lua",
                        "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                        "Modules/PluginParam.lrplugin/Tintara4config.lua",
                        "Modules/PluginParam.lrplugin/Tintara5config.lua",
                    }));

    const QList<QPair<QString, QString>> presets = {
        {"Grainwick 2", "Grainwick 2/Grainwick 2.exe"},
        {"Grainwick 3", "bin/Grainwick 3.exe"},
        {"Tintara 4", "Tintara 4/Tintara 4.exe"},
        {"Tintara 5", "bin/Tintara 5.exe"},
        {"Quietar 2", "Quietar 2/Quietar2.exe"},
        {"Graymere 2", "Graymere 2/Graymere 2.exe"},
        {"Graymere 3", "bin/Graymere 3.exe"},
        {"Lumbrio 2", "Lumbrio 2/Lumbrio 2.exe"},
        {"Lumbrio 3", "bin/Lumbrio 3.exe"},
        {"Rectilo", "Rectilo/Rectilo Launcher.exe"},
        {"Acutara 3", "Acutara 3/ACU3OST.exe"},
        {"Acutara 3", "Acutara 3/ACU3RST.exe"},
    };
    for (const auto &[product, executable] : presets) {
        const PluginEntry entry = catalogue.pluginEntry(product, QFileInfo(executable).fileName());
        ASSERT_FALSE(entry.lrUid.isEmpty()) << executable.toStdString();
        EXPECT_EQ(contentOf(preset(entry.templateName)), presetOf(product, executable)) << executable.toStdString();
    }

    const QList<QPair<QString, QString>> luaFiles = {
        {"RevUtil1config.lua", luaLine("RevUtil1AppPath", "bin/reversible_util.exe")},
        {"BKT2config.lua", luaLine("BKT2ExternalAppPath", "Bracketon 2/Bracketon 2.exe")},
        {"Grainwick2config.lua", luaLine("Grainwick2AppPath", "Grainwick 2/Grainwick 2.exe")},
        {"Grainwick3config.lua", luaLine("Grainwick3AppPath", "bin/Grainwick 3.exe")},
        {"Tintara4config.lua", luaLine("Tintara4AppPath", "Tintara 4/Tintara 4.exe")},
        {"Tintara5config.lua", luaLine("Tintara5AppPath", "bin/Tintara 5.exe")},
        {"Quietar2config.lua", luaLine("Quietar2AppPath", "Quietar 2/Quietar2.exe")},
        {"Graymere3config.lua", luaLine("Graymere3AppPath", "bin/Graymere 3.exe")},
        {"Lumbrio3config.lua", luaLine("Lumbrio3AppPath", "bin/Lumbrio 3.exe")},
        {"ACU3OSTconfig.lua", luaLine("ACU3OSTAppPath", "Acutara 3/ACU3OST.exe")},
        {"ACU3RSTconfig.lua", luaLine("ACU3RSTAppPath", "Acutara 3/ACU3RST.exe")},
    };
    for (const auto &[file, line] : luaFiles)
        EXPECT_EQ(contentOf(sharedModule(file)), line) << file.toStdString();
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/BKT2config.lua")),
              luaLine("BKT2ExternalAppPath", "Bracketon 2/Bracketon 2.exe"));

    for (const LoggedLine &line : log.lines())
        EXPECT_EQ(line.level, spdlog::level::info) << line.text;
    EXPECT_FALSE(QFileInfo::exists(root() + "/bin/lrplugins"));
}
