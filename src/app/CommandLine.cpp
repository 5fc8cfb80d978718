// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/CommandLine.h"

#include <QCommandLineParser>

#include <array>

namespace corkwheel {

namespace {

struct ActionOption {
    AppAction action;
    const char* description;
};

constexpr std::array<ActionOption, 4> kActionOptions = {{
    {AppAction::Settings,
     QT_TRANSLATE_NOOP("corkwheel::CommandLine", "Open the settings window of the running "
                                                 "Corkwheel, or start Corkwheel with it open.")},
    {AppAction::EditMode,
     QT_TRANSLATE_NOOP("corkwheel::CommandLine",
                       "Switch edit mode of the running Corkwheel on or off.")},
    {AppAction::HideAll,
     QT_TRANSLATE_NOOP("corkwheel::CommandLine",
                       "Hide all panels of the running Corkwheel, or show them again.")},
    {AppAction::Quit, QT_TRANSLATE_NOOP("corkwheel::CommandLine", "Quit the running Corkwheel.")},
}};

const QStringList kHelpNames = {QStringLiteral("h"), QStringLiteral("help")};
const QStringList kVersionNames = {QStringLiteral("v"), QStringLiteral("version")};

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(CommandLine::tr("Small information panels on the desktop."));
    parser.addOption(QCommandLineOption(kHelpNames, CommandLine::tr("Show this help and exit.")));
    parser.addOption(
        QCommandLineOption(kVersionNames, CommandLine::tr("Show the version and exit.")));
    for (const ActionOption& option : kActionOptions) {
        parser.addOption(
            QCommandLineOption(appActionName(option.action), CommandLine::tr(option.description)));
    }
}

// Without an application object the parser cannot know the program's name; the usage line
// names the command as it is installed.
QString usage(const QCommandLineParser& parser) {
    QString text = parser.helpText();
    return CommandLine::tr("Usage: %1 [options]").arg(QStringLiteral("corkwheel")) +
           text.mid(text.indexOf(u'\n'));
}

CommandLine endingWith(int exitCode, const QString& output, const QString& error) {
    CommandLine result;
    result.endsAtOnce = true;
    result.exitCode = exitCode;
    result.standardOutput = output;
    result.standardError = error;
    return result;
}

CommandLine mistake(const QCommandLineParser& parser, const QString& why) {
    return endingWith(CommandLine::kUsageExitCode, {},
                      QStringLiteral("corkwheel: ") + why + u'\n' + usage(parser));
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments) {
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(arguments))
        return mistake(parser, parser.errorText());
    if (!parser.positionalArguments().isEmpty()) {
        return mistake(parser, CommandLine::tr("unexpected argument '%1'")
                                   .arg(parser.positionalArguments().constFirst()));
    }
    if (parser.isSet(kHelpNames.constFirst()))
        return endingWith(0, usage(parser), {});
    if (parser.isSet(kVersionNames.constFirst()))
        return endingWith(0, QStringLiteral("corkwheel " CORKWHEEL_VERSION "\n"), {});
    CommandLine result;
    for (const ActionOption& option : kActionOptions) {
        if (!parser.isSet(appActionName(option.action)))
            continue;
        if (result.action)
            return mistake(parser, CommandLine::tr("give only one action at a time"));
        result.action = option.action;
    }
    return result;
}

} // namespace corkwheel
