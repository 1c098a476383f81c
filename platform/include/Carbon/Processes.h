#pragma once

// Processes of the current user, as /proc (below the folder of ZELQ_MACHINE_ROOT) shows them.
//
// A process counts when its real user is that of this process and its executable file can be told, also when
// that file is gone. So kernel threads, zombies, threads that are no processes of their own, and programs
// whose secrets the kernel guards do not. Process ids are those of the namespace that /proc was mounted in.
//
// Calls answer, too, what the file system says where the machine lacks something: tmfoErr without a free
// descriptor.

#include <Carbon/Files.h>
#include <sys/types.h>

#pragma pack(push, 2)

/// What a process is known by as long as the machine is up, also after its end: a process that gets the same
/// process id later has another number. 0, 0 is no process; 0, 2 this one.
typedef struct ProcessSerialNumber {
    UInt32 highLongOfPSN;
    UInt32 lowLongOfPSN;
} ProcessSerialNumber;
typedef ProcessSerialNumber* ProcessSerialNumberPtr;

/// Whoever asks fills the first two fields and the last one. Ticks are 1/60 s; numbers that 32 bits do not
/// hold are the largest ones.
typedef struct ProcessInfoRec {
    UInt32 processInfoLength;  // sizeof(ProcessInfoRec)
    UInt8* processName;        // room for a Str31, or null: gets the name of the executable file
    ProcessSerialNumber processNumber;
    UInt32 processType;                   // 'APPL'
    OSType processSignature;              // '????': executables have no creator code here
    UInt32 processMode;                   // 0: none of the bits is known
    Ptr processLocation;                  // null
    UInt32 processSize;                   // bytes of its address space
    UInt32 processFreeMem;                // 0: not known
    ProcessSerialNumber processLauncher;  // its parent, whoever's it is; 0, 0 when there is none
    UInt32 processLaunchDate;             // ticks from the start of the machine to that of the process
    UInt32 processActiveTime;             // ticks of processor time so far
    FSSpec* processAppSpec;               // null, or gets the place of the executable file
} ProcessInfoRec;

#pragma pack(pop)

enum { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };

/// Goes from one process to the next, in the order of the process ids; from 0, 0 to the first. The process
/// left behind need not run any more. procNotFound at the end, and the number is 0, 0 then; paramErr for a
/// number that no process can have; userCanceledErr when the host's check-in function says stop.
PLATFORM_API OSErr GetNextProcess(ProcessSerialNumber* psn);
/// Fills the record. A process that ended since GetNextProcess gave it last on this thread is described as it
/// was then. procNotFound when there is no such process; paramErr when the record's length is another one.
PLATFORM_API OSErr GetProcessInformation(ProcessSerialNumber const* psn, ProcessInfoRec* info);
/// procNotFound for a process id that no process of the kind above has.
PLATFORM_API OSErr GetProcessForPID(pid_t pid, ProcessSerialNumber* psn);
/// The id that the process has, or had before it ended. procNotFound when another process has it now, and for
/// no process.
PLATFORM_API OSErr GetProcessPID(ProcessSerialNumber const* psn, pid_t* pid);
/// This process. procNotFound where /proc does not show it.
PLATFORM_API OSErr GetCurrentProcess(ProcessSerialNumber* psn);
/// The process that has the user's attention. There is none here: procNotFound, and the number is 0, 0.
PLATFORM_API OSErr GetFrontProcess(ProcessSerialNumber* psn);
/// Whether two numbers are those of one process; 0, 2 is that of this one. procNotFound when either is that
/// of no process, running or not.
PLATFORM_API OSErr SameProcess(ProcessSerialNumber const* psn1, ProcessSerialNumber const* psn2,
                               Boolean* result);
/// Lets a process that waits for an event go on. Processes here wait for nothing of the platform's, so there
/// is nothing to do. procNotFound for a process that does not run.
PLATFORM_API OSErr WakeUpProcess(ProcessSerialNumber const* psn);
/// Gives a process the user's attention, which is nothing to be given here: appIsDaemon. procNotFound for a
/// process that does not run.
PLATFORM_API OSErr SetFrontProcess(ProcessSerialNumber const* psn);
