#include "SpecialFolders.h"

QString roamingAppDataPath()
{
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    return configHome.isEmpty() ? qEnvironmentVariable("HOME") + QStringLiteral("/.config") : configHome;
}

QString nativePathTail(const QString &windowsTail)
{
    return QString(windowsTail).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

QString programDataPath()
{
    return qEnvironmentVariableIsSet("ProgramData") ? qEnvironmentVariable("ProgramData") : QStringLiteral("/var/lib");
}
