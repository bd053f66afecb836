// Any option value, as the wizard or anyone else may pass it, decodes to an
// object without crashing; valid base64 of a JSON object decodes to that object.
#include "FuzzSupport.h"
#include "JsonText.h"
#include "ModeOptions.h"
#include "RequestCodec.h"

#include <QJsonDocument>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    prepareQtForFuzzing();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const ModeOptions options;
    QCommandLineParser parser;
    options.addTo(parser);

    parser.parse({"SuiteDeployer", "--install", QString::fromLatin1(bytes)});
    decodeRequest(parser, options.install);

    const QJsonDocument document = parseJsonText(bytes);
    if (document.isObject()) {
        parser.parse({"SuiteDeployer", "--config", QString::fromLatin1(bytes.toBase64())});
        require(decodeRequest(parser, options.config) == document.object());
    }
    return 0;
}
