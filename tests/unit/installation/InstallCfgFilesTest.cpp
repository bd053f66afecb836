#include "Catalogue.h"
#include "CatalogueJson.h"
#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "PathUtils.h"
#include "ScopedEnvironment.h"
#include "SuiteRoot.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

const QByteArray languageFile = "<configuration>\n"
                                "                                               <group name=\"Language\">\n"
                                "                                                   <key name=\"Language\" "
                                "type=\"string\" value=\"%1\"/>\n"
                                "                                               </group>\n"
                                "                                           </configuration>\n";

class InstallCfgFilesTest : public testing::Test
{
protected:
    InstallCfgFilesTest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }
    QString firstDestination() const { return machine.path("home/.local/share/Tavrin"); }

    QByteArray contentOf(const QString &path) const
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    static QByteArray withLanguage(const QByteArray &text, const char *language)
    {
        return QByteArray(text).replace("value=\"en\"", QByteArray("value=\"") + language + "\"");
    }

    void install(const QJsonArray &plugins, const QString &localAppDataDir, const QString &language)
    {
        Installer(pathUtils, catalogue).installCfgFiles(plugins, root(), localAppDataDir, language);
    }

    std::vector<std::string> linesContaining(const std::string &text) const
    {
        std::vector<std::string> found;
        for (const std::string &line : log.texts())
            if (line.find(text) != std::string::npos)
                found.push_back(line);
        return found;
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(InstallCfgFilesTest, WritesTheLanguageIntoTheSourceAndCopiesIt)
{
    install({"Tintara 4"}, "", "de");
    const QByteArray expected = withLanguage(suiteRoot::contentOf("Tintara4.cfg"), "de");
    EXPECT_EQ(contentOf(root() + "/Tintara 4/Tintara4.cfg"), expected);
    EXPECT_EQ(contentOf(firstDestination() + "/Tintara 4/Tintara4.cfg"), expected);
    EXPECT_EQ(linesContaining("Sucessfully copied"),
              std::vector<std::string>{"info: Sucessfully copied file Tintara4.cfg to folder " +
                                       firstDestination().toStdString() + "/Tintara 4"});
    for (const LoggedLine &line : log.lines()) {
        if (line.text.rfind("Sucessfully", 0) == 0) {
            EXPECT_EQ(line.function, "Installer::installCfgFiles");
        }
    }
}

TEST_F(InstallCfgFilesTest, WritesTheLanguageFileByteForByte)
{
    install({}, "", "en-GB");
    EXPECT_EQ(contentOf(firstDestination() + "/Orv Collection/OrvCollection.cfg"),
              QByteArray(languageFile).replace("%1", "en-GB"));
}

TEST_F(InstallCfgFilesTest, AnEmptyListStillMakesTheDestinationsAndTheLanguageFile)
{
    const QString other = machine.path("wizard/local");
    install({}, other, "fr");
    EXPECT_TRUE(QFile::exists(firstDestination() + "/Orv Collection/OrvCollection.cfg"));
    EXPECT_TRUE(QFile::exists(other + "/Tavrin/Orv Collection/OrvCollection.cfg"));
    EXPECT_EQ(QDir(firstDestination()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{"Orv Collection"});
}

TEST_F(InstallCfgFilesTest, WithoutASecondFolderThereIsOneDestinationAndNoNote)
{
    install({"Rectilo"}, "", "it");
    EXPECT_TRUE(linesContaining("Potentially non-admin").empty());
    EXPECT_EQ(linesContaining("Sucessfully copied").size(), 1u);
}

TEST_F(InstallCfgFilesTest, TheSameFolderInAnotherFormIsOneDestination)
{
    install({"Rectilo"}, machine.path("home/.local/./share/"), "it");
    EXPECT_TRUE(linesContaining("Potentially non-admin").empty());
    EXPECT_EQ(linesContaining("Sucessfully copied").size(), 1u);
}

TEST_F(InstallCfgFilesTest, TwoDestinationsGetEverythingAndTheSourceIsRewrittenTwice)
{
    const QString other = machine.path("wizard/local");
    install({"Rectilo", "Acutara 3"}, other, "ja");
    EXPECT_EQ(linesContaining("Potentially non-admin"),
              std::vector<std::string>{"info: Potentially non-admin Installation. 2 destinations with configFiles "
                                       "will be filled: " +
                                       firstDestination().toStdString() + " and " + (other + "/Tavrin").toStdString()});
    for (const QString &destination : {firstDestination(), other + "/Tavrin"}) {
        EXPECT_EQ(contentOf(destination + "/Rectilo/Rectilo.cfg"),
                  withLanguage(suiteRoot::contentOf("Rectilo.cfg"), "ja"));
        EXPECT_EQ(contentOf(destination + "/Acutara 3/Acutara3.cfg"),
                  withLanguage(suiteRoot::contentOf("Acutara3.cfg"), "ja"));
        EXPECT_EQ(contentOf(destination + "/Orv Collection/OrvCollection.cfg"),
                  QByteArray(languageFile).replace("%1", "ja"));
    }
    EXPECT_EQ(linesContaining("Text file created " + root().toStdString() + "/Rectilo/Rectilo.cfg").size(), 2u);
}

TEST_F(InstallCfgFilesTest, EnglishChangesNothingButRewritesTheSource)
{
    install({"Quietar 2"}, "", "en");
    EXPECT_EQ(contentOf(root() + "/Quietar 2/Quietar2.cfg"), suiteRoot::contentOf("Quietar2.cfg"));
    EXPECT_EQ(linesContaining("Text file created " + root().toStdString() + "/Quietar 2/Quietar2.cfg").size(), 1u);
}

TEST_F(InstallCfgFilesTest, OnlyTheFirstFileFoundIsHandledAndLandsFlat)
{
    machine.writeFile("suite/Lumbrio 2/deeper/Extra.cfg", suiteRoot::contentOf("Extra.cfg"));
    install({"Lumbrio 2"}, "", "pl");
    const QStringList copied = QDir(firstDestination() + "/Lumbrio 2").entryList(QDir::Files);
    ASSERT_EQ(copied.size(), 1);
    EXPECT_EQ(linesContaining("Sucessfully copied").size(), 1u);
    EXPECT_TRUE(copied.first() == "Lumbrio2.cfg" || copied.first() == "Extra.cfg");
    const QString handled =
        copied.first() == "Extra.cfg" ? root() + "/Lumbrio 2/deeper/Extra.cfg" : root() + "/Lumbrio 2/Lumbrio2.cfg";
    const QString untouched =
        copied.first() == "Extra.cfg" ? root() + "/Lumbrio 2/Lumbrio2.cfg" : root() + "/Lumbrio 2/deeper/Extra.cfg";
    EXPECT_TRUE(contentOf(handled).contains("value=\"pl\""));
    EXPECT_TRUE(contentOf(untouched).contains("value=\"en\""));
}

TEST_F(InstallCfgFilesTest, ARerunKeepsTheFirstCopyButFollowsTheNewLanguageInTheLanguageFile)
{
    install({"Tintara 4", "Rectilo"}, "", "de");
    install({"Tintara 4", "Rectilo"}, "", "fr");
    EXPECT_EQ(
        linesContaining("Failed to copy file"),
        (std::vector<std::string>{
            "error: Failed to copy file Tintara4.cfg to folder " + firstDestination().toStdString() + "/Tintara 4",
            "error: Failed to copy file Rectilo.cfg to folder " + firstDestination().toStdString() + "/Rectilo"}));
    EXPECT_TRUE(contentOf(firstDestination() + "/Tintara 4/Tintara4.cfg").contains("value=\"de\""));
    EXPECT_TRUE(contentOf(root() + "/Tintara 4/Tintara4.cfg").contains("value=\"de\""));
    EXPECT_EQ(contentOf(firstDestination() + "/Orv Collection/OrvCollection.cfg"),
              QByteArray(languageFile).replace("%1", "fr"));
}

TEST_F(InstallCfgFilesTest, AProductWithoutSettingsFileLeavesAnEmptyFolderAndNoLine)
{
    install({"Unknown Product"}, "", "de");
    EXPECT_TRUE(QDir(firstDestination() + "/Unknown Product").exists());
    EXPECT_TRUE(QDir(firstDestination() + "/Unknown Product").isEmpty());
    EXPECT_TRUE(linesContaining("copied").empty());
    EXPECT_TRUE(linesContaining("Failed").empty());
}
