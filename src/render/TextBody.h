// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/StyledText.h"
#include "model/PanelStyle.h"
#include "model/PanelType.h"

#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace corkwheel::TextBody {

// The text a shell, file, text or clock panel shows: the runner's output, or when that is
// empty the placeholder of the panel's type ("Running…" or "(no output)" for a command,
// "(empty file)" for a file, a single space for a text or a clock).
QString displayedText(PanelType type, const QString& output, bool isRunning);

// Inside the glass the text keeps clear of the rounded edge.
double padding(const PanelStyle& style);

// The part of `text` that can show in `size` when set in `font`: no more lines than fit,
// and no more characters than that many rows could hold. A command may print megabytes;
// laying out only this part keeps every redraw as cheap as for a short text.
QString visiblePart(const QString& text, const QFont& font, const QSizeF& size);

// Where in `text` each line of `visiblePart` comes from: its start and length.
struct TextSlice {
    qsizetype start = 0;
    qsizetype length = 0;
};
QList<TextSlice> visibleSlices(const QString& text, const QFont& font, const QSizeF& size);

// Draws `text` into the panel `rect`: in the style's font, colour and alignment, wrapped to
// the width, inside the padding. Lines that don't fit are left out, and the last line shown
// ends in "…" when some are. `runs` colour parts of the text, as a terminal would. The
// shadow is the caller's to add.
void paint(QPainter& painter, const QRectF& rect, const QString& text, const PanelStyle& style,
           const QList<StyledRun>& runs = {});

} // namespace corkwheel::TextBody
