// A hive file of any bytes is read without crashing, and what is written from
// it reads back as the same values.
#include "FuzzSupport.h"
#include "RegistryHiveFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    prepareQtForFuzzing();
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    const QString hive = QStringLiteral("HKEY_CURRENT_USER");
    const QSettings::SettingsMap values = registryHive::parse(bytes, hive);
    const QByteArray written = registryHive::write(values, hive);
    const QSettings::SettingsMap reread = registryHive::parse(written, hive);
    if (reread.keys() != values.keys()) {
        std::fprintf(stderr, "read:\n%s\nwritten and read again:\n%s\n", qPrintable(values.keys().join('\n')),
                     qPrintable(reread.keys().join('\n')));
        require(false);
    }
    const QByteArray rewritten = registryHive::write(reread, hive);
    if (rewritten != written) {
        std::fprintf(stderr, "written:\n%s\nwritten again:\n%s\n", written.toPercentEncoding(" \n\\").constData(),
                     rewritten.toPercentEncoding(" \n\\").constData());
        require(false);
    }
    return 0;
}
