#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// The hosts the suite plugs into. A host record is the JSON object
// {appName, pluginPath, type}; pluginPath is its identity. Discovery only
// reads: it checks no folder and creates nothing.
enum class HostType : qint32 {
    Photoshop = 0,
    PhotoshopElements = 1,
    Lightroom = 2,
};

void addHostRecord(QJsonArray &hosts, const QString &appName, const QString &pluginPath, qint32 type);

// {hosts, detectedHosts}: Photoshop, then Lightroom, then Elements records,
// in that fixed order, nothing sorted or merged.
QJsonObject systemReport();

// One record for each version key below Adobe's Photoshop key.
void detectPhotoshopHosts(QJsonArray &hosts);
// At most one record, from the preferences Lightroom leaves in the user's profile.
void detectLightroomHosts(QJsonArray &hosts);
// One record for each version key below Adobe's Elements key that names its folder.
void detectPhotoshopElementsHosts(QJsonArray &hosts);
