#include "AbandonedLockFile.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class AbandonedLockFileTest : public testing::Test
{
protected:
    QString lockFile() const { return scratch.filePath("HKEY_CURRENT_USER.reg.lock"); }

    void writeLockFile(const QByteArray &content) const
    {
        QFile file(lockFile());
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    QTemporaryDir scratch;
};

} // namespace

// What a run killed between creating the lock file and writing its owner leaves.
TEST_F(AbandonedLockFileTest, AnEmptyLockFileIsRemoved)
{
    writeLockFile("");
    EXPECT_TRUE(removeAbandonedLockFile(lockFile()));
    EXPECT_FALSE(QFile::exists(lockFile()));
}

TEST_F(AbandonedLockFileTest, ALockFileOfAProcessThatIsGoneIsRemoved)
{
    writeLockFile("2147483646\nSuiteDeployer\nmachine\n");
    EXPECT_TRUE(removeAbandonedLockFile(lockFile()));
    EXPECT_FALSE(QFile::exists(lockFile()));
}

TEST_F(AbandonedLockFileTest, ALockFileWithALivingOwnerStays)
{
    QLockFile owner(lockFile());
    ASSERT_TRUE(owner.tryLock());
    const QByteArray content = [this] {
        QFile file(lockFile());
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }();
    EXPECT_FALSE(removeAbandonedLockFile(lockFile()));
    ASSERT_TRUE(QFile::exists(lockFile()));
    QFile file(lockFile());
    file.open(QIODevice::ReadOnly);
    EXPECT_EQ(file.readAll(), content);
    owner.unlock();
    EXPECT_FALSE(QFile::exists(lockFile()));
}

TEST_F(AbandonedLockFileTest, NoLockFileMeansNothingToRemoveAndNothingMade)
{
    EXPECT_FALSE(removeAbandonedLockFile(lockFile()));
    EXPECT_FALSE(QFile::exists(lockFile()));
}

// A link is not followed: whatever it points at is not the caller's to remove.
TEST_F(AbandonedLockFileTest, ALinkInItsPlaceStaysWithItsTarget)
{
    const QString target = scratch.filePath("target");
    QFile(target).open(QIODevice::WriteOnly);
    ASSERT_TRUE(QFile::link(target, lockFile()));
    EXPECT_FALSE(removeAbandonedLockFile(lockFile()));
    EXPECT_TRUE(QFileInfo(lockFile()).isSymLink());
    EXPECT_TRUE(QFile::exists(target));
}
