#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

// A throw-away machine in a temporary folder: its own home, XDG folders,
// ProgramData and search path. The tool run with environment() touches
// nothing outside root().
class Machine
{
public:
    Machine();
    // A machine in a folder of the test's own, beside whatever else the test keeps there.
    explicit Machine(const QString &parentFolder);
    // One whose user's home folder bears that name instead of "home".
    Machine(const QString &parentFolder, const QString &homeName);

    QString root() const;
    QString path(const QString &relativePath) const;
    QString binDir() const;
    // The home folder's name below the root: "home" unless the machine was made with another.
    QString homeName() const;
    QProcessEnvironment environment() const;

    // Writes a file below the machine's root, making its folders.
    void writeFile(const QString &relativePath, const QByteArray &content) const;
    // The bytes of a file below the machine's root; empty when it can't be read.
    QByteArray readFile(const QString &relativePath) const;

    // Puts a wmic.exe on the search path that records its arguments, one per
    // line, reads its input to the end, as Windows' wmic does when that input
    // is a pipe, and then prints these bytes on its output and error channels.
    void installFakeWmic(const QByteArray &output, const QByteArray &errorOutput = {});
    QString fakeWmicArguments() const;

private:
    void makeFolders() const;

    QTemporaryDir dir_;
    QString homeName_ = QStringLiteral("home");
};
