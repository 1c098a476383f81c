// Property lists that files are.

#include <sys/stat.h>

#include "filesystem/Asking.h"
#include "platform/BinaryListBuilder.h"
#include "plist/Dictionaries.h"
#include "plist/PlatformValues.h"
#include "support/Unprivileged.h"

namespace {

char const kXml[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<plist version=\"1.0\"><dict><key>number</key><integer>7</integer></dict></plist>\n";

class DictionariesOfFiles : public FileSystem {
  protected:
    OSXDictionary Read(std::string_view bytes) const {
        here.Write("list.plist", bytes);
        return dictionary_of_file(FileNamed("list.plist", Here()));
    }
    static integer Number(OSXDictionary const& dictionary) {
        return integer_of_dictionary(Bytes("number"), 6, dictionary);
    }
};

using Failed = DictionaryCreateFromXMLDataFailed;

TEST_F(DictionariesOfFiles, AreReadFromXml) { EXPECT_EQ(7, Number(Read(kXml))); }

TEST_F(DictionariesOfFiles, AreReadFromBinaryLists) {
    BinaryList list;
    list.Add("\xD1\x01\x02");
    list.Add("\x56number");
    list.Add("\x10\x07");
    EXPECT_EQ(7, Number(Read(list.Bytes())));
}

TEST_F(DictionariesOfFiles, MayBeEmpty) { EXPECT_EQ(0, size_of_dictionary(Read("<plist><dict/></plist>"))); }

TEST_F(DictionariesOfFiles, OwnTheirOnlyReference) {
    OSXDictionary const dictionary = Read(kXml);
    EXPECT_EQ(1, CFGetRetainCount(dictionary.dictionary));
}

TEST_F(DictionariesOfFiles, OutliveTheFile) {
    OSXDictionary const dictionary = Read(kXml);
    here.Write("list.plist", "something else");
    EXPECT_EQ(7, Number(dictionary));
}

TEST_F(DictionariesOfFiles, AreReadAnewEachTime) {
    here.Write("list.plist", kXml);
    file const object = FileNamed("list.plist", Here());
    dictionary_of_file(object);
    here.Write("list.plist", "<plist><dict/></plist>");
    EXPECT_EQ(0, size_of_dictionary(dictionary_of_file(object)));
}

TEST_F(DictionariesOfFiles, AreReadThroughLinks) {
    here.Link("link", here.Write("list.plist", kXml));
    EXPECT_EQ(7, Number(dictionary_of_file(FileNamed("link", Here()))));
}

TEST_F(DictionariesOfFiles, AreNoneWhereTheRootIsSomethingElse) {
    for (char const* root :
         {"<array><dict/></array>", "<string>a</string>", "<true/>", "<integer>1</integer>",
          "<date>2001-01-01T00:00:00Z</date>", "<data>MQ==</data>"}) {
        EXPECT_THROW(Read("<plist>" + std::string(root) + "</plist>"), Failed) << root;
    }
}

TEST_F(DictionariesOfFiles, AreNoneOfSpoiltLists) {
    for (char const* text : {"", "<plist/>", "<plist><dict>", "<plist><dict><key>a</key></dict></plist>",
                             "<dict><key>a</key><foo/></dict>", "bplist00", "<html/>"}) {
        EXPECT_THROW(Read(text), Failed) << text;
    }
}

TEST_F(DictionariesOfFiles, AreNoneOfAFileThatHasGone) {
    here.Write("list.plist", kXml);
    file const object = FileNamed("list.plist", Here());
    std::filesystem::remove(here.Path("list.plist"));
    EXPECT_THROW(dictionary_of_file(object), NoSuchObject);
}

TEST_F(DictionariesOfFiles, AreNoneOfAFileThatMayNotBeRead) {
    chmod(here.Write("list.plist", kXml).c_str(), 0);
    chmod(here.Path().c_str(), 0755);
    file const object = FileNamed("list.plist", Here());
    Unprivileged const user;
    EXPECT_THROW(dictionary_of_file(object), NoSuchObject);
}

TEST_F(DictionariesOfFiles, AreNoneOfWhatIsNoRegularFile) {
    ASSERT_EQ(0, mkfifo(here.Path("pipe").c_str(), 0600));
    EXPECT_THROW(dictionary_of_file(FileNamed("pipe", Here())), NoSuchObject);
    EXPECT_THROW(dictionary_of_file(FileAt("/dev/null")), NoSuchObject);
}

}  // namespace
