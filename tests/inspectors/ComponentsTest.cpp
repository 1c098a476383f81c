// Components, against a program that stands in for the platform's components and blocks of memory.

#include "system/Components.h"

#include <Carbon/MacMemory.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Evaluator/Context.h"
#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/ComponentIterationModule.h"
#include "modules/ComponentsModule.h"

struct OpaqueComponentInstance {
    UInt32 version;
};

namespace {

// What the platform has, and what it was asked.
struct Machine {
    OSErr error = noErr;
    bool hasMemory = true, opens = true;
    std::string name = "Low Pass", info = "Cuts the top";
    UInt32 version = 0;
    std::vector<Component> registered;
    bool allocates = true;

    int handles = 0, opened = 0, closed = 0;
    Size firstSize = 0;
    std::optional<ComponentDescription> described;
    bool gotIcon = false, gotBoth = false;
};
Machine machine;

struct Block {
    Ptr address;
    std::string bytes;
};

void Fill(Handle handle, std::string const& text) {
    auto const block = reinterpret_cast<Block*>(handle);
    block->bytes = static_cast<char>(text.size()) + text;
    block->address = block->bytes.data();
}

}  // namespace

Handle NewHandle(Size byteCount) {
    if (!machine.hasMemory) return nullptr;
    ++machine.handles;
    machine.firstSize = byteCount;
    auto const block = new Block{nullptr, std::string(static_cast<std::size_t>(byteCount), '\x7F')};
    block->address = block->bytes.data();
    return &block->address;
}
void DisposeHandle(Handle h) {
    --machine.handles;
    delete reinterpret_cast<Block*>(h);
}

Component FindNextComponent(Component previous, ComponentDescription const* looking) {
    machine.described = *looking;
    auto const next = std::ranges::upper_bound(machine.registered, previous);
    return next == machine.registered.end() ? 0 : *next;
}
OSErr GetComponentInfo(Component component, ComponentDescription* description, Handle name, Handle info,
                       Handle icon) {
    machine.described = *description;
    machine.gotIcon |= icon != nullptr;
    machine.gotBoth |= name != nullptr && info != nullptr;
    if (machine.error != noErr) return machine.error;
    if (component != 7) return invalidComponentID;
    *description = {0x61756678, 0x00FF8001, 0x41636D65, 0, 0};
    if (name != nullptr) Fill(name, machine.name);
    if (info != nullptr) Fill(info, machine.info);
    return noErr;
}
ComponentInstance OpenComponent(Component component) {
    if (!machine.opens || component != 7) return nullptr;
    ++machine.opened;
    return new OpaqueComponentInstance{machine.version};
}
OSErr CloseComponent(ComponentInstance instance) {
    ++machine.closed;
    delete instance;
    return noErr;
}
SInt32 GetComponentVersion(ComponentInstance instance) { return static_cast<SInt32>(instance->version); }

// Of exactly the size, so that reading beyond it shows.
void* Allocate_Inspector_Memory(unsigned int size) {
    static std::vector<std::unique_ptr<unsigned char[]>> blocks;
    if (!machine.allocates) throw std::bad_alloc();
    blocks.push_back(std::make_unique<unsigned char[]>(size));
    return blocks.back().get();
}

namespace {

class Components : public testing::Test {
  protected:
    Components() { machine = {}; }
    ~Components() override {
        EXPECT_EQ(0, machine.handles) << "each block is disposed of";
        EXPECT_EQ(machine.opened, machine.closed);
        EXPECT_FALSE(machine.gotIcon);
        EXPECT_FALSE(machine.gotBoth);
    }
};

ComponentClass const seven(7);

std::string Text(inspector_string const& text) { return {text.begin(), text.end()}; }

// The platform's code that a question ends with; 0 where it is answered.
template <class Question>
long Failure(Question const& question) {
    try {
        question();
        return 0;
    } catch (OSError const& error) {
        return error.Code();
    }
}

std::vector<Component> All() {
    std::vector<Component> numbers;
    ComponentIterator iterator;
    try {
        numbers.push_back(iterator.First().Number());
        for (;;) numbers.push_back(iterator.Next().Number());
    } catch (NoSuchObject const&) {
        return numbers;
    }
}

void ExpectNothingDescribed() {
    ASSERT_TRUE(machine.described);
    ComponentDescription const& fields = *machine.described;
    EXPECT_EQ(0u, fields.componentType | fields.componentSubType | fields.componentManufacturer |
                      fields.componentFlags | fields.componentFlagsMask);
}

}  // namespace

TEST_F(Components, HaveCodesWithTheHighestByteFirst) {
    EXPECT_EQ("aufx", Text(type_of(seven)));
    EXPECT_EQ("Acme", Text(maker_of(seven)));
    EXPECT_EQ(std::string("\0\xFF\x80\x01", 4), Text(subtype_of(seven)));
    ExpectNothingDescribed();
}

TEST_F(Components, HaveNamesAndTextsOfThePlatformsBlocks) {
    EXPECT_EQ("Low Pass", Text(name_of(seven)));
    EXPECT_EQ(16, machine.firstSize);
    EXPECT_EQ("Cuts the top", Text(info_of(seven)));
    ExpectNothingDescribed();
    machine.name = std::string(255, '\xE9');
    EXPECT_EQ(machine.name, Text(name_of(seven))) << "the length byte has no sign";
}

TEST_F(Components, WithoutANameStillTellTheirMaker) {
    machine.name = "";
    EXPECT_THROW(name_of(seven), NoSuchObject);
    EXPECT_EQ("Cuts the top", Text(info_of(seven)));
    EXPECT_EQ("Acme", Text(maker_of(seven)));
    machine.info = "";
    EXPECT_THROW(info_of(seven), NoSuchObject);
}

TEST_F(Components, ThatCannotBeAskedAreThePlatformsFailure) {
    ComponentClass const none(8);
    EXPECT_EQ(-3000, Failure([&] { maker_of(none); }));
    EXPECT_EQ(-3000, Failure([&] { type_of(none); }));
    EXPECT_EQ(-3000, Failure([&] { subtype_of(none); }));
    EXPECT_EQ(-3000, Failure([&] { name_of(none); }));
    EXPECT_EQ(-3000, Failure([&] { info_of(none); }));
    machine.error = -50;
    EXPECT_EQ(-50, Failure([&] { name_of(seven); }));
}

TEST_F(Components, WantMemoryForTexts) {
    machine.hasMemory = false;
    EXPECT_THROW(name_of(seven), MemoryFullError);
    EXPECT_THROW(info_of(seven), MemoryFullError);
    EXPECT_EQ(-108, Failure([&] { name_of(seven); }));
    machine.hasMemory = true;
    machine.allocates = false;
    EXPECT_THROW(name_of(seven), std::bad_alloc) << "the block is disposed of, too";
}

TEST_F(Components, HaveVersionsOfTwoHalves) {
    machine.version = 0x00020001;
    MacVersion version = version_of(seven);
    EXPECT_EQ(2, version.major);
    EXPECT_EQ(1, version.minor);
    EXPECT_EQ(0, version.bugrev);
    EXPECT_EQ(0, version.stage);
    EXPECT_EQ(0, version.nonrel);
    EXPECT_EQ("", version.text);
    machine.version = 0x80008002;
    version = version_of(seven);
    EXPECT_EQ(0x8000, version.major) << "no value is an error";
    EXPECT_EQ(0x8002, version.minor);
}

TEST_F(Components, ThatCannotBeOpenedHaveNoVersion) {
    machine.opens = false;
    EXPECT_THROW(version_of(seven), NoSuchObject);
}

TEST_F(Components, ComeInThePlatformsOrder) {
    EXPECT_EQ(std::vector<Component>(), All()) << "none is registered";
    machine.registered = {3, 7, 0xFFFFFFFF};
    EXPECT_EQ(machine.registered, All());
    ExpectNothingDescribed();
}

TEST_F(Components, BeginAgainAtTheFirst) {
    machine.registered = {3, 7};
    ComponentIterator iterator;
    EXPECT_EQ(3u, iterator.First().Number());
    EXPECT_EQ(7u, iterator.Next().Number());
    EXPECT_THROW(iterator.Next(), NoSuchObject);
    EXPECT_THROW(iterator.Next(), NoSuchObject) << "the end stays the end";
    EXPECT_EQ(3u, iterator.First().Number());
}

// ---- The modules

namespace {

std::string const kComponents = "iterated property \"component\" \"components\": \"component\"";

std::string Row(std::string const& name) {
    return "property \"" + name + "\" \"" + name + "s\" of \"component\": \"" +
           (name == "version" ? "version" : "string") + "\"";
}

}  // namespace

TEST_F(Components, ModuleRegistersItsTableInOrder) {
    ExpectRows<ComponentsModule>({"type \"component\"", Row("maker"), Row("type"), Row("subtype"),
                                  Row("name"), Row("info"), Row("version")});
}

TEST_F(Components, IterationModuleRegistersItsTable) { ExpectRows<ComponentIterationModule>({kComponents}); }

TEST_F(Components, RowsLeadToTheirInspectors) {
    ComponentsModule const module;
    EXPECT_EQ(4u, RegisteredAs("type \"component\"").valueSize);
    EXPECT_EQ(nullptr, RegisteredAs("type \"component\"").fingerprint);
    auto const answer = [](std::string const& name) {
        Registration const one = RegisteredAs(Row(name));
        Slot<inspector_string> slot;
        one.get(slot, nullptr, &seven, nullptr, one.context);
        return Text(slot.Value());
    };
    EXPECT_EQ("Acme", answer("maker"));
    EXPECT_EQ("aufx", answer("type"));
    EXPECT_EQ(std::string("\0\xFF\x80\x01", 4), answer("subtype"));
    EXPECT_EQ("Low Pass", answer("name"));
    EXPECT_EQ("Cuts the top", answer("info"));
    machine.version = 0x00030004;
    Registration const version = RegisteredAs(Row("version"));
    Slot<MacVersion> slot;
    version.get(slot, nullptr, &seven, nullptr, version.context);
    EXPECT_EQ(3, slot.Value().major);
    EXPECT_EQ(4, slot.Value().minor);
    slot.End();
}

TEST_F(Components, IterationRowLeadsToItsSteps) {
    ComponentIterationModule const module;
    Registration const one = RegisteredAs(kComponents);
    EXPECT_EQ(4u, one.valueSize);
    machine.registered = {7, 9};
    ComponentIterator state;
    Slot<ComponentClass> slot;
    one.get(slot, nullptr, nullptr, &state, one.context);
    EXPECT_EQ(7u, slot.Value().Number());
    one.next(slot, nullptr, nullptr, &state, one.context);
    EXPECT_EQ(9u, slot.Value().Number());
}
