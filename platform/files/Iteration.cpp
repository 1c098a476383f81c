// The functions on iterators: the edge of the interface, in terms of FolderIterator.h.

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include "files/Errors.h"
#include "files/FileSpecs.h"
#include "files/FolderIterator.h"
#include "files/Lookup.h"
#include "foundation/Object.h"
#include "foundation/Url.h"

using namespace Platform;

namespace {

// The outputs of a batch.
struct Batch {
    FSCatalogInfoBitmap whichInfo;
    FSCatalogInfo* infos;
    FSRef* references;
    FSSpec* specs;
    HFSUniStr255* names;
};

OSErr Describe(FoundItem const& found, Place place, Listing& listing, Batch const& batch, ItemCount index) {
    bool const isKnown = found.item.status.stx_ino != 0;
    if (batch.infos != nullptr) {
        FSCatalogInfo& info = batch.infos[index];
        if (isKnown) {
            FillCatalogInfo(found, place, batch.whichInfo, listing, info);
        } else {
            info = FSCatalogInfo{};
        }
    }
    if (batch.references != nullptr) batch.references[index] = MakeReference(found);
    if (batch.names != nullptr) batch.names[index] = CarbonName(found.location.path.Name());
    if (batch.specs == nullptr) return noErr;
    return MakeSpec(found, batch.specs[index]);
}

// What stops the batch is told when the items before it have been given.
OSErr ReadBatch(FolderIterator& iterator, FolderIterator::Turn& turn, ItemCount most, Batch const& batch,
                ItemCount& count) {
    FoundItem found;
    Place place;
    while (count < most) {
        OSErr error = turn.Next(found, place);
        if (error == noErr) error = Describe(found, place, iterator.listing, batch, count);
        if (error != noErr) return count == 0 || error == errFSNoMoreItems ? error : OSErr{noErr};
        ++count;
    }
    return iterator.IsAtEnd() ? OSErr{errFSNoMoreItems} : OSErr{noErr};
}

OSErr OpenIterator(CFURLRef url, FSIterator& iterator) {
    Location folder{url->ResolvedPath(), url->rule};
    bool mustBeFolder = false;
    if (!folder.path.IsPlain()) {
        int const failure = ResolvePath(folder.path.Text(), folder.path, mustBeFolder);
        if (failure != 0) return ErrorOfErrno(failure);
    }
    std::shared_ptr<FolderIterator> opened;
    OSErr const error = FolderIterator::Open(folder, opened);
    if (error == noErr) iterator = FolderIterators::Shared().Add(std::move(opened));
    return error;
}

}  // namespace

OSErr PlatformOpenIterator(CFURLRef url, FSIterator* iterator) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        return url != nullptr && iterator != nullptr ? OpenIterator(url, *iterator) : OSErr{paramErr};
    });
}

OSErr FSGetCatalogInfoBulk(FSIterator iterator, ItemCount maximumObjects, ItemCount* actualObjects,
                           Boolean* containerChanged, FSCatalogInfoBitmap whichInfo,
                           FSCatalogInfo* catalogInfos, FSRef* refs, FSSpec* specs, HFSUniStr255* names) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        if (actualObjects == nullptr) return paramErr;
        *actualObjects = 0;
        auto const found = FolderIterators::Shared().Find(iterator);
        if (!found) return errFSIteratorNotFound;
        if (maximumObjects == 0) return errFSBadItemCount;
        if (!IsCatalogInfo(whichInfo)) return errFSBadInfoBitmap;
        FolderIterator::Turn turn(*found);
        if (turn.Error() != noErr) return turn.Error();
        if (containerChanged != nullptr) *containerChanged = turn.HasChanged();
        Batch const batch{whichInfo, catalogInfos, refs, specs, names};
        return ReadBatch(*found, turn, maximumObjects, batch, *actualObjects);
    });
}

OSErr FSCloseIterator(FSIterator iterator) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        return FolderIterators::Shared().End(iterator) ? OSErr{noErr} : OSErr{errFSIteratorNotFound};
    });
}
