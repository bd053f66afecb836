#pragma once

#include <QDir>
#include <QFile>
#include <QString>

// The file-system actions of all flows. None gives a result or throws: a
// failure is a warning in the log, and removing what isn't there is silent.
// Callers make the QDir or QFile on the spot, e.g. removeFile(QFile(path)).
namespace fileUtils {

void createDir(QDir &dir);
void createTextFile(QFile &&file, const QString &content);
void removeDir(const QDir &dir);
void removeFile(QFile &&file);

// The same removals of something below base, a folder that the system or the
// records name, where users could have put a link on the way: every folder
// between base and the target is opened without following links, and a link
// there is refused with a warning that names it. The target itself, when it is
// a link, goes as a link.
void removeDir(const QDir &dir, const QString &base);
void removeFile(QFile &&file, const QString &base);

// Whether a folder can be walked at all. A path with a NUL character names no
// file: Qt refuses it for every file action, but a recursive QDirIterator on
// it lists the folder before the NUL over and over and never comes back.
bool isWalkable(const QString &folder);

} // namespace fileUtils
