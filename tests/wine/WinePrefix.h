#pragma once

#include "DeployerRun.h"

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// The user of every prefix, unless a test names another.
inline const QString wineUserName = QStringLiteral("wizard");

// The fixed environment of every Windows program that the tests run: the
// user "wizard" (or the one named), American English, no display, no Mono,
// Gecko or menu builder, and nothing of the caller's desktop, language or
// Wine set-up.
QProcessEnvironment wineEnvironment(const QString &prefix, const QString &home, const QString &userName = wineUserName);

// Runs a Linux program, Wine's tools among them, and throws
// std::runtime_error with its error output when it fails or hangs.
void runChecked(const QProcessEnvironment &environment, const QString &program, const QStringList &arguments);

// Waits until the prefix's wineserver has ended, which writes the registry
// to the prefix's files; with `kill`, it is told to end first.
void stopWineServer(const QProcessEnvironment &environment, bool kill);

// A throw-away Wine prefix in a temporary folder, beside a home folder of its
// own, so that nothing of the user's ~/.wine, desktop or menus is touched. Its
// wineserver stays for the prefix's whole life, so that each program starts
// fast and the registry is the same for all of them. Every Windows program
// runs with the same fixed environment: the user "wizard", American English,
// no display, no Mono, Gecko or menu builder. So two prefixes made alike hold
// the same.
class WinePrefix
{
public:
    // Creates the prefix with wineboot; throws std::runtime_error when that fails.
    WinePrefix();
    // Ends the prefix's wineserver and its programs; the folder goes with
    // them unless KEEP_WINE_PREFIX is set, for a look after a failure.
    ~WinePrefix();
    WinePrefix(const WinePrefix &) = delete;
    WinePrefix &operator=(const WinePrefix &) = delete;

    static const QString userName;

    QString root() const;
    QString driveC() const;
    // "C:\folder\file" as the Linux path below drive_c; other drives give an empty string.
    QString linuxPath(const QString &windowsPath) const;
    QProcessEnvironment environment() const;

    // Runs a Windows program with its arguments and waits for it to end (see
    // runProgram for the hang guard). The program is a Windows path or a
    // name on Wine's search path; the working folder is a folder below
    // drive_c, or the prefix's own folder when empty.
    DeployerRun run(const QString &program, const QStringList &arguments, const QString &workingFolder = {}) const;

    // Wine's registry editor's export of one key with all below it, as UTF-8
    // text with LF line ends and without its header line; empty when the key
    // does not exist.
    QByteArray exportKey(const QString &key) const;
    // Imports a text in the registry editor's form with Wine's regedit.
    void importRegistry(const QByteArray &regText) const;

private:
    QTemporaryDir dir_;
};

// A Windows program that runs in the prefix until the object goes: started
// with a pipe on its standard input that the destructor closes, as the road's
// waiting helper expects. The constructor returns once the program has written
// its first line, so it shows in any process list taken afterwards.
class RunningWindowsProgram
{
public:
    RunningWindowsProgram(const WinePrefix &prefix, const QString &windowsPath);
    RunningWindowsProgram(const QProcessEnvironment &environment, const QString &workingFolder,
                          const QString &windowsPath, const QStringList &arguments = {});
    ~RunningWindowsProgram();
    RunningWindowsProgram(const RunningWindowsProgram &) = delete;
    RunningWindowsProgram &operator=(const RunningWindowsProgram &) = delete;

    // The first line it wrote, without its line end; empty when it never wrote one.
    QByteArray firstLine() const;

private:
    QProcess process_;
    QByteArray firstLine_;
};
