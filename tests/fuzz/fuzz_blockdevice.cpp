// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/BlockDevice.h"
#include "support/FakeSystemSource.h"

using namespace corkwheel;

namespace {

const QString kUsbDisk =
    QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb2/2-1/2-1:1.0/host6/target6:0:0/"
                   "6:0:0:0/block/sdb");

} // namespace

// Any text as the removable file of a USB disk whose partition is asked about: a USB disk
// is external whatever the file says.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray removable = fuzz::inputText(data, size).toByteArray();
    test::FakeSystemSource machine;
    machine.setLink(QStringLiteral("/sys/class/block/sdb1"), kUsbDisk + QStringLiteral("/sdb1"));
    machine.setFile(kUsbDisk + QStringLiteral("/sdb1/partition"), "1\n");
    machine.setFile(kUsbDisk + QStringLiteral("/removable"), removable);
    fuzz::require(!isInternalBlockDevice(machine, QStringLiteral("sdb1")));
    fuzz::require(!isInternalDisk(removable, kUsbDisk));
    return 0;
}
