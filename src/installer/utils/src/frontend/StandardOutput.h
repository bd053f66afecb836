#pragma once

#include <QTextStream>

// The one stream on the process's standard output. It is never flushed by the
// program: what is written reaches stdout when the stream is destroyed at
// process exit, so the wizard sees the answer only once the tool has ended.
QTextStream &standardOutput();
