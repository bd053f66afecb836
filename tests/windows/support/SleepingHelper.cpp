#include <windows.h>

#include <cstdlib>

// Started by the process listing tests under an image name of their choosing,
// with two arguments: the name of an event to set once it runs, and the number
// of the test's process. It sleeps until it is ended, or until that process
// ends, so that a failed test leaves nothing running.
int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    const HANDLE ready = OpenEventA(EVENT_MODIFY_STATE, FALSE, argv[1]);
    const HANDLE test = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(std::strtoul(argv[2], nullptr, 10)));
    if (ready == nullptr || test == nullptr)
        return 1;
    SetEvent(ready);
    CloseHandle(ready);
    WaitForSingleObject(test, INFINITE);
    CloseHandle(test);
    return 0;
}
