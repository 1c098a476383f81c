#pragma once

// SCSI Manager: the SCSI buses of the machine, and the INQUIRY data of the devices on them.
//
// A bus is a channel of a host of Linux: /sys/class/scsi_host/hostN has the hosts, and the names H:C:T:L in
// /sys/class/scsi_device the channels C with devices. A host without a device has channel 0. The buses are
// numbered from 0 in the order of their hosts and then channels, anew at each call. Where a bus or a device
// has a number above 255 it cannot be named here, and so does not exist.
//
// ATA and SATA disks, and USB storage, are behind SCSI hosts on Linux; NVMe disks are not.
//
// All is read below the folder of ZELQ_MACHINE_ROOT, or below the root. Nothing is ever written to a device.

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

#pragma pack(push, 2)

/// A device: a unit of a target of a bus. Only unit 0 can be asked.
typedef struct DeviceIdent {
    UInt8 diReserved;
    UInt8 bus;
    UInt8 targetID;
    UInt8 LUN;
} DeviceIdent;

/// What every request begins with. Whoever asks fills its length (that of the whole block), the function and
/// the device or its bus; fields that are not meant are 0. The result is what SCSIAction returned last. No
/// request goes on after the call, so the completion is null.
#define SCSIPBHdr                          \
    struct SCSI_PB* scsiLink;              \
    SInt16 scsiReserved1;                  \
    UInt16 scsiPBLength;                   \
    UInt8 scsiFunctionCode;                \
    UInt8 scsiReserved2;                   \
    OSErr scsiResult;                      \
    DeviceIdent scsiDevice;                \
    void (*scsiCompletion)(void* request); \
    UInt32 scsiFlags;                      \
    UInt8* scsiDriverStorage;              \
    Ptr scsiXPTprivate;                    \
    SInt32 scsiReserved3

typedef struct SCSI_PB {
    SCSIPBHdr;
} SCSI_PB;

/// A bus. Texts are padded with blanks; what Linux does not tell is 0, or a blank text.
typedef struct SCSIBusInquiryPB {
    SCSIPBHdr;
    UInt16 scsiEngineCount;
    UInt16 scsiMaxTransferType;  // 1: there is one kind of transfer
    UInt32 scsiDataTypes;        // bits: 1, a buffer
    UInt16 scsiIOpbSize;         // bytes of a SCSIExecIOPB
    UInt16 scsiMaxIOpbSize;      // the same
    UInt32 scsiFeatureFlags;     // of parallel SCSI; 0 for other buses
    UInt8 scsiVersionNumber;     // 43: that of this interface
    UInt8 scsiHBAInquiry;        // of parallel SCSI; 0 for other buses
    UInt8 scsiTargetModeFlags;
    UInt8 scsiScanFlags;
    Ptr scsiSIMPrivatesPtr;  // null
    UInt32 scsiSIMPrivatesSize;
    UInt32 scsiAsyncFlags;
    UInt8 scsiHiBusID;      // number of the last bus
    UInt8 scsiInitiatorID;  // the host's own id on parallel SCSI
    UInt16 scsiBIReserved0;
    UInt32 scsiBIReserved1;
    UInt32 scsiFlagsSupported;  // what scsiFlags of a SCSIExecIOPB may have
    UInt16 scsiIOFlagsSupported;
    UInt16 scsiWeirdStuff;
    UInt16 scsiMaxTarget;     // the highest id on parallel SCSI; on other buses that of the last device
    UInt16 scsiMaxLUN;        // 0
    SInt8 scsiSIMVendor[16];  // the host's driver, such as "ahci"
    SInt8 scsiHBAVendor[16];
    SInt8 scsiControllerFamily[16];
    SInt8 scsiControllerType[16];
    UInt8 scsiXPTversion[4];
    UInt8 scsiSIMversion[4];
    UInt8 scsiHBAversion[4];
    UInt8 scsiHBAslotType;
    UInt8 scsiHBAslotNumber;
    UInt16 scsiSIMsRsrcID;
    UInt16 scsiBIReserved3;
    UInt16 scsiAdditionalLength;
} SCSIBusInquiryPB;

/// A command for a device, and what came of it.
typedef struct SCSIExecIOPB {
    SCSIPBHdr;
    UInt16 scsiResultFlags;
    UInt16 scsiReserved4;
    UInt8* scsiDataPtr;
    UInt32 scsiDataLength;
    UInt8* scsiSensePtr;
    UInt8 scsiSenseLength;
    UInt8 scsiCDBLength;
    UInt16 scsiSGListCount;
    UInt32 scsiReserved5;
    UInt8 scsiSCSIstatus;  // of the device, where it is not 0
    SInt8 scsiSenseResidual;
    UInt16 scsiReserved6;
    SInt32 scsiDataResidual;  // bytes of the data's length that were not transferred
    UInt8 scsiCDB[16];        // the command
    SInt32 scsiTimeout;       // ms; negative: µs; 0: five seconds
    UInt8* scsiReserved7;
    UInt16 scsiReserved8;
    UInt16 scsiIOFlags;
    UInt8 scsiTagAction;
    UInt8 scsiReserved9;
    UInt16 scsiReserved10;
    UInt16 scsiSelectTimeout;  // ms; without a meaning on Linux
    UInt8 scsiDataType;
    UInt8 scsiTransferType;
    UInt32 scsiReserved11[2];
    UInt16 scsiHandshake[8];
    UInt32 scsiReserved12[2];
    struct SCSIExecIOPB* scsiCommandLink;
    UInt8 scsiSIMpublics[8];
    UInt8 scsiReserved13[8];
    UInt16 scsiCurrentPhase;
    SInt16 scsiSelector;
    OSErr scsiOldCallResult;
    UInt8 scsiSCSIMessage;
    UInt8 scsiXPTprivateFlags;
    UInt8 scsiXPTextras[12];
    UInt8 scsiSIMprivates[100];  // room for whoever carries the request out
} SCSIExecIOPB;

#pragma pack(pop)

/// Function codes.
enum { SCSIExecIO = 1, SCSIBusInquiry = 3 };

/// scsiFlags: the direction of the data, no sense data on errors, no stop of the queue on errors. The last
/// two ask for nothing that would be done here.
#define scsiDirectionMask 0xC0000000u
#define scsiDirectionIn 0x40000000u
#define scsiDisableAutosense 0x20000000u
#define scsiSIMQNoFreeze 0x00040000u

/// scsiDataType.
enum { scsiDataBuffer = 0 };

/// scsiFeatureFlags: those that Linux tells. A bus that is faster than another has the flags of both.
enum {
    scsiBusFastSCSI = 0x2,       // a target with transfers of 100 ns at most
    scsiBusDifferential = 0x4,   // high voltage
    scsiBusUltraSCSI = 0x8,      // 50 ns
    scsiBusUltra2SCSI = 0x100,   // 25 ns
    scsiBusUltra3SCSI = 0x200,   // 12.5 ns
    scsiBusLVD = 0x400,          // low voltage differential
    scsiBusUltra320SCSI = 0x800  // 6.25 ns
};

/// scsiHBAInquiry: those that Linux tells.
enum {
    scsiBusSDTR = 0x10,    // a target with synchronous transfers
    scsiBusWide16 = 0x20,  // the host, or a target, has 16 bits
    scsiBusWide32 = 0x40
};

/// Carries a request out, stores the result in it and returns it. paramErr without a request; memFullErr;
/// userCanceledErr when the check-in function says stop, also while a device is waited for.
///
/// scsiPBLengthError when its length is not that of the block; scsiFunctionNotAvailable for a function that
/// is none of the two; scsiBusInvalid for a bus that does not exist. Where the machine lacks something, what
/// the file system says: tmfoErr without a free descriptor.
///
/// SCSIBusInquiry fills the fields behind the header with what is known of the bus.
///
/// SCSIExecIO carries out one command only, INQUIRY of six bytes without a page: its data is what the kernel
/// keeps of the device's answer. Where the kernel keeps none the device is asked, where its file in /dev may
/// be opened; else the data is made of its type, vendor, model and revision as the kernel shows them. At most
/// as many bytes are written as the command allows and the buffer has; that there are fewer is no error, and
/// the residual tells it. scsiRequestInvalid for any other command, a completion, flags other than
/// those above, or a missing buffer; scsiLUNInvalid for a unit other than 0; scsiSelectTimeout for a target
/// that does not exist or does not answer; scsiCommandTimeout; scsiNonZeroStatus when the device refuses;
/// scsiRequestAborted for any other failure of the transport.
PLATFORM_API OSErr SCSIAction(SCSI_PB* request);

#ifdef __cplusplus
static_assert(sizeof(DeviceIdent) == 4);
#endif
