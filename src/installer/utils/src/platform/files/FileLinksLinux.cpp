#include "FileLinks.h"

#include <climits>

int longestLinkPath()
{
    return PATH_MAX - 1;
}
