#pragma once

#include <QByteArray>
#include <QRegExp>
#include <QStringList>

// The captions of the running processes that the filter finds, from the
// system's process list. The effective filter is `filter`, or `defaultFilter`
// when `filter` is empty. Nothing is reported when the list can't be had: the
// result is then simply short or empty.
QStringList runningProcesses(const QRegExp &defaultFilter, const QRegExp &filter);

// The string work on a process list in the form that wmic prints to a pipe:
// blanks removed, split at CR CR LF without empty parts, duplicates dropped
// (first kept), then the items in which the filter finds a match.
QStringList matchingCaptions(const QByteArray &processList, const QRegExp &filter);
