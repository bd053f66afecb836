#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <string>

// The suite's 17 languages. The tables don't agree on everything: a code has
// an underscore where a tag has a hyphen, and the numbering of the report
// (languageTable) differs from that of requests (languageCodes) in its last
// five rows. The wizard relies on both as they stand; none is derived from
// another.

struct LanguageEntry
{
    std::string code;
    // Stored doubly encoded: each byte of the name's UTF-8 form as one
    // Windows-1252 character, as the wizard has always received it.
    QString displayName;
};

// The numbering of the report's currentLocale; code is the translation's name.
extern const QVector<LanguageEntry> languageTable;
// The numbering of requests: the language tag of each request number.
extern const QStringList languageCodes;
// Request number to the sample images' language folder; others take the default.
extern const QMap<int, QString> sampleLanguageFolders;
extern const QString defaultSampleLanguageId;
// Codes whose translation carries the region, and codes translated as a whole language.
extern const QSet<QString> regionLanguages;
extern const QSet<QString> plainLanguages;

// Each byte of the UTF-8 text as the Windows-1252 character of that byte
// (a byte the code page leaves free as the code point of the same number).
QString doublyEncoded(const char *utf8);
