#include "EnvironmentReport.h"
#include "ScopedEnvironment.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace {

class DefaultLocale
{
public:
    explicit DefaultLocale(const char *name) { QLocale::setDefault(QLocale(name)); }
    ~DefaultLocale() { QLocale::setDefault(previous_); }

private:
    const QLocale previous_;
};

} // namespace

TEST(EnvironmentReportTest, AnAustralianSystemIsReportedAsBritish)
{
    const DefaultLocale australian("en_AU");
    EXPECT_EQ(currentLanguageIndex(), 1);
}

// Japanese (14) and Thai (12) need the system locale; they are checked end to end.
TEST(EnvironmentReportTest, LatinAmericanSpanishIsRowFourOfTheReport)
{
    const DefaultLocale latinAmerican("es_419");
    EXPECT_EQ(currentLanguageIndex(), 4);
}

TEST(EnvironmentReportTest, AustrianGermanIsRowZero)
{
    const DefaultLocale austrian("de_AT");
    EXPECT_EQ(currentLanguageIndex(), 0);
}

TEST(EnvironmentReportTest, TranslationsHoldOnlyTheWelcomeText)
{
    const DefaultLocale german("de_AT");
    const QJsonObject translations = translationsReport();
    EXPECT_EQ(translations.keys(), QStringList{"introString"});
    EXPECT_TRUE(translations.value("introString").toString().startsWith("<html>Dieser Assistent"));
    EXPECT_TRUE(translationsReport() == translations);
}

TEST(EnvironmentReportTest, TheReportHasItsThreeKeys)
{
    Machine machine;
    const ScopedEnvironment environment(machine);
    const DefaultLocale british("en_GB");
    const QJsonObject report = environmentReport();
    EXPECT_EQ(report.keys(), (QStringList{"currentLocale", "system", "translations"}));
    EXPECT_EQ(report.value("currentLocale"), 1);
    EXPECT_EQ(report.value("system").toObject().value("detectedHosts"), 0);
}
