// Writes a suite root generated from the catalogue into the folder given, for
// the demonstration:  make_suite_root /tmp/machine/suite
#include "EmbeddedResources.h"
#include "SuiteRoot.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (application.arguments().size() != 2)
        return 2;
    registerEmbeddedResources();
    suiteRoot::create(application.arguments().at(1));
    return 0;
}
