#include "Catalogue.h"
#include "CatalogueJson.h"
#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

const QString executable = QStringLiteral("/opt/orv/bin/reversible_util.exe");

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

PluginEntry moduleEntry(const QString &templateName, const QString &lrName, const QString &luaConfigFile,
                        const QString &luaVarName)
{
    return PluginEntry{"Module.exe", templateName, "Modules", "", lrName, luaConfigFile, luaVarName};
}

class InstallLightroomModulePluginTest : public testing::Test
{
protected:
    QString source() const { return machine.path("source"); }
    QString lrRoot() const { return machine.path("lightroom"); }
    QString lrPath(const QString &relative) const { return lrRoot() + "/" + relative; }

    QByteArray contentOf(const QString &path) const
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    // The shared module as the suite delivers it, with a deeper folder to show the copy is recursive.
    void writePluginParamSource() const
    {
        machine.writeFile("source/PluginParam.lrplugin/Info.lua", "info");
        machine.writeFile("source/PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate", "export");
        machine.writeFile("source/PluginParam.lrplugin/resources/icons/small.png", "icon");
    }

    QDir install(const PluginEntry &entry) const
    {
        return Installer::installLightroomModulePlugin(entry, source(), lrRoot(), executable);
    }

    std::vector<std::string> functions() const
    {
        std::vector<std::string> names;
        for (const LoggedLine &line : log.lines())
            names.push_back(line.function);
        return names;
    }

    Machine machine;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(InstallLightroomModulePluginTest, CopiesTheModuleWithItsPresetsAndWritesItsLuaFile)
{
    writePluginParamSource();
    const QDir result = install(catalogue.pluginParam());
    EXPECT_EQ(result.path(), lrPath("Modules/PluginParam.lrplugin"));
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Export Presets/Orv Collection/PluginParam Export.lrtemplate",
                                    "Modules/",
                                    "Modules/PluginParam.lrplugin/",
                                    "Modules/PluginParam.lrplugin/Info.lua",
                                    "Modules/PluginParam.lrplugin/Orv Collection/",
                                    "Modules/PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate",
                                    "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                    "Modules/PluginParam.lrplugin/resources/",
                                    "Modules/PluginParam.lrplugin/resources/icons/",
                                    "Modules/PluginParam.lrplugin/resources/icons/small.png",
                                }));
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/Info.lua")), "info");
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/resources/icons/small.png")), "icon");
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/PluginParam Export.lrtemplate")), "export");
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/RevUtil1config.lua")),
              "RevUtil1AppPath = \"/opt/orv/bin/reversible_util.exe\"");
    // The source is left as it was.
    EXPECT_EQ(treeOf(source()), (QStringList{
                                    "PluginParam.lrplugin/",
                                    "PluginParam.lrplugin/Info.lua",
                                    "PluginParam.lrplugin/Orv Collection/",
                                    "PluginParam.lrplugin/Orv Collection/PluginParam Export.lrtemplate",
                                    "PluginParam.lrplugin/resources/",
                                    "PluginParam.lrplugin/resources/icons/",
                                    "PluginParam.lrplugin/resources/icons/small.png",
                                }));
}

TEST_F(InstallLightroomModulePluginTest, LogsTheModuleThePresetsAndTheLuaFile)
{
    writePluginParamSource();
    install(catalogue.pluginParam());
    // PluginParam has no LRName, so the first placeholders stay empty; the
    // preset line names the module's folder, not the presets' own.
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "info: Installing lightroom module plugin  from " + source().toStdString() +
                      "/PluginParam.lrplugin to " + lrRoot().toStdString() + "/Modules/PluginParam.lrplugin",
                  "info: Installing  preset from " + source().toStdString() + "/PluginParam.lrplugin to " +
                      lrRoot().toStdString() + "/Export Presets/Orv Collection",
                  "info: Text file created " + lrRoot().toStdString() +
                      "/Modules/PluginParam.lrplugin/RevUtil1config.lua with content RevUtil1AppPath = "
                      "\"/opt/orv/bin/reversible_util.exe\"",
              }));
    EXPECT_EQ(functions(),
              (std::vector<std::string>{"Installer::installLightroomModulePlugin",
                                        "Installer::installLightroomModulePlugin", "fileUtils::createTextFile"}));
}

TEST_F(InstallLightroomModulePluginTest, TheLinesCarryTheEntrysName)
{
    machine.writeFile("source/Bracketon2.lrplugin/Info.lua", "info");
    machine.writeFile("source/Bracketon2.lrplugin/Orv Collection/Export.lrtemplate", "export");
    install(moduleEntry("Bracketon2.lrplugin", "Bracketon Module", "BKT2config.lua", "BKT2ExternalAppPath"));
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[0], "info: Installing lightroom module plugin Bracketon Module from " + source().toStdString() +
                            "/Bracketon2.lrplugin to " + lrRoot().toStdString() + "/Modules/Bracketon2.lrplugin");
    EXPECT_EQ(texts[1], "info: Installing Bracketon Module preset from " + source().toStdString() +
                            "/Bracketon2.lrplugin to " + lrRoot().toStdString() + "/Export Presets/Orv Collection");
}

TEST_F(InstallLightroomModulePluginTest, AModuleWithoutPresetsStillMakesThePresetFolder)
{
    machine.writeFile("source/PluginParam.lrplugin/Info.lua", "info");
    const QDir result = install(catalogue.pluginParam());
    EXPECT_EQ(result.path(), lrPath("Modules/PluginParam.lrplugin"));
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Modules/",
                                    "Modules/PluginParam.lrplugin/",
                                    "Modules/PluginParam.lrplugin/Info.lua",
                                    "Modules/PluginParam.lrplugin/RevUtil1config.lua",
                                }));
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].rfind("info: Installing lightroom module plugin ", 0), 0u) << texts[0];
    EXPECT_EQ(texts[1].rfind("info: Text file created ", 0), 0u) << texts[1];
}

TEST_F(InstallLightroomModulePluginTest, PresetsOfOtherModulesStayInThePresetFolder)
{
    writePluginParamSource();
    machine.writeFile("lightroom/Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate", "other module");
    install(catalogue.pluginParam());
    EXPECT_EQ(treeOf(lrPath("Export Presets")), (QStringList{
                                                    "Orv Collection/",
                                                    "Orv Collection/Bracketon 2 Export.lrtemplate",
                                                    "Orv Collection/PluginParam Export.lrtemplate",
                                                }));
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/Bracketon 2 Export.lrtemplate")), "other module");
}

TEST_F(InstallLightroomModulePluginTest, ASecondRunReplacesTheFilesAndKeepsAdditionalOnes)
{
    writePluginParamSource();
    install(catalogue.pluginParam());
    machine.writeFile("lightroom/Modules/PluginParam.lrplugin/Info.lua", "edited by the user");
    machine.writeFile("lightroom/Modules/PluginParam.lrplugin/Retired.lua", "from an older version");
    machine.writeFile("lightroom/Modules/PluginParam.lrplugin/RevUtil1config.lua", "RevUtil1AppPath = \"old\"");
    machine.writeFile("lightroom/Export Presets/Orv Collection/PluginParam Export.lrtemplate", "old export");
    machine.writeFile("source/PluginParam.lrplugin/Info.lua", "new info");

    const QDir result = install(catalogue.pluginParam());
    EXPECT_EQ(result.path(), lrPath("Modules/PluginParam.lrplugin"));
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/Info.lua")), "new info");
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/Retired.lua")), "from an older version");
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/RevUtil1config.lua")),
              "RevUtil1AppPath = \"/opt/orv/bin/reversible_util.exe\"");
    EXPECT_EQ(contentOf(lrPath("Export Presets/Orv Collection/PluginParam Export.lrtemplate")), "export");
}

TEST_F(InstallLightroomModulePluginTest, ALuaFileDeliveredWithTheModuleIsOverwritten)
{
    machine.writeFile("source/Bracketon2.lrplugin/BKT2config.lua", "BKT2ExternalAppPath = \"as delivered\"");
    install(moduleEntry("Bracketon2.lrplugin", "", "BKT2config.lua", "BKT2ExternalAppPath"));
    EXPECT_EQ(contentOf(lrPath("Modules/Bracketon2.lrplugin/BKT2config.lua")),
              "BKT2ExternalAppPath = \"/opt/orv/bin/reversible_util.exe\"");
    EXPECT_EQ(contentOf(source() + "/Bracketon2.lrplugin/BKT2config.lua"), "BKT2ExternalAppPath = \"as delivered\"");
}

TEST_F(InstallLightroomModulePluginTest, AMissingSourceGivesTheErrorLineAndTheEmptyDir)
{
    const QDir result = install(catalogue.pluginParam());
    EXPECT_EQ(result.path(), ".");
    EXPECT_EQ(result, QDir(QString()));
    EXPECT_EQ(result.absolutePath(), QDir::currentPath());
    // The folders made before the copy stay, empty; no Lua file is written.
    EXPECT_EQ(treeOf(lrRoot()), (QStringList{
                                    "Export Presets/",
                                    "Export Presets/Orv Collection/",
                                    "Modules/",
                                    "Modules/PluginParam.lrplugin/",
                                }));
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "info: Installing lightroom module plugin  from " + source().toStdString() +
                      "/PluginParam.lrplugin to " + lrRoot().toStdString() + "/Modules/PluginParam.lrplugin",
                  "error: Failed to install, because of following issue: filesystem error: cannot copy: No such "
                  "file or directory [" +
                      source().toStdString() + "/PluginParam.lrplugin] [" + lrRoot().toStdString() +
                      "/Modules/PluginParam.lrplugin]",
              }));
    EXPECT_EQ(functions(), (std::vector<std::string>{"Installer::installLightroomModulePlugin",
                                                     "Installer::installLightroomModulePlugin"}));
}

TEST_F(InstallLightroomModulePluginTest, AnEmptyLuaConfigFileAimsAtTheModuleFolderAndStillSucceeds)
{
    machine.writeFile("source/Bare.lrplugin/Info.lua", "info");
    const QDir result = install(moduleEntry("Bare.lrplugin", "Bare", "", ""));
    EXPECT_EQ(result.path(), lrPath("Modules/Bare.lrplugin"));
    EXPECT_EQ(treeOf(lrPath("Modules")), (QStringList{"Bare.lrplugin/", "Bare.lrplugin/Info.lua"}));
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[1], "warning: Failed to create text file " + lrRoot().toStdString() + "/Modules/Bare.lrplugin");
    EXPECT_EQ(log.lines()[1].function, "fileUtils::createTextFile");
}

TEST_F(InstallLightroomModulePluginTest, ADestinationThatCannotBeMadeEndsInTheErrorLine)
{
    writePluginParamSource();
    machine.writeFile("lightroom", "a file where the data folder should be");
    const QDir result =
        Installer::installLightroomModulePlugin(catalogue.pluginParam(), source(), lrRoot(), executable);
    EXPECT_EQ(result.path(), ".");
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0],
              "warning: Failed to create directory " + lrRoot().toStdString() + "/Modules/PluginParam.lrplugin");
    EXPECT_EQ(texts[1],
              "warning: Failed to create directory " + lrRoot().toStdString() + "/Export Presets/Orv Collection");
    EXPECT_EQ(texts[3], "error: Failed to install, because of following issue: filesystem error: cannot copy: Not a "
                        "directory [" +
                            source().toStdString() + "/PluginParam.lrplugin] [" + lrRoot().toStdString() +
                            "/Modules/PluginParam.lrplugin]");
    EXPECT_EQ(functions(), (std::vector<std::string>{"fileUtils::createDir", "fileUtils::createDir",
                                                     "Installer::installLightroomModulePlugin",
                                                     "Installer::installLightroomModulePlugin"}));
    EXPECT_EQ(contentOf(lrRoot()), "a file where the data folder should be");
}

// The question whether presets came along is asked of the destination, so a
// preset folder left there by an earlier version makes the copy of the
// (absent) preset source fail, and the Lua file isn't written.
TEST_F(InstallLightroomModulePluginTest, APresetFolderLeftByAnEarlierVersionMakesThePresetCopyFail)
{
    machine.writeFile("source/PluginParam.lrplugin/Info.lua", "info");
    machine.writeFile("lightroom/Modules/PluginParam.lrplugin/Orv Collection/Old Export.lrtemplate", "old");
    const QDir result = install(catalogue.pluginParam());
    EXPECT_EQ(result.path(), ".");
    EXPECT_EQ(contentOf(lrPath("Modules/PluginParam.lrplugin/Info.lua")), "info");
    EXPECT_FALSE(QFile::exists(lrPath("Modules/PluginParam.lrplugin/RevUtil1config.lua")));
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[1], "info: Installing  preset from " + source().toStdString() + "/PluginParam.lrplugin to " +
                            lrRoot().toStdString() + "/Export Presets/Orv Collection");
    EXPECT_EQ(texts[2], "error: Failed to install, because of following issue: filesystem error: cannot copy: No "
                        "such file or directory [" +
                            source().toStdString() + "/PluginParam.lrplugin/Orv Collection] [" +
                            lrRoot().toStdString() + "/Export Presets/Orv Collection]");
}

#ifndef Q_OS_WIN
TEST_F(InstallLightroomModulePluginTest, ALinkInsideTheModuleArrivesAsTheFileItPointsTo)
{
    machine.writeFile("elsewhere/Shared.lua", "shared");
    machine.writeFile("source/PluginParam.lrplugin/Info.lua", "info");
    ASSERT_TRUE(QFile::link(machine.path("elsewhere/Shared.lua"), source() + "/PluginParam.lrplugin/Shared.lua"));
    install(catalogue.pluginParam());
    const QFileInfo copied(lrPath("Modules/PluginParam.lrplugin/Shared.lua"));
    EXPECT_TRUE(copied.isFile());
    EXPECT_FALSE(copied.isSymLink());
    EXPECT_EQ(contentOf(copied.filePath()), "shared");
}
#endif
