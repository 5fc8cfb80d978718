// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QString>

class QLabel;
class QWidget;

namespace corkwheel::SecondaryText {

// How much of the text colour the form's secondary texts keep.
inline constexpr double kOpacity = 0.55;

// `color` dimmed to the secondary style.
QColor dimmed(QColor color);

// Dims the text of `widget` to the form's secondary style.
void apply(QWidget& widget);

// A note under a row of the form: caption-sized, dimmed and wrapping.
QLabel* note(const QString& text, QWidget* parent = nullptr);

} // namespace corkwheel::SecondaryText
