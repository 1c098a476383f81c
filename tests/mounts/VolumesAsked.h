#pragma once

// Volumes as the platform tells of them, by their mount points.

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Items.h"

/// The reference number of the volume that a path is on.
inline FSVolumeRefNum NumberAt(std::string const& path) { return CatalogOf(path, kFSCatInfoVolume).volume; }

struct AskedVolume {
    OSErr error = noErr;
    FSVolumeRefNum number = 0;
    FSVolumeInfo info{};
    std::u16string name;
    std::string root;
};

inline AskedVolume AskVolume(FSVolumeRefNum number, ItemCount index) {
    AskedVolume asked;
    HFSUniStr255 name{};
    FSRef root{};
    asked.error =
        FSGetVolumeInfo(number, index, &asked.number, kFSVolInfoGettableInfo, &asked.info, &name, &root);
    if (asked.error != noErr) return asked;
    asked.name.assign(name.unicode, name.unicode + name.length);
    asked.root = PathOf(root);
    return asked;
}
inline AskedVolume AskVolume(FSVolumeRefNum number) { return AskVolume(number, 0); }

/// The mount points of all volumes below a folder, in the order of the volumes.
inline std::vector<std::string> VolumesBelow(std::string const& folder) {
    std::vector<std::string> roots;
    for (ItemCount index = 1;; ++index) {
        AskedVolume const volume = AskVolume(0, index);
        if (volume.error != noErr) {
            EXPECT_EQ(nsvErr, volume.error);
            return roots;
        }
        if (volume.root.starts_with(folder + "/")) roots.push_back(volume.root);
    }
}
