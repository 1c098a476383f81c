// The functions on iterators: the edge of the interface, in terms of FolderIterator.h.

#include <Carbon/MacErrors.h>
#include <Platform/Items.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "files/Errors.h"
#include "files/FileSpecs.h"
#include "files/FolderIterator.h"
#include "files/Lookup.h"
#include "files/SlowPaths.h"
#include "foundation/Object.h"
#include "foundation/Url.h"

using namespace Platform;

namespace {

// The outputs of a batch; null where they are not wanted.
struct Batch {
    FSCatalogInfoBitmap whichInfo;
    FSCatalogInfo* infos;
    FSRef* references;
    FSSpec* specs;
    HFSUniStr255* names;
};

// Outputs of a thread that may still be writing them when nobody wants them any more.
class OwnOutputs {
  public:
    OwnOutputs(Batch const& like, ItemCount most)
        : whichInfo(like.whichInfo),
          infos(like.infos != nullptr ? most : 0),
          references(like.references != nullptr ? most : 0),
          specs(like.specs != nullptr ? most : 0),
          names(like.names != nullptr ? most : 0) {}

    Batch AsBatch() { return {whichInfo, In(infos), In(references), In(specs), In(names)}; }
    void CopyTo(Batch const& batch, ItemCount first, ItemCount count) const {
        Copy(infos, batch.infos, first, count);
        Copy(references, batch.references, first, count);
        Copy(specs, batch.specs, first, count);
        Copy(names, batch.names, first, count);
    }

  private:
    template <class Output>
    static Output* In(std::vector<Output>& outputs) {
        return outputs.empty() ? nullptr : outputs.data();
    }
    template <class Output>
    static void Copy(std::vector<Output> const& from, Output* to, ItemCount first, ItemCount count) {
        if (to != nullptr) std::copy_n(from.begin(), count, to + first);
    }

    FSCatalogInfoBitmap const whichInfo;
    std::vector<FSCatalogInfo> infos;
    std::vector<FSRef> references;
    std::vector<FSSpec> specs;
    std::vector<HFSUniStr255> names;
};

// An item that leads onto a mount whose server may not answer. It is described by what is known without it.
struct Postponed {
    ItemCount index;
    SlowMount mount;
    Location location;
};

// What a batch is read of, and what came of it.
struct Reading {
    std::shared_ptr<FolderIterator> iterator;
    Surroundings surroundings;
    ItemCount most = 0;
    bool isChangeWanted = false;
    ItemCount count = 0;
    bool hasChanged = false;
    std::vector<Postponed> postponed;
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
OSErr ReadItems(Reading& reading, FolderIterator::Turn& turn, Batch const& batch) {
    FolderIterator& iterator = *reading.iterator;
    ItemCount& count = reading.count;
    BatchFiller filler(batch, reading.most, iterator.listing);
    FoundItem found;
    Place place;
    std::optional<SlowMount> behind;
    while (count < reading.most) {
        OSErr error = turn.Next(found, place, behind);
        if (error == noErr) error = filler.Add(found, place, count);
        if (error != noErr) return count == 0 || error == errFSNoMoreItems ? error : OSErr{noErr};
        if (behind) reading.postponed.push_back({count, *std::exchange(behind, {}), found.location});
        ++count;
    }
    return iterator.IsAtEnd() ? OSErr{errFSNoMoreItems} : OSErr{noErr};
}

OSErr ReadBatch(Reading& reading, Batch const& batch) {
    FolderIterator::Turn turn(*reading.iterator, reading.surroundings);
    if (turn.Error() != noErr) return turn.Error();
    if (reading.isChangeWanted) reading.hasChanged = turn.HasChanged();
    return ReadItems(reading, turn, batch);
}

// A batch that was given up stays with the thread that reads it, and the iterator too.
OSErr ReadBatchPatiently(SlowMount const& mount, Reading& reading, Batch const& batch) {
    constexpr ItemCount mostItems = 256;
    reading.most = std::min(reading.most, mostItems);
    struct Shared {
        Reading reading;
        OwnOutputs outputs;
    };
    auto const shared = std::make_shared<Shared>(Shared{reading, OwnOutputs(batch, reading.most)});
    OSErr const error = CallPatiently(
        mount, std::nullopt, [shared] { return ReadBatch(shared->reading, shared->outputs.AsBatch()); });
    bool const isGivenUp = error == userCanceledErr || error == volOffLinErr;
    if (isGivenUp) return reading.iterator->givenUp = error;
    reading = std::move(shared->reading);
    shared->outputs.CopyTo(batch, 0, reading.count);
    return error;
}

OSErr DescribeByPath(Location const& location, Batch const& batch) {
    FoundItem found{location, {}};
    SystemPath const path(location);
    if (path.Error() != 0) return ErrorOfErrno(path.Error());
    if (OSErr const error = InspectListed(path.Get(), location.rule, found.item); error != noErr)
        return error;
    Listing nothingKnown;
    return BatchFiller(batch, 1, nothingKnown).Add(found, path.Get(), 0);
}

// Asks the mounts that items lead onto. Nobody asked for these, so one that does not answer soon is no
// failure: its items stay as they are.
OSErr DescribePostponed(Reading const& reading, Batch const& batch) {
    for (Postponed const& item : reading.postponed) {
        auto const outputs = std::make_shared<OwnOutputs>(batch, 1);
        OSErr const error = CallBriefly(item.mount, [outputs, location = item.location] {
            return DescribeByPath(location, outputs->AsBatch());
        });
        if (error == userCanceledErr) return reading.iterator->givenUp = error;
        if (error == noErr) outputs->CopyTo(batch, item.index, 1);
    }
    return noErr;
}

OSErr Read(Reading& reading, Batch const& batch) {
    auto const& mount = reading.iterator->OnSlowMount();
    OSErr const error = mount ? ReadBatchPatiently(*mount, reading, batch) : ReadBatch(reading, batch);
    OSErr const stopped = DescribePostponed(reading, batch);
    if (stopped != noErr) reading.count = 0;
    return stopped != noErr ? stopped : error;
}

OSErr OpenIterator(CFURLRef url, FSIterator& iterator) {
    Location const asked{url->ResolvedPath(), url->rule};
    auto const mount = SlowMountBehind(asked);
    std::shared_ptr<FolderIterator> opened;
    OSErr const error = Reach(mount, opened, [=](std::shared_ptr<FolderIterator>& result) -> OSErr {
        Location folder = asked;
        bool mustBeFolder = false;
        if (!folder.path.IsPlain()) {
            int const failure = ResolvePath(folder.path.Text(), folder.path, mustBeFolder);
            if (failure != 0) return ErrorOfErrno(failure);
        }
        return FolderIterator::Open(folder, mount, result);
    });
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
        if (found->givenUp != noErr) return found->givenUp;
        Surroundings around(found->Folder(), found->OnSlowMount());
        Reading reading{found, std::move(around), maximumObjects, containerChanged != nullptr, 0, false, {}};
        OSErr const error = Read(reading, {whichInfo, catalogInfos, refs, specs, names});
        if (containerChanged != nullptr) *containerChanged = reading.hasChanged;
        *actualObjects = reading.count;
        return error;
    });
}

OSErr FSCloseIterator(FSIterator iterator) {
    return Guarded<OSErr>(memFullErr, [&]() -> OSErr {
        return FolderIterators::Shared().End(iterator) ? OSErr{noErr} : OSErr{errFSIteratorNotFound};
    });
}
