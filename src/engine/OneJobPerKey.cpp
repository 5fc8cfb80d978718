// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/OneJobPerKey.h"

namespace corkwheel {

bool OneJobPerKey::start(const QString& key) {
    if (m_underWay.contains(key))
        return false;
    m_underWay.insert(key);
    return true;
}

} // namespace corkwheel
