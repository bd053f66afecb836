#pragma once

#include <QProcess>
#include <QString>

// A real process whose image name is chosen by the test: a copy of /bin/sleep
// under that name in the given folder. It runs until the object is destroyed.
class SleepingProcess
{
public:
    SleepingProcess(const QString &folder, const QString &imageName);
    ~SleepingProcess();
    SleepingProcess(const SleepingProcess &) = delete;
    SleepingProcess &operator=(const SleepingProcess &) = delete;

    bool isRunning() const;

private:
    QProcess process_;
};
