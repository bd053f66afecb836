#pragma once

class QString;

// Copies one file as QFile::copy does, with the same outcomes: a target that
// exists (also through a link) is never overwritten and the copy fails; the
// new file gets the permissions that Qt gives it; a source that can't be
// read, or a target folder that can't be written, fails; a failed copy leaves
// no target behind. The Linux build copies inside the kernel, with no
// temporary file and no sync to disk; the Windows build is QFile::copy.
bool copyFile(const QString &source, const QString &target);
