#include "FolderCopy.h"

#include "TargetRefusal.h"

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

bool isRefusedTarget(const fs::path &target)
{
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(target, error)))
        return false;
    refuseLinkedTarget(target);
    return true;
}

// As the standard copy with recursive | overwrite_existing, links in the
// source followed; but a link in the target is never written through: it
// is left alone with a warning, and the rest is copied.
void copyEntry(const fs::path &from, const fs::path &to)
{
    if (isRefusedTarget(to))
        return;
    if (!fs::is_directory(from)) {
        allowReplacing(to);
        fs::copy(from, to, fs::copy_options::overwrite_existing);
        return;
    }
    const fs::file_status target = fs::symlink_status(to);
    if (fs::exists(target) && !fs::is_directory(target))
        throw fs::filesystem_error("cannot copy", from, to, std::make_error_code(std::errc::is_a_directory));
    if (!fs::exists(target))
        fs::create_directory(to, from);
    for (const fs::directory_entry &entry : fs::directory_iterator(from))
        copyEntry(entry.path(), to / entry.path().filename());
}

} // namespace

// A failure names the whole copy, as the standard copy does.
void copyTree(const fs::path &from, const fs::path &to)
{
    try {
        copyEntry(from, to);
    } catch (const fs::filesystem_error &error) {
        throw fs::filesystem_error("cannot copy", from, to, error.code());
    }
}
