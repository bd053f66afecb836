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
};

// Runs the binary on the machine and waits for it to end (a run that hangs is
// killed after two minutes and shows as not exited normally).
DeployerRun runDeployer(const Machine &machine, const QStringList &arguments);
DeployerRun runDeployer(const QProcessEnvironment &environment, const QString &workingFolder,
                        const QStringList &arguments);

// Runs any program the way runDeployer runs the tool, for example the tool under another user.
DeployerRun runProgram(const QString &program, const QProcessEnvironment &environment, const QString &workingFolder,
                       const QStringList &arguments);

// The option value that carries a request object, as the wizard sends it.
QString encodeRequest(const QJsonObject &request);

// The JSON text inside an answer, and its object.
QByteArray answerText(const QByteArray &standardOutput);
QJsonObject decodeAnswer(const QByteArray &standardOutput);
