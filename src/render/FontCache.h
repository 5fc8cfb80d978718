// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QGuiApplication>
#include <QHash>
#include <QObject>

namespace corkwheel {

// What was looked up, measured or shaped with fonts, kept for the next redraw: at most
// `maxEntries` (emptied when full, so text that keeps changing cannot grow it), and
// emptied when the application's fonts change, which it announces.
template <class Key, class Value> class FontCache {
public:
    explicit FontCache(qsizetype maxEntries) : m_maxEntries(maxEntries) {
        QObject::connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, &m_receiver,
                         [this] { m_entries.clear(); });
    }

    // The value kept for `key`, made by `make()` when there is none. The reference holds
    // until the next call.
    template <class Make> const Value& value(const Key& key, Make make) {
        const auto found = m_entries.constFind(key);
        if (found != m_entries.constEnd())
            return *found;
        if (m_entries.size() >= m_maxEntries)
            m_entries.clear();
        return *m_entries.insert(key, make());
    }

    qsizetype size() const { return m_entries.size(); }

private:
    // Ends the connection when the cache goes.
    QObject m_receiver;
    QHash<Key, Value> m_entries;
    qsizetype m_maxEntries;
};

} // namespace corkwheel
