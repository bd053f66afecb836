#include "FrontEnd.h"

#include "Catalogue.h"
#include "CatalogueJson.h"
#include "EmbeddedResources.h"
#include "EnvironmentReport.h"
#include "Installer.h"
#include "ModeOptions.h"
#include "PathUtils.h"
#include "RequestCodec.h"
#include "RunningProcesses.h"
#include "StandardOutput.h"
#include "Uninstaller.h"
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
const QString rootDirKey = QStringLiteral("rootDir");
// The install request names its language "language", the samples request "lang".
const QString languageKey = QStringLiteral("language");
const QString langKey = QStringLiteral("lang");
// "RectiloGraymere" has no bar inside, so Rectilo and Graymere are only
// reported when one name directly follows the other; the wizard has always
// been answered this way.
const QString blockingApplications =
    QStringLiteral("Tintara|Grainwick|Lumbrio|ACU3|Quietar|RectiloGraymere|Bracketon|Photoshop|Lightroom");

QJsonObject backgroundAnswer()
{
    QJsonObject answer;
    const QRegExp filter(blockingApplications, Qt::CaseSensitive, QRegExp::RegExp);
    answer.insert(backgroundKey, QJsonArray::fromStringList(runningProcesses(filter, QRegExp())));
    return answer;
}

// The samples and the application data follow also when fullInstall gave up
// on a wrong language.
void install(const QJsonObject &request, const IPathUtils &pathUtils, const Catalogue &catalogue)
{
    const Installer installer(pathUtils, catalogue);
    installer.fullInstall(request);
    const QString rootDir = request.value(rootDirKey).toString();
    installer.installSampleImages(rootDir, request.value(languageKey).toInt(0));
    Installer::moveAppData(rootDir);
}

void installSamples(const QJsonObject &request, const IPathUtils &pathUtils, const Catalogue &catalogue)
{
    Installer(pathUtils, catalogue)
        .installSampleImages(request.value(rootDirKey).toString(), request.value(langKey).toInt(0));
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
    const PathUtils pathUtils;

    switch (options.selectedMode(parser)) {
    case Mode::Background:
        printAnswer(backgroundAnswer());
        break;
    case Mode::Report:
        printAnswer(environmentReport());
        break;
    case Mode::Install:
        install(decodeRequest(parser, options.install), pathUtils, catalogue);
        break;
    case Mode::Samples:
        installSamples(decodeRequest(parser, options.samples), pathUtils, catalogue);
        break;
    case Mode::Uninstall:
        Uninstaller(pathUtils, catalogue).uninstall(decodeRequest(parser, options.uninstall));
        break;
    case Mode::ResetConfig:
        // The option demands a value, which nothing reads.
        Uninstaller(pathUtils, catalogue).resetConfig();
        break;
    case Mode::Config:
        Installer(pathUtils, catalogue).installGlobalSettings(decodeRequest(parser, options.config));
        break;
    }
    return 0;
}
