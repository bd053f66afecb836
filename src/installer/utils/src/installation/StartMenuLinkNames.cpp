#include "StartMenuLinkNames.h"

#include <QFileInfo>
#include <QMap>
#include <QSet>

namespace {

const QSet<QString> linkableExecutables = {
    QStringLiteral("Grainwick 3.exe"), QStringLiteral("Tintara 5.exe"),  QStringLiteral("Quietar2.exe"),
    QStringLiteral("Bracketon 2.exe"), QStringLiteral("Rectilo.exe"),    QStringLiteral("ACU3OST.exe"),
    QStringLiteral("ACU3RST.exe"),     QStringLiteral("Graymere 3.exe"), QStringLiteral("Lumbrio 3.exe"),
};

const QMap<QString, QString> linkDisplayNames = {
    {QStringLiteral("ACU3RST.exe"), QStringLiteral("Acutara 3 RAW Prestage")},
    {QStringLiteral("ACU3OST.exe"), QStringLiteral("Acutara 3 Output Stage")},
};

const QString linkExtension = QStringLiteral(".lnk");

} // namespace

QString startMenuLinkFileName(const QString &executableFileName)
{
    if (!linkableExecutables.contains(executableFileName))
        return {};
    const QString displayName =
        linkDisplayNames.value(executableFileName, QFileInfo(executableFileName).completeBaseName());
    return displayName + linkExtension;
}
