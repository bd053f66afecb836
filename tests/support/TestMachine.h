#pragma once

#include "DeployerRun.h"

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QStringList>

#include <memory>
#include <ostream>

// The places of a machine that the tool reads and writes (docs/places.md),
// and one of the test's own for suite roots, host folders and the like.
enum class Place {
    Scratch,
    RoamingAppData,
    LocalAppData,
    ProgramData,
    StartMenu,
    CommonPictures,
    WorkingFolder,
};

// What one run of the tool left behind, and the lines its run added to the log.
struct ToolRun : DeployerRun
{
    QByteArray log;
};

// A program that runs on the machine under an image name of the test's choice
// until the object goes, so that the process probe sees it.
class RunningProgram
{
public:
    virtual ~RunningProgram() = default;
    virtual bool isRunning() const = 0;
};

// A throw-away machine that the end-to-end tests run the real tool on,
// whichever build it is: the Linux build on a machine in a temporary folder
// (LinuxTestMachine), or SuiteDeployer.exe in a throw-away Wine prefix
// (WineTestMachine). newTestMachine() makes the one that the test program
// was built for, so that every test runs on both.
class TestMachine
{
public:
    enum class Kind { Linux, Wine };

    virtual ~TestMachine() = default;
    virtual Kind kind() const = 0;
    bool isWine() const { return kind() == Kind::Wine; }

    // A place, or a path below it ("Tavrin/Rectilo"), as this test process
    // reaches it on the Linux file system.
    virtual QString path(Place place, const QString &relative = {}) const = 0;
    // The same place as the tool names it: in requests, log lines and registry values.
    virtual QString toolPath(Place place, const QString &relative = {}) const = 0;
    // A text with paths in it as it compares across the builds: the Windows
    // program joins paths with both separators, so they are folded into '/',
    // and ends its log lines with CR LF, which is folded into LF.
    virtual QString comparable(const QString &text) const = 0;
    QByteArray comparable(const QByteArray &text) const { return comparable(QString::fromUtf8(text)).toUtf8(); }

    // Runs the tool with these arguments and waits for it to end; the hang
    // guard of runDeployer applies. `environment` sets variables for this
    // run (a null value unsets one).
    ToolRun run(const QStringList &arguments, const QMap<QString, QString> &environment = {}) const;
    // The option with the request as its value, as the wizard sends it.
    ToolRun run(const QString &option, const QJsonObject &request) const;
    // The same for a mode that prints no answer, expecting it to end as it
    // should (expectRanQuietly).
    ToolRun runQuietly(const QString &option, const QJsonObject &request,
                       const QMap<QString, QString> &environment = {}) const;

    // The system's language and region for the runs that follow, as a POSIX
    // locale name ("sv_SE.UTF-8"); the Windows program's system takes it from
    // the same name.
    virtual void setSystemLocale(const QString &locale) = 0;

    // Every log file of the tool below the roaming folder, oldest first.
    QByteArray log() const;
    // Whether the log holds the text, with paths compared as comparable() says.
    bool logContains(const QString &text) const;

    // Adds the keys and values of a text in the registry editor's form
    // ("[HKEY_LOCAL_MACHINE\SOFTWARE\...]" sections, "name"="text",
    // "name"=dword:0000000a, @=), without the header line.
    virtual void seedRegistry(const QByteArray &sections) = 0;
    // Every value below a key ("HKEY_CURRENT_USER\SOFTWARE\Tavrin"), named by
    // its path below that key with '/' ("Orv Collection/currentLanguage");
    // a default value is the name ".". Empty when the key is not there.
    virtual QSettings::SettingsMap registryValues(const QString &key) const = 0;

    // What a start-menu or plug-in link points to, as the tool named it: a
    // symbolic link on Linux, a shell link file on Windows. Empty when the
    // path holds no link.
    virtual QString linkTarget(const QString &linkPath) const = 0;

    // A running program of that image name, such as "Photoshop.exe".
    virtual std::unique_ptr<RunningProgram> startProgram(const QString &imageName) const = 0;
    // A running program that holds the file open without sharing it, as a
    // running host holds its plug-ins, until the object goes. Only Windows
    // keeps others from a file so; on Linux the file is merely open.
    virtual std::unique_ptr<RunningProgram> holdFile(Place place, const QString &relative) const = 0;
    // Puts a wmic.exe where the tool looks for it: on the search path of the
    // Linux machine, in the system folder's wbem folder of the Wine machine.
    // It records its arguments, one a line, reads its input to the end, as
    // Windows' wmic does when that input is a pipe, and then prints these
    // bytes on its output and error channels.
    virtual void installFakeWmic(const QByteArray &output, const QByteArray &errorOutput = {}) = 0;
    // The arguments it recorded; empty when it never ran.
    virtual QString fakeWmicArguments() const = 0;

    // Conveniences over path().
    void writeFile(Place place, const QString &relative, const QByteArray &content) const;
    QByteArray readFile(Place place, const QString &relative) const;
    bool exists(Place place, const QString &relative = {}) const;
    // The names in a folder, files, folders and links alike, in name order.
    QStringList entries(Place place, const QString &relative = {}) const;

protected:
    // The values below a key, as registryValues() gives them, out of a text in
    // the registry editor's form that holds the key's hive.
    static QSettings::SettingsMap valuesBelow(const QByteArray &hiveText, const QString &key);

    virtual DeployerRun runTool(const QStringList &arguments, const QMap<QString, QString> &environment) const = 0;
};

// Qt's texts as GoogleTest prints them in a failure: readable, in UTF-8.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

// A run of a mode without answer that ended as it should: by itself, in time,
// with 0 and nothing on standard output.
void expectRanQuietly(const DeployerRun &run);

// The machine of the build that this test program drives, and its kind.
std::unique_ptr<TestMachine> newTestMachine();
// One whose Scratch place lies in a folder of the test's own, beside whatever
// else the test keeps there; the Wine machine's lies on its drive C: anyway.
std::unique_ptr<TestMachine> newTestMachineIn(const QString &parentFolder);
// One whose user bears that name, and so do the user's folders: the home
// folder on Linux, the profile folder under Wine.
std::unique_ptr<TestMachine> newTestMachineFor(const QString &userName);
TestMachine::Kind testMachineKind();

// Ends a test that needs what only the Linux build's machine has, under Wine,
// with the reason in one line (docs/windows-and-linux.md lists them all).
#define SKIP_UNDER_WINE(reason)                                                                                        \
    if (testMachineKind() == TestMachine::Kind::Wine)                                                                  \
    GTEST_SKIP() << "Under Wine: " << (reason)
