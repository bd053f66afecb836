#pragma once

#include <QDir>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <memory>

// The kinds of file that the flows search for, each with one name pattern.
// The values are fixed: requests and tables use the whole numbers.
enum FileKind : qint32 {
    Plugin8bf = 0,  // "*.8bf"
    Plugin8li = 1,  // "*.8li"
    ExeFile = 2,    // "*.exe"
    ConfigFile = 3, // "*.config"
    CfgFile = 4,    // "*.cfg"
    JpgFile = 5,    // "*.jpg"
    LnkFile = 6,    // "*.lnk"
};

// What findAndProcess does with each match. Any other value does nothing.
enum class ProcessAction : qint32 {
    Link = 0,
    Copy = 1,
};

// The system's special folders, the per-user settings keys and a recursive
// search in a folder tree. The flows hold it by reference and never own or
// delete it, so it has no virtual destructor.
class IPathUtils
{
public:
    virtual QDir startMenuDir() const = 0;
    virtual QString commonPicturesPath() const = 0;
    virtual void findAndProcess(const QString &sourceDir, const QString &targetDir, FileKind kind,
                                QDir::Filters filters, ProcessAction action) const = 0;
    virtual QString filePattern(FileKind kind) const = 0;
    virtual QString localAppDataPath() const = 0;
    virtual QStringList findFiles(FileKind kind, const QString &rootDir) const = 0;
    virtual std::unique_ptr<QSettings> suiteSettings() const = 0;
    virtual std::unique_ptr<QSettings> makerSettings() const = 0;

protected:
    IPathUtils() = default;
    IPathUtils(const IPathUtils &) = default;
    IPathUtils &operator=(const IPathUtils &) = default;
    ~IPathUtils() = default;
};
