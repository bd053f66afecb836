#include "ModeOptions.h"
#include "RequestCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtGlobal>

#include <gtest/gtest.h>

namespace {

QJsonObject decodeInstallValue(const QString &value)
{
    const ModeOptions options;
    QCommandLineParser parser;
    options.addTo(parser);
    parser.parse({"SuiteDeployer", "--install", value});
    return decodeRequest(parser, options.install);
}

QString base64Of(const QByteArray &text)
{
    return QString::fromLatin1(text.toBase64());
}

QStringList debugLines;

void captureDebug(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg)
        debugLines.append(message);
}

class CapturedDebugOutput
{
public:
    CapturedDebugOutput()
        : previous_(qInstallMessageHandler(captureDebug))
    {
        debugLines.clear();
    }
    ~CapturedDebugOutput() { qInstallMessageHandler(previous_); }

private:
    QtMessageHandler previous_;
};

} // namespace

TEST(DecodeRequestTest, DecodesABase64JsonObject)
{
    const QJsonObject request{
        {"rootDir", "/opt/orv"}, {"language", 3}, {"plugins", QJsonArray{"Tintara 5", "Rectilo"}}};
    EXPECT_EQ(decodeInstallValue(base64Of(QJsonDocument(request).toJson())), request);
}

TEST(DecodeRequestTest, KeepsNonAsciiText)
{
    const QString text = QString::fromUtf8("C:/Users/Jürgen/Orv – 日本語 – עברית");
    const QJsonObject request{{"rootDir", text}};
    EXPECT_EQ(decodeInstallValue(base64Of(QJsonDocument(request).toJson())).value("rootDir").toString(), text);
}

TEST(DecodeRequestTest, SkipsCharactersOutsideTheAlphabet)
{
    QString value = base64Of(R"({"lang":7})");
    value.insert(4, "\n*!");
    EXPECT_EQ(decodeInstallValue(value), (QJsonObject{{"lang", 7}}));
}

TEST(DecodeRequestTest, JunkEmptyAndNonObjectsGiveAnEmptyObject)
{
    EXPECT_TRUE(decodeInstallValue("this is not base64 at all!").isEmpty());
    EXPECT_TRUE(decodeInstallValue("").isEmpty());
    EXPECT_TRUE(decodeInstallValue(base64Of("[1, 2, 3]")).isEmpty());
    EXPECT_TRUE(decodeInstallValue(base64Of("\"text\"")).isEmpty());
    EXPECT_TRUE(decodeInstallValue(base64Of("{\"rootDir\": ")).isEmpty());
}

TEST(DecodeRequestTest, ADuplicatedKeyKeepsItsLastValue)
{
    EXPECT_EQ(decodeInstallValue(base64Of(R"({"lang":7,"rootDir":"/opt/orv","lang":3})")),
              (QJsonObject{{"lang", 3}, {"rootDir", "/opt/orv"}}));
    // The first value of "system" is an object that Qt drops without freeing it.
    const QByteArray report =
        R"({"currentLocale":1,"system":{"detectedHosts":0,"hosts":[]},"entLocale":1,"system":{"deg":"<html>x</html>"}})";
    EXPECT_EQ(
        decodeInstallValue(base64Of(report)),
        (QJsonObject{{"currentLocale", 1}, {"entLocale", 1}, {"system", QJsonObject{{"deg", "<html>x</html>"}}}}));
}

TEST(DecodeRequestTest, AnOptionThatIsNotSetGivesAnEmptyObject)
{
    const ModeOptions options;
    QCommandLineParser parser;
    options.addTo(parser);
    parser.parse({"SuiteDeployer", "--install", base64Of(R"({"lang":7})")});
    EXPECT_TRUE(decodeRequest(parser, options.samples).isEmpty());
}

TEST(EncodeAnswerTest, IsPaddedBase64OfTheCompactJsonWithoutByteOrderMark)
{
    const QByteArray answer = encodeAnswer(QJsonObject{{"background", QJsonArray{"Photoshop.exe"}}});
    EXPECT_EQ(answer.size() % 4, 0);
    EXPECT_TRUE(answer.endsWith('='));
    EXPECT_EQ(QByteArray::fromBase64(answer, QByteArray::AbortOnBase64DecodingErrors),
              R"({"background":["Photoshop.exe"]})");
}

TEST(EncodeAnswerTest, KeysStandInSortedOrder)
{
    const QByteArray answer = encodeAnswer(QJsonObject{{"translations", 1}, {"currentLocale", 2}, {"system", 3}});
    EXPECT_EQ(QByteArray::fromBase64(answer), R"({"currentLocale":2,"system":3,"translations":1})");
}

TEST(EncodeAnswerTest, NonAsciiTextIsUtf8)
{
    const QString text = QString::fromUtf8("Добро пожаловать – ยินดีต้อนรับ");
    const QByteArray json = QByteArray::fromBase64(encodeAnswer(QJsonObject{{"introString", text}}));
    EXPECT_EQ(json, "{\"introString\":\"" + text.toUtf8() + "\"}");
}

TEST(EncodeAnswerTest, EmptyObjectIsTwoBraces)
{
    EXPECT_EQ(encodeAnswer(QJsonObject()), QByteArray("{}").toBase64());
}

TEST(EncodeAnswerTest, WritesTheJsonTextToTheDebugChannel)
{
    const CapturedDebugOutput captured;
    encodeAnswer(QJsonObject{{"background", QJsonArray()}});
    EXPECT_EQ(debugLines, QStringList{R"(encoding following data: {"background":[]})"});
}
