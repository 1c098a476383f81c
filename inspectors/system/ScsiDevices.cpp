#include "system/ScsiDevices.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <optional>
#include <string_view>

#include "Evaluator/Exceptions.h"

namespace {

constexpr unsigned long long kHighestNumber = std::numeric_limits<UInt8>::max();  // that a request holds
constexpr std::uint16_t kTargets = 8;                                             // of an iterated bus

// ---- Asking

// Asks a device for its INQUIRY data.
OSErr Inquire(UInt8 bus, UInt8 target, unsigned char (&data)[256]) {
    SCSIExecIOPB request{};
    request.scsiPBLength = sizeof request;
    request.scsiFunctionCode = SCSIExecIO;
    request.scsiDevice = {0, bus, target, 0};
    request.scsiFlags = scsiDirectionIn | scsiDisableAutosense | scsiSIMQNoFreeze;
    request.scsiDataPtr = data;
    request.scsiDataLength = sizeof data;
    request.scsiCDBLength = 6;
    request.scsiCDB[0] = 0x12;  // INQUIRY
    request.scsiCDB[4] = 255;   // bytes at most
    request.scsiTimeout = 600;
    request.scsiSelectTimeout = 250;
    return SCSIAction(reinterpret_cast<SCSI_PB*>(&request));
}

// ---- The devices that were asked for last

class DeviceCache {
  public:
    scsiDevice Get(unsigned long long bus, unsigned long long target) {
        auto const end = slots.begin() + static_cast<std::ptrdiff_t>(full);
        auto const found = std::find_if(slots.begin(), end, [&](std::optional<scsiDevice> const& slot) {
            return slot->bus == bus && slot->target == target;
        });
        if (found != end) return **found;
        scsiDevice const device(bus, target);
        slots[next] = device;
        ++next;
        full = std::max(full, next);
        next %= slots.size();
        return device;
    }

    void Clear() { full = next = 0; }

  private:
    std::array<std::optional<scsiDevice>, 8> slots;
    std::size_t full = 0;  // slots that hold a device
    std::size_t next = 0;
};

constinit DeviceCache cache;

// ---- One after the other

// The first device from a target on, which counts up; empty behind the last target.
std::optional<scsiDevice> NextDevice(std::uint16_t bus, std::uint16_t& target) {
    while (target < kTargets) {
        ++target;
        try {
            return scsiDevice(bus, target - 1u);
        } catch (NoSuchObject const&) {
            // The next one may be there.
        }
    }
    return std::nullopt;
}

}  // namespace

scsiDevice::scsiDevice(unsigned long long itsBus, unsigned long long itsTarget)
    : target(itsTarget), bus(itsBus) {
    if (bus > kHighestNumber || target > kHighestNumber) throw NoSuchObject();
    OSErr const error = Inquire(static_cast<UInt8>(bus), static_cast<UInt8>(target), inquiry);
    bool const isShort = error == scsiUnexpectedBusFree;
    if (error != noErr && !isShort) throw NoSuchObject();
}

scsiDevice scsi_device_of(unsigned long long target) { return cache.Get(0, target); }
scsiDevice scsi_device_of(unsigned long long target, scsibus const& bus) {
    return cache.Get(bus.Number(), target);
}

void ClearscsiDevCache(void*) { cache.Clear(); }

// What a device says of itself

inspector_string vendor_of(scsiDevice const& device) { return {device.inquiry + 8, 8}; }
inspector_string product_of(scsiDevice const& device) { return {device.inquiry + 16, 16}; }
inspector_string revision_of(scsiDevice const& device) { return {device.inquiry + 32, 4}; }

inspector_string type_of(scsiDevice const& device) {
    // The last one is an optical memory.
    static constexpr std::string_view names[] = {"DISK", "TAPE",  "PRINTER", "CPU",
                                                 "WORM", "CDROM", "SCAN",    "DISK"};
    std::size_t const type = device.inquiry[0] & 0x1F;
    std::string_view const name = type < std::size(names) ? names[type] : "UNKNOWN";
    return {reinterpret_cast<unsigned char const*>(name.data()), static_cast<std::uint32_t>(name.size())};
}

// The devices one after the other

scsiDevice SCSIDeviceIterator1::First(scsibus const& bus) {
    next = 0;
    return Next(bus);
}

scsiDevice SCSIDeviceIterator1::Next(scsibus const& bus) {
    if (auto const device = NextDevice(bus.Number(), next)) return *device;
    throw NoSuchObject();
}

scsiDevice SCSIDeviceIterator2::First() {
    buses.First();
    next = 0;
    return Next();
}

scsiDevice SCSIDeviceIterator2::Next() {
    for (;;) {
        if (auto const device = NextDevice(buses.Current(), next)) return *device;
        next = 0;
        buses.Next();
    }
}
