// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace corkwheel {

// xcb hands every reply over as memory for the caller to free().
struct XcbFree {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename Reply> using XcbReply = std::unique_ptr<Reply, XcbFree>;

// One round trip; none when the server cannot answer.
inline xcb_atom_t internAtom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

} // namespace corkwheel
