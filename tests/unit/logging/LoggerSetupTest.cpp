#include "LogCapture.h"
#include "Machine.h"
#include "RegistrySettings.h"
#include "ScopedEnvironment.h"
#include "logging/Log.h"
#include "logging/LogRoots.h"
#include "logging/Utils.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <spdlog/spdlog.h>

#include <gtest/gtest.h>

#include <cerrno>

using kelp::logging::initLogging;

namespace {

class LoggerSetupTest : public testing::Test
{
protected:
    ~LoggerSetupTest() override
    {
        spdlog::drop("app");
        spdlog::set_default_logger(previousDefault);
        QDir::setCurrent(previousFolder);
    }

    QString logFolder(const QString &root) const { return machine.path(root + "/Tavrin/Orv Collection/logs"); }

    static QByteArray contentOf(const boost::filesystem::path &path)
    {
        spdlog::default_logger()->flush();
        QFile file(QString::fromStdString(path.string()));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    void setLevelSetting(const QString &value)
    {
        openRegistryKey("HKEY_CURRENT_USER\\Software\\Tavrin\\Orv Collection")->setValue("app_loglevel", value);
    }

    // A path below a plain file: no folder can ever be made there.
    QByteArray unusable(const char *name)
    {
        QFile file(machine.path(name));
        file.open(QIODevice::WriteOnly);
        return machine.path(QString(name) + "/below").toUtf8();
    }

    const std::shared_ptr<spdlog::logger> previousDefault = spdlog::default_logger();
    const QString previousFolder = QDir::currentPath();
    Machine machine;
    ScopedEnvironment environment{machine};
};

} // namespace

TEST_F(LoggerSetupTest, LogsBelowTheRoamingRootUnderAStampedName)
{
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    const QString folder = logFolder("home/.config");
    EXPECT_TRUE(QRegularExpression("^" + QRegularExpression::escape(folder) +
                                   "/SuiteDeployer\\.\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\.log$")
                    .match(QString::fromStdString(log.string()))
                    .hasMatch())
        << log.string();
    EXPECT_EQ(spdlog::default_logger(), spdlog::get("app"));
    EXPECT_EQ(spdlog::default_logger()->level(), spdlog::level::trace);
    // spdlog's default pattern shows the source file and line of the call.
    EXPECT_TRUE(contentOf(log).contains("[app] [info] [Utils.cpp:"));
    EXPECT_TRUE(contentOf(log).contains("] Logger 'app' registered in folder '" +
                                        (folder + "/SuiteDeployer.log").toUtf8() +
                                        "' with trace level. Last failed create directory erc 0\n"))
        << contentOf(log).toStdString();
}

TEST_F(LoggerSetupTest, ASecondCallChangesNothing)
{
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    EXPECT_TRUE(initLogging("SuiteDeployer.log", "app", 3).empty());
    EXPECT_EQ(spdlog::default_logger()->level(), spdlog::level::trace);
    EXPECT_TRUE(contentOf(log).contains("[app] [debug] [Utils.cpp:"));
    EXPECT_TRUE(contentOf(log).contains("] Logger 'app' already registered\n"));
}

TEST_F(LoggerSetupTest, AnUnusableRoamingRootFallsBackToTheLocalOneWithTheErrorNumber)
{
    environment.set("XDG_CONFIG_HOME", unusable("roaming"));
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    EXPECT_EQ(QString::fromStdString(log.parent_path().string()), logFolder("home/.local/share"));
    EXPECT_TRUE(contentOf(log).contains("Last failed create directory erc " + QByteArray::number(ENOTDIR) + "\n"));
}

TEST_F(LoggerSetupTest, AFailedRootLookUpLeavesTheLogRelativeToTheWorkingFolder)
{
    environment.unset("XDG_CONFIG_HOME");
    environment.unset("HOME");
    QDir::setCurrent(machine.path("ProgramData"));
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    EXPECT_EQ(log.parent_path().string(), "Tavrin/Orv Collection/logs");
    EXPECT_EQ(QDir(logFolder("ProgramData")).entryList(QDir::Files).size(), 1);
    EXPECT_TRUE(contentOf(log).contains("registered in folder 'Tavrin/Orv Collection/logs/SuiteDeployer.log'"));
}

TEST_F(LoggerSetupTest, APlainFileNamedLogsIsAcceptedAndTheSinkFails)
{
    QDir().mkpath(machine.path("home/.config/Tavrin/Orv Collection"));
    QFile logs(logFolder("home/.config"));
    logs.open(QIODevice::WriteOnly);
    const LogCapture capture;
    EXPECT_TRUE(initLogging("SuiteDeployer.log", "app", 0).empty());
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.lines()[0].level, spdlog::level::err);
    EXPECT_EQ(capture.texts()[0].rfind("error: Cannot create logger 'app': ", 0), 0u) << capture.texts()[0];
    EXPECT_FALSE(QFileInfo(logFolder("home/.local/share")).exists());
}

TEST_F(LoggerSetupTest, NoUsableRootMeansNoLogger)
{
    environment.set("XDG_CONFIG_HOME", unusable("roaming"));
    environment.set("XDG_DATA_HOME", unusable("local"));
    environment.set("ProgramData", unusable("machine"));
    const LogCapture capture;
    EXPECT_TRUE(initLogging("SuiteDeployer.log", "app", 0).empty());
    EXPECT_EQ(capture.texts(), std::vector<std::string>{"error: Cannot create any folder for logger 'app'"});
    EXPECT_EQ(spdlog::get("app"), nullptr);
}

TEST_F(LoggerSetupTest, TheLevelSettingWarningHidesTheInfoLine)
{
    setLevelSetting("warning");
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    EXPECT_EQ(spdlog::default_logger()->level(), spdlog::level::warn);
    EXPECT_EQ(contentOf(log), "");
}

TEST_F(LoggerSetupTest, OtherSpellingsOfTheLevelFallBackToTheDefault)
{
    for (const char *value : {"Warning", "warn"}) {
        setLevelSetting(value);
        const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 1);
        EXPECT_EQ(spdlog::default_logger()->level(), spdlog::level::debug) << value;
        EXPECT_TRUE(contentOf(log).contains("with debug level.")) << value;
        spdlog::drop("app");
    }
}

TEST_F(LoggerSetupTest, OffWritesNothingButMakesTheFile)
{
    setLevelSetting("off");
    const boost::filesystem::path log = initLogging("SuiteDeployer.log", "app", 0);
    KELP_LOG_CRITICAL("not written");
    EXPECT_TRUE(QFile::exists(QString::fromStdString(log.string())));
    EXPECT_EQ(contentOf(log), "");
}

TEST_F(LoggerSetupTest, LogRootsFollowTheXdgFoldersAndProgramData)
{
    auto roots = kelp::logging::logRoots();
    EXPECT_EQ(roots[0].string(), machine.path("home/.config").toStdString());
    EXPECT_EQ(roots[1].string(), machine.path("home/.local/share").toStdString());
    EXPECT_EQ(roots[2].string(), machine.path("ProgramData").toStdString());
    environment.set("XDG_CONFIG_HOME", "");
    environment.unset("XDG_DATA_HOME");
    environment.unset("ProgramData");
    roots = kelp::logging::logRoots();
    EXPECT_EQ(roots[0].string(), machine.path("home/.config").toStdString());
    EXPECT_EQ(roots[1].string(), machine.path("home/.local/share").toStdString());
    EXPECT_EQ(roots[2].string(), "/var/lib");
    environment.set("ProgramData", "");
    environment.unset("XDG_DATA_HOME");
    environment.unset("HOME");
    roots = kelp::logging::logRoots();
    EXPECT_TRUE(roots[1].empty());
    EXPECT_TRUE(roots[2].empty());
}
