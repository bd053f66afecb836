#include "FrontEnd.h"

#include "Catalogue.h"
#include "CatalogueJson.h"
#include "EmbeddedResources.h"
#include "EnvironmentReport.h"
#include "ModeOptions.h"
#include "RequestCodec.h"
#include "RunningProcesses.h"
#include "StandardOutput.h"
#include "logging/Utils.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegExp>

namespace {

const std::string logFileName = "SuiteDeployer.log";
const std::string loggerName = "app";
constexpr std::uint32_t traceLevel = 0;
const QString cataloguePath = QStringLiteral(":/PluginsConfiguration.json");
const QString backgroundKey = QStringLiteral("background");
// "RectiloGraymere" has no bar inside, so Rectilo and Graymere are only
// reported when one name directly follows the other; the wizard has always
// been answered this way.
const QString blockingApplications = QStringLiteral(
    "Tintara|Grainwick|Lumbrio|ACU3|Quietar|RectiloGraymere|Bracketon|Photoshop|Lightroom");

QJsonObject backgroundAnswer()
{
    QJsonObject answer;
    const QRegExp filter(blockingApplications, Qt::CaseSensitive, QRegExp::RegExp);
    answer.insert(backgroundKey, QJsonArray::fromStringList(runningProcesses(filter, QRegExp())));
    return answer;
}

void printAnswer(const QJsonObject &answer)
{
    standardOutput() << encodeAnswer(answer);
}

} // namespace

int runSuiteDeployer(int &argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    // Every run logs, also one that the parser then rejects; where the log
    // went is in its first line.
    kelp::logging::initLogging(logFileName, loggerName, traceLevel);

    registerEmbeddedResources();
    const ModeOptions options;
    options.addTo(parser);
    parser.process(application);

    const QJsonObject catalogueJson = loadCatalogueJson(cataloguePath);
    const Catalogue catalogue(catalogueJson);

    switch (options.selectedMode(parser)) {
    case Mode::Background:
        printAnswer(backgroundAnswer());
        break;
    case Mode::Report:
        printAnswer(environmentReport());
        break;
    case Mode::Uninstall:
    case Mode::Install:
    case Mode::ResetConfig:
    case Mode::Config:
    case Mode::Samples:
        // These modes join as their flows land; until then they do nothing.
        break;
    }
    return 0;
}
