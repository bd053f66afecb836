#pragma once

#include <QString>

// Makes a link at linkPath to target, as QFile::link does: a symbolic link on
// Linux, a shell link on Windows. A name that exists already is never
// replaced, on either system: a symbolic link can't be made over it, and a
// shell link would silently overwrite it, so that of two executables of one
// name the Windows build would keep the last where the Linux build keeps the
// first. A path longer than the system's links hold (longestLinkPath) gets no
// link either, rather than one that leads nowhere. False when no link was made.
bool makeLink(const QString &target, const QString &linkPath);

// The longest target or link path, in characters, that a link of this system
// holds: a shell link keeps its target in MAX_PATH characters, whatever the
// system's long-path setting; a symbolic link takes what the file system does.
int longestLinkPath();

// Whether a link of this target at this path fits in what the system's links
// hold (longestLinkPath); makeLink and the links of a guarded folder ask it.
bool fitsInALink(const QString &target, const QString &linkPath);
