#pragma once

#include <QString>
#include <QTranslator>

#include <memory>

// The code of the system's language among the 17 translations: the first UI
// language of the default locale, if its code with region is translated, else
// its language alone, else "en_GB". A tag without region ("de") finds nothing
// and falls back too; the wizard has always been answered this way.
QString systemLanguage();

// The translation code for one UI language tag such as "en-AU".
QString translationCodeFor(const QString &uiLanguage);

// A translator loaded with the system language's translation. The caller
// installs it and destroys it.
std::unique_ptr<QTranslator> loadTranslator();

// The wizard's welcome page in html, from the installed translation.
QString welcomeText(const char *context);
