// An inspector library made for the tests of what a host must bear: recursion without end, loops without end,
// exceptions swallowed, memory hoarded, values that will not end. Each behaviour is one phrase.

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

#include "Carbon/Files.h"
#include "Evaluator/Context.h"
#include "Evaluator/Text.h"
#include "Platform/Items.h"
#include "frame/Adapters.h"

#ifdef ZELQ_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace {

// What is allocated while one of these lives is lost where its owner's frame is left; that is no fault of the
// host's, so the leak sanitizer does not look for it.
struct Lost {
#ifdef ZELQ_ADDRESS_SANITIZER
    Lost() { __lsan_disable(); }
    ~Lost() { __lsan_enable(); }
#else
    Lost() {}
#endif
    Lost(Lost const&) = delete;
};

long livingTroubles = 0;
long livingRounds = 0;

class trouble {
  public:
    explicit trouble(long long kind) : kind(kind) { ++livingTroubles; }
    trouble(trouble const& other) : kind(other.kind) { ++livingTroubles; }
    ~trouble() {
        --livingTroubles;
        kind = kEnded;
    }
    bool HasEnded() const { return kind == kEnded; }
    long long kind;

  private:
    static constexpr long long kEnded = -1;
};

long orphanedShadows = 0;

// Points into its trouble, and looks at it once more when it ends.
class shadow {
  public:
    explicit shadow(trouble const& whole) : whole(&whole) {}
    shadow(shadow const&) = delete;
    ~shadow() {
        if (whole->HasEnded()) ++orphanedShadows;
    }
    trouble const* whole;
};

long givenToBeggars = 0;

// Asks for memory when it ends, when nothing is being made that could own it.
struct beggar {};

// Throws when it ends.
struct grudge {};
// Recurses without end when it ends.
struct abyss {};
// Goes on for ever when it ends, but gives the host its time.
struct lingerer {};
// An exception without a word.
struct muteness : std::exception {
    char const* what() const noexcept override { return nullptr; }
};

void GiveTime() {
    auto* hooks = dynamic_cast<InspectorYieldContext*>(Get_Generic_Inspector_Context());
    if (hooks && hooks->trickle) hooks->trickle(Get_Generic_Inspector_Context());
}
void YieldTime() {
    auto* hooks = dynamic_cast<InspectorYieldContext*>(Get_Generic_Inspector_Context());
    if (hooks && hooks->yieldTimeSlice) hooks->yieldTimeSlice(Get_Generic_Inspector_Context());
}

// Not inlined and not turned into a loop: each call takes its frame.
template <std::size_t bytes>
[[gnu::noinline]] long Recurse(long depth) {
    volatile char frame[bytes];
    frame[0] = static_cast<char>(depth);
    if (depth == 0) return frame[0];
    long below = Recurse<bytes>(depth - 1);
    return below + frame[0];
}
[[gnu::noinline]] std::size_t RecurseWithTexts(std::string const& text) {
    if (text.empty()) return 0;  // it never is
    std::vector<std::string> copies;
    {
        Lost lost;
        copies.assign(3, (text + "x").substr(0, 100));
    }
    Allocate_Inspector_Memory(40);
    return RecurseWithTexts(copies.front()) + copies.size();
}
long livingExceptions = 0;
// Counts itself; the one with the number 7 recurses without end when it ends.
class complaint {
  public:
    explicit complaint(long number) : number(number) { ++livingExceptions; }
    complaint(complaint const&) = delete;
    ~complaint();

  private:
    long number;
};
[[gnu::noinline]] long RecurseHandling(long depth, long step) {
    try {
        Lost lost;
        throw complaint(depth);
    } catch (complaint const&) {
        return RecurseHandling(depth + step, step) + 1;
    }
}
[[gnu::noinline]] std::size_t RecurseWithMemory(unsigned int size) {
    if (size == 0) return 0;  // it never is
    auto* memory = static_cast<char*>(Allocate_Inspector_Memory(size));
    memory[0] = 1;
    return RecurseWithMemory(size % 100 + 1) + static_cast<std::size_t>(memory[0]);
}
constexpr long kForEver = 1L << 60;
complaint::~complaint() {
    --livingExceptions;
    if (number == 7) Recurse<64>(kForEver);
}

trouble trouble_numbered(unsigned long long kind) { return trouble(static_cast<long long>(kind)); }
integer kind_of(trouble const& object) { return object.kind; }
integer living_troubles() { return livingTroubles; }
integer living_rounds() { return livingRounds; }

integer small_frames_of(trouble const&) { return Recurse<64>(kForEver); }
integer large_frames_of(trouble const&) { return Recurse<64 << 10>(kForEver); }
integer texts_of(trouble const&) { return static_cast<long long>(RecurseWithTexts("x")); }
integer memories_of(trouble const&) { return static_cast<long long>(RecurseWithMemory(1)); }
integer handlers_of(trouble const& object) { return RecurseHandling(0, static_cast<long>(object.kind)); }
integer living_exceptions() { return livingExceptions; }
// Takes so many KiB of stack and gives them back.
integer stack_kilobytes_of(trouble const& object) {
    Recurse<1 << 10>(object.kind);
    return object.kind;
}

// The least that it has seen of the KiB from here to the lower end of what may be written, which is that of
// the stack.
long long leastLeft = 1L << 30;
integer stack_left_of(trouble const&) {
    auto const here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t begin = 0, end = 0;
        if (std::sscanf(line.c_str(), "%lx-%lx", &begin, &end) == 2 && here >= begin && here < end)
            return leastLeft = std::min(leastLeft, static_cast<long long>((here - begin) / 1024));
    }
    throw NoSuchObject();
}

// Goes on until the host ends it by an exception.
integer patience_of(trouble const&) {
    for (;;) GiveTime();
}
integer yielding_of(trouble const&) {
    for (;;) YieldTime();
}
// Takes the host's exception for an answer.
integer denial_of(trouble const&) {
    try {
        for (;;) GiveTime();
    } catch (...) {
        throw NoSuchObject();
    }
}
integer excuse_of(trouble const& object) {
    try {
        for (;;) GiveTime();
    } catch (...) {
        return object.kind;
    }
}
// Does not care.
[[noreturn]] void StayDeaf() {
    for (;;) try {
            Lost lost;
            GiveTime();
        } catch (...) {
        }
}
integer deafness_of(trouble const&) { StayDeaf(); }
// Does not answer before it is told to stop, and then as if nothing had happened.
shadow late_shadow_of(trouble const& object) {
    try {
        for (;;) GiveTime();
    } catch (...) {
    }
    return shadow(object);
}
// The same, one value after the other.
class late_shadows {
  public:
    shadow First(trouble const& object) { return late_shadow_of(object); }
    shadow Next(trouble const&) { throw NoSuchObject(); }
};
integer orphaned_shadows() { return orphanedShadows; }
integer given_to_beggars() { return givenToBeggars; }
// Looks things up for ever, whatever the platform answers.
struct Root {
    Root() {
        unsigned char const path = '/';
        url = CFURLCreateFromFileSystemRepresentation(nullptr, &path, 1, true);
    }
    ~Root() { CFRelease(url); }
    CFURLRef url;
} root;
integer search_of(trouble const&) {
    for (;;) {
        FSRef reference;
        PlatformGetItem(root.url, kFSCatInfoNone, &reference, nullptr);
    }
}

// Ask for a volume and make something else of every failure: that there is none, or no item.
OSErr error_of_volume(unsigned long long index) {
    FSVolumeInfo info;
    return FSGetVolumeInfo(0, static_cast<ItemCount>(index), nullptr, kFSVolInfoSizes, &info, nullptr,
                           nullptr);
}
integer shrug_at(unsigned long long index) {
    if (error_of_volume(index) != 0) throw NoSuchObject();
    return 1;
}
integer sigh_at(unsigned long long index) {
    if (OSErr const error = error_of_volume(index); error != 0)
        throw MacintoshPlatform::FailedToGetFileItem(error);
    return 1;
}

inspector_string memory_of(integer const& bytes) {
    auto size = static_cast<unsigned int>(static_cast<long long>(bytes));
    return {static_cast<unsigned char*>(Allocate_Inspector_Memory(size)), size};
}
// Never read: what is joined of it would be too long for its length.
inspector_string giant() {
    static unsigned char const start = 'x';
    return {&start, 3'000'000'000};
}
integer hoard_of(trouble const& object) {
    try {
        for (;;) Allocate_Inspector_Memory(1 << 20);
    } catch (...) {
        return object.kind;  // as if nothing had happened
    }
}

grudge grudge_of(trouble const&) { return {}; }
abyss abyss_of(trouble const&) { return {}; }
lingerer lingerer_of(trouble const&) { return {}; }
beggar beggar_of(trouble const&) { return {}; }
integer muteness_of(trouble const&) { throw muteness(); }

void EndGrudge(void const*) { throw 42; }
void EndAbyss(void const*) { Recurse<64>(kForEver); }
void EndLingerer(void const*) {
    for (;;) GiveTime();
}
void EndBeggar(void const*) {
    try {
        std::memset(Allocate_Inspector_Memory(1000), 1, 1000);
        ++givenToBeggars;
    } catch (MemoryFullError const&) {
    }
}

// Troubles 1, 2, 3 … without end.
class rounds {
  public:
    rounds() { ++livingRounds; }
    ~rounds() { --livingRounds; }
    trouble First() { return trouble(++count); }
    trouble Next() { return trouble(++count); }

  private:
    long long count = 0;
};
// Never comes to its first value, and lets nothing stop it.
class nothing {
  public:
    trouble First() { StayDeaf(); }
    trouble Next() { return trouble(0); }
};

// A type whose Destroy is not its destructor's business.
struct RawType {
    RawType(char const* name, DestroyFunction destroy) {
        Register_Type(record, kTypeRecordSize, name, 1, destroy, "", nullptr);
    }
    ~RawType() { Unregister_Type(record); }
    alignas(16) unsigned char record[kTypeRecordSize];
};

struct Module {
    TypeRecord<trouble> type{"trouble"};
    RawType grudgeType{"grudge", EndGrudge};
    RawType abyssType{"abyss", EndAbyss};
    RawType lingererType{"lingerer", EndLingerer};
    RawType beggarType{"beggar", EndBeggar};
    TypeRecord<shadow> shadowType{"shadow"};
    NumberedGlobalProperty<trouble> numbered{"trouble", "troubles", "trouble", trouble_numbered};
    GlobalProperty<integer> living{"living trouble", "living troubles", "integer", living_troubles};
    GlobalProperty<integer> livingRound{"living round", "living rounds", "integer", living_rounds};
    Property<trouble, integer> kind{"kind", "kinds", "trouble", "integer", kind_of};
    Property<trouble, integer> small{"small frame", "small frames", "trouble", "integer", small_frames_of};
    Property<trouble, integer> large{"large frame", "large frames", "trouble", "integer", large_frames_of};
    Property<trouble, integer> texts{"text frame", "text frames", "trouble", "integer", texts_of};
    Property<trouble, integer> memories{"memory frame", "memory frames", "trouble", "integer", memories_of};
    Property<trouble, integer> handlers{"handler frame", "handler frames", "trouble", "integer", handlers_of};
    Property<trouble, integer> kilobytes{"stack kilobyte", "stack kilobytes", "trouble", "integer",
                                         stack_kilobytes_of};
    Property<trouble, integer> left{"least stack left", "least stacks left", "trouble", "integer",
                                    stack_left_of};
    Property<trouble, integer> patience{"patience", "patiences", "trouble", "integer", patience_of};
    Property<trouble, integer> yielding{"yielding", "yieldings", "trouble", "integer", yielding_of};
    Property<trouble, integer> denial{"denial", "denials", "trouble", "integer", denial_of};
    Property<trouble, integer> excuse{"excuse", "excuses", "trouble", "integer", excuse_of};
    Property<trouble, integer> deafness{"deafness", "deafnesses", "trouble", "integer", deafness_of};
    Property<trouble, integer> search{"search", "searches", "trouble", "integer", search_of};
    NumberedGlobalProperty<integer> shrugs{"shrug", "shrugs", "integer", shrug_at};
    NumberedGlobalProperty<integer> sighs{"sigh", "sighs", "integer", sigh_at};
    Property<trouble, integer> hoard{"hoard", "hoards", "trouble", "integer", hoard_of};
    Property<trouble, grudge> grudges{"grudge", "grudges", "trouble", "grudge", grudge_of};
    Property<trouble, abyss> abysses{"abyss", "abysses", "trouble", "abyss", abyss_of};
    Property<trouble, lingerer> lingerers{"lingerer", "lingerers", "trouble", "lingerer", lingerer_of};
    Property<trouble, beggar> beggars{"beggar", "beggars", "trouble", "beggar", beggar_of};
    Property<trouble, shadow> late{"late shadow", "late shadows", "trouble", "shadow", late_shadow_of};
    IteratedProperty<late_shadows, trouble, shadow> lateOnes{"later shadow", "later shadows", "trouble",
                                                             "shadow"};
    GlobalProperty<integer> orphans{"orphaned shadow", "orphaned shadows", "integer", orphaned_shadows};
    GlobalProperty<inspector_string> giants{"giant", "giants", "string", giant};
    GlobalProperty<integer> livingException{"living exception", "living exceptions", "integer",
                                            living_exceptions};
    GlobalProperty<integer> alms{"beggar given memory", "beggars given memory", "integer", given_to_beggars};
    Property<trouble, integer> mute{"muteness", "mutenesses", "trouble", "integer", muteness_of};
    PropertyByIndexOfWorld<inspector_string, integer> memory{"memory", "memories", "integer", "string",
                                                             memory_of};
    IteratedGlobalProperty<rounds, trouble> round{"round", "rounds", "trouble"};
    IteratedGlobalProperty<nothing, trouble> never{"never", "nevers", "trouble"};
};
Module module;

}  // namespace
