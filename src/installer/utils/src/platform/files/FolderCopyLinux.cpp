#include "FolderCopy.h"

namespace fs = std::filesystem;

namespace {

// The copy takes the source's mode along, and the standard copy opens a file
// it replaces for writing: an earlier copy of a read-only source would block
// every update for anyone but root. Links are left alone.
void allowReplacing(const fs::path &target)
{
    std::error_code error;
    const fs::file_status status = fs::symlink_status(target, error);
    if (!error && fs::is_regular_file(status) && (status.permissions() & fs::perms::owner_write) == fs::perms::none)
        fs::permissions(target, fs::perms::owner_write, fs::perm_options::add | fs::perm_options::nofollow, error);
}

// The files of the target that the copy will replace; like the copy, the walk
// follows links to folders in the source.
void allowReplacingBelow(const fs::path &from, const fs::path &to)
{
    std::error_code error;
    if (!fs::is_directory(from, error)) {
        allowReplacing(fs::is_directory(to, error) ? to / from.filename() : to);
        return;
    }
    const auto options = fs::directory_options::follow_directory_symlink;
    for (fs::recursive_directory_iterator entry(from, options, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!entry->is_directory(error))
            allowReplacing(to / entry->path().lexically_relative(from));
    }
}

} // namespace

void copyTree(const fs::path &from, const fs::path &to)
{
    allowReplacingBelow(from, to);
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}
