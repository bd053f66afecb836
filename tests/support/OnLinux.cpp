// The end-to-end tests of the Linux build run on a machine in a temporary folder.
#include "LinuxTestMachine.h"

std::unique_ptr<TestMachine> newTestMachine()
{
    return std::make_unique<LinuxTestMachine>();
}

TestMachine::Kind testMachineKind()
{
    return TestMachine::Kind::Linux;
}
