#pragma once

#include "TestMachine.h"
#include "WinePrefix.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

// SuiteDeployer.exe in a throw-away Wine prefix: a copy of one prefix that
// wineboot made for the whole test program (or the one that
// SUITEDEPLOYER_WINE_TEMPLATE names), with the exe at C:\setup, a folder of
// the test's own at C:\machine, which is also the working folder, and
// Wine's wmic.exe taken away, so that the tool lists the processes itself
// until a test puts a wmic.exe of its own there. The folders of Windows are
// hard links to the template's, which nothing here writes; everything else is
// the machine's own. Its wineserver ends with the machine.
class WineTestMachine : public TestMachine
{
public:
    // A machine whose one user bears that name, and so its profile folder.
    explicit WineTestMachine(const QString &userName = WinePrefix::userName);
    ~WineTestMachine() override;
    WineTestMachine(const WineTestMachine &) = delete;
    WineTestMachine &operator=(const WineTestMachine &) = delete;

    Kind kind() const override { return Kind::Wine; }
    QString path(Place place, const QString &relative = {}) const override;
    QString toolPath(Place place, const QString &relative = {}) const override;
    QString comparable(const QString &text) const override;

    void setSystemLocale(const QString &locale) override;
    void seedRegistry(const QByteArray &sections) override;
    QSettings::SettingsMap registryValues(const QString &key) const override;
    QString linkTarget(const QString &linkPath) const override;

    std::unique_ptr<RunningProgram> startProgram(const QString &imageName) const override;
    std::unique_ptr<RunningProgram> holdFile(Place place, const QString &relative) const override;
    void installFakeWmic(const QByteArray &output, const QByteArray &errorOutput = {}) override;
    QString fakeWmicArguments() const override;

    // A stand-in wmic.exe (FakeWmic) in this folder ("C:\setup") that prints
    // these bytes, as installFakeWmic puts one in the system's wbem folder;
    // and what one there recorded ("arguments", "program"), empty when it never ran.
    void installFakeWmicIn(const QString &folder, const QByteArray &output, const QByteArray &errorOutput = {});
    QString fakeWmicRecord(const QString &folder, const QString &name) const;

    QString driveC() const;
    // "C:\folder\file" as the Linux path below drive_c.
    QString linuxPath(const QString &windowsPath) const;
    // Runs a Windows program of the machine and waits for it to end.
    DeployerRun runWindowsProgram(const QString &program, const QStringList &arguments) const;

protected:
    DeployerRun runTool(const QStringList &arguments, const QMap<QString, QString> &environment) const override;

private:
    QString prefix() const;
    QString placeFolder(Place place) const;

    QTemporaryDir dir_;
    QProcessEnvironment environment_;
    QString userName_;
};
