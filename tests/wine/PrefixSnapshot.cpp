#include "PrefixSnapshot.h"

#include "ShellLink.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

const QDir::Filters everything = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;

bool isBelowAny(const QString &relative, const QStringList &folders)
{
    for (const QString &folder : folders) {
        if (relative == folder || relative.startsWith(folder + QLatin1Char('/')))
            return true;
    }
    return false;
}

} // namespace

QString quotedText(QString text, const QString &prefixRoot)
{
    text.replace(prefixRoot, QStringLiteral("<prefix>"));
    QString entry;
    const bool endsInLineEnd = text.endsWith(QLatin1Char('\n'));
    if (endsInLineEnd)
        text.chop(1);
    for (const QString &line : text.split(QLatin1Char('\n')))
        entry += QStringLiteral("    |") + QString(line).replace(QLatin1Char('\r'), QStringLiteral("\\r")) +
                 QLatin1Char('\n');
    if (!endsInLineEnd && !text.isEmpty())
        entry += QStringLiteral("    (no line end)\n");
    return entry;
}

namespace {

QString linkEntry(const WinePrefix &prefix, const ShellLink &link)
{
    QString entry = QStringLiteral(" -> ") + link.target;
    const QString linuxTarget = prefix.linuxPath(link.target);
    if (linuxTarget.isEmpty() || !QFileInfo::exists(linuxTarget))
        entry += QStringLiteral(" (missing)");
    const int separator = link.target.lastIndexOf(QLatin1Char('\\'));
    if (link.workingFolder != link.target.left(separator))
        entry += QStringLiteral(" in ") + link.workingFolder;
    return entry + QLatin1Char('\n');
}

QString fileEntry(const WinePrefix &prefix, const QString &path, const QString &relative)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray content = file.readAll();
    if (relative.endsWith(QStringLiteral(".lnk"), Qt::CaseInsensitive)) {
        const ShellLink link = readShellLink(content);
        if (link.valid)
            return QStringLiteral("l ") + relative + linkEntry(prefix, link);
    }
    if (content.contains('\0'))
        return QStringLiteral("f %1 (binary, %2 bytes)\n").arg(relative).arg(content.size());
    return QStringLiteral("f ") + relative + QLatin1Char('\n') + quotedText(QString::fromUtf8(content), prefix.root());
}

// The sections of an export in their order, and in each the values sorted by
// name (a value's continuation lines stay with it).
QString sortedValues(const QString &exported)
{
    QString result;
    for (const QString &section : exported.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts)) {
        QStringList lines = section.split(QLatin1Char('\n'));
        const QString header = lines.takeFirst();
        QStringList values;
        for (const QString &line : lines) {
            if (!values.isEmpty() && values.last().endsWith(QLatin1Char('\\')))
                values.last() += QLatin1Char('\n') + line;
            else
                values.append(line);
        }
        std::sort(values.begin(), values.end(),
                  [](const QString &one, const QString &other) { return one.compare(other, Qt::CaseInsensitive) < 0; });
        result += header + QLatin1Char('\n') +
                  (values.isEmpty() ? QString() : values.join(QLatin1Char('\n')) + QLatin1Char('\n')) +
                  QLatin1Char('\n');
    }
    return result;
}

} // namespace

QString folderListing(const WinePrefix &prefix, const QStringList &folders, const QStringList &excluded)
{
    const QString driveC = prefix.driveC();
    QStringList entries;
    for (const QString &folder : folders) {
        const QString top = driveC + QLatin1Char('/') + folder;
        if (!QFileInfo(top).isDir())
            continue;
        entries.append(QStringLiteral("d ") + folder + QLatin1Char('\n'));
        QDirIterator walk(top, everything, QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QString path = walk.next();
            const QString relative = path.mid(driveC.size() + 1);
            if (isBelowAny(relative, excluded))
                continue;
            const QFileInfo info(path);
            if (info.isSymLink())
                entries.append(QStringLiteral("s ") + relative + QStringLiteral(" -> ") + info.symLinkTarget() +
                               QLatin1Char('\n'));
            else if (info.isDir())
                entries.append(QStringLiteral("d ") + relative + QLatin1Char('\n'));
            else
                entries.append(fileEntry(prefix, path, relative));
        }
    }
    std::sort(entries.begin(), entries.end(), [](const QString &one, const QString &other) {
        // By path, whatever the kind: a folder stands before what it holds.
        return one.mid(2) < other.mid(2);
    });
    return entries.join(QString());
}

QString registryListing(const WinePrefix &prefix, const QStringList &keys)
{
    QString listing;
    for (const QString &key : keys) {
        const QString exported = QString::fromUtf8(prefix.exportKey(key));
        if (exported.isEmpty())
            listing += QStringLiteral("registry ") + key + QStringLiteral(" (no such key)\n");
        else
            listing += QStringLiteral("registry ") + key + QLatin1Char('\n') +
                       quotedText(sortedValues(exported), prefix.root());
    }
    return listing;
}

DriveState::DriveState(const QString &driveC, const QStringList &skipped)
{
    QDirIterator walk(driveC, everything, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QString relative = path.mid(driveC.size() + 1);
        if (isBelowAny(relative, skipped))
            continue;
        const QFileInfo info(path);
        // A folder's own time changes with what it holds, which is compared by itself.
        if (info.isSymLink())
            entries_.insert(relative, QStringLiteral("link ") + info.symLinkTarget());
        else if (info.isDir())
            entries_.insert(relative, QStringLiteral("folder"));
        else
            entries_.insert(relative,
                            QStringLiteral("file %1 %2").arg(info.size()).arg(info.lastModified().toMSecsSinceEpoch()));
    }
}

QStringList DriveState::changesSince(const DriveState &earlier) const
{
    QStringList changes;
    for (auto entry = entries_.cbegin(); entry != entries_.cend(); ++entry) {
        if (!earlier.entries_.contains(entry.key()))
            changes.append(QStringLiteral("added ") + entry.key());
        else if (earlier.entries_.value(entry.key()) != entry.value())
            changes.append(QStringLiteral("changed ") + entry.key());
    }
    for (auto entry = earlier.entries_.cbegin(); entry != earlier.entries_.cend(); ++entry) {
        if (!entries_.contains(entry.key()))
            changes.append(QStringLiteral("removed ") + entry.key());
    }
    changes.sort();
    return changes;
}
