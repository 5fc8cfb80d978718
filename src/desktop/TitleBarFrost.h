// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

#include <vector>

class QPainter;
class QPainterPath;

namespace corkwheel {

// The frosted glass of the edit-mode title bar, made from what the panel draws beneath it:
// blurred so that none of its detail shows through, laid on dark glass, hazed a little so a
// black panel still shows a pane, and darkened as far as the bar's white name and symbol
// need to stand out clearly on its brightest spot.
//
// The glass is opaque, unless it is see-through: where the compositor blurs what lies
// behind the bar, the desktop shows through it wherever the panel itself is clear, and the
// darkening then reckons with the brightest desktop there is, white.
//
// It follows the panel a part at a time: a clock's new second frosts again the few columns
// around the digits, and only those are painted again, not the whole bar.
class TitleBarFrost {
public:
    // The frost is made at a quarter of the bar's size in points and blurred there, which
    // costs a sixteenth of blurring it in full; drawn stretched smoothly, it comes out as
    // soft as the full blur would, and no detail survives the shrinking anyway.
    static constexpr int kShrink = 4;
    // In the shrunk image's pixels.
    static constexpr int kBlurRadius = 1;
    static constexpr int kBlurPasses = 3;
    // The relative luminance the bar never goes above: white on it has a contrast of 4.5:1
    // at the least, with some margin.
    static constexpr double kBrightest = 0.16;
    // How much of the desktop see-through glass hides on its own: enough that, darkened as
    // far as need be, the bar over a clear panel is no brighter than kBrightest even over a
    // white desktop.
    static constexpr double kSeeThroughOpacity = 0.7;

    // The area of a bar of `barSize` points to draw and hand to update() when what the panel
    // draws in `changed` has changed: whole shrunk pixels, so that none is made of old and
    // new, which also keeps its edges on whole device pixels.
    static QRect areaFor(const QRect& changed, QSize barSize);

    // Whether this frost is of a bar of `size` points at `ratio` and of the glass in use;
    // one that is not must be given the whole bar.
    bool holds(QSize size, double ratio) const;

    // Another glass: the frost is given the whole bar again.
    void setSeeThrough(bool seeThrough);
    bool seeThrough() const { return m_seeThrough; }

    // What the panel draws in `area` of a bar of `barSize` points (bar coordinates) is
    // `part` now, at the part's device pixel ratio. Returns the area of the bar that looks
    // different since, empty when none does.
    QRect update(const QImage& part, const QRect& area, QSize barSize);

    // The glass over the bar: frost inside `shape` (everywhere when it is empty), what the
    // panel draws outside it.
    void paint(QPainter& painter, const QPainterPath& shape) const;

    // The frost itself, small and premultiplied: it is drawn stretched over the bar.
    const QImage& frost() const { return m_frost; }

    // The relative luminance of an sRGB colour, 0 for black to 1 for white.
    static double luminance(QRgb colour);
    // What a premultiplied pixel of the frost looks like over white, the brightest of
    // desktops; itself when it is opaque.
    static QRgb overWhite(QRgb premultiplied);

private:
    void start(QSize barSize, double ratio);
    bool replaceUnder(const QImage& part, const QRect& area);
    void shrink(int first, int last);
    void lightColumns(int first, int last);
    double neededInColumn(int x) const;
    double neededDarkening() const;
    bool keepsDarkening(double needed) const;
    void darken(int first, int last);
    QRect barColumns(int first, int last) const;

    QSize m_barSize;
    // What the panel draws under the whole bar, at the device pixel ratio.
    QImage m_under;
    // The same shrunk, then blurred over the glass, then darkened.
    QImage m_shrunk;
    QImage m_lit;
    QImage m_frost;
    // The darkening each column of m_lit needs, for its brightest spot.
    std::vector<double> m_neededInColumn;
    // The factor on every colour of m_lit that makes m_frost.
    double m_darkening = 1;
    bool m_seeThrough = false;
};

} // namespace corkwheel
