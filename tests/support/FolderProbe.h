#pragma once

#include <QString>

// Whether another process, or another descriptor, holds a flock on the path
// at this moment: the probe tries to take it without waiting and lets it go.
bool isFlockedElsewhere(const QString &path);
