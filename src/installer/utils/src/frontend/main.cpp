#include "FrontEnd.h"
#include "LibrarySearch.h"

int main(int argc, char *argv[])
{
    // Before Qt or anything else can load a library by its name.
    restrictLibrarySearch();
    return runSuiteDeployer(argc, argv);
}
