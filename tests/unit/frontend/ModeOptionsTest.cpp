#include "ModeOptions.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

struct ParsedLine
{
    bool parsed;
    Mode mode;
    QString errorText;
    QStringList positional;
};

ParsedLine parse(const QStringList &arguments)
{
    const ModeOptions options;
    QCommandLineParser parser;
    options.addTo(parser);
    const bool parsed = parser.parse(QStringList{"SuiteDeployer"} + arguments);
    return {parsed, options.selectedMode(parser), parser.errorText(), parser.positionalArguments()};
}

// Each mode with a command line that selects it alone.
const std::vector<std::pair<QStringList, Mode>> modesByPrecedence = {
    {{"--uninstall", "x"}, Mode::Uninstall},     {{"--install", "x"}, Mode::Install},
    {{"--resetConfig", "x"}, Mode::ResetConfig}, {{"--config", "x"}, Mode::Config},
    {{"--samples", "x"}, Mode::Samples},         {{"--background"}, Mode::Background},
};

} // namespace

TEST(ModeOptionsTest, OptionsCarryTheirNamesTextsAndValueNames)
{
    const ModeOptions options;
    const std::vector<std::tuple<const QCommandLineOption *, QStringList, QString, QString>> expected = {
        {&options.install, {"i", "install"}, "Runs installation process for an plugins", "txt"},
        {&options.uninstall, {"u", "uninstall"}, "Runs uninstallation process of orv collection", "txt"},
        {&options.samples, {"s", "samples"}, "Runs installation process of sample images", "txt"},
        {&options.background, {"b", "background"}, "Checks launched process for blocking apps", ""},
        {&options.config, {"c", "config"}, "Runs installation process of global settings", "txt"},
        {&options.resetConfig, {"r", "resetConfig"}, "Runs cleaning process for Settings of orv collection", "txt"},
    };
    for (const auto &[option, names, description, valueName] : expected) {
        EXPECT_EQ(option->names(), names);
        EXPECT_EQ(option->description(), description);
        EXPECT_EQ(option->valueName(), valueName);
        EXPECT_TRUE(option->defaultValues().isEmpty());
        EXPECT_EQ(option->flags(), QCommandLineOption::Flags());
    }
}

TEST(ModeOptionsTest, HelpTextListsTheSixOptionsInOrderAndNoOthers)
{
    const ModeOptions options;
    QCommandLineParser parser;
    options.addTo(parser);
    const QString help = parser.helpText();
    const QStringList starts = {"-i, --install <txt>", "-u, --uninstall <txt>", "-s, --samples <txt>",
                                "-b, --background ",   "-c, --config <txt>",    "-r, --resetConfig <txt>"};
    int position = 0;
    for (const QString &start : starts) {
        const int found = help.indexOf(start, position);
        EXPECT_GT(found, position - 1) << start.toStdString();
        position = found;
    }
    EXPECT_EQ(help.count(QRegExp("\n  -")), 6);
}

TEST(ModeOptionsTest, NoOptionSelectsTheReport)
{
    const ParsedLine line = parse({});
    EXPECT_TRUE(line.parsed);
    EXPECT_EQ(line.mode, Mode::Report);
}

TEST(ModeOptionsTest, EachOptionAloneSelectsItsMode)
{
    for (const auto &[arguments, mode] : modesByPrecedence)
        EXPECT_EQ(parse(arguments).mode, mode) << arguments.join(' ').toStdString();
}

TEST(ModeOptionsTest, TheHigherModeWinsWhateverTheOrderOnTheLine)
{
    for (size_t higher = 0; higher < modesByPrecedence.size(); ++higher) {
        for (size_t lower = higher + 1; lower < modesByPrecedence.size(); ++lower) {
            const QStringList &first = modesByPrecedence[higher].first;
            const QStringList &second = modesByPrecedence[lower].first;
            const Mode expected = modesByPrecedence[higher].second;
            EXPECT_EQ(parse(first + second).mode, expected) << (first + second).join(' ').toStdString();
            EXPECT_EQ(parse(second + first).mode, expected) << (second + first).join(' ').toStdString();
        }
    }
}

TEST(ModeOptionsTest, ShortAndAssignedFormsAreAccepted)
{
    EXPECT_EQ(parse({"-u", "x"}).mode, Mode::Uninstall);
    EXPECT_EQ(parse({"--config=x"}).mode, Mode::Config);
    EXPECT_EQ(parse({"-b"}).mode, Mode::Background);
}

TEST(ModeOptionsTest, ResetConfigWithoutValueIsRejected)
{
    const ParsedLine line = parse({"--resetConfig"});
    EXPECT_FALSE(line.parsed);
    EXPECT_EQ(line.errorText, "Missing value after '--resetConfig'.");
}

TEST(ModeOptionsTest, BackgroundLeavesTheNextWordAsPositionalArgument)
{
    const ParsedLine line = parse({"--background", "x"});
    EXPECT_TRUE(line.parsed);
    EXPECT_EQ(line.mode, Mode::Background);
    EXPECT_EQ(line.positional, QStringList{"x"});
}

TEST(ModeOptionsTest, HelpAndVersionAreUnknownOptions)
{
    EXPECT_FALSE(parse({"--help"}).parsed);
    EXPECT_FALSE(parse({"--version"}).parsed);
    EXPECT_EQ(parse({"--help"}).errorText, "Unknown option 'help'.");
}
