#include "WmicCommand.h"

#include <QProcess>
#include <QStringList>

namespace {

const QStringList wmicArguments = {QStringLiteral("/OUTPUT:STDOUT"), QStringLiteral("PROCESS"), QStringLiteral("get"),
                                   QStringLiteral("Caption")};
constexpr int waitMilliseconds = 30000;

} // namespace

QByteArray runWmicCommand(const QString &program)
{
    QProcess process;
    process.setReadChannel(QProcess::StandardOutput);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, wmicArguments, QIODevice::ReadWrite);
    // wmic reads its input to the end before it exits when that input is a
    // pipe; an open pipe would hold it until the wait below runs out.
    process.closeWriteChannel();
    // Neither wait is checked: after a time-out the list is what was printed so far.
    process.waitForStarted(waitMilliseconds);
    process.waitForFinished(waitMilliseconds);
    return process.readAll();
}
