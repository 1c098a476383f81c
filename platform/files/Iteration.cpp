// The functions on iterators: the edge of the interface, in terms of FolderIterator.h.

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <optional>

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

// Fills the outputs for the items of a batch one after the other.
class BatchFiller {
  public:
    BatchFiller(Batch const& outputs, ItemCount most, Listing& itsListing)
        : batch(outputs), expected(most), listing(itsListing) {}

    OSErr Add(FoundItem const& found, Place place, ItemCount index) {
        if (batch.infos != nullptr) Describe(found, place, batch.infos[index]);
        if (batch.references != nullptr) {
            if (!row || row->IsFull()) row.emplace(ReferenceTable::Shared(), expected);
            batch.references[index] = row->Add(found.location, found.item);
        }
        if (batch.names != nullptr) batch.names[index] = CarbonName(found.location.path.Name());
        return batch.specs != nullptr ? MakeSpec(found, batch.specs[index]) : OSErr{noErr};
    }

  private:
    void Describe(FoundItem const& found, Place place, FSCatalogInfo& info) {
        bool const isKnown = found.item.status.stx_ino != 0;
        if (isKnown) {
            FillCatalogInfo(found, place, batch.whichInfo, listing, info);
        } else {
            info = FSCatalogInfo{};
        }
    }

    Batch const& batch;
    ItemCount const expected;
    Listing& listing;
    std::optional<ReferenceTable::Row> row;
};

// What stops the batch is told when the items before it have been given.
OSErr ReadBatch(FolderIterator& iterator, FolderIterator::Turn& turn, ItemCount most, Batch const& batch,
                ItemCount& count) {
    BatchFiller filler(batch, most, iterator.listing);
    FoundItem found;
    Place place;
    while (count < most) {
        OSErr error = turn.Next(found, place);
        if (error == noErr) error = filler.Add(found, place, count);
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
