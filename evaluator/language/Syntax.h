#pragma once

// Internal. The syntax tree: what a query says, before anything is known of types.

#include <memory>
#include <string>
#include <vector>

#include "Evaluator/Embedding.h"

namespace Evaluator {

enum class SyntaxKind {
    string,      // text
    integer,     // number
    truth,       // number: 0 or 1
    it,          //
    step,        // text: phrase; index; object; condition
    group,       // parts[0]: what stands in the parentheses; object; condition
    collection,  // parts: two or more
    tuple,       // parts: two or more
    choice,      // parts: condition, then, else
    fallback,    // parts: left, right
    both,        // parts: left, right ("and")
    either,      // parts: left, right ("or")
    negation,    // parts[0] ("not")
    existence,   // parts[0]
    relation,    // parts: left, right; relation
    arithmetic,  // parts: left, right; number: operator code
    minus,       // parts[0]
    cast,        // parts[0]; text: phrase
};

/// How a relation is made of a registered one: exchange the operands, negate the result.
struct Relation {
    int code = 0;
    bool exchanged = false;
    bool negated = false;
    friend bool operator==(Relation const&, Relation const&) = default;
};

struct Syntax;
using SyntaxPointer = std::unique_ptr<Syntax>;

struct Syntax {
    SyntaxKind kind;
    Range range;       ///< all of it
    Range sign;        ///< its own words: a phrase, an operator, a group with its parentheses
    std::string text;  ///< see SyntaxKind

    long long number = 0;
    Relation relation;
    std::vector<SyntaxPointer> parts;
    SyntaxPointer index;      ///< of a step: its index, if any
    SyntaxPointer object;     ///< of a step or group: what stands behind "of", if anything
    SyntaxPointer condition;  ///< of a step or group: what stands behind "whose", if anything
    std::size_t height = 1;   ///< of the tree below and with this node
};

/// What stands within parentheses that only group.
inline Syntax const& Ungrouped(Syntax const& syntax) {
    bool const groups = syntax.kind == SyntaxKind::group && !syntax.condition && !syntax.object;
    return groups ? Ungrouped(*syntax.parts[0]) : syntax;
}

}  // namespace Evaluator
