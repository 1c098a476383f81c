#include "versions/VersionAutomaton.h"

#include "Evaluator/Exceptions.h"

namespace {

constexpr std::uint32_t kMostNumber = 65535;
constexpr std::uint32_t kMostStage = 128;

}  // namespace

void VersionAutomaton::Reset() {
    numbers.PopAll();
    Begin(0, 0);
}

void VersionAutomaton::PushNumber(unsigned long number) {
    numbers.Allocate() = static_cast<std::uint32_t>(number);
}

void VersionAutomaton::BuildSingle() {
    Begin(Number(0, kMostNumber), 0);
    numbers.Pop(1);
}

void VersionAutomaton::BuildVers() {
    Begin(Number(1, kMostNumber), Number(0, kMostNumber));
    numbers.Pop(2);
}

void VersionAutomaton::Addbugrev() {
    result.bugrev = static_cast<std::uint16_t>(Number(0, kMostNumber));
    numbers.Pop(1);
}

void VersionAutomaton::AddStage1() {
    result.stage = static_cast<std::uint8_t>(Number(0, kMostStage));
    result.nonrel = 0;
    numbers.Pop(1);
}

void VersionAutomaton::AddStage2() {
    result.stage = static_cast<std::uint8_t>(Number(1, kMostStage));
    result.nonrel = static_cast<std::uint16_t>(Number(0, kMostNumber));
    numbers.Pop(2);
}

void VersionAutomaton::AddStage3() {
    result.stage = kReleased;
    result.nonrel = static_cast<std::uint16_t>(Number(0, kMostNumber));
    numbers.Pop(1);
}

void VersionAutomaton::Begin(std::uint32_t major, std::uint32_t minor) {
    result.major = static_cast<std::uint16_t>(major);
    result.minor = static_cast<std::uint16_t>(minor);
    result.bugrev = 0;
    result.stage = kNoStage;
    result.nonrel = 0;
    result.text.clear();
}

std::uint32_t VersionAutomaton::Number(unsigned long depth, std::uint32_t most) const {
    std::uint32_t const number = numbers.AtDepth(depth);
    if (number > most) throw VersionDataOutOfBounds();
    return number;
}
