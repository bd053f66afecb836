#include "EmbeddedResources.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

// Qt's processes, codecs and resources expect an application object, as in the tool.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    registerEmbeddedResources();
    return RUN_ALL_TESTS();
}
