#include "RequestCodec.h"

#include "JsonText.h"

#include <QDebug>
#include <QJsonDocument>
#include <QString>
#include <QTextCodec>
#include <QTextEncoder>

#include <memory>

QJsonObject decodeRequest(const QCommandLineParser &parser, const QCommandLineOption &option)
{
    const QString value = parser.value(option);
    return parseJsonText(QByteArray::fromBase64(value.toLatin1())).object();
}

QByteArray encodeAnswer(const QJsonObject &answer)
{
    const QString text = QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact));
    qDebug().noquote().nospace() << "encoding following data: " << text;

    // The UTF-8 encoder starts its output with a byte-order mark, which the
    // wizard's JSON reader does not take: everything before the object goes.
    const std::unique_ptr<QTextEncoder> encoder(QTextCodec::codecForName("UTF-8")->makeEncoder());
    QByteArray utf8 = encoder->fromUnicode(text);
    utf8.remove(0, utf8.indexOf('{'));
    return utf8.toBase64();
}
