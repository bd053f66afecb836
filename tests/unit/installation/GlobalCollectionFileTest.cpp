#include "Installer.h"
#include "LogCapture.h"
#include "Machine.h"
#include "ScopedEnvironment.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

QByteArray expectedFile(const char *allow, const char *show, const QByteArray &version)
{
    const QByteArray indent51(51, ' ');
    const QByteArray indent55(55, ' ');
    const QByteArray indent59(59, ' ');
    const QByteArray indent60(60, ' ');
    return "\n" + indent51 + "<configuration>\n" + indent55 + "<group name=\"Instrumentation\">\n" + indent59 +
           "<key name=\"AllowSending\" type=\"bool\" value=\"" + allow + "\"/>\n" + indent59 +
           "<key name=\"ShowInstrumentationScreen\" type=\"bool\" value=\"" + show + "\"/>\n" + indent55 +
           "</group>\n" + indent55 + "<group name=\"Update\">\n" + indent60 +
           "<key name=\"Version\" type=\"string\" value=\"" + version + "\"/>\n" + indent55 + "</group>\n" + indent55 +
           "<group name=\"Installer\">\n" + indent60 + "<key name=\"Version\" type=\"string\" value=\"" + version +
           "\"/>\n" + indent55 + "</group>\n" + indent51 + "</configuration>\n";
}

class GlobalCollectionFileTest : public testing::Test
{
protected:
    QString collectionFile() const { return machine.path("ProgramData/Tavrin/Orv Collection/OrvCollection.cfg"); }

    QByteArray written() const
    {
        QFile file(collectionFile());
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    LogCapture log;
};

mode_t modeOf(const QString &path)
{
    struct stat status
    {
    };
    stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

} // namespace

TEST_F(GlobalCollectionFileTest, StatisticsAllowedIsOneAndZero)
{
    Installer::createGlobalCollectionCfgFile(true, "4.2.0");
    EXPECT_EQ(written(), expectedFile("1", "0", "4.2.0"));
}

TEST_F(GlobalCollectionFileTest, StatisticsRefusedIsZeroAndOne)
{
    Installer::createGlobalCollectionCfgFile(false, "4.2.0");
    EXPECT_EQ(written(), expectedFile("0", "1", "4.2.0"));
}

TEST_F(GlobalCollectionFileTest, ARerunReplacesTheWholeFile)
{
    Installer::createGlobalCollectionCfgFile(true, "4.2.0");
    Installer::createGlobalCollectionCfgFile(false, "4.3");
    EXPECT_EQ(written(), expectedFile("0", "1", "4.3"));
}

TEST_F(GlobalCollectionFileTest, PercentAndAngleBracketsLandLiterally)
{
    Installer::createGlobalCollectionCfgFile(false, "%3 <beta> %1");
    EXPECT_EQ(written(), expectedFile("0", "1", "%3 <beta> %1"));
}

TEST_F(GlobalCollectionFileTest, EveryUserMayReadWriteAndDeleteIt)
{
    Installer::createGlobalCollectionCfgFile(true, "4.2.0");
    EXPECT_EQ(modeOf(collectionFile()), 0666u);
    EXPECT_EQ(modeOf(QFileInfo(collectionFile()).path()), 0777u);
}

TEST_F(GlobalCollectionFileTest, AMissingProgramDataFolderLeavesOnlyTheErrorLine)
{
    environment.set("ProgramData", machine.path("NoSuchFolder").toUtf8());
    Installer::createGlobalCollectionCfgFile(true, "4.2.0");
    EXPECT_FALSE(QFileInfo::exists(machine.path("NoSuchFolder")));
    EXPECT_EQ(log.texts(), std::vector<std::string>{"error: Failed to find program data folder!"});
    EXPECT_EQ(log.lines().at(0).function, "Installer::createGlobalCollectionCfgFile");
}
