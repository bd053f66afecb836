#include "DeployerRun.h"
#include "Machine.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

namespace {

class LogFileE2ETest : public testing::Test
{
protected:
    QStringList logFiles() const
    {
        return QDir(machine.path("home/.config/Tavrin/Orv Collection/logs")).entryList(QDir::Files, QDir::Name);
    }

    Machine machine;
};

const QRegularExpression stampedName("^SuiteDeployer\\.\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\.log$");

} // namespace

TEST_F(LogFileE2ETest, ARunLeavesAStampedLogBelowTheRoamingFolder)
{
    machine.installFakeWmic("Caption\r\r\n");
    const DeployerRun run = runDeployer(machine, {"--background"});
    EXPECT_EQ(run.exitCode, 0);
    const QStringList files = logFiles();
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(stampedName.match(files.first()).hasMatch()) << files.first().toStdString();
    QFile log(machine.path("home/.config/Tavrin/Orv Collection/logs/" + files.first()));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(
        log.readAll().contains("] Logger 'app' registered in folder '" +
                               machine.path("home/.config/Tavrin/Orv Collection/logs/SuiteDeployer.log").toUtf8() +
                               "' with trace level. Last failed create directory erc 0\n"));
}

TEST_F(LogFileE2ETest, ARejectedCommandLineIsLoggedToo)
{
    EXPECT_EQ(runDeployer(machine, {"--resetConfig"}).exitCode, 1);
    EXPECT_EQ(logFiles().size(), 1);
}

TEST_F(LogFileE2ETest, SixRunsInSixSecondsLeaveFiveFiles)
{
    machine.installFakeWmic("Caption\r\r\n");
    QStringList seen;
    for (int run = 0; run < 6; ++run) {
        if (run > 0)
            QThread::msleep(1100);
        runDeployer(machine, {"--background"});
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
