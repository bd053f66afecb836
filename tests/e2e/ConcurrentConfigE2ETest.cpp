#include "DeployerRun.h"
#include "ForeignHive.h"
#include "HostMachine.h"
#include "Machine.h"
#include "RegistryHiveFormat.h"
#include "SanitizedBuild.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

namespace {

constexpr int rounds = sanitizedBuild ? 8 : 24;
constexpr int foreignKeys = sanitizedBuild ? 20 : 80;
constexpr int valuesPerKey = 50;
constexpr int hangGuardMilliseconds = 120000;
const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";
const QByteArray oldUserHive =
    "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\SOFTWARE\\Other]\n\"x\"=\"1\"\n\n";

// The keys of `expected` that `values` lacks or holds otherwise, and those it has beyond them.
QStringList differences(const QSettings::SettingsMap &values, const QSettings::SettingsMap &expected)
{
    QStringList found;
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        if (!values.contains(it.key()))
            found.append("lost " + it.key());
        else if (values.value(it.key()) != it.value())
            found.append("changed " + it.key());
    }
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (!expected.contains(it.key()))
            found.append("unexpected " + it.key());
    }
    return found;
}

// Two installations on one machine that record different products; the values
// both write (version, paths, language, the one host) are the same in both.
class ConcurrentConfigE2ETest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE(
            "two runs rewrite the Linux build's registry hive files at once; Windows' registry takes each value on its own");
    }

    ConcurrentConfigE2ETest() { suiteRoot::create(machine.path("suite")); }

    QStringList configArguments(const QJsonArray &plugins) const
    {
        const QJsonObject request{{"rootDir", machine.path("suite")},
                                  {"plugins", plugins},
                                  {"hosts", QJsonArray{QJsonObject{{"appName", "Photoshop"}, {"pluginPath", "/ps"}}}},
                                  {"language", 4},
                                  {"version", "4.2.0"}};
        return {"--config", encodeRequest(request)};
    }

    void restoreOldHives() const
    {
        machine.writeFile(hostMachine::machineHive, oldMachineHive);
        machine.writeFile(userHive, oldUserHive);
    }

    QSettings::SettingsMap machineValues() const
    {
        return registryHive::parse(machine.readFile(hostMachine::machineHive), "HKEY_LOCAL_MACHINE");
    }

    // What one run alone makes of the old hives.
    QSettings::SettingsMap aloneOnTheOldHive(const QStringList &arguments) const
    {
        restoreOldHives();
        EXPECT_EQ(runDeployer(machine, arguments).exitCode, 0);
        return machineValues();
    }

    std::unique_ptr<QProcess> start(const QStringList &arguments) const
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(machine.environment());
        process->setWorkingDirectory(machine.root());
        process->start(SUITEDEPLOYER_BINARY, arguments);
        return process;
    }

    static void expectCompleted(QProcess &process)
    {
        EXPECT_TRUE(process.waitForFinished(hangGuardMilliseconds));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
    }

    QStringList filesBesideTheHives() const
    {
        QStringList files =
            QFileInfo(machine.path(hostMachine::machineHive)).dir().entryList(QDir::Files | QDir::Hidden);
        files += QFileInfo(machine.path(userHive)).dir().entryList(QDir::Files | QDir::Hidden);
        return files;
    }

    Machine machine;
    const QByteArray oldMachineHive = foreignMachineHive(foreignKeys, valuesPerKey);
};

} // namespace

TEST_F(ConcurrentConfigE2ETest, TwoRunsAtOnceLoseNoValue)
{
    const QStringList first = configArguments({"Grainwick 3", "Tintara 5", "Bracketon 2"});
    const QStringList second = configArguments({"Graymere 3", "Lumbrio 3", "Rectilo", "Acutara 3"});
    const QSettings::SettingsMap firstValues = aloneOnTheOldHive(first);
    const QByteArray newUserHive = machine.readFile(userHive);
    QSettings::SettingsMap expected = aloneOnTheOldHive(second);
    ASSERT_EQ(machine.readFile(userHive), newUserHive);
    for (auto it = firstValues.begin(); it != firstValues.end(); ++it) {
        ASSERT_TRUE(!expected.contains(it.key()) || expected.value(it.key()) == it.value()) << it.key().toStdString();
        expected.insert(it.key(), it.value());
    }
    ASSERT_GT(expected.size(), firstValues.size());

    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        restoreOldHives();
        // The second start comes a little later each round, so that its reading
        // of the hive meets the other's writes at ever other points.
        const auto one = start(round % 2 ? first : second);
        std::this_thread::sleep_for(std::chrono::microseconds(round / 2 % 20 * 1500));
        const auto other = start(round % 2 ? second : first);
        expectCompleted(*one);
        expectCompleted(*other);
        const QByteArray machineText = machine.readFile(hostMachine::machineHive);
        EXPECT_TRUE(machineText == registryHive::write(machineValues(), "HKEY_LOCAL_MACHINE")) << "round " << round;
        EXPECT_EQ(differences(machineValues(), expected).join("\n").toStdString(), "") << "round " << round;
        EXPECT_EQ(machine.readFile(userHive), newUserHive) << "round " << round;
        EXPECT_EQ(filesBesideTheHives(), (QStringList{"HKEY_LOCAL_MACHINE.reg", "HKEY_CURRENT_USER.reg"}));
    }
}
