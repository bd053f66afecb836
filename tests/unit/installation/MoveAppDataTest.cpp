#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "ScopedEnvironment.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

class MoveAppDataTest : public testing::Test
{
protected:
    QString target(const QString &relative = {}) const { return machine.path("ProgramData/Tavrin/" + relative); }

    QByteArray contentOf(const QString &path) const
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    LogCapture log;
};

} // namespace

TEST_F(MoveAppDataTest, WithoutAppDataNothingHappens)
{
    Installer::moveAppData(machine.path("suite"));
    EXPECT_FALSE(QDir(target()).exists());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(MoveAppDataTest, MergesIntoTheTargetAndRemovesTheSource)
{
    machine.writeFile("suite/appData/Presets/Default.preset", "new");
    machine.writeFile("suite/appData/Orv.lic", "licence");
    machine.writeFile("ProgramData/Tavrin/Presets/Default.preset", "old");
    machine.writeFile("ProgramData/Tavrin/Presets/Mine.preset", "user's own");
    Installer::moveAppData(machine.path("suite"));
    EXPECT_EQ(contentOf(target("Presets/Default.preset")), "new");
    EXPECT_EQ(contentOf(target("Presets/Mine.preset")), "user's own");
    EXPECT_EQ(contentOf(target("Orv.lic")), "licence");
    EXPECT_FALSE(QDir(machine.path("suite/appData")).exists());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(MoveAppDataTest, ASecondRunFindsNothingToDo)
{
    machine.writeFile("suite/appData/Orv.lic", "licence");
    Installer::moveAppData(machine.path("suite"));
    machine.writeFile("ProgramData/Tavrin/Orv.lic", "changed since");
    Installer::moveAppData(machine.path("suite"));
    EXPECT_EQ(contentOf(target("Orv.lic")), "changed since");
}

TEST_F(MoveAppDataTest, AFailedCopyIsLoggedAndTheSourceGoesAllTheSame)
{
    machine.writeFile("suite/appData/Orv.lic", "licence");
    machine.writeFile("suite/appData/Blocked/file.txt", "cannot land");
    machine.writeFile("ProgramData/Tavrin/Blocked", "a file where the source has a folder");
    Installer::moveAppData(machine.path("suite"));
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.texts()[0].rfind("error: failed to move files ", 0), 0u) << log.texts()[0];
    EXPECT_EQ(log.lines()[0].function, "Installer::moveAppData");
    EXPECT_FALSE(QDir(machine.path("suite/appData")).exists());
    EXPECT_EQ(contentOf(target("Blocked")), "a file where the source has a folder");
}

TEST_F(MoveAppDataTest, LettersOfEveryLanguageInBothPathsAreMovedAsAny)
{
    const QString root = QStringLiteral("Suíte Пробный 套件");
    const QString programData = QStringLiteral("Données Программы");
    environment.set("ProgramData", machine.path(programData).toUtf8());
    machine.writeFile(root + "/appData/Licenses/Orv Сертификат.lic", "licence");
    Installer::moveAppData(machine.path(root));
    EXPECT_EQ(contentOf(machine.path(programData + "/Tavrin/Licenses/Orv Сертификат.lic")), "licence");
    EXPECT_FALSE(QDir(machine.path(root + "/appData")).exists());
    EXPECT_TRUE(log.lines().empty()) << log.texts()[0];
}
