// Whatever the answer holds, the wizard decodes exactly that object from it:
// padded base64 of UTF-8 JSON that starts with '{'.
#include "FuzzSupport.h"
#include "JsonText.h"
#include "RequestCodec.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstddef>
#include <cstdint>

namespace {

void requireRoundTrip(const QJsonObject &answer)
{
    const QByteArray encoded = encodeAnswer(answer);
    require(encoded.size() % 4 == 0);
    const QByteArray text = QByteArray::fromBase64(encoded, QByteArray::AbortOnBase64DecodingErrors);
    require(text.startsWith('{'));
    require(parseJsonText(text).object() == answer);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    prepareQtForFuzzing();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QString text = QString::fromUtf8(bytes);
    requireRoundTrip(QJsonObject{{"background", QJsonArray{text, text.left(3)}}, {text, int(size)}});
    const QJsonDocument document = parseJsonText(bytes);
    if (document.isObject())
        requireRoundTrip(document.object());
    return 0;
}
