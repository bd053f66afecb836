// Writes COUNT values named 0..COUNT-1 into a registry key, syncing after
// each, so that two of these running at once race for the same hive file.
//   registry_writer "HKEY_CURRENT_USER\Software\Race\A" 200
#include "RegistrySettings.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3)
        return 2;
    const int count = arguments.at(2).toInt();
    for (int i = 0; i < count; ++i) {
        const auto key = openRegistryKey(arguments.at(1));
        key->setValue(QString::number(i), i);
        key->sync();
        if (key->status() != QSettings::NoError)
            return 1;
    }
    return 0;
}
