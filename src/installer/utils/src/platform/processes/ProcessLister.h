#pragma once

#include <QByteArray>

// The caption of every process of the system, in the bytes that
// "wmic.exe /OUTPUT:STDOUT PROCESS get Caption" prints into a pipe: a header
// line "Caption", then one line per process, each ended by CR CR LF.
QByteArray processCaptionList();
