#pragma once

#include <QString>

// A lock between processes on one folder: flock on the folder itself. The
// kernel drops it when the holding process ends, however it ends, so no
// leftover can stall a later run, and taking it creates no file. Locks on one
// folder in one process count up, so nested holders never wait for each
// other. A folder that cannot be opened (missing, a file, no rights) is not
// locked, and its holder goes on without. Used on the entry thread only.
class FolderLock
{
public:
    explicit FolderLock(const QString &folder);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    bool isHeld() const;

private:
    QString folder_; // canonical path; empty when nothing is held
};
