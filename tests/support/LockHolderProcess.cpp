#include "LockHolderProcess.h"

namespace {

constexpr int hangGuardMilliseconds = 60000;

} // namespace

LockHolderProcess::LockHolderProcess(const QStringList &arguments, const QProcessEnvironment &environment)
{
    process_.setProcessEnvironment(environment);
    process_.start(LOCK_HOLDER, arguments);
}

LockHolderProcess::~LockHolderProcess()
{
    kill();
}

bool LockHolderProcess::holds()
{
    if (!process_.waitForStarted(hangGuardMilliseconds))
        return false;
    while (!process_.canReadLine()) {
        if (process_.state() != QProcess::Running || !process_.waitForReadyRead(hangGuardMilliseconds))
            return false;
    }
    return process_.readLine() == "held\n";
}

void LockHolderProcess::kill()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.kill();
    process_.waitForFinished(hangGuardMilliseconds);
}
