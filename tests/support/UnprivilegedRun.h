#pragma once

#include "DeployerRun.h"
#include "Machine.h"

#include <QProcessEnvironment>
#include <QStringList>

// Runs the tool as a user without machine rights, who owns only the named
// folders of the machine (relative to its root). Root ignores file modes, so
// as root the run goes through setpriv as uid and gid 65534 after those
// folders have been handed to that user; any other user has no such rights
// anyway and runs the tool as it is. Either way the test makes read-only what
// must stay so. As root the run also sees a small file system of its own: the
// system's programs, libraries and settings, the folder that holds the
// machine, and the tool (tests/support/run-in-small-world.sh).
DeployerRun runDeployerWithoutRights(const Machine &machine, const QStringList &ownedFolders,
                                     const QStringList &arguments);
DeployerRun runDeployerWithoutRights(const Machine &machine, const QProcessEnvironment &environment,
                                     const QStringList &ownedFolders, const QStringList &arguments);

// Runs a command, as root, in the small world that runs without rights see:
// the system's files and the kept folders, nothing else.
DeployerRun runInSmallWorld(const QStringList &keptFolders, const QProcessEnvironment &environment,
                            const QString &workingFolder, const QStringList &command);

// Whether runDeployerWithoutRights changes the user, which only root can.
bool runsAsAnotherUser();
