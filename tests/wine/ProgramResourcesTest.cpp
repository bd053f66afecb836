// What Windows shows of SuiteDeployer.exe itself: the version resource, read
// with GetFileVersionInfoW inside a Wine prefix, and the application manifest
// taken out of the exe. Both carry the one version number of the CMake files.
#include "WinePrefix.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QString>

#include <cstdint>

#include <gtest/gtest.h>

namespace {

const QString version = QStringLiteral(SUITEDEPLOYER_VERSION) + QStringLiteral(".0");

class ProgramResourcesTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        prefix = new WinePrefix;
        QDir().mkpath(prefix->linuxPath(QStringLiteral("C:\\setup")));
        QFile::copy(QStringLiteral(SUITEDEPLOYER_WINDOWS_PROGRAM),
                    prefix->linuxPath(QStringLiteral("C:\\setup\\SuiteDeployer.exe")));
        QFile::copy(QStringLiteral(RESOURCE_READER),
                    prefix->linuxPath(QStringLiteral("C:\\setup\\ResourceReader.exe")));
        const DeployerRun run = prefix->run(QStringLiteral("C:\\setup\\ResourceReader.exe"),
                                            {QStringLiteral("C:\\setup\\SuiteDeployer.exe")});
        exitCode = run.exitCode;
        // The helper's standard output is in text mode: its line ends are CR LF.
        const QString text =
            QString::fromUtf8(run.standardOutput).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        const int manifestStart = text.indexOf(QStringLiteral("manifest:\n"));
        for (const QString &line : text.left(manifestStart).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            values.insert(line.section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1).trimmed());
        manifest = manifestStart < 0 ? QString() : text.mid(manifestStart + 10);
    }
    static void TearDownTestSuite()
    {
        delete prefix;
        prefix = nullptr;
    }

    static inline WinePrefix *prefix = nullptr;
    static inline int exitCode = -1;
    static inline QMap<QString, QString> values;
    static inline QString manifest;
};

} // namespace

TEST_F(ProgramResourcesTest, TheVersionResourceCarriesTheProjectsVersion)
{
    ASSERT_EQ(exitCode, 0) << "1: no version resource, 2: no manifest";
    EXPECT_EQ(values.value("FixedFileVersion"), version);
    EXPECT_EQ(values.value("FixedProductVersion"), version);
    EXPECT_EQ(values.value("FileVersion"), version);
    EXPECT_EQ(values.value("ProductVersion"), version);
}

TEST_F(ProgramResourcesTest, TheVersionResourceNamesTheMakerAndTheProduct)
{
    EXPECT_EQ(values.value("CompanyName"), "Tavrin");
    EXPECT_EQ(values.value("ProductName"), "Orv Collection");
    EXPECT_EQ(values.value("OriginalFilename"), "SuiteDeployer.exe");
    EXPECT_EQ(values.value("FileDescription"), "Orv Collection setup worker");
    EXPECT_TRUE(values.value("LegalCopyright").contains("Tavrin")) << values.value("LegalCopyright").toStdString();
}

TEST_F(ProgramResourcesTest, TheManifestAsksForNoElevationAndNamesWindows7To11)
{
    EXPECT_TRUE(manifest.contains(R"(<requestedExecutionLevel level="asInvoker" uiAccess="false"/>)"))
        << manifest.toStdString();
    for (const char *system : {"{35138b9a-5d96-4fbd-8e2d-a2440225f93a}", "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
                               "{1f676c76-80e1-4239-95bb-83d0f6d0da78}", "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"})
        EXPECT_TRUE(manifest.contains(QStringLiteral("<supportedOS Id=\"%1\"/>").arg(QLatin1String(system)))) << system;
    EXPECT_TRUE(
        manifest.contains("<activeCodePage xmlns=\"http://schemas.microsoft.com/SMI/2019/WindowsSettings\">UTF-8"));
    EXPECT_TRUE(
        manifest.contains("<longPathAware xmlns=\"http://schemas.microsoft.com/SMI/2016/WindowsSettings\">true"));
    EXPECT_TRUE(manifest.contains("version=\"" + version + "\"")) << manifest.toStdString();
}

namespace {

// A 16-bit field of the PE optional header, counted from its start.
int optionalHeaderField(const QByteArray &image, int offset)
{
    const auto byteAt = [&](int index) { return static_cast<int>(static_cast<std::uint8_t>(image.at(index))); };
    const int peHeader = byteAt(0x3C) | byteAt(0x3D) << 8;
    const int optionalHeader = peHeader + 24;
    return byteAt(optionalHeader + offset) | byteAt(optionalHeader + offset + 1) << 8;
}

} // namespace

// Windows 7 is the oldest system the program runs on, and its header says so
// (the linker's default would claim Windows XP, 5.2).
TEST(ProgramHeaderTest, TheSubsystemAndSystemVersionsAreWindows7)
{
    QFile program(QStringLiteral(SUITEDEPLOYER_WINDOWS_PROGRAM));
    ASSERT_TRUE(program.open(QIODevice::ReadOnly));
    const QByteArray image = program.read(4096);
    ASSERT_EQ(image.left(2), "MZ");
    EXPECT_EQ(optionalHeaderField(image, 40), 6);
    EXPECT_EQ(optionalHeaderField(image, 42), 1);
    EXPECT_EQ(optionalHeaderField(image, 48), 6);
    EXPECT_EQ(optionalHeaderField(image, 50), 1);
}
