#pragma once

#include <filesystem>
#include <vector>

// The targets that a copy refused since the last call, in order.
std::vector<std::filesystem::path> takeRefusedTargets();
