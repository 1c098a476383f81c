#include "Evaluator/PlatformStrings.h"

#include "values/InspectorMemory.h"

using namespace Evaluator;

namespace {

constexpr UInt8 lossByte = '?';

// An encoding of more than 32 bits is none; cut to 32 it might be one.
CFStringEncoding EncodingOf(unsigned long number) {
    if (number > std::numeric_limits<CFStringEncoding>::max()) throw ParsingFailure();
    return static_cast<CFStringEncoding>(number);
}

}  // namespace

inspector_string MakeString(CFStringRef text, unsigned long encoding) {
    CFStringEncoding const code = EncodingOf(encoding);
    CFRange const all = CFRangeMake(0, CFStringGetLength(text));
    CFIndex size = 0;
    if (CFStringGetBytes(text, all, code, lossByte, false, nullptr, 0, &size) != all.length)
        throw ParsingFailure();
    Data const bytes = InspectorMemory(static_cast<unsigned long>(size));
    CFStringGetBytes(text, all, code, lossByte, false, bytes.begin(), size, &size);
    return AsString(bytes);
}

CFStringRef MakeCFString(ConstData text, unsigned long encoding) {
    CFStringEncoding const code = EncodingOf(encoding);
    auto const size = static_cast<CFIndex>(text.Size());
    if (CFStringRef made = CFStringCreateWithBytes(kCFAllocatorDefault, text.begin(), size, code, false))
        return made;
    // Every byte is valid in Mac Roman, so only memory can have been missing.
    if (code == kCFStringEncodingMacRoman) throw MemoryFullError();
    throw ParsingFailure();
}
