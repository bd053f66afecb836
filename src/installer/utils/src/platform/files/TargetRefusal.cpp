#include "TargetRefusal.h"

#include "GuardedFolderLog.h"

#include <QDir>
#include <QString>

void refuseLinkedTarget(const std::filesystem::path &target)
{
    const QString path = QDir::fromNativeSeparators(QString::fromStdWString(target.wstring()));
    logRefusal(path, QStringLiteral("it is a link"));
}
