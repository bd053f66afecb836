#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

class CommandLineE2ETest : public testing::Test
{
protected:
    void SetUp() override { machine->installFakeWmic("Caption\r\r\nPhotoshop.exe\r\r\n"); }

    bool probeRan() const { return !machine->fakeWmicArguments().isEmpty(); }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
    const QString request = encodeRequest(QJsonObject{{"rootDir", machine->toolPath(Place::Scratch, "suite")},
                                                      {"language", 2},
                                                      {"lang", 2},
                                                      {"plugins", QJsonArray{"Tintara 5"}}});
};

void expectRegularEndWithoutAnswer(const DeployerRun &run)
{
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput, "");
}

void expectParserRejection(const DeployerRun &run, const QByteArray &message)
{
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.standardOutput, "");
    EXPECT_TRUE(run.standardError.contains(message)) << run.standardError.toStdString();
}

} // namespace

TEST_F(CommandLineE2ETest, AnEmptyCommandLineGetsTheEnvironmentReport)
{
    const ToolRun run = machine->run({});
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(decodeAnswer(run.standardOutput).keys(), (QStringList{"currentLocale", "system", "translations"}));
    EXPECT_FALSE(run.standardOutput.endsWith('\n'));
    EXPECT_FALSE(probeRan());
}

TEST_F(CommandLineE2ETest, PositionalArgumentsAloneStillGetTheReport)
{
    const ToolRun run = machine->run({"x", "y"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(decodeAnswer(run.standardOutput).contains("currentLocale"));
}

TEST_F(CommandLineE2ETest, ModesWithoutAnswerPrintNothing)
{
    for (const char *option : {"--install", "--uninstall", "--samples", "--config", "--resetConfig"}) {
        SCOPED_TRACE(option);
        expectRegularEndWithoutAnswer(machine->run({option, request}));
    }
    EXPECT_FALSE(probeRan());
}

TEST_F(CommandLineE2ETest, JunkRequestsStillEndWithZero)
{
    for (const char *option : {"--install", "--uninstall", "--samples", "--config"}) {
        SCOPED_TRACE(option);
        expectRegularEndWithoutAnswer(machine->run({option, "%%% not base64 %%%"}));
        expectRegularEndWithoutAnswer(machine->run({option, ""}));
        expectRegularEndWithoutAnswer(machine->run({option, encodeRequest({}).left(3)}));
    }
}

TEST_F(CommandLineE2ETest, EveryOtherModeWinsOverBackground)
{
    for (const char *option : {"--install", "--uninstall", "--samples", "--config", "--resetConfig"}) {
        SCOPED_TRACE(option);
        expectRegularEndWithoutAnswer(machine->run({"--background", option, request}));
        expectRegularEndWithoutAnswer(machine->run({option, request, "-b"}));
    }
    EXPECT_FALSE(probeRan());
}

// A request with a duplicated key reaches the real program as the wizard would
// send it. Debian's Qt keeps the last value and never frees a non-empty object
// or array that it drops for it; the process is one-shot, so those few bytes are
// harmless, and the sanitizer builds exempt exactly what that parse allocates.
TEST_F(CommandLineE2ETest, ADuplicatedKeyInTheRequestTakesItsLastValue)
{
    suiteRoot::create(machine->path(Place::Scratch, "suite"));
    const QByteArray rootDir = QJsonDocument(QJsonObject{{"rootDir", machine->toolPath(Place::Scratch, "suite")}})
                                   .toJson(QJsonDocument::Compact)
                                   .mid(1)
                                   .chopped(1);
    const QByteArray text = R"({"lang":{"detectedHosts":0,"hosts":[]},)" + rootDir + R"(,"lang":1})";
    expectRegularEndWithoutAnswer(machine->run({"--samples", QString::fromLatin1(text.toBase64())}));
    EXPECT_EQ(machine->entries(Place::CommonPictures, "Rectilo Samples"),
              (QStringList{"Harbour.jpg", "Sign.jpg", "Sunset.jpg"}));
    EXPECT_FALSE(machine->exists(Place::Scratch, "suite/pictures"));
}

TEST_F(CommandLineE2ETest, ResetConfigWithoutValueFailsInTheParser)
{
    expectParserRejection(machine->run({"--resetConfig"}), "Missing value after '--resetConfig'.");
    expectParserRejection(machine->run({"--background", "--resetConfig"}), "Missing value after '--resetConfig'.");
    EXPECT_FALSE(probeRan());
}

TEST_F(CommandLineE2ETest, ResetConfigIgnoresItsValue)
{
    expectRegularEndWithoutAnswer(machine->run({"--resetConfig", "x"}));
    expectRegularEndWithoutAnswer(machine->run({"-r", "anything at all"}));
}

TEST_F(CommandLineE2ETest, OptionsWithAValueNeedOne)
{
    for (const char *option : {"--install", "--uninstall", "--samples", "--config"})
        expectParserRejection(machine->run({option}), "Missing value after");
}

TEST_F(CommandLineE2ETest, HelpVersionAndUnknownOptionsFailInTheParser)
{
    expectParserRejection(machine->run({"--help"}), "Unknown option 'help'.");
    expectParserRejection(machine->run({"--version"}), "Unknown option 'version'.");
    expectParserRejection(machine->run({"--background", "--verbose"}), "Unknown option 'verbose'.");
    EXPECT_FALSE(probeRan());
}

TEST_F(CommandLineE2ETest, BackgroundTakesTheNextWordAsAnIgnoredArgument)
{
    const ToolRun run = machine->run({"--background", "x"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(decodeAnswer(run.standardOutput), (QJsonObject{{"background", QJsonArray{"Photoshop.exe"}}}));
}

TEST_F(CommandLineE2ETest, ShortLongAndPositionalFormsAreAccepted)
{
    for (const QStringList &arguments :
         {QStringList{"-b"}, QStringList{"--background"}, QStringList{"one", "two", "--background"}}) {
        const ToolRun run = machine->run(arguments);
        EXPECT_EQ(decodeAnswer(run.standardOutput).value("background").toArray().size(), 1)
            << arguments.join(' ').toStdString();
    }
    expectRegularEndWithoutAnswer(machine->run({"--install=" + request}));
    expectRegularEndWithoutAnswer(machine->run({"-c", request}));
}

TEST_F(CommandLineE2ETest, TheAnswerIsPaddedBase64WithoutLineEnd)
{
    const ToolRun run = machine->run({"--background"});
    EXPECT_EQ(run.exitCode, 0);
    ASSERT_FALSE(run.standardOutput.isEmpty());
    EXPECT_FALSE(run.standardOutput.endsWith('\n'));
    EXPECT_FALSE(run.standardOutput.endsWith('\r'));
    EXPECT_EQ(run.standardOutput.size() % 4, 0);
    EXPECT_TRUE(answerText(run.standardOutput).startsWith('{'));
    EXPECT_EQ(answerText(run.standardOutput), R"({"background":["Photoshop.exe"]})");
}

// Qt's debug channel is the debugger's output on Windows unless Qt is told otherwise.
TEST_F(CommandLineE2ETest, TheAnswerIsEchoedOnQtsDebugChannel)
{
    const ToolRun run = machine->run(QStringList{"--background"}, {{"QT_FORCE_STDERR_LOGGING", "1"}});
    EXPECT_TRUE(run.standardError.contains(R"(encoding following data: {"background":["Photoshop.exe"]})"))
        << run.standardError.toStdString();
}
