#include "ScopedEnvironment.h"

#include <QStringList>

ScopedEnvironment::ScopedEnvironment(const Machine &machine)
{
    const QProcessEnvironment environment = machine.environment();
    for (const char *name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_DIRS", "ProgramData", "PATH"})
        set(name, environment.value(QString::fromLatin1(name)).toUtf8());
}

ScopedEnvironment::~ScopedEnvironment()
{
    for (auto it = saved_.crbegin(); it != saved_.crend(); ++it) {
        if (it->wasSet)
            qputenv(it->name.constData(), it->value);
        else
            qunsetenv(it->name.constData());
    }
}

void ScopedEnvironment::set(const char *name, const QByteArray &value)
{
    remember(name);
    qputenv(name, value);
}

void ScopedEnvironment::unset(const char *name)
{
    remember(name);
    qunsetenv(name);
}

void ScopedEnvironment::remember(const char *name)
{
    saved_.append({name, qEnvironmentVariableIsSet(name), qgetenv(name)});
}
