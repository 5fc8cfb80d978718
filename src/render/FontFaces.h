// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace corkwheel::FontFaces {

// One installed face (a bold, an italic, a condensed face each are one), as fontconfig
// reports it: its PostScript name, which is the name a panel's style stores, and the family
// and style names by which Qt finds that face.
struct Face {
    QString postScriptName;
    QString family;
    QString style;
};

// Every installed face that has a PostScript name, each name once, in fontconfig's order.
// A variable font counts by its named instances, as those are the faces it offers.
QList<Face> installed();

// The installed face named `postScriptName`, if there is one.
std::optional<Face> named(const QString& postScriptName);

} // namespace corkwheel::FontFaces
