#pragma once

#include "Machine.h"

#include <QByteArray>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// What one run of the real SuiteDeployer binary left behind.
struct DeployerRun
{
    bool exitedNormally = false;
    int exitCode = -1;
    QByteArray standardOutput;
    QByteArray standardError;
    bool hung = false;
};

// How long a run may take before it counts as hung and is killed.
constexpr int defaultHangGuardMilliseconds = 120000;

// Runs the binary on the machine and waits for it to end (a run that hangs is
// killed after the hang guard, two minutes unless told, and shows as hung and
// not exited normally).
DeployerRun runDeployer(const Machine &machine, const QStringList &arguments);
DeployerRun runDeployer(const QProcessEnvironment &environment, const QString &workingFolder,
                        const QStringList &arguments, int hangGuardMilliseconds = defaultHangGuardMilliseconds);

// Runs any program the way runDeployer runs the tool, for example the tool under another user.
DeployerRun runProgram(const QString &program, const QProcessEnvironment &environment, const QString &workingFolder,
                       const QStringList &arguments, int hangGuardMilliseconds = defaultHangGuardMilliseconds);

// The option value that carries a request object, as the wizard sends it.
QString encodeRequest(const QJsonObject &request);

// The JSON text inside an answer, and its object.
QByteArray answerText(const QByteArray &standardOutput);
QJsonObject decodeAnswer(const QByteArray &standardOutput);
