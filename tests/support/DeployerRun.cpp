#include "DeployerRun.h"

#include <QJsonDocument>
#include <QProcess>

DeployerRun runDeployer(const Machine &machine, const QStringList &arguments)
{
    return runDeployer(machine.environment(), machine.root(), arguments);
}

DeployerRun runDeployer(const QProcessEnvironment &environment, const QString &workingFolder,
                        const QStringList &arguments, int hangGuardMilliseconds)
{
    return runProgram(QStringLiteral(SUITEDEPLOYER_BINARY), environment, workingFolder, arguments,
                      hangGuardMilliseconds);
}

DeployerRun runProgram(const QString &program, const QProcessEnvironment &environment, const QString &workingFolder,
                       const QStringList &arguments, int hangGuardMilliseconds)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingFolder);
    process.start(program, arguments);
    process.closeWriteChannel();
    DeployerRun run;
    if (!process.waitForFinished(hangGuardMilliseconds)) {
        // Also a program that never started ends here, without hanging.
        run.hung = process.state() != QProcess::NotRunning;
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitedNormally = process.exitStatus() == QProcess::NormalExit;
    run.exitCode = process.exitCode();
    run.standardOutput = process.readAllStandardOutput();
    run.standardError = process.readAllStandardError();
    return run;
}

QString encodeRequest(const QJsonObject &request)
{
    return QString::fromLatin1(QJsonDocument(request).toJson(QJsonDocument::Compact).toBase64());
}

QByteArray answerText(const QByteArray &standardOutput)
{
    return QByteArray::fromBase64(standardOutput, QByteArray::AbortOnBase64DecodingErrors);
}

QJsonObject decodeAnswer(const QByteArray &standardOutput)
{
    return QJsonDocument::fromJson(answerText(standardOutput)).object();
}
