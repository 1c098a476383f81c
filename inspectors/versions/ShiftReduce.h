#pragma once

// A shift-reduce parser whose grammar is a set of chains.
//
// A Language names its symbols, PartOfSpeech, and how many there are, kPartsOfSpeech; one of them,
// CompleteVersion, stands for a whole text. A Semantics has a function for each action. A production says
// that a row of symbols makes another one:
//
//     Number Period Number -> SimpleVersion
//
// and is a chain of states, one for each symbol behind the first, with a final state at its end. Productions
// that begin alike share states:
//
//     start of Number:  Period ---- Number ---- (final)        states that are alternates stand
//                       (final)                                below each other
//
// A state on the parser's stack stands for one symbol that was read; it tells what may come next.

#include <array>
#include <cstdint>
#include <utility>

#include "Evaluator/Exceptions.h"
#include "Evaluator/Stacks.h"

/// What a row of symbols makes, and what is done then.
template <class Language, class Semantics>
struct Production {
    using Action = void (Semantics::*)();

    Action action;         // null for none
    std::uint16_t length;  // symbols, the first one included
    typename Language::PartOfSpeech result;
};

/// A place in a production, or in several that have been the same up to there.
template <class Language, class Semantics, class PartOfSpeech>
class GrammaticState {
  public:
    using ItsProduction = Production<Language, Semantics>;

    /// The end of a production.
    explicit GrammaticState(ItsProduction const& whole)
        : expected(Language::CompleteVersion), production(&whole) {}
    /// A place where a symbol is due, and the place behind it.
    GrammaticState(PartOfSpeech symbol, GrammaticState& behind)
        : expected(symbol), next(&behind), production(behind.production) {}
    GrammaticState(GrammaticState const&) = delete;
    GrammaticState& operator=(GrammaticState const&) = delete;

    bool IsFinal() const { return next == nullptr; }
    /// This state or the first of its alternates that is final or expects the symbol; null when none does.
    GrammaticState const* AlternateExpecting(PartOfSpeech symbol) const {
        GrammaticState const* state = this;
        while (state != nullptr && !state->IsFinal() && state->expected != symbol) state = state->alternate;
        return state;
    }

    PartOfSpeech const expected;            // CompleteVersion in a final state
    GrammaticState* const next = nullptr;   // when it has come; null in a final state
    GrammaticState* alternate = nullptr;    // when it has not: expects something else
    ItsProduction const* const production;  // the one that it was made for
};

/// The productions of a language, by their first symbols. It lends their states.
template <class Language, class Semantics>
class Grammar {
  public:
    using PartOfSpeech = typename Language::PartOfSpeech;
    using State = GrammaticState<Language, Semantics, PartOfSpeech>;

    /// Adds a production: its first symbol, and its states behind that. No two may have the same symbols.
    void AttachProduction(PartOfSpeech first, State& chain) {
        State*& start = starts[first];
        if (start == nullptr) {
            start = &chain;
            return;
        }
        State* cursor = start;
        State* state = &chain;
        while (true) {
            if (state->expected == cursor->expected) {
                cursor = cursor->next;
                state = state->next;
            } else if (cursor->alternate != nullptr) {
                cursor = cursor->alternate;
            } else {
                cursor->alternate = state;
                return;
            }
        }
    }

    /// The state behind the first symbol of productions; null when none begins with it.
    State const* StartOf(PartOfSpeech first) const { return starts[first]; }

  private:
    std::array<State*, Language::kPartsOfSpeech> starts{};
};

/// Recognises one text at a time and has the semantics act on it. For each symbol: Append, then whatever the
/// semantics is to know of the symbol, then Shift; Flush at the end. All of them throw ParsingFailure for a
/// text that is not of the grammar. Then, and before each text, Reset.
template <class Language, class Semantics>
class Parser {
  public:
    using PartOfSpeech = typename Language::PartOfSpeech;
    using State = GrammaticState<Language, Semantics, PartOfSpeech>;

    /// Both must outlive the parser.
    Parser(Grammar<Language, Semantics> const& itsGrammar, Semantics& itsSemantics)
        : grammar(itsGrammar), semantics(itsSemantics) {}

    /// Forgets all that has come.
    void Reset() {
        stack.PopAll();
        pending = nullptr;
        accepted = false;
        flushed = false;
    }

    /// A symbol has come. What it shows to be complete is reduced.
    void Append(PartOfSpeech symbol) {
        while (!stack.Empty() && TryToExpect(symbol).IsFinal()) Reduce();
        if (accepted) throw ParsingFailure();  // something behind a whole text
        pending = &Towards(symbol);
    }

    /// Takes the symbol in, and reduces what it completes.
    void Shift() {
        stack.Allocate() = std::exchange(pending, nullptr);
        while (!stack.Empty() && Top()->IsFinal()) Reduce();
    }

    /// The text has ended.
    void Flush() {
        flushed = true;
        while (!accepted && !stack.Empty() && TryToExpect(Language::CompleteVersion).IsFinal()) Reduce();
        if (!accepted) throw ParsingFailure();
    }

  private:
    State const*& Top() const { return stack.AtDepth(0); }

    // Goes over to the top's alternate that expects the symbol, or that is final, and returns the top.
    // Requires: there is one.
    State const& TryToExpect(PartOfSpeech symbol) {
        State const*& top = Top();
        State const* const found = top->AlternateExpecting(symbol);
        if (found != nullptr) top = found;
        return *top;
    }

    // Where a symbol leads: on from the top, if that expects it, else into new productions.
    State const& Towards(PartOfSpeech symbol) const {
        bool const goesOn = !stack.Empty() && Top()->expected == symbol;
        State const* const state = goesOn ? Top()->next : grammar.StartOf(symbol);
        if (state == nullptr) throw ParsingFailure();
        return *state;
    }

    // Puts what the top's production makes in the place of its symbols.
    void Reduce() {
        Production<Language, Semantics> const& production = *Top()->production;
        stack.Pop(production.length);
        if (production.action != nullptr) (semantics.*production.action)();
        if (production.result != Language::CompleteVersion) {
            if (!stack.Empty()) TryToExpect(production.result);
            stack.Allocate() = &Towards(production.result);
        } else {
            accepted = true;
            if (!stack.Empty()) throw ParsingFailure();
        }
    }

    Grammar<Language, Semantics> const& grammar;
    Semantics& semantics;
    State const* pending = nullptr;
    bool accepted = false;
    bool flushed = false;
    FiniteStackBase<State const*, 100> stack;
};
