#pragma once

#include "PluginEntry.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

// The suite's table of products, looked up by product name. Made once at
// start-up and shared by reference; every look-up walks the JSON again, and an
// unknown product or an absent key gives an empty result.
class Catalogue
{
public:
    explicit Catalogue(QJsonObject catalogueJson);
    Catalogue(const Catalogue &) = delete;
    Catalogue &operator=(const Catalogue &) = delete;

    QString productValue(const QString &productName, const QString &key) const;
    QString execDir(const QString &productName) const;
    QString folderName(const QString &productName) const;
    QString configFile(const QString &productName) const;
    QString settingsFile(const QString &productName) const;
    QString orv4PathKey(const QString &productName) const;
    QString sampleFolder() const;

    PluginEntry pluginEntry(const QString &productName, const QString &lightroomNameWin) const;
    PluginEntry pluginParam() const;
    QList<PluginEntry> allPluginEntries() const;

    // Catalogue order; the request's names are compared exactly.
    QStringList productsNotIn(const QJsonArray &productNames) const;
    // Catalogue order, empty names left out, repeated names kept.
    QStringList allFolderNames() const;

    const QString rectiloProductName;
    const QString zonalToolName;
    const QString zonalPaletteName;
    const QString zonalPrefsFile;
    const QJsonObject json;

private:
    QJsonObject product(const QString &productName) const;
};
