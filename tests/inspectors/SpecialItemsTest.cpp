// Items that are on or off, in folders of a made-up machine.

#include "system/SpecialItems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/EnableableFilesModule.h"
#include "modules/SpecialItemsModule.h"
#include "support/Variable.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

using ExtensionIterator = SpecialItemIterator<kExtensions, kDisabledExtensions>;
using Step = EnableableFile (SpecialItemIteratorBase::*)();

std::string Told(EnableableFile const& item) {
    EXPECT_NE(enabled_of(item), disabled_of(item));
    return Text(name_of(item)) + (enabled_of(item) ? " on" : " off");
}

std::vector<std::string> Walk(Step first, Step next) {
    ExtensionIterator iterator;
    std::vector<std::string> items;
    try {
        items.push_back(Told((iterator.*first)()));
        for (;;) items.push_back(Told((iterator.*next)()));
    } catch (NoSuchObject const&) {
        return items;
    }
}
std::vector<std::string> All() {
    return Walk(&SpecialItemIteratorBase::First, &SpecialItemIteratorBase::Next);
}
std::vector<std::string> Enabled() {
    return Walk(&SpecialItemIteratorBase::FirstEnabled, &SpecialItemIteratorBase::NextEnabled);
}
std::vector<std::string> Disabled() {
    return Walk(&SpecialItemIteratorBase::FirstDisabled, &SpecialItemIteratorBase::NextDisabled);
}

std::vector<std::string> Named(std::string_view name) {
    NamedSpecialItemIterator<kExtensions, kDisabledExtensions> iterator;
    std::vector<std::string> items;
    try {
        items.push_back(Told(iterator.First(Bytes(name), name.size())));
        for (;;) items.push_back(Told(iterator.Next(Bytes(name), name.size())));
    } catch (NoSuchObject const&) {
        return items;
    }
}

class SpecialItems : public FileSystem {
  protected:
    SpecialItems() {
        ClearSpecialFolderCaches(nullptr);
        here.MakeFolder("etc/zelq");
        std::string text;
        for (char const* const kind : {"extn", "ctrl", "strt", "shdf"})
            text += std::string("[") + kind + "]\nsystem = " + here.Path(kind) + "\n";
        here.Write("etc/zelq/folders.conf", text);
    }
    ~SpecialItems() override { ClearSpecialFolderCaches(nullptr); }

    void MakeItems(std::vector<std::string> const& enabled, std::vector<std::string> const& disabled) {
        here.MakeFolder("extn");
        here.MakeFolder("extn (Disabled)");
        for (std::string const& name : enabled) here.Write("extn/" + name);
        for (std::string const& name : disabled) here.Write("extn (Disabled)/" + name);
    }

    Variable const machine{"ZELQ_MACHINE_ROOT", here.Path()};
};

}  // namespace

TEST_F(SpecialItems, AreTheEnabledOnesAndThenTheDisabledOnes) {
    MakeItems({"a"}, {"b"});
    EXPECT_THAT(All(), ElementsAre("a on", "b off"));
    EXPECT_THAT(Enabled(), ElementsAre("a on"));
    EXPECT_THAT(Disabled(), ElementsAre("b off"));
}

TEST_F(SpecialItems, AreFilesOnly) {
    MakeItems({"a", "b"}, {});
    here.MakeFolder("extn/folder");
    EXPECT_THAT(All(), UnorderedElementsAre("a on", "b on"));
    EXPECT_THAT(Disabled(), IsEmpty());
}

TEST_F(SpecialItems, AreTheDisabledOnesWhereNoneIsEnabled) {
    MakeItems({}, {"b"});
    EXPECT_THAT(All(), ElementsAre("b off"));
    EXPECT_THAT(Enabled(), IsEmpty());
}

TEST_F(SpecialItems, AreTheDisabledOnesWhereTheFolderOfTheOthersIsMissing) {
    here.MakeFolder("extn (Disabled)");
    here.Write("extn (Disabled)/b");
    EXPECT_THAT(All(), ElementsAre("b off"));
    EXPECT_THAT(Enabled(), IsEmpty());
}

TEST_F(SpecialItems, AreNoneWithoutFolders) {
    EXPECT_THAT(All(), IsEmpty());
    EXPECT_THAT(Disabled(), IsEmpty());
}

TEST_F(SpecialItems, OfOneNameAreTheEnabledOneFirst) {
    MakeItems({"both", "on"}, {"both", "off"});
    EXPECT_THAT(Named("both"), ElementsAre("both on", "both off"));
    EXPECT_THAT(Named("on"), ElementsAre("on on"));
    EXPECT_THAT(Named("off"), ElementsAre("off off"));
    EXPECT_THAT(Named("neither"), IsEmpty());
    EXPECT_THAT(Named("a/b"), IsEmpty());
}

TEST_F(SpecialItems, OfOneNameEndWhereTheyHaveEnded) {
    MakeItems({}, {"off"});
    NamedSpecialItemIterator<kExtensions, kDisabledExtensions> iterator;
    iterator.First(Bytes("off"), 3);
    EXPECT_THROW(iterator.Next(Bytes("off"), 3), NoSuchObject);
    EXPECT_THROW(iterator.Next(Bytes("off"), 3), NoSuchObject);
}

TEST_F(SpecialItems, AreFiles) {
    MakeItems({"a"}, {});
    EnableableFile const item = ExtensionIterator().First();
    file const& asFile = item;
    EXPECT_EQ(here.Path("extn/a"), Path(asFile));
    EXPECT_EQ(static_cast<void const*>(&item), static_cast<void const*>(&asFile));
}

TEST_F(SpecialItems, OfEachKindAreFoundInItsFolders) {
    struct Kind {
        char const* folder;
        EnableableFile (*enabled)(unsigned char const*, unsigned long);
        EnableableFile (*disabled)(unsigned char const*, unsigned long);
    };
    Kind const kinds[] = {
        {"extn", Neex, Ndex}, {"ctrl", Necp, Ndcp}, {"strt", Nest, Ndst}, {"shdf", Nesd, Ndsd}};
    for (Kind const& kind : kinds) {
        std::string const enabled = kind.folder, disabled = enabled + " (Disabled)";
        here.MakeFolder(enabled);
        here.MakeFolder(disabled);
        here.Write(enabled + "/item");
        EXPECT_EQ(here.Path(enabled + "/item"), Path(kind.enabled(Bytes("item"), 4)));
        EXPECT_TRUE(enabled_of(kind.enabled(Bytes("item"), 4)));
        EXPECT_THROW(kind.disabled(Bytes("item"), 4), NoSuchObject);
        here.Write(disabled + "/item");
        EXPECT_EQ(here.Path(disabled + "/item"), Path(kind.disabled(Bytes("item"), 4)));
        EXPECT_TRUE(disabled_of(kind.disabled(Bytes("item"), 4)));
    }
}

// ---- The tables

TEST(EnableableFilesModule, RegistersItsTableInOrder) {
    ExpectRows<EnableableFilesModule>(
        {"type \"enableable_file\" based on \"file\"",
         "property \"enabled\" \"enableds\" of \"enableable_file\": \"boolean\"",
         "property \"disabled\" \"disableds\" of \"enableable_file\": \"boolean\""});
}

TEST_F(SpecialItems, AreEndedByTheirType) {
    MakeItems({"a"}, {});
    EnableableFilesModule const module;
    Registration const type = RegisteredAs("type \"enableable_file\" based on \"file\"");
    EXPECT_EQ(sizeof(EnableableFile), type.valueSize);
    Slot<EnableableFile> slot;
    new (slot) EnableableFile(ExtensionIterator().First());
    type.destroy(slot);
}

TEST(SpecialItemsModule, RegistersItsTableInOrder) {
    std::vector<std::string> rows;
    std::vector<std::string> const kinds{"extension", "control panel", "startup item", "shutdown item"};
    auto const phrases = [](std::string const& phrase) { return "\"" + phrase + "\" \"" + phrase + "s\""; };
    for (std::string const sub : {"", "enabled ", "disabled "}) {
        for (std::string const& kind : kinds)
            rows.push_back("iterated property " + phrases(sub + kind) + ": \"enableable_file\"");
    }
    for (std::string const& kind : kinds)
        rows.push_back("iterated property " + phrases(kind) + " [\"string\"]: \"enableable_file\"");
    for (std::string const sub : {"enabled ", "disabled "}) {
        for (std::string const& kind : kinds)
            rows.push_back("property " + phrases(sub + kind) + " [\"string\"]: \"enableable_file\"");
    }
    ExpectRows<SpecialItemsModule>(rows);
}
