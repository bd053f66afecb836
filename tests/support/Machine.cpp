#include "Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace {

void writeBytes(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

QString shellQuoted(const QString &text)
{
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QStringLiteral("'\\''")) + QLatin1Char('\'');
}

} // namespace

Machine::Machine()
{
    makeFolders();
}

Machine::Machine(const QString &parentFolder)
    : dir_(parentFolder + QStringLiteral("/machine-XXXXXX"))
{
    makeFolders();
}

Machine::Machine(const QString &parentFolder, const QString &homeName)
    : dir_((parentFolder.isEmpty() ? QDir::tempPath() : parentFolder) + QStringLiteral("/machine-XXXXXX"))
    , homeName_(homeName)
{
    makeFolders();
}

void Machine::makeFolders() const
{
    if (!dir_.isValid())
        throw std::runtime_error("cannot make a temporary folder");
    for (const char *folder : {"etc/xdg", "usr/share", "ProgramData", "bin", "wmic"})
        QDir(root()).mkpath(QString::fromLatin1(folder));
    for (const char *folder : {"/.config", "/.local/share"})
        QDir(root()).mkpath(homeName_ + QString::fromLatin1(folder));
}

QString Machine::root() const
{
    return dir_.path();
}

QString Machine::path(const QString &relativePath) const
{
    return root() + QLatin1Char('/') + relativePath;
}

QString Machine::homeName() const
{
    return homeName_;
}

QString Machine::binDir() const
{
    return path(QStringLiteral("bin"));
}

QProcessEnvironment Machine::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), path(homeName_));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path(homeName_ + QStringLiteral("/.config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), path(homeName_ + QStringLiteral("/.local/share")));
    environment.insert(QStringLiteral("XDG_CONFIG_DIRS"), path(QStringLiteral("etc/xdg")));
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), path(QStringLiteral("usr/share")));
    environment.insert(QStringLiteral("ProgramData"), path(QStringLiteral("ProgramData")));
    environment.insert(QStringLiteral("PATH"), binDir() + QStringLiteral(":/usr/bin:/bin"));
    return environment;
}

void Machine::writeFile(const QString &relativePath, const QByteArray &content) const
{
    QDir().mkpath(QFileInfo(path(relativePath)).path());
    writeBytes(path(relativePath), content);
}

QByteArray Machine::readFile(const QString &relativePath) const
{
    QFile file(path(relativePath));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

void Machine::installFakeWmic(const QByteArray &output, const QByteArray &errorOutput)
{
    const QString outputFile = path(QStringLiteral("wmic/stdout"));
    const QString errorFile = path(QStringLiteral("wmic/stderr"));
    writeBytes(outputFile, output);
    writeBytes(errorFile, errorOutput);
    const QString script =
        QStringLiteral("#!/bin/sh\n"
                       "printf '%s\\n' \"$@\" > %1\n"
                       "cat >/dev/null\n"
                       "cat %2\n"
                       "cat %3 >&2\n")
            .arg(shellQuoted(path(QStringLiteral("wmic/arguments"))), shellQuoted(outputFile), shellQuoted(errorFile));
    const QString wmic = path(QStringLiteral("bin/wmic.exe"));
    writeBytes(wmic, script.toUtf8());
    QFile::setPermissions(wmic, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString Machine::fakeWmicArguments() const
{
    QFile file(path(QStringLiteral("wmic/arguments")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}
