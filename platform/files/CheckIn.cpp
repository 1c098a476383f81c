#include "files/CheckIn.h"

#include <atomic>
#include <utility>

#include "files/FileFailure.h"
#include "files/OpenFolders.h"
#include "files/Patience.h"

namespace Platform {

namespace {

std::atomic<PlatformCheckIn> checkIn{nullptr};
thread_local CheckInElsewhere::Function const* elsewhere = nullptr;

}  // namespace

bool MayGoOn(UInt32 items) {
    if (elsewhere != nullptr) return (*elsewhere)(items);
    PlatformCheckIn const function = checkIn.load(std::memory_order_relaxed);
    return function == nullptr || function(items) != 0;
}

CheckInElsewhere::CheckInElsewhere(Function function) : asked(std::move(function)) { elsewhere = &asked; }
CheckInElsewhere::~CheckInElsewhere() { elsewhere = nullptr; }
bool CheckInElsewhere::IsInUse() { return elsewhere != nullptr; }

}  // namespace Platform

PlatformCheckIn PlatformSetCheckIn(PlatformCheckIn function) {
    Platform::ForgetUnresponsiveMount();
    Platform::ForgetFileFailure();
    Platform::OpenFolders::Shared().LetGoOfUnread();
    return Platform::checkIn.exchange(function);
}
