#include "SleepingProcess.h"

#include <QFile>

SleepingProcess::SleepingProcess(const QString &folder, const QString &imageName)
{
    const QString image = folder + QLatin1Char('/') + imageName;
    if (!QFile::exists(image))
        QFile::copy(QStringLiteral("/bin/sleep"), image);
    process_.start(image, {QStringLiteral("600")});
    process_.waitForStarted();
}

SleepingProcess::~SleepingProcess()
{
    process_.kill();
    process_.waitForFinished();
}

bool SleepingProcess::isRunning() const
{
    return process_.state() == QProcess::Running;
}
