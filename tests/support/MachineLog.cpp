#include "MachineLog.h"

#include <QDir>
#include <QFile>

QByteArray machineLog(const Machine &machine)
{
    const QDir logs(machine.path("home/.config/Tavrin/Orv Collection/logs"));
    QByteArray text;
    for (const QString &name : logs.entryList(QDir::Files, QDir::Name)) {
        QFile file(logs.filePath(name));
        file.open(QIODevice::ReadOnly);
        text += file.readAll();
    }
    return text;
}
