#include "system/Processes.h"

#include <Carbon/MacErrors.h>

#include "Evaluator/Text.h"

using MacintoshPlatform::FailedToGetFileItem;
using MacintoshPlatform::FileItem;
using MacintoshPlatform::FileLocation;
using MacintoshPlatform::MacFileInfo;
using MacintoshPlatform::MakeFileLocation;
using MacintoshPlatform::MakeUTF8String;

namespace {

void Check(OSErr result) {
    if (result != noErr) throw ProcessError(result);
}

ProcessInfo Described(ProcessLoop const& loop) {
    if (loop.IsDone()) throw NoSuchObject();
    return ProcessInfo(loop.Current());
}

}  // namespace

// Who it is

constinit Process const Process::noProcess{ProcessSerialNumber{0, kNoProcess}};

Process::Process(ApplicationProcess) : ProcessSerialNumber() { Check(GetCurrentProcess(this)); }
Process::Process(FrontProcess) : ProcessSerialNumber() { Check(GetFrontProcess(this)); }

Process const& Process::Application() {
    static Process const application{ApplicationProcess()};
    return application;
}

void Process::Wake() const { Check(WakeUpProcess(this)); }
void Process::MoveToFront() const { Check(SetFrontProcess(this)); }

pid_t Process::PID() const {
    pid_t pid = 0;
    Check(GetProcessPID(this, &pid));
    return pid;
}

bool operator==(Process const& left, Process const& right) {
    Boolean same = false;
    Check(SameProcess(&left, &right, &same));
    return same;
}

// What is known of it

ProcessInfo const& ProcessInfo::Application() {
    static ProcessInfo const application{Process::ApplicationProcess()};
    return application;
}

void ProcessInfo::Set(Process const& process) {
    FSSpec executable;
    ProcessInfoRec found{};
    found.processInfoLength = sizeof found;
    found.processAppSpec = &executable;
    Check(GetProcessInformation(&process, &found));
    found.processAppSpec = nullptr;
    location = MakeFileLocation(executable);
    record = found;
}

bool ProcessInfo::HasLauncher() const {
    return record.processLauncher.highLongOfPSN != 0 || record.processLauncher.lowLongOfPSN != 0;
}

carbon_process numbered_carbon_process_of_world(unsigned long long pid) {
    ProcessSerialNumber number;
    if (pid >> 32 != 0 || GetProcessForPID(static_cast<pid_t>(pid), &number) != noErr) throw NoSuchObject();
    return carbon_process(Process(number));
}

inspector_string name_of_carbon_process(carbon_process const& process) {
    std::string const name = MakeUTF8String(process.Location().Name());
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(name.data()), name.size()));
}

integer pid_of_carbon_process(carbon_process const& process) { return process.Number().PID(); }

filesystem_object file_of_carbon_process(carbon_process const& process) {
    MacFileInfo const info(process.Location());
    if (info.valid == 0) throw FailedToGetFileItem(info.status);
    return filesystem_object(FileItem(process.Location(), info));
}

// Walks

void ProcessLoop::Restart() {
    number = Process::noProcess;
    done = 0;
    ++*this;
}

ProcessLoop& ProcessLoop::operator++() {
    ProcessSerialNumber next = number;
    OSErr const result = GetNextProcess(&next);
    if (result == procNotFound) {
        done = 1;
        return *this;
    }
    Check(result);
    number = next;
    return *this;
}

carbon_process carbon_process_iterator::First() {
    loop.Restart();
    return Described(loop);
}
carbon_process carbon_process_iterator::Next() { return Described(++loop); }

filesystem_object running_app_iterator::First() {
    loop.Restart();
    return file_of_carbon_process(Described(loop));
}
filesystem_object running_app_iterator::Next() { return file_of_carbon_process(Described(++loop)); }
