#pragma once

#include <QSettings>
#include <QString>

#include <memory>

// Opens a registry key by its Windows path, such as
// "HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Tavrin\Orv Collection\", as a
// QSettings rooted at that key. Every registry access of the program goes
// through here. On Windows it is the native registry; on Linux a view of the
// hive file under the XDG configuration folders, where names match ignoring
// case as on Windows. "Clear this key" is remove(""), never clear(): on a view
// clear() would empty the whole hive.
std::unique_ptr<QSettings> openRegistryKey(const QString &registryPath);

// The same view for a caller that only reads. It takes no lock, so it never
// waits for a writer and leaves nothing where no hive is: a hive is replaced
// whole when written, so a reader sees one version or the next. Nothing may be
// written through it; on Linux such a write fails and leaves the hive as it was.
std::unique_ptr<QSettings> openRegistryKeyForReading(const QString &registryPath);
