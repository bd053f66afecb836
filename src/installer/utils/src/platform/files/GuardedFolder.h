#pragma once

#include <QString>

#include <memory>

// A folder in a place that other users of the machine may have prepared: the
// maker's folder in ProgramData, the start menu, the pictures folder, a
// host's plug-in folder. It is opened below a base folder that the system or
// the host names, which is taken as it is, one folder at a time and without
// following links; missing folders are made on the way. A folder on the way
// that is a link (a junction or another reparse point on Windows) is refused,
// and so is one that belongs to another user when the program runs as an
// administrator or root: a warning names it and the reason, and nothing is
// written there. The folders stay open (and on Windows can't be renamed or
// replaced) while the object lives, so that what is written below them lands
// where it was checked.
class GuardedFolder
{
public:
    enum class Outcome { Opened, Missing, Refused, Failed };
    // To write, missing folders are made and owners are checked; to check
    // before writing, owners are checked and nothing is made; to delete, any
    // owner's folder may be emptied (the users' own folders are among those
    // places). Only a write fails on a missing folder.
    enum class Purpose { Write, CheckForWriting, Delete };

    // Logs "Refused to use {}, because {}" when refused, and the file
    // actions' "Failed to create directory {}" when a folder can't be made.
    GuardedFolder(const QString &base, const QString &relative, Purpose purpose = Purpose::Write);
    ~GuardedFolder();
    GuardedFolder(const GuardedFolder &) = delete;
    GuardedFolder &operator=(const GuardedFolder &) = delete;

    Outcome outcome() const;
    bool isOpen() const { return outcome() == Outcome::Opened; }
    // The base and the relative path, as the log names the folder.
    QString path() const;
    QString filePath(const QString &name) const;

    // Writes the file under a temporary name through one handle that follows
    // no link, gives it its access on that handle when asked (every user may
    // read, write and delete it; the group Users by its well-known identifier
    // on Windows, mode 0666 and the folder 0777 on Linux), and then gives it
    // its name, replacing what had that name (a link is replaced, never
    // followed). Logs the file actions' lines: "Text file created {} with
    // content {}", or "Failed to create text file {}".
    enum class Access { AsCreated, OpenToAllUsers };
    void writeTextFile(const QString &name, const QString &content, Access access = Access::AsCreated) const;

    // A link named name to target, as makeLink makes it, in this folder.
    bool makeLink(const QString &target, const QString &name) const;

    // Deletes the entry of that name as removeTree does, through this folder's
    // handle. False when anything stayed.
    bool removeEntry(const QString &name) const;
    // Deletes the file (or link) of that name, never a folder. False when it stayed.
    bool removeFileEntry(const QString &name) const;

private:
    class Handles;
    struct Place
    {
        QString base;
        QString relative;
    };
    static Place placeOf(const QString &base, const QString &relative);

    std::unique_ptr<Handles> handles_;
    QString path_;
    Outcome outcome_;
};
