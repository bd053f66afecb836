#pragma once

#include <QByteArray>
#include <QString>

// What a Windows shell link (.lnk) points to, read from the file's bytes as
// the shell link format lays them out: the header, the optional item ID list,
// which is skipped, the LinkInfo block with the target's local path, and the
// string data, of which the working folder is kept.
struct ShellLink
{
    // False when the bytes are no shell link or are cut short.
    bool valid = false;
    // The local base path followed by the common path suffix; empty when the
    // link holds no local path (only an ID list, or a network path).
    QString target;
    QString workingFolder;
};

// The ANSI strings of LinkInfo are read as UTF-8, the code page of the
// program that makes the links, or as Latin-1 where they are no UTF-8; a
// LinkInfo with the optional Unicode offsets is read from those instead. Zero characters at the
// end of the working folder are dropped: Wine counts the terminating one.
ShellLink readShellLink(const QByteArray &bytes);
