#include "FrontEnd.h"

int main(int argc, char *argv[])
{
    return runSuiteDeployer(argc, argv);
}
