#pragma once

#include <QString>

// The user's roaming application data folder, below which Adobe keeps
// Lightroom's data: on Windows the folder the shell gives, on Linux
// $XDG_CONFIG_HOME (default $HOME/.config). Read at each call.
QString roamingAppDataPath();

// A path tail as the Windows build writes it ("\Adobe\Lightroom\"), with this
// system's separator.
QString nativePathTail(const QString &windowsTail);
