#include "FileLinks.h"

#include <QFile>
#include <QFileInfo>

bool makeLink(const QString &target, const QString &linkPath)
{
    // Not isSymLink(): Qt on Windows takes any name ending in .lnk for a link,
    // there or not. A dangling symbolic link is refused by QFile::link itself.
    if (QFileInfo::exists(linkPath) || !fitsInALink(target, linkPath))
        return false;
    return QFile::link(target, linkPath);
}

bool fitsInALink(const QString &target, const QString &linkPath)
{
    return target.size() <= longestLinkPath() && linkPath.size() <= longestLinkPath();
}
