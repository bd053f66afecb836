#include <QTranslator>

#include <gtest/gtest.h>

namespace {

const char *const keys[] = {"WELCOME_TEXT_TOP", "WELCOME_TEXT_TEXT", "WELCOME_TEXT_TEXT2", "UNINSTALLER_TITLE"};
const char *const codes[] = {"de", "en_GB", "en_US", "es", "es_419", "fr", "it",    "ja",   "ko_KR",
                             "nl", "pl",    "pt_BR", "ru", "th",     "tr", "zh_CN", "zh_TW"};

QString translated(const char *code, const char *key)
{
    QTranslator translator;
    EXPECT_TRUE(translator.load(QString(":/localizations/%1.qm").arg(code)));
    return translator.translate("SuiteDeployer", key);
}

} // namespace

TEST(TranslationsTest, EveryLanguageTranslatesAllFourKeys)
{
    for (const char *code : codes) {
        for (const char *key : keys) {
            const QString text = translated(code, key);
            EXPECT_FALSE(text.isEmpty()) << code << " " << key;
            EXPECT_NE(text, key) << code << " " << key;
        }
    }
}

TEST(TranslationsTest, BothEnglishesHoldTheSourceSentences)
{
    for (const char *code : {"en_GB", "en_US"}) {
        EXPECT_EQ(translated(code, "WELCOME_TEXT_TOP"),
                  "This wizard will guide you through the installation of Orv Collection.");
        EXPECT_EQ(translated(code, "WELCOME_TEXT_TEXT"),
                  "It is recommended that you close all other applications before starting Setup. This will make "
                  "it possible to update relevant system files without having to reboot your computer.");
        EXPECT_EQ(translated(code, "WELCOME_TEXT_TEXT2"), "Click Next to continue.");
        EXPECT_EQ(translated(code, "UNINSTALLER_TITLE"), "Uninstall Orv Collection");
    }
}

TEST(TranslationsTest, TheSuitesNameKeepsItsEnglishFormSaveForFourLanguages)
{
    for (const char *code : codes) {
        const QString code_ = code;
        if (code_ == "es_419" || code_ == "ko_KR" || code_ == "th" || code_ == "ru")
            continue;
        EXPECT_TRUE(translated(code, "WELCOME_TEXT_TOP").contains("Orv Collection")) << code;
        EXPECT_TRUE(translated(code, "UNINSTALLER_TITLE").contains("Orv Collection")) << code;
    }
    EXPECT_TRUE(translated("es_419", "WELCOME_TEXT_TOP").contains(QString::fromUtf8("la Colección Orv")));
    EXPECT_TRUE(translated("ko_KR", "WELCOME_TEXT_TOP").contains(QString::fromUtf8("Orv 컬렉션")));
    EXPECT_TRUE(translated("th", "WELCOME_TEXT_TOP").contains(QString::fromUtf8("ชุดเครื่องมือแต่งภาพ Orv")));
}

TEST(TranslationsTest, RussianJoinsTheNameWithANoBreakSpace)
{
    const QString joined = QString::fromUtf16(u"Orv\u00A0Collection");
    EXPECT_TRUE(translated("ru", "WELCOME_TEXT_TOP").contains(joined));
    EXPECT_TRUE(translated("ru", "UNINSTALLER_TITLE").contains(joined));
    EXPECT_FALSE(translated("ru", "WELCOME_TEXT_TOP").contains("Orv Collection"));
}

TEST(TranslationsTest, RussianAndThaiQuoteTheButtonWithDollarMarks)
{
    for (const char *code : {"ru", "th"}) {
        const QString text = translated(code, "WELCOME_TEXT_TEXT2");
        EXPECT_EQ(text.count("$\\\""), 2) << text.toStdString();
    }
    EXPECT_EQ(translated("de", "WELCOME_TEXT_TEXT2").count("$\\\""), 0);
}

TEST(TranslationsTest, ThaiBeginsWithACombiningVowelSign)
{
    const QString top = translated("th", "WELCOME_TEXT_TOP");
    ASSERT_FALSE(top.isEmpty());
    EXPECT_EQ(top.at(0).category(), QChar::Mark_NonSpacing);
}
