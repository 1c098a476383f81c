// An inspector library that makes one mistake three times: caches with records of the wrong size.

#include "frame/Adapters.h"

namespace {

void ClearNothing(void*) {}

struct Module {
    alignas(16) unsigned char records[3][64] = {};
    Module() {
        for (auto& record : records) Register_Cache(record, 63, ClearNothing, nullptr);
    }
} module;

}  // namespace
