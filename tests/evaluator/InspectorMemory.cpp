// Inspector memory for tests without an evaluation: kept until the program ends.

#include <cstddef>
#include <memory>
#include <vector>

#include "Evaluator/Context.h"

void* Allocate_Inspector_Memory(unsigned int size) {
    static std::vector<std::unique_ptr<std::max_align_t[]>> blocks;
    blocks.push_back(std::make_unique<std::max_align_t[]>(size / sizeof(std::max_align_t) + 1));
    return blocks.back().get();
}
