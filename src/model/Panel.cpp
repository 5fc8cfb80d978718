// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/Panel.h"

#include <QCoreApplication>
#include <QDir>

namespace corkwheel {

namespace {

struct TypeDefaults {
    double y;
    double width;
    double height;
    double refreshInterval;
};

TypeDefaults defaultsFor(PanelType type) {
    switch (type) {
    case PanelType::Shell:
        return {60, 320, 100, 5};
    case PanelType::File:
        return {180, 320, 160, 5};
    case PanelType::Text:
        return {360, 320, 60, 60};
    case PanelType::Clock:
        return {60, 340, 70, 1};
    case PanelType::Image:
        return {60, 240, 240, 300};
    case PanelType::SystemStats:
        return {60, 280, 210, 2};
    case PanelType::Webpage:
        return {60, 420, 300, 300};
    }
    return {60, 0, 0, 1};
}

QString homeDirectoryWithoutTrailingSlash() {
    QString home = QDir::homePath();
    while (home.endsWith(u'/'))
        home.chop(1);
    return home;
}

} // namespace

Panel Panel::makeDefault(PanelType type) {
    const TypeDefaults defaults = defaultsFor(type);
    Panel panel;
    panel.id = QUuid::createUuid();
    panel.name = displayName(type);
    panel.type = type;
    panel.isEnabled = true;
    panel.frame = {60, defaults.y, defaults.width, defaults.height};
    panel.refreshInterval = defaults.refreshInterval;
    panel.textTemplate = QCoreApplication::translate("corkwheel::Panel", "Hello, desktop.");
    panel.clockFormat = QStringLiteral(u"EEEE, MMMM d  \u2022  h:mm:ss a");

    switch (type) {
    case PanelType::Shell:
        panel.shellCommand = QStringLiteral("date");
        break;
    case PanelType::File:
        panel.filePath =
            homeDirectoryWithoutTrailingSlash() + QStringLiteral("/.corkwheel_note.txt");
        break;
    case PanelType::Text:
        panel.textTemplate =
            //: A new text panel's text; keep the {date:...} token as it is.
            QCoreApplication::translate("corkwheel::Panel", "Today is {date:EEEE, MMMM d}");
        break;
    default:
        break;
    }
    return panel;
}

} // namespace corkwheel
