#include "RegistryHiveFormat.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QTextCodec>

#include <algorithm>
#include <optional>
#include <vector>

namespace registryHive {
namespace {

const QString header = QStringLiteral("Windows Registry Editor Version 5.00");
const QString defaultValueName = QStringLiteral(".");
const QRegularExpression rawValuePrefix(QStringLiteral("^[A-Za-z]+(\\([0-9A-Fa-f]+\\))?:"));
// Lets QVariant compare kept values by their text, as it does strings.
const bool rawValuesComparable = QMetaType::registerEqualsComparator<RawValue>();

// With explicit lengths: a text value may hold a zero, and the plain
// QByteArray overload would stop reading the whole file there.
QString decode(const QByteArray &content)
{
    if (content.startsWith("\xFF\xFE"))
        return QTextCodec::codecForName("UTF-16LE")->toUnicode(content.mid(2));
    const int start = content.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    return QString::fromUtf8(content.constData() + start, content.size() - start);
}

// Every carriage return at a line's end goes: the writer ends lines with a
// bare line feed, so one kept here would not be read back the same.
QStringList splitLines(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines) {
        while (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    return lines;
}

// Reads a quoted text starting at `position` (on the opening quote) and moves
// `position` behind the closing quote. Nothing when the quote is not closed.
std::optional<QString> readQuoted(const QString &line, int &position)
{
    QString text;
    for (int i = position + 1; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c == QLatin1Char('"')) {
            position = i + 1;
            return text;
        }
        if (c != QLatin1Char('\\') || i + 1 == line.size()) {
            text += c;
            continue;
        }
        const QChar escaped = line.at(++i);
        text += escaped == QLatin1Char('n') ? QChar(u'\n') : escaped == QLatin1Char('r') ? QChar(u'\r') : escaped;
    }
    return std::nullopt;
}

QString quoted(const QString &text)
{
    QString result = QStringLiteral("\"");
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('"'))
            result += QLatin1Char('\\') + QString(c);
        else if (c == QLatin1Char('\n'))
            result += QStringLiteral("\\n");
        else if (c == QLatin1Char('\r'))
            result += QStringLiteral("\\r");
        else
            result += c;
    }
    return result + QLatin1Char('"');
}

// One hive file being read: sections, values and the first spelling of every name.
class HiveReader
{
public:
    HiveReader(const QStringList &lines, const QString &hiveName)
        : lines_(lines)
        , hiveName_(hiveName)
    {
    }

    QSettings::SettingsMap read()
    {
        for (line_ = 0; line_ < lines_.size(); ++line_) {
            const QString line = lines_.at(line_).trimmed();
            if (line.startsWith(QLatin1Char('[')))
                enterSection(line);
            else if (line.startsWith(QLatin1Char('"')) || line.startsWith(QLatin1Char('@')))
                readValue(line);
        }
        return values_;
    }

private:
    void enterSection(const QString &line)
    {
        inSection_ = false;
        if (!line.endsWith(QLatin1Char(']')))
            return;
        QStringList names = splitKeyPath(line.mid(1, line.size() - 2));
        if (names.isEmpty() || names.takeFirst().compare(hiveName_, Qt::CaseInsensitive) != 0)
            return;
        sectionNames_ = names;
        spelledKeyPath(names);
        inSection_ = true;
    }

    QString spelledKeyPath(const QStringList &names)
    {
        QString lowered;
        QString spelled;
        for (const QString &name : names) {
            lowered += QLatin1Char('/') + name.toLower();
            spelled = keySpellings_.value(lowered, spelled + QLatin1Char('/') + name);
            keySpellings_.insert(lowered, spelled);
        }
        return spelled.mid(1);
    }

    void readValue(const QString &line)
    {
        int position = 0;
        std::optional<QString> name = defaultValueName;
        if (line.startsWith(QLatin1Char('@')))
            position = 1;
        else
            name = readQuoted(line, position);
        if (!name || position >= line.size() || line.at(position) != QLatin1Char('='))
            return;
        const std::optional<QVariant> value = readData(line.mid(position + 1).trimmed());
        if (!inSection_ || !value)
            return;
        // A name holding a separator is read as nested names, as the writer writes it back.
        QStringList names = splitKeyPath(*name);
        // A line break could not be written back where the name becomes a key's.
        if (names.isEmpty() || name->contains(QLatin1Char('\n')) || name->contains(QLatin1Char('\r')))
            return;
        const QString valueName = names.takeLast();
        // The names before a separator are keys, spelled as the keys met before them.
        const QString keyPath = spelledKeyPath(sectionNames_ + names);
        const QString key = keyPath.isEmpty() ? valueName : keyPath + QLatin1Char('/') + valueName;
        if (seenValues_.contains(key.toLower()))
            return;
        seenValues_.insert(key.toLower());
        values_.insert(key, *value);
    }

    std::optional<QVariant> readData(const QString &data)
    {
        if (data.startsWith(QLatin1Char('"'))) {
            int position = 0;
            const std::optional<QString> text = readQuoted(data, position);
            if (!text || position != data.size())
                return std::nullopt;
            return QVariant(*text);
        }
        if (data.startsWith(QStringLiteral("dword:"), Qt::CaseInsensitive)) {
            bool ok = false;
            const QString digits = data.mid(6);
            const uint number = digits.toUInt(&ok, 16);
            if (!ok || digits.size() > 8)
                return std::nullopt;
            return QVariant(int(number));
        }
        if (rawValuePrefix.match(data).hasMatch())
            return QVariant::fromValue(RawValue{rawWithContinuation(data)});
        return std::nullopt;
    }

    // Binary values go on over lines that end in a backslash; the lines that
    // continue them are indented, so a value or section line never does.
    QString rawWithContinuation(QString raw)
    {
        while (raw.endsWith(QLatin1Char('\\')) && line_ + 1 < lines_.size() && isContinuation(lines_.at(line_ + 1)))
            raw += QLatin1Char('\n') + lines_.at(++line_);
        return raw;
    }

    static bool isContinuation(const QString &line)
    {
        return !line.trimmed().isEmpty() && (line.startsWith(QLatin1Char(' ')) || line.startsWith(QLatin1Char('\t')));
    }

    const QStringList lines_;
    const QString hiveName_;
    int line_ = 0;
    bool inSection_ = false;
    QStringList sectionNames_;
    QHash<QString, QString> keySpellings_;
    QSet<QString> seenValues_;
    QSettings::SettingsMap values_;
};

QString dataText(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<RawValue>())
        return value.value<RawValue>().text;
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
        return QStringLiteral("dword:%1").arg(value.toUInt(), 8, 16, QLatin1Char('0'));
    default:
        return quoted(value.toString());
    }
}

bool lessIgnoringCase(const QString &a, const QString &b)
{
    const int compared = a.compare(b, Qt::CaseInsensitive);
    return compared != 0 ? compared < 0 : a < b;
}

bool namesLess(const QString &a, const QString &b)
{
    if (a == defaultValueName || b == defaultValueName)
        return a == defaultValueName && b != defaultValueName;
    return lessIgnoringCase(a, b);
}

// Name by name ignoring case, so that a key comes right before its sub-keys.
bool keyPathLess(const QStringList &a, const QStringList &b)
{
    for (int i = 0; i < std::min(a.size(), b.size()); ++i) {
        const int compared = a.at(i).compare(b.at(i), Qt::CaseInsensitive);
        if (compared != 0)
            return compared < 0;
    }
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

} // namespace

QSettings::SettingsMap parse(const QByteArray &fileContent, const QString &hiveName)
{
    return HiveReader(splitLines(decode(fileContent)), hiveName).read();
}

QStringList splitKeyPath(const QString &path)
{
    QStringList names;
    int start = 0;
    for (int end = 0; end <= path.size(); ++end) {
        if (end < path.size() && path.at(end) != QLatin1Char('\\') && path.at(end) != QLatin1Char('/'))
            continue;
        if (end > start)
            names.append(path.mid(start, end - start));
        start = end + 1;
    }
    return names;
}

QByteArray write(const QSettings::SettingsMap &values, const QString &hiveName)
{
    QMap<QString, std::vector<QString>> namesByKey;
    for (auto it = values.begin(); it != values.end(); ++it) {
        const int slash = it.key().lastIndexOf(QLatin1Char('/'));
        namesByKey[it.key().left(std::max(slash, 0))].push_back(it.key().mid(slash + 1));
    }
    QStringList keys = namesByKey.keys();
    std::sort(keys.begin(), keys.end(), [](const QString &a, const QString &b) {
        return keyPathLess(a.split(QLatin1Char('/')), b.split(QLatin1Char('/')));
    });

    QString text = header + QStringLiteral("\n\n");
    for (const QString &key : keys) {
        std::vector<QString> &names = namesByKey[key];
        std::sort(names.begin(), names.end(), namesLess);
        const QString section =
            key.isEmpty() ? hiveName
                          : hiveName + QLatin1Char('\\') + QString(key).replace(QLatin1Char('/'), QLatin1Char('\\'));
        text += QLatin1Char('[') + section + QStringLiteral("]\n");
        for (const QString &name : names) {
            const QString fullName = key.isEmpty() ? name : key + QLatin1Char('/') + name;
            text += (name == defaultValueName ? QStringLiteral("@") : quoted(name)) + QLatin1Char('=') +
                    dataText(values.value(fullName)) + QLatin1Char('\n');
        }
        text += QLatin1Char('\n');
    }
    return text.toUtf8();
}

} // namespace registryHive
