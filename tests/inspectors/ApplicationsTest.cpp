// The applications of creator codes, on a machine of the test's.

#include "system/Applications.h"

#include "RegistrationLog.h"
#include "Slot.h"
#include "filesystem/Asking.h"
#include "modules/ApplicationsModule.h"
#include "platform/OwnApplications.h"

namespace {

class PrimaryApplications : public OwnApplications {
  protected:
    PrimaryApplications() {
        Write("machine/etc/zelq/folders.conf",
              "[apps]\nlocal = " + here.Path("apps") + "\nsystem =\nnetwork =\nuser =\n");
    }
    static file Of(std::string_view creator) { return application_of(Bytes(creator), creator.size()); }
};

}  // namespace

TEST(ApplicationsModule, RegistersItsTableInOrder) {
    ExpectRows<ApplicationsModule>(
        {"property \"primary application\" \"primary applications\" [\"string\"]: \"file\""});
}

TEST_F(PrimaryApplications, RowLeadsToTheInspector) {
    AddEntry(own, "a.desktop", "X-Creator-Code=abcd\n");
    ApplicationsModule const module;
    Registration const one =
        RegisteredAs("property \"primary application\" \"primary applications\" [\"string\"]: \"file\"");
    inspector_string const code(Bytes("abcd"), 4);
    Slot<file> slot;
    one.get(slot, &code, nullptr, nullptr, one.context);
    EXPECT_EQ(program, Path(slot.Value()));
    slot.End();
}

TEST_F(PrimaryApplications, AreBundlesOrPrograms) {
    AddEntry(own, "a.desktop", "X-Creator-Code=abcd\n");
    Write("apps/E.app/Contents/PkgInfo", "APPLefgh");
    EXPECT_EQ(program, Path(Of("abcd")));
    EXPECT_EQ(here.Path("apps/E.app"), Path(Of("efgh")));
    EXPECT_TRUE(Of("efgh").Info().IsFolder());
}

TEST_F(PrimaryApplications, CodesAreFourBytesOfAnyKind) {
    AddEntry(own, "a.desktop", "X-Creator-Code=\xFF\xC3\xA9\\s\n");
    EXPECT_EQ(program, Path(Of("\xFF\xC3\xA9 ")));
    for (std::string_view const code : {"", "abc", "abcde", "\xC3\xA9\xC3\xA9\xC3\xA9"})
        EXPECT_THROW(Of(code), NoSuchObject) << code;
}

TEST_F(PrimaryApplications, OfNobodysCodesAreNotFound) {
    EXPECT_THROW(Of("none"), FileNotFoundError);
    EXPECT_THROW(Of("????"), FileNotFoundError);
    EXPECT_THROW(Of(std::string_view("\0\0\0\0", 4)), FileNotFoundError);
}

TEST_F(PrimaryApplications, AreNotFoundWhereThePlatformFails) {
    Write("machine/etc/zelq/folders.conf", "[apps]\nnonsense\n");
    EXPECT_THROW(Of("abcd"), FileNotFoundError);
}
