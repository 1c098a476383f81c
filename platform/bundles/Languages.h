#pragma once

// Languages, and the folders that bundles keep their texts of them in. Pure.

#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// The languages of a value such as "fr_CA.UTF-8@euro:en" of the environment's LANGUAGE or LANG: codes
/// without encodings. "C" and "POSIX" are none.
std::vector<std::string> LanguagesOfLocales(std::string_view locales);

/// The names, without ".lproj", of the folders of languages, each of which is a code (fr, fr_CA, fr-CA) or an
/// English name (French), in the order in which they are to be looked at; each once.
std::vector<std::string> FoldersOfLanguages(std::vector<std::string> const& languages);

}  // namespace Platform
