#pragma once

#include <string>
#include <vector>

// A path beyond MAX_PATH goes to the system in its extended-length form,
// which no system setting limits; shorter ones go as they are, with either
// separator.
std::wstring win32Path(const std::wstring &path);

// The names in a folder, without "." and ".."; false when the folder can't be
// listed (GetLastError tells why).
bool namesInFolder(const std::wstring &folder, std::vector<std::wstring> &names);
