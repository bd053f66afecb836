#include "WinePrefix.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace {

// How long the prefix's own tools (wineboot, reg, regedit, wineserver) may take before they count as hung.
constexpr int toolHangGuardMilliseconds = 120000;

QString prefixFolder(const QTemporaryDir &dir)
{
    return dir.path() + QStringLiteral("/prefix");
}

QString homeFolder(const QTemporaryDir &dir)
{
    return dir.path() + QStringLiteral("/home");
}

// The Linux path as Wine's drive Z: shows it, which maps the root folder.
QString onDriveZ(const QString &linuxPath)
{
    return QStringLiteral("Z:") + QString(linuxPath).replace(QLatin1Char('/'), QLatin1Char('\\'));
}

QString registryText(const QByteArray &exported)
{
    QString text;
    if (exported.startsWith("\xff\xfe"))
        text =
            QString::fromUtf16(reinterpret_cast<const char16_t *>(exported.constData() + 2), (exported.size() - 2) / 2);
    else
        text = QString::fromUtf8(exported);
    text.remove(QLatin1Char('\r'));
    const QString header = QStringLiteral("Windows Registry Editor Version 5.00\n\n");
    if (text.startsWith(header))
        text.remove(0, header.size());
    return text;
}

} // namespace

void runChecked(const QProcessEnvironment &environment, const QString &program, const QStringList &arguments)
{
    const DeployerRun run = runProgram(program, environment, QDir::tempPath(), arguments, toolHangGuardMilliseconds);
    if (!run.exitedNormally || run.exitCode != 0)
        throw std::runtime_error((program + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')) +
                                  QStringLiteral(" failed: ") + QString::fromLocal8Bit(run.standardError))
                                     .toStdString());
}

void stopWineServer(const QProcessEnvironment &environment, bool kill)
{
    const QStringList options =
        kill ? QStringList{QStringLiteral("-k"), QStringLiteral("-w")} : QStringList{QStringLiteral("-w")};
    for (const QString &option : options) {
        QProcess server;
        server.setProcessEnvironment(environment);
        server.start(QStringLiteral(WINE_SERVER), {option});
        if (!server.waitForFinished(toolHangGuardMilliseconds))
            server.kill();
        server.waitForFinished();
    }
}

const QString WinePrefix::userName = wineUserName;

QProcessEnvironment wineEnvironment(const QString &prefix, const QString &home, const QString &userName)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith(QStringLiteral("LC_")) || name.startsWith(QStringLiteral("WINE")) ||
            name.startsWith(QStringLiteral("XDG_")))
            environment.remove(name);
    }
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home + QStringLiteral("/.cache"));
    // Wine names the profile folder C:\users\<USER>.
    environment.insert(QStringLiteral("USER"), userName);
    environment.insert(QStringLiteral("LOGNAME"), userName);
    environment.insert(QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8"));
    // Wine reads the Linux file names in the code set of LC_CTYPE's locale:
    // one that isn't installed, as en_US.UTF-8 often isn't, leaves it ASCII,
    // and a folder named in UTF-8 from Linux is then another folder for Windows.
    environment.insert(QStringLiteral("LC_CTYPE"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("WINEPREFIX"), prefix);
    environment.insert(QStringLiteral("WINESERVER"), QStringLiteral(WINE_SERVER));
    environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    // No installer dialogues for Mono and Gecko, and no Linux menu entries for
    // the start-menu links that the program makes.
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml=;winemenubuilder.exe=d"));
    return environment;
}

WinePrefix::WinePrefix()
{
    if (!dir_.isValid())
        throw std::runtime_error("cannot make a temporary folder");
    dir_.setAutoRemove(!qEnvironmentVariableIsSet("KEEP_WINE_PREFIX"));
    // Wine creates the prefix in an empty folder that is ours; a server that
    // stays until it is told to end is started into it first.
    QDir().mkpath(prefixFolder(dir_));
    QDir().mkpath(homeFolder(dir_));
    runChecked(environment(), QStringLiteral(WINE_SERVER), {QStringLiteral("-p")});
    runChecked(environment(), QStringLiteral(WINE_LOADER), {QStringLiteral("wineboot"), QStringLiteral("--init")});
    if (!QFileInfo(driveC()).isDir())
        throw std::runtime_error("wineboot made no drive C in " + root().toStdString());
}

WinePrefix::~WinePrefix()
{
    stopWineServer(environment(), true);
}

QString WinePrefix::root() const
{
    return prefixFolder(dir_);
}

QString WinePrefix::driveC() const
{
    return root() + QStringLiteral("/drive_c");
}

QString WinePrefix::linuxPath(const QString &windowsPath) const
{
    if (!windowsPath.startsWith(QStringLiteral("C:\\"), Qt::CaseInsensitive))
        return {};
    return driveC() + QLatin1Char('/') + windowsPath.mid(3).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

QProcessEnvironment WinePrefix::environment() const
{
    return wineEnvironment(root(), homeFolder(dir_));
}

DeployerRun WinePrefix::run(const QString &program, const QStringList &arguments, const QString &workingFolder) const
{
    return runProgram(QStringLiteral(WINE_LOADER), environment(), workingFolder.isEmpty() ? root() : workingFolder,
                      QStringList{program} + arguments);
}

QByteArray WinePrefix::exportKey(const QString &key) const
{
    const QString file = dir_.path() + QStringLiteral("/export.reg");
    QFile::remove(file);
    const DeployerRun exported =
        runProgram(QStringLiteral(WINE_LOADER), environment(), root(),
                   {QStringLiteral("reg"), QStringLiteral("export"), key, onDriveZ(file), QStringLiteral("/y")},
                   toolHangGuardMilliseconds);
    if (!exported.exitedNormally)
        throw std::runtime_error("reg export " + key.toStdString() + " did not end");
    QFile text(file);
    if (exported.exitCode != 0 || !text.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = text.readAll();
    text.remove();
    return registryText(content).toUtf8();
}

void WinePrefix::importRegistry(const QByteArray &regText) const
{
    const QString file = dir_.path() + QStringLiteral("/import.reg");
    QFile text(file);
    if (!text.open(QIODevice::WriteOnly) || text.write(regText) != regText.size())
        throw std::runtime_error("cannot write " + file.toStdString());
    text.close();
    runChecked(environment(), QStringLiteral(WINE_LOADER),
               {QStringLiteral("regedit"), QStringLiteral("/S"), onDriveZ(file)});
    text.remove();
}

RunningWindowsProgram::RunningWindowsProgram(const WinePrefix &prefix, const QString &windowsPath)
    : RunningWindowsProgram(prefix.environment(), prefix.root(), windowsPath)
{
}

RunningWindowsProgram::RunningWindowsProgram(const QProcessEnvironment &environment, const QString &workingFolder,
                                             const QString &windowsPath, const QStringList &arguments)
{
    process_.setProcessEnvironment(environment);
    process_.setWorkingDirectory(workingFolder);
    process_.start(QStringLiteral(WINE_LOADER), QStringList{windowsPath} + arguments);
    // A hang guard only: the line comes within a second.
    while (process_.state() != QProcess::NotRunning && !process_.canReadLine() &&
           process_.waitForReadyRead(defaultHangGuardMilliseconds)) {}
    if (process_.canReadLine())
        firstLine_ = process_.readLine().trimmed();
}

RunningWindowsProgram::~RunningWindowsProgram()
{
    process_.closeWriteChannel();
    if (!process_.waitForFinished(defaultHangGuardMilliseconds))
        process_.kill();
    process_.waitForFinished();
}

QByteArray RunningWindowsProgram::firstLine() const
{
    return firstLine_;
}
