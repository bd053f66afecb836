#include "FilePermissions.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>
#include <string>

namespace {

// The values of the one use: the group "Users" may read, write and delete.
constexpr std::int32_t fileObject = 1;
constexpr std::int32_t trusteeIsName = 1;
constexpr std::uint32_t readWriteDelete = 0xC0010000;
constexpr std::int32_t setAccess = 2;
constexpr std::uint32_t objectAndContainerInherit = 3;

constexpr std::uint32_t invalidParameter = 87;

std::uint32_t grantUsersAccess(const std::wstring &objectName, const wchar_t *trustee = L"Users")
{
    return grantAccess(objectName.c_str(), fileObject, trustee, trusteeIsName, readWriteDelete, setAccess,
                       objectAndContainerInherit);
}

// Permission bits only, as stat gives them: independent of the umask.
mode_t modeOf(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return static_cast<mode_t>(-1);
    return status.st_mode & 07777;
}

class FilePermissionsLinuxTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        QFile file(collectionFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.close();
        ASSERT_TRUE(QFile::setPermissions(collectionFile(), QFile::ReadOwner | QFile::WriteOwner));
        ASSERT_TRUE(QFile::setPermissions(folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    QString folder() const { return temporary.path() + "/ProgramData/Tavrin"; }
    QString collectionFile() const { return folder() + "/OrvCollection.cfg"; }

    QTemporaryDir temporary;
};

} // namespace

TEST_F(FilePermissionsLinuxTest, GivesTheFileMode0666AndItsFolderMode0777)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(grantUsersAccess(collectionFile().toStdWString()), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(modeOf(collectionFile()), 0666u);
    EXPECT_EQ(modeOf(folder()), 0777u);
    EXPECT_EQ(modeOf(temporary.path()), 0700u);
}

TEST_F(FilePermissionsLinuxTest, ANullNameGives87AndPrintsNothing)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(grantAccess(nullptr, fileObject, L"Users", trusteeIsName, readWriteDelete, setAccess,
                          objectAndContainerInherit),
              invalidParameter);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(modeOf(collectionFile()), 0600u);
    EXPECT_EQ(modeOf(folder()), 0700u);
}

TEST_F(FilePermissionsLinuxTest, AMissingFileGivesEnoentAndChangesNothing)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(grantUsersAccess((folder() + "/missing.cfg").toStdWString()), static_cast<std::uint32_t>(ENOENT));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(modeOf(folder()), 0700u);
}

TEST_F(FilePermissionsLinuxTest, APathBelowAFileGivesEnotdir)
{
    EXPECT_EQ(grantUsersAccess((collectionFile() + "/inner.cfg").toStdWString()), static_cast<std::uint32_t>(ENOTDIR));
    EXPECT_EQ(modeOf(collectionFile()), 0600u);
}

TEST_F(FilePermissionsLinuxTest, TheTrusteeIsNotLookedUp)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(grantUsersAccess(collectionFile().toStdWString(), L"No Such Group"), 0u);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(modeOf(collectionFile()), 0666u);
}

TEST_F(FilePermissionsLinuxTest, ANameBeyondAsciiIsTakenAsUtf8)
{
    const QString folderName = QString::fromUtf8("Gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80");
    const QString name = temporary.path() + "/" + folderName + "/Fichier \xC3\xA9t\xC3\xA9.cfg";
    ASSERT_TRUE(QDir().mkpath(temporary.path() + "/" + folderName));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    ASSERT_TRUE(QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(grantUsersAccess(name.toStdWString()), 0u);
    EXPECT_EQ(modeOf(name), 0666u);
    EXPECT_EQ(modeOf(temporary.path() + "/" + folderName), 0777u);
}

TEST_F(FilePermissionsLinuxTest, ARelativeNameMeansTheFileInTheWorkingFolder)
{
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder()));
    const std::uint32_t result = grantUsersAccess(L"OrvCollection.cfg");
    QDir::setCurrent(previous);
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(modeOf(collectionFile()), 0666u);
    EXPECT_EQ(modeOf(folder()), 0777u);
}
