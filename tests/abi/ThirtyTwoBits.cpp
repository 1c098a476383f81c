// The sizes that the contract between the host and an inspector library gives are those of a 32-bit machine.
// This file is only compiled, for such a machine, and fails to compile where a size is another.

#include <cstddef>

#include "Evaluator/Context.h"
#include "Evaluator/Fingerprint.h"
#include "Evaluator/Values.h"
#include "filesystem/Attributes.h"
#include "frame/Adapters.h"
#include "frame/SharingPtr.h"
#include "plist/Arrays.h"
#include "plist/Bundles.h"
#include "plist/DictionaryEntries.h"
#include "plist/Preferences.h"
#include "system/Components.h"
#include "system/IPAddresses.h"
#include "system/InternetConfig.h"
#include "system/Processes.h"
#include "system/ScsiBuses.h"
#include "system/ScsiDevices.h"
#include "system/SoundVolumes.h"
#include "system/SpecialItems.h"
#include "system/TimeAndDate.h"
#include "system/Usb.h"
#include "system/Volumes.h"

static_assert(sizeof(void*) == 4 && sizeof(unsigned long) == 4);

// Values as they lie between host and library.

static_assert(sizeof(inspector_string) == 8 && sizeof(ConstData) == 8 && sizeof(Data) == 8);
static_assert(sizeof(integer) == 8 && sizeof(boolean) == 4);
static_assert(sizeof(moment) == 8 && sizeof(time_interval) == 8);
static_assert(offsetof(inspector_string, bytes) == 0 && offsetof(inspector_string, length) == 4);
static_assert(sizeof(InspectorYieldContext) == 8);
static_assert(offsetof(InspectorYieldContext, yieldTimeSlice) == 0 &&
              offsetof(InspectorYieldContext, trickle) == 4);
static_assert(sizeof(thetime) == 3 && sizeof(date) == 12);
static_assert(offsetof(thetime, hour) == 0 && offsetof(thetime, minute) == 1 &&
              offsetof(thetime, second) == 2);
static_assert(offsetof(DateRecord, day) == 0 && offsetof(DateRecord, month) == 4 &&
              offsetof(DateRecord, year) == 8);

static_assert(sizeof(datafork) == 4 && sizeof(resfork) == 4);
static_assert(sizeof(ComponentClass) == 4 && sizeof(ComponentIterator) == 4);
static_assert(sizeof(VolumeIterator) == 2);
static_assert(sizeof(sound_volume) == 4 && sizeof(stereo_volume) == 8);
static_assert(offsetof(stereo_volume, left) == 0 && offsetof(stereo_volume, right) == 4);
static_assert(sizeof(Process) == 8 && sizeof(carbon_process) == 64 && sizeof(ProcessLoop) == 12);
static_assert(sizeof(carbon_process_iterator) == 12 && sizeof(running_app_iterator) == 12);

// Special folders, and the items in them.
static_assert(sizeof(domain) == 2 && sizeof(EnableableFile) == sizeof(file) + 4);
static_assert(sizeof(NamedSpecialItemIterator<kExtensions, kDisabledExtensions>) == 4);

// Internet settings: rows of services, and where the iterations are.
static_assert(sizeof(InternetConfig) == 1 && sizeof(ICService) == 12 && sizeof(ip_address) == 4);
static_assert(offsetof(ICService, port) == 8 && offsetof(ICService, flags) == 10);
static_assert(sizeof(ArchieIterator) == 12 && sizeof(ICServiceIterator) == 16);

// SCSI and USB.
static_assert(sizeof(scsibus) == 172 && sizeof(scsiDevice) == 272 && sizeof(usb) == 4);
static_assert(offsetof(scsiDevice, target) == 256 && offsetof(scsiDevice, bus) == 264);
static_assert(sizeof(SCSIBusIterator) == 2 && sizeof(SCSIDeviceIterator1) == 2);
static_assert(sizeof(SCSIDeviceIterator2) == 4);

// Property lists: a reference, and the two neighbours of a ring.
static_assert(sizeof(OSXValue) == 12 && sizeof(OSXArray) == 12 && sizeof(OSXDictionary) == 4);
static_assert(sizeof(OSXDictionaryEntry) == 16 && sizeof(Preferences) == 12 && sizeof(Bundle) == 12);
static_assert(sizeof(OSXArrayIterator) == 8);
static_assert(sizeof(OSXDictionaryKeyIterator) == 12 && sizeof(OSXDictionaryEntryIterator) == 16);

// A platform failure: the class's virtual functions and the 32-bit code.
static_assert(sizeof(OSError) == 8 && sizeof(MemoryFullError) == 8);

// Shared ownership: two neighbours; the object and a link.

static_assert(sizeof(SharingLink) == 8);
static_assert(sizeof(SharingPtr<int>) == 12);

// Records: the host's area and behind it the fields of this side.

constexpr unsigned long function = 4;
constexpr unsigned long memberFunction = 8;

struct Iterator {
    integer First(Of, date const&);
    integer First();
    integer First(date const&);
};

static_assert(sizeof(TypeRecord<date>) == 512);
static_assert(sizeof(CacheRecord) == 64);
static_assert(sizeof(Property<date, integer>) == 128 + function);
static_assert(sizeof(NamedProperty<date, integer>) == 128 + function);
static_assert(sizeof(NumberedProperty<date, integer>) == 128 + function);
static_assert(sizeof(GlobalProperty<date>) == 128 + function);
static_assert(sizeof(NamedGlobalProperty<date>) == 128 + function);
static_assert(sizeof(NumberedGlobalProperty<date>) == 128 + function);
static_assert(sizeof(PropertyOfObject<integer, date>) == 128 + function);
static_assert(sizeof(PropertyByIndexOfObject<integer, integer, date>) == 128 + function);
static_assert(sizeof(PropertyOfWorld<date>) == 128 + function);
static_assert(sizeof(PropertyByIndexOfWorld<date, integer>) == 128 + function);
static_assert(sizeof(IteratedProperty<Iterator, date, integer>) == 128);
static_assert(sizeof(IteratedGlobalProperty<Iterator, integer>) == 128);
static_assert(sizeof(IteratedNamedGlobalProperty<Iterator, integer>) == 128);
static_assert(sizeof(IteratedPropertyOfObject<Iterator, integer, date>) == 128 + 2 * memberFunction);
static_assert(sizeof(IteratedPropertyByIndexOfObject<Iterator, integer, integer, date>) ==
              128 + 2 * memberFunction);
static_assert(sizeof(IteratedPropertyOfWorld<Iterator, integer>) == 128 + 2 * memberFunction);
static_assert(sizeof(IteratedPropertyByIndexOfWorld<Iterator, integer, date>) == 128 + 2 * memberFunction);
static_assert(sizeof(Cast<date, integer>) == 128 + function);
static_assert(sizeof(Operator2<date, date, boolean>) == 128 + function);
static_assert(sizeof(RelationEqual<date, date>) == 128 + function);
