#include "RunningProcesses.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

// The wizard's filter of blocking applications, as the tool uses it.
const QRegExp
    blockingApplications("Tintara|Grainwick|Lumbrio|ACU3|Quietar|RectiloGraymere|Bracketon|Photoshop|Lightroom",
                         Qt::CaseSensitive, QRegExp::RegExp);

QStringList matching(const QByteArray &list)
{
    return matchingCaptions(list, blockingApplications);
}

QByteArray wmicList(const QList<QByteArray> &captions)
{
    QByteArray list = "Caption  \r\r\n";
    for (const QByteArray &caption : captions)
        list += caption + "  \r\r\n";
    return list;
}

} // namespace

TEST(MatchingCaptionsTest, NoMatchGivesAnEmptyList)
{
    EXPECT_TRUE(matching(wmicList({"System Idle Process", "explorer.exe"})).isEmpty());
    EXPECT_TRUE(matching("").isEmpty());
}

TEST(MatchingCaptionsTest, TheHeaderWordIsAnItemUntilTheFilterDropsIt)
{
    EXPECT_EQ(matchingCaptions(wmicList({"a.exe"}), QRegExp(".")), (QStringList{"Caption", "a.exe"}));
    EXPECT_EQ(matching(wmicList({"Lightroom.exe"})), QStringList{"Lightroom.exe"});
}

TEST(MatchingCaptionsTest, DuplicatesAreListedOnceInFirstOrder)
{
    EXPECT_EQ(matching(wmicList({"Photoshop.exe", "Lightroom.exe", "Photoshop.exe"})),
              (QStringList{"Photoshop.exe", "Lightroom.exe"}));
}

TEST(MatchingCaptionsTest, BlanksAreRemovedBeforeMatchingAndComparing)
{
    EXPECT_EQ(matching(wmicList({"Tintara 5.exe", "Tintara5.exe"})), QStringList{"Tintara5.exe"});
}

TEST(MatchingCaptionsTest, HostNamesMatchInsideLongerNamesButNotInLowerCase)
{
    EXPECT_EQ(matching(wmicList({"MyPhotoshopHelper.exe", "photoshop.exe", "LIGHTROOM.exe"})),
              QStringList{"MyPhotoshopHelper.exe"});
}

TEST(MatchingCaptionsTest, ProductsMatchByStemAlsoInOldGenerations)
{
    EXPECT_EQ(matching(wmicList({"Tintara4.exe", "Lumbrio2.exe", "ACU3OST.exe", "Quietar2.exe", "Grainwick 3.exe",
                                 "Bracketon 2.exe"})),
              (QStringList{"Tintara4.exe", "Lumbrio2.exe", "ACU3OST.exe", "Quietar2.exe", "Grainwick3.exe",
                           "Bracketon2.exe"}));
}

TEST(MatchingCaptionsTest, RectiloAndGraymereOnlyMatchTogether)
{
    EXPECT_TRUE(matching(wmicList({"Graymere 3.exe", "Rectilo.exe", "Rectilo Launcher.exe"})).isEmpty());
    EXPECT_EQ(matching(wmicList({"Rectilo Graymere.exe"})), QStringList{"RectiloGraymere.exe"});
}

TEST(MatchingCaptionsTest, EmptyAndBlankLinesAreSkipped)
{
    EXPECT_EQ(matchingCaptions("\r\r\n   \r\r\nCaption\r\r\n\r\r\nx\r\r\n", QRegExp(".*")),
              (QStringList{"Caption", "x"}));
}

TEST(MatchingCaptionsTest, PlainCrLfLeavesOneItem)
{
    const QByteArray list = "Caption\r\nPhotoshop.exe\r\nexplorer.exe\r\n";
    EXPECT_EQ(matching(list), QStringList{"Caption\r\nPhotoshop.exe\r\nexplorer.exe\r\n"});
    EXPECT_TRUE(matching("Caption\r\nexplorer.exe\r\n").isEmpty());
}

TEST(MatchingCaptionsTest, TextIsReadAsUtf8)
{
    EXPECT_EQ(matching(wmicList({"Photoshop Ü.exe"})), QStringList{QString::fromUtf8("PhotoshopÜ.exe")});
}

TEST(RunningProcessesTest, TheDefaultFilterServesWhenTheFilterIsEmpty)
{
    const QString ownName = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const QRegExp ownFilter("^" + QRegExp::escape(ownName) + "$");
    EXPECT_EQ(runningProcesses(ownFilter, QRegExp()), QStringList{ownName});
}

TEST(RunningProcessesTest, ANonEmptyFilterReplacesTheDefault)
{
    const QString ownName = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const QRegExp ownFilter("^" + QRegExp::escape(ownName) + "$");
    EXPECT_TRUE(runningProcesses(ownFilter, QRegExp("^NoSuchProcess\\.exe$")).isEmpty());
}
