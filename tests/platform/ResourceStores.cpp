// Where resource forks are found, and which files have one.

#include <sys/stat.h>

#include "platform/ResourceVerbs.h"
#include "support/Unprivileged.h"

namespace {

std::string ForkWith(std::string const& text) { return BuildFork({{"vers", 1, text}}).bytes; }

// To a link, not to what it leads to.
FSRef ReferenceToItself(std::string const& link) {
    FSRef reference{};
    EXPECT_EQ(noErr, FSPathMakeRefWithOptions(Bytes(link.c_str()), kFSPathMakeRefDoNotFollowLeafSymlink,
                                              &reference, nullptr));
    return reference;
}

constexpr char const* kTrailing = "user.DosStream.AFP_Resource:$DATA";  // with a byte behind the value

class ResourceStores : public ResourceTest {
  protected:
    void SetFork(char const* attribute, std::string fork) const {
        if (attribute == kTrailing) fork += '\0';
        here.SetAttribute("file", attribute, fork);
    }
};

}  // namespace

// ---- Stores

TEST_F(ResourceStores, AttributesHoldThem) {
    for (char const* attribute :
         {"user.com.apple.ResourceFork", "user.AFP_Resource", "user.org.netatalk.ResourceFork", kTrailing}) {
        std::string const path = here.Write("file");
        SetFork(attribute, ForkWith(attribute));
        EXPECT_EQ(attribute, VersionOf(path));
        std::filesystem::remove(path);
    }
}

TEST_F(ResourceStores, TrailingByteOfAnAttributeIsNotPartOfThem) {
    std::string const path = here.Write("file");
    BuiltFork const fork = BuildFork({{"vers", 1, "one"}});
    std::uint64_t const length = fork.bytes.size() - fork.data;
    SetFork(kTrailing, fork.With(kDataLength, length, 4).bytes);
    EXPECT_EQ("one", VersionOf(path));
    SetFork(kTrailing, fork.With(kDataLength, length + 1, 4).bytes);
    EXPECT_EQ(mapReadErr, TryToOpen(path));
    SetFork("user.com.apple.ResourceFork", fork.With(kDataLength, length + 1, 4).bytes + '\0');
    EXPECT_EQ("one", VersionOf(path)) << "another's is";
}

TEST_F(ResourceStores, CompanionsHoldThem) {
    std::string const path = here.Write("file");
    here.MakeFolder(".AppleDouble");
    WriteCompanion(".AppleDouble/file", ForkWith("in a folder"));
    EXPECT_EQ("in a folder", VersionOf(path));
    std::filesystem::remove_all(here.Path(".AppleDouble"));
    WriteCompanion("._file", ForkWith("beside"));
    EXPECT_EQ("beside", VersionOf(path));
}

TEST_F(ResourceStores, ForksInCompanionsMayHaveAnythingAroundThem) {
    std::string const path = here.Write("file");
    here.Write("._file", AppleDoubleImage({{4, "a comment"}, {2, ForkWith("inside")}, {3, "a name"}}));
    EXPECT_EQ("inside", VersionOf(path));
}

TEST_F(ResourceStores, FirstHoldsIt) {
    std::string const path = here.Write("file");
    here.MakeFolder(".AppleDouble");
    WriteCompanion(".AppleDouble/file", ForkWith("companion in a folder"));
    EXPECT_EQ("companion in a folder", VersionOf(path));
    SetFork(kTrailing, ForkWith("stream"));
    EXPECT_EQ("stream", VersionOf(path));
    SetFork("user.org.netatalk.ResourceFork", ForkWith("server"));
    EXPECT_EQ("server", VersionOf(path));
    WriteCompanion("._file", ForkWith("companion beside"));
    EXPECT_EQ("companion beside", VersionOf(path));
    SetFork("user.AFP_Resource", ForkWith("other stream"));
    EXPECT_EQ("other stream", VersionOf(path));
    SetFork("user.com.apple.ResourceFork", ForkWith("copy"));
    EXPECT_EQ("copy", VersionOf(path));
}

TEST_F(ResourceStores, FirstHoldsItAlsoWhenItIsSpoilt) {
    std::string const path = WriteFork("file", ForkWith("companion"));
    SetFork("user.com.apple.ResourceFork", "no fork");
    EXPECT_EQ(mapReadErr, TryToOpen(path));
}

TEST_F(ResourceStores, EmptyOneHidesNoOther) {
    std::string const path = here.Write("file");
    here.MakeFolder(".AppleDouble");
    WriteCompanion(".AppleDouble/file", ForkWith("behind"));
    WriteCompanion("._file", "");
    SetFork("user.com.apple.ResourceFork", "");
    EXPECT_EQ("behind", VersionOf(path));
}

TEST_F(ResourceStores, FileWithoutOneHasNone) {
    EXPECT_EQ(eofErr, TryToOpen(here.Write("file", "text")));
    here.Write("._image", "no image");
    EXPECT_EQ(eofErr, TryToOpen(here.Write("image")));
    here.Write("._entries", AppleDoubleImage({{9, FinderInformation("TEXTttxt")}}));
    EXPECT_EQ(eofErr, TryToOpen(here.Write("entries")));
    EXPECT_EQ(eofErr, TryToOpen(WriteFork("empty", std::string{})));
    here.SetAttribute("file", "user.com.apple.ResourceFork", "");
    EXPECT_EQ(eofErr, TryToOpen(here.Path("file")));
    EXPECT_EQ(eofErr, TryToOpen("/proc/version"));
    EXPECT_EQ(eofErr, TryToOpen("/dev/null"));
}

TEST_F(ResourceStores, TheDataForkIsNone) {
    EXPECT_EQ(eofErr, TryToOpen(here.Write("file", ForkWith("data"))));
}

TEST_F(ResourceStores, CompanionsThemselvesHaveNone) {
    WriteFork("file", ForkWith("companion"));
    WriteCompanion("._._file", ForkWith("of a companion"));
    EXPECT_EQ(eofErr, TryToOpen(here.Path("._file")));
}

TEST_F(ResourceStores, FileMayBeAnythingButAFolder) {
    ASSERT_EQ(0, mkfifo(here.Path("pipe").c_str(), 0644));
    WriteCompanion("._pipe", ForkWith("of a pipe"));
    EXPECT_EQ("of a pipe", VersionOf(here.Path("pipe")));
    WriteCompanion("._folder", ForkWith("of a folder"));
    EXPECT_EQ(notAFileErr, TryToOpen(here.MakeFolder("folder")));
    EXPECT_EQ(notAFileErr, TryToOpen("/"));
}

// ---- Links

TEST_F(ResourceStores, LinksLeadToThoseOfTheirFiles) {
    WriteFork("file", ForkWith("of the file"));
    WriteCompanion("._link", ForkWith("beside the link"));
    EXPECT_EQ("of the file", VersionOf(here.Link("link", "file")));
    EXPECT_EQ("of the file", VersionOf(here.Link("to a link", "link")));
}

TEST_F(ResourceStores, LinksLeadIntoOtherFolders) {
    here.MakeFolder("other");
    WriteFork("file", ForkWith("of this folder's file"));
    here.Write("other/file");
    WriteCompanion("other/._file", ForkWith("of the other folder's"));
    EXPECT_EQ("of the other folder's", VersionOf(here.Link("link", "other/file")));
    here.Link("folder", "other");
    EXPECT_EQ("of the other folder's", VersionOf(here.Path("folder/file")));
    EXPECT_EQ("of this folder's file", VersionOf(here.Link("other/back", "../file")));
    here.Write("other/attribute");
    here.SetAttribute("other/attribute", "user.AFP_Resource", ForkWith("of an attribute"));
    EXPECT_EQ("of an attribute", VersionOf(here.Link("to an attribute", here.Path("other/attribute"))));
}

TEST_F(ResourceStores, LinksThatAreAskedForThemselvesLeadThereToo) {
    WriteFork("file", ForkWith("of the file"));
    WriteCompanion("._link", ForkWith("beside the link"));
    Open(ReferenceToItself(here.Link("link", "file")));
    EXPECT_EQ("of the file", Resource("vers", 1));
    here.MakeFolder("folder");
    EXPECT_EQ(notAFileErr, TryToOpen(ReferenceToItself(here.Link("to a folder", "folder"))));
    EXPECT_EQ(fnfErr, TryToOpen(ReferenceToItself(here.Link("dangling", "missing"))));
}

TEST_F(ResourceStores, LinksThatLeadNowhereOrToFolders) {
    WriteCompanion("._dangling", ForkWith("beside the link"));
    EXPECT_EQ(fnfErr, TryToOpen(here.Link("dangling", "missing")));
    here.Link("ring", "gnir");
    EXPECT_EQ(fnfErr, TryToOpen(here.Link("gnir", "ring")));
    here.MakeFolder("folder");
    EXPECT_EQ(notAFileErr, TryToOpen(here.Link("to a folder", "folder")));
}

TEST_F(ResourceStores, CompanionThatIsALinkIsNone) {
    WriteCompanion("elsewhere", ForkWith("elsewhere"));
    here.Link("._file", "elsewhere");
    EXPECT_EQ(eofErr, TryToOpen(here.Write("file")));
}

// ---- Permissions

TEST_F(ResourceStores, ThoseThatMayNotBeReadAreNone) {
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    std::string const path = WriteFork("file", ForkWith("companion"));
    ASSERT_EQ(0, chmod(here.Path("._file").c_str(), 0));
    std::string const attribute = here.Write("attribute");
    here.SetAttribute("attribute", "user.com.apple.ResourceFork", ForkWith("attribute"));
    ASSERT_EQ(0, chmod(attribute.c_str(), 0));
    Unprivileged const nobody;
    EXPECT_EQ(eofErr, TryToOpen(path));
    EXPECT_EQ(eofErr, TryToOpen(attribute));
}

TEST_F(ResourceStores, CompanionMayBeReadWhereTheFileMayNot) {
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    std::string const path = WriteFork("file", ForkWith("companion"));
    ASSERT_EQ(0, chmod(path.c_str(), 0));
    Unprivileged const nobody;
    EXPECT_EQ("companion", VersionOf(path));
}

TEST_F(ResourceStores, FolderThatMayNotBeEntered) {
    here.MakeFolder("folder");
    FSRef const reference = ReferenceTo(here.Write("folder/file"));
    WriteCompanion("folder/._file", ForkWith("companion"));
    ASSERT_EQ(0, chmod(here.Path().c_str(), 0755));
    ASSERT_EQ(0, chmod(here.Path("folder").c_str(), 0));
    {
        Unprivileged const nobody;
        EXPECT_EQ(afpAccessDenied, TryToOpen(reference));
    }
    chmod(here.Path("folder").c_str(), 0755);
}
