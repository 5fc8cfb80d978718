// SPDX-License-Identifier: GPL-3.0-or-later

// Temperatures, fans and batteries as the kernel's files of three made-up machines show
// them (tests/data/machines), and the cases those machines don't have.

#include "engine/Batteries.h"
#include "engine/Fans.h"
#include "engine/HwmonChips.h"
#include "engine/Temperatures.h"
#include "support/FakeSystemSource.h"
#include "support/MachineTree.h"

#include <QTest>

using namespace corkwheel;
using corkwheel::test::FakeSystemSource;
using corkwheel::test::loadMachineTree;

namespace {

std::unique_ptr<FakeSystemSource> machine(const char* name) {
    auto source = std::make_unique<FakeSystemSource>();
    loadMachineTree(*source, QString::fromUtf8(name));
    return source;
}

QStringList labelsOf(const QList<TemperatureReading>& readings) {
    QStringList labels;
    for (const TemperatureReading& reading : readings)
        labels.append(reading.label);
    return labels;
}

// A battery folder of /sys/class/power_supply with the given files.
void addSupply(FakeSystemSource& source, const QString& name,
               const QList<std::pair<QString, QByteArray>>& files) {
    const QString folder = QStringLiteral("/sys/class/power_supply/") + name;
    source.setDirectory(folder);
    for (const auto& [file, contents] : files)
        source.setFile(folder + u'/' + file, contents + '\n');
}

void addChip(FakeSystemSource& source, const QString& hwmon,
             const QList<std::pair<QString, QByteArray>>& files) {
    const QString folder = QStringLiteral("/sys/class/hwmon/") + hwmon;
    source.setDirectory(folder);
    for (const auto& [file, contents] : files)
        source.setFile(folder + u'/' + file, contents + '\n');
}

} // namespace

class SensorReadingsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void amdDesktopShowsDieGraphicsCardAndBothDisks() {
        const auto source = machine("amd-desktop");
        const QList<TemperatureReading> readings = Temperatures::read(*source);
        // k10temp's Tctl (no Tdie on this processor), amdgpu's edge sensor, and the disks in
        // the order of their chips' numbers: hwmon0 before hwmon10.
        const QList<TemperatureReading> expected{
            {QStringLiteral("CPU"), 52.375, std::nullopt, std::nullopt},
            {QStringLiteral("GPU"), 47.0, std::nullopt, 100.0},
            {QStringLiteral("NVMe 1"), 38.85, 81.85, 84.85},
            {QStringLiteral("NVMe 2"), 44.85, 84.85, 87.85},
        };
        QCOMPARE(readings, expected);
    }

    void intelLaptopShowsPackageAndDisk() {
        const auto source = machine("intel-laptop");
        const QList<TemperatureReading> readings = Temperatures::read(*source);
        // The i915 chip has no temperature input, and acpitz and dell_smm are not chips of
        // a recognised part.
        const QList<TemperatureReading> expected{
            {QStringLiteral("CPU"), 71.0, 100.0, 100.0},
            {QStringLiteral("NVMe"), 36.85, 79.85, 82.85},
        };
        QCOMPARE(readings, expected);
    }

    void bareMachineHasNoTemperatures() {
        const auto source = machine("bare");
        QVERIFY(Temperatures::read(*source).isEmpty());
        QVERIFY(Fans::read(*source).isEmpty());
        QVERIFY(!Batteries::read(*source));
    }

    void chipsAreReadInTheOrderOfTheirNumbers() {
        const auto source = machine("amd-desktop");
        const QList<HwmonChip> chips = readHwmonChips(*source, HwmonParts{true, true});
        QStringList names;
        for (const HwmonChip& chip : chips)
            names.append(chip.name);
        QCOMPARE(names, (QStringList{QStringLiteral("nvme"), QStringLiteral("k10temp"),
                                     QStringLiteral("amdgpu"), QStringLiteral("nct6798"),
                                     QStringLiteral("nvme")}));
        QCOMPARE(chips[1].temperatures.size(), 2);
        QCOMPARE(chips[1].temperatures[1].index, 3);
        QCOMPARE(chips[1].temperatures[1].label, QStringLiteral("Tccd1"));
    }

    void partsNotAskedForAreNotRead() {
        const auto source = machine("amd-desktop");
        const QList<HwmonChip> temperaturesOnly = readHwmonChips(*source, HwmonParts{true, false});
        QVERIFY(temperaturesOnly[2].fans.isEmpty());
        QVERIFY(!temperaturesOnly[2].temperatures.isEmpty());
        const QList<HwmonChip> fansOnly = readHwmonChips(*source, HwmonParts{false, true});
        QVERIFY(fansOnly[2].temperatures.isEmpty());
        QCOMPARE(fansOnly[2].fans.size(), 1);
    }

    void tdieIsPreferredToTctl() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "k10temp"},
                 {QStringLiteral("temp1_input"), "60000"},
                 {QStringLiteral("temp1_label"), "Tctl"},
                 {QStringLiteral("temp2_input"), "50000"},
                 {QStringLiteral("temp2_label"), "Tdie"}});
        QCOMPARE(Temperatures::read(source).value(0).celsius, 50.0);
    }

    void zenpowerCountsAsTheProcessor() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "zenpower"},
                 {QStringLiteral("temp1_input"), "48500"},
                 {QStringLiteral("temp1_label"), "Tdie"}});
        QCOMPARE(labelsOf(Temperatures::read(source)), QStringList{QStringLiteral("CPU")});
    }

    void hottestSocketIsTheProcessorsRow() {
        FakeSystemSource source;
        for (const auto& [chip, package, input] :
             {std::tuple{QStringLiteral("hwmon0"), QByteArray("Package id 0"), QByteArray("50000")},
              std::tuple{QStringLiteral("hwmon1"), QByteArray("Package id 1"),
                         QByteArray("64000")}})
            addChip(source, chip,
                    {{QStringLiteral("name"), "coretemp"},
                     {QStringLiteral("temp1_input"), input},
                     {QStringLiteral("temp1_label"), package}});
        const QList<TemperatureReading> readings = Temperatures::read(source);
        QCOMPARE(labelsOf(readings), QStringList{QStringLiteral("CPU")});
        QCOMPARE(readings[0].celsius, 64.0);
    }

    void coretempWithoutPackageShowsItsHottestCore() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "coretemp"},
                 {QStringLiteral("temp2_input"), "41000"},
                 {QStringLiteral("temp2_label"), "Core 0"},
                 {QStringLiteral("temp3_input"), "47000"},
                 {QStringLiteral("temp3_label"), "Core 1"}});
        QCOMPARE(Temperatures::read(source).value(0).celsius, 47.0);
    }

    void nouveauAndI915GraphicsAreNumbered() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "nouveau"}, {QStringLiteral("temp1_input"), "39000"}});
        addChip(source, QStringLiteral("hwmon1"),
                {{QStringLiteral("name"), "i915"}, {QStringLiteral("temp1_input"), "45000"}});
        QCOMPARE(labelsOf(Temperatures::read(source)),
                 (QStringList{QStringLiteral("GPU 1"), QStringLiteral("GPU 2")}));
    }

    void nameBesideTheDeviceCountsToo() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"), {{QStringLiteral("temp1_input"), "39000"}});
        source.setFile(QStringLiteral("/sys/class/hwmon/hwmon0/device/name"), "nouveau\n");
        QCOMPARE(labelsOf(Temperatures::read(source)), QStringList{QStringLiteral("GPU")});
    }

    void unreadableInputIsLeftOut() {
        FakeSystemSource source;
        // The drive is asleep: its driver fails the read.
        source.setDirectory(QStringLiteral("/sys/class/hwmon/hwmon0"));
        source.setFile(QStringLiteral("/sys/class/hwmon/hwmon0/name"), "nvme\n");
        source.setDirectory(QStringLiteral("/sys/class/hwmon/hwmon0/temp1_input"));
        addChip(source, QStringLiteral("hwmon1"),
                {{QStringLiteral("name"), "amdgpu"}, {QStringLiteral("temp1_input"), "garbage"}});
        QVERIFY(Temperatures::fromChips(readHwmonChips(source, HwmonParts{true, false})).isEmpty());
    }

    void thermalZonesStandInWithoutRecognisedChips() {
        FakeSystemSource source;
        const QString zone0 = QStringLiteral("/sys/class/thermal/thermal_zone0");
        const QString zone1 = QStringLiteral("/sys/class/thermal/thermal_zone1");
        const QString zone2 = QStringLiteral("/sys/class/thermal/thermal_zone2");
        for (const QString& zone : {zone0, zone1, zone2})
            source.setDirectory(zone);
        source.setFile(zone0 + QStringLiteral("/type"), "acpitz\n");
        source.setFile(zone0 + QStringLiteral("/temp"), "27800\n");
        source.setFile(zone1 + QStringLiteral("/type"), "x86_pkg_temp\n");
        source.setFile(zone1 + QStringLiteral("/temp"), "55000\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_0_type"), "passive\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_0_temp"), "70000\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_1_type"), "hot\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_1_temp"), "90000\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_2_type"), "critical\n");
        source.setFile(zone1 + QStringLiteral("/trip_point_2_temp"), "105000\n");
        // A zone whose driver has no reading.
        source.setFile(zone2 + QStringLiteral("/type"), "INT3400 Thermal\n");
        // A chip of no recognised part does not count.
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "acpitz"}, {QStringLiteral("temp1_input"), "27800"}});
        const QList<TemperatureReading> expected{
            {QStringLiteral("CPU"), 55.0, 90.0, 105.0},
            {QStringLiteral("acpitz"), 27.8, std::nullopt, std::nullopt},
        };
        QCOMPARE(Temperatures::read(source), expected);
    }

    void laptopFansAreNamedByLabelOrNumber() {
        const auto source = machine("intel-laptop");
        const QList<FanReading> expected{
            {QStringLiteral("Processor Fan"), 2450, 4900},
            {QStringLiteral("Fan 1"), 2100, 4900},
        };
        QCOMPARE(Fans::read(*source), expected);
    }

    void desktopLeavesEmptyHeadersOut() {
        const auto source = machine("amd-desktop");
        const QList<FanReading> expected{
            {QStringLiteral("GPU Fan"), 1250, 3300},
            {QStringLiteral("Fan 1"), 1093, std::nullopt},
        };
        QCOMPARE(Fans::read(*source), expected);
    }

    void labelledStoppedFanIsShown() {
        FakeSystemSource source;
        addChip(source, QStringLiteral("hwmon0"),
                {{QStringLiteral("name"), "dell_smm"},
                 {QStringLiteral("fan1_input"), "0"},
                 {QStringLiteral("fan1_label"), "Video Fan"}});
        QCOMPARE(Fans::read(source),
                 (QList<FanReading>{{QStringLiteral("Video Fan"), 0, std::nullopt}}));
    }

    void laptopBatteriesAreSummed() {
        const auto source = machine("intel-laptop");
        const auto battery = Batteries::read(*source);
        QVERIFY(battery);
        // 30 + 10 of 50 + 20 Wh, at 10 W: four hours left. One battery at work and the other
        // idle is discharging.
        QCOMPARE(battery->fraction, 40.0 / 70.0);
        QCOMPARE(battery->state, BatteryReading::State::Discharging);
        QCOMPARE(battery->secondsToEmpty, std::optional<double>(4 * 3600.0));
        QVERIFY(!battery->secondsToFull);
        QVERIFY(!battery->onExternalPower);
    }

    void deviceBatteryIsNotTheMachines() {
        const auto source = machine("amd-desktop");
        QVERIFY(!Batteries::read(*source));
    }

    void chargingBatteryByChargeAndCurrent() {
        FakeSystemSource source;
        addSupply(source, QStringLiteral("ADP1"),
                  {{QStringLiteral("type"), "Mains"}, {QStringLiteral("online"), "1"}});
        addSupply(source, QStringLiteral("BAT0"),
                  {{QStringLiteral("type"), "Battery"},
                   {QStringLiteral("status"), "Charging"},
                   {QStringLiteral("charge_now"), "3000000"},
                   {QStringLiteral("charge_full"), "4000000"},
                   // Some drivers sign the current.
                   {QStringLiteral("current_now"), "-2000000"}});
        const auto battery = Batteries::read(source);
        QVERIFY(battery);
        QCOMPARE(battery->fraction, 0.75);
        QCOMPARE(battery->state, BatteryReading::State::Charging);
        QCOMPARE(battery->secondsToFull, std::optional<double>(1800.0));
        QVERIFY(battery->onExternalPower);
    }

    void batteryWithOnlyAPercentage() {
        FakeSystemSource source;
        addSupply(source, QStringLiteral("BAT0"),
                  {{QStringLiteral("type"), "Battery"},
                   {QStringLiteral("status"), "Full"},
                   {QStringLiteral("capacity"), "100"}});
        addSupply(source, QStringLiteral("usb-charger"),
                  {{QStringLiteral("type"), "USB"}, {QStringLiteral("online"), "1"}});
        const auto battery = Batteries::read(source);
        QVERIFY(battery);
        QCOMPARE(battery->fraction, 1.0);
        QCOMPARE(battery->state, BatteryReading::State::Full);
        QVERIFY(!battery->secondsToEmpty && !battery->secondsToFull);
        QVERIFY(battery->onExternalPower);
    }

    void absentBatteryIsNone() {
        FakeSystemSource source;
        addSupply(source, QStringLiteral("BAT1"),
                  {{QStringLiteral("type"), "Battery"}, {QStringLiteral("present"), "0"}});
        QVERIFY(!Batteries::read(source));
    }
};

QTEST_GUILESS_MAIN(SensorReadingsTest)
#include "tst_sensorreadings.moc"
