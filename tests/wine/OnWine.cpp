// The end-to-end tests of the Windows program run on a throw-away Wine prefix.
#include "WineTestMachine.h"

std::unique_ptr<TestMachine> newTestMachine()
{
    return std::make_unique<WineTestMachine>();
}

std::unique_ptr<TestMachine> newTestMachineIn(const QString &)
{
    return std::make_unique<WineTestMachine>();
}

std::unique_ptr<TestMachine> newTestMachineFor(const QString &userName)
{
    return std::make_unique<WineTestMachine>(userName);
}

TestMachine::Kind testMachineKind()
{
    return TestMachine::Kind::Wine;
}
