#include "Translator.h"

#include <QCoreApplication>
#include <QLocale>

#include <gtest/gtest.h>

namespace {

const QString englishText =
    "<html>This wizard will guide you through the installation of Orv Collection.<br><br>"
    "It is recommended that you close all other applications before starting Setup. This will make it possible "
    "to update relevant system files without having to reboot your computer.<br><br>"
    "Click Next to continue.<br><br></html>";

class DefaultLocale
{
public:
    explicit DefaultLocale(const char *name) { QLocale::setDefault(QLocale(name)); }
    ~DefaultLocale() { QLocale::setDefault(previous_); }

private:
    const QLocale previous_;
};

QStringList debugLines;

void captureDebug(QtMsgType, const QMessageLogContext &, const QString &message)
{
    debugLines.append(message);
}

} // namespace

TEST(TranslatorTest, TranslationCodeOfEachUiLanguage)
{
    const std::vector<std::pair<const char *, const char *>> cases = {
        {"en-US", "en_US"}, {"en-AU", "en_GB"}, {"de-AT", "de"},         {"es-MX", "es"}, {"es-419", "es_419"},
        {"pt-PT", "en_GB"}, {"pt-BR", "pt_BR"}, {"zh-Hans-CN", "en_GB"}, {"de", "en_GB"}, {"sv-SE", "en_GB"},
        {"ja-JP", "ja"},    {"ko-KR", "ko_KR"}, {"th-TH", "th"},         {"C", "en_GB"},  {"", "en_GB"},
    };
    for (const auto &[uiLanguage, code] : cases)
        EXPECT_EQ(translationCodeFor(uiLanguage), code) << uiLanguage;
}

// A default locale other than the system's gives its shortest tag first
// (de_AT gives "de-AT", ja_JP only "ja"), so these pick locales whose region
// stays in that tag; the system locale itself is covered end to end.
TEST(TranslatorTest, SystemLanguageFollowsTheDefaultLocaleAndStaysTheSame)
{
    const DefaultLocale austrian("de_AT");
    EXPECT_EQ(systemLanguage(), "de");
    EXPECT_EQ(systemLanguage(), systemLanguage());
    const DefaultLocale latinAmerican("es_419");
    EXPECT_EQ(systemLanguage(), "es_419");
    const DefaultLocale swedish("sv_SE");
    EXPECT_EQ(systemLanguage(), "en_GB");
}

TEST(TranslatorTest, LoadTranslatorLoadsTheSystemLanguageAndSaysSo)
{
    const DefaultLocale german("de_AT");
    debugLines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(captureDebug);
    const std::unique_ptr<QTranslator> translator = loadTranslator();
    qInstallMessageHandler(previous);
    EXPECT_FALSE(translator->isEmpty());
    EXPECT_EQ(translator->parent(), nullptr);
    EXPECT_EQ(debugLines, QStringList{"Loading of :/localizations/de.qm result: true"});
}

TEST(TranslatorTest, WithoutATranslatorTheKeysShow)
{
    EXPECT_EQ(welcomeText("SuiteDeployer"),
              "<html>WELCOME_TEXT_TOP<br><br>WELCOME_TEXT_TEXT<br><br>WELCOME_TEXT_TEXT2<br><br></html>");
}

TEST(TranslatorTest, ASwedishSystemGetsTheBritishText)
{
    const DefaultLocale swedish("sv_SE");
    const std::unique_ptr<QTranslator> translator = loadTranslator();
    QCoreApplication::installTranslator(translator.get());
    const QString text = welcomeText("SuiteDeployer");
    QCoreApplication::removeTranslator(translator.get());
    EXPECT_EQ(text, englishText);
    EXPECT_TRUE(text.endsWith("<br><br></html>"));
}

TEST(TranslatorTest, AnotherContextFindsNothing)
{
    const DefaultLocale british("en_GB");
    const std::unique_ptr<QTranslator> translator = loadTranslator();
    QCoreApplication::installTranslator(translator.get());
    const QString text = welcomeText("Other");
    QCoreApplication::removeTranslator(translator.get());
    EXPECT_TRUE(text.contains("WELCOME_TEXT_TOP"));
}
