// An inspector library made for the tests of how values live. Its values are watched: each counts itself
// while it lives, and the library answers how many there are.

#include <Carbon/Files.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "Evaluator/Context.h"
#include "Evaluator/Text.h"
#include "frame/Adapters.h"
#include "frame/SharingPtr.h"

namespace {

long livingProbes = 0;
long livingWalks = 0;
long clearedCaches = 0;

// Holds a ring link, so that a copy or a move by the host would corrupt the ring, which Destroy checks.
class probe {
  public:
    explicit probe(long long number) : id(number), self(this) { ++livingProbes; }
    probe(probe const& other) : id(other.id), self(this), ring(other.ring) { ++livingProbes; }
    ~probe() {
        if (self != this) std::abort();  // the host has moved the value
        self = nullptr;
        --livingProbes;
    }
    long long Id() const { return id; }

  private:
    long long id;
    probe const* self;
    SharingLink ring;
};

// Points into the object that it was asked of.
struct part {
    probe const* whole;
};

// A probe with more behind it, used as one.
class special_probe : public probe {
  public:
    using probe::probe;
    long long extra = 77;
};

inspector_string Text(std::string const& text) {
    return MakeString(ConstData(reinterpret_cast<unsigned char const*>(text.data()), text.size()));
}

probe probe_numbered(unsigned long long index) { return probe(static_cast<long long>(index)); }
special_probe special_probe_numbered(unsigned long long index) {
    return special_probe(static_cast<long long>(index));
}
integer id_of(probe const& object) { return object.Id(); }
integer extra_of(special_probe const& object) { return object.extra; }
part part_of(probe const& object) { return {&object}; }
probe twin_of(probe const& object) { return object; }
integer id_of_part(part const& object) { return object.whole->Id(); }
inspector_string label_of(probe const& object) { return Text("probe " + std::to_string(object.Id())); }
integer living_probes() { return livingProbes; }
integer living_walks() { return livingWalks; }
integer cleared_caches() { return clearedCaches; }

// Take memory, begin a value, and fail half-way.
probe absent_after_memory_of(probe const&) {
    Allocate_Inspector_Memory(1000);
    probe begun(1);
    throw NoSuchObject();
}
probe broken_after_memory_of(probe const&) {
    Allocate_Inspector_Memory(1000);
    probe begun(1);
    throw OSError(-36);
}
probe forbidden_of(probe const&) { throw FilePermissionError(); }
probe unreadable_of(probe const&) { throw FileIOError(); }
// Has the platform fail to open a file, and does not say so.
probe unopened_of(probe const&) {
    FSRef const stale{};
    SInt16 fork = 0;
    FSOpenFork(&stale, 0, nullptr, fsRdPerm, &fork);
    throw NoSuchObject();
}
probe missing_of(probe const&) { throw MacintoshPlatform::FailedToGetFileItem(); }
probe unreachable_of(probe const&) { throw MacintoshPlatform::FailedToGetFileItem(-5000); }
probe stray_of(probe const&) { throw 42; }
probe wrong_of(probe const&) { throw std::runtime_error("wrong"); }
inspector_string odd_of(probe const& object) {
    if (object.Id() % 2 == 0) throw NoSuchObject();
    return Text("odd");
}

// Probes with the numbers from 1 to an index.
class walk {
  public:
    walk() { ++livingWalks; }
    ~walk() { --livingWalks; }
    probe First(integer const& last) {
        at = 0;
        return Next(last);
    }
    probe Next(integer const& last) {
        if (at >= last) throw NoSuchObject();
        return probe(++at);
    }

  private:
    long long at = 0;
};

// Every value points into what First asked for, the position of each into what its own Next asked for.
class echo {
  public:
    inspector_string First(probe const& object) {
        std::string text = "echo of " + std::to_string(object.Id());
        shared = static_cast<char*>(Allocate_Inspector_Memory(static_cast<unsigned int>(text.size())));
        length = static_cast<std::uint32_t>(text.size());
        std::memcpy(shared, text.data(), length);
        return Shared();
    }
    inspector_string Next(probe const&) {
        if (++count == 3) throw NoSuchObject();
        return count == 1 ? Shared() : Text("echo alone");
    }

  private:
    inspector_string Shared() const { return {reinterpret_cast<unsigned char const*>(shared), length}; }
    char* shared = nullptr;
    std::uint32_t length = 0;
    int count = 0;
};

// Takes memory when it is made, and looks at it when it ends. Has no values.
class hoard {
  public:
    hoard() : memory(static_cast<char*>(Allocate_Inspector_Memory(8))) { std::memcpy(memory, "hoarded", 8); }
    ~hoard() {
        if (std::strcmp(memory, "hoarded") != 0) std::abort();  // the host has freed it too early
    }
    probe First(probe const&) {
        Allocate_Inspector_Memory(100);
        throw NoSuchObject();
    }
    probe Next(probe const&) { throw NoSuchObject(); }

  private:
    char* memory;
};

// Fails when it is asked for its third value.
class failing {
  public:
    probe First(probe const&) { return probe(1); }
    probe Next(probe const&) {
        Allocate_Inspector_Memory(100);
        if (++count == 2) throw OSError(-1401);
        return probe(2);
    }

  private:
    int count = 0;
};

void ClearCache(void*) { ++clearedCaches; }

struct Module {
    TypeRecord<probe> probeType{"probe"};
    TypeRecord<special_probe> specialType{"special probe", "probe"};
    TypeRecord<part> partType{"part"};
    NumberedGlobalProperty<probe> probeNumbered{"probe", "probes", "probe", probe_numbered};
    NumberedGlobalProperty<special_probe> specialNumbered{"special probe", "special probes", "special probe",
                                                          special_probe_numbered};
    Property<probe, integer> id{"id", "ids", "probe", "integer", id_of};
    Property<special_probe, integer> extra{"extra", "extras", "special probe", "integer", extra_of};
    Property<probe, part> partOf{"part", "parts", "probe", "part", part_of};
    Property<probe, probe> twin{"ring twin", "ring twins", "probe", "probe", twin_of};
    Property<part, integer> partId{"id", "ids", "part", "integer", id_of_part};
    Property<probe, inspector_string> name{"name", "names", "probe", "string", label_of};
    GlobalProperty<integer> living{"living probe", "living probes", "integer", living_probes};
    GlobalProperty<integer> walks{"living walk", "living walks", "integer", living_walks};
    GlobalProperty<integer> cleared{"cleared cache", "cleared caches", "integer", cleared_caches};
    Property<probe, probe> absent{"absent", "absents", "probe", "probe", absent_after_memory_of};
    Property<probe, probe> broken{"broken", "brokens", "probe", "probe", broken_after_memory_of};
    Property<probe, probe> forbidden{"forbidden", "forbiddens", "probe", "probe", forbidden_of};
    Property<probe, probe> unreadable{"unreadable", "unreadables", "probe", "probe", unreadable_of};
    Property<probe, probe> unopened{"unopened", "unopeneds", "probe", "probe", unopened_of};
    Property<probe, probe> missing{"missing", "missings", "probe", "probe", missing_of};
    Property<probe, probe> unreachable{"unreachable", "unreachables", "probe", "probe", unreachable_of};
    Property<probe, probe> stray{"stray", "strays", "probe", "probe", stray_of};
    Property<probe, probe> wrong{"wrong", "wrongs", "probe", "probe", wrong_of};
    Property<probe, inspector_string> odd{"odd text", "odd texts", "probe", "string", odd_of};
    IteratedPropertyByIndexOfWorld<walk, probe, integer> walkTo{"probe up to", "probes up to", "integer",
                                                                "probe",       &walk::First,   &walk::Next};
    IteratedProperty<echo, probe, inspector_string> echoes{"echo", "echoes", "probe", "string"};
    IteratedProperty<failing, probe, probe> failings{"failing", "failings", "probe", "probe"};
    IteratedProperty<hoard, probe, probe> hoards{"hoard", "hoards", "probe", "probe"};
    CacheRecord cache{ClearCache};
};

Module module;

}  // namespace
