#include "LinuxTestMachine.h"

#include "RegistryHiveFormat.h"
#include "SleepingProcess.h"

#include <QFile>
#include <QFileInfo>

namespace {

const QByteArray hiveHeader = "Windows Registry Editor Version 5.00\n\n";

QString placeFolder(Place place, const QString &home)
{
    switch (place) {
    case Place::RoamingAppData:
        return home + QStringLiteral("/.config");
    case Place::LocalAppData:
        return home + QStringLiteral("/.local/share");
    case Place::ProgramData:
        return QStringLiteral("ProgramData");
    case Place::StartMenu:
        return QStringLiteral("usr/share/applications");
    case Place::CommonPictures:
        return home + QStringLiteral("/Pictures");
    case Place::Scratch:
    case Place::WorkingFolder:
        break;
    }
    return {};
}

// The sections of one hive out of a text that may name both.
QByteArray sectionsOf(const QByteArray &sections, const QByteArray &hiveName)
{
    QByteArray taken;
    bool inHive = false;
    for (const QByteArray &line : sections.split('\n')) {
        if (line.startsWith('['))
            inHive = line.mid(1).startsWith(hiveName + '\\') || line.mid(1).startsWith(hiveName + ']');
        if (inHive)
            taken += line + '\n';
    }
    return taken;
}

class SleepingProgram : public RunningProgram
{
public:
    SleepingProgram(const QString &folder, const QString &imageName)
        : process_(folder, imageName)
    {
    }
    bool isRunning() const override { return process_.isRunning(); }

private:
    SleepingProcess process_;
};

class OpenFile : public RunningProgram
{
public:
    explicit OpenFile(const QString &path)
        : file_(path)
    {
        file_.open(QIODevice::ReadOnly);
    }
    bool isRunning() const override { return file_.isOpen(); }

private:
    QFile file_;
};

} // namespace

const QString LinuxTestMachine::machineHive = QStringLiteral("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg");
const QString LinuxTestMachine::userHive = QStringLiteral("home/.config/winreg/HKEY_CURRENT_USER.reg");

namespace {

// The user's hive below the home folder, wherever that is.
const QString userHiveInHome = QStringLiteral("/.config/winreg/HKEY_CURRENT_USER.reg");

} // namespace

QString LinuxTestMachine::path(Place place, const QString &relative) const
{
    const QString folder = placeFolder(place, machine_.homeName());
    QString result = folder.isEmpty() ? machine_.root() : machine_.path(folder);
    if (!relative.isEmpty())
        result += QLatin1Char('/') + relative;
    return result;
}

// The user's hive moves along with the home folder.
QString LinuxTestMachine::hivePath(const QString &hive) const
{
    return hive == userHive ? machine_.homeName() + userHiveInHome : hive;
}

QString LinuxTestMachine::toolPath(Place place, const QString &relative) const
{
    return path(place, relative);
}

void LinuxTestMachine::seedRegistry(const QByteArray &sections)
{
    for (const QString &hive : {machineHive, userHive}) {
        const QByteArray hiveName = QFileInfo(hive).completeBaseName().toLatin1();
        const QByteArray added = sectionsOf(sections, hiveName);
        if (added.isEmpty())
            continue;
        const QString file = hivePath(hive);
        const QByteArray existing = QFileInfo::exists(machine_.path(file)) ? machine_.readFile(file) : QByteArray();
        if (existing.isEmpty()) {
            // Word for word, as a hive file that other programs wrote would stand.
            machine_.writeFile(file, hiveHeader + added);
            continue;
        }
        QSettings::SettingsMap values = registryHive::parse(existing, hiveName);
        const QSettings::SettingsMap addedValues = registryHive::parse(hiveHeader + added, hiveName);
        for (auto value = addedValues.begin(); value != addedValues.end(); ++value)
            values.insert(value.key(), value.value());
        machine_.writeFile(file, registryHive::write(values, hiveName));
    }
}

QSettings::SettingsMap LinuxTestMachine::registryValues(const QString &key) const
{
    const bool machineKey = key.startsWith(QStringLiteral("HKEY_LOCAL_MACHINE"), Qt::CaseInsensitive);
    return valuesBelow(machine_.readFile(hivePath(machineKey ? machineHive : userHive)), key);
}

QString LinuxTestMachine::linkTarget(const QString &linkPath) const
{
    const QFileInfo link(linkPath);
    return link.isSymLink() ? link.symLinkTarget() : QString();
}

std::unique_ptr<RunningProgram> LinuxTestMachine::startProgram(const QString &imageName) const
{
    return std::make_unique<SleepingProgram>(machine_.binDir(), imageName);
}

std::unique_ptr<RunningProgram> LinuxTestMachine::holdFile(Place place, const QString &relative) const
{
    return std::make_unique<OpenFile>(path(place, relative));
}

void LinuxTestMachine::installFakeWmic(const QByteArray &output, const QByteArray &errorOutput)
{
    machine_.installFakeWmic(output, errorOutput);
}

QString LinuxTestMachine::fakeWmicArguments() const
{
    return machine_.fakeWmicArguments();
}

DeployerRun LinuxTestMachine::runTool(const QStringList &arguments, const QMap<QString, QString> &environment) const
{
    QProcessEnvironment runEnvironment = machine_.environment();
    if (!locale_.isEmpty()) {
        runEnvironment.remove(QStringLiteral("LANGUAGE"));
        runEnvironment.remove(QStringLiteral("LANG"));
        runEnvironment.insert(QStringLiteral("LC_ALL"), locale_);
    }
    for (auto variable = environment.begin(); variable != environment.end(); ++variable) {
        if (variable.value().isNull())
            runEnvironment.remove(variable.key());
        else
            runEnvironment.insert(variable.key(), variable.value());
    }
    return runDeployer(runEnvironment, machine_.root(), arguments);
}
