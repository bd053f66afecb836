#include "TargetRefusal.h"

#include "GuardedFolderLog.h"

#include <QDir>
#include <QString>

void refuseLinkedTarget(const std::filesystem::path &target)
{
    // UTF-16 from either system's native form; wstring() on Linux goes through
    // the C locale and throws on any name beyond ASCII.
    const QString path = QDir::fromNativeSeparators(QString::fromStdU16String(target.u16string()));
    logRefusal(path, QStringLiteral("it is a link"));
}
