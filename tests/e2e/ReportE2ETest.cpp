#include "DeployerRun.h"
#include "HostMachine.h"
#include "Machine.h"

#include <QJsonArray>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

using namespace hostMachine;

namespace {

const QString englishText =
    "<html>This wizard will guide you through the installation of Orv Collection.<br><br>"
    "It is recommended that you close all other applications before starting Setup. This will make it possible "
    "to update relevant system files without having to reboot your computer.<br><br>"
    "Click Next to continue.<br><br></html>";

// A machine whose system language is given by the locale variables.
class LocalizedMachine : public Machine
{
public:
    explicit LocalizedMachine(const QString &locale)
        : locale_(locale)
    {
    }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = Machine::environment();
        environment.remove("LANGUAGE");
        environment.remove("LANG");
        environment.insert("LC_ALL", locale_);
        return environment;
    }

private:
    QString locale_;
};

DeployerRun runReport(const LocalizedMachine &machine)
{
    return runDeployer(machine.environment(), machine.root(), {});
}

} // namespace

TEST(ReportE2ETest, ReportsTheLanguageNumberOfEachSystem)
{
    const std::vector<std::pair<const char *, int>> cases = {
        {"en_AU.UTF-8", 1}, {"ja_JP.UTF-8", 14}, {"de", 1},           {"de_DE.UTF-8", 0},
        {"sv_SE.UTF-8", 1}, {"es_419.UTF-8", 4}, {"th_TH.UTF-8", 12}, {"C", 1},
    };
    for (const auto &[locale, index] : cases) {
        const LocalizedMachine machine(locale);
        const DeployerRun run = runReport(machine);
        EXPECT_EQ(run.exitCode, 0) << locale;
        EXPECT_EQ(decodeAnswer(run.standardOutput).value("currentLocale"), index) << locale;
    }
}

TEST(ReportE2ETest, AnEnglishMachineWithoutHostsGetsTheExactAnswer)
{
    const LocalizedMachine machine("en_AU.UTF-8");
    const DeployerRun run = runReport(machine);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_FALSE(run.standardOutput.endsWith('\n'));
    const QByteArray text = answerText(run.standardOutput);
    EXPECT_EQ(text, "{\"currentLocale\":1,\"system\":{\"detectedHosts\":0,\"hosts\":[]},\"translations\":"
                    "{\"introString\":\"" +
                        englishText.toUtf8() + "\"}}");
}

TEST(ReportE2ETest, ASwedishMachineGetsTheBritishText)
{
    const LocalizedMachine machine("sv_SE.UTF-8");
    const QJsonObject answer = decodeAnswer(runReport(machine).standardOutput);
    EXPECT_EQ(answer.value("translations").toObject().value("introString").toString(), englishText);
}

TEST(ReportE2ETest, AJapaneseMachineGetsTheJapaneseText)
{
    const LocalizedMachine machine("ja_JP.UTF-8");
    const QJsonObject answer = decodeAnswer(runReport(machine).standardOutput);
    EXPECT_TRUE(
        answer.value("translations").toObject().value("introString").toString().contains(QString::fromUtf8("[次へ]")));
}

TEST(ReportE2ETest, HostsComeInTheOrderPhotoshopLightroomElements)
{
    const LocalizedMachine machine("en_US.UTF-8");
    writeMachineHive(machine, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\10.0]\n"
                              "\"PluginPath\"=\"C:\\\\PS10\\\\Plug-ins\"\n"
                              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\110.0]\n"
                              "\"Version\"=\"17\"\n"
                              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                              "\"Version\"=\"18\"\n"
                              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n"
                              "@=\"C:\\\\PSE\\\\Plug-ins\"\n"
                              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]\n"
                              "\"CommonFilesDir\"=\"C:\\\\Program Files\\\\Common Files\"\n");
    addLightroomPreferences(machine, "Lightroom Classic CC 7 Preferences.agprefs");
    addLightroomPreferences(machine, "Lightroom 6 Preferences.agprefs");
    const QJsonObject system = decodeAnswer(runReport(machine).standardOutput).value("system").toObject();
    const QString shared = "C:\\Program Files\\Common Files/Adobe/Plug-Ins/CC/";
    const QJsonArray expected = {
        QJsonObject{{"appName", ""}, {"pluginPath", "C:\\PS10\\Plug-ins"}, {"type", 0}},
        QJsonObject{{"appName", "Photoshop CC 2017 (64-Bit)"}, {"pluginPath", shared}, {"type", 0}},
        QJsonObject{{"appName", "Photoshop CC 2018 (64-Bit)"}, {"pluginPath", shared}, {"type", 0}},
        QJsonObject{
            {"appName", "Lightroom 6"}, {"pluginPath", machine.path("home/.config/Adobe/Lightroom/")}, {"type", 2}},
        QJsonObject{{"appName", "Photoshop Elements 2018 (64-Bit)"}, {"pluginPath", "C:\\PSE\\Plug-ins"}, {"type", 1}},
    };
    EXPECT_EQ(system.value("hosts").toArray(), expected);
    EXPECT_EQ(system.value("detectedHosts"), 5);
}
