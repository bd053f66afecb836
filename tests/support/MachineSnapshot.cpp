#include "MachineSnapshot.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace {

QString withoutRoot(QString text, const QString &root)
{
    return text.replace(root, QStringLiteral("<machine>"));
}

QString fileEntry(const QString &path, const QString &root)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray content = file.readAll();
    if (content.contains('\0'))
        return QStringLiteral(" (binary, %1 bytes)\n").arg(content.size());
    QString text = withoutRoot(QString::fromUtf8(content), root);
    QString entry = QStringLiteral("\n");
    const bool endsInLineEnd = text.endsWith(QLatin1Char('\n'));
    if (endsInLineEnd)
        text.chop(1);
    for (const QString &line : text.split(QLatin1Char('\n')))
        entry += QStringLiteral("    |") + QString(line).replace(QLatin1Char('\r'), QStringLiteral("\\r")) +
                 QLatin1Char('\n');
    if (!endsInLineEnd && !content.isEmpty())
        entry += QStringLiteral("    (no line end)\n");
    return entry;
}

} // namespace

QString machineSnapshot(const Machine &machine, const QStringList &excluded)
{
    const QString root = machine.root();
    QStringList entries;
    QDirIterator walk(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        const QString relative = path.mid(root.size() + 1);
        bool skipped = false;
        for (const QString &folder : excluded)
            skipped = skipped || relative == folder || relative.startsWith(folder + QLatin1Char('/'));
        if (skipped)
            continue;
        const QFileInfo info(path);
        if (info.isSymLink())
            entries.append("l " + relative + " -> " + withoutRoot(info.symLinkTarget(), root) + "\n");
        else if (info.isDir())
            entries.append("d " + relative + "\n");
        else
            entries.append("f " + relative + fileEntry(path, root));
    }
    entries.sort();
    return entries.join(QString());
}
