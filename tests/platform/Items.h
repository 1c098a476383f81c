#pragma once

// Verbs of the tests of references and catalog information.

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "support/Owned.h"
#include "support/TemporaryFolder.h"

inline FSRef ReferenceTo(std::string const& path) {
    FSRef reference{};
    EXPECT_EQ(noErr, FSPathMakeRef(Bytes(path.c_str()), &reference, nullptr)) << path;
    return reference;
}

inline FSCatalogInfo CatalogOf(FSRef const& reference, FSCatalogInfoBitmap which = kFSCatInfoGettableInfo) {
    FSCatalogInfo info{};
    EXPECT_EQ(noErr, FSGetCatalogInfo(&reference, which, &info, nullptr, nullptr, nullptr));
    return info;
}

inline FSCatalogInfo CatalogOf(std::string const& path, FSCatalogInfoBitmap which = kFSCatInfoGettableInfo) {
    return CatalogOf(ReferenceTo(path), which);
}

inline FileInfo FinderInfoOf(FSCatalogInfo const& info) {
    FileInfo result;
    std::memcpy(&result, info.finderInfo, sizeof result);
    return result;
}

/// Seconds since 1970, with the fraction as 1/65536.
inline std::int64_t FixedPoint(UTCDateTime time) {
    std::int64_t const seconds = static_cast<std::int64_t>(time.highSeconds) << 32 | time.lowSeconds;
    return (seconds - 2'082'844'800) * 65536 + time.fraction;
}

inline std::string PathOf(FSRef const& reference) {
    std::string buffer(65536, '\0');
    OSStatus const status = FSRefMakePath(&reference, reinterpret_cast<UInt8*>(buffer.data()),
                                          static_cast<UInt32>(buffer.size()));
    return status == noErr ? buffer.c_str() : "(" + std::to_string(status) + ")";
}
