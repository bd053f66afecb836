#include "FolderProbe.h"
#include "LockHolderProcess.h"
#include "Machine.h"
#include "RegistryHiveFormat.h"
#include "RegistrySettings.h"
#include "ScopedEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLockFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <unistd.h>

namespace {

const QString suiteKey = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection\\");

class RegistrySettingsLinuxTest : public testing::Test
{
protected:
    QString userHive() const { return machine.path("home/.config/winreg/HKEY_CURRENT_USER.reg"); }
    QString machineHive() const { return machine.path("etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"); }

    QByteArray contentOf(const QString &path) const
    {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    void writeHive(const QString &path, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    Machine machine;
    ScopedEnvironment environment{machine};
};

} // namespace

TEST_F(RegistrySettingsLinuxTest, EachHiveIsOneFileUnderTheXdgFolders)
{
    openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection\\")->setValue("app_loglevel", "warning");
    openRegistryKey(suiteKey)->setValue("currentLanguage", 2);
    EXPECT_EQ(contentOf(userHive()), "Windows Registry Editor Version 5.00\n\n"
                                     "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection]\n"
                                     "\"app_loglevel\"=\"warning\"\n\n");
    EXPECT_EQ(contentOf(machineHive()), "Windows Registry Editor Version 5.00\n\n"
                                        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n"
                                        "\"currentLanguage\"=dword:00000002\n\n");
}

TEST_F(RegistrySettingsLinuxTest, UnsetOrEmptyXdgVariablesFallBack)
{
    environment.set("XDG_CONFIG_HOME", "");
    EXPECT_EQ(openRegistryKey("HKEY_CURRENT_USER\\x")->fileName(),
              machine.path("home/.config/winreg/HKEY_CURRENT_USER.reg"));
    environment.unset("XDG_CONFIG_HOME");
    environment.set("HOME", machine.path("elsewhere").toUtf8());
    EXPECT_EQ(openRegistryKey("HKEY_CURRENT_USER\\x")->fileName(),
              machine.path("elsewhere/.config/winreg/HKEY_CURRENT_USER.reg"));
    environment.set("XDG_CONFIG_DIRS", (machine.path("first") + ":" + machine.path("second")).toUtf8());
    EXPECT_EQ(openRegistryKey("HKEY_LOCAL_MACHINE\\x")->fileName(),
              machine.path("first/winreg/HKEY_LOCAL_MACHINE.reg"));
    environment.set("XDG_CONFIG_DIRS", "");
    EXPECT_EQ(openRegistryKey("HKEY_LOCAL_MACHINE\\x")->fileName(), "/etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg");
    environment.unset("XDG_CONFIG_DIRS");
    EXPECT_EQ(openRegistryKey("HKEY_LOCAL_MACHINE\\x")->fileName(), "/etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg");
}

TEST_F(RegistrySettingsLinuxTest, OtherHivesHaveNoStore)
{
    {
        const auto classes = openRegistryKey("HKEY_CLASSES_ROOT\\.orv");
        classes->setValue("x", "y");
        classes->sync();
        EXPECT_EQ(classes->status(), QSettings::AccessError);
    }
    EXPECT_FALSE(openRegistryKey("HKEY_CLASSES_ROOT\\.orv")->contains("x"));
    EXPECT_FALSE(QFile::exists(userHive()));
    EXPECT_FALSE(QFile::exists(machineHive()));
}

TEST_F(RegistrySettingsLinuxTest, OverlappingViewsSeeOneTree)
{
    const auto maker = openRegistryKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin");
    const auto suite = openRegistryKey(suiteKey);
    suite->setValue("InstallPath", "/opt/orv");
    EXPECT_EQ(maker->value("Orv Collection/InstallPath").toString(), "/opt/orv");
    maker->setValue("Orv Collection/Locations/PS_Name", "Photoshop");
    EXPECT_EQ(suite->value("Locations/PS_Name").toString(), "Photoshop");
}

TEST_F(RegistrySettingsLinuxTest, OpeningAPathIgnoresCaseAndKeepsTheFirstSpelling)
{
    openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin")->setValue("a", 1);
    const auto other = openRegistryKey("hkey_current_user\\Software\\TAVRIN\\");
    EXPECT_EQ(other->value("a").toInt(), 1);
    other->setValue("b", 2);
    other->sync();
    EXPECT_EQ(contentOf(userHive()), "Windows Registry Editor Version 5.00\n\n"
                                     "[HKEY_CURRENT_USER\\SOFTWARE\\Tavrin]\n"
                                     "\"a\"=dword:00000001\n"
                                     "\"b\"=dword:00000002\n\n");
}

TEST_F(RegistrySettingsLinuxTest, EmptyPathComponentsCountAsNothing)
{
    openRegistryKey(suiteKey + "\\Locations")->setValue("PS_Path", "/opt/ps");
    EXPECT_EQ(openRegistryKey(suiteKey + "Locations")->value("PS_Path").toString(), "/opt/ps");
    EXPECT_EQ(openRegistryKey("HKEY_LOCAL_MACHINE\\\\SOFTWARE\\WOW6432Node\\\\Tavrin\\Orv Collection\\Locations\\\\")
                  ->value("PS_Path")
                  .toString(),
              "/opt/ps");
}

TEST_F(RegistrySettingsLinuxTest, ChildGroupsAndAllKeysStayBelowTheViewsRoot)
{
    const auto root = openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE");
    root->setValue("Outside/x", 1);
    root->setValue("Tavrin/top", 1);
    root->setValue("Tavrin/Orv Collection/a", 1);
    root->setValue("Tavrin/Zonal Tool/b", 1);
    const auto maker = openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin");
    EXPECT_EQ(maker->childGroups(), (QStringList{"Orv Collection", "Zonal Tool"}));
    EXPECT_EQ(maker->childKeys(), QStringList{"top"});
    EXPECT_EQ(maker->allKeys(), (QStringList{"Orv Collection/a", "Zonal Tool/b", "top"}));
}

TEST_F(RegistrySettingsLinuxTest, RemoveOfAGroupAndOfTheWholeKeyStayInsideTheView)
{
    const auto root = openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE");
    root->setValue("Outside/x", 1);
    root->setValue("Tavrin/top", 1);
    root->setValue("Tavrin/Orv Collection/a", 1);
    root->setValue("Tavrin/Zonal Tool/b", 1);
    const auto maker = openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin");
    maker->remove("Zonal Tool");
    EXPECT_EQ(root->allKeys(), (QStringList{"Outside/x", "Tavrin/Orv Collection/a", "Tavrin/top"}));
    openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin\\Orv Collection")->remove("");
    EXPECT_EQ(root->allKeys(), (QStringList{"Outside/x", "Tavrin/top"}));
    maker->remove("");
    EXPECT_EQ(root->allKeys(), QStringList{"Outside/x"});
    root->sync();
    EXPECT_EQ(contentOf(userHive()), "Windows Registry Editor Version 5.00\n\n"
                                     "[HKEY_CURRENT_USER\\SOFTWARE\\Outside]\n"
                                     "\"x\"=dword:00000001\n\n");
}

// The reason why the flows never call clear() on a view.
TEST_F(RegistrySettingsLinuxTest, ClearOnAViewWouldEmptyTheWholeHive)
{
    openRegistryKey("HKEY_CURRENT_USER\\Other")->setValue("x", 1);
    openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin")->clear();
    EXPECT_FALSE(openRegistryKey("HKEY_CURRENT_USER\\Other")->contains("x"));
}

TEST_F(RegistrySettingsLinuxTest, EveryValueKindSurvivesTheFile)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"blob\"=hex:01,02,\\\n  03\n");
    const QString text = QString::fromUtf8("C:\\Users\\Jürgen \"J\"\nnext — 日本語");
    {
        const auto key = openRegistryKey("HKEY_CURRENT_USER\\K");
        key->setValue("text", text);
        key->setValue("number", 42);
        key->setValue("Sub/.", "default");
        key->setValue("empty", "");
    }
    const QSettings::SettingsMap onDisk = registryHive::parse(contentOf(userHive()), "HKEY_CURRENT_USER");
    EXPECT_EQ(onDisk.value("K/text").toString(), text);
    EXPECT_EQ(onDisk.value("K/number"), QVariant(42));
    EXPECT_EQ(onDisk.value("K/Sub/."), QVariant(QString("default")));
    EXPECT_EQ(onDisk.value("K/empty"), QVariant(QString()));
    EXPECT_TRUE(contentOf(userHive()).contains("\"blob\"=hex:01,02,\\\n  03\n"));
}

TEST_F(RegistrySettingsLinuxTest, AHandWrittenHiveReadsAsIntended)
{
    writeHive(machineHive(), "Windows Registry Editor Version 5.00\n"
                             "\n"
                             "; Photoshop's own keys\n"
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]\n"
                             "\"PluginPath\"=\"C:\\\\Program Files\\\\Adobe\\\\Plug-ins\"\n"
                             "\"Shape\"=hex:de,ad\n"
                             "\n"
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]\n"
                             "@=\"/opt/pse/plugins\"\n"
                             "\n"
                             "[HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Tavrin\\Orv Collection]\n"
                             "\"currentLanguage\"=dword:00000002\n"
                             "\"Quote\"=\"say \\\"hi\\\"\"\n");
    const auto adobe = openRegistryKey("HKEY_LOCAL_MACHINE\\Software\\Adobe");
    EXPECT_EQ(adobe->childGroups(), (QStringList{"Photoshop", "Photoshop Elements"}));
    EXPECT_EQ(adobe->value("Photoshop/120.0/PluginPath").toString(), "C:\\Program Files\\Adobe\\Plug-ins");
    EXPECT_EQ(adobe->value("Photoshop/120.0/Shape").toString(), "");
    EXPECT_EQ(adobe->value("Photoshop Elements/16/PluginPath/.").toString(), "/opt/pse/plugins");
    const auto suite = openRegistryKey(suiteKey);
    EXPECT_EQ(suite->value("currentLanguage").toInt(), 2);
    EXPECT_EQ(suite->value("Quote").toString(), "say \"hi\"");
}

TEST_F(RegistrySettingsLinuxTest, AReadOnlyHiveFolderLosesNothing)
{
    const QByteArray before = "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n";
    writeHive(userHive(), before);
    const QString folder = QFileInfo(userHive()).path();
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    {
        const auto key = openRegistryKey("HKEY_CURRENT_USER\\K");
        key->setValue("new", "2");
        key->sync();
        if (geteuid() != 0) {
            EXPECT_EQ(key->status(), QSettings::AccessError);
        }
    }
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(openRegistryKey("HKEY_CURRENT_USER\\K")->value("kept").toString(), "1");
    if (geteuid() != 0) {
        EXPECT_EQ(contentOf(userHive()), before);
    }
}

TEST_F(RegistrySettingsLinuxTest, TwoProcessesWritingOneHiveAtOnceLoseNothing)
{
    constexpr int count = 150;
    QProcess first;
    QProcess second;
    for (auto [process, key] : {std::pair{&first, "A"}, std::pair{&second, "B"}}) {
        process->setProcessEnvironment(machine.environment());
        process->start(REGISTRY_WRITER, {QString("HKEY_CURRENT_USER\\Software\\Race\\") + key, QString::number(count)});
    }
    ASSERT_TRUE(first.waitForFinished(120000));
    ASSERT_TRUE(second.waitForFinished(120000));
    EXPECT_EQ(first.exitCode(), 0);
    EXPECT_EQ(second.exitCode(), 0);
    const auto race = openRegistryKey("HKEY_CURRENT_USER\\Software\\Race");
    EXPECT_EQ(race->allKeys().size(), 2 * count);
    EXPECT_EQ(race->value("A/149").toInt(), 149);
    EXPECT_EQ(race->value("B/0").toInt(), 0);
}

// A run killed while QSettings held its lock on a hive, or between making the
// lock file and writing its owner into it, leaves the file; Qt would wait for
// an empty one to age 30 seconds before any write.
TEST_F(RegistrySettingsLinuxTest, AnAbandonedWritersLockBesideEitherHiveGoesWhenAViewOpens)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n");
    writeHive(machineHive(), "[HKEY_LOCAL_MACHINE\\K]\n\"kept\"=\"1\"\n");
    writeHive(userHive() + ".lock", "");
    writeHive(machineHive() + ".lock", "2147483646\nSuiteDeployer\nmachine\n");
    const auto key = openRegistryKey("HKEY_CURRENT_USER\\K");
    EXPECT_FALSE(QFile::exists(userHive() + ".lock"));
    EXPECT_FALSE(QFile::exists(machineHive() + ".lock"));
    key->setValue("new", "2");
    key->sync();
    EXPECT_EQ(key->status(), QSettings::NoError);
    EXPECT_EQ(registryHive::parse(contentOf(userHive()), "HKEY_CURRENT_USER").value("K/new"), "2");
}

// The view opens in a second process, so that a view that waited for the
// living owner shows as a holder that never says it holds.
TEST_F(RegistrySettingsLinuxTest, AWritersLockWithALivingOwnerStays)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n");
    QLockFile owner(userHive() + ".lock");
    ASSERT_TRUE(owner.tryLock());
    LockHolderProcess viewer({"registry", "HKEY_CURRENT_USER\\K"}, machine.environment());
    EXPECT_TRUE(viewer.holds());
    EXPECT_TRUE(QFile::exists(userHive() + ".lock"));
}

// The report and the probe only read; on a machine without hives they leave none.
TEST_F(RegistrySettingsLinuxTest, ReadingHivesThatDoNotExistCreatesNothing)
{
    const auto entries = [this] {
        QStringList found;
        QDirIterator it(machine.root(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            found.append(it.next());
        found.sort();
        return found;
    };
    const QStringList before = entries();
    EXPECT_EQ(openRegistryKey(suiteKey)->value("currentLanguage").toInt(), 0);
    EXPECT_TRUE(openRegistryKey("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin")->childGroups().isEmpty());
    EXPECT_EQ(openRegistryKeyForReading(suiteKey)->value("currentLanguage").toInt(), 0);
    EXPECT_TRUE(openRegistryKeyForReading("HKEY_CURRENT_USER\\SOFTWARE\\Tavrin")->childGroups().isEmpty());
    EXPECT_EQ(entries(), before);
}

// Not even for a moment: the kernel reports every file made in the hives'
// folders while a view reads, whether the hive is there or not.
TEST_F(RegistrySettingsLinuxTest, ReadingAHiveMakesNoFileBesideIt)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n");
    QDir().mkpath(QFileInfo(machineHive()).path());
    const int watcher = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(watcher, 0);
    for (const QString &hive : {userHive(), machineHive()})
        ASSERT_GE(inotify_add_watch(watcher, QFile::encodeName(QFileInfo(hive).path()).constData(), IN_CREATE), 0);
    EXPECT_EQ(openRegistryKey("HKEY_CURRENT_USER\\K")->value("kept").toString(), "1");
    EXPECT_EQ(openRegistryKey(suiteKey)->value("currentLanguage").toInt(), 0);
    char events[4096];
    EXPECT_EQ(::read(watcher, events, sizeof events), -1);
    ::close(watcher);
}

// Both hives' locks are held for as long as a view lives, and the kernel
// drops them when its process is killed: the next view neither waits nor
// finds anything left behind.
TEST_F(RegistrySettingsLinuxTest, AViewHoldsBothHivesLocksUntilItsProcessIsKilled)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n");
    const QString userFolder = machine.path("home/.config");
    const QString machineFolder = machine.path("etc/xdg");
    LockHolderProcess holder({"registry", "HKEY_CURRENT_USER\\K"}, machine.environment());
    ASSERT_TRUE(holder.holds());
    EXPECT_TRUE(isFlockedElsewhere(userFolder));
    EXPECT_TRUE(isFlockedElsewhere(machineFolder));
    holder.kill();
    EXPECT_FALSE(isFlockedElsewhere(userFolder));
    EXPECT_FALSE(isFlockedElsewhere(machineFolder));
    const auto key = openRegistryKey("HKEY_CURRENT_USER\\K");
    key->setValue("after", "2");
    key->sync();
    EXPECT_EQ(key->status(), QSettings::NoError);
    EXPECT_EQ(QDir(QFileInfo(userHive()).path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{"HKEY_CURRENT_USER.reg"});
}

// A view for reading sees the hive as a writer's view does, and holds neither
// hive's lock while it lives.
TEST_F(RegistrySettingsLinuxTest, AViewForReadingTakesNoLock)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\SOFTWARE\\K]\n\"kept\"=\"1\"\n");
    const auto key = openRegistryKeyForReading("HKEY_CURRENT_USER\\Software\\k");
    EXPECT_EQ(key->value("kept").toString(), "1");
    EXPECT_FALSE(isFlockedElsewhere(machine.path("home/.config")));
    EXPECT_FALSE(isFlockedElsewhere(machine.path("etc/xdg")));
}

// It does not wait for another process's view that holds the locks.
TEST_F(RegistrySettingsLinuxTest, AViewForReadingDoesNotWaitForAWriter)
{
    writeHive(userHive(), "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n");
    LockHolderProcess writer({"registry", "HKEY_CURRENT_USER\\K"}, machine.environment());
    ASSERT_TRUE(writer.holds());
    LockHolderProcess reader({"reader", "HKEY_CURRENT_USER\\K"}, machine.environment());
    EXPECT_TRUE(reader.holds());
}

// Without the locks a write could meet another writer; it fails instead and
// leaves the hive and its folder as they were.
TEST_F(RegistrySettingsLinuxTest, AWriteThroughAViewForReadingFails)
{
    const QByteArray content = "[HKEY_CURRENT_USER\\K]\n\"kept\"=\"1\"\n";
    writeHive(userHive(), content);
    const auto key = openRegistryKeyForReading("HKEY_CURRENT_USER\\K");
    key->setValue("new", "2");
    key->sync();
    EXPECT_NE(key->status(), QSettings::NoError);
    EXPECT_EQ(contentOf(userHive()), content);
    EXPECT_EQ(QDir(QFileInfo(userHive()).path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{"HKEY_CURRENT_USER.reg"});
}
