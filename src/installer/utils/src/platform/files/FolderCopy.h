#pragma once

#include <filesystem>

// Copies a folder with all that is below it, or a single file, as
// std::filesystem::copy does with recursive | overwrite_existing: a folder
// that exists in the target is merged into, a file there is replaced, and
// what is only in the target stays. Links in the source are followed. A
// failure throws std::filesystem::filesystem_error whose what() names the
// copy and both paths (on Windows those of the very file that could not be
// written, when that was what failed); what was copied by then stays. A file or folder is
// never its own target: that is an error as well.
void copyTree(const std::filesystem::path &from, const std::filesystem::path &to);
