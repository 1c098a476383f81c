#include "files/Lookup.h"

#include <Carbon/MacErrors.h>

#include <algorithm>

#include "files/Errors.h"
#include "files/Locations.h"
#include "foundation/PathStyles.h"
#include "foundation/TextCodec.h"

namespace Platform {

OSErr FindItem(Path const& path, LinkRule rule, FoundItem& found) {
    found.location = {path, rule};
    return Inspect(found.location, found.item);
}

OSErr FindItemOfText(std::string_view text, LinkRule rule, FoundItem& found) {
    Path path;
    bool mustBeFolder = false;
    if (int const error = ResolvePath(text, path, mustBeFolder); error != 0) return ErrorOfErrno(error);
    LinkRule const applied = mustBeFolder && rule == LinkRule::Itself ? LinkRule::Follow : rule;
    if (OSErr const error = FindItem(path, applied, found); error != noErr) return error;
    return mustBeFolder && !found.item.IsFolder() ? OSErr{dirNFErr} : OSErr{noErr};
}

OSErr FindReferenced(FSRef const& reference, FoundItem& found) {
    auto remembered = ReferenceTable::Shared().Find(reference);
    if (!remembered) return errFSBadFSRef;
    found.location = std::move(remembered->location);
    if (OSErr const error = Inspect(found.location, found.item); error != noErr) return error;
    bool const same = IdentityOf(found.item).IsSameItem(*ReferenceTable::IdentityIn(reference));
    return same ? OSErr{noErr} : OSErr{fnfErr};
}

FSRef MakeReference(FoundItem const& found) {
    return ReferenceTable::Shared().Remember(found.location, found.item);
}

OSErr CheckName(std::string_view name) {
    constexpr std::size_t longestName = 255;
    if (name.empty()) return errFSMissingName;
    bool const hasBadByte =
        name.find('/') != std::string_view::npos || name.find('\0') != std::string_view::npos;
    if (hasBadByte || IsDots(name)) return bdNamErr;
    return name.size() > longestName ? OSErr{errFSNameTooLong} : OSErr{noErr};
}

HFSUniStr255 CarbonName(std::string_view name) {
    HFSUniStr255 result{};
    std::u16string const text = TextOfFileName(name);
    std::size_t const units = std::min(text.size(), std::size(result.unicode));
    result.length = static_cast<UInt16>(units);
    std::copy_n(text.begin(), units, result.unicode);
    return result;
}

}  // namespace Platform
