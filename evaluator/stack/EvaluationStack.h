#pragma once

// Internal. The stack that evaluations run on, with a guard below it.
//
// Inspectors are other people's code, and some of it recurses without end. On this stack that ends the
// evaluation, not the process: whoever runs into the guard is left where it stands, nothing is unwound, and
// Run returns on the caller's stack. So whatever an evaluation owns must be found without its frames
// (Owned.h, Value.h).
//
//     guard, 1 MiB          never accessible; wider than any frame, so that none steps over it
//     reserve, 512 KiB      opened a page at a time, see below
//     the stack             grows down towards the reserve
//
// Code that holds something for everybody (a lock of the C library's, a table of the platform's) cannot be
// left where it stands. So only the code of inspector libraries is left at the first touch of the reserve;
// for any other code the touched pages are opened and it goes on, and the next touch asks again. At the guard
// all is over.
//
// One evaluation runs at a time; calls are made under the evaluation lock.

#include <cstddef>

namespace Evaluator {

class EvaluationStack {
  public:
    /// Left at the least when an inspector is called.
    static constexpr std::size_t kLeftForInspectors = 256 << 10;
    static constexpr std::size_t kGuard = 1 << 20;
    static constexpr std::size_t kReserve = 512 << 10;

    static EvaluationStack& Instance();

    /// Runs `function(argument)`, which must not throw, on a stack of so many bytes. Returns whether it
    /// returned; false when the stack was exhausted or given up. Not to be called on the stack itself. Throws
    /// std::bad_alloc when there is no memory for a stack.
    bool Run(std::size_t bytes, void (*function)(void*), void* argument);

    /// Leaves the stack that the caller stands on, without unwinding: Run returns false.
    [[noreturn]] void GiveUp();

    /// Whether the caller stands on the stack.
    bool IsCurrent() const;
    /// Bytes between the caller's frame and the reserve. Only on the stack.
    std::size_t Left() const;
    /// The address below which less than kLeftForInspectors are left.
    char const* Floor() const { return low + kLeftForInspectors; }

    /// While one of these lives, exhaustion is none of ours: the process ends as it does on any stack. For
    /// code whose frames must not be left, such as the consumer's.
    class Foreign {
      public:
        Foreign();
        ~Foreign();
        Foreign(Foreign const&) = delete;
        Foreign& operator=(Foreign const&) = delete;

      private:
        bool before;
    };

  private:
    EvaluationStack() = default;
    void Provide(std::size_t bytes);
    static void Enter();
    bool Handles(char const* address, void const* context);
    friend class FaultHandler;

    char* mapping = nullptr;
    std::size_t mapped = 0;  ///< bytes of the mapping: guard, reserve and stack
    char* low = nullptr;     ///< where the stack begins, above the reserve
    char* opened = nullptr;  ///< the reserve is accessible from here on
    bool foreign = false;
    struct Switch;
    Switch* current = nullptr;  ///< of the Run that is under way
};

}  // namespace Evaluator
