#include "HostMachine.h"

namespace hostMachine {

const QString machineHive = QStringLiteral("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg");
const QString lightroomPreferences = QStringLiteral("home/.config/Adobe/Lightroom/Preferences");

void writeMachineHive(const Machine &machine, const QByteArray &sections)
{
    machine.writeFile(machineHive, "Windows Registry Editor Version 5.00\n\n" + sections);
}

void addLightroomPreferences(const Machine &machine, const QString &fileName)
{
    machine.writeFile(lightroomPreferences + QLatin1Char('/') + fileName, "prefs");
}

} // namespace hostMachine
