#pragma once

#include <filesystem>

// Tells that a copy left a target alone because it is a link, which it never
// writes through. The program logs the warning of a refused folder.
void refuseLinkedTarget(const std::filesystem::path &target);
