#include "DeployerRun.h"
#include "FolderLock.h"
#include "FolderProbe.h"
#include "LockHolderProcess.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class FolderLockTest : public testing::Test
{
protected:
    FolderLockTest() { QDir().mkpath(folder()); }

    QString folder() const { return scratch.filePath("hives"); }

    QTemporaryDir scratch;
};

} // namespace

TEST_F(FolderLockTest, NoOtherDescriptorTakesTheFolderWhileItIsHeld)
{
    {
        const FolderLock lock(folder());
        EXPECT_TRUE(lock.isHeld());
        EXPECT_TRUE(isFlockedElsewhere(folder()));
    }
    EXPECT_FALSE(isFlockedElsewhere(folder()));
}

TEST_F(FolderLockTest, TakingItCreatesNothing)
{
    {
        const FolderLock lock(folder());
        EXPECT_TRUE(QDir(folder()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
    }
    EXPECT_EQ(QDir(scratch.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{"hives"});
}

// Two descriptors of one folder would exclude each other inside one process;
// the inner lock must count up on the outer one. The helper would hang otherwise.
TEST_F(FolderLockTest, LocksOfOneFolderInOneProcessNestWithoutWaiting)
{
    const DeployerRun nested =
        runProgram(LOCK_HOLDER, QProcessEnvironment::systemEnvironment(), scratch.path(), {"nested", folder()}, 60000);
    EXPECT_FALSE(nested.hung);
    EXPECT_EQ(nested.exitCode, 0);
    {
        const FolderLock outer(folder());
        {
            const FolderLock inner(folder() + "/.");
            EXPECT_TRUE(inner.isHeld());
        }
        EXPECT_TRUE(isFlockedElsewhere(folder()));
    }
    EXPECT_FALSE(isFlockedElsewhere(folder()));
}

TEST_F(FolderLockTest, AMissingFolderOrAFileIsNotLockedAndStaysAsItWas)
{
    const QString missing = scratch.filePath("missing");
    const QString file = scratch.filePath("file");
    QFile(file).open(QIODevice::WriteOnly);
    EXPECT_FALSE(FolderLock(missing).isHeld());
    EXPECT_FALSE(QFile::exists(missing));
    EXPECT_FALSE(FolderLock(file).isHeld());
    EXPECT_EQ(QFile(file).size(), 0);
}

TEST_F(FolderLockTest, TheLockEndsWithAKilledHolder)
{
    LockHolderProcess holder({"folder", folder()}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(holder.holds());
    EXPECT_TRUE(isFlockedElsewhere(folder()));
    holder.kill();
    EXPECT_FALSE(isFlockedElsewhere(folder()));
    EXPECT_TRUE(QDir(folder()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
}
