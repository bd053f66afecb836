#include "TestMachine.h"

#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

namespace {

class LogFileE2ETest : public testing::Test
{
protected:
    QStringList logFiles() const { return machine->entries(Place::RoamingAppData, "Tavrin/Orv Collection/logs"); }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

const QRegularExpression stampedName("^SuiteDeployer\\.\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\.log$");

} // namespace

TEST_F(LogFileE2ETest, ARunLeavesAStampedLogBelowTheRoamingFolder)
{
    machine->installFakeWmic("Caption\r\r\n");
    const ToolRun run = machine->run({"--background"});
    EXPECT_EQ(run.exitCode, 0);
    const QStringList files = logFiles();
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(stampedName.match(files.first()).hasMatch()) << files.first().toStdString();
    EXPECT_TRUE(machine->comparable(run.log).contains(
        machine
            ->comparable("] Logger 'app' registered in folder '" +
                         machine->toolPath(Place::RoamingAppData, "Tavrin/Orv Collection/logs/SuiteDeployer.log") +
                         "' with trace level. Last failed create directory erc 0\n")
            .toUtf8()))
        << run.log.toStdString();
}

TEST_F(LogFileE2ETest, ARejectedCommandLineIsLoggedToo)
{
    EXPECT_EQ(machine->run({"--resetConfig"}).exitCode, 1);
    EXPECT_EQ(logFiles().size(), 1);
}

TEST_F(LogFileE2ETest, SixRunsInSixSecondsLeaveFiveFiles)
{
    machine->installFakeWmic("Caption\r\r\n");
    QStringList seen;
    for (int run = 0; run < 6; ++run) {
        if (run > 0)
            QThread::msleep(1100);
        machine->run({"--background"});
        for (const QString &file : logFiles()) {
            if (!seen.contains(file))
                seen.append(file);
        }
    }
    ASSERT_EQ(seen.size(), 6);
    const QStringList left = logFiles();
    EXPECT_EQ(left.size(), 5);
    EXPECT_FALSE(left.contains(seen.first()));
    EXPECT_EQ(left, seen.mid(1));
}
