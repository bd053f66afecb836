#include "EnvironmentReport.h"

#include "HostAppUtils.h"
#include "LanguageTables.h"
#include "Translator.h"

#include <QCoreApplication>
#include <QTextCodec>

namespace {

const QString currentLocaleKey = QStringLiteral("currentLocale");
const QString translationsKey = QStringLiteral("translations");
const QString systemKey = QStringLiteral("system");
const QString introStringKey = QStringLiteral("introString");
const char *const translationContext = "SuiteDeployer";
constexpr int fallbackLanguageIndex = 1;

} // namespace

int currentLanguageIndex()
{
    const std::string language = systemLanguage().toStdString();
    for (int index = 0; index < languageTable.size(); ++index) {
        if (languageTable.at(index).code == language)
            return index;
    }
    return fallbackLanguageIndex;
}

QJsonObject translationsReport()
{
    QJsonObject translations;
    const std::unique_ptr<QTranslator> translator = loadTranslator();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication::installTranslator(translator.get());
    translations.insert(introStringKey, welcomeText(translationContext));
    return translations;
}

QJsonObject environmentReport()
{
    QJsonObject report;
    report.insert(currentLocaleKey, currentLanguageIndex());
    report.insert(translationsKey, translationsReport());
    report.insert(systemKey, systemReport());
    return report;
}
