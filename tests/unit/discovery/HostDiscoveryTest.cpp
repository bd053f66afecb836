#include "HostAppUtils.h"
#include "HostMachine.h"
#include "LogCapture.h"
#include "ScopedEnvironment.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace hostMachine;

namespace {

const QByteArray commonFiles = "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]\n"
                               "\"CommonFilesDir\"=\"C:\\\\Program Files\\\\Common Files\"\n";
const QString sharedFolder = "C:\\Program Files\\Common Files/Adobe/Plug-Ins/CC/";

QJsonObject host(const QString &appName, const QString &pluginPath, int type)
{
    return QJsonObject{{"appName", appName}, {"pluginPath", pluginPath}, {"type", type}};
}

QByteArray photoshopKey(const QByteArray &version, const QByteArray &values = {})
{
    return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\" + version + "]\n" + values + "\"Installed\"=dword:1\n";
}

QByteArray elementsKey(const QByteArray &version, const QByteArray &folder)
{
    return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\" + version + "\\PluginPath]\n@=\"" + folder +
           "\"\n";
}

class HostDiscoveryTest : public testing::Test
{
protected:
    QJsonArray detected(void (*detector)(QJsonArray &))
    {
        QJsonArray hosts;
        detector(hosts);
        return hosts;
    }

    QString roaming(const QString &tail) const { return machine.path("home/.config") + tail; }

    Machine machine;
    ScopedEnvironment environment{machine};
    LogCapture log;
};

} // namespace

TEST_F(HostDiscoveryTest, AddHostRecordAppendsTheThreeKeys)
{
    QJsonArray hosts{host("x", "y", 0)};
    addHostRecord(hosts, "Photoshop CC 2018 (64-Bit)", "C:/p", 0);
    addHostRecord(hosts, "Photoshop CC 2018 (64-Bit)", "C:/p", 0);
    EXPECT_EQ(hosts.size(), 3);
    EXPECT_EQ(hosts.at(1), host("Photoshop CC 2018 (64-Bit)", "C:/p", 0));
    EXPECT_EQ(hosts.at(2), hosts.at(1));
}

TEST_F(HostDiscoveryTest, AMachineWithoutHostsReportsAnEmptyList)
{
    EXPECT_EQ(systemReport(), (QJsonObject{{"hosts", QJsonArray()}, {"detectedHosts", 0}}));
}

TEST_F(HostDiscoveryTest, PhotoshopVersionsFromTheTableShareTheCommonFolder)
{
    writeMachineHive(machine, commonFiles + photoshopKey("110.0") + photoshopKey("120.0"));
    EXPECT_EQ(detected(detectPhotoshopHosts), (QJsonArray{host("Photoshop CC 2017 (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CC 2018 (64-Bit)", sharedFolder, 0)}));
    EXPECT_FALSE(QDir(sharedFolder).exists());
}

TEST_F(HostDiscoveryTest, VersionsAreComparedAsTextNotAsNumbers)
{
    writeMachineHive(machine, commonFiles + photoshopKey("12.0") + photoshopKey("60.0") + photoshopKey("100.0") +
                                  photoshopKey("130.0", "\"PluginPath\"=\"C:\\\\unused\"\n") + photoshopKey("140.0") +
                                  photoshopKey("55.0") + photoshopKey("abc"));
    EXPECT_EQ(detected(detectPhotoshopHosts), (QJsonArray{host("Photoshop CC 2015.5 (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CS5 (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CC 2019 (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CC (v 140.0) (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CC (v 55.0) (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CS6 (64-Bit)", sharedFolder, 0),
                                                          host("Photoshop CC (v abc) (64-Bit)", sharedFolder, 0)}));
}

TEST_F(HostDiscoveryTest, VersionsBelowTheCutOffKeepTheirOwnFolderAndNoName)
{
    writeMachineHive(machine, commonFiles + photoshopKey("10.0", "\"PluginPath\"=\"D:\\\\PS10\\\\Plug-ins\"\n") +
                                  photoshopKey("09.0"));
    EXPECT_EQ(detected(detectPhotoshopHosts), (QJsonArray{host("", "", 0), host("", "D:\\PS10\\Plug-ins", 0)}));
}

TEST_F(HostDiscoveryTest, WithoutCommonFilesTheFolderIsTheTailAlone)
{
    writeMachineHive(machine, photoshopKey("120.0"));
    EXPECT_EQ(detected(detectPhotoshopHosts), QJsonArray{host("Photoshop CC 2018 (64-Bit)", "/Adobe/Plug-Ins/CC/", 0)});
}

TEST_F(HostDiscoveryTest, ElementsFromSixteenOnAreNamedAfterTheYear)
{
    writeMachineHive(machine, elementsKey("9", "/pse9") + elementsKey("15", "/pse15") + elementsKey("16", "/pse16") +
                                  elementsKey("17", "/pse17") + elementsKey("15.0", "/dotted") +
                                  elementsKey("-1", "/minus"));
    EXPECT_EQ(detected(detectPhotoshopElementsHosts), (QJsonArray{host("Photoshop Elements -1 (64-Bit)", "/minus", 1),
                                                                  host("Photoshop Elements 15 (64-Bit)", "/pse15", 1),
                                                                  host("Photoshop Elements 0 (64-Bit)", "/dotted", 1),
                                                                  host("Photoshop Elements 2018 (64-Bit)", "/pse16", 1),
                                                                  host("Photoshop Elements 2019 (64-Bit)", "/pse17", 1),
                                                                  host("Photoshop Elements 9 (64-Bit)", "/pse9", 1)}));
}

TEST_F(HostDiscoveryTest, ElementsNeedsTheDefaultValueOfTheSubKey)
{
    writeMachineHive(machine, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16]\n"
                              "\"PluginPath\"=\"/named/value\"\n"
                              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\17\\PluginPath]\n"
                              "@=\"\"\n");
    EXPECT_EQ(detected(detectPhotoshopElementsHosts), QJsonArray());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(HostDiscoveryTest, TwoElementsKeysWithOneFolderGiveTwoRecords)
{
    writeMachineHive(machine, elementsKey("16", "/pse") + elementsKey("17", "/pse"));
    EXPECT_EQ(detected(detectPhotoshopElementsHosts).size(), 2);
}

TEST_F(HostDiscoveryTest, LightroomWithoutPreferencesFolderLogsDoesNotExist)
{
    EXPECT_EQ(detected(detectLightroomHosts), QJsonArray());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.texts()[0], "warning: No LR preferences found in dir (does not exist): " +
                                  roaming("/Adobe/Lightroom/Preferences").toStdString() + ", ");
    EXPECT_EQ(log.lines()[0].function, "detectLightroomHosts");
}

TEST_F(HostDiscoveryTest, LightroomWithOtherFilesOnlyLogsExists)
{
    addLightroomPreferences(machine, "Startup Preferences.agprefs");
    addLightroomPreferences(machine, "Lightroom 6 Preferences.txt");
    EXPECT_EQ(detected(detectLightroomHosts), QJsonArray());
    EXPECT_EQ(log.texts(), std::vector<std::string>{"warning: No LR preferences found in dir (exists): " +
                                                    roaming("/Adobe/Lightroom/Preferences").toStdString() + ", "});
}

TEST_F(HostDiscoveryTest, LightroomIsOneHostNamedAfterTheFirstPreferencesFile)
{
    addLightroomPreferences(machine, "Lightroom 6 Preferences.agprefs");
    addLightroomPreferences(machine, "lightroom 5 Preferences.agprefs");
    addLightroomPreferences(machine, "Lightroom Classic CC 7 Preferences.agprefs");
    EXPECT_EQ(detected(detectLightroomHosts), QJsonArray{host("lightroom 5", roaming("/Adobe/Lightroom/"), 2)});
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(HostDiscoveryTest, LightroomNameRuleDropsOneCharacterEvenWithoutABlank)
{
    addLightroomPreferences(machine, "LightroomPreferences.agprefs");
    EXPECT_EQ(detected(detectLightroomHosts).at(0).toObject().value("appName"), "Lightroo");
}

TEST_F(HostDiscoveryTest, LightroomMarkerInOtherCaseKeepsTheWholeFileName)
{
    addLightroomPreferences(machine, "Lightroom 6 preferences.agprefs");
    EXPECT_EQ(detected(detectLightroomHosts).at(0).toObject().value("appName"), "Lightroom 6 preferences.agprefs");
}

TEST_F(HostDiscoveryTest, LightroomFollowsTheHomeWhenXdgConfigHomeIsUnset)
{
    environment.unset("XDG_CONFIG_HOME");
    addLightroomPreferences(machine, "Lightroom 6 Preferences.agprefs");
    EXPECT_EQ(detected(detectLightroomHosts).at(0).toObject().value("pluginPath"), roaming("/Adobe/Lightroom/"));
}

TEST_F(HostDiscoveryTest, TheReportListsPhotoshopThenLightroomThenElements)
{
    writeMachineHive(machine, commonFiles + photoshopKey("130.0") + photoshopKey("120.0") + elementsKey("16", "/pse"));
    addLightroomPreferences(machine, "Lightroom 6 Preferences.agprefs");
    const QJsonObject report = systemReport();
    const QJsonArray hosts = report.value("hosts").toArray();
    EXPECT_EQ(report.value("detectedHosts").toInt(), hosts.size());
    ASSERT_EQ(hosts.size(), 4);
    EXPECT_EQ(hosts.at(0).toObject().value("appName"), "Photoshop CC 2018 (64-Bit)");
    EXPECT_EQ(hosts.at(1).toObject().value("pluginPath"), hosts.at(0).toObject().value("pluginPath"));
    EXPECT_EQ(hosts.at(2).toObject().value("type"), 2);
    EXPECT_EQ(hosts.at(3).toObject().value("type"), 1);
}
