#include "files/MacMetadata.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <vector>

#include "files/Locations.h"
#include "foundation/PathStyles.h"

namespace Platform {

namespace {

// An open file to read from; closed at the end.
class FileSource final : public ByteSource {
  public:
    // A file that is missing or not a regular one has no bytes.
    explicit FileSource(std::string const& path) {
        SystemPath const form(path);
        struct stat status;
        if (form.Error() != 0 || lstat(form.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
        descriptor = open(form.Get(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        size = static_cast<std::uint64_t>(status.st_size);
    }
    FileSource(FileSource const&) = delete;
    FileSource& operator=(FileSource const&) = delete;
    ~FileSource() override {
        if (descriptor >= 0) close(descriptor);
    }

    std::uint64_t Size() const override { return size; }
    bool Read(std::uint64_t offset, std::span<unsigned char> to) const override {
        if (descriptor < 0) return false;
        return pread(descriptor, to.data(), to.size(), static_cast<off_t>(offset)) ==
               static_cast<ssize_t>(to.size());
    }

  private:
    int descriptor = -1;
    std::uint64_t size = 0;
};

// The stores, in the order in which they are asked.
enum class Kind { FinderInfo, HfsCodes, AfpInfo, AppleDouble, Fork, CompanionFork, Companion };

struct Store {
    Kind kind;
    std::string_view name;     // of an attribute; of a companion what stands before the file's name
    std::size_t trailing = 0;  // bytes behind the value that are not part of it
};

constexpr std::string_view kDoubleFolder = ".AppleDouble/";
constexpr std::string_view kDoublePrefix = "._";

constexpr Store kStores[] = {
    {Kind::FinderInfo, "user.com.apple.FinderInfo"},    // copies by Mac-aware tools
    {Kind::Fork, "user.com.apple.ResourceFork"},        //
    {Kind::FinderInfo, "osx.com.apple.FinderInfo"},     // the kernel's HFS+ and an APFS module
    {Kind::HfsCodes, "hfs.type"},                       // the kernel's HFS, with "hfs.creator"
    {Kind::Fork, "osx.com.apple.ResourceFork"},         // an APFS module
    {Kind::FinderInfo, "com.apple.FinderInfo"},         // APFS through FUSE
    {Kind::Fork, "com.apple.ResourceFork"},             //
    {Kind::AfpInfo, "user.AFP_AfpInfo"},                // NTFS streams as attributes
    {Kind::Fork, "user.AFP_Resource"},                  //
    {Kind::AppleDouble, "user.org.netatalk.Metadata"},  // file servers for Macs
    {Kind::CompanionFork, kDoublePrefix},               //
    {Kind::Fork, "user.org.netatalk.ResourceFork"},     //
    {Kind::AfpInfo, "user.DosStream.AFP_AfpInfo:$DATA", 1},
    {Kind::Fork, "user.DosStream.AFP_Resource:$DATA", 1},
    {Kind::Companion, kDoubleFolder},
    {Kind::Companion, kDoublePrefix},  // copies to volumes that cannot hold forks
};

// The attributes of an item, by one listing.
class Attributes {
  public:
    explicit Attributes(char const* itemPath) : path(itemPath) {
        ssize_t size = listxattr(path, names.data(), names.size());
        while (size < 0 && errno == ERANGE && names.size() < kMostBytes) {
            names.resize(names.size() * 4);
            size = listxattr(path, names.data(), names.size());
        }
        names.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    }

    bool Has(std::string_view wanted) const {
        std::string_view rest = names;
        while (!rest.empty()) {
            std::string_view const name = rest.substr(0, rest.find('\0'));
            if (name == wanted) return true;
            rest.remove_prefix(std::min(name.size() + 1, rest.size()));
        }
        return false;
    }
    // The value of an attribute that is there, when it is at most `most` bytes; else nothing.
    std::vector<unsigned char> Value(std::string_view name, std::size_t most) const {
        std::vector<unsigned char> value(most);
        ssize_t const size = getxattr(path, std::string(name).c_str(), value.data(), value.size());
        value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        return value;
    }
    std::optional<std::uint64_t> Size(std::string_view name) const {
        ssize_t const size = getxattr(path, std::string(name).c_str(), nullptr, 0);
        if (size < 0) return std::nullopt;
        return static_cast<std::uint64_t>(size);
    }

  private:
    static constexpr std::size_t kMostBytes = 65536;  // the kernel's limit of a list
    char const* path;
    std::string names = std::string(1024, '\0');
};

// One pass over the stores for one item.
class Collector {
  public:
    Collector(std::string const& itemPath, bool folder, Companions companions)
        : path(itemPath),
          form(itemPath),
          attributes(form.Get()),
          isFolder(folder),
          lookForCompanions(companions == Companions::LookFor &&
                            !LastComponent(path).starts_with(kDoublePrefix)) {}

    MacMetadata Collect() {
        for (Store const& store : kStores) Ask(store);
        return std::move(facts);
    }

  private:
    void Ask(Store const& store) {
        bool const companion = store.kind == Kind::Companion || store.kind == Kind::CompanionFork;
        if (companion ? !lookForCompanions : !attributes.Has(store.name)) return;
        switch (store.kind) {
            case Kind::FinderInfo:
                TakeFinderInfo(attributes.Value(store.name, 256));
                break;
            case Kind::HfsCodes:
                TakeHfsCodes();
                break;
            case Kind::AfpInfo:
                Take(DecodeAfpInfo(attributes.Value(store.name, 256)));
                break;
            case Kind::AppleDouble:
                TakeImage(store.name);
                break;
            case Kind::Fork:
                TakeForkAttribute(store);
                break;
            case Kind::CompanionFork:
                TakeCompanion(store.name, true);
                break;
            case Kind::Companion:
                TakeCompanion(store.name, false);
                break;
        }
    }

    void TakeFinderInfo(std::vector<unsigned char> const& value) {
        if (facts.finderInfo || value.size() < sizeof(FinderBytes)) return;
        std::copy_n(value.begin(), sizeof(FinderBytes), facts.finderInfo.emplace().begin());
    }

    // The kernel's HFS shows type and creator only, and the fork as a file "rsrc" below the file.
    void TakeHfsCodes() {
        if (!facts.finderInfo) {
            FinderBytes& info = facts.finderInfo.emplace();
            info.fill(0);
            CopyCode("hfs.type", info.begin());
            CopyCode("hfs.creator", info.begin() + 4);
        }
        std::string const fork = JoinPaths(path, "rsrc");
        FileSource const source(fork);
        if (source.Size() != 0) TakeFork({ResourceForkPlace::Store::File, fork, 0, source.Size()});
    }

    void CopyCode(std::string_view name, FinderBytes::iterator to) const {
        auto const code = attributes.Value(name, 4);
        if (code.size() == 4) std::copy(code.begin(), code.end(), to);
    }

    void TakeForkAttribute(Store const& store) {
        auto const size = attributes.Size(store.name);
        if (!size || *size < store.trailing) return;
        TakeFork({ResourceForkPlace::Store::Attribute, std::string(store.name), 0, *size - store.trailing});
    }

    void TakeFork(ResourceForkPlace place) {
        if (facts.resourceFork.store == ResourceForkPlace::Store::None) facts.resourceFork = std::move(place);
    }

    void TakeImage(std::string_view name) {
        constexpr std::size_t mostBytes = 4096;  // such images have 402; they hold no fork
        auto const image = attributes.Value(name, mostBytes);
        Take(DecodeAppleDouble(MemorySource(image)));
    }

    std::string CompanionPath(std::string_view prefix) const {
        if (isFolder && prefix == kDoubleFolder) return JoinPaths(path, ".AppleDouble/.Parent");
        std::string const folder = ParentPath(path);
        if (folder.empty()) return {};
        return JoinPaths(folder, std::string(prefix).append(LastComponent(path)));
    }

    void TakeCompanion(std::string_view prefix, bool forkOnly) {
        if (prefix == kDoublePrefix && !doubleFile) doubleFile.emplace(ReadCompanion(prefix));
        CompanionFacts const& found =
            prefix == kDoublePrefix ? *doubleFile : folderFile.emplace(ReadCompanion(prefix));
        if (!found.facts) return;
        if (found.facts->resourceFork) {
            ByteRange const range = *found.facts->resourceFork;
            TakeFork({ResourceForkPlace::Store::File, found.path, range.offset, range.length});
        }
        if (!forkOnly) Take(found.facts);
    }

    struct CompanionFacts {
        std::string path;
        std::optional<AppleDoubleFacts> facts;
    };
    CompanionFacts ReadCompanion(std::string_view prefix) const {
        std::string const companion = CompanionPath(prefix);
        if (companion.empty()) return {};
        return {companion, DecodeAppleDouble(FileSource(companion))};
    }

    void Take(std::optional<AppleDoubleFacts> const& found) {
        if (!found) return;
        if (!facts.finderInfo) facts.finderInfo = found->finderInfo;
        if (!facts.created) facts.created = found->created;
        if (!facts.backedUp) facts.backedUp = found->backedUp;
        facts.locked |= found->locked;
    }

    std::string const& path;
    SystemPath form;
    Attributes attributes;
    bool isFolder;
    bool lookForCompanions;
    std::optional<CompanionFacts> doubleFile;
    std::optional<CompanionFacts> folderFile;
    MacMetadata facts;
};

}  // namespace

MacMetadata ReadMacMetadata(std::string const& path, bool isFolder, Companions companions) {
    return Collector(path, isFolder, companions).Collect();
}

}  // namespace Platform
