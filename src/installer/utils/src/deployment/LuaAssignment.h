#pragma once

#include <QString>

// Writes the one line `name = "value"` (no line end) as the whole content of
// the file, through fileUtils::createTextFile. Nothing is escaped: a path goes
// in as it stands. A failed write is a warning in the log.
void writeLuaAssignment(const QString &filePath, const QString &name, const QString &value);
