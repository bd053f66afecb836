#include <windows.h>

// Stands in for a running application under the image name it is copied to
// (Photoshop.exe, Tintara 5.exe), for the Wine road's process probe, which
// starts it from Linux. It writes one line on its standard output once it
// runs, then waits until its standard input reaches its end: the test closes
// that pipe to end it, and a test that dies takes the pipe with it, so the
// helper never outlives the test that started it.
int main()
{
    const char ready[] = "running\n";
    DWORD count = 0;
    if (!WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), ready, sizeof(ready) - 1, &count, nullptr))
        return 1;
    char buffer[256];
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof(buffer), &count, nullptr) && count > 0) {}
    return 0;
}
