// Whatever a process list holds, the probe's captions have no blanks, no line
// separator and no duplicates, and each matches the filter.
#include "FuzzSupport.h"
#include "RunningProcesses.h"

#include <QSet>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    prepareQtForFuzzing();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QRegExp filter("Tintara|Grainwick|Lumbrio|ACU3|Quietar|RectiloGraymere|Bracketon|Photoshop|Lightroom");
    const QStringList captions = matchingCaptions(bytes, filter);
    require(QSet<QString>(captions.begin(), captions.end()).size() == captions.size());
    for (const QString &caption : captions) {
        require(!caption.isEmpty() && !caption.contains(' ') && !caption.contains("\r\r\n"));
        require(filter.indexIn(caption) >= 0);
    }
    return 0;
}
