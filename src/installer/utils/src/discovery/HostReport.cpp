#include "HostAppUtils.h"

namespace {

const QString appNameKey = QStringLiteral("appName");
const QString pluginPathKey = QStringLiteral("pluginPath");
const QString typeKey = QStringLiteral("type");
const QString hostsKey = QStringLiteral("hosts");
const QString detectedHostsKey = QStringLiteral("detectedHosts");

} // namespace

void addHostRecord(QJsonArray &hosts, const QString &appName, const QString &pluginPath, qint32 type)
{
    QJsonObject host;
    host.insert(appNameKey, appName);
    host.insert(pluginPathKey, pluginPath);
    host.insert(typeKey, type);
    hosts.append(host);
}

QJsonObject systemReport()
{
    QJsonObject report;
    QJsonArray hosts;
    detectPhotoshopHosts(hosts);
    detectLightroomHosts(hosts);
    detectPhotoshopElementsHosts(hosts);
    report.insert(hostsKey, hosts);
    report.insert(detectedHostsKey, hosts.size());
    return report;
}
