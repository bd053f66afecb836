#include "FileLinks.h"

#include <windows.h>

int longestLinkPath()
{
    return MAX_PATH - 1;
}
