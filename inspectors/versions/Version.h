#pragma once

// Versions: their text, their order, and what they are made of.
//
// A version is five numbers, as in 10.4.11b2: major, minor and bug revision, a stage, and a number within the
// stage. A text that is none of these forms is a version too, a textual one, which stands for just that text.

#include <cstdint>
#include <string>

#include "Evaluator/Values.h"
#include "versions/Stage.h"

/// The fields have the layout of the platform's 'vers' resource. Where there is a text it is what counts, and
/// the numbers mean nothing.
struct MacVersion {
    std::uint16_t major = 0;
    std::uint16_t minor = 0;
    std::uint16_t bugrev = 0;
    std::uint8_t stage = kNoStage;
    std::uint16_t nonrel = 0;  // the number behind the stage
    std::string text;          // empty for a numeric version
};

/// The version that a text stands for: see VersionLanguage.h for the forms. Every other text, and one with a
/// number above 65535, is a textual version of the whole text; the empty one is the numeric version 0.0.
/// Throws nothing but std::bad_alloc, and keeps nothing from one call to the next. Not to be called on two
/// threads at one time.
MacVersion TextToVersion(ConstData const& text);

/// A textual version's text; else the shortest text of the numbers: a bug revision of 0 is left out, and so
/// is the stage of a final version without a number.
std::string VersionToString(MacVersion const& version);

/// The order of two numeric versions: -1, 0 or 1. A release, a final without a number and a fourth number of
/// 0 are the same; a final with a number comes before the release, a fourth number behind it.
int CannonicalCompareVersions(MacVersion const& left, MacVersion const& right);
/// The order of two texts in which a row of digits counts as a number, and one with zeros in front as a
/// fraction: negative, 0 or positive.
int LinuxCompareVersions(char const* left, char const* right);
/// The order of two versions: of their numbers when both are numeric, else of their texts, each up to a NUL
/// byte. Negative, 0 or positive. It is a strict order of numeric versions and one of textual ones, but not
/// of both together, of which three may go round in a circle: 1.0, "1.0 beta", 1.0b2.
int CompareVersions(MacVersion const& left, MacVersion const& right);

bool operator==(MacVersion const& left, MacVersion const& right);
bool operator<(MacVersion const& left, MacVersion const& right);
bool operator<=(MacVersion const& left, MacVersion const& right);
// A string is compared as the version that it stands for.
bool operator==(MacVersion const& left, inspector_string const& right);
bool operator<(MacVersion const& left, inspector_string const& right);
bool operator<=(MacVersion const& left, inspector_string const& right);
bool operator==(inspector_string const& left, MacVersion const& right);
bool operator<(inspector_string const& left, MacVersion const& right);
bool operator<=(inspector_string const& left, MacVersion const& right);

/// The text of a version in inspector memory, and the version of a text.
inspector_string versionAsString(MacVersion const& version);
MacVersion stringAsVersion(inspector_string const& text);
MacVersion version_of(unsigned char const* text, unsigned long length);

integer major_rev_of(MacVersion const& version);
integer minor_rev_of(MacVersion const& version);
integer bug_rev_of(MacVersion const& version);
stage stage_of(MacVersion const& version);
