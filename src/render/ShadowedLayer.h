// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QPointF>
#include <QRegion>
#include <QSize>

#include <functional>

class QPainter;

namespace corkwheel {

// A drawing and its drop shadow, kept from one redraw to the next. Each redraw is compared
// with the drawing before it, and the shadow is blurred again only around what changed: a
// ticking clock blurs the digits that changed, not its whole line. The redraw tells what
// changed, so that only that is repainted on the screen too.
class ShadowedLayer {
public:
    using Drawing = std::function<void(QPainter&)>;

    // Draws `drawing` afresh, `size` points large at device pixel ratio `ratio`, with its
    // shadow when `shadowed`. Returns where the layer now looks different, in points: all
    // of it when the size, the ratio or the shadow changed, or after `clear()`; nothing
    // when the drawing came out as before.
    QRegion redraw(const QSize& size, double ratio, bool shadowed, const Drawing& drawing);

    // Whether the layer holds a drawing made with these settings.
    bool holds(const QSize& size, double ratio, bool shadowed) const;

    // Forgets the drawing, so that the next redraw starts afresh.
    void clear();

    // The shadow, then the drawing over it, with the layer's top-left corner at `topLeft`.
    void paint(QPainter& painter, const QPointF& topLeft) const;

private:
    QImage takeCanvas(const QSize& size, double ratio);
    QRegion takeChanges(QImage next);
    QRegion inPoints(const QRect& pixels, double down) const;

    QImage m_drawing;
    // Null without a shadow.
    QImage m_shadow;
    // The drawing before, whose memory the next drawing reuses.
    QImage m_spare;
    QSize m_size;
    double m_ratio = 0;
    bool m_shadowed = false;
};

} // namespace corkwheel
