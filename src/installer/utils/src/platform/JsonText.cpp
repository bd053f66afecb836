#include "JsonText.h"

#if defined(__SANITIZE_ADDRESS__)
#define SUITEDEPLOYER_LEAK_CHECKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SUITEDEPLOYER_LEAK_CHECKS
#endif
#endif

#ifdef SUITEDEPLOYER_LEAK_CHECKS
#include <sanitizer/lsan_interface.h>
#endif

// A leak suppression could not name the parser: Debian's Qt has no frame
// pointers, so a leak's stack ends inside Qt unless every allocation of the
// run pays for the slow unwinder, which made sanitized runs that walk a large
// tree take minutes.
QJsonDocument parseJsonText(const QByteArray &text)
{
#ifdef SUITEDEPLOYER_LEAK_CHECKS
    const __lsan::ScopedDisabler duplicatedKeysLeakInQt;
#endif
    return QJsonDocument::fromJson(text);
}
