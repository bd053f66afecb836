// The Windows program takes the libraries that it loads by their names alone
// from the system folder only. Under Wine, --install loads one such library
// late: the start-menu step starts COM, which makes a window, and Wine's user32
// then loads uxtheme.dll by its name. Wine takes its own built-in library for
// that name wherever a file of the name lies, unless told otherwise; the
// machine tells it to take a file first for SuiteDeployer.exe, as Windows
// always does.
#include "SuiteRoot.h"
#include "WineTestMachine.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

class PlantedLibraryTest : public testing::Test
{
protected:
    PlantedLibraryTest()
    {
        machine.seedRegistry("[HKEY_CURRENT_USER\\Software\\Wine\\AppDefaults\\SuiteDeployer.exe\\DllOverrides]\n"
                             "\"uxtheme\"=\"native,builtin\"\n");
        suiteRoot::create(machine.path(Place::Scratch, "suite"));
    }

    // The planted library in place of any file of its name there.
    void plant(const QString &folder) const
    {
        const QString library = machine.linuxPath(folder + "\\uxtheme.dll");
        QFile::remove(library);
        ASSERT_TRUE(QFile::copy(QStringLiteral(PLANTED_LIBRARY), library));
    }

    // The programs that loaded the library planted in that folder, one a line.
    QString loadedBy(const QString &folder) const
    {
        QFile record(machine.linuxPath(folder + "\\planted-library-loaded"));
        return record.open(QIODevice::ReadOnly) ? QString::fromUtf8(record.readAll()) : QString();
    }

    void install() const
    {
        const QJsonObject request{{"rootDir", machine.toolPath(Place::Scratch, "suite")},
                                  {"hosts", QJsonArray()},
                                  {"plugins", QJsonArray{"Rectilo"}},
                                  {"language", 1},
                                  {"version", "4.2.0"},
                                  {"mixpanelEnabled", true}};
        machine.runQuietly("--install", request);
    }

    WineTestMachine machine;
};

} // namespace

TEST_F(PlantedLibraryTest, ALibraryBesideTheProgramIsNotLoaded)
{
    plant("C:\\setup");
    install();
    EXPECT_EQ(loadedBy("C:\\setup"), "");
}

// The same library in the system folder is loaded: the run above had reason
// to look for it.
TEST_F(PlantedLibraryTest, ALibraryOfTheSystemFolderIsLoaded)
{
    plant("C:\\windows\\system32");
    install();
    EXPECT_TRUE(loadedBy("C:\\windows\\system32").split('\n').contains("C:\\setup\\SuiteDeployer.exe"))
        << loadedBy("C:\\windows\\system32").toStdString();
}
