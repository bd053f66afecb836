#include "logging/timestamp_file_sink.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <spdlog/logger.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

using Sink = kelp::logging::timestamp_file_sink<std::mutex>;

// 2024-03-09 14:05:33 UTC
constexpr std::time_t startTime = 1709993133;

class TimestampFileSinkTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        setenv("TZ", "UTC", 1);
        tzset();
    }

    std::string base() const { return (dir.path() + "/logs/SuiteDeployer.log").toStdString(); }
    QString logs(const QString &name = {}) const { return dir.path() + "/logs/" + name; }

    void touch(const QString &name) const
    {
        QDir().mkpath(logs());
        QFile file(logs(name));
        file.open(QIODevice::WriteOnly);
        file.write("old");
    }

    QStringList logFolder() const { return QDir(logs()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    std::shared_ptr<Sink> makeSink(std::uint64_t maxFiles = 5, std::uint64_t maxSize = 104857600,
                                   std::time_t time = startTime) const
    {
        QDir().mkpath(logs());
        return std::make_shared<Sink>(base(), maxFiles, maxSize, [time] { return time; });
    }

    static QByteArray contentOf(const std::string &path)
    {
        QFile file(QString::fromStdString(path));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    QTemporaryDir dir;
};

// A logger on the sink that prints only the message, so lines can be checked byte for byte.
std::shared_ptr<spdlog::logger> plainLogger(const std::shared_ptr<Sink> &sink, int *errors = nullptr)
{
    auto logger = std::make_shared<spdlog::logger>("app", sink);
    logger->set_pattern("%v");
    logger->set_level(spdlog::level::trace);
    logger->set_error_handler([errors](const std::string &) {
        if (errors)
            ++*errors;
    });
    return logger;
}

} // namespace

TEST_F(TimestampFileSinkTest, NamesTheFileAfterTheStartTime)
{
    EXPECT_EQ(Sink::calc_filename("C:/x/logs/SuiteDeployer.log", startTime),
              "C:/x/logs/SuiteDeployer.2024.03.09-14.05.33.log");
    EXPECT_EQ(Sink::calc_filename("/x/logs/plain", startTime), "/x/logs/plain.2024.03.09-14.05.33");
    const auto sink = makeSink();
    EXPECT_EQ(sink->filename(), logs("SuiteDeployer.2024.03.09-14.05.33.log").toStdString());
    EXPECT_TRUE(QFile::exists(logs("SuiteDeployer.2024.03.09-14.05.33.log")));
}

TEST_F(TimestampFileSinkTest, KeepsTheFourNewestOfFiveFamilyFiles)
{
    for (const char *day : {"01", "02", "03", "04", "05"})
        touch(QString("SuiteDeployer.2024.01.%1-10.00.00.log").arg(day));
    makeSink();
    EXPECT_EQ(logFolder(),
              (QStringList{"SuiteDeployer.2024.01.02-10.00.00.log", "SuiteDeployer.2024.01.03-10.00.00.log",
                           "SuiteDeployer.2024.01.04-10.00.00.log", "SuiteDeployer.2024.01.05-10.00.00.log",
                           "SuiteDeployer.2024.03.09-14.05.33.log"}));
}

TEST_F(TimestampFileSinkTest, FilesOutsideTheFamilyAreNeitherCountedNorDeleted)
{
    for (const char *day : {"01", "02", "03", "04", "05"})
        touch(QString("SuiteDeployer.2024.01.%1-10.00.00.log").arg(day));
    touch("SuiteDeployer.txt");
    touch("other.log");
    touch("SuiteDeployerX.log");
    QDir(logs()).mkdir("SuiteDeployer.2000.log");
    makeSink();
    const QStringList left = logFolder();
    EXPECT_TRUE(left.contains("SuiteDeployer.txt"));
    EXPECT_TRUE(left.contains("other.log"));
    EXPECT_TRUE(left.contains("SuiteDeployerX.log"));
    EXPECT_TRUE(left.contains("SuiteDeployer.2000.log"));
    EXPECT_FALSE(left.contains("SuiteDeployer.2024.01.01-10.00.00.log"));
    EXPECT_TRUE(left.contains("SuiteDeployer.2024.01.02-10.00.00.log"));
    EXPECT_EQ(left.size(), 9);
}

TEST_F(TimestampFileSinkTest, ANameThatSortsHighestCountsAsNewest)
{
    for (const char *day : {"01", "02", "03", "04", "05"})
        touch(QString("SuiteDeployer.2024.01.%1-10.00.00.log").arg(day));
    touch("SuiteDeployer.zzz.log");
    makeSink();
    EXPECT_EQ(logFolder(),
              (QStringList{"SuiteDeployer.2024.01.03-10.00.00.log", "SuiteDeployer.2024.01.04-10.00.00.log",
                           "SuiteDeployer.2024.01.05-10.00.00.log", "SuiteDeployer.2024.03.09-14.05.33.log",
                           "SuiteDeployer.zzz.log"}));
}

TEST_F(TimestampFileSinkTest, AMissingFolderMakesTheConstructorThrow)
{
    EXPECT_THROW(Sink(base(), 5, 1000, [] { return startTime; }), boost::filesystem::filesystem_error);
}

TEST_F(TimestampFileSinkTest, TheLimitIsMetOneLineEarlyWithAJoinedLastLine)
{
    const auto sink = makeSink(5, 1000);
    int errors = 0;
    const auto logger = plainLogger(sink, &errors);
    // Each line is 150 bytes with its line end: 5 lines make 750, and the sixth
    // counts 900 > 1000 - 150, so it is the one that closes the file.
    for (int i = 0; i < 5; ++i)
        logger->info(std::to_string(i) + std::string(148, 'x'));
    logger->flush();
    const QByteArray beforeLimit = contentOf(sink->filename());
    EXPECT_EQ(beforeLimit.size(), 750);
    logger->info("5 the line that crosses the limit and is cut to 48 bytes" + std::string(93, 'y'));
    const QByteArray expectedTail = QByteArray("5 the line that crosses the limit and is cut to ") +
                                    "The log file limit exceeded! Logging is stopped.\n";
    EXPECT_EQ(contentOf(sink->filename()), beforeLimit + expectedTail);
    EXPECT_LT(contentOf(sink->filename()).size(), 1000);
    EXPECT_EQ(errors, 0);

    logger->info("after the closing");
    logger->critical("after the closing");
    logger->flush();
    EXPECT_EQ(contentOf(sink->filename()), beforeLimit + expectedTail);
    EXPECT_EQ(errors, 2);
}

TEST_F(TimestampFileSinkTest, TheClosingLineIsACriticalRecordOfApp)
{
    const auto sink = makeSink(5, 200);
    spdlog::logger logger("SuiteDeployer", sink);
    logger.set_error_handler([](const std::string &) {});
    for (int i = 0; i < 10; ++i)
        logger.info("a line of the log that is long enough to be counted {}", i);
    const QList<QByteArray> lines = contentOf(sink->filename()).split('\n');
    ASSERT_GE(lines.size(), 2);
    const QByteArray last = lines.at(lines.size() - 2);
    EXPECT_EQ(last.indexOf("["), 0);
    EXPECT_EQ(last.mid(48).indexOf("["), 0) << last.toStdString();
    EXPECT_TRUE(last.mid(48).contains("] [app] [critical] The log file limit exceeded! Logging is stopped."))
        << last.toStdString();
    EXPECT_TRUE(lines.last().isEmpty());
}

TEST_F(TimestampFileSinkTest, AShortCrossingLineIsPaddedWithBlanks)
{
    const auto sink = makeSink(5, 10);
    const auto logger = plainLogger(sink);
    logger->info("short");
    EXPECT_EQ(contentOf(sink->filename()),
              "short\n" + QByteArray(42, ' ') + "The log file limit exceeded! Logging is stopped.\n");
}

TEST_F(TimestampFileSinkTest, ASecondSinkOfTheSameSecondAppendsAndCountsTheFile)
{
    const auto first = makeSink(5, 250);
    plainLogger(first)->info(std::string(99, 'a'));
    first->flush();
    const auto second = makeSink(5, 250);
    EXPECT_EQ(second->filename(), first->filename());
    // Counting the 100 bytes there already, 100 + 80 > 250 - 80 closes the
    // file; a count from zero would have written the line.
    plainLogger(second)->info(std::string(79, 'b'));
    EXPECT_EQ(contentOf(second->filename()),
              QByteArray(99, 'a') + "\n" + QByteArray(48, 'b') + "The log file limit exceeded! Logging is stopped.\n");
}

TEST_F(TimestampFileSinkTest, FlushAfterTheClosingIsHarmless)
{
    const auto sink = makeSink(5, 10);
    plainLogger(sink)->info("short");
    EXPECT_NO_THROW(sink->flush());
}
