#include "ProcFsListing.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <vector>

namespace {

const QByteArray lineEnd = QByteArrayLiteral("\r\r\n");

std::vector<qulonglong> processNumbers(const QString &procRoot)
{
    std::vector<qulonglong> numbers;
    for (const QString &entry : QDir(procRoot).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isNumber = false;
        const qulonglong number = entry.toULongLong(&isNumber);
        if (isNumber)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QByteArray lastPathComponent(const QByteArray &path)
{
    const int separator = std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    return path.mid(separator + 1);
}

QByteArray imageName(const QString &processDir)
{
    const QByteArray commandLine = readAll(processDir + QStringLiteral("/cmdline"));
    // A process that rewrote its title may leave no NUL at all.
    const int argv0End = commandLine.indexOf('\0');
    const QByteArray argv0 = argv0End < 0 ? commandLine : commandLine.left(argv0End);
    if (!argv0.isEmpty())
        return lastPathComponent(argv0);
    QByteArray command = readAll(processDir + QStringLiteral("/comm"));
    if (command.endsWith('\n'))
        command.chop(1);
    return command;
}

} // namespace

QByteArray procFsCaptionList(const QString &procRoot)
{
    QByteArray list = QByteArrayLiteral("Caption") + lineEnd;
    for (const qulonglong number : processNumbers(procRoot)) {
        const QByteArray name = imageName(procRoot + QLatin1Char('/') + QString::number(number));
        if (!name.isEmpty())
            list += name + lineEnd;
    }
    return list;
}
