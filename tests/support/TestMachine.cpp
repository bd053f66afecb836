#include "TestMachine.h"

#include "RegistryHiveFormat.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

const QString logFolder = QStringLiteral("Tavrin/Orv Collection/logs");

QMap<QString, qint64> fileSizes(const QString &folder)
{
    QMap<QString, qint64> sizes;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
        sizes.insert(file.fileName(), file.size());
    return sizes;
}

// The bytes that the files of a folder gained since their sizes were taken.
QByteArray addedBytes(const QString &folder, const QMap<QString, qint64> &before)
{
    QByteArray added;
    for (const QFileInfo &info : QDir(folder).entryInfoList(QDir::Files, QDir::Name)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        file.seek(before.value(info.fileName(), 0));
        added += file.readAll();
    }
    return added;
}

} // namespace

ToolRun TestMachine::run(const QStringList &arguments, const QMap<QString, QString> &environment) const
{
    const QString logs = path(Place::RoamingAppData, logFolder);
    const QMap<QString, qint64> before = fileSizes(logs);
    ToolRun result;
    static_cast<DeployerRun &>(result) = runTool(arguments, environment);
    result.log = addedBytes(logs, before);
    return result;
}

ToolRun TestMachine::run(const QString &option, const QJsonObject &request) const
{
    return run(QStringList{option, encodeRequest(request)});
}

QByteArray TestMachine::log() const
{
    return addedBytes(path(Place::RoamingAppData, logFolder), {});
}

bool TestMachine::logContains(const QString &text) const
{
    return comparable(log()).contains(comparable(text).toUtf8());
}

void TestMachine::writeFile(Place place, const QString &relative, const QByteArray &content) const
{
    const QString file = path(place, relative);
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
        throw std::runtime_error("cannot write " + file.toStdString());
}

QByteArray TestMachine::readFile(Place place, const QString &relative) const
{
    QFile file(path(place, relative));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

bool TestMachine::exists(Place place, const QString &relative) const
{
    const QFileInfo info(path(place, relative));
    return info.exists() || info.isSymLink();
}

QStringList TestMachine::entries(Place place, const QString &relative) const
{
    return QDir(path(place, relative)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System, QDir::Name);
}

QSettings::SettingsMap TestMachine::valuesBelow(const QByteArray &hiveText, const QString &key)
{
    const QStringList names = registryHive::splitKeyPath(key);
    if (names.isEmpty())
        return {};
    const QString below = QStringList(names.mid(1)).join(QLatin1Char('/')) + QLatin1Char('/');
    QSettings::SettingsMap values;
    const QSettings::SettingsMap all = registryHive::parse(hiveText, names.first());
    for (auto value = all.begin(); value != all.end(); ++value) {
        if (value.key().startsWith(below, Qt::CaseInsensitive))
            values.insert(value.key().mid(below.size()), value.value());
    }
    return values;
}

ToolRun TestMachine::runQuietly(const QString &option, const QJsonObject &request,
                                const QMap<QString, QString> &environment) const
{
    const ToolRun result = run({option, encodeRequest(request)}, environment);
    expectRanQuietly(result);
    return result;
}

void expectRanQuietly(const DeployerRun &run)
{
    EXPECT_FALSE(run.hung);
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput, "");
}
