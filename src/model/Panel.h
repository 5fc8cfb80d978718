// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/PanelFrame.h"
#include "model/PanelStyle.h"
#include "model/PanelType.h"
#include "model/SystemStatsOptions.h"

#include <QString>
#include <QUuid>

namespace corkwheel {

// One user-defined desktop panel. Every panel carries all six type-specific strings;
// only the one matching `type` is used, so switching the type back and forth loses
// nothing.
struct Panel {
    QUuid id;
    QString name;
    PanelType type = PanelType::Shell;
    bool isEnabled = true;
    PanelFrame frame;
    PanelStyle style;
    double refreshInterval = 5;
    QString shellCommand;
    QString filePath;
    QString textTemplate;
    QString clockFormat;
    QString imageSource;
    QString webpageURL;
    // Used by system-stats panels only.
    SystemStatsOptions systemStats;

    bool operator==(const Panel&) const = default;

    // A new panel of `type` with a fresh random id and the defaults of that type.
    static Panel makeDefault(PanelType type);
};

} // namespace corkwheel
