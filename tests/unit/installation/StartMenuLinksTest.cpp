#include "Catalogue.h"
#include "CatalogueJson.h"
#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "PathUtils.h"
#include "ScopedEnvironment.h"
#include "SuiteRoot.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

class StartMenuLinksTest : public testing::Test
{
protected:
    QString root() const { return machine.path("suite"); }
    QString startMenu() const { return machine.path("usr/share/applications/Tavrin Orv Collection"); }
    QStringList links() const
    {
        return QDir(startMenu()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    }
    QString targetOf(const QString &link) const { return QFileInfo(startMenu() + "/" + link).symLinkTarget(); }

    void createLinks() { Installer(pathUtils, catalogue).createStartMenuLinks(root()); }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(StartMenuLinksTest, LinksTheListedExecutablesOfTheWholeSuite)
{
    suiteRoot::create(root());
    createLinks();
    EXPECT_EQ(links(), (QStringList{"Acutara 3 Output Stage.lnk", "Acutara 3 RAW Prestage.lnk", "Bracketon 2.lnk",
                                    "Grainwick 3.lnk", "Graymere 3.lnk", "Lumbrio 3.lnk", "Quietar2.lnk", "Rectilo.lnk",
                                    "Tintara 5.lnk"}));
    EXPECT_EQ(targetOf("Acutara 3 Output Stage.lnk"), root() + "/Acutara 3/ACU3OST.exe");
    EXPECT_EQ(targetOf("Grainwick 3.lnk"), root() + "/bin/Grainwick 3.exe");
    EXPECT_EQ(targetOf("Rectilo.lnk"), root() + "/Rectilo/Rectilo.exe");
}

TEST_F(StartMenuLinksTest, LogsTheFolderAndEachLink)
{
    machine.writeFile("suite/bin/Tintara 5.exe", "exe");
    machine.writeFile("suite/Rectilo/Rectilo Launcher.exe", "exe");
    machine.writeFile("suite/Tintara 4/Tintara 4.exe", "exe");
    createLinks();
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{"info: going to create start menu links at " + startMenu().toStdString(),
                                        "info: Creating link from " + root().toStdString() + "/bin/Tintara 5.exe to " +
                                            startMenu().toStdString() + "/Tintara 5.lnk"}));
    EXPECT_EQ(log.lines().at(1).function, "Installer::createStartMenuLinks");
    EXPECT_EQ(links(), QStringList{"Tintara 5.lnk"});
}

TEST_F(StartMenuLinksTest, AnExecutableFoundTwiceGivesOneLinkAndOneWarning)
{
    machine.writeFile("suite/bin/Lumbrio 3.exe", "exe");
    machine.writeFile("suite/old/Lumbrio 3.exe", "exe");
    createLinks();
    EXPECT_EQ(links(), QStringList{"Lumbrio 3.lnk"});
    int warnings = 0;
    for (const LoggedLine &line : log.lines()) {
        if (line.level == spdlog::level::warn) {
            ++warnings;
            EXPECT_EQ(line.text.rfind("Failed to create link from " + root().toStdString(), 0), 0u);
            EXPECT_NE(line.text.find(" to " + startMenu().toStdString() + "/Lumbrio 3.lnk"), std::string::npos);
        }
    }
    EXPECT_EQ(warnings, 1);
}

TEST_F(StartMenuLinksTest, AMissingRootGivesAnEmptyFolder)
{
    createLinks();
    EXPECT_TRUE(QDir(startMenu()).exists());
    EXPECT_TRUE(links().isEmpty());
}

TEST_F(StartMenuLinksTest, ARerunStartsFromAnEmptyFolder)
{
    suiteRoot::create(root());
    machine.writeFile("usr/share/applications/Tavrin Orv Collection/Old Product.lnk", "left by a user");
    createLinks();
    const QStringList first = links();
    createLinks();
    EXPECT_EQ(links(), first);
    EXPECT_FALSE(first.contains("Old Product.lnk"));
    for (const LoggedLine &line : log.lines())
        EXPECT_NE(line.level, spdlog::level::warn) << line.text;
}
