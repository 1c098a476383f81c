#include "versions/Stage.h"

#include "versions/TokenTable.h"

namespace {

using Words = TokenTable<stage>;

constexpr Words::Association kWords[] = {
    {"", {kFinal}},        {"a", {kAlpha}}, {"b", {kBeta}},
    {"d", {kDevelopment}}, {"f", {kFinal}}, {nullptr, {kNoStage}},
};
static_assert(Words::IsInOrder(kWords));

}  // namespace

bool operator==(stage const& left, stage const& right) { return left.code == right.code; }
bool operator<(stage const& left, stage const& right) { return left.code < right.code; }
bool operator>(stage const& left, stage const& right) { return left.code > right.code; }

stage stage_of(unsigned char const* word, unsigned long length) {
    static Words const words(kWords);
    return words[{word, length}];
}

char const* LetterOf(stage which) {
    switch (which.code) {
        case kDevelopment:
            return "d";
        case kAlpha:
            return "a";
        case kBeta:
            return "b";
        case kFinal:
            return "f";
        case kReleased:
            return ".";
        default:
            return "";
    }
}
