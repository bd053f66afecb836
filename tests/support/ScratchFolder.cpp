#include "ScratchFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool ScratchFolder::writeFile(const QString &relativePath, const QByteArray &content) const
{
    QDir().mkpath(QFileInfo(path(relativePath)).path());
    QFile file(path(relativePath));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray ScratchFolder::contentOf(const QString &relativePath) const
{
    QFile file(path(relativePath));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}
