// The floor of the start-up benchmark: what any Qt Core program with the
// tool's shape must pay before it does its job. It makes the application
// object and a command-line parser, processes the command line, and reads
// and parses the same embedded catalogue as the tool. With --child it also
// starts one program, reads its output and waits for its end, as
// --background does with wmic.exe: the floor of that mode.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption child(QStringLiteral("child"), QStringLiteral("Starts this program"),
                                   QStringLiteral("program"));
    parser.addOption(child);
    parser.process(application);

    QFile catalogue(QStringLiteral(":/PluginsConfiguration.json"));
    if (!catalogue.open(QIODevice::ReadOnly) || QJsonDocument::fromJson(catalogue.readAll()).isNull())
        return 1;

    if (parser.isSet(child)) {
        QProcess process;
        process.start(parser.value(child), QStringList());
        process.waitForStarted();
        process.waitForFinished();
        process.readAll();
    }
    return 0;
}
