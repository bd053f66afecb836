#include "FuzzSupport.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {

void discardMessages(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

void prepareQtForFuzzing()
{
    static int argc = 1;
    static char name[] = "fuzzer";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    qInstallMessageHandler(discardMessages);
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}
