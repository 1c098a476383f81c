// CFURLCreateDataAndPropertiesFromResource: files that are read as a whole.

#include <Carbon/Carbon.h>
#include <Platform/Items.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/Owned.h"
#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"

namespace {

struct Whole {
    bool isRead;
    SInt32 code;
    std::string bytes;
};

Whole Read(std::string const& path) {
    Owned<CFURLRef> const url = NewURL(path);
    CFDataRef data = nullptr;
    CFDictionaryRef properties = reinterpret_cast<CFDictionaryRef>(&data);
    SInt32 code = 77;
    bool const isRead = CFURLCreateDataAndPropertiesFromResource(kCFAllocatorDefault, url, &data, &properties,
                                                                 nullptr, &code) != 0;
    EXPECT_EQ(nullptr, properties);
    if (!isRead) return {isRead, code, {}};
    Owned<CFDataRef> const owned(data);
    EXPECT_EQ(1, CFGetRetainCount(data));
    return {isRead, code,
            std::string(reinterpret_cast<char const*>(CFDataGetBytePtr(data)),
                        static_cast<std::size_t>(CFDataGetLength(data)))};
}

void ExpectFailure(SInt32 code, std::string const& path) {
    Whole const whole = Read(path);
    EXPECT_FALSE(whole.isRead) << path;
    EXPECT_EQ(code, whole.code) << path;
}

class WholeFiles : public testing::Test {
  protected:
    TemporaryFolder folder;
};

TEST_F(WholeFiles, AreReadFromTheFirstByteToTheLast) {
    std::string bytes(100000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
    Whole const whole = Read(folder.Write("file", bytes));
    EXPECT_TRUE(whole.isRead);
    EXPECT_EQ(0, whole.code);
    EXPECT_EQ(bytes, whole.bytes);
}

TEST_F(WholeFiles, MayBeEmpty) {
    Whole const whole = Read(folder.Write("file"));
    EXPECT_TRUE(whole.isRead);
    EXPECT_EQ("", whole.bytes);
}

TEST_F(WholeFiles, AreReadThroughLinks) {
    EXPECT_EQ("abc", Read(folder.Link("link", folder.Write("file", "abc"))).bytes);
}

TEST_F(WholeFiles, MayBeMadeWhenTheyAreRead) { EXPECT_NE("", Read("/proc/self/status").bytes); }

TEST_F(WholeFiles, AreRegularFiles) {
    ExpectFailure(kCFURLUnknownError, folder.MakeFolder("folder"));
    std::string const pipe = folder.Path("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    EXPECT_FALSE(Read(pipe).isRead);
    EXPECT_FALSE(Read("/dev/zero").isRead);
}

TEST_F(WholeFiles, TellWhenTheyAreNotThere) {
    ExpectFailure(kCFURLResourceNotFoundError, folder.Path("none"));
    ExpectFailure(kCFURLResourceNotFoundError, folder.Path("none/file"));
}

TEST_F(WholeFiles, TellWhenTheyMayNotBeRead) {
    std::string const path = folder.Write("file", "abc");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::all);
    Unprivileged const rights;
    ExpectFailure(kCFURLResourceAccessViolationError, path);
}

TEST_F(WholeFiles, MayHave256MiBAndNoMore) {
    std::string const path = folder.Write("file");
    constexpr off_t most = off_t{256} << 20;
    ASSERT_EQ(0, truncate(path.c_str(), most));
    EXPECT_EQ(std::size_t{most}, Read(path).bytes.size());
    ASSERT_EQ(0, truncate(path.c_str(), most + 1));
    PlatformForgetFileFailure();
    ExpectFailure(kCFURLUnknownError, path);
    char name[4096];
    EXPECT_EQ(fileBoundsErr, PlatformFileFailure(name, sizeof name));
    EXPECT_EQ(path, name);
    PlatformForgetFileFailure();
}

TEST_F(WholeFiles, HaveNoProperties) {
    Owned<CFURLRef> const url = NewURL(folder.Write("file", "abc"));
    SInt32 code = 0;
    auto const wanted = reinterpret_cast<CFArrayRef>(&code);
    EXPECT_FALSE(
        CFURLCreateDataAndPropertiesFromResource(kCFAllocatorDefault, url, nullptr, nullptr, wanted, &code));
    EXPECT_EQ(kCFURLUnknownPropertyKeyError, code);
}

TEST_F(WholeFiles, NeedNoOutputs) {
    Owned<CFURLRef> const url = NewURL(folder.Write("file", "abc"));
    EXPECT_TRUE(CFURLCreateDataAndPropertiesFromResource(kCFAllocatorDefault, url, nullptr, nullptr, nullptr,
                                                         nullptr));
}

TEST_F(WholeFiles, EndWhenTheCheckInFunctionSaysStop) {
    std::string const path = folder.Write("file", "abc");
    PlatformSetCheckIn([](UInt32) -> Boolean { return false; });
    ExpectFailure(kCFURLTimeoutError, path);
    PlatformSetCheckIn(nullptr);
}

}  // namespace
