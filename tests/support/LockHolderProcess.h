#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// A lock_holder process (see LockHolder.cpp), killed at the latest when this ends.
class LockHolderProcess
{
public:
    LockHolderProcess(const QStringList &arguments, const QProcessEnvironment &environment);
    ~LockHolderProcess();
    LockHolderProcess(const LockHolderProcess &) = delete;
    LockHolderProcess &operator=(const LockHolderProcess &) = delete;

    // Waits until it says that it holds its lock; false if it ended or hung instead.
    bool holds();
    // Ends it the hard way, as a crash or the task manager would, and waits for its end.
    void kill();

private:
    QProcess process_;
};
