// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/MountEntry.h"
#include "engine/MountedVolumes.h"
#include "engine/UserVisibleMounts.h"
#include "support/FakeSystemSource.h"

using namespace corkwheel;

// Any text as /proc/self/mountinfo, on a machine with no other file: every volume chosen
// from the table is listed, whatever its devices turn out to be.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView table = fuzz::inputText(data, size);
    const QList<MountEntry> mounts = parseMountInfo(table);
    const QList<MountEntry> visible = userVisibleMounts(mounts);
    fuzz::require(visible.size() <= mounts.size());
    test::FakeSystemSource machine;
    machine.setFile(QStringLiteral("/proc/self/mountinfo"), table.toByteArray());
    fuzz::require(readMountedVolumes(machine).size() == visible.size());
    return 0;
}
