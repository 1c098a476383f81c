#include "bundles/BundleLayout.h"

#include <Carbon/MacErrors.h>
#include <dirent.h>

#include <vector>

#include "files/Errors.h"
#include "files/FileFailure.h"
#include "files/SlowPaths.h"
#include "foundation/AsciiCase.h"
#include "foundation/PathStyles.h"

namespace Platform {

namespace {

constexpr std::array<std::string_view, 3> kInformationNames = {"Info-macos.plist", "Info.plist",
                                                               "Info-gnustep.plist"};
constexpr std::string_view kPackageInfo = "PkgInfo";

// A layout that a folder may have, and what lies there.
struct Candidate {
    std::string information;  // the folder of the information dictionary
    std::string package;      // that of PkgInfo
    std::string resources;
    BundleMarks marks;
    bool hasPackageInfo;
};

std::string Below(std::string_view folder, std::string_view name) {
    return folder.empty() ? std::string(name) : JoinPaths(folder, name);
}

class Finder {
  public:
    Finder(std::string_view name, LookIntoFolder const& lookInto)
        : isFramework(name.ends_with(".framework")), look(lookInto) {}

    OSErr Find(std::optional<BundleLayout>& layout) {
        if (OSErr const error = look("", top); error != noErr) return error;
        if (isFramework) AddOld();
        AddFolder("Contents", "Contents/Resources", top.hasContents);
        if (!isFramework) AddOld();
        AddFolder("Support Files", "Support Files/Resources", top.hasSupportFiles);
        candidates.push_back({"", "", "", top, top.hasPackageInfo});
        if (failure == noErr) layout = Choose();
        return failure;
    }

  private:
    bool const isFramework;
    LookIntoFolder const& look;
    BundleMarks top;
    std::vector<Candidate> candidates;
    OSErr failure = noErr;

    BundleMarks LookInto(std::string_view folder) {
        BundleMarks marks;
        if (failure == noErr) failure = look(folder, marks);
        return marks;
    }

    void AddFolder(char const* folder, char const* resources, bool isThere) {
        if (!isThere) return;
        BundleMarks const marks = LookInto(folder);
        candidates.push_back({folder, folder, resources, marks, marks.hasPackageInfo});
    }

    void AddOld() {
        std::string const resources = FolderOfResources();
        if (!resources.empty())
            candidates.push_back({resources, "", resources, LookInto(resources), top.hasPackageInfo});
    }

    std::string FolderOfResources() {
        if (top.hasResources) return "Resources";
        std::string const current = "Versions/Current";
        bool const hasThose = isFramework && top.hasVersions && LookInto(current).hasResources;
        return hasThose ? current + "/Resources" : "";
    }

    std::optional<BundleLayout> Choose() const {
        for (Candidate const& candidate : candidates) {
            for (std::string const& name : candidate.marks.information) {
                if (!name.empty()) return Layout(candidate, Below(candidate.information, name));
            }
        }
        for (Candidate const& candidate : candidates) {
            if (candidate.hasPackageInfo) return Layout(candidate, "");
        }
        return std::nullopt;
    }

    static BundleLayout Layout(Candidate const& candidate, std::string information) {
        std::string package = candidate.hasPackageInfo ? Below(candidate.package, kPackageInfo) : "";
        return {std::move(information), std::move(package), candidate.resources};
    }
};

}  // namespace

void BundleMarks::Note(std::string_view name, unsigned char type) {
    bool const mayBeFolder = type == DT_DIR || type == DT_LNK || type == DT_UNKNOWN;
    if (mayBeFolder) {
        hasContents |= name == "Contents";
        hasResources |= name == "Resources";
        hasSupportFiles |= name == "Support Files";
        hasVersions |= name == "Versions";
    }
    if (type == DT_DIR) return;
    hasPackageInfo |= name == kPackageInfo;
    for (std::size_t i = 0; i < kInformationNames.size(); ++i) {
        if (!EqualIgnoringCase(name, kInformationNames[i]) || information[i] == kInformationNames[i])
            continue;
        // Of several the one in the usual case, else the first one by its bytes.
        bool const isBetter = information[i].empty() || name == kInformationNames[i] || name < information[i];
        if (isBetter) information[i] = name;
    }
}

OSErr FindBundleLayout(std::string_view name, LookIntoFolder const& look,
                       std::optional<BundleLayout>& layout) {
    return Finder(name, look).Find(layout);
}

OSErr LookIntoFolderAt(std::string const& path, BundleMarks& marks) {
    OSErr const error = Reach(SlowMountBehind(path, LinkRule::Follow), marks, [path](BundleMarks& seen) {
        SystemPath const place{Path(path)};
        if (place.Error() != 0) return ErrorOfErrno(place.Error());
        return ErrorOfErrno(ForEachEntry(
            place.Get(), [&seen](FolderEntry const& entry) { seen.Note(entry.name, entry.type); }));
    });
    if (error == userCanceledErr || error == volOffLinErr) return error;
    if (error != fnfErr && error != dirNFErr) NoteFileFailure(error, Path(path));
    return noErr;
}

}  // namespace Platform
