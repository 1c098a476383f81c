// The exclusion list as delivered: empty.

#include "content/ExclusionList.h"

MacintoshPlatform::FileLocation const* const gFileExclusionList = nullptr;
std::uint32_t const gFileExclusionListLength = 0;
