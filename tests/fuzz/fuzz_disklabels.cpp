// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/DiskLabels.h"
#include "support/FakeSystemSource.h"

using namespace corkwheel;

// Any text as the names in /dev/disk/by-label, one a line, each a link to a device of its
// own: every name gives one label.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QStringList names = QString::fromUtf8(fuzz::inputText(data, size)).split(u'\n');
    test::FakeSystemSource machine;
    qsizetype linked = 0;
    for (const QString& name : names) {
        decodeUdevEscapes(name);
        if (name.isEmpty() || name.contains(u'/'))
            continue;
        const QString link = QStringLiteral("/dev/disk/by-label/") + name;
        if (machine.exists(link))
            continue;
        machine.setLink(link, QStringLiteral("/dev/sd%1").arg(++linked));
    }
    fuzz::require(diskLabelsByDevice(machine).size() == linked);
    return 0;
}
