#include "DeployerRun.h"
#include "ForeignHive.h"
#include "HostMachine.h"
#include "Machine.h"
#include "RegistryHiveFormat.h"
#include "SanitizedBuild.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QProcess>
#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <random>
#include <thread>

#include <signal.h>

namespace {

constexpr std::uint32_t seed = 20240309;
constexpr int trials = sanitizedBuild ? 40 : 200;
constexpr int foreignKeys = sanitizedBuild ? 20 : 40;
constexpr int valuesPerKey = 50;
constexpr int hangGuardMilliseconds = 120000;
constexpr int nextRunHangGuardMilliseconds = 20000;
const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";

// Where the kills landed, told by what each left behind.
struct KillCounts
{
    int finishedFirst = 0;
    int beforeTheFirstWrite = 0;
    int withALockHeld = 0;
    int betweenWrites = 0;
    int afterTheLastWrite = 0;
    int temporaryFilesLeft = 0;
    int emptyLocks = 0;
    QSet<QByteArray> intermediateVersions;
};

class HiveKillE2ETest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE(
            "kills a writer of the Linux build's registry hive files, which Windows' registry doesn't have");
    }

    HiveKillE2ETest()
    {
        suiteRoot::create(machine.path("suite"));
        const QJsonObject request{{"rootDir", machine.path("suite")},
                                  {"plugins", QJsonArray{"Grainwick 3", "Rectilo", "Bracketon 2", "Acutara 3"}},
                                  {"hosts", QJsonArray{QJsonObject{{"appName", "Photoshop"}, {"pluginPath", "/ps"}}}},
                                  {"language", 3},
                                  {"version", "4.2.0"}};
        arguments = QStringList{"--config", encodeRequest(request)};
        oldMachineHive = foreignMachineHive(foreignKeys, valuesPerKey);
        oldUserHive = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\SOFTWARE\\Other]\n\"x\"=\"1\"\n\n";
    }

    void restoreOldHives() const
    {
        machine.writeFile(hostMachine::machineHive, oldMachineHive);
        machine.writeFile(userHive, oldUserHive);
    }

    // Lock files and temporary files beside the two hives.
    QStringList strayFiles() const
    {
        QStringList strays;
        for (const QString &hive : {hostMachine::machineHive, userHive}) {
            const QFileInfo file(machine.path(hive));
            for (const QString &name : file.dir().entryList(QDir::Files | QDir::Hidden)) {
                if (name != file.fileName())
                    strays.append(file.dir().filePath(name));
            }
        }
        return strays;
    }

    // Whole output of the writer between the old and the new version: every old value
    // kept, and nothing that the new version doesn't hold.
    bool isWholeMachineHive(const QByteArray &text) const
    {
        if (text == oldMachineHive || text == newMachineHive)
            return true;
        const QSettings::SettingsMap values = registryHive::parse(text, "HKEY_LOCAL_MACHINE");
        if (text != registryHive::write(values, "HKEY_LOCAL_MACHINE"))
            return false;
        for (auto it = oldValues.begin(); it != oldValues.end(); ++it) {
            if (values.value(it.key()) != it.value())
                return false;
        }
        for (auto it = values.begin(); it != values.end(); ++it) {
            if (!newValues.contains(it.key()) || newValues.value(it.key()) != it.value())
                return false;
        }
        return true;
    }

    // Starts the tool and kills it after the delay; false when it had ended by then.
    bool runAndKill(std::chrono::microseconds delay) const
    {
        QProcess process;
        process.setProcessEnvironment(machine.environment());
        process.setWorkingDirectory(machine.root());
        process.start(SUITEDEPLOYER_BINARY, arguments);
        if (!process.waitForStarted())
            return false;
        std::this_thread::sleep_for(delay);
        ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
        process.waitForFinished(hangGuardMilliseconds);
        return process.exitStatus() == QProcess::CrashExit;
    }

    // The shortest of three complete runs, which end with the new hives: a
    // busy machine only makes runs longer.
    std::chrono::microseconds completeRunTime() const
    {
        std::chrono::microseconds shortest = std::chrono::microseconds::max();
        for (int run = 0; run < 3; ++run) {
            restoreOldHives();
            QElapsedTimer timer;
            timer.start();
            EXPECT_TRUE(runDeployer(machine, arguments).exitedNormally);
            shortest = std::min(shortest, std::chrono::microseconds(timer.nsecsElapsed() / 1000));
        }
        return shortest;
    }

    // The run after a kill meets whatever the kill left behind, and does its
    // whole work without waiting: a lock file of QSettings left empty, by a
    // kill between making it and writing its owner into it, once held the
    // next run for 30 seconds, which the shorter hang guard would catch.
    void expectTheNextRunComplete(KillCounts &counts) const
    {
        for (const QString &stray : strayFiles()) {
            if (stray.endsWith(".lock") && QFileInfo(stray).size() == 0)
                ++counts.emptyLocks;
        }
        const DeployerRun next =
            runDeployer(machine.environment(), machine.root(), arguments, nextRunHangGuardMilliseconds);
        EXPECT_FALSE(next.hung);
        EXPECT_TRUE(next.exitedNormally);
        EXPECT_EQ(next.exitCode, 0);
        EXPECT_TRUE(machine.readFile(hostMachine::machineHive) == newMachineHive);
        EXPECT_TRUE(machine.readFile(userHive) == newUserHive);
        for (const QString &stray : strayFiles()) {
            EXPECT_FALSE(stray.endsWith(".lock")) << stray.toStdString();
            ++counts.temporaryFilesLeft;
            QFile::remove(stray);
        }
    }

    void classify(bool killed, KillCounts &counts) const
    {
        const QByteArray machineText = machine.readFile(hostMachine::machineHive);
        if (!killed)
            ++counts.finishedFirst;
        else if (!strayFiles().isEmpty())
            ++counts.withALockHeld;
        else if (machineText == oldMachineHive)
            ++counts.beforeTheFirstWrite;
        else if (machineText == newMachineHive)
            ++counts.afterTheLastWrite;
        else
            ++counts.betweenWrites;
        if (machineText != oldMachineHive && machineText != newMachineHive)
            counts.intermediateVersions.insert(QCryptographicHash::hash(machineText, QCryptographicHash::Sha1));
    }

    Machine machine;
    QStringList arguments;
    QByteArray oldMachineHive;
    QByteArray oldUserHive;
    QByteArray newMachineHive;
    QByteArray newUserHive;
    QSettings::SettingsMap oldValues;
    QSettings::SettingsMap newValues;
};

} // namespace

// --config rewrites a large machine hive three times and the user's hive once;
// SIGKILL at a moment drawn from a fixed seed must leave each hive whole, and
// whatever the killed run left beside them must not keep the next run from
// its work.
TEST_F(HiveKillE2ETest, AKilledWriteLeavesTheOldOrTheNewHiveAndTheNextRunWorks)
{
    const std::chrono::microseconds span = completeRunTime();
    newMachineHive = machine.readFile(hostMachine::machineHive);
    newUserHive = machine.readFile(userHive);
    oldValues = registryHive::parse(oldMachineHive, "HKEY_LOCAL_MACHINE");
    newValues = registryHive::parse(newMachineHive, "HKEY_LOCAL_MACHINE");
    ASSERT_NE(newMachineHive, oldMachineHive);
    ASSERT_TRUE(isWholeMachineHive(newMachineHive));

    std::cout << "kill trials: " << trials << ", seed " << seed << ", kills within " << span.count() * 3 / 2
              << " us of the start" << std::endl;
    std::mt19937 engine(seed);
    KillCounts counts;
    for (int trial = 0; trial < trials; ++trial) {
        restoreOldHives();
        const std::chrono::microseconds delay(engine() % (span.count() * 3 / 2 + 1));
        const bool killed = runAndKill(delay);
        const QByteArray machineText = machine.readFile(hostMachine::machineHive);
        const QByteArray userText = machine.readFile(userHive);
        EXPECT_TRUE(isWholeMachineHive(machineText))
            << "trial " << trial << ", killed after " << delay.count() << " us";
        EXPECT_TRUE(userText == oldUserHive || userText == newUserHive) << "trial " << trial;
        const bool leftStrays = !strayFiles().isEmpty();
        classify(killed, counts);
        if (leftStrays)
            expectTheNextRunComplete(counts);
        if (HasFailure())
            break;
    }
    std::cout << "kills: " << counts.beforeTheFirstWrite << " before the first write, " << counts.withALockHeld
              << " while writing a hive (its lock file left), " << counts.betweenWrites << " between writes ("
              << counts.intermediateVersions.size() << " distinct intermediate versions), " << counts.afterTheLastWrite
              << " after the last write; " << counts.finishedFirst << " runs ended before the kill; "
              << counts.emptyLocks << " empty lock files left, " << counts.temporaryFilesLeft << " temporary files left"
              << std::endl;
}
