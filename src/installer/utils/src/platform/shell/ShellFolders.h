#pragma once

#include <string>

// The path of a shell folder, given by its CSIDL number, with backslashes as the
// shell gives it; empty when the shell doesn't answer with the folder. Windows only.
std::wstring shellFolderPath(int folder);
