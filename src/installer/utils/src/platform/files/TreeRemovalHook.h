#pragma once

#include "TreeRemoval.h"

// The removal's side of the test hook: runs it when one is set.
void beforeRemovalDescent(const QString &folder);
