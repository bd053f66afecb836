// The end-to-end tests of the Windows program run on a throw-away Wine prefix.
#include "WineTestMachine.h"

std::unique_ptr<TestMachine> newTestMachine()
{
    return std::make_unique<WineTestMachine>();
}

TestMachine::Kind testMachineKind()
{
    return TestMachine::Kind::Wine;
}
