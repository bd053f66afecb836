#include "DeployerRun.h"
#include "HostMachine.h"
#include "Machine.h"
#include "RegistryHiveFormat.h"
#include "SuiteRoot.h"
#include "TestMachine.h"

#include <QFile>
#include <QJsonArray>
#include <QTextCodec>

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

const QString userHive = "home/.config/winreg/HKEY_CURRENT_USER.reg";
constexpr int sectionCount = 12;
constexpr int hugeSize = 4 * 1024 * 1024;

// A hive as other programs leave it: values of every kind, escapes and text beyond ASCII.
QByteArray soundHive(const QByteArray &hiveName)
{
    QByteArray text = "Windows Registry Editor Version 5.00\n\n";
    for (int i = 0; i < sectionCount; ++i) {
        const QByteArray n = QByteArray::number(i);
        text += "[" + hiveName + "\\SOFTWARE\\Foreign " + n + "]\n";
        text += "@=\"default " + n + "\"\n";
        text += "\"binary\"=hex:01,02," + n + "\n";
        text += "\"number\"=dword:0000002" + n.right(1) + "\n";
        text += "\"quoted\"=\"a \\\"quote\\\" and a \\\\ backslash " + n + "\"\n";
        text += "\"umlaut\"=\"Gr\xC3\xBC\xC3\x9F"
                "e " +
                n + "\"\n\n";
    }
    return text;
}

// The place where the sound hive's sections are split in two.
int middleOf(const QByteArray &sound)
{
    return sound.lastIndexOf('[', sound.indexOf("\\Foreign " + QByteArray::number(sectionCount / 2) + "]"));
}

QByteArray randomBytes(int size)
{
    std::mt19937 engine(20240309);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(engine() & 0xFF);
    return bytes;
}

QByteArray withInTheMiddle(const QByteArray &sound, const QByteArray &junk)
{
    return sound.left(middleOf(sound)) + junk + "\n" + sound.mid(middleOf(sound));
}

QByteArray binaryJunk()
{
    QByteArray bytes(4096, '\0');
    for (int i = 0; i < 4096; ++i)
        bytes += static_cast<char>(i & 0xFF);
    return bytes;
}

struct Damage
{
    const char *name;
    std::function<QByteArray(const QByteArray &sound)> apply;
    // How many values can still be read after the damage.
    int readableValues;
};

const Damage damages[] = {
    {"TruncatedInsideAValue",
     [](const QByteArray &s) { return s.left(s.indexOf("\"quoted\"=\"a ", middleOf(s)) + 12); },
     sectionCount / 2 * 5 + 3},
    {"TruncatedInsideAnEscape",
     [](const QByteArray &s) { return s.left(s.indexOf("\\\\ backslash", middleOf(s)) + 1); },
     sectionCount / 2 * 5 + 3},
    {"TruncatedInsideACharacter", [](const QByteArray &s) { return s.left(s.indexOf("\xC3\xBC", middleOf(s)) + 1); },
     sectionCount / 2 * 5 + 4},
    {"TruncatedInsideASectionName", [](const QByteArray &s) { return s.left(middleOf(s) + 20); }, sectionCount / 2 * 5},
    {"RandomBytesBetweenSections", [](const QByteArray &s) { return withInTheMiddle(s, randomBytes(65536)); },
     sectionCount * 5},
    {"BinaryBetweenSections", [](const QByteArray &s) { return withInTheMiddle(s, binaryJunk()); }, sectionCount * 5},
    {"OnlyRandomBytes", [](const QByteArray &) { return randomBytes(65536); }, 0},
    {"HalfAUtf16File",
     [](const QByteArray &s) {
         const QByteArray utf16 = "\xFF\xFE" + QTextCodec::codecForName("UTF-16LE")->fromUnicode(QString::fromUtf8(s));
         return utf16.left(utf16.size() / 2 | 1);
     },
     sectionCount / 2 * 5 - 1},
    {"AHugeLineOfJunk", [](const QByteArray &s) { return withInTheMiddle(s, QByteArray(hugeSize, 'x')); },
     sectionCount * 5},
    {"AHugeValue",
     [](const QByteArray &s) {
         return withInTheMiddle(s, "[HIVE\\SOFTWARE\\Huge]\n\"big\"=\"" + QByteArray(hugeSize, 'x') + "\"\n");
     },
     sectionCount * 5 + 1},
};

class DamagedHiveE2ETest : public testing::TestWithParam<Damage>
{
protected:
    void SetUp() override
    {
        SKIP_UNDER_WINE("damages the Linux build's registry hive files, which Windows' registry doesn't have");
    }

    DamagedHiveE2ETest() { suiteRoot::create(machine.path("suite")); }

    QByteArray damagedHive(const QByteArray &hiveName) const
    {
        return GetParam().apply(soundHive(hiveName)).replace("[HIVE\\", "[" + hiveName + "\\");
    }

    // The file is one that the tool wrote whole, and what could be read of the damaged one is in it.
    void expectRewrittenKeeping(const QString &relative, const char *hiveName,
                                const QSettings::SettingsMap &readable) const
    {
        const QByteArray written = machine.readFile(relative);
        const QSettings::SettingsMap values = registryHive::parse(written, hiveName);
        EXPECT_TRUE(written.startsWith("Windows Registry Editor Version 5.00\n\n[")) << hiveName;
        EXPECT_TRUE(written == registryHive::write(values, hiveName)) << hiveName;
        for (auto it = readable.begin(); it != readable.end(); ++it)
            EXPECT_EQ(values.value(it.key()), it.value()) << hiveName << " " << it.key().toStdString();
    }

    Machine machine;
};

} // namespace

TEST_P(DamagedHiveE2ETest, TheReadablePartIsKeptAndTheNextWriteIsWhole)
{
    const QByteArray machineText = damagedHive("HKEY_LOCAL_MACHINE");
    const QByteArray userText = damagedHive("HKEY_CURRENT_USER");
    machine.writeFile(hostMachine::machineHive, machineText);
    machine.writeFile(userHive, userText);
    const QSettings::SettingsMap machineReadable = registryHive::parse(machineText, "HKEY_LOCAL_MACHINE");
    const QSettings::SettingsMap userReadable = registryHive::parse(userText, "HKEY_CURRENT_USER");
    EXPECT_EQ(machineReadable.size(), GetParam().readableValues);
    EXPECT_EQ(userReadable.size(), GetParam().readableValues);

    const QJsonObject request{{"rootDir", machine.path("suite")},
                              {"plugins", QJsonArray{"Grainwick 3", "Rectilo"}},
                              {"hosts", QJsonArray{QJsonObject{{"appName", "Photoshop"}, {"pluginPath", "/ps"}}}},
                              {"language", 3},
                              {"version", "4.2.0"}};
    const DeployerRun run = runDeployer(machine, {"--config", encodeRequest(request)});
    EXPECT_TRUE(run.exitedNormally);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.standardOutput, "");

    expectRewrittenKeeping(hostMachine::machineHive, "HKEY_LOCAL_MACHINE", machineReadable);
    expectRewrittenKeeping(userHive, "HKEY_CURRENT_USER", userReadable);
    const QSettings::SettingsMap machineValues =
        registryHive::parse(machine.readFile(hostMachine::machineHive), "HKEY_LOCAL_MACHINE");
    EXPECT_EQ(machineValues.value("SOFTWARE/WOW6432Node/Tavrin/Orv Collection/InstallPath").toString(),
              machine.path("suite/bin"));
    EXPECT_EQ(machineValues.value("SOFTWARE/WOW6432Node/Tavrin/Orv Collection/Locations/0_Path").toString(), "/ps");
    EXPECT_EQ(registryHive::parse(machine.readFile(userHive), "HKEY_CURRENT_USER")
                  .value("SOFTWARE/Tavrin/Orv Collection/currentLanguage"),
              QVariant(3));
}

INSTANTIATE_TEST_SUITE_P(Damages, DamagedHiveE2ETest, testing::ValuesIn(damages),
                         [](const testing::TestParamInfo<Damage> &info) { return std::string(info.param.name); });
