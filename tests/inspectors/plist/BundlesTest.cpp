// Bundles, against a program that stands in for the platform's: it knows one bundle, of the folder "known"
// and of the identifier "org.example.known".

#include "plist/Bundles.h"

#include <optional>

#include "filesystem/Asking.h"
#include "plist/Dictionaries.h"
#include "plist/Lists.h"

namespace {

// Any object can stand for a bundle, whose references alone are looked at.
List const* known = nullptr;
CFDictionaryRef global = nullptr, local = nullptr;
UInt32 number = 0, packageType = 0, packageCreator = 0;

CFBundleRef Known() { return static_cast<CFBundleRef>(const_cast<void*>(known->Root())); }

bool Is(CFStringRef text, std::string_view name) {
    Owned<CFStringRef> const other(NewString(name, kCFStringEncodingMacRoman));
    return CFEqual(text, other) != 0;
}

}  // namespace

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
    Owned<CFStringRef> const name(CFURLCopyLastPathComponent(url));
    if (!Is(name, "known")) return nullptr;
    CFRetain(Known());
    return Known();
}
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
    return Is(identifier, "org.example.known") || Is(identifier, "caf\x8e") ? Known() : nullptr;
}
CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef) { return global; }
CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef) { return local; }
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef, CFStringRef key) {
    return CFDictionaryGetValue(global, key);
}
UInt32 CFBundleGetVersionNumber(CFBundleRef) { return number; }
void CFBundleGetPackageInfo(CFBundleRef, UInt32* type, UInt32* creator) {
    *type = packageType;
    *creator = packageCreator;
}

namespace {

std::string Shown(MacVersion const& version) {
    return std::to_string(version.major) + " " + std::to_string(version.minor) + " " +
           std::to_string(version.bugrev) + " stage " + std::to_string(version.stage) + " number " +
           std::to_string(version.nonrel) + " \"" + version.text + "\"";
}

class Bundles : public FileSystem {
  protected:
    Bundles() {
        known = &identity;
        here.MakeFolder("known");
        here.MakeFolder("other");
        SetInformation("");
        local = nullptr;
        number = packageType = packageCreator = 0;
    }
    // Gives the bundle an information dictionary of these keys and values.
    void SetInformation(std::string const& entries) {
        information.emplace("<dict>" + entries + "</dict>");
        global = static_cast<CFDictionaryRef>(information->Root());
    }
    void SetLocal(std::string const& entries) {
        localInformation.emplace("<dict>" + entries + "</dict>");
        local = static_cast<CFDictionaryRef>(localInformation->Root());
    }
    Bundle Of(std::string_view name) const { return bundle_of(FolderNamed(name, Here())); }
    Bundle Known() const { return Of("known"); }
    static Bundle Named(std::string_view name) { return bundle_named(Bytes(name), name.size()); }

    List const identity{"<string>the bundle</string>"};
    std::optional<List> information, localInformation;
};

char const kKeys[] =
    "<key>CFBundleShortVersionString</key><string>2.5b3</string>"
    "<key>CFBundleVersion</key><string>10.4.1</string>";

TEST_F(Bundles, OfFoldersAreOwned) {
    CFIndex const before = identity.Count();
    {
        Bundle const bundle = Of("known");
        Bundle const copy(bundle);
        EXPECT_EQ(before + 1, identity.Count());
    }
    EXPECT_EQ(before, identity.Count());
}

TEST_F(Bundles, AreNotOfOtherFolders) { EXPECT_THROW(Of("other"), NoSuchObject); }

TEST_F(Bundles, ByTheirIdentifiersAreRetained) {
    CFIndex const before = identity.Count();
    {
        Bundle const bundle = Named("org.example.known");
        Bundle const copy(bundle);
        EXPECT_EQ(before + 1, identity.Count());
    }
    EXPECT_EQ(before, identity.Count());
}

TEST_F(Bundles, HaveIdentifiersInMacRoman) {
    Named("caf\x8e");
    EXPECT_THROW(Named("caf\u00e9"), NoSuchObject);
}

TEST_F(Bundles, OfUnknownIdentifiersAreNone) {
    EXPECT_THROW(Named("org.example.unknown"), NoSuchObject);
    EXPECT_THROW(Named(""), NoSuchObject);
}

TEST_F(Bundles, OfANegativeLengthAreNone) {
    EXPECT_THROW(bundle_named(Bytes("x"), static_cast<unsigned long>(-1)), NoSuchObject);
}

TEST_F(Bundles, TakeTheirVersionsFromTheNumber) {
    SetInformation(kKeys);
    number = 0x01234567;
    EXPECT_EQ("1 2 3 stage 0 number 0 \"\"", Shown(version_of(Known())));
    EXPECT_EQ("1 2 3 stage 69 number 103 \"\"", Shown(bundle_version_of(Known())));
}

TEST_F(Bundles, HaveAMajorRevisionOfTwoDigits) {
    number = 0x99F08000;
    EXPECT_EQ("99 15 0 stage 0 number 0 \"\"", Shown(version_of(Known())));
    EXPECT_EQ("99 15 0 stage 128 number 0 \"\"", Shown(bundle_version_of(Known())));
    number = 0xFF0FFFFF;
    EXPECT_EQ("165 0 15 stage 0 number 0 \"\"", Shown(version_of(Known())));
    EXPECT_EQ("165 0 15 stage 255 number 255 \"\"", Shown(bundle_version_of(Known())));
}

TEST_F(Bundles, TakeTheirVersionsFromTheNumberEvenIfOnlyItsStageIsThere) {
    SetInformation(kKeys);
    number = 1;
    EXPECT_EQ("0 0 0 stage 0 number 0 \"\"", Shown(version_of(Known())));
    EXPECT_EQ("0 0 0 stage 0 number 1 \"\"", Shown(bundle_version_of(Known())));
}

TEST_F(Bundles, TakeTheirVersionsFromTheTextsElse) {
    SetInformation(kKeys);
    EXPECT_EQ("2.5b3", VersionToString(version_of(Known())));
    EXPECT_EQ("10.4.1", VersionToString(bundle_version_of(Known())));
}

TEST_F(Bundles, MayHaveATextualVersion) {
    SetInformation("<key>CFBundleVersion</key><string>caf\u00e9 build</string>");
    EXPECT_EQ("caf\x8e build", bundle_version_of(Known()).text);
}

TEST_F(Bundles, WithoutTheTextHaveNoVersion) {
    SetInformation("<key>CFBundleVersion</key><string>1</string>");
    EXPECT_THROW(version_of(Known()), NoSuchObject);
    SetInformation("<key>CFBundleShortVersionString</key><string>1</string>");
    EXPECT_THROW(bundle_version_of(Known()), NoSuchObject);
}

TEST_F(Bundles, WithAVersionThatIsNoTextFail) {
    SetInformation("<key>CFBundleShortVersionString</key><real>2.5</real><key>CFBundleVersion</key><array/>");
    EXPECT_THROW(version_of(Known()), CFCastError<__CFString const*>);
    EXPECT_THROW(bundle_version_of(Known()), GenericCFCastError);
}

TEST_F(Bundles, HaveTheTypeAndTheCreatorOfThePackage) {
    packageType = 0x4150504C;
    packageCreator = 0x3F3F3F3F;
    EXPECT_EQ(0x4150504Cu, type_of(Known()).code);
    EXPECT_EQ(0x3F3F3F3Fu, creator_of(Known()).code);
}

TEST_F(Bundles, GiveTheirDictionariesWithAReferenceOfTheirOwn) {
    SetInformation("<key>a</key><integer>1</integer>");
    SetLocal("<key>a</key><integer>2</integer>");
    CFIndex const before = information->Count(), beforeLocal = localInformation->Count();
    {
        OSXDictionary const whole = global_dictionary_of(Known()), own = local_dictionary_of(Known());
        EXPECT_EQ(1, integer_of_dictionary(Bytes("a"), 1, whole));
        EXPECT_EQ(2, integer_of_dictionary(Bytes("a"), 1, own));
        EXPECT_EQ(before + 1, information->Count());
        EXPECT_EQ(beforeLocal + 1, localInformation->Count());
    }
    EXPECT_EQ(before, information->Count());
    EXPECT_EQ(beforeLocal, localInformation->Count());
}

TEST_F(Bundles, WithoutADictionaryHaveNone) {
    global = local = nullptr;
    EXPECT_THROW(global_dictionary_of(Known()), NoSuchObject);
    EXPECT_THROW(local_dictionary_of(Known()), NoSuchObject);
}

TEST_F(Bundles, WithoutADictionarySayWhichIsMissing) {
    global = local = nullptr;
    EXPECT_THROW(BundleGetInfoDictionary(::Known()), CFBundleGetInfoDictionaryFailed);
    EXPECT_THROW(BundleGetLocalInfoDictionary(::Known()), CFBundleGetLocalInfoDictionaryFailed);
}

TEST_F(Bundles, LeaveTheCountsAsTheyWere) {
    SetInformation(
        "<key>CFBundleShortVersionString</key><string>1</string><key>CFBundleVersion</key><true/>");
    CFIndex const before = identity.Count(), beforeInformation = information->Count();
    version_of(Known());
    EXPECT_THROW(bundle_version_of(Known()), GenericCFCastError);
    type_of(Known());
    creator_of(Known());
    EXPECT_EQ(before, identity.Count());
    EXPECT_EQ(beforeInformation, information->Count());
}

}  // namespace
