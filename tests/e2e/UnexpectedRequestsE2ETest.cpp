#include "DeployerRun.h"
#include "FolderState.h"
#include "LinuxTestMachine.h"
#include "RegistryHiveFormat.h"
#include "RequestGenerator.h"
#include "SuiteRoot.h"
#include "TestMachine.h"
#include "UnprivilegedRun.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <random>
#include <stdexcept>

namespace {

// Replay another sequence with SUITEDEPLOYER_REQUEST_SEED; the same seed gives the same requests.
constexpr std::uint64_t defaultSeed = 20261121;
// Linux takes at most 128 KiB for one argument, so no request can be larger;
// Windows takes 32767 UTF-16 units for the whole command line, the program's
// name included.
constexpr int largestArgument = 131072 - 1;
constexpr int largestWindowsCommandLine = 32767 - 100;
// A run under the sanitizers costs several plain ones: there the first half
// of each sequence runs, the same requests as in the plain build.
#if defined(__SANITIZE_ADDRESS__)
constexpr int runShare = 2;
#else
constexpr int runShare = 1;
#endif
// A share of the runs go without rights, and only those may make the tool
// work at the file system's root, as an empty root folder or host folder does.
// Under Wine that root is the throw-away prefix's drive C:, and every run
// goes with the rights of the prefix's one user.
constexpr int withoutRightsPercent = 15;
// A run of the Windows program under Wine costs several of the Linux build's:
// there every tenth run of each sequence runs.
constexpr int wineRunShare = 10;

const QStringList products = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                              "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};
const QString logFolder = "Tavrin/Orv Collection/logs";
const QString lightroomPreferences = "Adobe/Lightroom/Preferences";
const QString locationsKey = "SOFTWARE/WOW6432Node/Tavrin/Orv Collection/Locations/";
const QString applicationsKey = "SOFTWARE/WOW6432Node/Microsoft/Windows/CurrentVersion/Uninstall/Orv Collection/"
                                "Applications/";

std::uint64_t baseSeed()
{
    bool given = false;
    const std::uint64_t seed = qEnvironmentVariable("SUITEDEPLOYER_REQUEST_SEED").toULongLong(&given, 0);
    return given ? seed : defaultSeed;
}

// Each run has a seed of its own, so that a run's request doesn't depend on how many numbers earlier ones drew.
std::uint64_t runSeed(std::uint64_t base, const QString &mode, int index)
{
    std::seed_seq sequence{std::uint32_t(base), std::uint32_t(base >> 32), std::uint32_t(qHash(mode)),
                           std::uint32_t(index)};
    std::uint32_t words[2];
    sequence.generate(words, words + 2);
    return (std::uint64_t(words[0]) << 32) | words[1];
}

// The request as the tool reads it out of the option's value.
QJsonObject requestInside(const QString &optionValue)
{
    return QJsonDocument::fromJson(QByteArray::fromBase64(optionValue.toLatin1())).object();
}

bool hasText(const QJsonObject &request, const QString &key)
{
    return !request.value(key).toString().isEmpty();
}

bool namesKnownProductsOnly(const QJsonObject &request)
{
    for (const QJsonValue &plugin : request.value("plugins").toArray()) {
        if (!products.contains(plugin.toString()))
            return false;
    }
    return true;
}

bool hasHostWithoutFolder(const QJsonObject &request)
{
    for (const QJsonValue &host : request.value("hosts").toArray()) {
        if (host.toObject().value("pluginPath").toString().isEmpty())
            return true;
    }
    return false;
}

QString shown(const QByteArray &bytes)
{
    QByteArray text = bytes.left(400);
    for (char &byte : text) {
        if (byte >= 0 && byte < ' ')
            byte = '.';
    }
    return QString::fromUtf8(text) + (bytes.size() > 400 ? QString(" ... (%1 bytes)").arg(bytes.size()) : QString());
}

QString describe(const QString &mode, std::uint64_t seed, int index, const QStringList &arguments, bool withoutRights)
{
    QString text =
        QString("seed %1, %2 run %3%4:").arg(seed).arg(mode).arg(index).arg(withoutRights ? " without rights" : "");
    for (const QString &argument : arguments) {
        text += "\n  argument " + shown(argument.toUtf8());
        const int equals = argument.startsWith("--") ? argument.indexOf('=') : -1;
        const QByteArray request = QByteArray::fromBase64(argument.mid(equals + 1).toLatin1());
        if (!request.isEmpty() && (equals > 0 || !argument.startsWith('-')))
            text += "\n  decoded  " + shown(request);
    }
    return text;
}

// The newest log file and how much it holds.
struct LogMark
{
    QString name;
    qint64 size = 0;
};

// One run of the tool: its command line and whether it runs without rights.
struct Invocation
{
    QStringList arguments;
    bool withoutRights = false;
};

bool fitsOnACommandLine(const Invocation &invocation, TestMachine::Kind kind)
{
    int windowsLength = 0;
    for (const QString &argument : invocation.arguments) {
        if (argument.toUtf8().size() >= largestArgument)
            return false;
        // Quoted, with every quote and backslash escaped at worst.
        windowsLength += 2 * argument.size() + 3;
    }
    return kind == TestMachine::Kind::Linux || windowsLength < largestWindowsCommandLine;
}

enum class Answer { None, Object };

// A mode under test: what its runs need on the machine, and how to make one run's command line.
struct Mode
{
    QString name;
    Answer answer;
    std::function<void(RequestGenerator &)> prepare;
    std::function<Invocation(RequestGenerator &)> invocation;
};

void writeFileAt(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

// The keys of a hive as sections in the registry editor's form, without the header.
QByteArray sectionsOf(const QSettings::SettingsMap &values, const QString &hiveName)
{
    const QByteArray hive = registryHive::write(values, hiveName);
    return hive.mid(hive.indexOf('['));
}

// The machine lies in a folder of the test's own, beside a folder "outside"
// that paths of the requests climb to. Whatever a run does, nothing in that
// folder but the machine may change. Under Wine the machine is the prefix's
// drive C:, and "outside" a folder on it that the tool has no reason to write.
class UnexpectedRequestsE2ETest : public testing::Test
{
protected:
    UnexpectedRequestsE2ETest()
        : machine(newTestMachineIn(parent.path()))
    {
        // The user without rights must reach the machine.
        QFile::setPermissions(parent.path(), QFile::permissions(parent.path()) | QFile::ReadOther | QFile::ExeOther);
        makeOutside();
        suiteRoot::create(machine->path(Place::Scratch, "suite"));
        QDir().mkpath(machine->path(Place::Scratch, "hosts"));
        machine->writeFile(Place::Scratch, "plain.txt", "a file where a folder is expected\n");
        machine->writeFile(Place::Scratch, "locked/pictures/1033/Locked.jpg", "jpg\n");
        machine->writeFile(Place::Scratch, "locked/appData/locked.dat", "data\n");
        QFile::setPermissions(machine->path(Place::Scratch, "locked"), QFile::Permissions());
        outsideBefore = outsideState();
    }

    ~UnexpectedRequestsE2ETest() override
    {
        QFile::setPermissions(machine->path(Place::Scratch, "locked"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // "outside" beside the machine's Scratch place, as this process reaches it and as the tool names it.
    QString outsidePath() const { return QFileInfo(machine->path(Place::Scratch)).path() + "/outside"; }

    void makeOutside() const
    {
        const QString outside = outsidePath();
        writeFileAt(outside + "/notes.txt", "kept as it is\n");
        writeFileAt(outside + "/data/deeper/readme.md", "# beside the machine\n");
        writeFileAt(outside + "/filters/Beside.8bf", "a plug-in that isn't the suite's\n");
        writeFileAt(outside + "/private/secret.bin", QByteArray("\0\1\2\3", 4));
        writeFileAt(outside + "/readonly.txt", "read only\n");
        QDir(outside).mkpath("empty");
        QFile::link("notes.txt", outside + "/notes.link");
        QFile::setPermissions(outside + "/readonly.txt", QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
        QFile::setPermissions(outside + "/private", QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // The places as the requests name them; the Windows program takes '/' as well as '\\'.
    RequestPlaces places() const
    {
        const QString scratch = QString(machine->toolPath(Place::Scratch)).replace('\\', '/');
        return {scratch,
                scratch + "/suite",
                scratch + "/hosts",
                QFileInfo(scratch).path() + "/outside",
                scratch + "/plain.txt",
                scratch + "/locked"};
    }

    QString outsideState() const
    {
        if (machine->isWine())
            return folderState(outsidePath());
        return folderState(parent.path(), {QFileInfo(machine->path(Place::Scratch)).fileName()});
    }

    const Machine &linuxMachine() const { return dynamic_cast<const LinuxTestMachine &>(*machine).machine(); }

    // Replaces the Linux build's hives; under Wine the keys are added to the registry.
    void writeRegistry(const QSettings::SettingsMap &machineKeys, const QSettings::SettingsMap &userKeys = {}) const
    {
        if (machine->isWine()) {
            machine->seedRegistry(sectionsOf(machineKeys, "HKEY_LOCAL_MACHINE") +
                                  sectionsOf(userKeys, "HKEY_CURRENT_USER"));
            return;
        }
        linuxMachine().writeFile(LinuxTestMachine::machineHive, registryHive::write(machineKeys, "HKEY_LOCAL_MACHINE"));
        if (!userKeys.isEmpty())
            linuxMachine().writeFile(LinuxTestMachine::userHive, registryHive::write(userKeys, "HKEY_CURRENT_USER"));
    }

    LogMark logMark() const
    {
        const QDir logs(machine->path(Place::RoamingAppData, logFolder));
        const QStringList names = logs.entryList(QDir::Files, QDir::Name);
        if (names.isEmpty())
            return {};
        return {names.last(), QFileInfo(logs.filePath(names.last())).size()};
    }

    static bool logGrew(const LogMark &before, const LogMark &after)
    {
        return after.name > before.name || (after.name == before.name && after.size > before.size);
    }

    DeployerRun run(const Invocation &invocation) const
    {
        if (invocation.withoutRights && !machine->isWine())
            return runDeployerWithoutRights(linuxMachine(), {"home"}, invocation.arguments);
        return machine->run(invocation.arguments);
    }

    void check(const Invocation &invocation, Answer answer)
    {
        const LogMark before = logMark();
        const DeployerRun result = run(invocation);
        EXPECT_FALSE(result.hung) << "killed after " << defaultHangGuardMilliseconds / 1000 << " s";
        EXPECT_TRUE(result.exitedNormally);
        EXPECT_EQ(result.exitCode, 0);
        for (const char *report : {"ERROR: AddressSanitizer", "runtime error:", "LeakSanitizer"})
            EXPECT_FALSE(result.standardError.contains(report))
                << shown(result.standardError.right(3000)).toStdString();
        EXPECT_TRUE(logGrew(before, logMark())) << "no log line written";
        EXPECT_EQ(outsideState().toStdString(), outsideBefore.toStdString());
        if (answer == Answer::None)
            EXPECT_EQ(result.standardOutput, "");
        else
            EXPECT_FALSE(decodeAnswer(result.standardOutput).isEmpty()) << result.standardOutput.toStdString();
    }

    void runRequests(const Mode &mode, int count)
    {
        const std::uint64_t seed = baseSeed();
        QElapsedTimer timer;
        timer.start();
        int ran = 0;
        int withoutRights = 0;
        int tooLarge = 0;
        const int share = machine->isWine() ? wineRunShare : runShare;
        for (int index = 0; index < count / share && !HasFailure(); ++index) {
            RequestGenerator generator(runSeed(seed, mode.name, index), places());
            Invocation invocation = mode.invocation(generator);
            for (; !fitsOnACommandLine(invocation, machine->kind()); ++tooLarge)
                invocation = mode.invocation(generator);
            mode.prepare(generator);
            SCOPED_TRACE(
                describe(mode.name, seed, index, invocation.arguments, invocation.withoutRights).toStdString());
            check(invocation, mode.answer);
            ++ran;
            withoutRights += invocation.withoutRights && !machine->isWine() ? 1 : 0;
        }
        std::cout << "[ requests ] " << mode.name.toStdString() << ": " << ran << " runs, " << withoutRights
                  << " of them without rights, " << tooLarge
                  << " requests too large for a command line made anew; SUITEDEPLOYER_REQUEST_SEED " << seed << ", "
                  << timer.elapsed() << " ms" << std::endl;
    }

    // The option as the wizard may write it: long, short, or with its value after "=".
    static QStringList option(RequestGenerator &generator, const QString &longName, const QString &value)
    {
        // The parser would take a value that looks like an option for one.
        if (value.isEmpty() || value.startsWith('-') || generator.chance(30))
            return {"--" + longName + "=" + value};
        return {generator.chance(50) ? "--" + longName : "-" + longName.left(1), value};
    }

    QJsonValue hostRecord(RequestGenerator &generator, bool folderOptional) const
    {
        if (folderOptional && generator.chance(10))
            return generator.anyValue(1);
        QJsonObject host;
        generator.put(host, "appName", [&] { return generator.oddText(); });
        if (folderOptional)
            generator.put(host, "pluginPath", [&] { return generator.targetFolder(); });
        else
            host.insert("pluginPath", generator.targetFolder());
        generator.put(host, "type", [&] { return generator.number(); });
        generator.addExtraKeys(host);
        return host;
    }

    static QJsonValue compactHost(RequestGenerator &generator)
    {
        return QJsonObject{{"pluginPath", QString("hosts/h%1").arg(generator.below(24))}, {"type", generator.below(4)}};
    }

    // Mostly one of the languages, so that the runs get past the check of the language.
    static QJsonValue language(RequestGenerator &generator)
    {
        return generator.chance(60) ? QJsonValue(generator.below(17)) : generator.number();
    }

    // Without a root folder the tool would search the file system from its root for what a product names.
    QJsonArray plugins(RequestGenerator &generator, bool rooted) const
    {
        const auto known = [&] { return QJsonValue(generator.pick(products)); };
        const auto any = [&] {
            return generator.chance(85) ? QJsonValue(generator.productName(products)) : generator.anyValue(1);
        };
        return rooted ? generator.manyOf(any, known) : generator.manyOf(known, known);
    }

    // Never run a request that would have the tool search the file system from its root.
    static void keepToTheSandbox(const QJsonObject &request)
    {
        if (!hasText(request, "rootDir") && !namesKnownProductsOnly(request))
            throw std::logic_error("a product name without a root folder");
    }

    Invocation installInvocation(RequestGenerator &generator) const
    {
        const bool withoutRights = generator.chance(withoutRightsPercent);
        QJsonObject request;
        if (withoutRights)
            generator.put(request, "rootDir", [&] { return generator.sourceFolder(); });
        else
            request.insert("rootDir", generator.sourceFolder());
        const bool rooted = hasText(request, "rootDir");
        generator.put(request, "isUpdate",
                      [&] { return generator.chance(50) ? QString("true") : generator.oddText(); });
        generator.put(request, "hosts", [&] {
            return generator.manyOf([&] { return hostRecord(generator, withoutRights); },
                                    [&] { return compactHost(generator); });
        });
        generator.put(request, "plugins", [&] { return plugins(generator, rooted); });
        generator.put(request, "language", [&] { return language(generator); });
        generator.put(request, "localAppDataDir",
                      [&] { return generator.chance(30) ? QString() : generator.targetFolder(); });
        generator.put(request, "version", [&] { return generator.oddText(); });
        generator.put(request, "mixpanelEnabled", [&] { return generator.chance(50); });
        generator.addExtraKeys(request);
        const QString value = generator.optionValue(request);
        const QJsonObject inside = requestInside(value);
        keepToTheSandbox(inside);
        const bool reachesRoot = !hasText(inside, "rootDir") || hasHostWithoutFolder(inside);
        return {option(generator, "install", value), withoutRights || reachesRoot || generator.namedLockedFolder()};
    }

    Invocation samplesInvocation(RequestGenerator &generator) const
    {
        QJsonObject request;
        generator.put(request, "rootDir", [&] { return generator.sourceFolder(); });
        generator.put(request, "lang", [&] { return language(generator); });
        generator.addExtraKeys(request);
        const QString value = generator.optionValue(request);
        // An empty root folder makes the tool take the pictures from the file system's root.
        const bool reachesRoot = !hasText(requestInside(value), "rootDir");
        return {option(generator, "samples", value),
                reachesRoot || generator.namedLockedFolder() || generator.chance(withoutRightsPercent)};
    }

    Invocation configInvocation(RequestGenerator &generator) const
    {
        QJsonObject request;
        generator.put(request, "rootDir", [&] { return generator.sourceFolder(); });
        const bool rooted = hasText(request, "rootDir");
        generator.put(request, "plugins", [&] { return plugins(generator, rooted); });
        generator.put(request, "hosts", [&] {
            return generator.manyOf([&] { return hostRecord(generator, true); },
                                    [&] { return compactHost(generator); });
        });
        generator.put(request, "language", [&] { return language(generator); });
        generator.put(request, "version", [&] { return generator.oddText(); });
        generator.addExtraKeys(request);
        const QString value = generator.optionValue(request);
        keepToTheSandbox(requestInside(value));
        return {option(generator, "config", value),
                generator.namedLockedFolder() || generator.chance(withoutRightsPercent)};
    }

    Invocation uninstallInvocation(RequestGenerator &generator) const
    {
        QJsonObject request;
        generator.put(request, "keepPreferences",
                      [&] { return generator.chance(50) ? QJsonValue("false") : QJsonValue(generator.oddText()); });
        generator.addExtraKeys(request);
        return {option(generator, "uninstall", generator.optionValue(request)), generator.chance(withoutRightsPercent)};
    }

    Invocation resetConfigInvocation(RequestGenerator &generator) const
    {
        // Arguments can't carry a NUL character.
        return {option(generator, "resetConfig", generator.oddText().remove(QChar(0))),
                generator.chance(withoutRightsPercent)};
    }

    // Words that the parser takes for positional arguments, which every mode ignores.
    static QStringList positionalArguments(RequestGenerator &generator)
    {
        QStringList arguments;
        for (int count = generator.below(4); count > 0; --count) {
            const QString word = generator.oddText().remove(QChar(0));
            arguments.append(word.startsWith('-') ? "x" + word : word);
        }
        return arguments;
    }

    // What an installation and the config mode leave behind, for the uninstallation to take away:
    // recorded host folders of every kind, thousands of them at times, and values of megabytes.
    void prepareUninstallation(RequestGenerator &generator) const
    {
        QSettings::SettingsMap hive;
        QJsonArray folders =
            generator.manyOf([&] { return generator.chance(50) ? generator.targetFolder() : generator.sourceFolder(); },
                             [&] { return QString("hosts/h%1").arg(generator.below(24)); });
        if (generator.chance(3))
            folders.append(generator.targetFolder() + QString(2000000, 'm'));
        for (int index = 0; index < folders.size(); ++index) {
            hive.insert(locationsKey + QString("%1_Path").arg(index), folders.at(index).toString());
            hive.insert(locationsKey + QString("%1_Name").arg(index), generator.oddText(false));
        }
        hive.insert(locationsKey + generator.oddText(false).remove('/') + "Path", generator.targetFolder());
        for (const QString &product : products) {
            if (generator.chance(60))
                hive.insert(applicationsKey + product, generator.sourceFolder());
        }
        writeRegistry(hive);
        const QString host = QString("hosts/h%1/").arg(generator.below(24));
        for (const QString &file :
             {host + "Tavrin/Rectilo/Rectilo.8bf.lnk", host + "Modules/PluginParam.lrplugin/Info.lua",
              host + "Export Presets/Orv Collection/x.lrtemplate"})
            machine->writeFile(Place::Scratch, file, "x");
        machine->writeFile(Place::StartMenu, "Tavrin Orv Collection/Tintara 5.lnk", "x");
        machine->writeFile(Place::CommonPictures, "Rectilo Samples/Sign.jpg", "x");
        machine->writeFile(Place::ProgramData, "Tavrin/Orv Collection/OrvCollection.cfg", "x");
        for (const QString &product : products) {
            if (!generator.chance(40))
                continue;
            for (const QString &file : {"Tavrin/" + product + "/crash_reports/1.dmp", "Tavrin/" + product + "/LastEdit",
                                        "Tavrin/" + product + "/Presets/Mine.preset", product + "/cache/c.bin"})
                machine->writeFile(Place::LocalAppData, file, "x");
        }
    }

    // The suite's keys and others in both hives, thousands of values at times, some of megabytes.
    void prepareSettings(RequestGenerator &generator) const
    {
        QSettings::SettingsMap machineKeys;
        QSettings::SettingsMap userKeys;
        const QStringList machineGroups = {"SOFTWARE/WOW6432Node/Tavrin/Orv Collection/",
                                           "SOFTWARE/WOW6432Node/Tavrin/Other/", "SOFTWARE/Tavrin/Rectilo/",
                                           "SOFTWARE/WOW6432Node/Microsoft/Windows/CurrentVersion/Uninstall/"
                                           "Orv Collection/"};
        const QStringList userGroups = {"SOFTWARE/Tavrin/Orv Collection/", "SOFTWARE/Tavrin/Zonal Tool/",
                                        "SOFTWARE/Tavrin/Zonal Palette/", "SOFTWARE/Tavrin/", "Software/Other/"};
        const int count = generator.chance(5) ? 3000 : generator.below(12);
        for (int index = 0; index < count; ++index) {
            const QString name = QString("v%1").arg(index) + generator.oddText(false).remove('/');
            const QString value = generator.oddText(count < 100);
            machineKeys.insert(generator.pick(machineGroups) + name, value);
            userKeys.insert(generator.pick(userGroups) + name,
                            generator.chance(50) ? QVariant(value) : QVariant(index));
        }
        if (generator.chance(5))
            machineKeys.insert(generator.pick(machineGroups) + "megabytes", QString(1500000, 'v'));
        // Levels that leave out the first line would leave a run without a trace in its log.
        userKeys.insert("SOFTWARE/Tavrin/Orv Collection/app_loglevel",
                        generator.pick({"trace", "debug", "info", "TRACE", "warn", generator.oddText(false)}));
        writeRegistry(machineKeys, userKeys);
    }

    // Host applications of odd names and folders, for the environment report to find.
    void prepareHosts(RequestGenerator &generator) const
    {
        QSettings::SettingsMap hive;
        const int count = generator.chance(10) ? 2000 : generator.below(6);
        for (int index = 0; index < count; ++index) {
            const QString version =
                generator.chance(50) ? QString("%1.0").arg(generator.below(200)) : generator.oddText(false).remove('/');
            const QString folder = generator.chance(50) ? generator.targetFolder() : generator.oddText();
            if (generator.chance(50))
                hive.insert("SOFTWARE/Adobe/Photoshop/" + version + "/PluginPath", folder);
            else
                hive.insert("SOFTWARE/Adobe/Photoshop Elements/" + version + "/PluginPath/.", folder);
        }
        writeRegistry(hive);
        QDir(machine->path(Place::RoamingAppData, lightroomPreferences)).removeRecursively();
        for (int count = generator.below(3); count > 0; --count) {
            QString name = generator.oddText(false).remove('/').remove(QChar(0));
            while (name.toUtf8().size() > 200)
                name.chop(1);
            if (!name.isEmpty() && name != "." && name != "..")
                machine->writeFile(Place::RoamingAppData, lightroomPreferences + "/" + name, "prefs");
        }
    }

    // What a wmic might print: odd lines, other line ends, bytes of any value.
    void prepareProcessList(RequestGenerator &generator)
    {
        QByteArray output = generator.chance(70) ? "Caption\r\r\n" : "";
        for (int count = generator.chance(5) ? 20000 : generator.below(8); count > 0; --count) {
            const QString name =
                generator.chance(40)
                    ? generator.pick({"Photoshop.exe", "Lightroom.exe", "Tintara 5.exe", "RectiloGraymere"})
                    : generator.oddText(false);
            output += name.toUtf8() + generator.pick({"\r\r\n", "\n", "\r\n", "", " \t"}).toLatin1();
        }
        machine->installFakeWmic(output, generator.chance(20) ? generator.oddText().toUtf8() : QByteArray());
    }

    QTemporaryDir parent;
    const std::unique_ptr<TestMachine> machine;
    QString outsideBefore;
};

} // namespace

TEST_F(UnexpectedRequestsE2ETest, Install)
{
    runRequests({"install", Answer::None, [&](RequestGenerator &) { suiteRoot::create(places().suite); },
                 [&](RequestGenerator &generator) { return installInvocation(generator); }},
                300);
}

TEST_F(UnexpectedRequestsE2ETest, Samples)
{
    runRequests({"samples", Answer::None, [&](RequestGenerator &) { suiteRoot::create(places().suite); },
                 [&](RequestGenerator &generator) { return samplesInvocation(generator); }},
                300);
}

TEST_F(UnexpectedRequestsE2ETest, Config)
{
    // The hive keeps the hosts of every run; starting afresh now and then keeps the runs short.
    const auto prepare = [&](RequestGenerator &generator) {
        if (generator.chance(25) && !machine->isWine())
            QFile::remove(linuxMachine().path(LinuxTestMachine::machineHive));
    };
    runRequests(
        {"config", Answer::None, prepare, [&](RequestGenerator &generator) { return configInvocation(generator); }},
        300);
}

TEST_F(UnexpectedRequestsE2ETest, Uninstall)
{
    runRequests({"uninstall", Answer::None, [&](RequestGenerator &generator) { prepareUninstallation(generator); },
                 [&](RequestGenerator &generator) { return uninstallInvocation(generator); }},
                300);
}

TEST_F(UnexpectedRequestsE2ETest, ResetConfig)
{
    runRequests({"resetConfig", Answer::None, [&](RequestGenerator &generator) { prepareSettings(generator); },
                 [&](RequestGenerator &generator) { return resetConfigInvocation(generator); }},
                200);
}

TEST_F(UnexpectedRequestsE2ETest, Report)
{
    runRequests({"report", Answer::Object, [&](RequestGenerator &generator) { prepareHosts(generator); },
                 [&](RequestGenerator &generator) {
                     return Invocation{positionalArguments(generator), generator.chance(withoutRightsPercent)};
                 }},
                150);
}

TEST_F(UnexpectedRequestsE2ETest, Background)
{
    runRequests({"background", Answer::Object, [&](RequestGenerator &generator) { prepareProcessList(generator); },
                 [&](RequestGenerator &generator) {
                     return Invocation{QStringList{generator.chance(50) ? "--background" : "-b"} +
                                           positionalArguments(generator),
                                       generator.chance(withoutRightsPercent)};
                 }},
                150);
}

// A recursive walk of a path with a NUL character never came back: Qt lists
// the folder before the NUL over and over.
TEST_F(UnexpectedRequestsE2ETest, ARootFolderWithANulCharacterEndsTheRun)
{
    check({{"--samples", encodeRequest({{"rootDir", places().suite + QChar(0) + "/pictures"}})}}, Answer::None);
}

// Windows resolves ".." as text. Here a folder that a path climbed through
// beside the machine was made on the way.
TEST_F(UnexpectedRequestsE2ETest, AFolderThatAPathClimbsThroughIsNotMade)
{
    const QString backIn = places().outside + "/missing/../../" + QFileInfo(places().machine).fileName() + "/data";
    check({{"--install", encodeRequest({{"rootDir", places().suite}, {"language", 1}, {"localAppDataDir", backIn}})}},
          Answer::None);
    EXPECT_TRUE(machine->exists(Place::Scratch, "data/Tavrin/Orv Collection"));
}
