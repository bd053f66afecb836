#include "Installer.h"

Installer::Installer(const IPathUtils &pathUtils, const Catalogue &catalogue)
    : pathUtils(pathUtils)
    , catalogue(catalogue)
{
}
