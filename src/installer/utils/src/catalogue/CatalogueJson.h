#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// Reads and parses a JSON resource; anything unreadable or unparsable gives an empty object.
QJsonObject loadCatalogueJson(const QString &path);

// The first element of the array whose value at the key is the given string
// (exact, case counts), or an empty object.
QJsonObject findEntry(const QJsonArray &array, const QString &key, const QString &value);
