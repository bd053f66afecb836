#include "WmicCommand.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

namespace {

const QString wmicCommand = QStringLiteral("wmic.exe /OUTPUT:STDOUT PROCESS get Caption");
constexpr int waitMilliseconds = 30000;

} // namespace

QByteArray runWmicCommand()
{
    QProcess process;
    process.setReadChannel(QProcess::StandardOutput);
    process.setProcessChannelMode(QProcess::MergedChannels);
    QStringList arguments = QProcess::splitCommand(wmicCommand);
    const QString program = arguments.takeFirst();
    process.start(program, arguments, QIODevice::ReadWrite);
    // wmic reads its input to the end before it exits when that input is a
    // pipe; an open pipe would hold it until the wait below runs out.
    process.closeWriteChannel();
    // Neither wait is checked: after a time-out the list is what was printed so far.
    process.waitForStarted(waitMilliseconds);
    process.waitForFinished(waitMilliseconds);
    return process.readAll();
}

bool isWmicOnPath()
{
    const QString program = QProcess::splitCommand(wmicCommand).constFirst();
    return !QStandardPaths::findExecutable(program).isEmpty();
}
