#pragma once

// Lets the libraries that this process loads later by their names alone come
// from the system's own folder only, not from the program's folder, the
// working folder or the search path. Called first of all, before anything
// loads a library. Nothing to do on Linux.
void restrictLibrarySearch();
