#include "TestMachine.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class BackgroundE2ETest : public testing::Test
{
protected:
    QJsonArray probeWith(const QByteArray &output, const QByteArray &errorOutput = {})
    {
        machine->installFakeWmic(output, errorOutput);
        return probe();
    }

    QJsonArray probe()
    {
        const ToolRun run = machine->run({"--background"});
        EXPECT_TRUE(run.exitedNormally);
        EXPECT_EQ(run.exitCode, 0);
        const QJsonObject answer = decodeAnswer(run.standardOutput);
        EXPECT_EQ(answer.keys(), QStringList{"background"});
        return answer.value("background").toArray();
    }

    const std::unique_ptr<TestMachine> machine = newTestMachine();
};

QByteArray wmicList(const QList<QByteArray> &captions)
{
    QByteArray list = "Caption                     \r\r\n";
    for (const QByteArray &caption : captions)
        list += caption + "                  \r\r\n";
    return list + "\r\r\n";
}

} // namespace

TEST_F(BackgroundE2ETest, RunsTheWmicCommand)
{
    probeWith(wmicList({}));
    EXPECT_EQ(machine->fakeWmicArguments(), "/OUTPUT:STDOUT\nPROCESS\nget\nCaption\n");
}

// The stand-in reads its input to the end before it prints, as Windows' wmic
// does when that input is a pipe. The tool closes that pipe at the start;
// left open, every probe would wait out its 30 s and answer nothing.
TEST_F(BackgroundE2ETest, AWmicThatReadsItsInputToTheEndAnswers)
{
    EXPECT_EQ(probeWith("Caption\r\r\nPhotoshop.exe\r\r\n"), QJsonArray{"Photoshop.exe"});
}

TEST_F(BackgroundE2ETest, NoMatchGivesAnEmptyList)
{
    machine->installFakeWmic(wmicList({"System Idle Process", "explorer.exe", "svchost.exe"}));
    const ToolRun run = machine->run({"--background"});
    EXPECT_EQ(answerText(run.standardOutput), R"({"background":[]})");
}

TEST_F(BackgroundE2ETest, AHostRunningTwiceIsListedOnce)
{
    EXPECT_EQ(probeWith(wmicList({"Photoshop.exe", "explorer.exe", "Photoshop.exe"})), QJsonArray{"Photoshop.exe"});
}

TEST_F(BackgroundE2ETest, HostsMatchInsideLongerNamesButCaseCounts)
{
    EXPECT_EQ(
        probeWith(wmicList({"photoshop.exe", "Adobe Photoshop 2024.exe", "lightroom.exe", "Lightroom Classic.exe"})),
        (QJsonArray{"AdobePhotoshop2024.exe", "LightroomClassic.exe"}));
}

TEST_F(BackgroundE2ETest, BlanksAreRemovedFromCaptions)
{
    EXPECT_EQ(probeWith(wmicList({"Tintara 5.exe"})), QJsonArray{"Tintara5.exe"});
}

TEST_F(BackgroundE2ETest, RectiloAndGraymereAloneAreNotReported)
{
    EXPECT_EQ(probeWith(wmicList({"Graymere 3.exe", "Rectilo.exe", "Tintara4.exe", "Lumbrio2.exe"})),
              (QJsonArray{"Tintara4.exe", "Lumbrio2.exe"}));
}

TEST_F(BackgroundE2ETest, OrderIsThatOfTheCommand)
{
    EXPECT_EQ(probeWith(wmicList({"Quietar2.exe", "ACU3RST.exe", "Bracketon 2.exe", "Grainwick 2.exe"})),
              (QJsonArray{"Quietar2.exe", "ACU3RST.exe", "Bracketon2.exe", "Grainwick2.exe"}));
}

TEST_F(BackgroundE2ETest, PlainCrLfOutputStaysOneItem)
{
    EXPECT_EQ(probeWith("Caption\r\nPhotoshop.exe\r\nexplorer.exe\r\n"),
              QJsonArray{"Caption\r\nPhotoshop.exe\r\nexplorer.exe\r\n"});
    EXPECT_EQ(probeWith("Caption\r\nexplorer.exe\r\n"), QJsonArray());
}

TEST_F(BackgroundE2ETest, TheCommandsErrorTextIsReadToo)
{
    EXPECT_EQ(probeWith(wmicList({"explorer.exe"}), "Lightroom.exe\r\r\n"), QJsonArray{"Lightroom.exe"});
}

TEST_F(BackgroundE2ETest, WithoutWmicARealPhotoshopIsFoundOnce)
{
    EXPECT_FALSE(probe().contains("Photoshop.exe"));
    {
        const auto first = machine->startProgram("Photoshop.exe");
        const auto second = machine->startProgram("Photoshop.exe");
        ASSERT_TRUE(first->isRunning());
        ASSERT_TRUE(second->isRunning());
        const QJsonArray running = probe();
        EXPECT_EQ(std::count(running.begin(), running.end(), QJsonValue("Photoshop.exe")), 1);
        EXPECT_FALSE(running.contains("Caption"));
    }
    EXPECT_FALSE(probe().contains("Photoshop.exe"));
}

TEST_F(BackgroundE2ETest, WithoutWmicImageNamesLoseTheirBlanks)
{
    const auto tintara = machine->startProgram("Tintara 5.exe");
    const auto graymere = machine->startProgram("Graymere 3.exe");
    ASSERT_TRUE(tintara->isRunning());
    ASSERT_TRUE(graymere->isRunning());
    const QJsonArray running = probe();
    EXPECT_TRUE(running.contains("Tintara5.exe"));
    EXPECT_FALSE(running.contains("Graymere3.exe"));
}
