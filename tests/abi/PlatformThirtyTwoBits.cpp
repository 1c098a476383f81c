// The sizes and offsets of the platform's records on a 32-bit machine, which are those on every machine: they
// are packed to two bytes. This file is only compiled.

#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>

static_assert(sizeof(void*) == 4);
static_assert(sizeof(FSRef) == 80);
static_assert(sizeof(HFSUniStr255) == 512);
static_assert(sizeof(UTCDateTime) == 8);
static_assert(sizeof(FSSpec) == 70 && offsetof(FSSpec, parID) == 2 && offsetof(FSSpec, name) == 6);
static_assert(sizeof(FSPermissionInfo) == 16);
static_assert(sizeof(ProcessSerialNumber) == 8 && sizeof(ProcessInfoRec) == 60);
static_assert(offsetof(ProcessInfoRec, processLauncher) == 40 &&
              offsetof(ProcessInfoRec, processAppSpec) == 56);
static_assert(sizeof(ComponentDescription) == 20 && offsetof(ComponentDescription, componentFlags) == 12);
static_assert(sizeof(Component) == 4 && sizeof(ComponentInstance) == 4 && sizeof(Size) == 4);
static_assert(sizeof(FSCatalogInfo) == 144);
static_assert(sizeof(CFStringRef) == 4 && sizeof(CFIndex) == 4);

// The requests of SCSI hold pointers: they are larger on machines of 64 bits.
static_assert(sizeof(DeviceIdent) == 4 && offsetof(DeviceIdent, bus) == 1);
static_assert(offsetof(DeviceIdent, targetID) == 2 && offsetof(DeviceIdent, LUN) == 3);
static_assert(sizeof(SCSI_PB) == 36 && offsetof(SCSI_PB, scsiPBLength) == 6);
static_assert(offsetof(SCSI_PB, scsiFunctionCode) == 8 && offsetof(SCSI_PB, scsiResult) == 10);
static_assert(offsetof(SCSI_PB, scsiDevice) == 12 && offsetof(SCSI_PB, scsiCompletion) == 16);
static_assert(offsetof(SCSI_PB, scsiFlags) == 20 && offsetof(SCSI_PB, scsiDriverStorage) == 24);
static_assert(offsetof(SCSI_PB, scsiXPTprivate) == 28 && offsetof(SCSI_PB, scsiReserved3) == 32);

static_assert(sizeof(SCSIBusInquiryPB) == 172 && offsetof(SCSIBusInquiryPB, scsiEngineCount) == 36);
static_assert(offsetof(SCSIBusInquiryPB, scsiMaxTransferType) == 38);
static_assert(offsetof(SCSIBusInquiryPB, scsiDataTypes) == 40);
static_assert(offsetof(SCSIBusInquiryPB, scsiIOpbSize) == 44);
static_assert(offsetof(SCSIBusInquiryPB, scsiMaxIOpbSize) == 46);
static_assert(offsetof(SCSIBusInquiryPB, scsiFeatureFlags) == 48);
static_assert(offsetof(SCSIBusInquiryPB, scsiVersionNumber) == 52);
static_assert(offsetof(SCSIBusInquiryPB, scsiHBAInquiry) == 53);
static_assert(offsetof(SCSIBusInquiryPB, scsiTargetModeFlags) == 54);
static_assert(offsetof(SCSIBusInquiryPB, scsiScanFlags) == 55);
static_assert(offsetof(SCSIBusInquiryPB, scsiSIMPrivatesPtr) == 56);
static_assert(offsetof(SCSIBusInquiryPB, scsiSIMPrivatesSize) == 60);
static_assert(offsetof(SCSIBusInquiryPB, scsiAsyncFlags) == 64);
static_assert(offsetof(SCSIBusInquiryPB, scsiHiBusID) == 68);
static_assert(offsetof(SCSIBusInquiryPB, scsiInitiatorID) == 69);
static_assert(offsetof(SCSIBusInquiryPB, scsiFlagsSupported) == 76);
static_assert(offsetof(SCSIBusInquiryPB, scsiIOFlagsSupported) == 80);
static_assert(offsetof(SCSIBusInquiryPB, scsiWeirdStuff) == 82);
static_assert(offsetof(SCSIBusInquiryPB, scsiMaxTarget) == 84);
static_assert(offsetof(SCSIBusInquiryPB, scsiMaxLUN) == 86);
static_assert(offsetof(SCSIBusInquiryPB, scsiSIMVendor) == 88);
static_assert(offsetof(SCSIBusInquiryPB, scsiHBAVendor) == 104);
static_assert(offsetof(SCSIBusInquiryPB, scsiControllerFamily) == 120);
static_assert(offsetof(SCSIBusInquiryPB, scsiControllerType) == 136);
static_assert(offsetof(SCSIBusInquiryPB, scsiXPTversion) == 152);
static_assert(offsetof(SCSIBusInquiryPB, scsiSIMversion) == 156);
static_assert(offsetof(SCSIBusInquiryPB, scsiHBAversion) == 160);
static_assert(offsetof(SCSIBusInquiryPB, scsiHBAslotType) == 164);
static_assert(offsetof(SCSIBusInquiryPB, scsiHBAslotNumber) == 165);
static_assert(offsetof(SCSIBusInquiryPB, scsiSIMsRsrcID) == 166);
static_assert(offsetof(SCSIBusInquiryPB, scsiAdditionalLength) == 170);

static_assert(sizeof(SCSIExecIOPB) == 276 && offsetof(SCSIExecIOPB, scsiResultFlags) == 36);
static_assert(offsetof(SCSIExecIOPB, scsiDataPtr) == 40 && offsetof(SCSIExecIOPB, scsiDataLength) == 44);
static_assert(offsetof(SCSIExecIOPB, scsiSensePtr) == 48 && offsetof(SCSIExecIOPB, scsiSenseLength) == 52);
static_assert(offsetof(SCSIExecIOPB, scsiCDBLength) == 53);
static_assert(offsetof(SCSIExecIOPB, scsiSGListCount) == 54);
static_assert(offsetof(SCSIExecIOPB, scsiSCSIstatus) == 60);
static_assert(offsetof(SCSIExecIOPB, scsiSenseResidual) == 61);
static_assert(offsetof(SCSIExecIOPB, scsiDataResidual) == 64 && offsetof(SCSIExecIOPB, scsiCDB) == 68);
static_assert(offsetof(SCSIExecIOPB, scsiTimeout) == 84 && offsetof(SCSIExecIOPB, scsiIOFlags) == 94);
static_assert(offsetof(SCSIExecIOPB, scsiSelectTimeout) == 100);
static_assert(offsetof(SCSIExecIOPB, scsiDataType) == 102);
static_assert(offsetof(SCSIExecIOPB, scsiTransferType) == 103);
static_assert(offsetof(SCSIExecIOPB, scsiSIMprivates) == 176);
