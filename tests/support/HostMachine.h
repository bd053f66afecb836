#pragma once

#include "Machine.h"

#include <QByteArray>
#include <QString>

// Seeds a machine with what host applications leave behind: keys in the
// machine's registry hive and Lightroom's preferences in the roaming folder.
namespace hostMachine {

extern const QString machineHive;
extern const QString lightroomPreferences;

// The registry editor's form: "[HKEY_LOCAL_MACHINE\...]" sections with values.
void writeMachineHive(const Machine &machine, const QByteArray &sections);
void addLightroomPreferences(const Machine &machine, const QString &fileName);

} // namespace hostMachine
