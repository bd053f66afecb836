#pragma once

#include <string>

// The path of a file in the system's own folder, the one that
// GetSystemDirectoryW names (such as C:\Windows\System32):
// inSystemFolder(L"wbem\\wmic.exe"). Empty when the system names no folder.
// Windows only.
std::wstring inSystemFolder(const std::wstring &relative);
