#include "LuaAssignment.h"

#include "FileUtils.h"

#include <QFile>

namespace {

const QString luaAssignmentTemplate = QStringLiteral("%1 = \"%2\"");

} // namespace

void writeLuaAssignment(const QString &filePath, const QString &name, const QString &value)
{
    fileUtils::createTextFile(QFile(filePath), luaAssignmentTemplate.arg(name, value));
}
