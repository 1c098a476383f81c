#pragma once

// Internal. The stack that evaluations run on, with a guard below it.
//
// Inspectors are other people's code, and some of it recurses without end. On this stack that ends the
// evaluation, not the process: whoever runs into the guard is left where it stands, nothing is unwound, and
// Run returns on the caller's stack. So whatever an evaluation owns must be found without its frames
// (Owned.h, Value.h).
//
//     guard, 1 MiB          never accessible; wider than any frame, so that none steps over it
//     reserve, 512 KiB      opened when something that must not be left runs into it
//     the stack             grows down towards the reserve
//
// Code that holds something for everybody (a lock of the C library's, a table of the platform's) cannot be
// left where it stands; the code of inspector libraries can. So where other code touches the reserve, it gets
// the reserve to finish its work, and the code of the inspector libraries is made a trap meanwhile: on the
// first instruction back there the stack is given up.
//
// One evaluation runs at a time; calls are made under the evaluation lock.

#include <cstddef>

namespace Evaluator {

class EvaluationStack {
  public:
    /// Left at the least when an inspector is called.
    static constexpr std::size_t kLeftForInspectors = 256 << 10;
    static constexpr std::size_t kLeftForAdapters = 16 << 10;
    static constexpr std::size_t kGuard = 1 << 20;
    static constexpr std::size_t kReserve = 512 << 10;

    static EvaluationStack& Instance();

    /// Makes the stack one of so many bytes, unless it is already. Returns whether there is memory for it;
    /// where there is none, the stack stays what it was. Not to be called on the stack itself.
    bool Provide(std::size_t bytes);

    /// Runs `function(argument)`, which must not throw, on the stack that was provided. Returns whether it
    /// returned; false when the stack was exhausted or given up. Not to be called on the stack itself.
    bool Run(void (*function)(void*), void* argument);

    /// Frees the exceptions that were being handled where the stack was given up; one that was on its way is
    /// lost, since nobody knows where it is. Only on the stack: their destructors are the inspectors' code.
    void EndExceptions();

    /// Gives the stack up as soon as the code of an inspector library goes on: Run returns false then. Only
    /// on the stack.
    void GiveUpInInspector() { SetTrap(true); }

    /// Whether the caller stands on the stack.
    bool IsCurrent() const;
    /// The lowest address at which a frame that calls an inspector may lie: below it kLeftForInspectors are
    /// left, and the frames of the library's adapter have their place.
    char const* Floor() const { return low + kLeftForInspectors + kLeftForAdapters; }

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
    static void Enter();
    void SetTrap(bool wanted);
    [[noreturn]] void GiveUp();
    bool Handles(char const* address, void const* context);
    friend class FaultHandler;

    char* mapping = nullptr;
    std::size_t mapped = 0;  ///< bytes of the mapping: guard, reserve and stack
    char* low = nullptr;     ///< where the stack begins, above the reserve
    bool trapped = false;    ///< the reserve is open, and the inspector libraries' code is a trap
    bool foreign = false;
    void* leftExceptions = nullptr;  ///< see EndExceptions
    struct Switch;
    Switch* current = nullptr;  ///< of the Run that is under way
};

}  // namespace Evaluator
