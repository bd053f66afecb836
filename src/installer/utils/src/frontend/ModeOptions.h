#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>

// The job that one run of the tool does.
enum class Mode {
    Uninstall,
    Install,
    ResetConfig,
    Config,
    Samples,
    Background,
    Report,
};

// The six options of the command line. The parser gets no help or version option.
struct ModeOptions
{
    ModeOptions();

    void addTo(QCommandLineParser &parser) const;

    // The mode of the first set option in precedence order, which is not the
    // order of the help text; the other options are ignored. No option: Report.
    Mode selectedMode(const QCommandLineParser &parser) const;

    const QCommandLineOption install;
    const QCommandLineOption uninstall;
    const QCommandLineOption samples;
    const QCommandLineOption background;
    const QCommandLineOption config;
    // Demands a value like the others, but the value is never read.
    const QCommandLineOption resetConfig;
};
