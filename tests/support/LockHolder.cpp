// Holds a lock until it is killed, for the tests of what a killed holder leaves:
//   lock_holder folder PATH     a FolderLock on PATH
//   lock_holder registry KEY    a registry view of KEY, with the hives' locks
//   lock_holder reader KEY      a registry view of KEY for reading, without locks
//   lock_holder nested PATH     two FolderLocks on PATH, one inside the other
// Prints "held" once it holds (a reader: once its view is open), then waits
// for its standard input to close ("nested" ends at once instead, which shows
// that it did not wait for itself).
#include "FolderLock.h"
#include "RegistrySettings.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

#include <unistd.h>

namespace {

void announceAndWait()
{
    std::puts("held");
    std::fflush(stdout);
    char byte = 0;
    while (::read(STDIN_FILENO, &byte, 1) > 0) {}
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 3)
        return 2;
    const QString mode = arguments.at(1);
    if (mode == "folder") {
        const FolderLock lock(arguments.at(2));
        announceAndWait();
        return lock.isHeld() ? 0 : 1;
    }
    if (mode == "registry") {
        const auto key = openRegistryKey(arguments.at(2));
        announceAndWait();
        return 0;
    }
    if (mode == "reader") {
        const auto key = openRegistryKeyForReading(arguments.at(2));
        announceAndWait();
        return 0;
    }
    if (mode == "nested") {
        const FolderLock outer(arguments.at(2));
        const FolderLock inner(arguments.at(2));
        return outer.isHeld() && inner.isHeld() ? 0 : 1;
    }
    return 2;
}
