#pragma once

#include "IPathUtils.h"

// The one implementation of IPathUtils. It has no state: the special folders
// are asked from the system at each call (the shell on Windows, the
// environment on Linux), and the searches and settings keys are the same on
// both.
class PathUtils final : public IPathUtils
{
public:
    // The suite's folder in the common start menu; it isn't made here.
    QDir startMenuDir() const override;
    QString commonPicturesPath() const override;
    // Links or copies every match from any depth below sourceDir directly
    // into targetDir, which is made first. Failures are logged, one by one.
    void findAndProcess(const QString &sourceDir, const QString &targetDir, FileKind kind, QDir::Filters filters,
                        ProcessAction action) const override;
    // Empty for a kind without a pattern.
    QString filePattern(FileKind kind) const override;
    QString localAppDataPath() const override;
    // Full paths of the plain files below rootDir that match, in walk order.
    QStringList findFiles(FileKind kind, const QString &rootDir) const override;
    // HKEY_CURRENT_USER\SOFTWARE\Tavrin\Orv Collection\, owned by the caller.
    std::unique_ptr<QSettings> suiteSettings() const override;
    // HKEY_CURRENT_USER\SOFTWARE\Tavrin, owned by the caller.
    std::unique_ptr<QSettings> makerSettings() const override;
};
