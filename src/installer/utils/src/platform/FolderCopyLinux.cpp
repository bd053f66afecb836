#include "FolderCopy.h"

void copyTree(const std::filesystem::path &from, const std::filesystem::path &to)
{
    std::filesystem::copy(from, to,
                          std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
}
