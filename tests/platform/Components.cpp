#include <Carbon/Components.h>
#include <Platform/Items.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "components/ComponentRegistry.h"
#include "platform/OwnHome.h"

namespace {

constexpr OSType kAufx = 0x61756678, kLowp = 0x6C6F7770, kAcme = 0x41636D65;  // 'aufx', 'lowp', 'Acme'

std::string Key(std::string const& name, std::string const& value) {
    return "<key>" + name + "</key><string>" + value + "</string>";
}
std::string Number(std::string const& name, std::string const& value) {
    return "<key>" + name + "</key><integer>" + value + "</integer>";
}

// An entry with codes, and more.
std::string Entry(std::string const& more = {}, std::string const& type = "aufx") {
    return "<dict>" + Key("type", type) + Key("subtype", "lowp") + Key("manufacturer", "Acme") + more +
           "</dict>";
}

class Components : public OwnHome {
  protected:
    Components() {
        Write("machine/etc/zelq/folders.conf",
              "[cmpd]\nuser = " + here.Path("user") + "\nlocal = " + here.Path("local") +
                  "\nnetwork = " + here.Path("network") + "\nsystem = " + here.Path("system") + "\n");
    }

    // A bundle, by its path without the end, with entries.
    void Install(std::string const& bundle, std::string const& entries) const {
        Write(bundle + ".component/Contents/Info.plist",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>" +
                  Key("CFBundleIdentifier", "com.acme") + "<key>AudioComponents</key><array>" + entries +
                  "</array></dict></plist>");
    }
    void Remove(std::string const& bundle) const {
        std::filesystem::remove_all(here.Path(bundle + ".component"));
    }
};

// The text in a block, by its length byte; nothing where the block has another size.
std::optional<std::string> TextIn(Handle handle) {
    auto const length = static_cast<unsigned char>(**handle);
    if (GetHandleSize(handle) != length + 1) return std::nullopt;
    return std::string(*handle + 1, length);
}

// Name and information text, as they are got with handles of 16 bytes.
struct Texts {
    OSErr error;
    std::optional<std::string> name, info;
};
Texts TextsOf(Component component) {
    Handle const name = NewHandle(16), info = NewHandle(16);
    OSErr const error = GetComponentInfo(component, nullptr, name, info, nullptr);
    Texts const texts{error, TextIn(name), TextIn(info)};
    DisposeHandle(name);
    DisposeHandle(info);
    return texts;
}
std::string NameOf(Component component) { return TextsOf(component).name.value_or("no text"); }

ComponentDescription DescriptionOf(Component component) {
    ComponentDescription description{1, 2, 3, 4, 5};
    EXPECT_EQ(noErr, GetComponentInfo(component, &description, nullptr, nullptr, nullptr));
    return description;
}

UInt32 VersionOf(Component component) {
    ComponentInstance const instance = OpenComponent(component);
    auto const version = static_cast<UInt32>(GetComponentVersion(instance));
    EXPECT_EQ(noErr, CloseComponent(instance));
    return version;
}

std::vector<Component> All(ComponentDescription const* looking = nullptr) {
    std::vector<Component> components;
    for (Component one = FindNextComponent(0, looking); one != 0; one = FindNextComponent(one, looking))
        components.push_back(one);
    return components;
}
std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (Component const component : All()) names.push_back(NameOf(component));
    return names;
}
using Strings = std::vector<std::string>;

}  // namespace

TEST_F(Components, AreThoseThatBundlesName) {
    Install("user/Filter", Entry(Key("name", "Acme: Low Pass") + Key("description", "Cuts the top") +
                                 Number("version", "131073")));
    auto const components = All();
    ASSERT_EQ(1u, components.size());
    ComponentDescription const description = DescriptionOf(components[0]);
    EXPECT_EQ(kAufx, description.componentType);
    EXPECT_EQ(kLowp, description.componentSubType);
    EXPECT_EQ(kAcme, description.componentManufacturer);
    EXPECT_EQ(0u, description.componentFlags);
    EXPECT_EQ(0u, description.componentFlagsMask);
    Texts const texts = TextsOf(components[0]);
    EXPECT_EQ("Acme: Low Pass", texts.name);
    EXPECT_EQ("Cuts the top", texts.info);
    EXPECT_EQ(0x00020001u, VersionOf(components[0]));
}

TEST_F(Components, WhereThereAreNoneAreNone) { EXPECT_EQ(0u, FindNextComponent(0, nullptr)); }

TEST_F(Components, AreInTheOrderOfDomainsThenOfNamesThenOfTheirArrays) {
    Install("system/A", Entry(Key("name", "system")));
    Install("network/A", Entry(Key("name", "network")));
    Install("local/A", Entry(Key("name", "local")));
    Install("user/b", Entry(Key("name", "b")));
    Install("user/a", Entry(Key("name", "a 2")) + Entry(Key("name", "a 1")));
    Install("user/B", Entry(Key("name", "B")));
    EXPECT_EQ((Strings{"B", "a 2", "a 1", "b", "local", "network", "system"}), Names());
}

TEST_F(Components, AreOfBundlesDirectlyInTheFolders) {
    Install("user/in/Inner", Entry());
    Install("user/Other.bundle/../Other", Entry(Key("name", "other")));
    Write("user/File.component", "no folder");
    Write("user/Plain.component/readme", "no bundle");
    std::filesystem::rename(here.Path("user/Other.component"), here.Path("user/Other.plugin"));
    EXPECT_EQ(Strings(), Names());
    std::filesystem::rename(here.Path("user/Other.plugin"), here.Path("user/Other.component"));
    EXPECT_EQ(Strings{"other"}, Names());
}

TEST_F(Components, OfAFolderThatTwoDomainsShareCountOnce) {
    Install("user/Filter", Entry(Key("name", "once")));
    std::filesystem::create_directory_symlink(here.Path("user"), here.Path("local"));
    EXPECT_EQ(Strings{"once"}, Names());
}

TEST_F(Components, WithoutGoodCodesArePassedOver) {
    std::string const rest = Key("subtype", "lowp") + Key("manufacturer", "Acme");
    Install("user/Filter", "<string>no dictionary</string><dict/><dict>" + rest + "</dict><dict>" +
                               Number("type", "1635083896") + rest + "</dict>" + Entry({}, "auf") +
                               Entry({}, "aufxx") + Entry({}, "auf\xE2\x88\xB4") +
                               Entry({}, "auf\xF0\x9F\x98\x80") + Entry(Key("name", "good")) + "<dict>" +
                               Key("type", "aufx") + Key("manufacturer", "Acme") + "</dict><dict>" +
                               Key("type", "aufx") + Key("subtype", "lowp") + "</dict>");
    EXPECT_EQ(Strings{"good"}, Names());
}

TEST_F(Components, HaveCodesInMacRoman) {
    Install("user/Filter", Entry({}, "a\xC6\x92\xC3\xBC "));
    EXPECT_EQ(0x61C49F20u, DescriptionOf(All().at(0)).componentType);
}

TEST_F(Components, OfNoArrayAreNone) {
    Write("user/Filter.component/Contents/Info.plist",
          "<plist version=\"1.0\"><dict>" + Key("AudioComponents", "none") + "</dict></plist>");
    Write("user/Broken.component/Contents/Info.plist", "<plist");
    EXPECT_EQ(Strings(), Names());
}

TEST_F(Components, HaveVersionsOf32Bits) {
    Install("user/Filter", Entry() + Entry(Key("version", "1")) + Entry(Number("version", "4294967295")) +
                               Entry(Number("version", "4294967296")) + Entry(Number("version", "-1")) +
                               Entry(Number("version", "-2147483649")) +
                               Entry("<key>version</key><real>1.5</real>"));
    auto const components = All();
    ASSERT_EQ(7u, components.size());
    EXPECT_EQ(0u, VersionOf(components[0]));
    EXPECT_EQ(0u, VersionOf(components[1]));
    EXPECT_EQ(0xFFFFFFFFu, VersionOf(components[2]));
    EXPECT_EQ(0u, VersionOf(components[3]));
    EXPECT_EQ(0xFFFFFFFFu, VersionOf(components[4]));
    EXPECT_EQ(0u, VersionOf(components[5]));
    EXPECT_EQ(0u, VersionOf(components[6])) << "it is no whole number";
}

TEST_F(Components, HaveTextsCutAtACharactersEnd) {
    std::string const ascii(255, 'n');
    Install("user/Filter",
            Entry(Key("name", ascii) + Key("description", ascii + "n")) +
                Entry(Key("name", ascii.substr(1) + "\xC3\xA9") + Key("description", "\xC3\xA9")) + Entry());
    auto const components = All();
    ASSERT_EQ(3u, components.size());
    EXPECT_EQ(ascii, TextsOf(components[0]).name);
    EXPECT_EQ(ascii, TextsOf(components[0]).info);
    EXPECT_EQ(ascii.substr(1), TextsOf(components[1]).name);
    EXPECT_EQ("\xC3\xA9", TextsOf(components[1]).info);
    EXPECT_EQ("", TextsOf(components[2]).name) << "one byte of value 0";
    EXPECT_EQ("", TextsOf(components[2]).info);
}

TEST_F(Components, AreFoundAsDescribed) {
    Install("user/Filter", Entry({}, "aumu") + Entry() + Entry());
    auto const components = All();
    ASSERT_EQ(3u, components.size());
    ComponentDescription looking{};
    EXPECT_EQ(components, All(&looking)) << "0 is any";
    looking.componentType = kAufx;
    EXPECT_EQ(std::vector(components.begin() + 1, components.end()), All(&looking));
    looking.componentSubType = kLowp;
    looking.componentManufacturer = kAcme;
    EXPECT_EQ(2u, All(&looking).size());
    looking.componentFlags = 1;
    EXPECT_EQ(2u, All(&looking).size()) << "of the flags none counts";
    looking.componentFlagsMask = 1;
    EXPECT_EQ(0u, All(&looking).size());
    looking = {0, kAcme, 0, 0, 0};
    EXPECT_EQ(0u, All(&looking).size());
    looking = {0, 0, kLowp, 0, 0};
    EXPECT_EQ(0u, All(&looking).size());
}

TEST_F(Components, KeepTheirNumbersAndNobodyElseGetsThem) {
    Install("user/b", Entry(Key("name", "first")));
    Component const first = All().at(0);
    Install("user/a", Entry(Key("name", "second")));
    auto components = All();
    ASSERT_EQ(2u, components.size());
    EXPECT_EQ(first, components[0]) << "the number counts before the order of the folders";
    Component const second = components[1];
    EXPECT_GT(second, first);

    Remove("user/b");
    EXPECT_EQ(std::vector{second}, All());
    EXPECT_EQ(invalidComponentID, GetComponentInfo(first, nullptr, nullptr, nullptr, nullptr));
    Install("user/b", Entry(Key("name", "again")));
    components = All();
    ASSERT_EQ(2u, components.size());
    EXPECT_EQ(second, components[0]);
    EXPECT_GT(components[1], second);
}

TEST_F(Components, OfOtherCodesAreOthersWhereverTheyAreNamed) {
    Install("user/a", Entry(Key("name", "low")) + Entry());
    auto const before = All();
    ASSERT_EQ(2u, before.size());
    Install("user/a", Entry(Key("name", "synthesizer"), "aumu") + Entry());
    auto const after = All();
    ASSERT_EQ(2u, after.size());
    EXPECT_EQ(before[1], after[0]) << "the number counts before the place in the array";
    EXPECT_GT(after[1], before[1]);
    EXPECT_EQ("synthesizer", NameOf(after[1]));
    EXPECT_EQ(invalidComponentID, GetComponentInfo(before[0], nullptr, nullptr, nullptr, nullptr));
}

TEST_F(Components, AreReadAnewByEachList) {
    Install("user/a", Entry(Key("name", "old")));
    Component const component = All().at(0);
    Install("user/a", Entry(Key("name", "new")));
    EXPECT_EQ("old", NameOf(component));
    EXPECT_EQ(std::vector{component}, All());
    EXPECT_EQ("new", NameOf(component));
}

TEST_F(Components, GoOnBehindOneThatHasGone) {
    Install("user/a", Entry());
    Install("user/b", Entry());
    Install("user/c", Entry());
    auto const components = All();
    ASSERT_EQ(3u, components.size());
    Remove("user/b");
    All();
    EXPECT_EQ(components[2], FindNextComponent(components[1], nullptr));
    EXPECT_EQ(0u, FindNextComponent(components[2], nullptr));
}

TEST_F(Components, ThatAreNoneAreNotValid) {
    for (Component const none : {Component{0}, Component{0xFFFFFFFF}}) {
        EXPECT_EQ(invalidComponentID, GetComponentInfo(none, nullptr, nullptr, nullptr, nullptr));
        EXPECT_EQ(nullptr, OpenComponent(none));
    }
}

TEST_F(Components, WantHandlesOfBlocks) {
    Install("user/a", Entry(Key("name", "a name that is longer than the block is")));
    Component const component = All().at(0);
    auto const wild = reinterpret_cast<Handle>(std::uintptr_t{0x10});
    Handle const icon = NewHandle(16);
    EXPECT_EQ(memWZErr, GetComponentInfo(component, nullptr, wild, nullptr, icon));
    EXPECT_EQ(memWZErr, GetComponentInfo(component, nullptr, nullptr, wild, icon));
    EXPECT_EQ(memWZErr, GetComponentInfo(component, nullptr, icon, nullptr, wild));
    EXPECT_EQ(16, GetHandleSize(icon)) << "on a failure nothing changes";
    EXPECT_EQ(noErr, GetComponentInfo(component, nullptr, nullptr, nullptr, icon));
    EXPECT_EQ(0, GetHandleSize(icon));
    DisposeHandle(icon);
}

TEST_F(Components, HaveInstancesThatEndOnce) {
    Install("user/a", Entry(Number("version", "5")));
    Component const component = All().at(0);
    ComponentInstance const one = OpenComponent(component), other = OpenComponent(component);
    EXPECT_NE(one, other);
    Remove("user/a");
    All();
    EXPECT_EQ(5, GetComponentVersion(one)) << "as it was when it was opened";
    EXPECT_EQ(noErr, CloseComponent(one));
    EXPECT_EQ(invalidComponentID, CloseComponent(one));
    EXPECT_EQ(badComponentInstance, GetComponentVersion(one));
    EXPECT_EQ(0x80008001u, static_cast<UInt32>(GetComponentVersion(nullptr)));
    EXPECT_EQ(noErr, CloseComponent(other));
}

TEST_F(Components, AreListedWhileTheHostWants) {
    for (int i = 0; i < 50; ++i) Install("user/" + std::to_string(i), Entry());
    Component const first = All().at(0);
    static int left;
    left = 20;
    PlatformSetCheckIn([](UInt32) -> Boolean { return left-- > 0; });
    Component const found = FindNextComponent(0, nullptr);
    PlatformSetCheckIn(nullptr);
    EXPECT_EQ(0u, found);
    EXPECT_EQ(-1, left) << "asked for each bundle, and not again";
    EXPECT_EQ(first, FindNextComponent(0, nullptr)) << "what was known is known still";
}

TEST_F(Components, OfATableWithMistakesAreNoneAndTheMistakeIsTold) {
    Install("user/a", Entry());
    Write("machine/etc/zelq/folders.conf", "[cmpd\n");
    EXPECT_EQ(0u, FindNextComponent(0, nullptr));
    char file[1000], reason[1000];
    EXPECT_TRUE(PlatformSettingsFailure(file, sizeof file, reason, sizeof reason));
    EXPECT_EQ(here.Path("machine/etc/zelq/folders.conf"), file);
    PlatformForgetFileFailure();
}

TEST_F(Components, OfASpoiltListAreNoneAndTheMistakeIsTold) {
    Write("user/Broken.component/Contents/Info.plist", "<plist");
    EXPECT_EQ(0u, FindNextComponent(0, nullptr));
    char file[1000], reason[1000];
    EXPECT_TRUE(PlatformPropertyListFailure(file, sizeof file, reason, sizeof reason));
    EXPECT_EQ(here.Path("user/Broken.component/Contents/Info.plist"), file);
    PlatformForgetFileFailure();
    Install("user/Filter", Entry());
    EXPECT_NE(0u, FindNextComponent(0, nullptr));
    EXPECT_FALSE(PlatformPropertyListFailure(file, sizeof file, reason, sizeof reason))
        << "it explains nothing about the components that are there";
}

TEST_F(Components, OfFoldersThatAreNotThereAreNoFailure) {
    Write("user/File.component", "no folder");
    here.Link("user/Gone.component", "nowhere");
    EXPECT_EQ(0u, FindNextComponent(0, nullptr));
    EXPECT_EQ(noErr, PlatformFileFailure(nullptr, 0));
}

TEST(ComponentRegistry, ForgetsWhatHasGone) {
    Platform::ComponentRegistry registry;
    for (int i = 0; i < 100; ++i) {
        Platform::NamedComponent component;
        component.place.bundle = "/bundle " + std::to_string(i);
        registry.Set({component});
        EXPECT_EQ(static_cast<Component>(i + 1), registry.FindBehind(0, {}));
        EXPECT_EQ(0u, registry.FindBehind(static_cast<Component>(i + 1), {}));
        EXPECT_FALSE(registry.Find(static_cast<Component>(i)));
    }
}
