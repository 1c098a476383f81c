#include "Memory.h"

#include <memory>
#include <vector>

#include "Evaluator/Context.h"

namespace {

std::vector<std::unique_ptr<unsigned char[]>> blocks;

}  // namespace

std::size_t BlocksGiven() { return blocks.size(); }

void ReleaseInspectorMemory() { blocks.clear(); }

void* Allocate_Inspector_Memory(unsigned int size) {
    blocks.push_back(std::make_unique<unsigned char[]>(size));
    return blocks.back().get();
}
