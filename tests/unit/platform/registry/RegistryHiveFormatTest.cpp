#include "RegistryHiveFormat.h"

#include <QTextCodec>

#include <gtest/gtest.h>

using registryHive::RawValue;

namespace {

const QString hklm = QStringLiteral("HKEY_LOCAL_MACHINE");

QSettings::SettingsMap parse(const QByteArray &text)
{
    return registryHive::parse(text, hklm);
}

} // namespace

TEST(RegistryHiveFormatTest, ReadsTheRegistryEditorsExportForm)
{
    const QSettings::SettingsMap values =
        parse("Windows Registry Editor Version 5.00\n"
              "\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
              "\"PluginPath\"=\"C:\\\\Program Files\\\\Adobe\\\\Plug-ins\"\n"
              "\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n"
              "@=\"/opt/pse/plugins\"\n"
              "\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n"
              "\"currentLanguage\"=dword:00000002\n"
              "\"InstallPath\"=\"/opt/orv/bin\"\n");
    const QSettings::SettingsMap expected = {
        {"SOFTWARE/Adobe/Photoshop/120.0/PluginPath", QString("C:\\Program Files\\Adobe\\Plug-ins")},
        {"SOFTWARE/Adobe/Photoshop Elements/16/PluginPath/.", QString("/opt/pse/plugins")},
        {"SOFTWARE/WOW6432Node/Tavrin/Orv Collection/currentLanguage", 2},
        {"SOFTWARE/WOW6432Node/Tavrin/Orv Collection/InstallPath", QString("/opt/orv/bin")},
    };
    EXPECT_EQ(values, expected);
    EXPECT_EQ(values.value("SOFTWARE/WOW6432Node/Tavrin/Orv Collection/currentLanguage").userType(), QMetaType::Int);
}

TEST(RegistryHiveFormatTest, UnescapesBackslashQuoteAndLineBreaks)
{
    const QSettings::SettingsMap values =
        parse("[HKEY_LOCAL_MACHINE\\K]\n\"a \\\"quoted\\\" name\"=\"x\\\\y\\\"z\\nline\\rend\"\n");
    EXPECT_EQ(values.value("K/a \"quoted\" name").toString(), QString("x\\y\"z\nline\rend"));
}

TEST(RegistryHiveFormatTest, ReadsDwordsAsThirtyTwoBitIntegers)
{
    const QSettings::SettingsMap values =
        parse("[HKEY_LOCAL_MACHINE\\K]\n\"a\"=dword:0000002a\n\"b\"=dword:ffffffff\n\"c\"=dword:zz\n");
    EXPECT_EQ(values.value("K/a"), QVariant(42));
    EXPECT_EQ(values.value("K/b"), QVariant(-1));
    EXPECT_FALSE(values.contains("K/c"));
}

TEST(RegistryHiveFormatTest, SkipsCommentsJunkAndForeignSectionsButReadsTheRest)
{
    const QSettings::SettingsMap values = parse("; exported by hand\n"
                                                "[HKEY_LOCAL_MACHINE\\A]\n"
                                                "this line means nothing\n"
                                                "\"broken\"=\"no closing quote\n"
                                                "\"trailing\"=\"x\" junk\n"
                                                "\"deleted\"=-\n"
                                                "\"kept\"=\"1\"\n"
                                                "[HKEY_CURRENT_USER\\B]\n"
                                                "\"other hive\"=\"x\"\n"
                                                "[-HKEY_LOCAL_MACHINE\\C]\n"
                                                "\"in a deletion\"=\"x\"\n"
                                                "[HKEY_LOCAL_MACHINE\\D\n"
                                                "\"in a broken section\"=\"x\"\n"
                                                "[HKEY_LOCAL_MACHINE\\E]\n"
                                                "\"last\"=\"2\"\n");
    EXPECT_EQ(values, (QSettings::SettingsMap{{"A/kept", QString("1")}, {"E/last", QString("2")}}));
}

TEST(RegistryHiveFormatTest, ValuesBeforeAnySectionAreSkipped)
{
    EXPECT_TRUE(parse("\"orphan\"=\"x\"\n").isEmpty());
}

TEST(RegistryHiveFormatTest, AFileWithoutHeaderIsReadAllTheSame)
{
    EXPECT_EQ(parse("[HKEY_LOCAL_MACHINE\\K]\n\"a\"=\"b\"").value("K/a").toString(), "b");
}

TEST(RegistryHiveFormatTest, EmptyPathComponentsCountAsNothing)
{
    EXPECT_EQ(parse("[HKEY_LOCAL_MACHINE\\\\Orv Collection\\\\\\Locations\\]\n\"a\"=\"b\"\n").keys(),
              QStringList{"Orv Collection/Locations/a"});
}

TEST(RegistryHiveFormatTest, NamesDifferingInCaseMergeIntoTheFirstSpelling)
{
    const QSettings::SettingsMap values = parse("[HKEY_LOCAL_MACHINE\\Software\\Tavrin]\n"
                                                "\"Name\"=\"first\"\n"
                                                "\"NAME\"=\"second\"\n"
                                                "[hkey_local_machine\\SOFTWARE\\tavrin\\Orv]\n"
                                                "\"x\"=\"1\"\n"
                                                "[HKEY_LOCAL_MACHINE\\SOFTWARE\\TAVRIN]\n"
                                                "\"name\"=\"third\"\n"
                                                "\"other\"=\"2\"\n");
    EXPECT_EQ(values, (QSettings::SettingsMap{{"Software/Tavrin/Name", QString("first")},
                                              {"Software/Tavrin/Orv/x", QString("1")},
                                              {"Software/Tavrin/other", QString("2")}}));
}

TEST(RegistryHiveFormatTest, KeepsUnusedValueTypesWithTheirContinuationLines)
{
    const QByteArray text = "Windows Registry Editor Version 5.00\n"
                            "\n"
                            "[HKEY_LOCAL_MACHINE\\K]\n"
                            "\"bin\"=hex:00,01,02,\\\n"
                            "  03,04\n"
                            "\"expand\"=hex(2):25,00,50,00,00,00\n"
                            "\"s\"=\"x\"\n"
                            "\n";
    const QSettings::SettingsMap values = parse(text);
    EXPECT_EQ(values.value("K/bin").value<RawValue>().text, "hex:00,01,02,\\\n  03,04");
    EXPECT_EQ(values.value("K/expand").value<RawValue>().text, "hex(2):25,00,50,00,00,00");
    EXPECT_EQ(values.value("K/bin").toString(), "");
    EXPECT_EQ(values.value("K/s").toString(), "x");
    EXPECT_EQ(registryHive::write(values, hklm), text);
}

TEST(RegistryHiveFormatTest, ReadsUtf16WithByteOrderMarkAndCrLf)
{
    const QString text = QString::fromUtf8("Windows Registry Editor Version 5.00\r\n\r\n"
                                           "[HKEY_LOCAL_MACHINE\\K]\r\n\"Größe\"=\"日本\"\r\n");
    const QByteArray bytes = "\xFF\xFE" + QTextCodec::codecForName("UTF-16LE")->fromUnicode(text);
    EXPECT_EQ(parse(bytes), (QSettings::SettingsMap{{QString::fromUtf8("K/Größe"), QString::fromUtf8("日本")}}));
}

TEST(RegistryHiveFormatTest, WritesSortedSectionsAndValuesDefaultFirst)
{
    const QSettings::SettingsMap values = {
        {"b/zeta", 1},
        {"B/a/x", QString("in a")},
        {"b/Alpha", QString("q\"\\\n")},
        {"b/.", QString("default")},
        {"A", QString("at the root")},
        {"a1/x", QString("after a")},
    };
    EXPECT_EQ(registryHive::write(values, hklm), "Windows Registry Editor Version 5.00\n"
                                                 "\n"
                                                 "[HKEY_LOCAL_MACHINE]\n"
                                                 "\"A\"=\"at the root\"\n"
                                                 "\n"
                                                 "[HKEY_LOCAL_MACHINE\\a1]\n"
                                                 "\"x\"=\"after a\"\n"
                                                 "\n"
                                                 "[HKEY_LOCAL_MACHINE\\b]\n"
                                                 "@=\"default\"\n"
                                                 "\"Alpha\"=\"q\\\"\\\\\\n\"\n"
                                                 "\"zeta\"=dword:00000001\n"
                                                 "\n"
                                                 "[HKEY_LOCAL_MACHINE\\B\\a]\n"
                                                 "\"x\"=\"in a\"\n"
                                                 "\n");
}

TEST(RegistryHiveFormatTest, EveryValueKindSurvivesARoundTrip)
{
    const QSettings::SettingsMap values = {
        {"K/text", QString::fromUtf8("C:\\Users\\Jürgen \"J\"\r\nnext — 日本語")},
        {"K/empty", QString()},
        {"K/number", 7},
        {"K/negative", -2},
        {"K/.", QString("default")},
        {"K/raw", QVariant::fromValue(RawValue{"hex(7):41,00,00,00"})},
        {"K/Sub/deeper", QString("x")},
    };
    const QByteArray text = registryHive::write(values, hklm);
    EXPECT_EQ(parse(text), values);
    EXPECT_EQ(registryHive::write(parse(text), hklm), text);
}

TEST(RegistryHiveFormatTest, AnInnerZeroDoesNotCutTheFile)
{
    const QSettings::SettingsMap values = {{"K/a", QString::fromUtf16(u"x\0y", 3)}, {"K/b", QString("after")}};
    EXPECT_EQ(parse(registryHive::write(values, hklm)), values);
    EXPECT_EQ(parse("\xEF\xBB\xBF" + registryHive::write(values, hklm)), values);
}

TEST(RegistryHiveFormatTest, SlashesInNamesNestAsQSettingsReadsThem)
{
    const QSettings::SettingsMap values = parse("[HKEY_LOCAL_MACHINE\\A/B\\\\C]\n\"x/y\"=\"1\"\n\"p\\\\q\"=\"2\"\n");
    EXPECT_EQ(values.keys(), (QStringList{"A/B/C/p/q", "A/B/C/x/y"}));
    EXPECT_EQ(parse(registryHive::write(values, hklm)), values);
}

TEST(RegistryHiveFormatTest, KeysInValueNamesTakeTheFirstSpelling)
{
    const QSettings::SettingsMap values =
        parse("[HKEY_LOCAL_MACHINE\\K]\n\"Sub/a\"=\"1\"\n\"SUB/b\"=\"2\"\n[HKEY_LOCAL_MACHINE\\k\\sub]\n\"c\"=\"3\"\n");
    EXPECT_EQ(values.keys(), (QStringList{"K/Sub/a", "K/Sub/b", "K/Sub/c"}));
    EXPECT_EQ(parse(registryHive::write(values, hklm)), values);
}

TEST(RegistryHiveFormatTest, OnlyIndentedLinesContinueABinaryValue)
{
    const QSettings::SettingsMap values = parse("[HKEY_LOCAL_MACHINE\\K]\n\"bin\"=hex:00,01,\\\n\"next\"=\"kept\"\n");
    EXPECT_EQ(values.value("K/bin").value<RawValue>().text, "hex:00,01,\\");
    EXPECT_EQ(values.value("K/next").toString(), "kept");
    EXPECT_EQ(parse(registryHive::write(values, hklm)), values);
}

TEST(RegistryHiveFormatTest, CarriageReturnsAtALineEndAreNotPartOfTheValue)
{
    const QSettings::SettingsMap values = parse("[HKEY_LOCAL_MACHINE\\K]\r\r\n\"bin\"=hex:00,\\\r\n  01\r\r\n");
    EXPECT_EQ(values.value("K/bin").value<RawValue>().text, "hex:00,\\\n  01");
    EXPECT_EQ(parse(registryHive::write(values, hklm)), values);
}

TEST(RegistryHiveFormatTest, ANameWithALineBreakIsSkipped)
{
    EXPECT_EQ(parse("[HKEY_LOCAL_MACHINE\\K]\n\"two\\nlines\"=\"x\"\n\"one\"=\"y\"\n").keys(), QStringList{"K/one"});
}

TEST(RegistryHiveFormatTest, WritesOtherTypesAsText)
{
    const QByteArray text = registryHive::write({{"K/flag", true}, {"K/unsigned", 5u}}, hklm);
    EXPECT_TRUE(text.contains("\"flag\"=\"true\"\n"));
    EXPECT_TRUE(text.contains("\"unsigned\"=dword:00000005\n"));
}

TEST(RegistryHiveFormatTest, AnEmptyMapIsTheHeaderAlone)
{
    EXPECT_EQ(registryHive::write({}, hklm), "Windows Registry Editor Version 5.00\n\n");
}

TEST(RegistryHiveFormatTest, AKeyPathSplitsAtBothSeparatorsAndDropsEmptyNames)
{
    EXPECT_EQ(registryHive::splitKeyPath("HKEY_LOCAL_MACHINE\\SOFTWARE/Tavrin\\\\Orv Collection\\"),
              (QStringList{"HKEY_LOCAL_MACHINE", "SOFTWARE", "Tavrin", "Orv Collection"}));
    EXPECT_EQ(registryHive::splitKeyPath("/\\A"), QStringList{"A"});
    EXPECT_TRUE(registryHive::splitKeyPath("").isEmpty());
    EXPECT_TRUE(registryHive::splitKeyPath("\\//").isEmpty());
}
