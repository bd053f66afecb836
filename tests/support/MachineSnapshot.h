#pragma once

#include "Machine.h"

#include <QString>
#include <QStringList>

// The whole state of a machine as readable text, for comparing with a
// reviewed snapshot: every folder, file and link below the root in name
// order, each file with its content (a binary one by its size), each link
// with its target, and the machine's own path written as <machine>. The
// hive files are files of the machine like any other. Folders named in
// `excluded` (relative to the root) are left out with all they hold.
QString machineSnapshot(const Machine &machine, const QStringList &excluded);
