#pragma once

#include "Machine.h"

#include <QByteArray>
#include <QList>
#include <QPair>

// Gives this test process the environment of a machine (HOME, XDG folders,
// ProgramData, PATH) and puts the old values back when it ends.
class ScopedEnvironment
{
public:
    explicit ScopedEnvironment(const Machine &machine);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment &) = delete;
    ScopedEnvironment &operator=(const ScopedEnvironment &) = delete;

    void set(const char *name, const QByteArray &value);
    void unset(const char *name);

private:
    void remember(const char *name);

    struct Saved
    {
        QByteArray name;
        bool wasSet;
        QByteArray value;
    };
    QList<Saved> saved_;
};
