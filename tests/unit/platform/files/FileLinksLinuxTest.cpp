#include "FileLinks.h"
#include "Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

TEST(FileLinksLinuxTest, MakesALinkToTheTarget)
{
    const Machine machine;
    machine.writeFile("suite/Tintara 5.exe", "exe");
    EXPECT_TRUE(makeLink(machine.path("suite/Tintara 5.exe"), machine.path("Tintara 5.lnk")));
    EXPECT_EQ(QFileInfo(machine.path("Tintara 5.lnk")).symLinkTarget(), machine.path("suite/Tintara 5.exe"));
}

TEST(FileLinksLinuxTest, AnExistingNameIsNeverReplaced)
{
    const Machine machine;
    machine.writeFile("first/Tintara 5.exe", "first");
    machine.writeFile("second/Tintara 5.exe", "second");
    machine.writeFile("Own.lnk", "a file of the user's");
    ASSERT_TRUE(makeLink(machine.path("first/Tintara 5.exe"), machine.path("Tintara 5.lnk")));
    EXPECT_FALSE(makeLink(machine.path("second/Tintara 5.exe"), machine.path("Tintara 5.lnk")));
    EXPECT_FALSE(makeLink(machine.path("second/Tintara 5.exe"), machine.path("Own.lnk")));
    EXPECT_EQ(QFileInfo(machine.path("Tintara 5.lnk")).symLinkTarget(), machine.path("first/Tintara 5.exe"));
    EXPECT_EQ(machine.readFile("Own.lnk"), "a file of the user's");
}

TEST(FileLinksLinuxTest, ALinkWhoseTargetIsGoneStillHoldsItsName)
{
    const Machine machine;
    machine.writeFile("suite/Tintara 5.exe", "exe");
    ASSERT_TRUE(makeLink(machine.path("suite/Tintara 5.exe"), machine.path("Tintara 5.lnk")));
    QFile::remove(machine.path("suite/Tintara 5.exe"));
    EXPECT_FALSE(makeLink(machine.path("suite/Other.exe"), machine.path("Tintara 5.lnk")));
}

TEST(FileLinksLinuxTest, LettersOfEveryLanguageStayAsTheyAre)
{
    const Machine machine;
    machine.writeFile("Suíte Пробный 套件/Tintara 5.exe", "exe");
    const QString target = machine.path("Suíte Пробный 套件/Tintara 5.exe");
    const QString link = machine.path("Меню 開始/Tintara 5.lnk");
    QDir().mkpath(machine.path("Меню 開始"));
    ASSERT_TRUE(makeLink(target, link));
    EXPECT_EQ(QFileInfo(link).symLinkTarget(), target);
    EXPECT_FALSE(makeLink(target, link));
}

TEST(FileLinksLinuxTest, ADeepTargetIsLinkedAndOneBeyondTheLongestPathIsNot)
{
    const Machine machine;
    const QString deep = QString("a folder name of forty characters here/").repeated(8) + "Tintara 5.exe";
    machine.writeFile(deep, "exe");
    EXPECT_TRUE(makeLink(machine.path(deep), machine.path("Deep.lnk")));
    EXPECT_EQ(QFileInfo(machine.path("Deep.lnk")).symLinkTarget(), machine.path(deep));
    // Linux itself refuses a path this long; the limit that matters, a shell
    // link's, is shown against the Windows program by LongPathsE2ETest.
    const QString tooLong = machine.path(QString(longestLinkPath(), 'x'));
    EXPECT_FALSE(makeLink(tooLong, machine.path("Long.lnk")));
    EXPECT_FALSE(QFileInfo(machine.path("Long.lnk")).isSymLink());
}
