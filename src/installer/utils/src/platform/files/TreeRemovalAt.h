#pragma once

#include <QString>

#include <string>

// The removal of one entry of an open folder, by its name in that folder;
// path is how the hook names it.
bool removeTreeAt(int parent, const std::string &name, const QString &path);
