#include "HiveSettingsReader.h"
#include "Machine.h"
#include "ProductSettings.h"
#include "RegistrySettings.h"
#include "ScopedEnvironment.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

using orv::photoshop::HiveSettingsReader;

const QString userSuiteKey = QStringLiteral("HKEY_CURRENT_USER\\Software\\Tavrin\\Orv Collection");
const QString machineSuiteKey = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection");
const char *const userKeyPath = "Software\\Tavrin\\Orv Collection";
const char *const machineKeyPath = "SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection";

class HiveSettingsReaderTest : public testing::Test
{
protected:
    QString userHive() const { return machine.path("home/.config/winreg/HKEY_CURRENT_USER.reg"); }
    QString machineHive() const { return machine.path("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"); }

    void writeHive(const QString &path, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    void writeUserValue(const QString &name, const QVariant &value) const
    {
        openRegistryKey(userSuiteKey)->setValue(name, value);
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    const HiveSettingsReader reader;
};

} // namespace

TEST_F(HiveSettingsReaderTest, ReadsAUserValueWrittenThroughTheRegistry)
{
    writeUserValue("app_loglevel", "warning");
    ASSERT_TRUE(QFile::exists(userHive()));
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "warning");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "app_loglevel"), L"warning");
}

TEST_F(HiveSettingsReaderTest, ReadsAMachineValueWrittenThroughTheRegistry)
{
    openRegistryKey(machineSuiteKey)->setValue("InstallPath", "/opt/orv/bin");
    ASSERT_TRUE(QFile::exists(machineHive()));
    EXPECT_EQ(reader.readString(0, machineKeyPath, "InstallPath"), "/opt/orv/bin");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "InstallPath"), L"/opt/orv/bin");
}

TEST_F(HiveSettingsReaderTest, ZeroIsTheMachinesHiveAndAnyOtherFlagTheUsers)
{
    openRegistryKey("HKEY_CURRENT_USER\\Software\\Tavrin")->setValue("where", "user");
    openRegistryKey("HKEY_LOCAL_MACHINE\\Software\\Tavrin")->setValue("where", "machine");
    EXPECT_EQ(reader.readString(0, "Software\\Tavrin", "where"), "machine");
    EXPECT_EQ(reader.readWideString(0, "Software\\Tavrin", "where"), L"machine");
    for (const std::int32_t hive : {1, 2, -1, 0x7fffffff}) {
        EXPECT_EQ(reader.readString(hive, "Software\\Tavrin", "where"), "user") << hive;
        EXPECT_EQ(reader.readWideString(hive, "Software\\Tavrin", "where"), L"user") << hive;
    }
}

TEST_F(HiveSettingsReaderTest, ProductSettingsReadsTheSuitesValuesFromTheHiveFiles)
{
    writeUserValue("app_loglevel", "debug");
    openRegistryKey(machineSuiteKey)->setValue("InstallPath", "/opt/orv/bin");
    const ProductSettings settings("Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readUserValue("app_loglevel"), "debug");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"/opt/orv/bin");
    EXPECT_EQ(settings.readUserValue("InstallPath"), "");
    EXPECT_EQ(settings.readMachineValue("app_loglevel"), L"");
}

TEST_F(HiveSettingsReaderTest, ThePlatformsReaderIsTheHiveReader)
{
    const auto platformReader = orv::photoshop::makeSettingsReader();
    EXPECT_NE(dynamic_cast<const HiveSettingsReader *>(platformReader.get()), nullptr);
}

TEST_F(HiveSettingsReaderTest, KeyPathAndValueNameMatchIgnoringCase)
{
    writeUserValue("app_loglevel", "info");
    EXPECT_EQ(reader.readString(1, "SOFTWARE\\TAVRIN\\orv collection", "app_loglevel"), "info");
    EXPECT_EQ(reader.readWideString(1, "software\\tavrin\\ORV COLLECTION", "APP_LOGLEVEL"), L"info");
    EXPECT_EQ(reader.readString(1, userKeyPath, "App_LogLevel"), "info");
}

TEST_F(HiveSettingsReaderTest, MissingHiveKeyOrValueGivesTheEmptyText)
{
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "InstallPath"), L"");
    writeUserValue("app_loglevel", "info");
    EXPECT_EQ(reader.readString(1, "Software\\Tavrin\\Zonal Tool", "app_loglevel"), "");
    EXPECT_EQ(reader.readString(1, userKeyPath, "missing"), "");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "missing"), L"");
    EXPECT_FALSE(QFile::exists(machineHive()));
}

TEST_F(HiveSettingsReaderTest, ReadingWritesNothing)
{
    writeUserValue("app_loglevel", "info");
    const QDateTime written = QFileInfo(userHive()).lastModified();
    QFile hive(userHive());
    ASSERT_TRUE(hive.open(QIODevice::ReadOnly));
    const QByteArray before = hive.readAll();
    reader.readString(1, userKeyPath, "app_loglevel");
    reader.readString(1, "Software\\Other", "x");
    reader.readWideString(0, machineKeyPath, "x");
    EXPECT_EQ(QFileInfo(userHive()).lastModified(), written);
    hive.seek(0);
    EXPECT_EQ(hive.readAll(), before);
    EXPECT_FALSE(QFile::exists(machineHive()));
}

TEST_F(HiveSettingsReaderTest, AValueNameIsNoPathIntoASubKey)
{
    openRegistryKey(userSuiteKey + "\\Locations")->setValue("PS_Path", "/opt/ps");
    EXPECT_EQ(reader.readString(1, userKeyPath, "Locations/PS_Path"), "");
    EXPECT_EQ(reader.readString(1, userKeyPath, "Locations\\PS_Path"), "");
    EXPECT_EQ(reader.readString(1, userKeyPath, "Locations"), "");
    EXPECT_EQ(reader.readString(1, "Software\\Tavrin\\Orv Collection\\Locations", "PS_Path"), "/opt/ps");
}

TEST_F(HiveSettingsReaderTest, EmptyValueNameIsTheKeysDefaultValue)
{
    openRegistryKey(userSuiteKey)->setValue(".", "default");
    EXPECT_EQ(reader.readString(1, userKeyPath, ""), "default");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, nullptr), L"default");
}

TEST_F(HiveSettingsReaderTest, EmptyTextValueGivesTheEmptyText)
{
    writeUserValue("app_loglevel", "");
    ASSERT_TRUE(openRegistryKey(userSuiteKey)->contains("app_loglevel"));
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "app_loglevel"), L"");
}

TEST_F(HiveSettingsReaderTest, TextEndsAtAnInnerZero)
{
    writeUserValue("app_loglevel", QString::fromUtf8("warn\0ing", 8));
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "warn");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "app_loglevel"), L"warn");
    writeUserValue("app_loglevel", QString::fromUtf8("\0warning", 8));
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "app_loglevel"), L"");
}

TEST_F(HiveSettingsReaderTest, NumberGivesItsBytesAsTextUpToTheFirstZero)
{
    writeUserValue("currentLanguage", 0x32);
    EXPECT_EQ(reader.readString(1, userKeyPath, "currentLanguage"), "2");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "currentLanguage"), L"2");
    writeUserValue("currentLanguage", 0);
    EXPECT_EQ(reader.readString(1, userKeyPath, "currentLanguage"), "");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "currentLanguage"), L"");
    writeUserValue("currentLanguage", 0x44434241);
    EXPECT_EQ(reader.readString(1, userKeyPath, "currentLanguage"), "ABCD");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "currentLanguage"),
              (std::wstring{wchar_t(0x4241), wchar_t(0x4443)}));
}

TEST_F(HiveSettingsReaderTest, WideNumberIsTwoSixteenBitUnits)
{
    writeUserValue("currentLanguage", 0x00410042);
    EXPECT_EQ(reader.readString(1, userKeyPath, "currentLanguage"), "B");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "currentLanguage"), L"BA");
    writeUserValue("currentLanguage", 0x00420000);
    EXPECT_EQ(reader.readString(1, userKeyPath, "currentLanguage"), "");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "currentLanguage"), L"");
}

TEST_F(HiveSettingsReaderTest, ReadsAHandWrittenHiveFile)
{
    writeHive(machineHive(), "Windows Registry Editor Version 5.00\n"
                             "\n"
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                             "\"PluginPath\"=\"C:\\\\Program Files\\\\Adobe\\\\Plug-ins\"\n"
                             "\n"
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n"
                             "\"currentLanguage\"=dword:0000002a\n"
                             "\"InstallPath\"=\"/opt/orv/bin\"\n"
                             "\"Quoted\"=\"say \\\"hi\\\"\"\n"
                             "\"Binary\"=hex:41,42,43\n"
                             "\"Accents\"=\"Gr\xc3\xbc\xc3\x9f\xc3\xa9\"\n");
    EXPECT_EQ(reader.readString(0, "SOFTWARE\\Adobe\\Photoshop\\120.0", "PluginPath"),
              "C:\\Program Files\\Adobe\\Plug-ins");
    EXPECT_EQ(reader.readString(0, machineKeyPath, "currentLanguage"), "*");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "currentLanguage"), L"*");
    EXPECT_EQ(reader.readString(0, machineKeyPath, "InstallPath"), "/opt/orv/bin");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "Quoted"), L"say \"hi\"");
    EXPECT_EQ(reader.readString(0, machineKeyPath, "Binary"), "");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "Binary"), L"");
    EXPECT_EQ(reader.readString(0, machineKeyPath, "Accents"), "Gr\xc3\xbc\xc3\x9f\xc3\xa9");
    EXPECT_EQ(reader.readWideString(0, machineKeyPath, "Accents"), L"Gr\u00fc\u00df\u00e9");
    const ProductSettings settings("Tavrin", "Orv Collection");
    EXPECT_EQ(settings.readMachineValue("InstallPath"), L"/opt/orv/bin");
}

// The registry editor's own export form: UTF-16LE with a byte-order mark and CR LF.
TEST_F(HiveSettingsReaderTest, InnerZeroInAnExportedHiveFile)
{
    const QString text = QStringLiteral("Windows Registry Editor Version 5.00\r\n\r\n"
                                        "[HKEY_CURRENT_USER\\Software\\Tavrin\\Orv Collection]\r\n"
                                        "\"app_loglevel\"=\"err") +
                         QChar(0) + QStringLiteral("or\"\r\n");
    QByteArray content("\xFF\xFE");
    for (const QChar c : text) {
        content += char(c.unicode() & 0xFF);
        content += char(c.unicode() >> 8);
    }
    writeHive(userHive(), content);
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "err");
    EXPECT_EQ(reader.readWideString(1, userKeyPath, "app_loglevel"), L"err");
}

TEST_F(HiveSettingsReaderTest, OtherKindsOfValuesGiveTheEmptyText)
{
    writeUserValue("flag", true);
    writeUserValue("ratio", 1.5);
    writeUserValue("big", qlonglong(0x3132));
    writeUserValue("list", QStringList{"a", "b"});
    for (const char *name : {"flag", "ratio", "big", "list"}) {
        EXPECT_EQ(reader.readString(1, userKeyPath, name), "") << name;
        EXPECT_EQ(reader.readWideString(1, userKeyPath, name), L"") << name;
    }
}

TEST_F(HiveSettingsReaderTest, EveryReadSeesTheHiveAsItIsNow)
{
    writeUserValue("app_loglevel", "info");
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "info");
    writeUserValue("app_loglevel", "error");
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "error");
    openRegistryKey(userSuiteKey)->remove("app_loglevel");
    EXPECT_EQ(reader.readString(1, userKeyPath, "app_loglevel"), "");
}
