#include <windows.h>

// Stands in for a running application under the image name it is copied to
// (Photoshop.exe, Tintara 5.exe), for the Wine road's process probe, which
// starts it from Linux. Given a file, it holds that file open without sharing
// it, as a running host holds its plug-ins. It writes one line on its
// standard output once it runs ("running", or "cannot hold" when the file
// could not be opened, which a sharing violation is only after some
// seconds), then waits until its standard input reaches its end:
// the test closes that pipe to end it, and a test that dies takes the pipe
// with it, so the helper never outlives the test that started it.
int wmain(int argc, wchar_t **argv)
{
    HANDLE held = INVALID_HANDLE_VALUE;
    // The tool's run has ended when the test gets here, but Wine may close the
    // files of an ended process a moment later: a sharing violation is tried
    // again for a few seconds, a bound and not a measure.
    for (int attempt = 0; argc > 1 && attempt < 100; ++attempt) {
        held = CreateFileW(argv[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (held != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION)
            break;
        Sleep(50);
    }
    const char running[] = "running\n";
    const char failed[] = "cannot hold\n";
    const bool ok = argc == 1 || held != INVALID_HANDLE_VALUE;
    DWORD count = 0;
    if (!WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), ok ? running : failed,
                   ok ? sizeof(running) - 1 : sizeof(failed) - 1, &count, nullptr))
        return 1;
    char buffer[256];
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), buffer, sizeof(buffer), &count, nullptr) && count > 0) {}
    if (held != INVALID_HANDLE_VALUE)
        CloseHandle(held);
    return 0;
}
