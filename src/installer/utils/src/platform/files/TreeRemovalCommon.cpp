#include "TreeRemovalHook.h"

namespace {

std::function<void(const QString &)> &descentHook()
{
    static std::function<void(const QString &)> hook;
    return hook;
}

} // namespace

void setRemovalDescentHook(std::function<void(const QString &folder)> hook)
{
    descentHook() = std::move(hook);
}

void beforeRemovalDescent(const QString &folder)
{
    if (descentHook())
        descentHook()(folder);
}
