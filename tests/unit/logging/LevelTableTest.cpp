#include "logging/LevelTable.h"

#include <gtest/gtest.h>

using kelp::logging::levelFromSetting;

TEST(LevelTableTest, KnowsTheSevenNames)
{
    const auto fallback = spdlog::level::info;
    EXPECT_EQ(levelFromSetting("trace", fallback), spdlog::level::trace);
    EXPECT_EQ(levelFromSetting("debug", fallback), spdlog::level::debug);
    EXPECT_EQ(levelFromSetting("info", spdlog::level::off), spdlog::level::info);
    EXPECT_EQ(levelFromSetting("warning", fallback), spdlog::level::warn);
    EXPECT_EQ(levelFromSetting("error", fallback), spdlog::level::err);
    EXPECT_EQ(levelFromSetting("critical", fallback), spdlog::level::critical);
    EXPECT_EQ(levelFromSetting("off", fallback), spdlog::level::off);
}

TEST(LevelTableTest, OtherSpellingsFallBack)
{
    const auto fallback = spdlog::level::trace;
    EXPECT_EQ(levelFromSetting("Warning", fallback), fallback);
    EXPECT_EQ(levelFromSetting("warn", fallback), fallback);
    EXPECT_EQ(levelFromSetting("err", fallback), fallback);
    EXPECT_EQ(levelFromSetting(" info", fallback), fallback);
    EXPECT_EQ(levelFromSetting("", fallback), fallback);
}
