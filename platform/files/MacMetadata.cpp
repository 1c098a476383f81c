#include "files/MacMetadata.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "files/ExtendedAttributes.h"
#include "foundation/PathStyles.h"

namespace Platform {

namespace {

// An open file to read from; closed at the end.
class FileSource final : public ByteSource {
  public:
    // A file that is missing or not a regular one has no bytes.
    explicit FileSource(Place place) {
        struct stat status;
        bool const isThere = fstatat(place.folder, place.path, &status, AT_SYMLINK_NOFOLLOW) == 0;
        if (!isThere || !S_ISREG(status.st_mode)) return;
        descriptor = openat(place.folder, place.path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
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

// One pass over the stores for one item.
class Collector {
  public:
    // `listed` are the item's attributes; none where they are not to be asked.
    Collector(Place item, bool folder, MetadataStores const& wanted, ExtendedAttributes const& listed,
              MacMetadata& result)
        : facts(result),
          place(item),
          attributes(listed),
          name(LastComponent(item.path)),
          isFolder(folder),
          besides(wanted.companions && !name.starts_with(kDoublePrefix) && name != "/"),
          within(folder && wanted.within) {}

    void Collect() {
        for (Store const& store : kStores) Ask(store);
    }

  private:
    void Ask(Store const& store) {
        bool const companion = store.kind == Kind::Companion || store.kind == Kind::CompanionFork;
        if (companion ? !MayHave(store.name) : !attributes.Has(store.name)) return;
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
        std::string const fork = JoinPaths(name, "rsrc");
        FileSource const source({place.folder, Beside(place, fork).c_str()});
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

    // A fork of no bytes is none, so that it hides no other.
    void TakeFork(ResourceForkPlace place) {
        if (place.length == 0) return;
        if (facts.resourceFork.store == ResourceForkPlace::Store::None) facts.resourceFork = std::move(place);
    }

    void TakeImage(std::string_view name) {
        constexpr std::size_t mostBytes = 4096;  // such images have 402; they hold no fork
        auto const image = attributes.Value(name, mostBytes);
        Take(DecodeAppleDouble(MemorySource(image)));
    }

    // Whether there may be a companion with this in front of its name. A folder's own lies within it, where
    // a listing of the folder that holds it does not look.
    bool MayHave(std::string_view prefix) const {
        return isFolder && prefix == kDoubleFolder ? within : besides;
    }

    // A companion's name as the item's folder has it.
    std::string CompanionName(std::string_view prefix) const {
        if (isFolder && prefix == kDoubleFolder) return JoinPaths(name, ".AppleDouble/.Parent");
        return std::string(prefix).append(name);
    }

    void TakeCompanion(std::string_view prefix, bool forkOnly) {
        if (prefix == kDoublePrefix && !doubleFile) doubleFile.emplace(ReadCompanion(prefix));
        CompanionFacts const& found =
            prefix == kDoublePrefix ? *doubleFile : folderFile.emplace(ReadCompanion(prefix));
        if (!found.facts) return;
        if (found.facts->resourceFork) {
            ByteRange const range = *found.facts->resourceFork;
            TakeFork({ResourceForkPlace::Store::File, found.name, range.offset, range.length});
        }
        if (!forkOnly) Take(found.facts);
    }

    struct CompanionFacts {
        std::string name;
        std::optional<AppleDoubleFacts> facts;
    };
    CompanionFacts ReadCompanion(std::string_view prefix) const {
        std::string const companion = CompanionName(prefix);
        return {companion, DecodeAppleDouble(FileSource({place.folder, Beside(place, companion).c_str()}))};
    }

    void Take(std::optional<AppleDoubleFacts> const& found) {
        if (!found) return;
        if (!facts.finderInfo) facts.finderInfo = found->finderInfo;
        if (!facts.created) facts.created = found->created;
        if (!facts.backedUp) facts.backedUp = found->backedUp;
        facts.locked |= found->locked;
    }

    MacMetadata& facts;
    Place const place;
    ExtendedAttributes const& attributes;
    std::string_view const name;
    bool const isFolder;
    bool const besides;  // companions may lie beside the item
    bool const within;   // and in it
    std::optional<CompanionFacts> doubleFile;
    std::optional<CompanionFacts> folderFile;
};

}  // namespace

bool IsAppleDouble(Place place) { return HasAppleDoubleMagic(FileSource(place)); }

void ReadMacMetadata(Place place, bool isFolder, MetadataStores const& stores, MacMetadata& facts) {
    ExtendedAttributes attributes(place);
    if (stores.attributes) attributes.List();
    bool const mayHaveAny = !attributes.IsEmpty() || stores.companions || (isFolder && stores.within);
    if (mayHaveAny) Collector(place, isFolder, stores, attributes, facts).Collect();
}

}  // namespace Platform
