// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/OneJobPerKey.h"
#include "engine/VolumeCapacity.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace corkwheel {

// Asks file systems for their capacity on threads of their own, so that one that stopped
// answering (a network share whose server went away) holds up nothing but its own
// question. A volume has at most one question outstanding: while one waits, the volume is
// not asked again, so a stuck mount never piles up threads.
class VolumeCapacityQueries : public QObject {
    Q_OBJECT

public:
    using Ask = std::function<std::optional<VolumeCapacity>(const QString& mountPoint)>;

    // `ask` runs on other threads and may block for good.
    explicit VolumeCapacityQueries(Ask ask, QObject* parent = nullptr);

    // Asks unless a question about that volume is still outstanding; tells whether it
    // asked.
    bool ask(const QString& mountPoint);

Q_SIGNALS:
    // On the main thread, whenever a question returns, however late.
    void answered(const QString& mountPoint, const std::optional<VolumeCapacity>& capacity);

private:
    Ask m_ask;
    OneJobPerKey m_questions;
};

} // namespace corkwheel
