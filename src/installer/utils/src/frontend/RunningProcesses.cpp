#include "RunningProcesses.h"

#include "ProcessLister.h"

#include <QString>

QStringList runningProcesses(const QRegExp &defaultFilter, const QRegExp &filter)
{
    const QRegExp &effectiveFilter = filter.isEmpty() ? defaultFilter : filter;
    return matchingCaptions(processCaptionList(), effectiveFilter);
}

QStringList matchingCaptions(const QByteArray &processList, const QRegExp &filter)
{
    QString text = QString::fromUtf8(processList);
    text.replace(QStringLiteral(" "), QString(), Qt::CaseSensitive);
    QStringList captions = text.split(QStringLiteral("\r\r\n"), Qt::SkipEmptyParts);
    captions.removeDuplicates();
    return captions.filter(filter);
}
