#include "GuardedFolder.h"

#include "logging/Log.h"

#include <QDir>
#include <QFileInfo>

GuardedFolder::Outcome GuardedFolder::outcome() const
{
    return outcome_;
}

QString GuardedFolder::path() const
{
    return path_;
}

QString GuardedFolder::filePath(const QString &name) const
{
    return path_ + QLatin1Char('/') + name;
}

void logRefusal(const QString &folder, const QString &reason)
{
    KELP_LOG_WARN("Refused to use {}, because {}", folder.toStdString(), reason.toStdString());
}

// ".." is resolved as text, as Windows does, before anything is opened; what
// climbs out of the base is taken from the folder where it lands.
GuardedFolder::Place GuardedFolder::placeOf(const QString &base, const QString &relative)
{
    const QString root = QDir(base.isEmpty() ? QStringLiteral("/") : base).absolutePath();
    const QString whole = QDir::cleanPath(root + QLatin1Char('/') + relative);
    if (whole == root)
        return {root, QString()};
    if (whole.startsWith(root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/')))
        return {root, whole.mid(root.size()).section(QLatin1Char('/'), 0, -1, QString::SectionSkipEmpty)};
    const QFileInfo landing(whole);
    return {landing.path(), landing.fileName()};
}
