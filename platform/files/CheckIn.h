#pragma once

// The question whether work may go on, which is put to the host before items are looked at: see
// PlatformSetCheckIn.

#include <Platform/Items.h>

#include <functional>

namespace Platform {

/// Whether the host wants that many items looked at; 0 where a call merely waits. Without an installed
/// function everything is wanted.
bool MayGoOn(UInt32 items);

/// While one of these lives, its thread asks `function` instead. For threads that do the work of another one,
/// which answers for the host. They do not nest.
class CheckInElsewhere {
  public:
    using Function = std::function<bool(UInt32)>;
    explicit CheckInElsewhere(Function function);
    ~CheckInElsewhere();
    CheckInElsewhere(CheckInElsewhere const&) = delete;
    CheckInElsewhere& operator=(CheckInElsewhere const&) = delete;

    /// Whether one lives on this thread.
    static bool IsInUse();

  private:
    Function asked;
};

}  // namespace Platform
