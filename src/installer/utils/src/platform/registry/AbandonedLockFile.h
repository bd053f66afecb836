#pragma once

#include <QString>

// Removes a QLockFile lock file that no living process holds, and tells
// whether it did. QSettings guards each write of a file with one, "<file>.lock";
// a process killed while it held it, or between creating it and writing its
// owner into it, leaves it behind, and Qt takes over an empty one only once it
// is 30 seconds old. A QLockFile's owner holds a flock on the file for as long
// as it owns it, so one that can be flocked now has no owner any more, unless
// its owner is between creating it and locking it: call this only where no
// other writer of that file can be, under a lock that every writer holds.
bool removeAbandonedLockFile(const QString &path);
