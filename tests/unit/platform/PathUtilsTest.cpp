#include "LogCapture.h"
#include "Machine.h"
#include "PathUtils.h"
#include "RegistrySettings.h"
#include "ScopedEnvironment.h"

#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

namespace {

// No state of its own: nothing but the pointer to its table of operations.
static_assert(sizeof(PathUtils) == sizeof(void *));

constexpr auto unknownAction = static_cast<ProcessAction>(2);

class PathUtilsTest : public testing::Test
{
protected:
    QString path(const QString &relativePath) const { return temporary.path() + "/" + relativePath; }

    void writeFile(const QString &relativePath, const QByteArray &content = "content") const
    {
        QDir().mkpath(QFileInfo(path(relativePath)).path());
        QFile file(path(relativePath));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray contentOf(const QString &relativePath) const
    {
        QFile file(path(relativePath));
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    QStringList entriesOf(const QString &relativePath) const
    {
        return QDir(path(relativePath))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QTemporaryDir temporary;
    const PathUtils pathUtils;
    // The flows see only the interface.
    const IPathUtils &paths = pathUtils;
};

} // namespace

TEST_F(PathUtilsTest, FilePatternOfEachKind)
{
    EXPECT_EQ(paths.filePattern(FileKind::Plugin8bf), "*.8bf");
    EXPECT_EQ(paths.filePattern(FileKind::Plugin8li), "*.8li");
    EXPECT_EQ(paths.filePattern(FileKind::ExeFile), "*.exe");
    EXPECT_EQ(paths.filePattern(FileKind::ConfigFile), "*.config");
    EXPECT_EQ(paths.filePattern(FileKind::CfgFile), "*.cfg");
    EXPECT_EQ(paths.filePattern(FileKind::JpgFile), "*.jpg");
    EXPECT_EQ(paths.filePattern(FileKind::LnkFile), "*.lnk");
}

TEST_F(PathUtilsTest, FileKindsAreTheWholeNumbersZeroToSix)
{
    EXPECT_EQ(FileKind::Plugin8bf, 0);
    EXPECT_EQ(FileKind::Plugin8li, 1);
    EXPECT_EQ(FileKind::ExeFile, 2);
    EXPECT_EQ(FileKind::ConfigFile, 3);
    EXPECT_EQ(FileKind::CfgFile, 4);
    EXPECT_EQ(FileKind::JpgFile, 5);
    EXPECT_EQ(FileKind::LnkFile, 6);
    EXPECT_EQ(static_cast<qint32>(ProcessAction::Link), 0);
    EXPECT_EQ(static_cast<qint32>(ProcessAction::Copy), 1);
    EXPECT_EQ(sizeof(FileKind), 4u);
    EXPECT_EQ(sizeof(ProcessAction), 4u);
}

TEST_F(PathUtilsTest, FilePatternOfAnUnknownKindIsEmpty)
{
    EXPECT_EQ(paths.filePattern(static_cast<FileKind>(7)), "");
    EXPECT_EQ(paths.filePattern(static_cast<FileKind>(-1)), "");
    EXPECT_TRUE(paths.filePattern(static_cast<FileKind>(7)).isEmpty());
}

TEST_F(PathUtilsTest, FindFilesListsMatchingFilesAtEveryDepthByFullPath)
{
    writeFile("root/Tintara 5.cfg");
    writeFile("root/a/b/deep.cfg");
    writeFile("root/a/other.txt");
    writeFile("root/a/cfg");
    const QStringList found = paths.findFiles(FileKind::CfgFile, path("root"));
    EXPECT_EQ(QSet<QString>(found.begin(), found.end()),
              (QSet<QString>{path("root/Tintara 5.cfg"), path("root/a/b/deep.cfg")}));
    EXPECT_EQ(found.size(), 2);
}

TEST_F(PathUtilsTest, FindFilesLeavesOutFoldersThatMatchThePattern)
{
    QDir().mkpath(path("root/x.cfg"));
    writeFile("root/x.cfg/inner.cfg");
    EXPECT_EQ(paths.findFiles(FileKind::CfgFile, path("root")), QStringList{path("root/x.cfg/inner.cfg")});
}

TEST_F(PathUtilsTest, FindFilesMatchesTheEndingIgnoringCase)
{
    writeFile("root/Upper.EXE");
    EXPECT_EQ(paths.findFiles(FileKind::ExeFile, path("root")), QStringList{path("root/Upper.EXE")});
}

TEST_F(PathUtilsTest, FindFilesOnAMissingRootIsEmptyAndSilent)
{
    const LogCapture capture;
    EXPECT_TRUE(paths.findFiles(FileKind::CfgFile, path("missing")).isEmpty());
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PathUtilsTest, FindAndProcessLinksEveryMatchSideBySideInTheTarget)
{
    writeFile("source/a/x.8bf", "x");
    writeFile("source/b/y.8bf", "y");
    writeFile("source/b/readme.txt");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target/deeper"), FileKind::Plugin8bf, QDir::Files, ProcessAction::Link);
    EXPECT_EQ(entriesOf("target/deeper"), (QStringList{"x.8bf.lnk", "y.8bf.lnk"}));
    const QFileInfo xLink(path("target/deeper/x.8bf.lnk"));
    const QFileInfo yLink(path("target/deeper/y.8bf.lnk"));
    EXPECT_TRUE(xLink.isSymLink());
    EXPECT_TRUE(yLink.isSymLink());
    EXPECT_EQ(xLink.symLinkTarget(), path("source/a/x.8bf"));
    EXPECT_EQ(yLink.symLinkTarget(), path("source/b/y.8bf"));
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PathUtilsTest, FindAndProcessLogsAFailedLinkAndGoesOn)
{
    writeFile("source/a/x.8bf");
    writeFile("source/b/y.8bf");
    writeFile("target/x.8bf.lnk", "not a link");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target"), FileKind::Plugin8bf, QDir::Files, ProcessAction::Link);
    EXPECT_EQ(contentOf("target/x.8bf.lnk"), "not a link");
    EXPECT_TRUE(QFileInfo(path("target/y.8bf.lnk")).isSymLink());
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create link from " + path("source/a/x.8bf").toStdString() +
                                      " to " + path("target/x.8bf.lnk").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "PathUtils::findAndProcess");
}

TEST_F(PathUtilsTest, FindAndProcessCopiesEveryMatchFlatIntoTheTarget)
{
    writeFile("source/English/one.jpg", "one");
    writeFile("source/English/more/two.jpg", "two");
    writeFile("source/English/notes.txt");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target"), FileKind::JpgFile, QDir::Files, ProcessAction::Copy);
    EXPECT_EQ(entriesOf("target"), (QStringList{"one.jpg", "two.jpg"}));
    EXPECT_FALSE(QFileInfo(path("target/one.jpg")).isSymLink());
    EXPECT_EQ(contentOf("target/one.jpg"), "one");
    EXPECT_EQ(contentOf("target/two.jpg"), "two");
    EXPECT_EQ(contentOf("source/English/one.jpg"), "one");
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PathUtilsTest, FindAndProcessCopyOntoAnExistingFileLogsAndLeavesIt)
{
    writeFile("source/sample.jpg", "new");
    writeFile("target/sample.jpg", "old");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target"), FileKind::JpgFile, QDir::Files, ProcessAction::Copy);
    EXPECT_EQ(contentOf("target/sample.jpg"), "old");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to copy file " + path("source/sample.jpg").toStdString() + " to " +
                                      path("target/sample.jpg").toStdString());
    EXPECT_EQ(capture.lines()[0].function, "PathUtils::findAndProcess");
}

TEST_F(PathUtilsTest, FindAndProcessCopyOfOneNameFromTwoFoldersKeepsTheFirst)
{
    writeFile("source/a/same.jpg", "a");
    writeFile("source/b/same.jpg", "b");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target"), FileKind::JpgFile, QDir::Files, ProcessAction::Copy);
    const QByteArray kept = contentOf("target/same.jpg");
    ASSERT_TRUE(kept == "a" || kept == "b") << kept.constData();
    const QString refused = path(kept == "a" ? "source/b/same.jpg" : "source/a/same.jpg");
    ASSERT_EQ(capture.lines().size(), 1u);
    EXPECT_EQ(capture.texts()[0],
              "warning: Failed to copy file " + refused.toStdString() + " to " + path("target/same.jpg").toStdString());
}

TEST_F(PathUtilsTest, FindAndProcessWithAnotherActionOnlyMakesTheTarget)
{
    writeFile("source/a/x.8bf");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("target"), FileKind::Plugin8bf, QDir::Files, unknownAction);
    EXPECT_TRUE(QFileInfo(path("target")).isDir());
    EXPECT_TRUE(entriesOf("target").isEmpty());
    EXPECT_EQ(entriesOf("source"), QStringList{"a"});
    EXPECT_EQ(entriesOf("source/a"), QStringList{"x.8bf"});
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PathUtilsTest, FindAndProcessOnAMissingSourceMakesTheTargetSilently)
{
    const LogCapture capture;
    paths.findAndProcess(path("missing"), path("target"), FileKind::Plugin8bf, QDir::Files, ProcessAction::Link);
    EXPECT_TRUE(QFileInfo(path("target")).isDir());
    EXPECT_TRUE(entriesOf("target").isEmpty());
    EXPECT_TRUE(capture.lines().empty());
}

TEST_F(PathUtilsTest, FindAndProcessGoesOnWhenTheTargetCannotBeMade)
{
    writeFile("source/one.jpg");
    writeFile("source/sub/two.jpg");
    writeFile("blocker", "a file where the target's parent should be");
    const LogCapture capture;
    paths.findAndProcess(path("source"), path("blocker/target"), FileKind::JpgFile, QDir::Files, ProcessAction::Copy);
    const std::vector<LoggedLine> lines = capture.lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(capture.texts()[0], "warning: Failed to create directory " + path("blocker/target").toStdString());
    EXPECT_EQ(lines[0].function, "fileUtils::createDir");
    const std::set<std::string> copies = {capture.texts()[1], capture.texts()[2]};
    EXPECT_EQ(copies, (std::set<std::string>{
                          "warning: Failed to copy file " + path("source/one.jpg").toStdString() + " to " +
                              path("blocker/target/one.jpg").toStdString(),
                          "warning: Failed to copy file " + path("source/sub/two.jpg").toStdString() + " to " +
                              path("blocker/target/two.jpg").toStdString(),
                      }));
    EXPECT_EQ(lines[1].function, "PathUtils::findAndProcess");
    EXPECT_EQ(lines[2].function, "PathUtils::findAndProcess");
    EXPECT_EQ(contentOf("blocker"), "a file where the target's parent should be");
}

TEST_F(PathUtilsTest, FindAndProcessUsesTheGivenFilters)
{
    writeFile("source/shown.8bf");
    QDir().mkpath(path("source/folder.8bf"));
    paths.findAndProcess(path("source"), path("files"), FileKind::Plugin8bf, QDir::Files, ProcessAction::Link);
    EXPECT_EQ(entriesOf("files"), QStringList{"shown.8bf.lnk"});
    paths.findAndProcess(path("source"), path("all"), FileKind::Plugin8bf, QDir::Files | QDir::Dirs,
                         ProcessAction::Link);
    EXPECT_EQ(entriesOf("all"), (QStringList{"folder.8bf.lnk", "shown.8bf.lnk"}));
    EXPECT_EQ(QFileInfo(path("all/folder.8bf.lnk")).symLinkTarget(), path("source/folder.8bf"));
}

// The registry of a throw-away machine: the hive files below its XDG folders.
#ifndef Q_OS_WIN
namespace {

class PathUtilsSettingsTest : public testing::Test
{
protected:
    QByteArray userHive() const
    {
        QFile file(machine.path("home/.config/winreg/HKEY_CURRENT_USER.reg"));
        if (!file.open(QIODevice::ReadOnly))
            return "<no hive>";
        return file.readAll();
    }

    Machine machine;
    ScopedEnvironment environment{machine};
    const PathUtils pathUtils;
    const IPathUtils &paths = pathUtils;
};

} // namespace

TEST_F(PathUtilsSettingsTest, SuiteSettingsIsTheSuitesKeyOfTheCurrentUser)
{
    paths.suiteSettings()->setValue("currentLanguage", 2);
    EXPECT_EQ(userHive(), "Windows Registry Editor Version 5.00\n\n"
                          "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection]\n"
                          "\"currentLanguage\"=dword:00000002\n\n");
    EXPECT_EQ(
        openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection\\")->value("currentLanguage").toInt(), 2);
}

TEST_F(PathUtilsSettingsTest, MakerSettingsIsTheMakersKeyOfTheCurrentUser)
{
    paths.makerSettings()->setValue("Zonal Tool/lastEdit", "x");
    EXPECT_EQ(userHive(), "Windows Registry Editor Version 5.00\n\n"
                          "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Zonal Tool]\n"
                          "\"lastEdit\"=\"x\"\n\n");
}

TEST_F(PathUtilsSettingsTest, TheSuitesKeyLiesBelowTheMakersKey)
{
    const std::unique_ptr<QSettings> maker = paths.makerSettings();
    const std::unique_ptr<QSettings> suite = paths.suiteSettings();
    suite->setValue("app_loglevel", "warning");
    EXPECT_EQ(maker->value("Orv Collection/app_loglevel").toString(), "warning");
    EXPECT_EQ(maker->childGroups(), QStringList{"Orv Collection"});
}

TEST_F(PathUtilsSettingsTest, EachCallGivesANewObjectThatWritesWhenTheCallerDestroysIt)
{
    std::unique_ptr<QSettings> first = paths.suiteSettings();
    std::unique_ptr<QSettings> second = paths.suiteSettings();
    EXPECT_NE(first.get(), second.get());
    first->setValue("InstallPath", "/opt/orv");
    first.reset();
    EXPECT_TRUE(userHive().contains("\"InstallPath\"=\"/opt/orv\""));
}

#endif
