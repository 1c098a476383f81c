// Trees that are deep, large, odd or forbidden, asked about with the command.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "command/Running.h"
#include "support/TemporaryFolder.h"

namespace {

// A folder whose trees may be deeper than std::filesystem removes.
class Trees : public testing::Test {
  protected:
    ~Trees() override { RunProgram({"rm", "-rf", here.Path()}); }

    Ran Ask(std::string const& query, std::string const& top = {}) const {
        return RunZelq({query + " of folder \"" + (top.empty() ? here.Path() : top) + "\""});
    }
    // What the owner of the tree gets who may not pass over permissions, as root may.
    Ran AskUnprivileged(std::string const& query) const {
        std::vector<std::string> command{Zelq(), query + " of folder \"" + here.Path() + "\""};
        if (geteuid() == 0)
            command.insert(command.begin(), {"setpriv", "--bounding-set=-dac_override,-dac_read_search"});
        return RunProgram(command);
    }
    // With few files that the process may have open.
    Ran AskWithFewDescriptors(std::string const& query, std::string const& top) const {
        return RunProgram(
            {"sh", "-c", "ulimit -n 256; exec \"$0\" \"$1\"", Zelq(), query + " of folder \"" + top + "\""});
    }
    // A chain of so many folders, each with some files and empty folders beside the next; at its end a file.
    std::string MakeChain(int depth, std::string const& name, int neighbours) const {
        std::string const top = here.MakeFolder("chain");
        int folder = open(top.c_str(), O_DIRECTORY);
        for (int level = 0; level < depth; ++level) {
            for (int i = 0; i < neighbours; ++i) {
                MakeFile(folder, "file " + std::to_string(i));
                EXPECT_EQ(0, mkdirat(folder, ("z" + std::to_string(i)).c_str(), 0755));
            }
            EXPECT_EQ(0, mkdirat(folder, name.c_str(), 0755));
            int const next = openat(folder, name.c_str(), O_DIRECTORY);
            close(folder);
            folder = next;
        }
        MakeFile(folder, "bottom");
        close(folder);
        return top;
    }
    static void MakeFile(int folder, std::string const& name) {
        int const file = openat(folder, name.c_str(), O_CREAT | O_WRONLY, 0644);
        EXPECT_GE(file, 0) << name;
        close(file);
    }

    TemporaryFolder here;
};

using Lines = std::vector<std::string>;

Lines SortedLines(std::string const& text) {
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    std::sort(lines.begin(), lines.end());
    return lines;
}

void ExpectAnswer(std::string const& answer, Ran const& ran) {
    EXPECT_EQ(answer + "\n", ran.out);
    EXPECT_EQ("", ran.err);
    EXPECT_EQ(0, ran.status);
}

// The message alone, without the query below it.
std::string MessageOf(Ran const& ran) { return ran.err.substr(0, ran.err.find('\n')); }

}  // namespace

TEST_F(Trees, TenThousandFoldersDeep) {
    std::string const top = MakeChain(10000, "d", 0);
    ExpectAnswer("1", AskWithFewDescriptors("number of descendants", top));
    ExpectAnswer(
        "bottom, d, 0",
        AskWithFewDescriptors("(name of it, name of parent folder of it, size of it) of descendants", top));
}

// Each folder has more to give when the walk comes back to it, and no path is short enough for a system call.
TEST_F(Trees, TenThousandFoldersDeepAndWideWithLongNames) {
    std::string const top = MakeChain(10000, std::string(255, 'm'), 1);
    ExpectAnswer("10001", AskWithFewDescriptors("number of descendants", top));
    ExpectAnswer("1", AskWithFewDescriptors("number of descendants whose (name of it = \"bottom\")", top));
}

TEST_F(Trees, HundredThousandChildrenOfOneFolder) {
    int const folder = open(here.MakeFolder("large").c_str(), O_DIRECTORY);
    for (int i = 0; i < 100000; ++i) MakeFile(folder, std::to_string(i));
    close(folder);
    std::string const top = here.Path("large");
    Ran const found = RunProgram({"find", top, "-type", "f", "-printf", "%f\\n"});
    Ran const ours = Ask("names of files", top);
    EXPECT_EQ(SortedLines(found.out), SortedLines(ours.out));
    EXPECT_EQ("", ours.err);
    ExpectAnswer("0", Ask("number of folders", top));
}

TEST_F(Trees, NamesAreGivenByteForByte) {
    Lines names = {"caf\xC3\xA9", "not \xFF\xFE text", std::string(255, 'n'), "a:b", " blank ", "tab\t"};
    for (std::string const& name : names) here.Write(name);
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, SortedLines(Ask("names of files").out));
    EXPECT_EQ(Lines{"not \xFF\xFE text"}, SortedLines(Ask("names of files ending in \"\xFE text\"").out));
    ExpectAnswer("1", RunZelq({"number of file \"not \xFF\xFE text\" of folder \"" + here.Path() + "\""}));
}

TEST_F(Trees, LineEndInANameIsTheNamesOwn) {
    here.Write("two\nlines");
    Ran const ran = RunZelq({"--null", "names of files of folder \"" + here.Path() + "\""});
    EXPECT_EQ(std::string("two\nlines\0", 10), ran.out);
}

TEST_F(Trees, FolderThatMayNotBeRead) {
    here.MakeFolder("locked");
    here.Write("file");
    ASSERT_EQ(0, chmod(here.Path("locked").c_str(), 0));
    EXPECT_EQ((Lines{"file", "locked"}), SortedLines(AskUnprivileged("names of items").out));
    Ran const inner = AskUnprivileged("names of items of folder \"locked\"");
    std::string const why = "failed: the folder \"" + here.Path("locked") + "\" may not be read";
    EXPECT_EQ("error: \"item\" " + why, MessageOf(inner));
    EXPECT_EQ(1, inner.status);
    Ran const walk = AskUnprivileged("names of descendants");
    EXPECT_EQ("error: \"descendant\" " + why, MessageOf(walk));
    EXPECT_EQ(1, walk.status);
}

TEST_F(Trees, FolderThatMayBeReadButNotSearched) {
    here.MakeFolder("inner");
    here.Write("inner/file");
    ASSERT_EQ(0, chmod(here.Path("inner").c_str(), 0444));
    ExpectAnswer("file", AskUnprivileged("names of items of folder \"inner\""));
    Ran const files = AskUnprivileged("names of files of folder \"inner\"");
    EXPECT_EQ("", files.out);
    EXPECT_EQ(1, files.status);
    EXPECT_EQ("error: the item \"" + here.Path("inner/file") +
                  "\" cannot be looked up: the platform's error -5000 (access denied)",
              MessageOf(files));
    chmod(here.Path("inner").c_str(), 0755);
}

TEST_F(Trees, LinksThatLeadUpAreNotEntered) {
    here.MakeFolder("a/b");
    here.Link("a/b/up", "..");
    here.Link("a/self", ".");
    here.Write("a/b/file");
    EXPECT_EQ((Lines{"file", "self", "up"}), SortedLines(Ask("names of descendants").out));
}

TEST_F(Trees, FolderThatIsNotThere) {
    Ran const ran = Ask("names of items of folder \"missing\"");
    EXPECT_EQ("error: no such object", MessageOf(ran));
    EXPECT_EQ(1, ran.status);
}

// Files come and go while the tree is walked: what is found is told, and nothing fails.
TEST_F(Trees, FilesThatComeAndGo) {
    for (int i = 0; i < 200; ++i) here.Write("stays " + std::to_string(i));
    std::string const script =
        "cd \"$0\" && while [ -e \"$0\" ] && [ ! -e stop ]; do for i in 1 2 3 4 5 6 7 8 9; do : > \"goes "
        "$i\"; "
        "done; rm -f goes*; done";
    Started const busy({"sh", "-c", script, here.Path()});
    for (int turn = 0; turn < 20; ++turn) {
        Ran const ran = Ask("number of descendants whose (name of it starts with \"stays\")");
        ExpectAnswer("200", ran);
    }
    here.Write("stop");
}
