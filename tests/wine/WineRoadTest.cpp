// The wizard's road with the real SuiteDeployer.exe under Wine: the report,
// the process probe, the installation of all products into a Photoshop (two
// versions), an Elements and a Lightroom, the records, the sample images, an
// update, two uninstallations and the reset. The prefix is made once for the
// suite; after each step its touched folders and registry keys are compared
// with a reviewed snapshot in road/. UPDATE_SNAPSHOTS=1 rewrites them; review
// the diff.
#include "DeployerRun.h"
#include "PrefixSnapshot.h"
#include "SuiteRoot.h"
#include "WinePrefix.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <exception>
#include <memory>

namespace {

const QJsonArray allProducts = {"Bracketon 2", "Grainwick 2", "Grainwick 3", "Tintara 4", "Tintara 5", "Quietar 2",
                                "Graymere 2",  "Graymere 3",  "Lumbrio 2",   "Lumbrio 3", "Rectilo",   "Acutara 3"};

// The wizard unpacks the program and the suite root; it starts the program in a folder of its own.
const QString deployer = QStringLiteral("C:\\setup\\SuiteDeployer.exe");
const QString suiteRootFolder = QStringLiteral("C:\\suite");
const QString wizardFolder = QStringLiteral("wizard");
const QString accessListHelper = QStringLiteral("C:\\setup\\AccessListHelper.exe");
const QString collectionFile = QStringLiteral("C:\\ProgramData\\Tavrin\\Orv Collection\\OrvCollection.cfg");
const QString winesWmic = QStringLiteral("C:\\windows\\system32\\wbem\\wmic.exe");

const QString roaming = QStringLiteral("users/") + WinePrefix::userName + QStringLiteral("/AppData/Roaming");
const QString local = QStringLiteral("users/") + WinePrefix::userName + QStringLiteral("/AppData/Local");
const QString logFolder = roaming + QStringLiteral("/Tavrin/Orv Collection/logs");
const QString lightroomPreferences = roaming + QStringLiteral("/Adobe/Lightroom/Preferences");
const QString elementsPlugIns = QStringLiteral("Program Files/Adobe/Photoshop Elements 2018/Plug-Ins");

// Every place of docs/places.md that a job writes, reads or removes, and the
// suite root and the working folder, where nothing should land.
const QStringList comparedFolders = {
    QStringLiteral("Program Files/Common Files/Adobe"),
    QStringLiteral("Program Files/Adobe"),
    QStringLiteral("ProgramData/Tavrin"),
    QStringLiteral("ProgramData/Microsoft/Windows/Start Menu/Programs/Tavrin Orv Collection"),
    QStringLiteral("users/Public/Pictures"),
    roaming + QStringLiteral("/Adobe"),
    roaming + QStringLiteral("/Tavrin"),
    local + QStringLiteral("/Tavrin"),
    QStringLiteral("suite"),
    wizardFolder,
};
// The logs' names carry the time; they are read for errors instead.
const QStringList notCompared = {logFolder};

const QStringList registryKeys = {
    QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe"),
    QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin"),
    QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin"),
    QStringLiteral(
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Orv Collection"),
    QStringLiteral("HKEY_CURRENT_USER\\Software\\Tavrin"),
    QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"),
};

// The hosts, as the Linux road seeds them, at their Windows places. The
// per-user uninstall entry is one that an update removes.
const QByteArray hostRegistry =
    "Windows Registry Editor Version 5.00\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\110.0]\r\n\"Version\"=\"17\"\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\r\n\"Version\"=\"18\"\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\r\n"
    "@=\"C:\\\\Program Files\\\\Adobe\\\\Photoshop Elements 2018\\\\Plug-Ins\"\r\n\r\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]\r\n"
    "\"CommonFilesDir\"=\"C:\\\\Program Files\\\\Common Files\"\r\n\r\n"
    "[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\OrvOld]\r\n"
    "\"DisplayName\"=\"Orv Collection\"\r\n\r\n";

// The report's answer, the JSON text inside the base64: the hosts with their
// Windows places, in the order Photoshop, Lightroom, Elements.
const QByteArray expectedReport =
    R"json({"currentLocale":2,"system":{"detectedHosts":4,"hosts":[)json"
    R"json({"appName":"Photoshop CC 2017 (64-Bit)",)json"
    R"json("pluginPath":"C:\\Program Files\\Common Files\\Adobe\\Plug-Ins\\CC\\","type":0},)json"
    R"json({"appName":"Photoshop CC 2018 (64-Bit)",)json"
    R"json("pluginPath":"C:\\Program Files\\Common Files\\Adobe\\Plug-Ins\\CC\\","type":0},)json"
    R"json({"appName":"Lightroom Classic CC 7",)json"
    R"json("pluginPath":"C:\\users\\wizard\\AppData\\Roaming\\Adobe\\Lightroom\\","type":2},)json"
    R"json({"appName":"Photoshop Elements 2018 (64-Bit)",)json"
    R"json("pluginPath":"C:\\Program Files\\Adobe\\Photoshop Elements 2018\\Plug-Ins","type":1}]},)json"
    R"json("translations":{"introString":"<html>This wizard will guide you through the installation of)json"
    R"json( Orv Collection.<br><br>It is recommended that you close all other applications before starting)json"
    R"json( Setup. This will make it possible to update relevant system files without having to reboot your)json"
    R"json( computer.<br><br>Click Next to continue.<br><br></html>"}})json";

void copyInto(const QString &from, const QString &to)
{
    QFile::remove(to);
    if (!QFile::copy(from, to))
        throw std::runtime_error("cannot copy " + from.toStdString() + " to " + to.toStdString());
}

void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

class WineRoadTest : public testing::Test
{
protected:
    // One prefix for the suite: Wine takes seconds to make one.
    static void SetUpTestSuite()
    {
        try {
            prefix_ = std::make_unique<WinePrefix>();
            const QString driveC = prefix_->driveC();
            QDir().mkpath(driveC + QStringLiteral("/setup"));
            QDir().mkpath(driveC + QLatin1Char('/') + wizardFolder);
            copyInto(QStringLiteral(SUITEDEPLOYER_WINDOWS_PROGRAM), prefix_->linuxPath(deployer));
            copyInto(QStringLiteral(ACCESS_LIST_HELPER), prefix_->linuxPath(accessListHelper));
            for (const char *blocking : {"Photoshop.exe", "Tintara 5.exe"})
                copyInto(QStringLiteral(WAITING_HELPER), driveC + QStringLiteral("/setup/") + QLatin1String(blocking));
            prefix_->importRegistry(hostRegistry);
            QDir().mkpath(driveC + QLatin1Char('/') + elementsPlugIns);
            writeFile(driveC + QLatin1Char('/') + lightroomPreferences +
                          QStringLiteral("/Lightroom Classic CC 7 Preferences.agprefs"),
                      "prefs");
            suiteRoot::create(prefix_->linuxPath(suiteRootFolder));
            untouched_ = std::make_unique<DriveState>(driveC, comparedFolders + notCompared);
        } catch (const std::exception &error) {
            setUpError_ = error.what();
            prefix_.reset();
        }
    }

    static void TearDownTestSuite()
    {
        untouched_.reset();
        prefix_.reset();
    }

    void SetUp() override { ASSERT_TRUE(prefix_) << "The Wine prefix could not be made: " << setUpError_; }

    // Runs the program as the wizard does: one option, its value the base64
    // text of the request, standard output read to its end. Every job ends
    // with exit code 0 and logs no error but those expected.
    DeployerRun runJob(const QStringList &arguments, const QStringList &expectedErrors = {}) const
    {
        const QMap<QString, qint64> logs = logSizes();
        const DeployerRun run = prefix_->run(deployer, arguments, prefix_->driveC() + QLatin1Char('/') + wizardFolder);
        const std::string what = arguments.isEmpty() ? std::string("report") : arguments.first().toStdString();
        EXPECT_TRUE(run.exitedNormally) << what;
        EXPECT_EQ(run.exitCode, 0) << what;
        EXPECT_EQ(errorsLoggedSince(logs).join(QLatin1Char('\n')).toStdString(),
                  expectedErrors.join(QLatin1Char('\n')).toStdString())
            << what;
        return run;
    }

    // A job without an answer prints nothing, not even a message of its own.
    void runQuietJob(const char *option, const QJsonObject &request, const QStringList &expectedErrors = {}) const
    {
        const DeployerRun run = runJob({QString::fromLatin1(option), encodeRequest(request)}, expectedErrors);
        EXPECT_EQ(run.standardOutput, QByteArray()) << option;
    }

    // --background, with Wine's wmic.exe set aside: the program starts only
    // the system's own wmic, by its full path, whatever the search path holds.
    DeployerRun runBackgroundWithoutWmic() const
    {
        const QString wmic = prefix_->linuxPath(winesWmic);
        const QString aside = wmic + QStringLiteral(".aside");
        if (!QFile::rename(wmic, aside)) {
            ADD_FAILURE() << "cannot set " << wmic.toStdString() << " aside";
            return {};
        }
        const DeployerRun run = runJob({QStringLiteral("--background")});
        EXPECT_TRUE(QFile::rename(aside, wmic)) << wmic.toStdString();
        return run;
    }

    // The folders that hold the logs come with the first run of all.
    static QString listingBesideTheLogs()
    {
        QString listing = folderListing(*prefix_, comparedFolders, notCompared);
        for (const QString &folder :
             {roaming + QStringLiteral("/Tavrin"), roaming + QStringLiteral("/Tavrin/Orv Collection")})
            listing.remove(QStringLiteral("d ") + folder + QLatin1Char('\n'));
        return listing;
    }

    static QStringList backgroundOf(const DeployerRun &run)
    {
        QStringList names;
        for (const QJsonValue &name : decodeAnswer(run.standardOutput).value("background").toArray())
            names.append(name.toString());
        names.sort();
        return names;
    }

    static QMap<QString, qint64> logSizes()
    {
        QMap<QString, qint64> sizes;
        const QDir logs(prefix_->driveC() + QLatin1Char('/') + logFolder);
        for (const QFileInfo &log : logs.entryInfoList(QDir::Files))
            sizes.insert(log.fileName(), log.size());
        return sizes;
    }

    // The lines at the levels error and critical that were added to the logs
    // since they had these sizes, as "<level> <message>".
    static QStringList errorsLoggedSince(const QMap<QString, qint64> &sizes)
    {
        static const QRegularExpression errorLine(
            QStringLiteral("^\\[[^]]*\\] \\[[^]]*\\] \\[(error|critical)\\] \\[[^]]*\\] (.*)$"));
        QStringList lines;
        const QDir logs(prefix_->driveC() + QLatin1Char('/') + logFolder);
        for (const QString &name : logs.entryList(QDir::Files, QDir::Name)) {
            QFile log(logs.filePath(name));
            log.open(QIODevice::ReadOnly);
            log.seek(sizes.value(name, 0));
            // The Windows program ends its lines with CR LF.
            for (const QByteArray &line : log.readAll().split('\n')) {
                const QRegularExpressionMatch match =
                    errorLine.match(QString::fromUtf8(line).remove(QLatin1Char('\r')));
                if (match.hasMatch())
                    lines.append(match.captured(1) + QLatin1Char(' ') + match.captured(2));
            }
        }
        return lines;
    }

    // The global collection file's access list as Windows reports it, and the
    // Linux mode that Wine gave the file.
    static QString accessListing()
    {
        const QFileInfo file(prefix_->linuxPath(collectionFile));
        if (!file.exists())
            return {};
        const DeployerRun run = prefix_->run(accessListHelper, {collectionFile});
        EXPECT_EQ(run.exitCode, 0) << run.standardOutput.toStdString();
        struct stat status = {};
        ::stat(QFile::encodeName(file.filePath()).constData(), &status);
        return QStringLiteral("access %1 (Linux mode %2)\n")
                   .arg(collectionFile,
                        QString::number(status.st_mode & 07777, 8).rightJustified(4, QLatin1Char('0'))) +
               quotedText(QString::fromUtf8(run.standardOutput).remove(QLatin1Char('\r')), prefix_->root());
    }

    static QString snapshot()
    {
        const QStringList changes =
            DriveState(prefix_->driveC(), comparedFolders + notCompared).changesSince(*untouched_);
        return folderListing(*prefix_, comparedFolders, notCompared) + registryListing(*prefix_, registryKeys) +
               accessListing() + QStringLiteral("elsewhere below drive_c:") +
               (changes.isEmpty()
                    ? QStringLiteral(" nothing changed\n")
                    : QStringLiteral("\n    ") + changes.join(QStringLiteral("\n    ")) + QLatin1Char('\n'));
    }

    static void expectSnapshot(const char *name)
    {
        const QString expectedPath = QStringLiteral(WINE_ROAD_SNAPSHOTS "/%1.txt").arg(QLatin1String(name));
        const QByteArray actual = snapshot().toUtf8();
        if (qEnvironmentVariableIsSet("UPDATE_SNAPSHOTS")) {
            QFile file(expectedPath);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << expectedPath.toStdString();
            file.write(actual);
            return;
        }
        QFile expected(expectedPath);
        ASSERT_TRUE(expected.open(QIODevice::ReadOnly)) << expectedPath.toStdString();
        if (actual == expected.readAll())
            return;
        const QString actualPath = QStringLiteral("%1/wine-road-%2.txt").arg(QDir::currentPath(), QLatin1String(name));
        QFile out(actualPath);
        out.open(QIODevice::WriteOnly);
        out.write(actual);
        ADD_FAILURE() << "The prefix after step " << name << " differs from its snapshot; compare with\n  diff "
                      << expectedPath.toStdString() << " " << actualPath.toStdString();
    }

    static QJsonObject installRequest(const QJsonArray &hosts, const QJsonArray &plugins, int language,
                                      const char *isUpdate)
    {
        return QJsonObject{{"rootDir", suiteRootFolder}, {"hosts", hosts},       {"plugins", plugins},
                           {"language", language},       {"version", "4.2.0"},   {"mixpanelEnabled", true},
                           {"isUpdate", isUpdate},       {"localAppDataDir", ""}};
    }

    static std::unique_ptr<WinePrefix> prefix_;
    static std::unique_ptr<DriveState> untouched_;
    static std::string setUpError_;
};

std::unique_ptr<WinePrefix> WineRoadTest::prefix_;
std::unique_ptr<DriveState> WineRoadTest::untouched_;
std::string WineRoadTest::setUpError_;

} // namespace

// Wine's wmic.exe lists the processes, but in UTF-16LE with a byte-order mark
// and CR LF line ends. The program reads the list as UTF-8 split at CR CR LF,
// as the Windows wmic.exe writes it into a pipe; in UTF-16 no such separator
// occurs and every letter stands beside a zero character, so no name matches
// and the answer is empty even though Photoshop.exe runs.
TEST_F(WineRoadTest, BackgroundWithWinesWmicFindsNothing)
{
    const QString before = listingBesideTheLogs();
    const RunningWindowsProgram photoshop(*prefix_, QStringLiteral("C:\\setup\\Photoshop.exe"));
    ASSERT_EQ(photoshop.firstLine(), "running");

    const DeployerRun wmic =
        prefix_->run(winesWmic, QProcess::splitCommand(QStringLiteral("/OUTPUT:STDOUT PROCESS get Caption")));
    ASSERT_TRUE(wmic.standardOutput.startsWith("\xff\xfe")) << wmic.standardOutput.toHex().left(64).toStdString();
    const QString listed = QString::fromUtf16(reinterpret_cast<const char16_t *>(wmic.standardOutput.constData() + 2),
                                              (wmic.standardOutput.size() - 2) / 2);
    EXPECT_TRUE(listed.contains(QStringLiteral("\r\nPhotoshop.exe "))) << listed.toStdString();

    const DeployerRun background = runJob({QStringLiteral("--background")});
    EXPECT_EQ(answerText(background.standardOutput), R"({"background":[]})");
    EXPECT_EQ(listingBesideTheLogs(), before);
}

// Without wmic.exe the program lists the processes from a Toolhelp snapshot,
// which finds the blocking applications the test started, by their image
// names without blanks.
TEST_F(WineRoadTest, BackgroundWithoutWmicListsTheBlockingApplications)
{
    const QString before = listingBesideTheLogs();
    ASSERT_TRUE(QFileInfo::exists(prefix_->linuxPath(winesWmic)));
    {
        const RunningWindowsProgram photoshop(*prefix_, QStringLiteral("C:\\setup\\Photoshop.exe"));
        const RunningWindowsProgram tintara(*prefix_, QStringLiteral("C:\\setup\\Tintara 5.exe"));
        ASSERT_EQ(photoshop.firstLine(), "running");
        ASSERT_EQ(tintara.firstLine(), "running");
        EXPECT_EQ(backgroundOf(runBackgroundWithoutWmic()),
                  QStringList({QStringLiteral("Photoshop.exe"), QStringLiteral("Tintara5.exe")}));
    }
    const DeployerRun nothingRuns = runBackgroundWithoutWmic();
    EXPECT_EQ(answerText(nothingRuns.standardOutput), R"({"background":[]})");
    EXPECT_EQ(listingBesideTheLogs(), before);
}

TEST_F(WineRoadTest, TheWizardsWholeRoad)
{
    const DeployerRun report = runJob({});
    EXPECT_EQ(answerText(report.standardOutput), expectedReport);
    const QJsonArray hosts = decodeAnswer(report.standardOutput).value("system").toObject().value("hosts").toArray();
    ASSERT_EQ(hosts.size(), 4);
    expectSnapshot("01-report");

    // All products into all hosts; the two Photoshop versions share one folder.
    const QJsonObject install = installRequest(hosts, allProducts, 1, "false");
    runQuietJob("--install", install);
    expectSnapshot("02-install");
    runQuietJob("--config", install);
    expectSnapshot("03-config");

    // The wizard unpacks the suite root again and places the German samples alone.
    suiteRoot::create(prefix_->linuxPath(suiteRootFolder));
    runQuietJob("--samples", {{"rootDir", suiteRootFolder}, {"lang", 0}});
    expectSnapshot("04-samples");

    // An update: a new suite root, another language, fewer products and hosts.
    suiteRoot::create(prefix_->linuxPath(suiteRootFolder));
    QJsonArray fewerHosts;
    std::copy_if(hosts.begin(), hosts.end(), std::back_inserter(fewerHosts),
                 [](const QJsonValue &host) { return host.toObject().value("type").toInt() != 1; });
    const QJsonObject update =
        installRequest(fewerHosts, {"Tintara 5", "Rectilo", "Acutara 3", "Bracketon 2"}, 5, "true");
    // Each updated product's settings file in the user's folder stays from
    // the first installation, with its language; the program says so at the
    // level error.
    QStringList keptSettings;
    for (const char *kept :
         {"Tintara5.cfg|Tintara 5", "Rectilo.cfg|Rectilo", "Acutara3.cfg|Acutara 3", "Bracketon2.cfg|Bracketon 2"}) {
        const QStringList fileAndProduct = QString::fromLatin1(kept).split(QLatin1Char('|'));
        keptSettings.append(QStringLiteral("error Failed to copy file %1 to folder C:/users/%2/AppData/Local/Tavrin/%3")
                                .arg(fileAndProduct.at(0), WinePrefix::userName, fileAndProduct.at(1)));
    }
    runQuietJob("--install", update, keptSettings);
    runQuietJob("--config", update);
    expectSnapshot("05-update");

    runQuietJob("--uninstall", {{"keepPreferences", "true"}});
    expectSnapshot("06-uninstall-keeping-preferences");
    runQuietJob("--uninstall", {{"keepPreferences", "false"}});
    expectSnapshot("07-uninstall");
    runQuietJob("--resetConfig", {});
    expectSnapshot("08-reset");
}
