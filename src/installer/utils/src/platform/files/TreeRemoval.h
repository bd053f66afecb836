#pragma once

#include <QString>

#include <functional>

// Deletes what lies at a path: a folder with all that is in it, a file, or a
// link. A link is deleted as a link and never followed, also when a folder is
// swapped for one while the removal runs: each folder is opened by a handle
// that doesn't follow links, checked on that handle, and emptied through it.
// The folders above the path are taken as they are. What can be deleted goes;
// false when anything stayed. A missing path is no failure.
bool removeTree(const QString &path);

// For tests: called with a folder's path after the removal has seen that it is
// a folder and before it opens it, the moment at which a swap would count.
void setRemovalDescentHook(std::function<void(const QString &folder)> hook);
