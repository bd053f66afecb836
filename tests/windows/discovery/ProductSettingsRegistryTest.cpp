#include "ProductSettings.h"
#include "ScratchRegistryKey.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

TEST(ProductSettingsRegistryTest, ReadsTheUsersValueOfTheProductsKey)
{
    ScratchRegistryKey key;
    key.setNarrow("app_loglevel", std::string("warning", 8));
    const ProductSettings settings(ScratchRegistryKey::company, key.product());
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "warning");
    EXPECT_EQ(settings.readUserValue("other_loglevel"), "");
}

TEST(ProductSettingsRegistryTest, AProductWithoutAKeyReadsEmpty)
{
    const ProductSettings settings(ScratchRegistryKey::company, "No Such Product");
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"");
}

TEST(ProductSettingsRegistryTest, ReadsTheMachineValueInTheKeyOfThe32BitView)
{
    std::unique_ptr<ScratchRegistryKey> key;
    try {
        key = std::make_unique<ScratchRegistryKey>(HKEY_LOCAL_MACHINE, "Software\\WOW6432Node");
    } catch (const std::runtime_error &) {
        GTEST_SKIP() << "writing to the machine's hive needs administrator rights";
    }
    key->setWide(L"InstallPath", std::wstring(L"C:\\Program Files\\Orv\0", 21));
    const ProductSettings settings(ScratchRegistryKey::company, key->product());
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"C:\\Program Files\\Orv");
    EXPECT_EQ(settings.readUserValue("InstallPath"), "");
}
