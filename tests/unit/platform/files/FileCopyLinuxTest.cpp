#include "FileCopy.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path &path, const std::string &content, fs::perms mode = fs::perms(0644))
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    fs::permissions(path, mode);
}

std::string contentOf(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// What a copy leaves where it wrote: every entry of the scene, with its kind,
// its permission bits, the target of a link and the bytes of a file.
std::string sceneOf(const fs::path &scene)
{
    std::string text;
    for (auto it = fs::recursive_directory_iterator(scene); it != fs::recursive_directory_iterator(); ++it) {
        const fs::path relative = fs::relative(it->path(), scene);
        const fs::file_status status = fs::symlink_status(it->path());
        text += relative.string() + " " + std::to_string(static_cast<int>(status.type())) + " " +
                std::to_string(static_cast<unsigned>(status.permissions()) & 07777);
        if (fs::is_symlink(status))
            text += " -> " + fs::read_symlink(it->path()).string();
        else if (fs::is_regular_file(status))
            text += " [" + contentOf(it->path()) + "]";
        text += "\n";
    }
    return text;
}

// Each case sets up the same scene twice, copies once with QFile::copy and
// once with copyFile, and expects the same result and the same scene after.
class FileCopyLinuxTest : public testing::Test
{
protected:
    using Setup = std::function<void(const fs::path &scene)>;

    void expectSameAsQt(const Setup &setup, const std::string &source, const std::string &target)
    {
        const fs::path qt = root / "qt";
        const fs::path own = root / "own";
        setup(qt);
        setup(own);
        const bool qtResult =
            QFile::copy(QString::fromStdString((qt / source).string()), QString::fromStdString((qt / target).string()));
        const bool ownResult =
            copyFile(QString::fromStdString((own / source).string()), QString::fromStdString((own / target).string()));
        EXPECT_EQ(ownResult, qtResult);
        EXPECT_EQ(sceneOf(own), sceneOf(qt));
        copied = ownResult;
        scene = sceneOf(own);
    }

    QTemporaryDir temporary;
    const fs::path root = temporary.path().toStdString();
    bool copied = false;
    std::string scene;
};

TEST_F(FileCopyLinuxTest, ACopyHasTheBytesOfItsSource)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "language=de\n"); }, "a.cfg", "b.cfg");
    EXPECT_TRUE(copied);
    EXPECT_NE(scene.find("b.cfg 1 420 [language=de\n]"), std::string::npos) << scene;
}

TEST_F(FileCopyLinuxTest, ALargeFileIsCopiedWhole)
{
    std::string content;
    for (int i = 0; content.size() < 3 * 1024 * 1024 + 17; ++i)
        content += std::to_string(i) + ",";
    expectSameAsQt([&content](const fs::path &scene) { writeFile(scene / "big.jpg", content); }, "big.jpg",
                   "big copy.jpg");
    EXPECT_TRUE(copied);
}

TEST_F(FileCopyLinuxTest, TheCopyGetsThePermissionsThatQtGives)
{
    // Qt sets the owner's bits from what the copying user may do, so a copy
    // by root of a read-only file is writable; the special bits go.
    for (const unsigned mode : {0644u, 0444u, 0400u, 0755u, 0600u, 0640u, 0000u, 04755u, 01777u}) {
        SCOPED_TRACE(mode);
        expectSameAsQt([mode](const fs::path &scene) { writeFile(scene / "x.lua", "x", fs::perms(mode)); }, "x.lua",
                       "y.lua");
        EXPECT_TRUE(copied);
        fs::remove_all(root / "qt");
        fs::remove_all(root / "own");
    }
}

TEST_F(FileCopyLinuxTest, AnExistingTargetIsNeverOverwritten)
{
    expectSameAsQt(
        [](const fs::path &scene) {
            writeFile(scene / "new.cfg", "new");
            writeFile(scene / "old.cfg", "old", fs::perms(0600));
        },
        "new.cfg", "old.cfg");
    EXPECT_FALSE(copied);
    EXPECT_NE(scene.find("old.cfg 1 384 [old]"), std::string::npos) << scene;
}

TEST_F(FileCopyLinuxTest, AFolderInTheTargetsPlaceStays)
{
    expectSameAsQt(
        [](const fs::path &scene) {
            writeFile(scene / "a.jpg", "a");
            fs::create_directories(scene / "b.jpg");
        },
        "a.jpg", "b.jpg");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, ALinkToAFileInTheTargetsPlaceStays)
{
    expectSameAsQt(
        [](const fs::path &scene) {
            writeFile(scene / "a.jpg", "a");
            writeFile(scene / "kept.jpg", "kept");
            fs::create_symlink("kept.jpg", scene / "b.jpg");
        },
        "a.jpg", "b.jpg");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, ALinkToNothingInTheTargetsPlaceIsReplacedAsQtDoes)
{
    expectSameAsQt(
        [](const fs::path &scene) {
            writeFile(scene / "a.jpg", "a");
            fs::create_symlink("gone.jpg", scene / "b.jpg");
        },
        "a.jpg", "b.jpg");
}

TEST_F(FileCopyLinuxTest, AMissingSourceCopiesNothing)
{
    expectSameAsQt([](const fs::path &scene) { fs::create_directories(scene); }, "missing.cfg", "b.cfg");
    EXPECT_FALSE(copied);
    EXPECT_EQ(scene, "");
}

TEST_F(FileCopyLinuxTest, AFolderAsTheSourceCopiesNothing)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "folder" / "inner.cfg", "x"); }, "folder", "copy");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, ALinkAsTheSourceCopiesTheFileItPointsTo)
{
    expectSameAsQt(
        [](const fs::path &scene) {
            writeFile(scene / "real.exe", "binary", fs::perms(0750));
            fs::create_symlink("real.exe", scene / "link.exe");
        },
        "link.exe", "copy.exe");
    EXPECT_TRUE(copied);
}

TEST_F(FileCopyLinuxTest, AMissingTargetFolderIsNotMade)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "a"); }, "a.cfg", "missing/b.cfg");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, AFileInTheTargetsFolderPathFails)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "a"); }, "a.cfg", "a.cfg/b.cfg");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, AnEmptyFileIsCopied)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "empty.cfg", ""); }, "empty.cfg", "copy.cfg");
    EXPECT_TRUE(copied);
}

TEST_F(FileCopyLinuxTest, AFileOnItselfStaysAsItIs)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "a"); }, "a.cfg", "a.cfg");
    EXPECT_FALSE(copied);
}

TEST_F(FileCopyLinuxTest, AFileThatReportsNoSizeIsCopiedAsQtReadsIt)
{
    // /proc files have content but a size of 0.
    const QString target = QString::fromStdString((root / "status").string());
    EXPECT_EQ(copyFile(QStringLiteral("/proc/self/status"), target),
              QFile::copy(QStringLiteral("/proc/self/status"), target + QStringLiteral(".qt")));
    EXPECT_EQ(fs::exists(root / "status"), fs::exists(root / "status.qt"));
}

TEST_F(FileCopyLinuxTest, ANulCharacterInTheSourcesNameEndsItAsQtReadsIt)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "a"); }, std::string("a.cfg\0x", 7), "c.cfg");
}

TEST_F(FileCopyLinuxTest, ANulCharacterInTheTargetsNameEndsItAsQtReadsIt)
{
    expectSameAsQt([](const fs::path &scene) { writeFile(scene / "a.cfg", "a"); }, "a.cfg", std::string("b.cfg\0x", 7));
}

TEST_F(FileCopyLinuxTest, NoNameCopiesNothing)
{
    writeFile(root / "a.cfg", "a");
    const QString source = QString::fromStdString((root / "a.cfg").string());
    const QString target = QString::fromStdString((root / "b.cfg").string());
    EXPECT_FALSE(copyFile(QString(), target));
    EXPECT_FALSE(copyFile(source, QString()));
    EXPECT_EQ(QDir(temporary.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList{"a.cfg"});
}

TEST_F(FileCopyLinuxTest, ACopyLeavesNoOtherFileInItsFolder)
{
    writeFile(root / "from" / "a.cfg", "a");
    fs::create_directories(root / "to");
    ASSERT_TRUE(copyFile(QString::fromStdString((root / "from" / "a.cfg").string()),
                         QString::fromStdString((root / "to" / "a.cfg").string())));
    EXPECT_EQ(QDir(QString::fromStdString((root / "to").string()))
                  .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System),
              QStringList{"a.cfg"});
}

} // namespace
