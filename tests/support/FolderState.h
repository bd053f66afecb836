#pragma once

#include <QString>
#include <QStringList>

// Everything below a folder, and the folder itself, as text to compare before
// and after: one line per entry in name order with its kind, mode, owner,
// size and a digest of its content, or the target of a link. Entries named in
// `excluded` (paths relative to the folder) are left out with all they hold.
QString folderState(const QString &folder, const QStringList &excluded = {});
