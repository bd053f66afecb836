#include "ProductSettings.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using orv::photoshop::ISettingsReader;

struct ReadCall
{
    bool wide;
    std::int32_t hive;
    std::string keyPath;
    std::string valueName;
};

// What the fake reader saw; it outlives the reader, which the holder destroys.
struct ReaderLog
{
    std::vector<ReadCall> calls;
    int destructions = 0;
};

class FakeReader : public ISettingsReader
{
public:
    explicit FakeReader(ReaderLog &log)
        : log_(log)
    {
    }
    ~FakeReader() override { ++log_.destructions; }

    std::string readString(std::int32_t hive, const char *keyPath, const char *valueName) const override
    {
        log_.calls.push_back({false, hive, keyPath, valueName});
        return "narrow:" + std::string(valueName);
    }

    std::wstring readWideString(std::int32_t hive, const char *keyPath, const char *valueName) const override
    {
        log_.calls.push_back({true, hive, keyPath, valueName});
        return L"wide:" + std::wstring(valueName, valueName + std::char_traits<char>::length(valueName));
    }

private:
    ReaderLog &log_;
};

class ProductSettingsTest : public testing::Test
{
protected:
    ProductSettings settingsFor(const std::string &company, const std::string &product)
    {
        return ProductSettings(std::make_unique<FakeReader>(log), company, product);
    }

    ReaderLog log;
};

} // namespace

TEST_F(ProductSettingsTest, UserValueIsANarrowReadOfTheUsersProductKey)
{
    const ProductSettings settings = settingsFor("Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "narrow:app_loglevel");
    ASSERT_EQ(log.calls.size(), 1u);
    EXPECT_FALSE(log.calls[0].wide);
    EXPECT_EQ(log.calls[0].hive, 1);
    EXPECT_EQ(log.calls[0].keyPath, "Software\\Tavrin\\Orv Collection");
    EXPECT_EQ(log.calls[0].valueName, "app_loglevel");
}

TEST_F(ProductSettingsTest, MachineValueIsAWideReadOfThe32BitViewsProductKey)
{
    const ProductSettings settings = settingsFor("Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"wide:InstallPath");
    ASSERT_EQ(log.calls.size(), 1u);
    EXPECT_TRUE(log.calls[0].wide);
    EXPECT_EQ(log.calls[0].hive, 0);
    EXPECT_EQ(log.calls[0].keyPath, "Software\\WOW6432Node\\Tavrin\\Orv Collection");
    EXPECT_EQ(log.calls[0].valueName, "InstallPath");
}

TEST_F(ProductSettingsTest, KeysTakeCompanyAndProductAsGiven)
{
    const ProductSettings settings = settingsFor("other Maker", "Zonal Tool 2");
    EXPECT_EQ(settings.company, "other Maker");
    EXPECT_EQ(settings.product, "Zonal Tool 2");
    settings.readUserValue("a");
    settings.readMachineValue("b");
    ASSERT_EQ(log.calls.size(), 2u);
    EXPECT_EQ(log.calls[0].keyPath, "Software\\other Maker\\Zonal Tool 2");
    EXPECT_EQ(log.calls[1].keyPath, "Software\\WOW6432Node\\other Maker\\Zonal Tool 2");
}

TEST_F(ProductSettingsTest, EveryReadAsksTheReaderAgain)
{
    const ProductSettings settings = settingsFor("Tavrin", "Orv Collection");
    settings.readUserValue("x");
    settings.readUserValue("x");
    settings.readMachineValue("y");
    settings.readMachineValue("y");
    ASSERT_EQ(log.calls.size(), 4u);
    EXPECT_FALSE(log.calls[0].wide);
    EXPECT_FALSE(log.calls[1].wide);
    EXPECT_TRUE(log.calls[2].wide);
    EXPECT_TRUE(log.calls[3].wide);
}

TEST_F(ProductSettingsTest, EmptyTextFromTheReaderIsPassedOn)
{
    class EmptyReader : public ISettingsReader
    {
    public:
        std::string readString(std::int32_t, const char *, const char *) const override { return {}; }
        std::wstring readWideString(std::int32_t, const char *, const char *) const override { return {}; }
    };
    const ProductSettings settings(std::make_unique<EmptyReader>(), "Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"");
}

TEST_F(ProductSettingsTest, TakesTheReaderOverAndLeavesTheCallersPointerEmpty)
{
    std::unique_ptr<ISettingsReader> reader = std::make_unique<FakeReader>(log);
    const ProductSettings settings(std::move(reader), "Tavrin", "Orv Collection");
    EXPECT_EQ(reader, nullptr);
    EXPECT_EQ(log.destructions, 0);
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "narrow:app_loglevel");
    EXPECT_EQ(log.calls.size(), 1u);
}

TEST_F(ProductSettingsTest, DestroysTheReaderWithItself)
{
    {
        const ProductSettings settings = settingsFor("Tavrin", "Orv Collection");
        settings.readUserValue("app_loglevel");
        EXPECT_EQ(log.destructions, 0);
    }
    EXPECT_EQ(log.destructions, 1);
}

TEST_F(ProductSettingsTest, WithoutAReaderEveryValueIsEmpty)
{
    const ProductSettings settings(std::unique_ptr<ISettingsReader>(), "Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"");
}
