#pragma once

#include <QByteArray>
#include <QString>

// The process list of a proc file system in the form that wmic prints: the line
// "Caption", then the image name of each process in the order of its number,
// each line ended by CR CR LF. The image name is the last component (after "/"
// or "\") of argv[0], or the command name when the command line is empty, as for
// kernel threads. A process that ends while it is read is left out.
QByteArray procFsCaptionList(const QString &procRoot);
