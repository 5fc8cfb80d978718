// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/XcbReply.h"

#include <QImage>
#include <QWidget>

#include <xcb/xcb.h>

namespace corkwheel::test {

// A window's own pixels as the X server holds them, with their alpha channel when the window
// has one (depth 32); null when the window is gone.
inline QImage windowImage(WId window) {
    const XcbClient connection(xcb_connect(nullptr, nullptr));
    xcb_connection_t* raw = connection.get();
    const auto id = static_cast<xcb_window_t>(window);
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(raw, xcb_get_geometry(raw, id), nullptr));
    if (!geometry)
        return {};
    const XcbReply<xcb_get_image_reply_t> image(
        xcb_get_image_reply(raw,
                            xcb_get_image(raw, XCB_IMAGE_FORMAT_Z_PIXMAP, id, 0, 0, geometry->width,
                                          geometry->height, ~0U),
                            nullptr));
    const int bytes = image ? xcb_get_image_data_length(image.get()) : 0;
    if (bytes < geometry->width * geometry->height * 4)
        return {};
    const auto format = geometry->depth == 32 ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    return QImage(xcb_get_image_data(image.get()), geometry->width, geometry->height, format)
        .copy();
}

} // namespace corkwheel::test
