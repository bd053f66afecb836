#include "LogCapture.h"
#include "LuaAssignment.h"
#include "Machine.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

class LuaAssignmentTest : public testing::Test
{
protected:
    QByteArray contentOf(const QString &relativePath) const
    {
        QFile file(machine.path(relativePath));
        if (!file.open(QIODevice::ReadOnly))
            return "<unreadable>";
        return file.readAll();
    }

    Machine machine;
    LogCapture log;
};

} // namespace

TEST_F(LuaAssignmentTest, WritesOneLineWithoutLineEnd)
{
    writeLuaAssignment(machine.path("Tintara5config.lua"), "Tintara5AppPath", "/opt/orv/bin/Tintara 5.exe");
    EXPECT_EQ(contentOf("Tintara5config.lua"), "Tintara5AppPath = \"/opt/orv/bin/Tintara 5.exe\"");
}

TEST_F(LuaAssignmentTest, LogsTheWriteThroughTheFileUtilities)
{
    writeLuaAssignment(machine.path("x.lua"), "Name", "value");
    const std::vector<LoggedLine> lines = log.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(log.texts()[0],
              "info: Text file created " + machine.path("x.lua").toStdString() + " with content Name = \"value\"");
    EXPECT_EQ(lines[0].function, "fileUtils::createTextFile");
}

TEST_F(LuaAssignmentTest, ReplacesAnEarlierFileInFull)
{
    machine.writeFile("x.lua", "OldName = \"a much longer value than the new one\"\nmore = 1\n");
    writeLuaAssignment(machine.path("x.lua"), "Name", "v");
    EXPECT_EQ(contentOf("x.lua"), "Name = \"v\"");
}

TEST_F(LuaAssignmentTest, NothingIsEscaped)
{
    writeLuaAssignment(machine.path("x.lua"), "Path", "C:\\Program Files\\\"Orv\"\\x.exe");
    EXPECT_EQ(contentOf("x.lua"), "Path = \"C:\\Program Files\\\"Orv\"\\x.exe\"");
}

TEST_F(LuaAssignmentTest, PlaceholdersInTheArgumentsStayAsTheyAre)
{
    writeLuaAssignment(machine.path("x.lua"), "A%2", "%1 and %2");
    EXPECT_EQ(contentOf("x.lua"), "A%2 = \"%1 and %2\"");
}

TEST_F(LuaAssignmentTest, EmptyNameAndValueStillGiveTheLine)
{
    writeLuaAssignment(machine.path("x.lua"), "", "");
    EXPECT_EQ(contentOf("x.lua"), " = \"\"");
}

TEST_F(LuaAssignmentTest, WritesUtf8WithoutByteOrderMark)
{
    writeLuaAssignment(machine.path("x.lua"), "Pfad", QString::fromUtf8("/home/jörg/Überblick €.exe"));
    EXPECT_EQ(contentOf("x.lua"), QByteArray("Pfad = \"/home/j\xc3\xb6rg/\xc3\x9c"
                                             "berblick \xe2\x82\xac.exe\""));
}

TEST_F(LuaAssignmentTest, AMissingFolderGivesTheWarningAndNoFile)
{
    const QString target = machine.path("missing/x.lua");
    writeLuaAssignment(target, "Name", "value");
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_FALSE(QFile::exists(machine.path("missing")));
    const std::vector<LoggedLine> lines = log.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(log.texts()[0], "warning: Failed to create text file " + target.toStdString());
    EXPECT_EQ(lines[0].function, "fileUtils::createTextFile");
}
