// Versions of files whose resource forks are there, missing, forbidden or spoilt, asked about with the
// command.

#include <sys/stat.h>

#include <set>
#include <sstream>

#include "faults/Asking.h"
#include "platform/ResourceForkBuilder.h"
#include "support/TemporaryFolder.h"

namespace {

std::string const kBeta = std::string("\x01\x23\x60\x12", 4);   // 1.2.3b18
std::string const kFinal = std::string("\x10\x40\x80\x00", 4);  // 10.4

class Versions : public testing::Test {
  protected:
    // A query about a file of this folder.
    Ran Ask(std::string const& query, std::string const& name = "file") const {
        return RunZelq({AboutFile(query, name)});
    }
    // One about the folder, whose files come in any order. The answers are sorted.
    Ran AskFolder(std::string const& query) const {
        Ran ran = RunZelq({About("folder \"" + here.Path() + "\"", query)});
        std::istringstream lines(ran.out);
        std::multiset<std::string> sorted;
        for (std::string line; std::getline(lines, line);) sorted.insert(line + "\n");
        ran.out.clear();
        for (std::string const& line : sorted) ran.out += line;
        return ran;
    }
    std::string AboutFile(std::string const& query, std::string const& name = "file") const {
        return About("file \"" + here.Path(name) + "\"", query);
    }
    // Makes a file with a fork beside it.
    void Write(std::string const& name, std::string const& fork) const {
        here.Write(name);
        here.Write("._" + name, AppleDoubleImage({{2, fork}}));
    }
    void WriteVersion(std::string const& name, std::string const& bytes) const {
        Write(name, BuildFork({{"vers", 1, bytes}}).bytes);
    }
    // The map says that there are more of the type than it holds.
    void WriteSpoilt(std::string const& name) const {
        BuiltFork const fork = BuildFork({{"vers", 1, kBeta}});
        Write(name, fork.With(fork.types[0] + kReferenceCount, 0xFFFF, 2).bytes);
    }

    TemporaryFolder const here;
};

}  // namespace

TEST_F(Versions, OfFilesAreTold) {
    WriteVersion("file", kBeta);
    ExpectAnswer("1.2.3b18\n", Ask("version of %"));
    ExpectAnswer("1.2.3b18\n", Ask("versions of %"));
    ExpectAnswer("1.2.3b18\n", Ask("version 1 of %"));
    ExpectAnswer(
        "1, 2, 3, true\n",
        Ask("(major revision of it, minor revision of it, bug revision of it, stage of it is stage \"b\") "
            "of version of %"));
    ExpectAnswer("true\n", Ask("version of % < \"1.2.3\""));
    here.Link("link", "file");
    ExpectAnswer("1.2.3b18\n", Ask("version of %", "link"));
}

TEST_F(Versions, OfFilesInAttributesAreTold) {
    here.Write("file");
    here.SetAttribute("file", "user.com.apple.ResourceFork", BuildFork({{"vers", 1, kFinal}}).bytes);
    ExpectAnswer("10.4\n", Ask("version of %"));
}

TEST_F(Versions, HaveNumbers) {
    Write("file", BuildFork({{"vers", 1, kBeta}, {"vers", 2, kFinal}, {"vers", -3, kBeta}}).bytes);
    ExpectAnswer("10.4\n", Ask("version 2 of %"));
    ExpectAnswer("1.2.3b18\n", Ask("version (-3) of %"));
    ExpectAnswer("10.4\n", Ask("versions 2 of %"));
    for (char const* query :
         {"version 3 of %", "version 40000 of %", "version 65538 of %", "version (-32769) of %"})
        ExpectNoSuchObject(Ask(query));
    ExpectNoSuchObject(Ask("versions 40000 of %"));
}

TEST_F(Versions, OfFilesWithoutOneAreNone) {
    here.Write("plain", "text");
    Write("empty", BuildFork({}).bytes);
    Write("no fork", "no fork");
    WriteVersion("short", "\x01");
    for (char const* name : {"plain", "empty", "no fork", "short"}) {
        ExpectNoSuchObject(Ask("version of %", name));
        ExpectAnswer("false\n", Ask("exists version of %", name));
        ExpectAnswer("0.1\n", Ask("version of % otherwise \"0.1\" as version", name));
    }
}

TEST_F(Versions, ThatMayNotBeReadAreNone) {
    WriteVersion("file", kBeta);
    ASSERT_EQ(0, chmod(here.Path("._file").c_str(), 0));
    ExpectNoSuchObject(RunUnprivileged(AboutFile("version of %")));
}

TEST_F(Versions, OfSpoiltForksAreNone) {
    WriteSpoilt("file");
    for (char const* query : {"version of %", "version 2 of %", "version 40000 of %"})
        ExpectNoSuchObject(Ask(query));
    ExpectAnswer("false\n", Ask("exists version of %"));
    ExpectAnswer("0.1\n", Ask("version of % otherwise \"0.1\" as version"));
}

TEST_F(Versions, OfManyFilesAreThoseThatThereAre) {
    WriteVersion("a", kBeta);
    here.Write("b", "text");
    WriteVersion("c", kFinal);
    Write("d", "no fork");
    ExpectAnswer("1.2.3b18\n10.4\n", AskFolder("versions of files of %"));
    ExpectAnswer("2\n", AskFolder("number of versions of files of %"));
    ExpectAnswer("", AskFolder("versions 2 of files of %"));
}

TEST_F(Versions, OfManyFilesGoOnPastASpoiltOne) {
    WriteVersion("a", kBeta);
    WriteSpoilt("b");
    WriteVersion("c", kFinal);
    ExpectAnswer("1.2.3b18\n10.4\n", AskFolder("versions of files of %"));
}

TEST_F(Versions, FiltersGoOnPastFilesWithoutThem) {
    here.Write("a", "text");
    WriteVersion("b", kBeta);
    Write("c", "no fork");
    WriteVersion("d", kFinal);
    ExpectAnswer("d\n", AskFolder("names of files whose (version of it > \"2\") of %"));
    ExpectAnswer("b\nd\n", AskFolder("names of files whose (exists version of it) of %"));
    ExpectAnswer("b\n", AskFolder("names of files whose (stage of version of it is stage \"b\") of %"));
}
