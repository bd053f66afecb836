#include "EmbeddedResources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside any namespace.
void registerEmbeddedResources()
{
    Q_INIT_RESOURCE(localizations);
    Q_INIT_RESOURCE(catalogue);
}
