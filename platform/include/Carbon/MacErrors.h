#pragma once

// The result codes that functions of the platform give, by their names.

enum {
    noErr = 0,
    dskFulErr = -34,             // no room, or over quota
    nsvErr = -35,                // no such volume
    ioErr = -36,                 // a failure of the device, or one without a code of its own
    bdNamErr = -37,              // no name that a file can have
    eofErr = -39,                // the end of a fork came before that of what was to be read
    posErr = -40,                // a position before the start of a fork
    tmfoErr = -42,               // too many open files
    fnfErr = -43,                // not found
    wPrErr = -44,                // a read-only file system
    fLckdErr = -45,              // an immutable file
    fBsyErr = -47,               // in use
    dupFNErr = -48,              // exists already
    opWrErr = -49,               // open for writing elsewhere
    paramErr = -50,              // an argument that makes no sense
    rfNumErr = -51,              // not an open fork
    volOffLinErr = -53,          // the file system's server does not answer
    permErr = -54,               // not permitted
    memFullErr = -108,           // no memory
    dirNFErr = -120,             // a folder on the way is missing, or is none
    userCanceledErr = -128,      // the check-in function said stop
    CantDecompress = -186,       // a resource in a compressed form
    inputOutOfBounds = -190,     // a place behind the end of a resource
    resNotFound = -192,          // no such resource, or no handle of one
    resFNotFound = -193,         // not an open resource file
    mapReadErr = -199,           // a resource fork without a map that makes sense
    noHardwareErr = -200,        // no sound hardware
    procNotFound = -600,         // no such process
    appIsDaemon = -606,          // a process that has no window
    icPrefNotFoundErr = -666,    // no such Internet setting
    icPrefDataErr = -668,        // an Internet setting that is shorter than its layout
    icTruncatedErr = -670,       // an Internet setting that the buffer has no room for
    fileBoundsErr = -1309,       // a file to be read as a whole, of more than 256 MiB, or 4 MiB of settings
    notAFileErr = -1302,         // a folder where a file is needed
    errFSBadFSRef = -1401,       // a reference that is stale, or that was never made
    errFSBadForkName = -1402,    // no name that a fork can have
    errFSBadBuffer = -1403,      // no buffer to read to
    errFSBadInfoBitmap = -1405,  // a bit of the information mask that means nothing
    errFSNotAFolder = -1407,
    errFSForkNotFound = -1409,  // the file has no fork of that name
    errFSNameTooLong = -1410,
    errFSMissingName = -1411,
    errFSBadPosMode = -1412,    // a way to give a position that means nothing
    errFSNoMoreItems = -1417,   // behind the last item of a folder
    errFSBadItemCount = -1418,  // a number of items below 1
    errFSRefsDifferent = -1420,
    errFSIteratorNotFound = -1423,    // not an open iterator
    badFolderDescErr = -4270,         // mistakes in the administrator's table of special folders
    afpAccessDenied = -5000,          // no permission on the way, or to read
    gestaltUnknownErr = -5550,        // an answer that may not be read, or makes no sense
    gestaltUndefSelectorErr = -5551,  // a selector that has no answer here
    scsiLUNInvalid = -7867,           // a unit other than 0
    scsiBusInvalid = -7869,           // no such SCSI bus
    scsiRequestInvalid = -7870,       // a command that is not carried out here, or one without a buffer
    scsiFunctionNotAvailable = -7871,
    scsiPBLengthError = -7872,      // a request of another length than its block
    scsiUnexpectedBusFree = -7917,  // the device left the bus before the end
    scsiCommandTimeout = -7925,
    scsiSelectTimeout = -7926,   // no such SCSI device, or one that does not answer
    scsiNonZeroStatus = -7932,   // a SCSI device refuses a command
    scsiRequestAborted = -7934,  // a transfer failed
    kLSApplicationNotFoundErr = -10814
};
