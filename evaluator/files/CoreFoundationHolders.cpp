#include "Evaluator/CoreFoundationHolders.h"

namespace {

template <class Reference>
Reference Duplicated(Reference reference) {
    if (reference != nullptr) CFRetain(reference);
    return reference;
}

}  // namespace

CFStringRef Duplicate(CFStringRef string) { return Duplicated(string); }
CFURLRef Duplicate(CFURLRef url) { return Duplicated(url); }

void AutoCFString::DisposeCFStringRef(CFStringRef string) { Evaluator::Release(string); }
void AutoCFURL::DisposeCFURLRef(CFURLRef url) { Evaluator::Release(url); }
