#include "LibrarySearch.h"

void restrictLibrarySearch() {}
