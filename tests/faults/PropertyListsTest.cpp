// Property lists that are missing, forbidden, spoilt or something else, and what they tell of themselves,
// asked about with the command.

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "faults/Asking.h"
#include "support/TemporaryFolder.h"
#include "support/Variable.h"

namespace {

char const kGood[] = "<plist><dict><key>name</key><string>Editor</string></dict></plist>";

class PropertyLists : public testing::Test {
  protected:
    // A query about a file of this folder, or about the folder itself.
    Ran Ask(std::string const& query, std::string const& name = "list") const {
        return RunZelq({AboutFile(query, name)});
    }
    Ran AskFolder(std::string const& query) const {
        return RunZelq({About("folder \"" + here.Path() + "\"", query)});
    }
    std::string AboutFile(std::string const& query, std::string const& name = "list") const {
        return About("file \"" + here.Path(name) + "\"", query);
    }
    // What is said of a file of these bytes, behind its name.
    std::string Reason(std::string const& bytes) const {
        here.Write("list", bytes);
        std::string const message = MessageOf(Ask("dictionary of %"));
        std::string const front =
            "error: \"dictionary\" failed: the file \"" + here.Path("list") + "\" is no property list: ";
        return message.starts_with(front) ? message.substr(front.size()) : message;
    }
    // The same of XML, without what is said of it as old-style text.
    std::string XmlReason(std::string const& bytes) const {
        std::string const reason = Reason(bytes);
        std::size_t const end = reason.find("; as old-style text: ");
        return end == reason.npos ? reason : reason.substr(0, end);
    }

    std::string NoDictionary() const {
        return "error: \"dictionary\" failed: the property list of the file \"" + here.Path("list") +
               "\" is no dictionary";
    }
    // The hint behind "no such object".
    std::string Hint(Ran const& ran) const {
        ExpectNoSuchObject(ran);
        std::string const front = "  hint: the file \"" + here.Path("list") + "\" ";
        std::size_t const at = ran.err.find(front);
        return at == ran.err.npos ? ran.err : ran.err.substr(at + front.size());
    }

    TemporaryFolder const here;
};

}  // namespace

TEST_F(PropertyLists, AreTold) {
    here.Write("list", kGood);
    ExpectAnswer("Editor\n", Ask("string \"name\" of dictionary of %"));
    here.Link("link", "list");
    ExpectAnswer("Editor\n", Ask("string \"name\" of dictionary of %", "link"));
}

TEST_F(PropertyLists, OfFilesThatAreMissingAreNone) {
    ExpectNoSuchObject(Ask("dictionary of %"));
    ExpectAnswer("false\n", Ask("exists dictionary of %"));
}

TEST_F(PropertyLists, ThatMayNotBeReadAreNone) {
    here.Write("list", kGood);
    ASSERT_EQ(0, chmod(here.Path("list").c_str(), 0));
    EXPECT_EQ("may not be read\n", Hint(RunUnprivileged(AboutFile("dictionary of %"))));
    ExpectAnswer("false\n", RunUnprivileged(AboutFile("exists dictionary of %")));
}

TEST_F(PropertyLists, OfPipesAndFoldersAreNone) {
    ASSERT_EQ(0, mkfifo(here.Path("pipe").c_str(), 0600));
    here.MakeFolder("folder");
    here.Link("link", "folder");
    ExpectNoSuchObject(Ask("dictionary of %", "pipe"));
    ExpectNoSuchObject(Ask("dictionary of %", "folder"));
    ExpectNoSuchObject(Ask("dictionary of %", "link"));
}

// More than 256 MiB, without being on the disk.
TEST_F(PropertyLists, OfFilesThatAreTooLargeAreNone) {
    here.Write("list", kGood);
    ASSERT_EQ(0, truncate(here.Path("list").c_str(), (off_t{256} << 20) + 1));
    Ran const ran = Ask("dictionary of %");
    EXPECT_EQ(
        "cannot be read: the platform's error -1309 (it is larger than the limit for files that are read as "
        "a "
        "whole: 256 MiB, or 4 MiB for files of settings)\n",
        Hint(ran));
    EXPECT_LT(ran.peak, 500'000);
}

TEST_F(PropertyLists, InXmlThatAreSpoiltSayWhyAndWhere) {
    EXPECT_EQ("as XML: line 2: no element found", XmlReason("<plist><dict>\n"));
    EXPECT_EQ("as XML: line 1: mismatched tag", XmlReason("<plist><dict></plist></dict>"));
    EXPECT_EQ("as XML: line 2: a key without a value",
              XmlReason("<plist>\n<dict><key>a</key></dict></plist>"));
    EXPECT_EQ("as XML: line 1: unknown element \"foo\"", XmlReason("<plist><foo/></plist>"));
    EXPECT_EQ("as XML: line 1: \"plist\" is empty", XmlReason("<plist/>"));
    EXPECT_EQ("as XML: line 3: \"integer\" cannot be \"7a\"",
              XmlReason("<plist>\n<dict><key>a</key>\n<integer>7a</integer></dict></plist>"));
}

TEST_F(PropertyLists, InBinaryThatAreSpoiltSayWhy) {
    EXPECT_EQ("binary property list: it is cut off", Reason(std::string("bplist00\0", 9)));
    EXPECT_EQ("binary property list: numbers in it have an impossible size",
              Reason("bplist00" + std::string(60, '\0')));
}

TEST_F(PropertyLists, OfEmptyFilesAreNone) { EXPECT_EQ("the data is null or of zero length", Reason("")); }

// What is in a file cannot reach the terminal as it is.
TEST_F(PropertyLists, ThatAreSpoiltAreToldInPrintableText) {
    std::string const reason = XmlReason("<plist><integer>7&#10;&#9;\u00e9</integer></plist>");
    EXPECT_EQ("as XML: line 1: \"integer\" cannot be \"7\\n\\t\u00e9\"", reason);
}

TEST_F(PropertyLists, ThatAreSpoiltAreToldBySpecialNames) {
    here.Write("a\x1b[31m\xff", "<plist/>");
    Ran const ran = AskFolder("dictionaries of files of %");
    EXPECT_EQ(0u, MessageOf(ran).find("error: \"dictionary\" failed: the file \"" + here.Path() +
                                      "/a\\x1B[31m\\xFF\" is no property list: "))
        << ran.err;
}

TEST_F(PropertyLists, WithAnotherRootAreNoDictionaries) {
    for (char const* root : {"<array/>", "<string>a</string>", "<true/>", "<integer>1</integer>"}) {
        here.Write("list", "<plist>" + std::string(root) + "</plist>");
        Ran const ran = Ask("dictionary of %");
        EXPECT_EQ(NoDictionary(), MessageOf(ran));
        EXPECT_EQ(1, ran.status);
        EXPECT_EQ("", ran.out);
    }
}

// The bundle's list is spoilt, which nobody asks about; that is not the reason of what fails behind it.
TEST_F(PropertyLists, AreNotToldOfOtherFailures) {
    here.MakeFolder("spoilt.bundle");
    here.Write("spoilt.bundle/Info.plist", "<plist><dict>");
    here.Write("list", "<plist><array/></plist>");
    Ran const ran = RunZelq({"size of global dictionary of bundle of folder \"" + here.Path("spoilt.bundle") +
                             "\"; " + AboutFile("size of dictionary of %")});
    EXPECT_EQ("0\n", ran.out);
    EXPECT_EQ(NoDictionary(), MessageOf(ran));
}

// The bundle is there all the same; what is missing in it is explained.
TEST_F(PropertyLists, OfBundlesThatAreSpoiltAreToldOfWhereAKeyIsMissing) {
    here.MakeFolder("spoilt.bundle");
    here.Write("spoilt.bundle/Info.plist", "<plist><dict>");
    Ran const ran = RunZelq(
        {"string \"a\" of global dictionary of bundle of folder \"" + here.Path("spoilt.bundle") + "\""});
    ExpectNoSuchObject(ran);
    EXPECT_THAT(ran.err, testing::HasSubstr("hint: the file \"" + here.Path("spoilt.bundle/Info.plist") +
                                            "\" is no property list: as XML: line 1: no element found"));
}

TEST_F(PropertyLists, OfPreferencesThatAreSpoiltAreToldOfWhereAKeyIsMissing) {
    here.Write("list.plist", "{ a = ");
    Variable const folder("XDG_CONFIG_HOME", here.Path());
    Ran const ran = RunZelq({"string \"a\" of preference \"list\""});
    ExpectNoSuchObject(ran);
    EXPECT_THAT(ran.err, testing::HasSubstr("hint: the file \"" + here.Path("list.plist") +
                                            "\" is no property list: line 1: "));
}

TEST_F(PropertyLists, OfManyFilesEndWithTheFirstSpoiltOne) {
    here.Write("good", kGood);
    Ran const ran = AskFolder("strings \"name\" of dictionaries of files ending in \"ood\" of %");
    ExpectAnswer("Editor\n", ran);
    here.Write("bad", "<plist/>");
    EXPECT_EQ(1, AskFolder("strings \"name\" of dictionaries of files of %").status);
    ExpectAnswer("Editor\n", AskFolder("strings \"name\" of dictionaries of files whose (name of it does not "
                                       "start with \"b\") of %"));
}
