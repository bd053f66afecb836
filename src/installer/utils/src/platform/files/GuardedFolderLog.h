#pragma once

#include <QString>

// The warning of a refused folder, with the source location of the refusal.
void logRefusal(const QString &folder, const QString &reason);
