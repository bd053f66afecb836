#include "WineTestMachine.h"

#include "ShellLink.h"
#include "WinePrefix.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <unistd.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

constexpr int toolHangGuardMilliseconds = 120000;

const QString deployer = QStringLiteral("C:\\setup\\SuiteDeployer.exe");
const QString launcher = QStringLiteral("C:\\setup\\WizardLauncher.exe");
const QString scratch = QStringLiteral("C:\\machine");
const QString wmicFolder = QStringLiteral("C:\\windows\\system32\\wbem");

} // namespace

QString WineTestMachine::placeFolder(Place place) const
{
    const QString profile = QStringLiteral("C:\\users\\") + userName_;
    switch (place) {
    case Place::RoamingAppData:
        return profile + QStringLiteral("\\AppData\\Roaming");
    case Place::LocalAppData:
        return profile + QStringLiteral("\\AppData\\Local");
    case Place::ProgramData:
        return QStringLiteral("C:\\ProgramData");
    case Place::StartMenu:
        return QStringLiteral("C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs");
    case Place::CommonPictures:
        return QStringLiteral("C:\\users\\Public\\Pictures");
    case Place::Scratch:
    case Place::WorkingFolder:
        break;
    }
    return scratch;
}

namespace {

// cp and the like, with the test's own environment.
void runLinuxTool(const QString &program, const QStringList &arguments)
{
    runChecked(QProcessEnvironment::systemEnvironment(), program, arguments);
}

void hardLink(const QString &from, const QString &to)
{
    QDir().mkpath(QFileInfo(to).path());
    QFile::remove(to);
    if (::link(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        throw std::runtime_error("cannot link " + from.toStdString() + " to " + to.toStdString());
}

QString makeTemplatePrefix(const QString &folder, const QString &userName)
{
    const QString prefix = folder + QStringLiteral("/prefix");
    QDir().mkpath(prefix);
    const QProcessEnvironment environment = wineEnvironment(prefix, folder + QStringLiteral("/home"), userName);
    runChecked(environment, QStringLiteral(WINE_LOADER), {QStringLiteral("wineboot"), QStringLiteral("--init")});
    // Only a server that has ended has written the registry into the prefix's files.
    stopWineServer(environment, false);
    QFile::remove(prefix + QStringLiteral("/drive_c/windows/system32/wbem/wmic.exe"));
    return prefix;
}

// The prefix that every machine of this test program for that user copies:
// for the usual user the one that the environment names, or one made here
// once per user, since wineboot names the profile folder after the user.
QString templatePrefix(const QString &userName)
{
    static const QString given = qEnvironmentVariable("SUITEDEPLOYER_WINE_TEMPLATE");
    if (!given.isEmpty() && userName == WinePrefix::userName)
        return given;
    static std::map<QString, std::pair<std::unique_ptr<QTemporaryDir>, QString>> made;
    auto &entry = made[userName];
    if (!entry.first) {
        entry.first = std::make_unique<QTemporaryDir>();
        entry.second = makeTemplatePrefix(entry.first->path(), userName);
    }
    return entry.second;
}

} // namespace

WineTestMachine::WineTestMachine(const QString &userName)
    : userName_(userName)
{
    if (!dir_.isValid())
        throw std::runtime_error("cannot make a temporary folder");
    dir_.setAutoRemove(!qEnvironmentVariableIsSet("KEEP_WINE_PREFIX"));
    const QString from = templatePrefix(userName);
    QDir().mkpath(driveC());
    runLinuxTool(QStringLiteral("cp"), {QStringLiteral("-al"), from + QStringLiteral("/drive_c/windows"), driveC()});
    for (const QString &entry :
         QDir(from + QStringLiteral("/drive_c")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        if (entry != QStringLiteral("windows"))
            runLinuxTool(QStringLiteral("cp"),
                         {QStringLiteral("-a"), from + QStringLiteral("/drive_c/") + entry, driveC()});
    }
    for (const QString &entry : QDir(from).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) {
        if (entry != QStringLiteral("drive_c"))
            runLinuxTool(QStringLiteral("cp"), {QStringLiteral("-a"), from + QLatin1Char('/') + entry, prefix()});
    }
    QFile::remove(linuxPath(wmicFolder + QStringLiteral("\\wmic.exe")));
    hardLink(QStringLiteral(SUITEDEPLOYER_WINDOWS_PROGRAM), linuxPath(deployer));
    hardLink(QStringLiteral(WIZARD_LAUNCHER), linuxPath(launcher));
    QDir().mkpath(path(Place::Scratch));
    environment_ = wineEnvironment(prefix(), dir_.path() + QStringLiteral("/home"), userName_);
}

WineTestMachine::~WineTestMachine()
{
    stopWineServer(environment_, true);
}

QString WineTestMachine::prefix() const
{
    return dir_.path() + QStringLiteral("/prefix");
}

QString WineTestMachine::driveC() const
{
    return prefix() + QStringLiteral("/drive_c");
}

QString WineTestMachine::linuxPath(const QString &windowsPath) const
{
    return driveC() + QLatin1Char('/') + windowsPath.mid(3).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

QString WineTestMachine::path(Place place, const QString &relative) const
{
    return linuxPath(toolPath(place, relative));
}

QString WineTestMachine::toolPath(Place place, const QString &relative) const
{
    QString result = placeFolder(place);
    if (!relative.isEmpty())
        result += QLatin1Char('\\') + QString(relative).replace(QLatin1Char('/'), QLatin1Char('\\'));
    return result;
}

QString WineTestMachine::comparable(const QString &text) const
{
    return QString(text)
        .replace(QLatin1Char('\\'), QLatin1Char('/'))
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

// Wine takes the user's locale from the locale variables of each program it starts.
void WineTestMachine::setSystemLocale(const QString &locale)
{
    environment_.remove(QStringLiteral("LANGUAGE"));
    environment_.remove(QStringLiteral("LANG"));
    environment_.insert(QStringLiteral("LC_ALL"), locale);
}

void WineTestMachine::seedRegistry(const QByteArray &sections)
{
    // Wine's registry editor reads a version 5 file as UTF-16 with a byte-order mark.
    const QString text =
        QStringLiteral("Windows Registry Editor Version 5.00\r\n\r\n") +
        QString::fromUtf8(sections).remove(QLatin1Char('\r')).replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    const QString file = dir_.path() + QStringLiteral("/seed.reg");
    QFile out(file);
    const QByteArray bytes =
        QByteArray("\xff\xfe") + QByteArray(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + file.toStdString());
    out.close();
    const DeployerRun run = runWindowsProgram(
        QStringLiteral("regedit"),
        {QStringLiteral("/S"), QStringLiteral("Z:") + QString(file).replace(QLatin1Char('/'), QLatin1Char('\\'))});
    if (!run.exitedNormally || run.exitCode != 0)
        throw std::runtime_error("regedit could not import " + file.toStdString());
}

QSettings::SettingsMap WineTestMachine::registryValues(const QString &key) const
{
    const QString file = dir_.path() + QStringLiteral("/export.reg");
    QFile::remove(file);
    const DeployerRun run = runWindowsProgram(
        QStringLiteral("reg"),
        {QStringLiteral("export"), key,
         QStringLiteral("Z:") + QString(file).replace(QLatin1Char('/'), QLatin1Char('\\')), QStringLiteral("/y")});
    QFile exported(file);
    if (!run.exitedNormally || run.exitCode != 0 || !exported.open(QIODevice::ReadOnly))
        return {};
    return valuesBelow(exported.readAll(), key);
}

QString WineTestMachine::linkTarget(const QString &linkPath) const
{
    const QFileInfo link(linkPath);
    if (link.isSymLink())
        return link.symLinkTarget();
    QFile file(linkPath);
    if (!link.isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const ShellLink shellLink = readShellLink(file.readAll());
    return shellLink.valid ? shellLink.target : QString();
}

namespace {

class WaitingProgram : public RunningProgram
{
public:
    WaitingProgram(const QProcessEnvironment &environment, const QString &workingFolder, const QString &windowsPath,
                   const QStringList &arguments = {})
        : program_(environment, workingFolder, windowsPath, arguments)
    {
    }
    bool isRunning() const override { return program_.firstLine() == "running"; }

private:
    RunningWindowsProgram program_;
};

} // namespace

std::unique_ptr<RunningProgram> WineTestMachine::startProgram(const QString &imageName) const
{
    const QString image = toolPath(Place::Scratch, QStringLiteral("bin/") + imageName);
    if (!QFile::exists(linuxPath(image)))
        hardLink(QStringLiteral(WAITING_HELPER), linuxPath(image));
    return std::make_unique<WaitingProgram>(environment_, path(Place::WorkingFolder), image);
}

std::unique_ptr<RunningProgram> WineTestMachine::holdFile(Place place, const QString &relative) const
{
    const QString image = toolPath(Place::Scratch, QStringLiteral("bin/Holder.exe"));
    if (!QFile::exists(linuxPath(image)))
        hardLink(QStringLiteral(WAITING_HELPER), linuxPath(image));
    return std::make_unique<WaitingProgram>(environment_, path(Place::WorkingFolder), image,
                                            QStringList{toolPath(place, relative)});
}

void WineTestMachine::installFakeWmic(const QByteArray &output, const QByteArray &errorOutput)
{
    installFakeWmicIn(wmicFolder, output, errorOutput);
}

QString WineTestMachine::fakeWmicArguments() const
{
    return fakeWmicRecord(wmicFolder, QStringLiteral("arguments"));
}

void WineTestMachine::installFakeWmicIn(const QString &folder, const QByteArray &output, const QByteArray &errorOutput)
{
    const QString data = linuxPath(folder + QStringLiteral("\\fake-wmic"));
    QDir().mkpath(data);
    for (const auto &[name, bytes] : {std::pair{"stdout", output}, std::pair{"stderr", errorOutput}}) {
        QFile file(data + QLatin1Char('/') + QLatin1String(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("cannot write the fake wmic's " + std::string(name));
    }
    // A new file where the template's hard link stood: the template stays as it is.
    const QString program = linuxPath(folder + QStringLiteral("\\wmic.exe"));
    QFile::remove(program);
    if (!QFile::copy(QStringLiteral(FAKE_WMIC), program))
        throw std::runtime_error("cannot put the fake wmic.exe in place");
}

QString WineTestMachine::fakeWmicRecord(const QString &folder, const QString &name) const
{
    QFile file(linuxPath(folder + QStringLiteral("\\fake-wmic\\") + name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

DeployerRun WineTestMachine::runWindowsProgram(const QString &program, const QStringList &arguments) const
{
    return runProgram(QStringLiteral(WINE_LOADER), environment_, path(Place::WorkingFolder),
                      QStringList{program} + arguments, toolHangGuardMilliseconds);
}

DeployerRun WineTestMachine::runTool(const QStringList &arguments, const QMap<QString, QString> &environment) const
{
    QStringList launch;
    for (auto variable = environment.begin(); variable != environment.end(); ++variable) {
        if (variable.value().isNull())
            launch << QStringLiteral("--unset") << variable.key();
        else
            launch << QStringLiteral("--set") << variable.key() + QLatin1Char('=') + variable.value();
    }
    launch << QStringLiteral("--") << deployer;
    return runProgram(QStringLiteral(WINE_LOADER), environment_, path(Place::WorkingFolder),
                      QStringList{launcher} + launch + arguments);
}
