#include "ModeOptions.h"

#include <QStringList>

#include <utility>

namespace {

const QString requestValueName = QStringLiteral("txt");

QCommandLineOption requestOption(const QString &shortName, const QString &longName, const QString &description)
{
    return QCommandLineOption(QStringList{shortName, longName}, description, requestValueName, QString());
}

} // namespace

ModeOptions::ModeOptions()
    : install(requestOption(QStringLiteral("i"), QStringLiteral("install"),
                            QStringLiteral("Runs installation process for an plugins")))
    , uninstall(requestOption(QStringLiteral("u"), QStringLiteral("uninstall"),
                              QStringLiteral("Runs uninstallation process of orv collection")))
    , samples(requestOption(QStringLiteral("s"), QStringLiteral("samples"),
                            QStringLiteral("Runs installation process of sample images")))
    , background(QStringList{QStringLiteral("b"), QStringLiteral("background")},
                 QStringLiteral("Checks launched process for blocking apps"))
    , config(requestOption(QStringLiteral("c"), QStringLiteral("config"),
                           QStringLiteral("Runs installation process of global settings")))
    , resetConfig(requestOption(QStringLiteral("r"), QStringLiteral("resetConfig"),
                                QStringLiteral("Runs cleaning process for Settings of orv collection")))
{
}

void ModeOptions::addTo(QCommandLineParser &parser) const
{
    for (const QCommandLineOption *option : {&install, &uninstall, &samples, &background, &config, &resetConfig})
        parser.addOption(*option);
}

Mode ModeOptions::selectedMode(const QCommandLineParser &parser) const
{
    const std::pair<const QCommandLineOption *, Mode> precedence[] = {
        {&uninstall, Mode::Uninstall}, {&install, Mode::Install}, {&resetConfig, Mode::ResetConfig},
        {&config, Mode::Config},       {&samples, Mode::Samples}, {&background, Mode::Background},
    };
    for (const auto &[option, mode] : precedence) {
        if (parser.isSet(*option))
            return mode;
    }
    return Mode::Report;
}
