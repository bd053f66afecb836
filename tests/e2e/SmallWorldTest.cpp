// The small world that runs without rights see: what a walk from the root
// finds there must not depend on what else lies on the machine.
#include "DeployerRun.h"
#include "TestMachine.h"
#include "UnprivilegedRun.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// Lists what `find /` finds in the small world that keeps the given folder,
// but for the processes and devices, which live.
QStringList walkFromTheRoot(const QString &kept)
{
    const DeployerRun run =
        runInSmallWorld({kept}, QProcessEnvironment::systemEnvironment(), QDir::rootPath(), {"find", "/"});
    EXPECT_EQ(run.exitCode, 0) << run.standardError.toStdString();
    QStringList found;
    for (const QString &entry : QString::fromUtf8(run.standardOutput).split('\n', Qt::SkipEmptyParts)) {
        if (!entry.startsWith("/proc/") && !entry.startsWith("/dev/"))
            found.append(entry);
    }
    return found;
}

class SmallWorldTest : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE("the small world is where the Linux build's runs without rights go");
        if (!runsAsAnotherUser())
            GTEST_SKIP() << "only root runs the tool in a small world";
    }

    QTemporaryDir kept;
    QTemporaryDir other;
};

TEST_F(SmallWorldTest, TheKeptFolderIsThereAndAnotherOneIsNot)
{
    QFile(kept.filePath("machine.txt")).open(QIODevice::WriteOnly);
    QFile(other.filePath("checkout.txt")).open(QIODevice::WriteOnly);
    const QStringList found = walkFromTheRoot(kept.path());
    EXPECT_TRUE(found.contains(kept.filePath("machine.txt")));
    EXPECT_FALSE(found.contains(other.filePath("checkout.txt")));
    EXPECT_FALSE(found.contains(other.path()));
}

TEST_F(SmallWorldTest, TheSystemsLibrariesAndProgramsStayAndTheRestOfUsrGoes)
{
    const QStringList found = walkFromTheRoot(kept.path());
    EXPECT_TRUE(found.contains("/usr/bin/setpriv"));
    EXPECT_TRUE(found.contains("/etc/passwd"));
    for (const QString &entry : found)
        EXPECT_FALSE(entry.startsWith("/usr/share/") || entry.startsWith("/usr/include/")) << entry.toStdString();
}

TEST_F(SmallWorldTest, TheWalkFindsTheSameWhateverLiesBesideIt)
{
    const QStringList before = walkFromTheRoot(kept.path());
    QDir(other.path()).mkpath("a/b/c");
    const QStringList after = walkFromTheRoot(kept.path());
    EXPECT_EQ(after, before);
}

} // namespace
