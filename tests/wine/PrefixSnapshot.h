#pragma once

#include "WinePrefix.h"

#include <QMap>
#include <QString>
#include <QStringList>

// The folders below drive_c that a step may change, as readable text for
// comparing with a reviewed snapshot: every folder, file and shell link below
// them in name order, with paths relative to drive_c. A file shows its
// content (a binary one only its size), a shell link (.lnk) the path it
// points to as "l <link> -> <target>", followed by "(missing)" when nothing
// is there and by "in <folder>" when its working folder is not the target's
// own; a Linux symbolic link (Wine's profile folders) as "s <link> -> <target>".
// The prefix's Linux path is written as <prefix>. Folders that do not exist
// are left out; so are the entries of `excluded`, with all they hold.
QString folderListing(const WinePrefix &prefix, const QStringList &folders, const QStringList &excluded);

// A text as the listings show a file's content: each line behind "    |",
// a CR as \r, the prefix's Linux path as <prefix>, and "    (no line end)"
// after a last line without one.
QString quotedText(QString text, const QString &prefixRoot);

// The registry keys, each as Wine's reg export gives it with all below it,
// its values sorted by name within each key; "(no such key)" for a key that
// is not there.
QString registryListing(const WinePrefix &prefix, const QStringList &keys);

// What lies below drive_c at one moment, outside some folders: each folder
// and shell link by its path, each file also by its size and modification
// time. Comparing two states tells what changed where nothing should have.
class DriveState
{
public:
    DriveState(const QString &driveC, const QStringList &skipped);

    // One line per difference, in name order: "added <path>", "removed <path>", "changed <path>".
    QStringList changesSince(const DriveState &earlier) const;

private:
    QMap<QString, QString> entries_;
};
