// The wizard's whole road on one machine: report, probe, installation,
// records, update, two uninstallations and the reset. After each step the
// machine is compared with a reviewed snapshot in road/, so that any change of
// behaviour shows as a diff. UPDATE_SNAPSHOTS=1 rewrites them; review the diff.
#include "DeployerRun.h"
#include "HostMachine.h"
#include "Machine.h"
#include "MachineSnapshot.h"
#include "SleepingProcess.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>

using namespace hostMachine;

namespace {

const QJsonArray allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};

// The machine's own tools (the fake Photoshop) and the logs, whose names carry the time.
const QStringList notCompared = {"bin", "home/.config/Tavrin/Orv Collection/logs"};

class RoadE2ETest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE(
            "the road's snapshots are the Linux machine's; WineRoadTest walks the same road with the exe against its own");
    }

    RoadE2ETest()
    {
        writeMachineHive(machine, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\110.0]\n\"Version\"=\"17\"\n\n"
                                  "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n\"Version\"=\"18\"\n\n"
                                  "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n@=\"" +
                                      machine.path("Elements/Plug-Ins").toUtf8() +
                                      "\"\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]\n"
                                      "\"CommonFilesDir\"=\"" +
                                      machine.path("Common Files").toUtf8() + "\"\n");
        machine.writeFile("home/.config/winreg/HKEY_CURRENT_USER.reg",
                          "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\OrvOld]\n"
                          "\"DisplayName\"=\"Orv Collection\"\n");
        addLightroomPreferences(machine, "Lightroom Classic CC 7 Preferences.agprefs");
        suiteRoot::create(machine.path("suite"));
    }

    QJsonObject run(const char *option, const QJsonObject &request = {}) const
    {
        QStringList arguments;
        if (option)
            arguments << option;
        if (option && QByteArray(option) != "--background")
            arguments << encodeRequest(request);
        const DeployerRun result = runDeployer(machine, arguments);
        EXPECT_TRUE(result.exitedNormally) << option;
        EXPECT_EQ(result.exitCode, 0) << option;
        return decodeAnswer(result.standardOutput);
    }

    // Of Acutara's two executables the folder walk decides which is recorded;
    // that order differs between file systems.
    QString snapshot() const
    {
        return machineSnapshot(machine, notCompared)
            .replace(QRegularExpression("Acutara 3/ACU3[OR]ST\\.exe\"\n"), "Acutara 3/ACU3?ST.exe\"\n");
    }

    void expectSnapshot(const char *name) const
    {
        const QString expectedPath = QStringLiteral(ROAD_SNAPSHOTS "/%1.txt").arg(name);
        const QByteArray actual = snapshot().toUtf8();
        if (qEnvironmentVariableIsSet("UPDATE_SNAPSHOTS")) {
            QFile file(expectedPath);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(actual);
            return;
        }
        QFile expected(expectedPath);
        ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << expectedPath.toStdString();
        const QByteArray wanted = expected.readAll();
        if (actual == wanted)
            return;
        const QString actualPath = QStringLiteral("%1/road-%2.txt").arg(QDir::currentPath(), name);
        QFile out(actualPath);
        out.open(QIODevice::WriteOnly);
        out.write(actual);
        ADD_FAILURE() << "The machine after step " << name << " differs from its snapshot; compare with\n  diff "
                      << expectedPath.toStdString() << " " << actualPath.toStdString();
    }

    QJsonObject installRequest(const QJsonArray &hosts, const QJsonArray &plugins, int language,
                               const char *isUpdate) const
    {
        return QJsonObject{{"rootDir", machine.path("suite")},
                           {"hosts", hosts},
                           {"plugins", plugins},
                           {"language", language},
                           {"version", "4.2.0"},
                           {"mixpanelEnabled", true},
                           {"isUpdate", isUpdate},
                           {"localAppDataDir", ""}};
    }

    Machine machine;
};

} // namespace

TEST_F(RoadE2ETest, TheWizardsWholeRoad)
{
    const QJsonObject report = run(nullptr);
    const QJsonArray hosts = report.value("system").toObject().value("hosts").toArray();
    ASSERT_EQ(hosts.size(), 4);
    expectSnapshot("01-report");

    {
        const SleepingProcess photoshop(machine.binDir(), "Photoshop.exe");
        EXPECT_TRUE(run("--background").value("background").toArray().contains("Photoshop.exe"));
    }
    EXPECT_FALSE(run("--background").value("background").toArray().contains("Photoshop.exe"));

    const QJsonObject install = installRequest(hosts, allProducts, 1, "false");
    run("--install", install);
    expectSnapshot("02-install");
    run("--config", install);
    expectSnapshot("03-config");

    // An update: the wizard unpacks a new suite root, another language, fewer products and hosts.
    suiteRoot::create(machine.path("suite"));
    QJsonArray fewerHosts;
    std::copy_if(hosts.begin(), hosts.end(), std::back_inserter(fewerHosts),
                 [](const QJsonValue &host) { return host.toObject().value("type").toInt() != 1; });
    const QJsonObject update =
        installRequest(fewerHosts, {"Tintara 5", "Rectilo", "Acutara 3", "Bracketon 2"}, 5, "true");
    run("--install", update);
    run("--config", update);
    expectSnapshot("04-update");

    run("--uninstall", {{"keepPreferences", "true"}});
    expectSnapshot("05-uninstall-keeping-preferences");
    run("--uninstall", {{"keepPreferences", "false"}});
    expectSnapshot("06-uninstall");
    run("--resetConfig", {});
    expectSnapshot("07-reset");
}
