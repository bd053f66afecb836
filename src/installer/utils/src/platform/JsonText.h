#pragma once

#include <QByteArray>
#include <QJsonDocument>

// QJsonDocument::fromJson, without error output: every JSON text that the tool
// reads goes through here. Debian's Qt 5.15.8 never frees a non-empty object
// or array that a later value of the same key replaces: the text
// {"currentLocale":1,"system":{"detectedHosts":0,"hosts":[]},"entLocale":1,"system":{"deg":"<html>x</html>"}}
// loses 208 bytes in 3 blocks. The tool is one-shot, so those bytes are
// harmless; builds with LeakSanitizer exempt what this parse allocates from
// leak checking, and nothing else.
QJsonDocument parseJsonText(const QByteArray &text);
