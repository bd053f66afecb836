#include "LanguageTables.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

int tableIndexOf(const std::string &code)
{
    const auto found = std::find_if(languageTable.begin(), languageTable.end(),
                                    [&code](const LanguageEntry &entry) { return entry.code == code; });
    return found == languageTable.end() ? -1 : int(found - languageTable.begin());
}

} // namespace

TEST(LanguageTablesTest, TheReportNumbersSeventeenCodesInOrder)
{
    const std::vector<std::string> codes = {"de",    "en_GB", "en_US", "es", "es_419", "fr", "it",    "nl",   "pl",
                                            "pt_BR", "ru",    "tr",    "th", "ko_KR",  "ja", "zh_CN", "zh_TW"};
    ASSERT_EQ(languageTable.size(), 17);
    for (int i = 0; i < 17; ++i)
        EXPECT_EQ(languageTable.at(i).code, codes.at(i));
}

TEST(LanguageTablesTest, DisplayNamesAreStoredDoublyEncoded)
{
    EXPECT_EQ(languageTable.at(0).displayName, "Deutsch");
    EXPECT_EQ(languageTable.at(3).displayName, QString::fromUtf8("EspaÃ±ol (EspaÃ±a)"));
    EXPECT_EQ(languageTable.at(1).displayName, QString::fromUtf8("â€ªEnglish (United Kingdom)â€¬"));
    // Pусский with the Latin P: the 0x81 bytes of с stay U+0081.
    EXPECT_EQ(languageTable.at(10).displayName,
              QString::fromUtf16(u"P\u00d1\u0192\u00d1\u0081\u00d1\u0081\u00d0\u00ba\u00d0\u00b8\u00d0\u00b9"));
    EXPECT_EQ(languageTable.at(12).displayName,
              QString::fromUtf16(u"\u00e0\u00b9\u201e\u00e0\u00b8\u2014\u00e0\u00b8\u00a2"));
    EXPECT_EQ(languageTable.at(16).displayName,
              QString::fromUtf16(u"\u00e7\u00b9\u0081\u00e9\u00ab\u201d\u00e4\u00b8\u00ad\u00e6\u2013\u2021"));
}

TEST(LanguageTablesTest, BytesTheCodePageLeavesFreeKeepTheirNumber)
{
    EXPECT_EQ(doublyEncoded("\x81\x8D\x8F\x90\x9D"), QString::fromUtf16(u"\u0081\u008D\u008F\u0090\u009D"));
    EXPECT_EQ(doublyEncoded("\x80\x9F\xA0\xFF"), QString::fromUtf16(u"\u20AC\u0178\u00A0\u00FF"));
}

TEST(LanguageTablesTest, RequestTagsDifferFromCodesAndFromTheReportsOrder)
{
    EXPECT_EQ(languageCodes, (QStringList{"de", "en-GB", "en", "es", "es-419", "fr", "it", "nl", "pl", "pt", "ru", "tr",
                                          "ja", "zh-CN", "zh-TW", "ko", "th"}));
    EXPECT_EQ(languageCodes.at(12), "ja");
    EXPECT_EQ(languageTable.at(12).code, "th");
    EXPECT_EQ(languageCodes.at(9), "pt");
    EXPECT_EQ(languageTable.at(9).code, "pt_BR");
    EXPECT_EQ(languageCodes.at(15), "ko");
    EXPECT_EQ(languageTable.at(13).code, "ko_KR");
}

TEST(LanguageTablesTest, SampleFoldersHaveFiveRowsAndADefault)
{
    EXPECT_EQ(sampleLanguageFolders,
              (QMap<int, QString>{{0, "1031"}, {1, "1033"}, {5, "1036"}, {12, "1041"}, {13, "2052"}}));
    EXPECT_EQ(defaultSampleLanguageId, "1033");
    for (int number : {2, 3, 4, 6, 7, 8, 9, 10, 11, 14, 15, 16})
        EXPECT_FALSE(sampleLanguageFolders.contains(number)) << number;
}

TEST(LanguageTablesTest, TheTwoSetsHoldTheSeventeenCodes)
{
    EXPECT_EQ(regionLanguages.size(), 7);
    EXPECT_EQ(plainLanguages.size(), 10);
    EXPECT_FALSE(regionLanguages.intersects(plainLanguages));
    for (const LanguageEntry &entry : languageTable) {
        const QString code = QString::fromStdString(entry.code);
        EXPECT_TRUE(regionLanguages.contains(code) || plainLanguages.contains(code)) << entry.code;
    }
}

TEST(LanguageTablesTest, SearchingTheTableByCodeIsExact)
{
    EXPECT_EQ(tableIndexOf("en"), -1);
    EXPECT_EQ(tableIndexOf("es"), 3);
}
