// The end-to-end tests of the Linux build run on a machine in a temporary folder.
#include "LinuxTestMachine.h"

std::unique_ptr<TestMachine> newTestMachine()
{
    return std::make_unique<LinuxTestMachine>();
}

std::unique_ptr<TestMachine> newTestMachineIn(const QString &parentFolder)
{
    return std::make_unique<LinuxTestMachine>(parentFolder);
}

std::unique_ptr<TestMachine> newTestMachineFor(const QString &userName)
{
    return std::make_unique<LinuxTestMachine>(QString(), userName);
}

TestMachine::Kind testMachineKind()
{
    return TestMachine::Kind::Linux;
}
