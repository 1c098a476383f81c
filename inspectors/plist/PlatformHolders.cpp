#include "plist/PlatformHolders.h"

CFDictionaryRef Duplicate(CFDictionaryRef dictionary) {
    if (dictionary != nullptr) CFRetain(dictionary);
    return dictionary;
}

void AutoCFDictionary::DisposeCFDictionaryRef(CFDictionaryRef dictionary) { Evaluator::Release(dictionary); }
