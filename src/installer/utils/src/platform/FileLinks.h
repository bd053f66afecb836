#pragma once

#include <QString>

// Makes a link at linkPath to target, as QFile::link does: a symbolic link on
// Linux, a shell link on Windows. A name that exists already is never
// replaced, on either system: a symbolic link can't be made over it, and a
// shell link would silently overwrite it, so that of two executables of one
// name the Windows build would keep the last where the Linux build keeps the
// first. False when no link was made.
bool makeLink(const QString &target, const QString &linkPath);
