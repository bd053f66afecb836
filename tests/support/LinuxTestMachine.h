#pragma once

#include "Machine.h"
#include "TestMachine.h"

// The Linux build of the tool on a Machine in a temporary folder: each place
// is the folder that the Linux build derives from the machine's environment,
// and the registry is the machine's two hive files.
class LinuxTestMachine : public TestMachine
{
public:
    static const QString machineHive;
    static const QString userHive;

    LinuxTestMachine() = default;
    // A machine in a folder of the test's own, beside whatever else the test keeps there.
    explicit LinuxTestMachine(const QString &parentFolder)
        : machine_(parentFolder)
    {
    }
    // A machine whose user's home folder bears the user's name.
    LinuxTestMachine(const QString &parentFolder, const QString &userName)
        : machine_(parentFolder, userName)
    {
    }

    Kind kind() const override { return Kind::Linux; }
    QString path(Place place, const QString &relative = {}) const override;
    QString toolPath(Place place, const QString &relative = {}) const override;
    QString comparable(const QString &text) const override { return text; }

    void setSystemLocale(const QString &locale) override { locale_ = locale; }
    void seedRegistry(const QByteArray &sections) override;
    QSettings::SettingsMap registryValues(const QString &key) const override;
    QString linkTarget(const QString &linkPath) const override;

    std::unique_ptr<RunningProgram> startProgram(const QString &imageName) const override;
    std::unique_ptr<RunningProgram> holdFile(Place place, const QString &relative) const override;
    void installFakeWmic(const QByteArray &output, const QByteArray &errorOutput = {}) override;
    QString fakeWmicArguments() const override;

    // The machine itself, for the tests that only the Linux build can run.
    Machine &machine() { return machine_; }
    const Machine &machine() const { return machine_; }

protected:
    DeployerRun runTool(const QStringList &arguments, const QMap<QString, QString> &environment) const override;

private:
    QString hivePath(const QString &hive) const;

    Machine machine_;
    QString locale_;
};
