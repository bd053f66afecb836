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

class SampleImagesTest : public testing::Test
{
protected:
    SampleImagesTest() { suiteRoot::create(root()); }

    QString root() const { return machine.path("suite"); }
    QString samples() const { return machine.path("home/Pictures/Rectilo Samples"); }
    QStringList pictures() const { return QDir(samples()).entryList(QDir::Files); }

    void install(int language) { Installer(pathUtils, catalogue).installSampleImages(root(), language); }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const Catalogue catalogue{loadCatalogueJson(":/PluginsConfiguration.json")};
    LogCapture log;
};

} // namespace

TEST_F(SampleImagesTest, GermanTakesItsFolderWithSubfoldersFlatAndTheNeutralPictures)
{
    install(0);
    EXPECT_EQ(pictures(), (QStringList{"Harbour.jpg", "Schild.jpg", "Sunset.jpg", "Tafel.jpg"}));
}

TEST_F(SampleImagesTest, JapaneseIsRequestNumberTwelve)
{
    install(12);
    EXPECT_EQ(pictures(), (QStringList{"Harbour.jpg", "Kanban.jpg", "Sunset.jpg"}));
}

TEST_F(SampleImagesTest, NumbersWithoutRowTakeFolder1033)
{
    for (int language : {3, 99}) {
        Machine other;
        suiteRoot::create(other.path("suite"));
        const ScopedEnvironment otherEnvironment(other);
        Installer(pathUtils, catalogue).installSampleImages(other.path("suite"), language);
        EXPECT_EQ(QDir(other.path("home/Pictures/Rectilo Samples")).entryList(QDir::Files),
                  (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}))
            << language;
    }
}

TEST_F(SampleImagesTest, TheSourceOfAllLanguagesGoesAndASecondRunChangesNothing)
{
    install(1);
    EXPECT_FALSE(QDir(root() + "/pictures").exists());
    const QStringList first = pictures();
    install(0);
    EXPECT_EQ(pictures(), first);
}

TEST_F(SampleImagesTest, ExistingPicturesStayAndOnlyTheLanguageWalkLogsIt)
{
    machine.writeFile("home/Pictures/Rectilo Samples/Sign.jpg", "mine");
    machine.writeFile("home/Pictures/Rectilo Samples/Sunset.jpg", "mine too");
    install(1);
    QFile sign(samples() + "/Sign.jpg");
    sign.open(QIODevice::ReadOnly);
    EXPECT_EQ(sign.readAll(), "mine");
    EXPECT_EQ(log.texts(),
              std::vector<std::string>{"warning: Failed to copy file " + root().toStdString() +
                                       "/pictures/1033/Sign.jpg to " + samples().toStdString() + "/Sign.jpg"});
}

TEST_F(SampleImagesTest, ALanguagePictureIsNotReplacedByANeutralOneOfTheSameName)
{
    machine.writeFile("suite/pictures/Schild.jpg", "neutral");
    install(0);
    QFile schild(samples() + "/Schild.jpg");
    schild.open(QIODevice::ReadOnly);
    EXPECT_EQ(schild.readAll(), suiteRoot::contentOf("Schild.jpg"));
    EXPECT_TRUE(log.lines().empty());
}
