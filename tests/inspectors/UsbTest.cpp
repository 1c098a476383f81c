// USB, against a program that stands in for the platform's Gestalt.

#include "system/Usb.h"

#include <Carbon/Gestalt.h>

#include <map>

#include "Evaluator/Exceptions.h"
#include "RegistrationLog.h"
#include "Slot.h"
#include "modules/UsbModule.h"

namespace {

std::map<OSType, std::uint32_t> answers;
std::map<OSType, OSErr> failures;
std::vector<OSType> asked;

}  // namespace

OSErr Gestalt(OSType selector, SInt32* response) {
    asked.push_back(selector);
    if (failures.contains(selector)) return failures[selector];
    auto const found = answers.find(selector);
    if (found == answers.end()) return gestaltUndefSelectorErr;
    *response = static_cast<SInt32>(found->second);
    return noErr;
}

namespace {

constexpr OSType kUsb = 0x75736220, kUsbVersion = 0x75736276;

// A test with answers of its own.
class Usb : public testing::Test {
  protected:
    ~Usb() override {
        answers.clear();
        failures.clear();
        asked.clear();
    }
};

}  // namespace

TEST_F(Usb, IsThereWhenTheFirstBitIsSet) {
    for (std::uint32_t const present : {1u, 3u, 0x80000001u}) {
        answers[kUsb] = present;
        EXPECT_EQ(present, usb_of().attributes);
    }
    for (std::uint32_t const absent : {0u, 2u, 0x80000000u, ~1u}) {
        answers[kUsb] = absent;
        EXPECT_THROW(usb_of(), NoSuchObject) << absent;
    }
    EXPECT_EQ(std::vector<OSType>(7, kUsb), asked);
}

TEST_F(Usb, FailsAsTheAnswerDoes) {
    EXPECT_THROW(usb_of(), NoSuchObject);
    EXPECT_THROW(usb_version_of(usb{3}), NoSuchObject);
    failures = {{kUsb, gestaltUnknownErr}, {kUsbVersion, paramErr}};
    for (auto const& [code, ask] : {std::pair(
                                        -5550, +[] { usb_of(); }),
                                    {-50, +[] { usb_version_of({3}); }}}) {
        try {
            ask();
            ADD_FAILURE() << code;
        } catch (OSError const& error) {
            EXPECT_EQ(code, error.Code());
        }
    }
}

TEST_F(Usb, VersionIsAllOfTheWord) {
    answers[kUsbVersion] = 0x01108000;
    MacVersion const version = usb_version_of(usb{3});
    EXPECT_EQ(1, version.major);
    EXPECT_EQ(1, version.minor);
    EXPECT_EQ(0, version.bugrev);
    EXPECT_EQ(0x80, version.stage);
    EXPECT_EQ(0, version.nonrel);
    EXPECT_EQ("", version.text);
    answers[kUsbVersion] = 0x12345678;
    MacVersion const other = usb_version_of(usb{3});
    EXPECT_EQ(12, other.major);
    EXPECT_EQ(3, other.minor);
    EXPECT_EQ(4, other.bugrev);
    EXPECT_EQ(0x56, other.stage);
    EXPECT_EQ(0x78, other.nonrel);
}

TEST_F(Usb, VersionIsAskedForAnew) {
    answers[kUsb] = 3;
    answers[kUsbVersion] = 0x02008000;
    usb const support = usb_of();
    EXPECT_EQ(2, usb_version_of(support).major);
    answers[kUsbVersion] = 0x03108000;
    EXPECT_EQ(3, usb_version_of(support).major);
    EXPECT_EQ((std::vector{kUsb, kUsbVersion, kUsbVersion}), asked);
}

TEST_F(Usb, IsIsochronousByTheSecondBit) {
    EXPECT_TRUE(isoch_of(usb{3}));
    EXPECT_TRUE(isoch_of(usb{2}));
    EXPECT_FALSE(isoch_of(usb{1}));
    EXPECT_FALSE(isoch_of(usb{~2u}));
    EXPECT_TRUE(asked.empty());
}

TEST(UsbModule, RegistersItsTableInOrder) {
    ExpectRows<UsbModule>({"type \"usb\"", "property \"usb\" \"usbs\": \"usb\"",
                           "property \"version\" \"versions\" of \"usb\": \"version\"",
                           "property \"isochronous\" \"isochronouses\" of \"usb\": \"boolean\""});
    UsbModule const module;
    EXPECT_EQ(4u, RegisteredAs("type \"usb\"").valueSize);
}

TEST_F(Usb, RowsLeadToTheirInspectors) {
    UsbModule const module;
    answers[kUsb] = 1;
    answers[kUsbVersion] = 0x02008000;
    Registration const all = RegisteredAs("property \"usb\" \"usbs\": \"usb\"");
    Registration const version = RegisteredAs("property \"version\" \"versions\" of \"usb\": \"version\"");
    Registration const isochronous =
        RegisteredAs("property \"isochronous\" \"isochronouses\" of \"usb\": \"boolean\"");
    Slot<usb> support;
    all.get(support, nullptr, nullptr, nullptr, all.context);
    EXPECT_EQ(1u, support.Value().attributes);
    Slot<MacVersion> number;
    version.get(number, nullptr, support, nullptr, version.context);
    EXPECT_EQ(2, number.Value().major);
    number.End();
    Slot<boolean> truth;
    isochronous.get(truth, nullptr, support, nullptr, isochronous.context);
    EXPECT_FALSE(truth.Value());
}
