// What is in files that are forbidden, odd, large, or that change while they are read, asked about with the
// command.

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <sstream>
#include <thread>

#include "faults/Asking.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr std::uintmax_t kFourGibibytes = std::uintmax_t{1} << 32;

class Files : public testing::Test {
  protected:
    static Ran Ask(std::string const& query, std::string const& path,
                   std::vector<std::string> arguments = {}) {
        arguments.push_back(AboutFile(path, query));
        return RunZelq(arguments);
    }
    static Ran AskUnprivileged(std::string const& query, std::string const& path) {
        return RunUnprivileged(AboutFile(path, query));
    }
    static std::string AboutFile(std::string const& path, std::string const& query) {
        return About("file \"" + path + "\"", query);
    }
    static std::string Contents(std::string const& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    TemporaryFolder const here;
};

// Does something to a file again and again, on a thread, as long as it lives.
class Busily {
  public:
    explicit Busily(std::function<void()> act)
        : thread([this, act] {
              while (!isOver) act();
          }) {}
    Busily(Busily const&) = delete;
    Busily& operator=(Busily const&) = delete;
    ~Busily() {
        isOver = true;
        thread.join();
    }

  private:
    std::atomic<bool> isOver{false};
    std::thread thread;
};

// Arguments that end what would go on for ever.
std::vector<std::string> const kNotForEver{"--timeout", "30"};

// Whatever was found, the command ended by itself, and said why when it found nothing.
void ExpectAnEnd(Ran const& ran) {
    EXPECT_TRUE(ran.status == 0 || ran.status == 1) << ran.status << ": " << ran.err;
    EXPECT_EQ(ran.status == 0, ran.err.empty()) << ran.err;
    if (ran.status == 1) {
        std::string const message = MessageOf(ran);
        bool const isClear = message == "error: no such object" || message.ends_with(" is not there") ||
                             message.find("cannot be read") != std::string::npos;
        EXPECT_TRUE(isClear) << ran.err;
    }
}

}  // namespace

TEST_F(Files, ThatMayNotBeRead) {
    std::string const path = here.Write("file", "one\ntwo\n");
    ASSERT_EQ(0, chmod(path.c_str(), 0));
    for (char const* query :
         {"lines of %", "number of lines of %", "line 1 of %", "exists line 1 of %", "exists lines of %"})
        ExpectFailure("line", "may not be read", AskUnprivileged(query, path));
    ExpectFailure("line containing", "may not be read", AskUnprivileged("lines containing \"o\" of %", path));
    ExpectFailure("line starting with", "may not be read",
                  AskUnprivileged("lines starting with \"o\" of %", path));
    ExpectNoSuchObject(AskUnprivileged("content of % contains \"one\"", path));
    ExpectNoSuchObject(AskUnprivileged("byte 0 of %", path));
    ExpectAnswer("8\n", AskUnprivileged("size of %", path));
}

TEST_F(Files, ThatAreFoldersOrAreNotThere) {
    for (std::string const& path : {here.MakeFolder("folder"), here.Path("missing"),
                                    here.Path("missing/file"), here.Link("dangling", "missing")}) {
        ExpectNoSuchObject(Ask("content of % contains \"a\"", path));
        ExpectNoSuchObject(Ask("byte 0 of %", path));
    }
    Ran const ofDangling = Ask("lines of %", here.Path("dangling"));
    EXPECT_EQ("error: the file \"" + here.Path("dangling") + "\" is not there", MessageOf(ofDangling));
    ExpectNoSuchObject(Ask("lines of %", here.Path("folder")));
    ExpectNoSuchObject(Ask("lines of %", here.Path("missing")));
}

TEST_F(Files, ThatArePipesOrDevicesAreEmpty) {
    ASSERT_EQ(0, mkfifo(here.Path("pipe").c_str(), 0644));
    for (std::string const& path : {here.Path("pipe"), std::string("/dev/zero"), std::string("/dev/null")}) {
        ExpectAnswer("", Ask("lines of %", path));
        ExpectAnswer("0\n", Ask("number of lines of %", path));
        ExpectAnswer("false\n", Ask("content of % contains \"a\"", path));
        ExpectAnswer("true\n", Ask("content of % contains \"\"", path));
        ExpectNoSuchObject(Ask("byte 0 of %", path));
        ExpectNoSuchObject(Ask("line 1 of %", path));
    }
}

TEST_F(Files, ThatAreMadeWhenTheyAreRead) {
    std::string const text = Contents("/proc/cpuinfo");
    auto const lines = std::count(text.begin(), text.end(), '\n');
    EXPECT_LT(0, lines);
    ExpectAnswer(std::to_string(lines) + "\n", Ask("number of lines of %", "/proc/cpuinfo"));
    ExpectAnswer(Contents("/proc/version"), Ask("lines of %", "/proc/version"));
    ExpectAnswer("true\n", Ask("content of % contains \"Linux version\"", "/proc/version"));
    ExpectAnswer(Contents("/proc/filesystems"), Ask("lines of %", "/proc/filesystems"));
}

TEST_F(Files, ThatAreMadeAndHaveNoEndCannotBeRead) {
    ASSERT_EQ(0, access("/proc/self/pagemap", R_OK)) << "the table of pages, which is long";
    ExpectFailure("line", "cannot be read", Ask("number of lines of %", "/proc/self/pagemap"));
    ExpectNoSuchObject(Ask("content of % contains \"a\"", "/proc/self/pagemap"));
}

// ---- Large ones

// The count of bytes has 32 bits; what the first buffer gets of the file is seen all the same.
TEST_F(Files, OfFourGibibytesAreTakenModuloThem) {
    std::string const path = here.Write("file", "one\ntwo\n");
    std::filesystem::resize_file(path, kFourGibibytes);
    ExpectAnswer("3\n", Ask("number of lines of %", path));
    ExpectAnswer("one\ntwo\n", Ask("lines whose (length of it < 10) of %", path));
    ExpectAnswer("false\n", Ask("content of % contains \"one\"", path));
    ExpectAnswer("111\n", Ask("byte 0 of %", path));
    ExpectAnswer("4294967296\n", Ask("size of %", path));
}

TEST_F(Files, OfMoreThanFourGibibytesAreTakenModuloThem) {
    std::string text;
    for (int line = 0; line < 10000; ++line) text += std::to_string(100000 + line) + "\n";
    std::string const path = here.Write("file", text);
    std::filesystem::resize_file(path, kFourGibibytes + 7000);
    ExpectAnswer("true\n", Ask("content of % contains \"100999\"", path));
    ExpectAnswer("false\n", Ask("content of % contains \"101000\"", path));
    ExpectAnswer("100999\n", Ask("line 1000 of %", path));
    Ran const number = Ask("number of lines of %", path);
    EXPECT_EQ(0, number.status);
    EXPECT_LE(1000, std::stoi(number.out)) << "all of those";
    EXPECT_GE(1000 + 2048 / 7 + 1, std::stoi(number.out)) << "and what a buffer more holds";
}

TEST_F(Files, OfManyGibibytesAreSearchedUntilTheTimeLimit) {
    std::string const path = here.Write("file");
    std::filesystem::resize_file(path, kFourGibibytes - 1);
    auto const begun = std::chrono::steady_clock::now();
    for (char const* query : {"content of % contains \"x\"", "exists lines containing \"x\" of %",
                              "exists (content of % contains \"x\")"}) {
        Ran const ran = Ask(query, path, {"--timeout", "0.1"});
        EXPECT_EQ(4, ran.status) << query;
        EXPECT_EQ("error: the time limit of 0.1 s was reached", MessageOf(ran)) << query;
        EXPECT_EQ("", ran.out) << query;
    }
    EXPECT_GT(std::chrono::seconds(10), std::chrono::steady_clock::now() - begun);
}

// ---- Those that change

TEST_F(Files, ThatShrinkAndGrow) {
    std::string text;
    while (text.size() < 400'000) text += "a line of text " + std::to_string(text.size()) + "\n";
    std::string const path = here.Write("file", text);
    Busily const writer([&] {
        std::filesystem::resize_file(path, 0);
        std::filesystem::resize_file(path, 1000);
        here.Write("file", text);
        std::filesystem::resize_file(path, text.size() / 2);
        std::ofstream(path, std::ios::app) << text;
    });
    for (int turn = 0; turn < 25; ++turn) {
        for (char const* query :
             {"number of lines of %", "number of lines containing \"99\" of %",
              "content of % contains \"not to be found\"", "line 5000 of %", "byte 300000 of %"})
            ExpectAnEnd(Ask(query, path, kNotForEver));
    }
}

// At one time or another, and for good.
TEST_F(Files, ThatShrinkWhileTheyAreSearched) {
    std::string const path = here.Write("file");
    for (int turn = 0; turn < 12; ++turn) {
        std::string const query = turn % 2 == 0 ? "content of % contains \"xyz\"" : "number of lines of %";
        std::filesystem::resize_file(path, 1 << 30);
        Started command({Zelq(), "--timeout", "10", AboutFile(path, query)});
        std::this_thread::sleep_for(std::chrono::milliseconds(20 + 4 * turn));
        std::filesystem::resize_file(path, 1000);
        ExpectAnEnd(command.Wait());
    }
}

TEST_F(Files, ThatAreReplaced) {
    std::string const old = "old\n", young = "young\n";
    std::string const path = here.Write("file", old);
    Busily const writer([&] {
        std::filesystem::rename(here.Write("next", young), path);
        std::filesystem::rename(here.Write("next", old), path);
    });
    for (int turn = 0; turn < 50; ++turn) {
        Ran const ran = Ask("lines of %", path);
        ExpectAnEnd(ran);
        EXPECT_TRUE(ran.out == old || ran.out == young || (ran.out.empty() && ran.status == 1)) << ran.out;
    }
}

// Lines that were there are given once and whole while others are added.
TEST_F(Files, ThatAreAddedTo) {
    std::string text;
    for (int line = 0; line < 5000; ++line) text += "first " + std::to_string(line) + "\n";
    std::string const path = here.Write("file", text);
    Busily const writer(
        [&] { std::ofstream(path, std::ios::app) << "later " << std::string(50, '-') << "\n"; });
    for (int turn = 0; turn < 25; ++turn) ExpectAnswer(text, Ask("lines starting with \"first\" of %", path));
}
