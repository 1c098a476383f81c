#include <fcntl.h>
#include <sys/stat.h>

#include "Asking.h"

namespace {

// Keeps what it is fed.
class Recorder : public Fingerprinter {
  public:
    void Add(ConstData bytes) override { parts.emplace_back(bytes.begin(), bytes.end()); }
    std::vector<std::string> parts;
};

template <class Number>
std::string Memory(Number number) {
    return {reinterpret_cast<char const*>(&number), sizeof number};
}

std::string All(file const& item) {
    Recorder recorder;
    recorder << item;
    std::string all;
    for (std::string const& part : recorder.parts) all += part;
    return all;
}

}  // namespace

using Fingerprints = FileSystem;

TEST_F(Fingerprints, OfAFileAreItsPlaceNameLengthsAndTimes) {
    std::string const path = here.Write("file", "12345");
    here.SetAttribute("file", "user.com.apple.ResourceFork", "123");
    file const item = FileAt(path);
    Recorder recorder;
    recorder << item;
    FSSpec const fsSpec = MakeFSSpec(item.url);
    ASSERT_EQ(7u, recorder.parts.size());
    EXPECT_EQ(Memory(SInt16{fsSpec.vRefNum}), recorder.parts[0]);
    EXPECT_EQ(Memory(SInt32{fsSpec.parID}), recorder.parts[1]);
    EXPECT_EQ(Memory(UInt16{4}) + Memory(u'f') + Memory(u'i') + Memory(u'l') + Memory(u'e'),
              recorder.parts[2]);
    EXPECT_EQ(Memory(std::uint64_t{5}), recorder.parts[3]);
    EXPECT_EQ(Memory(std::uint64_t{3}), recorder.parts[4]);
    EXPECT_EQ(Memory(creation_time_of(item).SinceEpoch().microseconds), recorder.parts[5]);
    EXPECT_EQ(Memory(modification_time_of(item).SinceEpoch().microseconds), recorder.parts[6]);
}

TEST_F(Fingerprints, DifferWhenTheFileHasChanged) {
    std::string const path = here.Write("file", "1");
    std::string const before = All(FileAt(path));
    EXPECT_EQ(before, All(FileAt(path)));
    here.Write("file", "12");
    ClearFileCaches(nullptr);
    EXPECT_NE(before, All(FileAt(path)));
}

TEST_F(Fingerprints, OfWhatHasGoneFail) {
    file const item = FileAt(here.Write("file"));
    std::filesystem::remove(here.Path("file"));
    EXPECT_THROW(All(item), FailedToGetFileItem);
    EXPECT_THROW(All(file(MissingItem())), FailedToGetFileItem);
}
