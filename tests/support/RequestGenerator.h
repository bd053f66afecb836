#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <random>

// Where the paths of generated requests lead. Every place lies in the test's
// own folder: the tool may write into the machine, while the folder beside
// the machine is only ever named where the tool reads.
struct RequestPlaces
{
    QString machine;      // the machine's root and the tool's working folder
    QString suite;        // a suite root in the machine
    QString hosts;        // a folder in the machine that host folders go into
    QString outside;      // a folder beside the machine
    QString plainFile;    // a file in the machine, where a folder is expected
    QString lockedFolder; // a folder in the machine that the tool's user may not enter
};

// Requests and their parts of every unexpected kind, the same for the same
// seed: wrong JSON types, missing and extra keys, empty, huge, non-ASCII and
// right-to-left texts, NUL characters, paths that climb with "..", over-long
// paths, thousands of elements, and option values that aren't a JSON object,
// aren't JSON or aren't base64.
class RequestGenerator
{
public:
    RequestGenerator(std::uint64_t seed, RequestPlaces places);

    bool chance(int percent);
    int below(int bound);
    QString pick(const QStringList &texts);

    // Sets the key to what `wanted` gives, to a value of another JSON type, or leaves it out.
    void put(QJsonObject &request, const QString &key, const std::function<QJsonValue()> &wanted);
    // Adds keys beside the request's own: odd names, names spelled like read
    // ones in another case, and names that other modes or records read.
    void addExtraKeys(QJsonObject &request);
    // Mostly the request as the wizard encodes it, at times something that isn't one.
    QString optionValue(const QJsonObject &request);

    QJsonValue anyValue(int depth = 0);
    QJsonValue number();
    QString oddText(bool allowHuge = true);
    // A folder that the tool reads: in the machine, beside it, a file, the
    // machine's root, a folder without rights, an over-long path.
    QString sourceFolder();
    // A folder that the tool writes into: it may climb out of the machine but
    // always leads back into it.
    QString targetFolder();
    // Mostly one of the known names, at times an odd one; a name that climbs leads into the machine.
    QString productName(const QStringList &known);
    // None, a few from `element`, or thousands from `compact`.
    QJsonArray manyOf(const std::function<QJsonValue()> &element, const std::function<QJsonValue()> &compact);

    // Whether a generated path names the folder without rights.
    bool namedLockedFolder() const;

private:
    QString hugeText();
    QString randomText(int length);
    QString relativeName();
    QString climbingTo(const QString &absolutePath);
    QString overLongPath(const QString &base);
    QString nameOf(const QString &path) const;

    std::mt19937_64 random_;
    RequestPlaces places_;
    bool namedLockedFolder_ = false;
};
