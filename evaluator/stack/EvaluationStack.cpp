#include "stack/EvaluationStack.h"

#include <cxxabi.h>
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "registry/Libraries.h"

#ifdef ZELQ_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#endif

namespace Evaluator {
namespace {

// The address sanitizer wants to know on which stack it is.
#ifdef ZELQ_ADDRESS_SANITIZER
struct Sanitizer {
    void Leave(void const* bottom, std::size_t size) { __sanitizer_start_switch_fiber(&fake, bottom, size); }
    void Return() { __sanitizer_finish_switch_fiber(fake, nullptr, nullptr); }
    void Entered() { __sanitizer_finish_switch_fiber(nullptr, &callerBottom, &callerSize); }
    void Exit() { __sanitizer_start_switch_fiber(nullptr, callerBottom, callerSize); }
    static void Forget(void const* memory, std::size_t size) { __asan_unpoison_memory_region(memory, size); }

    void* fake = nullptr;
    void const* callerBottom = nullptr;
    std::size_t callerSize = 0;
};
#else
struct Sanitizer {
    void Leave(void const*, std::size_t) {}
    void Return() {}
    void Entered() {}
    void Exit() {}
    static void Forget(void const*, std::size_t) {}
};
#endif

std::size_t PageSize() {
    static std::size_t const size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return size;
}

// Where the interrupted code stood, and its stack.
#if defined(__x86_64__)
void const* ProgramCounter(void const* context) {
    return reinterpret_cast<void const*>(static_cast<ucontext_t const*>(context)->uc_mcontext.gregs[REG_RIP]);
}
void const* StackPointer(void const* context) {
    return reinterpret_cast<void const*>(static_cast<ucontext_t const*>(context)->uc_mcontext.gregs[REG_RSP]);
}
#elif defined(__aarch64__)
void const* ProgramCounter(void const* context) {
    return reinterpret_cast<void const*>(static_cast<ucontext_t const*>(context)->uc_mcontext.pc);
}
void const* StackPointer(void const* context) {
    return reinterpret_cast<void const*>(static_cast<ucontext_t const*>(context)->uc_mcontext.sp);
}
#else
#error "say here where this machine keeps its program counter and its stack pointer"
#endif

// The C++ runtime's account of the exceptions that are being handled on this thread, as the C++ ABI lays it
// out: a list of those that have been caught, the latest first, and how many are on their way. Those of a
// stack that was given up are neither any more.
struct ExceptionsInHand {
    void* caught;
    unsigned int uncaught;
};
ExceptionsInHand& Exceptions() { return *reinterpret_cast<ExceptionsInHand*>(abi::__cxa_get_globals()); }

}  // namespace

// One passage to the stack and back.
struct EvaluationStack::Switch {
    ucontext_t caller, callee;
    void (*function)(void*);
    void* argument;
    Sanitizer sanitizer;
    volatile bool entered = false;
    volatile bool finished = false;
};

// Catches faults of memory, on a stack of its own, for as long as it lives.
class FaultHandler {
  public:
    FaultHandler() {
        stack_t mine{};
        mine.ss_sp = signalStack.data();
        mine.ss_size = signalStack.size();
        sigaltstack(&mine, &stackBefore);
        struct sigaction action {};
        action.sa_sigaction = OnFault;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        sigaction(SIGSEGV, &action, &before);
    }
    ~FaultHandler() {
        sigaction(SIGSEGV, &before, nullptr);
        sigaltstack(&stackBefore, nullptr);
    }
    FaultHandler(FaultHandler const&) = delete;
    FaultHandler& operator=(FaultHandler const&) = delete;

  private:
    static void OnFault(int signal, siginfo_t* info, void* context) {
        bool const isFault = info->si_code > 0;  // else somebody has sent it
        if (!isFault ||
            !EvaluationStack::Instance().Handles(static_cast<char const*>(info->si_addr), context))
            PassOn(signal, info, context);
    }
    // A fault that is none of ours goes where it would have gone.
    static void PassOn(int signal, siginfo_t* info, void* context) {
        if (before.sa_flags & SA_SIGINFO)
            before.sa_sigaction(signal, info, context);
        else if (before.sa_handler != SIG_DFL && before.sa_handler != SIG_IGN)
            before.sa_handler(signal);
        else
            EndProcess(signal, *info);
    }

    // The instruction faults again; a signal that was sent has to be sent again.
    static void EndProcess(int signal, siginfo_t const& info) {
        ::signal(signal, SIG_DFL);
        if (info.si_code <= 0) raise(signal);
    }

    static inline struct sigaction before;
    stack_t stackBefore;
    // Wide enough for the registers of any machine of today and the few frames of the handler.
    alignas(64) static inline std::array<char, 64 << 10> signalStack;
};

EvaluationStack& EvaluationStack::Instance() {
    static EvaluationStack stack;
    return stack;
}

// The mapping is kept for the next evaluation that wants the same size.
bool EvaluationStack::Provide(std::size_t bytes) {
    std::size_t const page = PageSize();
    std::size_t const wanted = kGuard + kReserve + (bytes + page - 1) / page * page;
    if (mapped == wanted) return true;
    void* fresh =
        mmap(nullptr, wanted, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
    if (fresh == MAP_FAILED) return false;
    char* const begin = static_cast<char*>(fresh) + kGuard + kReserve;
    if (mprotect(begin, wanted - kGuard - kReserve, PROT_READ | PROT_WRITE) != 0) {
        munmap(fresh, wanted);
        return false;
    }
    if (mapping) munmap(mapping, mapped);
    mapping = static_cast<char*>(fresh);
    mapped = wanted;
    low = begin;
    return true;
}

void EvaluationStack::SetTrap(bool wanted) {
    mprotect(mapping + kGuard, kReserve, wanted ? PROT_READ | PROT_WRITE : PROT_NONE);
    Libraries::Instance().SetExecutable(!wanted);
    trapped = wanted;
}

void EvaluationStack::Enter() {
    EvaluationStack& stack = Instance();
    Switch& passage = *stack.current;
    passage.sanitizer.Entered();
    passage.function(passage.argument);
    passage.finished = true;
    passage.sanitizer.Exit();
    setcontext(&passage.caller);
}

bool EvaluationStack::Run(void (*function)(void*), void* argument) {
    Sanitizer::Forget(mapping + kGuard, mapped - kGuard);
    FaultHandler handler;
    Switch passage;
    passage.function = function;
    passage.argument = argument;
    current = &passage;
    foreign = false;
    ExceptionsInHand const before = Exceptions();

    // getcontext returns a second time when the stack is left. swapcontext would do the same in one call, but
    // sanitizers warn of it.
    getcontext(&passage.caller);
    if (!passage.entered) {
        passage.entered = true;
        getcontext(&passage.callee);
        passage.callee.uc_stack.ss_sp = low;
        passage.callee.uc_stack.ss_size = static_cast<std::size_t>(mapping + mapped - low);
        passage.callee.uc_link = nullptr;
        makecontext(&passage.callee, &EvaluationStack::Enter, 0);
        passage.sanitizer.Leave(low, passage.callee.uc_stack.ss_size);
        setcontext(&passage.callee);
    }
    passage.sanitizer.Return();
    current = nullptr;
    if (trapped) SetTrap(false);
    if (!passage.finished) leftExceptions = std::exchange(Exceptions(), before).caught;
    return passage.finished;
}

// What their destructors do may be given up as well; then those that are left wait for the next call.
void EvaluationStack::EndExceptions() {
    ExceptionsInHand& exceptions = Exceptions();
    void* const mine = exceptions.caught;
    if (leftExceptions) exceptions.caught = std::exchange(leftExceptions, nullptr);
    while (exceptions.caught != mine) abi::__cxa_end_catch();
}

// Leaves the stack that the caller, or the code that the signal interrupted, stands on. Nothing is unwound.
void EvaluationStack::GiveUp() {
    current->sanitizer.Exit();
    setcontext(&current->caller);
    __builtin_unreachable();
}

bool EvaluationStack::IsCurrent() const {
    auto const* here = static_cast<char const*>(__builtin_frame_address(0));
    return current && here >= mapping && here < mapping + mapped;
}

// Whether the fault is ours, and the code may go on. Does not return where the stack is given up.
bool EvaluationStack::Handles(char const* address, void const* context) {
    if (!current || foreign) return false;
    if (trapped && Libraries::Instance().HoldCode(address)) {
        auto const* frame = static_cast<char const*>(StackPointer(context));
        if (frame >= mapping && frame < mapping + mapped) GiveUp();
        return true;  // a library's own thread waits until its code is code again
    }
    if (address < mapping || address >= low) return false;
    if (trapped || address < mapping + kGuard || Libraries::Instance().HoldCode(ProgramCounter(context)))
        GiveUp();
    SetTrap(true);
    return true;
}

EvaluationStack::Foreign::Foreign() : before(std::exchange(Instance().foreign, true)) {}
EvaluationStack::Foreign::~Foreign() { Instance().foreign = before; }

}  // namespace Evaluator
