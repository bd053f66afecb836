#include "LanguageTables.h"

#include <cstring>

namespace {

// Windows-1252 for the bytes 0x80 to 0x9F; zero where the page leaves the byte free.
const char16_t windows1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178,
};

} // namespace

QString doublyEncoded(const char *utf8)
{
    QString text;
    for (const char *byte = utf8; *byte != '\0'; ++byte) {
        const auto value = static_cast<unsigned char>(*byte);
        const char16_t mapped = value >= 0x80 && value < 0xA0 ? windows1252High[value - 0x80] : 0;
        text += QChar(mapped != 0 ? mapped : value);
    }
    return text;
}

const QSet<QString> plainLanguages = {"de", "es", "fr", "it", "ja", "nl", "pl", "ru", "th", "tr"};

const QSet<QString> regionLanguages = {"en_GB", "en_US", "es_419", "pt_BR", "ko_KR", "zh_CN", "zh_TW"};

// Split literals mark where a direction mark or the Latin P stands; the
// formatter would put their parts on lines of their own.
// clang-format off
const QVector<LanguageEntry> languageTable = {
    {"de", doublyEncoded("Deutsch")},
    {"en_GB", doublyEncoded("\u202A" "English (United Kingdom)" "\u202C")},
    {"en_US", doublyEncoded("English (United States)")},
    {"es", doublyEncoded("Español (España)")},
    {"es_419", doublyEncoded("Español (Latinoamérica)")},
    {"fr", doublyEncoded("Français (France)")},
    {"it", doublyEncoded("Italiano")},
    {"nl", doublyEncoded("Nederlands")},
    {"pl", doublyEncoded("Polski")},
    {"pt_BR", doublyEncoded("Português (Brasil)")},
    // The first letter is the Latin P, as it has always been sent.
    {"ru", doublyEncoded("P" "усский")},
    {"tr", doublyEncoded("Türkçe")},
    {"th", doublyEncoded("ไทย")},
    {"ko_KR", doublyEncoded("한국어")},
    {"ja", doublyEncoded("日本語")},
    {"zh_CN", doublyEncoded("简体中文")},
    {"zh_TW", doublyEncoded("繁體中文")},
};
// clang-format on

const QStringList languageCodes = {"de", "en-GB", "en", "es", "es-419", "fr",    "it", "nl", "pl",
                                   "pt", "ru",    "tr", "ja", "zh-CN",  "zh-TW", "ko", "th"};

const QMap<int, QString> sampleLanguageFolders = {
    {0, "1031"}, {1, "1033"}, {5, "1036"}, {12, "1041"}, {13, "2052"},
};

const QString defaultSampleLanguageId = QStringLiteral("1033");
