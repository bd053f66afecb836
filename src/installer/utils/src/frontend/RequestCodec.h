#pragma once

#include <QByteArray>
#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QJsonObject>

// The request of a mode: the option's value is base64 of a UTF-8 JSON object.
// Nothing is checked; anything that is not such a text gives an empty object.
QJsonObject decodeRequest(const QCommandLineParser &parser, const QCommandLineOption &option);

// The answer as the wizard reads it: base64 (with padding) of the compact UTF-8
// JSON text, without a byte-order mark. Also writes the JSON text to Qt's debug channel.
QByteArray encodeAnswer(const QJsonObject &answer);
