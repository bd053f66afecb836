#pragma once

#include <QString>

// The user's roaming application data folder, below which Adobe keeps
// Lightroom's data: on Windows the folder the shell gives, on Linux
// $XDG_CONFIG_HOME (default $HOME/.config). Read at each call.
QString roamingAppDataPath();

// The machine-wide data folder, from the environment variable ProgramData,
// read at each call. On Linux an unset variable means /var/lib; one that is
// set and empty stays empty, as on Windows.
QString programDataPath();

// A path tail as the Windows build writes it ("\Adobe\Lightroom\"), with this
// system's separator.
QString nativePathTail(const QString &windowsTail);
