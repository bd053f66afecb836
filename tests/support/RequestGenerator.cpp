#include "RequestGenerator.h"

#include "DeployerRun.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include <utility>
#include <vector>

namespace {

// Deeper than any path below the test's folder, so that a climb always ends
// at the file system's root before it walks down again.
constexpr int climbDepth = 40;

const QStringList oddTexts = {
    QString::fromUtf8("Ünïcödé ファイル 文件 🎨"),
    QString::fromUtf8("\u202Eexe.tnemucod"),
    QString::fromUtf8("תיקייה עברית"),
    QString::fromUtf8("مجلد عربي"),
    QString::fromUtf8("abc\u200Fdef\u202Bghi\u202C\u2067jkl\u2069"),
    QString(QChar(0)),
    QStringLiteral("a") + QChar(0) + QStringLiteral("b"),
    QStringLiteral("Tintara 5") + QChar(0) + QStringLiteral(".exe"),
    QStringLiteral("line\nbreak\r\ttab\x1b[31m\x07\x08\x7f"),
    QStringLiteral("%1 %2 %n %s %% {} {0} {:>99999} {{ }"),
    QStringLiteral("\"quoted\" 'single' \\back\\ <key name=\"Language\" type=\"string\" value=\"en\"/> ]]> &amp;"),
    QStringLiteral("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Tavrin]\n\"x\"=\"y\"\n@=dword:00000001"),
    QChar(0xD800) + QStringLiteral("lone surrogate"),
    QString::fromUtf8("\uFEFFbom \uFFFD"),
    QStringLiteral("C:\\Program Files\\Adobe\\Plug-ins"),
    QStringLiteral("\\\\server\\share\\folder"),
    QStringLiteral("Tavrin\\..\\..\\Windows"),
    QStringLiteral("   "),
    QStringLiteral("\t"),
    QStringLiteral("1"),
    QStringLiteral("true"),
    QStringLiteral("null"),
    QStringLiteral("-0"),
    QStringLiteral("1e999"),
    QStringLiteral("Orv Collection"),
    QStringLiteral("Tavrin"),
    QStringLiteral("*.8bf"),
    QStringLiteral("--help"),
    QStringLiteral("~"),
    QStringLiteral("$HOME `id` $(id) ; x"),
};

const std::vector<double> oddNumbers = {
    0,    1,   2,      16,    17,     -1,           -17,           0.5,          1.5,
    -0.0, 3.0, 1e-300, 1e300, -1e300, 2147483647.0, -2147483648.0, 2147483648.0, 9007199254740993.0};

// Bidirectional controls, marks and letters of several scripts, and characters outside the first plane.
const std::vector<std::pair<char32_t, char32_t>> characterRanges = {
    {0x20, 0x2E},     {0x30, 0x7E},       {0xA0, 0xFF},     {0x400, 0x44F},   {0x5D0, 0x5EA},
    {0x620, 0x64A},   {0x300, 0x36F},     {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2066, 0x2069},
    {0x4E00, 0x4FFF}, {0x1F300, 0x1F5FF}, {0xFFF0, 0xFFFD}, {0x1, 0x1F}};

QString base64Of(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

RequestGenerator::RequestGenerator(std::uint64_t seed, RequestPlaces places)
    : random_(seed)
    , places_(std::move(places))
{
}

bool RequestGenerator::chance(int percent)
{
    return below(100) < percent;
}

int RequestGenerator::below(int bound)
{
    return std::uniform_int_distribution<int>(0, bound - 1)(random_);
}

QString RequestGenerator::pick(const QStringList &texts)
{
    return texts.at(below(texts.size()));
}

void RequestGenerator::put(QJsonObject &request, const QString &key, const std::function<QJsonValue()> &wanted)
{
    const QJsonValue value = wanted();
    const int roll = below(100);
    if (roll < 12)
        return;
    if (roll >= 35) {
        request.insert(key, value);
        return;
    }
    QJsonValue other = anyValue(1);
    while (other.type() == value.type())
        other = anyValue(1);
    request.insert(key, other);
}

void RequestGenerator::addExtraKeys(QJsonObject &request)
{
    if (!chance(30))
        return;
    const QStringList lookAlikes = {"RootDir", "rootdir",  "ROOTDIR", " rootDir",   "hosts ", "Plugins",
                                    "lang",    "language", "type",    "pluginPath", QString()};
    for (int count = 1 + below(4); count > 0; --count) {
        const QString key = chance(50) ? pick(lookAlikes) : oddText(false);
        const QJsonValue value = anyValue(1);
        if (!request.contains(key))
            request.insert(key, value);
    }
}

QString RequestGenerator::optionValue(const QJsonObject &request)
{
    const QByteArray json = QJsonDocument(request).toJson(QJsonDocument::Compact);
    if (chance(72))
        return encodeRequest(request);
    switch (below(12)) {
    case 0:
        return QString();
    case 1:
        return base64Of('[' + json + ']');
    case 2:
        return base64Of(pick({"42", "-1.5", "\"text\"", "null", "true", "[]"}).toLatin1());
    case 3:
        return base64Of(json.left(json.size() / 2));
    case 4:
        return base64Of(json + "}}trailing");
    case 5:
        return base64Of(QByteArray(3000, '[') + QByteArray(3000, ']'));
    case 6: {
        QByteArray bytes;
        for (int count = below(2000); count > 0; --count)
            bytes.append(char(below(256)));
        return base64Of(bytes);
    }
    case 7:
        return QString::fromUtf8(json);
    case 8:
        // Arguments can't carry a NUL character.
        return oddText().remove(QChar(0));
    case 9:
        return base64Of(json).replace('+', '-').replace('/', '_');
    case 10:
        return base64Of(json).replace(QRegularExpression(QStringLiteral("(.{60})")), QStringLiteral("\\1\n "));
    default:
        return base64Of("{\"version\":1,\"keepPreferences\":[],\"version\":[]," + json.mid(1));
    }
}

QJsonValue RequestGenerator::anyValue(int depth)
{
    switch (below(depth >= 3 ? 4 : 6)) {
    case 0:
        return QJsonValue::Null;
    case 1:
        return chance(50);
    case 2:
        return number();
    case 3:
        return oddText(false);
    case 4: {
        QJsonArray array;
        for (int count = below(5); count > 0; --count)
            array.append(anyValue(depth + 1));
        return array;
    }
    default: {
        QJsonObject object;
        for (int count = below(5); count > 0; --count)
            object.insert(chance(50) ? pick({"appName", "pluginPath", "type", "rootDir"}) : oddText(false),
                          anyValue(depth + 1));
        return object;
    }
    }
}

QJsonValue RequestGenerator::number()
{
    if (chance(40))
        return below(20);
    return oddNumbers.at(below(int(oddNumbers.size())));
}

QString RequestGenerator::oddText(bool allowHuge)
{
    const int roll = below(100);
    if (allowHuge && roll < 6)
        return hugeText();
    if (roll < 16)
        return QString();
    if (roll < 30)
        return randomText(1 + below(40));
    return pick(oddTexts);
}

QString RequestGenerator::sourceFolder()
{
    const QString machine = nameOf(places_.machine);
    const QString outside = nameOf(places_.outside);
    switch (below(13)) {
    case 0:
        return places_.suite;
    case 1:
        return places_.outside + QStringLiteral("/../") + machine + QLatin1Char('/') + nameOf(places_.suite);
    case 2:
        return QStringLiteral("../") + machine + QLatin1Char('/') + nameOf(places_.suite);
    case 3:
        return places_.machine + QStringLiteral("/../") + outside;
    case 4:
        return climbingTo(places_.outside);
    case 5:
        return places_.suite + QStringLiteral("/../../") + outside;
    case 6:
        return chance(50) ? places_.machine : QStringLiteral(".");
    case 7:
        return chance(50) ? places_.plainFile : places_.plainFile + QStringLiteral("/inner");
    case 8:
        namedLockedFolder_ = true;
        return places_.lockedFolder;
    case 9:
        return overLongPath(chance(50) ? places_.suite : places_.outside);
    case 10:
        return relativeName();
    case 11:
        return places_.suite + QChar(0) + QStringLiteral("/../../") + outside;
    default:
        return places_.suite + QStringLiteral("\\bin");
    }
}

QString RequestGenerator::targetFolder()
{
    const QString machine = nameOf(places_.machine);
    // A small pool of names, so that later runs meet the folders of earlier ones.
    const QString host = QStringLiteral("h%1").arg(below(24));
    const QString backIn = machine + QStringLiteral("/hosts/") + host;
    switch (below(13)) {
    case 0:
    case 1:
        return places_.hosts + QLatin1Char('/') + host;
    case 2:
        return places_.outside + QStringLiteral("/../") + backIn;
    case 3:
        return climbingTo(places_.hosts + QLatin1Char('/') + host);
    case 4:
        return places_.outside + QStringLiteral("/missing/../../") + backIn;
    case 5:
        return places_.outside + QChar(0) + QStringLiteral("/../") + backIn;
    case 6:
        return overLongPath(places_.hosts);
    case 7:
        return places_.hosts + QLatin1Char('/') + relativeName();
    case 8:
        return chance(50) ? QStringLiteral("hosts/") + host : relativeName();
    case 9:
        return chance(50) ? places_.plainFile : places_.plainFile + QStringLiteral("/inner");
    case 10:
        namedLockedFolder_ = true;
        return chance(50) ? places_.lockedFolder : places_.lockedFolder + QStringLiteral("/inner");
    case 11:
        return places_.machine;
    default:
        return places_.hosts + QLatin1Char('/') + host + QStringLiteral("\\Plug-ins");
    }
}

QString RequestGenerator::productName(const QStringList &known)
{
    if (chance(55))
        return pick(known);
    switch (below(9)) {
    case 0:
        return QString();
    case 1:
        return QStringLiteral("..");
    case 2:
        return QStringLiteral(".");
    case 3:
        return climbingTo(places_.hosts + QStringLiteral("/product-%1").arg(below(4)));
    case 4:
        return relativeName();
    case 5:
        return chance(50) ? pick(known).toUpper() : pick(known).toLower();
    case 6:
        return pick(known) + (chance(50) ? QStringLiteral(" ") : QString(QChar(0)));
    case 7:
        return QString(300, QLatin1Char('p'));
    default:
        return pick(known) + QStringLiteral("/../") + pick(known);
    }
}

QJsonArray RequestGenerator::manyOf(const std::function<QJsonValue()> &element,
                                    const std::function<QJsonValue()> &compact)
{
    QJsonArray array;
    const int kind = below(20);
    const int count = kind < 6 ? below(2) : kind < 19 ? 2 + below(7) : 1000 + below(1500);
    for (int index = 0; index < count; ++index)
        array.append(kind < 19 ? element() : compact());
    return array;
}

bool RequestGenerator::namedLockedFolder() const
{
    return namedLockedFolder_;
}

QString RequestGenerator::hugeText()
{
    if (chance(50))
        return QString(30000 + below(10000), QChar(QLatin1Char('a' + below(26))));
    return QString::fromUtf8("Ж文🎨\u202E").repeated(2500 + below(1500));
}

QString RequestGenerator::randomText(int length)
{
    std::u32string text;
    while (int(text.size()) < length) {
        const auto &range = characterRanges.at(below(int(characterRanges.size())));
        text += char32_t(range.first + below(int(range.second - range.first) + 1));
    }
    return QString::fromStdU32String(text);
}

// One name relative to the working folder, which is the machine's root.
QString RequestGenerator::relativeName()
{
    QString name;
    while (name.isEmpty() || name == QStringLiteral(".") || name == QStringLiteral(".."))
        name = oddText().remove(QLatin1Char('/'));
    return name;
}

QString RequestGenerator::climbingTo(const QString &absolutePath)
{
    return QStringLiteral("../").repeated(climbDepth) + absolutePath.mid(1);
}

// Longer than the 4096 bytes that a path may have, or with one name longer than 255 bytes.
QString RequestGenerator::overLongPath(const QString &base)
{
    switch (below(3)) {
    case 0:
        return base + QStringLiteral("/.").repeated(2100);
    case 1:
        return base + QLatin1Char('/') + QStringLiteral("abcdefghij/").repeated(400);
    default:
        return base + QLatin1Char('/') + QString(300, QLatin1Char('x'));
    }
}

QString RequestGenerator::nameOf(const QString &path) const
{
    return QFileInfo(path).fileName();
}
