#include "content/ExclusionList.h"

bool DoNotReadFile(file const& object) {
    for (std::uint32_t entry = 0; entry < gFileExclusionListLength; ++entry)
        if (object == gFileExclusionList[entry]) return true;
    return false;
}
