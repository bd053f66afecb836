#pragma once

#include <QJsonObject>

// The index of the system language in languageTable; 1 (en_GB) when it isn't there.
int currentLanguageIndex();

// {introString}: the welcome text in the system language.
QJsonObject translationsReport();

// The answer of a run without option: {currentLocale, system, translations}.
QJsonObject environmentReport();
