#include "filesystem/Attributes.h"

namespace {

bool HasFinderFlag(file const& object, unsigned flag) { return (object.Info().FinderFlags() & flag) != 0; }

integer Length(UInt64 bytes) { return static_cast<long long>(bytes); }

}  // namespace

boolean locked_of(file const& object) { return (object.Info().catalog.nodeFlags & kFSNodeLockedMask) != 0; }
boolean visible_of(file const& object) { return !HasFinderFlag(object, kIsInvisible); }
boolean alias_of(file const& object) { return HasFinderFlag(object, kIsAlias); }
boolean stationery_of(file const& object) { return HasFinderFlag(object, kIsStationery); }

datafork datafork_of(file const& object) { return {object}; }
resfork resfork_of(file const& object) { return {object}; }

integer data_length_of(datafork const& fork) { return Length(fork.owner.Info().catalog.dataLogicalSize); }
integer res_length_of(resfork const& fork) { return Length(fork.owner.Info().catalog.rsrcLogicalSize); }
integer length_of(file const& object) {
    FSCatalogInfo const& catalog = object.Info().catalog;
    return Length(catalog.dataLogicalSize + catalog.rsrcLogicalSize);
}
