#pragma once

#include <string>

// The value of an environment variable of this process; empty when it isn't set.
std::wstring environmentVariable(const wchar_t *name);
