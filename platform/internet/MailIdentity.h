#pragma once

// The user's e-mail address, as programs that send mail have it in their settings. Pure.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Platform {

/// The address that the text of git's configuration has: "email" of the section "user", the last one; it may
/// be empty. Empty when there is none. For each "path" of the section "include" `textOf` gets the text of
/// that file, whose address counts in its place; what that one includes does not. Lines that git would refuse
/// are passed over.
std::optional<std::string> GitEmailIn(std::string_view config,
                                      std::function<std::string(std::string_view path)> const& textOf = {});

/// The folder of Thunderbird's default profile in the text of its profiles.ini, below the folder of that file
/// unless it begins with '/': that of the first installation, else the profile that is marked as the default,
/// else the first one. Empty when there is none.
std::string DefaultProfileIn(std::string_view profiles);

/// The text that a line `user_pref("key", "text");` of a prefs.js gives a key; the last one counts. Escapes
/// are those of a quote, an apostrophe and a backslash; lines with others, and of other forms, are passed
/// over. Empty when there is none.
std::optional<std::string> TextPreferenceIn(std::string_view preferences, std::string_view key);

/// The address of the default identity in the text of Thunderbird's prefs.js: the first identity of the
/// default account, or of the first account where none is the default. Empty when there is none.
std::string ThunderbirdEmailIn(std::string_view preferences);

}  // namespace Platform
