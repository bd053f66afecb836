#include "UnprivilegedRun.h"

#include <QDirIterator>
#include <QFile>
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

QString setprivProgram()
{
    const QString setpriv = QStandardPaths::findExecutable(QStringLiteral("setpriv"));
    if (setpriv.isEmpty())
        throw std::runtime_error("setpriv is needed to run the tool without rights as root");
    return setpriv;
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
    const QStringList asUser = {"--reuid=" + id, "--regid=" + id, "--clear-groups", "--", SUITEDEPLOYER_BINARY};
    return runProgram(setprivProgram(), environment, machine.root(), asUser + arguments);
}
