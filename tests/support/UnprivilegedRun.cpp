#include "UnprivilegedRun.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <stdexcept>

#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr uid_t unprivilegedId = 65534;

void handOver(const QString &path)
{
    if (::lchown(QFile::encodeName(path).constData(), unprivilegedId, unprivilegedId) != 0)
        throw std::runtime_error("cannot hand over " + path.toStdString());
}

void handOverTree(const QString &folder)
{
    handOver(folder);
    QDirIterator walk(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                      QDirIterator::Subdirectories);
    while (walk.hasNext())
        handOver(walk.next());
}

QString program(const QString &name)
{
    const QString path = QStandardPaths::findExecutable(name);
    if (path.isEmpty())
        throw std::runtime_error(name.toStdString() + " is needed to run the tool without rights as root");
    return path;
}

} // namespace

bool runsAsAnotherUser()
{
    return ::geteuid() == 0;
}

DeployerRun runDeployerWithoutRights(const Machine &machine, const QStringList &ownedFolders,
                                     const QStringList &arguments)
{
    return runDeployerWithoutRights(machine, machine.environment(), ownedFolders, arguments);
}

DeployerRun runDeployerWithoutRights(const Machine &machine, const QProcessEnvironment &environment,
                                     const QStringList &ownedFolders, const QStringList &arguments)
{
    if (!runsAsAnotherUser())
        return runDeployer(environment, machine.root(), arguments);
    QFile::setPermissions(machine.root(), QFile::permissions(machine.root()) | QFile::ReadOther | QFile::ExeOther);
    for (const QString &folder : ownedFolders)
        handOverTree(machine.path(folder));
    const QString id = QString::number(unprivilegedId);
    const QStringList asUser = {program("setpriv"),  "--reuid=" + id, "--regid=" + id, "--clear-groups", "--",
                                SUITEDEPLOYER_BINARY};
    // A run without rights may walk the file system from its root, as the
    // tool does with an empty root folder: it runs in a small world of the
    // system's files, the machine with what lies beside it, and the tool, so
    // that the walk is the same on every machine and as short.
    const QStringList kept = {QFileInfo(machine.root()).path(), QFileInfo(SUITEDEPLOYER_BINARY).path()};
    return runInSmallWorld(kept, environment, machine.root(), asUser + arguments);
}

DeployerRun runInSmallWorld(const QStringList &keptFolders, const QProcessEnvironment &environment,
                            const QString &workingFolder, const QStringList &command)
{
    const QStringList namespaces = {"--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--"};
    const QStringList smallWorld = QStringList{"/bin/sh", SMALL_WORLD_SCRIPT} + keptFolders + QStringList{"--"};
    return runProgram(program("unshare"), environment, workingFolder, namespaces + smallWorld + command);
}
