#include "CatalogueJson.h"

#include "JsonText.h"

#include <QFile>
#include <QJsonDocument>

QJsonObject loadCatalogueJson(const QString &path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);
    return parseJsonText(file.readAll()).object();
}

QJsonObject findEntry(const QJsonArray &array, const QString &key, const QString &value)
{
    const QJsonValue wanted(value);
    for (const QJsonValue &element : array) {
        QJsonObject entry = element.toObject();
        if (entry.value(key) == wanted)
            return entry;
    }
    return {};
}
