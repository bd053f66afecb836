#include "FolderState.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace {

bool isExcluded(const QString &relative, const QStringList &excluded)
{
    for (const QString &path : excluded) {
        if (relative == path || relative.startsWith(path + QLatin1Char('/')))
            return true;
    }
    return false;
}

QByteArray contentDigest(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return "unreadable";
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return hash.result().toHex();
}

QString entryLine(const QString &path, const QString &relative)
{
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0)
        return relative + QStringLiteral(" vanished\n");
    QString line = QStringLiteral("%1 mode %2 owner %3:%4")
                       .arg(relative.isEmpty() ? QStringLiteral(".") : relative)
                       .arg(status.st_mode, 0, 8)
                       .arg(status.st_uid)
                       .arg(status.st_gid);
    if (S_ISLNK(status.st_mode))
        line += QStringLiteral(" link to ") + QFileInfo(path).symLinkTarget();
    else if (S_ISREG(status.st_mode))
        line += QStringLiteral(" size %1 sha256 %2").arg(status.st_size).arg(QString::fromLatin1(contentDigest(path)));
    return line + QLatin1Char('\n');
}

// Excluded folders aren't entered at all: the machine beside may be large.
void collect(const QString &folder, const QString &prefix, const QStringList &excluded, QStringList &lines)
{
    const QDir::Filters all = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    for (const QFileInfo &entry : QDir(folder).entryInfoList(all, QDir::Name)) {
        const QString relative = prefix + entry.fileName();
        if (isExcluded(relative, excluded))
            continue;
        lines.append(entryLine(entry.filePath(), relative));
        if (entry.isDir() && !entry.isSymLink())
            collect(entry.filePath(), relative + QLatin1Char('/'), excluded, lines);
    }
}

} // namespace

QString folderState(const QString &folder, const QStringList &excluded)
{
    QStringList lines{entryLine(folder, QString())};
    collect(folder, QString(), excluded, lines);
    return lines.join(QString());
}
