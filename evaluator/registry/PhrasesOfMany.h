#pragma once

// Internal. The phrases of the language itself that take a whole plural at once. They are no registrations,
// and no library may register one of them.

#include <array>
#include <string_view>

namespace Evaluator {

enum class TakesMany { number, sum, minimum, maximum, unique, sorted, first, last, concatenation };

/// What the type of the values must offer.
enum class Offers {
    anything,
    addition,  ///< it is an integer or a time interval
    equality,  ///< there is an "=" of two of it
    order,     ///< there is a "<" of two of it
    text,      ///< it is a string
};

struct PhraseOfMany {
    TakesMany what;
    std::string_view singular, plural;
    std::string_view index;  ///< type of the index that it may have; empty: it takes none
    Offers offers;
    std::string_view example;
};

inline constexpr std::array kPhrasesOfMany{
    PhraseOfMany{TakesMany::number, "number", "numbers", "", Offers::anything,
                 "number of files of folder \"/etc\""},
    PhraseOfMany{TakesMany::sum, "sum", "sums", "", Offers::addition, "sum of (1; 2; 3)"},
    PhraseOfMany{TakesMany::minimum, "minimum", "minimums", "", Offers::order, "minimum of (1; 2; 3)"},
    PhraseOfMany{TakesMany::maximum, "maximum", "maximums", "", Offers::order, "maximum of (1; 2; 3)"},
    PhraseOfMany{TakesMany::unique, "unique value", "unique values", "", Offers::equality,
                 "unique values of (1; 2; 1)"},
    PhraseOfMany{TakesMany::sorted, "sorted value", "sorted values", "", Offers::order,
                 "sorted values of (2; 3; 1)"},
    PhraseOfMany{TakesMany::first, "first value", "first values", "integer", Offers::anything,
                 "first values 2 of (1; 2; 3)"},
    PhraseOfMany{TakesMany::last, "last value", "last values", "integer", Offers::anything,
                 "last values 2 of (1; 2; 3)"},
    PhraseOfMany{TakesMany::concatenation, "concatenation", "concatenations", "string", Offers::text,
                 "concatenation \", \" of (\"a\"; \"b\")"},
};

/// The row that has the phrase (normal form), or null.
constexpr PhraseOfMany const* FindPhraseOfMany(std::string_view phrase) {
    for (PhraseOfMany const& row : kPhrasesOfMany)
        if (row.singular == phrase || row.plural == phrase) return &row;
    return nullptr;
}

}  // namespace Evaluator
