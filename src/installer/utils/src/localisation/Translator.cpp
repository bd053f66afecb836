#include "Translator.h"

#include "LanguageTables.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLocale>

namespace {

const QString fallbackLanguage = QStringLiteral("en_GB");
const QString translationPath = QStringLiteral(":/localizations/%1.qm");
const char *const welcomeKeys[] = {"WELCOME_TEXT_TOP", "WELCOME_TEXT_TEXT", "WELCOME_TEXT_TEXT2"};

} // namespace

QString systemLanguage()
{
    return translationCodeFor(QLocale().uiLanguages().value(0));
}

QString translationCodeFor(const QString &uiLanguage)
{
    QString language = uiLanguage;
    language.replace(QLatin1Char('-'), QLatin1Char('_'));
    if (regionLanguages.contains(language))
        return language;
    // No underscore gives -1, which empties the text: a bare language tag
    // matches nothing and falls back.
    language.truncate(language.indexOf(QLatin1Char('_')));
    if (plainLanguages.contains(language))
        return language;
    return fallbackLanguage;
}

std::unique_ptr<QTranslator> loadTranslator()
{
    auto translator = std::make_unique<QTranslator>();
    const bool loaded = translator->load(translationPath.arg(systemLanguage()), QString(), QString(), QString());
    qDebug().noquote().nospace() << "Loading of " << translationPath.arg(systemLanguage()) << " result: " << loaded;
    return translator;
}

QString welcomeText(const char *context)
{
    QString text = QStringLiteral("<html>");
    for (const char *key : welcomeKeys)
        text += QCoreApplication::translate(context, key, nullptr, -1) + QStringLiteral("<br><br>");
    return text + QStringLiteral("</html>");
}
