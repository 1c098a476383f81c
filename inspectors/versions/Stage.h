#pragma once

// How far a version has come on its way to the release.

#include <cstdint>

/// A release stage by its code. Later stages have larger codes.
struct stage {
    std::uint8_t code;
};

/// The codes. What is stored may be any other byte as well.
enum StageCode : std::uint8_t {
    kNoStage = 0x00,
    kDevelopment = 0x20,
    kAlpha = 0x40,
    kBeta = 0x60,
    kFinal = 0x80,
    kReleased = 0xA0,  // with a fourth number
};

bool operator==(stage const& left, stage const& right);
bool operator<(stage const& left, stage const& right);
bool operator>(stage const& left, stage const& right);

/// The stage that a word names: "d", "a", "b", "f", and "" for final. Any other word is no stage.
stage stage_of(unsigned char const* word, unsigned long length);
/// What stands for a stage in a version's text: a letter, "." for a release with a fourth number, and nothing
/// for any other code.
char const* LetterOf(stage which);
