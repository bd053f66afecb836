#include "LogCapture.h"
#include "logging/Log.h"

#include <QString>

#include <gtest/gtest.h>

namespace {

class Greeter
{
public:
    void greet(const QString &name) { KELP_LOG_INFO("Hello {} from {}", name.toStdString(), 3); }
};

void freeFunction()
{
    KELP_LOG_WARN("plain text");
}

} // namespace

namespace fileUtils {
void sample(int);
}

void fileUtils::sample(int)
{
    KELP_LOG_ERROR("in a namespace");
}

TEST(LogTest, GoesToTheDefaultLoggerWithLevelTextAndQualifiedFunction)
{
    const LogCapture capture;
    Greeter().greet(QString::fromUtf8("Jürgen"));
    freeFunction();
    fileUtils::sample(1);
    const std::vector<LoggedLine> lines = capture.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].level, spdlog::level::info);
    EXPECT_EQ(lines[0].text, "Hello J\xC3\xBCrgen from 3");
    EXPECT_EQ(lines[0].function, "{anonymous}::Greeter::greet");
    EXPECT_EQ(lines[1].level, spdlog::level::warn);
    EXPECT_EQ(lines[1].function, "{anonymous}::freeFunction");
    EXPECT_EQ(lines[2].function, "fileUtils::sample");
    EXPECT_EQ(capture.texts()[2], "error: in a namespace");
}

TEST(LogTest, QualifiedFunctionNameDropsReturnTypeAndParameters)
{
    using kelp::logging::detail::qualifiedFunctionName;
    EXPECT_STREQ(qualifiedFunctionName("void Installer::installPhotoshopPlugins(const QJsonObject&)").text,
                 "Installer::installPhotoshopPlugins");
    EXPECT_STREQ(qualifiedFunctionName("static void Installer::moveAppData(const QString&)").text,
                 "Installer::moveAppData");
    EXPECT_STREQ(qualifiedFunctionName("std::map<int, int> a::b(int)").text, "a::b");
    EXPECT_STREQ(qualifiedFunctionName("PathUtils::PathUtils()").text, "PathUtils::PathUtils");
}
