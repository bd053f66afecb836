#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A temporary folder for a unit test's files, gone with the object.
class ScratchFolder
{
public:
    QString path() const { return temporary_.path(); }
    QString path(const QString &relativePath) const { return temporary_.path() + "/" + relativePath; }
    // Writes the file, making its folders on the way.
    bool writeFile(const QString &relativePath, const QByteArray &content) const;
    // The file's content, or "<missing>" when it can't be read.
    QByteArray contentOf(const QString &relativePath) const;

private:
    QTemporaryDir temporary_;
};
