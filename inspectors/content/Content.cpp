#include "content/Content.h"

#include <cstring>
#include <memory>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Text.h"
#include "content/ByteSearch.h"
#include "content/FileReading.h"
#include "filesystem/File.h"
#include "frame/Yielding.h"

namespace {

constexpr std::size_t kChunkSize = 32768;

void Fold(CaseMode mode, Data bytes) {
    if (mode == CaseMode::Lower) Ascii::LowerCase(bytes, bytes);
    if (mode == CaseMode::Upper) Ascii::RaiseCase(bytes, bytes);
}

// Looks for the text in one chunk after the other. In front of the buffer for chunks there is room for the
// end of the one before, so that what stands across the two is found as well.
bool Search(file const& object, CaseMode mode, ConstData text) {
    std::size_t const overlap = text.Size() - 1;
    auto const work = std::make_unique_for_overwrite<unsigned char[]>(overlap + kChunkSize);
    Data const buffer(work.get() + overlap, kChunkSize);
    FileReadingPath path;
    path.OpenInternal(object, fsRdPerm);
    FileReadingLoop loop(buffer, path, 0);
    Inspectors::TextFinder const finder(text);
    bool isFound = false;
    for (unsigned char const* start = buffer.begin(); loop.Remaining() != 0 && !isFound; ++loop) {
        Fold(mode, {buffer.begin(), loop.Chunk().Size()});
        ConstData const span(start, loop.Chunk().end());
        if (span.Size() < text.Size()) return false;
        isFound = finder.FindIn(span) != nullptr;
        std::memmove(work.get(), span.end() - overlap, overlap);
        start = work.get();
        Trickle();
    }
    path.Close();
    return isFound;
}

}  // namespace

Fingerprinter& operator<<(Fingerprinter& print, content const& object) { return print << object.owner; }

content content_of(file const& object) { return {object, CaseMode::AsIs}; }
content AsUppercase(content const& object) { return {object.owner, CaseMode::Upper}; }
content AsLowercase(content const& object) { return {object.owner, CaseMode::Lower}; }

bool Contains(content const& whole, inspector_string const& part) {
    if (part.length == 0) return true;
    if (part.length > kChunkSize) throw NoSuchObject();
    try {
        return Search(whole.owner, whole.mode, part);
    } catch (...) {
        throw NoSuchObject();
    }
}

integer byte_of(unsigned long long index, file const& object) {
    try {
        bool const isAddressable = index >> 32 == 0;
        if (index >= object.Info().catalog.dataLogicalSize || !isAddressable) throw NoSuchObject();
        FileReadingPath path;
        path.OpenInternal(object, fsRdPerm);
        MacintoshPlatform::FileReader reader;
        reader.Start(path, static_cast<long long>(index));
        unsigned char byte = 0;
        reader >> Data(&byte, 1);
        return byte;
    } catch (...) {
        throw NoSuchObject();
    }
}
