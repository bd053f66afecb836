#include "TestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace {

const QString englishText =
    "<html>This wizard will guide you through the installation of Orv Collection.<br><br>"
    "It is recommended that you close all other applications before starting Setup. This will make it possible "
    "to update relevant system files without having to reboot your computer.<br><br>"
    "Click Next to continue.<br><br></html>";

// A machine whose system language is the given locale.
std::unique_ptr<TestMachine> localizedMachine(const QString &locale)
{
    std::unique_ptr<TestMachine> machine = newTestMachine();
    machine->setSystemLocale(locale);
    return machine;
}

ToolRun runReport(const TestMachine &machine)
{
    return machine.run(QStringList{});
}

// The host records with their folders as they compare across the builds.
QJsonArray comparableHosts(const TestMachine &machine, const QJsonArray &hosts)
{
    QJsonArray result;
    for (const QJsonValue &host : hosts) {
        QJsonObject record = host.toObject();
        record.insert("pluginPath", machine.comparable(record.value("pluginPath").toString()));
        result.append(record);
    }
    return result;
}

} // namespace

TEST(ReportE2ETest, ReportsTheLanguageNumberOfEachSystem)
{
    // A bare language and the C locale exist only on Linux: Wine makes German
    // (Germany) of "de" and American English of "C", as any Windows system has
    // a region.
    const bool wine = testMachineKind() == TestMachine::Kind::Wine;
    const std::vector<std::pair<const char *, int>> cases = {
        {"en_AU.UTF-8", 1}, {"ja_JP.UTF-8", 14}, {"de", wine ? 0 : 1}, {"de_DE.UTF-8", 0},
        {"sv_SE.UTF-8", 1}, {"es_419.UTF-8", 4}, {"th_TH.UTF-8", 12},  {"C", wine ? 2 : 1},
    };
    for (const auto &[locale, index] : cases) {
        const auto machine = localizedMachine(locale);
        const ToolRun run = runReport(*machine);
        EXPECT_EQ(run.exitCode, 0) << locale;
        EXPECT_EQ(decodeAnswer(run.standardOutput).value("currentLocale"), index) << locale;
    }
}

TEST(ReportE2ETest, AnEnglishMachineWithoutHostsGetsTheExactAnswer)
{
    const auto machine = localizedMachine("en_AU.UTF-8");
    const ToolRun run = runReport(*machine);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_FALSE(run.standardOutput.endsWith('\n'));
    const QByteArray text = answerText(run.standardOutput);
    EXPECT_EQ(text, "{\"currentLocale\":1,\"system\":{\"detectedHosts\":0,\"hosts\":[]},\"translations\":"
                    "{\"introString\":\"" +
                        englishText.toUtf8() + "\"}}");
}

TEST(ReportE2ETest, ASwedishMachineGetsTheBritishText)
{
    const auto machine = localizedMachine("sv_SE.UTF-8");
    const QJsonObject answer = decodeAnswer(runReport(*machine).standardOutput);
    EXPECT_EQ(answer.value("translations").toObject().value("introString").toString(), englishText);
}

TEST(ReportE2ETest, AJapaneseMachineGetsTheJapaneseText)
{
    const auto machine = localizedMachine("ja_JP.UTF-8");
    const QJsonObject answer = decodeAnswer(runReport(*machine).standardOutput);
    EXPECT_TRUE(
        answer.value("translations").toObject().value("introString").toString().contains(QString::fromUtf8("[次へ]")));
}

TEST(ReportE2ETest, HostsComeInTheOrderPhotoshopLightroomElements)
{
    const auto machine = localizedMachine("en_US.UTF-8");
    machine->seedRegistry("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\10.0]\n"
                          "\"PluginPath\"=\"C:\\\\PS10\\\\Plug-ins\"\n"
                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\110.0]\n"
                          "\"Version\"=\"17\"\n"
                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                          "\"Version\"=\"18\"\n"
                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n"
                          "@=\"C:\\\\PSE\\\\Plug-ins\"\n"
                          "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]\n"
                          "\"CommonFilesDir\"=\"C:\\\\Program Files\\\\Common Files\"\n");
    for (const char *preferences : {"Lightroom Classic CC 7 Preferences.agprefs", "Lightroom 6 Preferences.agprefs"})
        machine->writeFile(Place::RoamingAppData, QString("Adobe/Lightroom/Preferences/") + preferences, "prefs");
    const QJsonObject system = decodeAnswer(runReport(*machine).standardOutput).value("system").toObject();
    const QString shared = "C:\\Program Files\\Common Files/Adobe/Plug-Ins/CC/";
    const QJsonArray expected = {
        QJsonObject{{"appName", ""}, {"pluginPath", "C:\\PS10\\Plug-ins"}, {"type", 0}},
        QJsonObject{{"appName", "Photoshop CC 2017 (64-Bit)"}, {"pluginPath", shared}, {"type", 0}},
        QJsonObject{{"appName", "Photoshop CC 2018 (64-Bit)"}, {"pluginPath", shared}, {"type", 0}},
        QJsonObject{{"appName", "Lightroom 6"},
                    {"pluginPath", machine->toolPath(Place::RoamingAppData, "Adobe/Lightroom/")},
                    {"type", 2}},
        QJsonObject{{"appName", "Photoshop Elements 2018 (64-Bit)"}, {"pluginPath", "C:\\PSE\\Plug-ins"}, {"type", 1}},
    };
    EXPECT_EQ(comparableHosts(*machine, system.value("hosts").toArray()), comparableHosts(*machine, expected));
    EXPECT_EQ(system.value("detectedHosts"), 5);
}
