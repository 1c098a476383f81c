#include "plist/PlatformValues.h"

#include <Platform/Items.h>

#include "Evaluator/PlatformStrings.h"
#include "Evaluator/Text.h"

namespace {

using Object = Evaluator::ReferenceHolder<CFTypeRef, Evaluator::Release<CFTypeRef>>;

ConstData BytesOf(CFDataRef data) {
    return {CFDataGetBytePtr(data), static_cast<std::size_t>(CFDataGetLength(data))};
}

}  // namespace

inspector_string CFStringValue(CFStringRef text) { return MakeString(text, kCFStringEncodingMacRoman); }

inspector_string CFDataValue(CFDataRef data) { return MakeString(BytesOf(data)); }

inspector_string CFDataAsCStringValue(CFDataRef data) {
    ConstData const bytes = BytesOf(data);
    bool const isTerminated = !bytes.Empty() && *(bytes.end() - 1) == 0;
    return MakeString({bytes.begin(), bytes.Size() - (isTerminated ? 1 : 0)});
}

AutoCFDictionary DictionaryCreateFromXMLData(CFDataRef data, UInt32 mutability) {
    PlatformForgetFileFailure();  // a reason that was noted before is not that of this data
    CFStringRef message = nullptr;
    Object const root(CFPropertyListCreateFromXMLData(kCFAllocatorDefault, data, mutability, &message));
    AutoCFString const error(message);
    if (root == nullptr || error != nullptr) throw DictionaryCreateFromXMLDataFailed();
    auto const dictionary = Inspectors::IfIs<CFDictionaryRef>(root);
    if (dictionary == nullptr) throw DictionaryCreateFromXMLDataFailed();
    return AutoCFDictionary(Duplicate(dictionary));
}
