#pragma once

// The bundle object, and the bundles that exist. Internal to the platform.

#include <CoreFoundation/CFBundle.h>

#include <cstdint>
#include <mutex>
#include <vector>

#include "foundation/Containers.h"
#include "foundation/Held.h"
#include "foundation/Path.h"

namespace Platform {

/// What a bundle is known by: its folder.
struct BundleFolder {
    Path path;  // plain
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t born = 0;  // tells it from one that was removed and had the same inode

    bool IsSame(BundleFolder const& other) const {
        return device == other.device && inode == other.inode && born == other.born;
    }
};

/// The code of four characters, the first one in the highest byte.
template <class Character>
constexpr UInt32 PackageCode(Character const* four) {
    UInt32 code = 0;
    for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<UInt8>(four[i]);
    return code;
}

/// The codes that a PkgInfo has.
struct PackageCodes {
    UInt32 type = 0;
    UInt32 creator = 0;
    bool areKnown = false;
};

/// What is found of a bundle at its making.
struct BundleParts {
    BundleFolder folder;
    Path resources;  // the folder of the localised folders
    Held<__CFDictionary const> information;
    PackageCodes codes;
};

}  // namespace Platform

/// A bundle. Safe from any thread.
struct __CFBundle final : Platform::Object {
    explicit __CFBundle(Platform::BundleParts ownParts);
    ~__CFBundle() override;

    CFTypeID TypeID() const override;
    bool EqualTo(Platform::Object const& other) const override { return this == &other; }
    CFHashCode Hash() const override { return reinterpret_cast<CFHashCode>(this) >> 4; }

    Platform::BundleFolder const& Folder() const { return parts.folder; }
    CFDictionaryRef Information() const { return parts.information.get(); }
    /// The local dictionary, which is read when it is first asked for; null when there is none, or the wait
    /// for it was given up.
    CFDictionaryRef Local();
    UInt32 Version() const { return version; }
    UInt32 PackageType() const;
    UInt32 PackageCreator() const;

  private:
    Platform::BundleParts const parts;
    UInt32 const version;

    std::mutex mutex;  // of what follows
    bool isLocalKnown = false;
    Platform::Held<__CFDictionary const> local;
};

namespace Platform {

/// The bundles that exist. It keeps none alive: each takes itself off at its end. Safe from any thread.
class Bundles {
  public:
    static Bundles& Shared();

    /// The bundle of a folder, with one more reference; null when there is none.
    CFBundleRef Find(BundleFolder const& folder);
    /// Adds a new bundle. Returns it or, when there is one of its folder by now, that one with one more
    /// reference.
    CFBundleRef Add(Held<__CFBundle> bundle);
    void Remove(CFBundleRef bundle) noexcept;
    /// Of the bundles with an identifier that of the highest version, of equal ones the last one. Lent; null
    /// when there is none.
    CFBundleRef FindIdentified(CFStringRef identifier);

  private:
    CFBundleRef FindRetained(BundleFolder const& folder) const;

    std::mutex mutex;
    std::vector<CFBundleRef> bundles;  // in the order of their making
};

}  // namespace Platform
