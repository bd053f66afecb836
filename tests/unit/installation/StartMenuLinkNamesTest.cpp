#include "StartMenuLinkNames.h"

#include <gtest/gtest.h>

TEST(StartMenuLinkNamesTest, TableNamesWinOverFileNames)
{
    EXPECT_EQ(startMenuLinkFileName("ACU3OST.exe"), "Acutara 3 Output Stage.lnk");
    EXPECT_EQ(startMenuLinkFileName("ACU3RST.exe"), "Acutara 3 RAW Prestage.lnk");
}

TEST(StartMenuLinkNamesTest, OtherListedExecutablesAreNamedAfterTheirBaseName)
{
    EXPECT_EQ(startMenuLinkFileName("Grainwick 3.exe"), "Grainwick 3.lnk");
    EXPECT_EQ(startMenuLinkFileName("Tintara 5.exe"), "Tintara 5.lnk");
    EXPECT_EQ(startMenuLinkFileName("Quietar2.exe"), "Quietar2.lnk");
    EXPECT_EQ(startMenuLinkFileName("Bracketon 2.exe"), "Bracketon 2.lnk");
    EXPECT_EQ(startMenuLinkFileName("Rectilo.exe"), "Rectilo.lnk");
    EXPECT_EQ(startMenuLinkFileName("Graymere 3.exe"), "Graymere 3.lnk");
    EXPECT_EQ(startMenuLinkFileName("Lumbrio 3.exe"), "Lumbrio 3.lnk");
}

TEST(StartMenuLinkNamesTest, UnlistedExecutablesGetNoLink)
{
    EXPECT_EQ(startMenuLinkFileName("Rectilo Launcher.exe"), "");
    EXPECT_EQ(startMenuLinkFileName("Tintara 4.exe"), "");
    EXPECT_EQ(startMenuLinkFileName("reversible_util.exe"), "");
    EXPECT_EQ(startMenuLinkFileName("grainwick 3.exe"), "");
    EXPECT_EQ(startMenuLinkFileName("Grainwick 3.EXE"), "");
    EXPECT_EQ(startMenuLinkFileName(""), "");
}
