#include "language/Checker.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "language/Bracketed.h"
#include "language/Limits.h"
#include "language/Many.h"
#include "language/Parser.h"
#include "language/Signs.h"
#include "language/UnknownPhrases.h"

namespace Evaluator {
namespace {

std::string Quoted(std::string_view text) { return fmt::format("\"{}\"", text); }

class Checker {
  public:
    Checker(Vocabulary const& vocabulary, Limits const& limits, CheckedQuery& checked,
            std::vector<Problem>& problems)
        : vocabulary(vocabulary), limits(limits), checked(checked), problems(problems) {}

    ExpressionPointer CheckQuery(Syntax const& syntax) { return CheckAny(syntax); }

  private:
    // What `it` stands for at this place of the query.
    struct Binding {
        TypeEntry const* type;
        std::size_t place;
    };
    // `it` means `binding` for as long as this lives.
    struct Scope {
        Scope(Checker& checker, Binding binding)
            : checker(checker), before(std::exchange(checker.it, binding)) {}
        ~Scope() { checker.it = before; }
        Checker& checker;
        std::optional<Binding> before;
    };

    // ---- Problems. Each reports and returns nothing, for the caller to return.

    ExpressionPointer Report(Range range, std::string message, std::string hint = {}) {
        return Report({ProblemKind::meaning, range, std::move(message), std::move(hint)});
    }
    ExpressionPointer Report(Problem problem) {
        if (problems.empty() || problems.size() < limits.problems) problems.push_back(std::move(problem));
        return nullptr;
    }

    // Whether one value can be expected of the operand; reports when not.
    bool Singular(Syntax const& syntax, Expression const& operand, std::string_view hint) {
        if (!operand.plural) return true;
        std::string advice(hint);
        if (std::string phrase = operand.SingularPhrase(); !phrase.empty())
            advice = Quoted(phrase) + " is the singular";
        Report(syntax.range, "one value is wanted here, and this may be any number of them",
               std::move(advice));
        return false;
    }

    bool Boolean(Syntax const& syntax, Expression const& operand) {
        if (!Singular(syntax, operand, "ask whether there is one: exists … whose (…)")) return false;
        if (vocabulary.Serves(*operand.type, *Core("boolean"))) return true;
        Report(syntax.range,
               fmt::format("a boolean is wanted here, and this is {}", WithArticle(*operand.type)));
        return false;
    }

    // ---- Types

    TypeEntry const* Core(std::string_view name) const { return vocabulary.Type(name); }

    // The query needs the library of the registration and that of its result's type.
    TypeEntry const& Use(Entry const& entry, TypeEntry const* result) {
        checked.libraries.push_back(entry.library);
        checked.libraries.push_back(result->library);
        return *result;
    }

    TypeEntry const& TupleType(std::vector<TypeEntry const*> fields) {
        for (auto const& known : checked.tupleTypes)
            if (known->fields == fields) return *known;
        auto type = std::make_unique<TypeEntry>();
        type->library = Core("string")->library;
        type->size = fields.size() * sizeof(Value*);
        for (TypeEntry const* field : fields) type->name += (type->name.empty() ? "(" : ", ") + field->name;
        if (type->name.size() > kTupleName) type->name.resize(kTupleName);
        type->name += ")";
        type->fields = std::move(fields);
        return *checked.tupleTypes.emplace_back(std::move(type));
    }

    TypeEntry const* CommonType(TypeEntry const& left, TypeEntry const& right) const {
        if (&left == &right) return &left;
        if (!left.fields.empty() || !right.fields.empty()) return nullptr;
        return vocabulary.CommonBase(left, right);
    }

    // ---- Expressions

    // A null result has been reported.
    ExpressionPointer CheckAny(Syntax const& syntax) {
        try {
            return CheckKind(syntax);
        } catch (UnknownType const& unknown) {
            return Report(syntax.sign, unknown.what());
        }
    }

    ExpressionPointer CheckKind(Syntax const& syntax) {
        switch (syntax.kind) {
            case SyntaxKind::string:
                return MakeLiteral(syntax.range, *Core("string"), checked.literals++, syntax.text);
            case SyntaxKind::integer:
                return MakeLiteral(syntax.range, *Core("integer"), checked.literals++,
                                   integer(syntax.number));
            case SyntaxKind::truth:
                return MakeLiteral(syntax.range, *Core("boolean"), checked.literals++,
                                   boolean(syntax.number != 0));
            case SyntaxKind::it:
                return CheckIt(syntax);
            case SyntaxKind::step:
            case SyntaxKind::group:
                return CheckStep(syntax);
            case SyntaxKind::collection:
                return CheckCollection(syntax);
            case SyntaxKind::tuple:
                return CheckTuple(syntax);
            case SyntaxKind::choice:
                return CheckChoice(syntax);
            case SyntaxKind::fallback:
                return CheckFallback(syntax);
            case SyntaxKind::both:
            case SyntaxKind::either:
                return CheckLogical(syntax);
            case SyntaxKind::negation:
                return CheckNegation(syntax);
            case SyntaxKind::existence:
                return CheckExistence(syntax);
            case SyntaxKind::relation:
                return CheckRelation(syntax);
            case SyntaxKind::arithmetic:
                return CheckArithmetic(syntax);
            case SyntaxKind::minus:
                return CheckMinus(syntax);
            case SyntaxKind::cast:
                return CheckCast(syntax);
        }
        return nullptr;
    }

    ExpressionPointer CheckIt(Syntax const& syntax) {
        if (it) return MakeIt(syntax.range, *it->type, it->place);
        return Report(syntax.range, "\"it\" stands for nothing here",
                      "it is the value at hand inside \"whose (…)\" and inside a parenthesis before \"of\"");
    }

    // ---- Steps

    ExpressionPointer CheckStep(Syntax const& syntax) {
        ExpressionPointer index, object;
        if (syntax.index) index = CheckIndex(*syntax.index);
        if (syntax.object) object = CheckAny(*syntax.object);
        if ((syntax.index && !index) || (syntax.object && !object)) return nullptr;
        ExpressionPointer step = syntax.kind == SyntaxKind::group
                                     ? CheckGroup(syntax, std::move(object))
                                     : CheckPhrase(syntax, std::move(object), std::move(index));
        return step && syntax.condition ? CheckFilter(syntax, std::move(step)) : std::move(step);
    }

    ExpressionPointer CheckGroup(Syntax const& syntax, ExpressionPointer object) {
        if (!object) return CheckAny(*syntax.parts[0]);
        std::size_t place = checked.bindings++;
        Scope scope(*this, {object->type, place});
        Syntax const& within = Ungrouped(*syntax.parts[0]);
        ExpressionPointer inside = within.kind == SyntaxKind::collection
                                       ? CheckCollection(within, object->plural)
                                       : CheckAny(within);
        return inside ? MakeStep(syntax.sign, std::move(inside), place, std::move(object)) : nullptr;
    }

    ExpressionPointer CheckFilter(Syntax const& syntax, ExpressionPointer source) {
        if (!source->plural)
            return Report(
                syntax.sign, "\"whose\" filters many, and this is one value",
                "to filter a longer chain, put it in parentheses: (files of folders of …) whose (…)");
        std::size_t place = checked.bindings++;
        Scope scope(*this, {source->type, place});
        ExpressionPointer condition = CheckAny(*syntax.condition);
        if (!condition || !Boolean(*syntax.condition, *condition)) return nullptr;
        return MakeFilter(syntax.sign, std::move(source), place, std::move(condition));
    }

    ExpressionPointer CheckIndex(Syntax const& syntax) {
        ExpressionPointer index = CheckAny(syntax);
        if (!index || !Singular(syntax, *index, "")) return nullptr;
        if (!index->type->fields.empty()) return Report(syntax.range, "a tuple is no index");
        return index;
    }

    ExpressionPointer CheckPhrase(Syntax const& syntax, ExpressionPointer object, ExpressionPointer index) {
        if (PhraseOfMany const* phrase = FindPhraseOfMany(syntax.text))
            return CheckMany(syntax, *phrase, std::move(object), std::move(index));
        TypeEntry const* ofType = object ? object->type : nullptr;
        TypeEntry const* indexType = index ? index->type : nullptr;
        std::optional<PropertyMatch> match;
        if (!ofType || ofType->fields.empty())
            match = vocabulary.FindProperty(syntax.text, ofType, indexType);
        if (!match) return Report(UnknownPhrase(vocabulary, limits, syntax, ofType, indexType));
        TypeEntry const& result = Use(*match->entry, vocabulary.Result(*match->entry));
        return MakeProperty(syntax.sign, *match->entry, result, match->plural, std::move(object),
                            std::move(index));
    }

    // ---- Phrases that take many

    ExpressionPointer CheckMany(Syntax const& syntax, PhraseOfMany const& phrase, ExpressionPointer object,
                                ExpressionPointer index) {
        if (index && (phrase.index.empty() || !vocabulary.Serves(*index->type, *Core(phrase.index))))
            return ReportIndexOfMany(syntax, phrase);
        if (!object)
            return Report(syntax.sign, fmt::format("\"{}\" of what?", syntax.text),
                          std::string(phrase.example));
        Many many{syntax.sign, &phrase, syntax.text == phrase.plural, object->type, nullptr, nullptr,
                  nullptr,     {}};
        if (phrase.what == TakesMany::number) many.type = Core("integer");
        if (!HasWhatItNeeds(syntax, phrase.offers, *object->type, many)) return nullptr;
        many.source = std::move(object);
        many.index = std::move(index);
        return MakeMany(std::move(many));
    }

    ExpressionPointer ReportIndexOfMany(Syntax const& syntax, PhraseOfMany const& phrase) {
        std::string takes = "no index";
        if (!phrase.index.empty()) takes += fmt::format(", or {} as index", WithArticle(*Core(phrase.index)));
        return Report(syntax.index->range, fmt::format("\"{}\" takes {}", syntax.text, takes));
    }

    // Whether the type offers what the phrase needs, which is then noted in `many`; reports when not.
    bool HasWhatItNeeds(Syntax const& syntax, Offers needed, TypeEntry const& type, Many& many) {
        switch (needed) {
            case Offers::anything:
                return true;
            case Offers::addition:
                return OneOf(syntax, type, {"integer", "time interval"}, many) && Adds(*many.type, many);
            case Offers::text:
                return OneOf(syntax, type, {"string"}, many);
            case Offers::equality:
                return Compares(syntax, kRelationEqual, type, many);
            case Offers::order:
                return Compares(syntax, kRelationLess, type, many);
        }
        return false;
    }

    bool OneOf(Syntax const& syntax, TypeEntry const& type, std::vector<std::string> const& wanted,
               Many& many) {
        for (std::string const& name : wanted)
            if (vocabulary.Serves(type, *Core(name))) {
                many.type = Core(name);
                return true;
            }
        Report(syntax.sign, fmt::format("\"{}\" is of {}s, and this is {}", syntax.text,
                                        fmt::join(wanted, "s or "), WithArticle(type)));
        return false;
    }

    bool Adds(TypeEntry const& type, Many& many) {
        many.plus = vocabulary.FindOperator(kOperatorPlus, type, type);
        return many.plus != nullptr;
    }

    bool Compares(Syntax const& syntax, int code, TypeEntry const& type, Many& many) {
        try {
            many.comparison = Compare(code, type);
            return true;
        } catch (NotComparable const& why) {
            Report(syntax.sign, fmt::format("\"{}\" has to compare, and {}", syntax.text, why.message),
                   why.hint.empty()
                       ? fmt::format("ask for something of each that has \"{}\": {} of names of …",
                                     SignOf(code), syntax.text)
                       : why.hint);
            return false;
        }
    }

    Comparison Compare(int code, TypeEntry const& type) {
        Comparison comparison(vocabulary, code, type);
        comparison.AddLibraries(checked.libraries);
        return comparison;
    }

    // ---- Gatherings

    ExpressionPointer CheckCollection(Syntax const& syntax, bool ofStep = false) {
        std::vector<ExpressionPointer> members = CheckParts(syntax);
        if (members.empty()) return nullptr;
        TypeEntry const* type = members[0]->type;
        for (std::size_t i = 1; i < members.size(); ++i) {
            TypeEntry const* common = CommonType(*type, *members[i]->type);
            if (!common) return ReportUnlike(syntax.parts[i]->range, *type, *members[i]->type);
            type = common;
        }
        return MakeCollection(syntax.range, *type, ofStep, std::move(members));
    }

    ExpressionPointer CheckTuple(Syntax const& syntax) {
        std::vector<ExpressionPointer> fields = CheckParts(syntax);
        if (fields.empty()) return nullptr;
        std::vector<TypeEntry const*> types;
        for (ExpressionPointer const& field : fields) types.push_back(field->type);
        return MakeTuple(syntax.range, TupleType(std::move(types)), std::move(fields));
    }

    // All parts; none when one of them is not sound.
    std::vector<ExpressionPointer> CheckParts(Syntax const& syntax) {
        std::vector<ExpressionPointer> parts;
        bool sound = true;
        for (SyntaxPointer const& part : syntax.parts) {
            parts.push_back(CheckAny(*part));
            sound = sound && parts.back();
        }
        if (!sound) parts.clear();
        return parts;
    }

    ExpressionPointer ReportUnlike(Range range, TypeEntry const& left, TypeEntry const& right) {
        // Of two tuples it is the fields that differ.
        bool const tuples = !left.fields.empty() && !right.fields.empty();
        return Report(range,
                      fmt::format("{} and {} have no type in common", tuples ? left.name : WithArticle(left),
                                  tuples ? right.name : WithArticle(right)));
    }

    ExpressionPointer CheckChoice(Syntax const& syntax) {
        std::vector<ExpressionPointer> parts = CheckParts(syntax);
        if (parts.empty() || !Boolean(*syntax.parts[0], *parts[0])) return nullptr;
        TypeEntry const* type = CommonType(*parts[1]->type, *parts[2]->type);
        if (!type) return ReportUnlike(syntax.parts[2]->range, *parts[1]->type, *parts[2]->type);
        return MakeChoice(syntax.range, *type, std::move(parts[0]), std::move(parts[1]), std::move(parts[2]));
    }

    ExpressionPointer CheckFallback(Syntax const& syntax) {
        std::vector<ExpressionPointer> parts = CheckParts(syntax);
        if (parts.empty()) return nullptr;
        TypeEntry const* type = CommonType(*parts[0]->type, *parts[1]->type);
        if (!type) return ReportUnlike(syntax.parts[1]->range, *parts[0]->type, *parts[1]->type);
        return MakeFallback(syntax.range, *type, std::move(parts[0]), std::move(parts[1]));
    }

    // ---- Logic

    ExpressionPointer CheckLogical(Syntax const& syntax) {
        std::vector<ExpressionPointer> parts = CheckParts(syntax);
        if (parts.empty()) return nullptr;
        bool sound = true;
        for (std::size_t i = 0; i < 2; ++i) sound = Boolean(*syntax.parts[i], *parts[i]) && sound;
        if (!sound) return nullptr;
        return MakeLogical(syntax.sign, *Core("boolean"), syntax.kind == SyntaxKind::both,
                           std::move(parts[0]), std::move(parts[1]));
    }

    ExpressionPointer CheckNegation(Syntax const& syntax) {
        ExpressionPointer operand = CheckAny(*syntax.parts[0]);
        if (!operand || !Boolean(*syntax.parts[0], *operand)) return nullptr;
        return MakeNot(syntax.sign, *Core("boolean"), std::move(operand));
    }

    ExpressionPointer CheckExistence(Syntax const& syntax) {
        ExpressionPointer operand = CheckAny(*syntax.parts[0]);
        return operand ? MakeExists(syntax.sign, *Core("boolean"), std::move(operand)) : nullptr;
    }

    // ---- Operators

    // Both operands, checked and singular; false when something was reported.
    bool CheckOperands(Syntax const& syntax, ExpressionPointer& left, ExpressionPointer& right) {
        std::vector<ExpressionPointer> parts = CheckParts(syntax);
        if (parts.empty()) return false;
        bool sound = true;
        for (std::size_t i = 0; i < 2; ++i)
            sound = Singular(*syntax.parts[i], *parts[i],
                             "ask for one (exists … whose (…)), or for how many (number of …)") &&
                    sound;
        if (!sound) return false;
        left = std::move(parts[0]);
        right = std::move(parts[1]);
        return true;
    }

    OperatorEntry const* FindOperator(Syntax const& syntax, int code, TypeEntry const& left,
                                      TypeEntry const& right) {
        OperatorEntry const* entry = Operator(code, left, right);
        if (!entry)
            Report(syntax.sign, fmt::format("there is no \"{}\" of {} and {}", SignOf(code),
                                            WithArticle(left), WithArticle(right)));
        return entry;
    }

    // Null when there is none, which the caller reports.
    OperatorEntry const* Operator(int code, TypeEntry const& left, TypeEntry const& right) const {
        if (!left.fields.empty() || !right.fields.empty()) return nullptr;
        OperatorEntry const* entry = vocabulary.FindOperator(code, left, right);
        if (!entry) vocabulary.RequireTypesOfOperators(code);
        return entry;
    }

    ExpressionPointer CheckRelation(Syntax const& syntax) {
        ExpressionPointer left, right;
        if (!CheckOperands(syntax, left, right)) return nullptr;
        Relation const& relation = syntax.relation;
        if (!left->type->fields.empty() && !right->type->fields.empty())
            return CheckTupleRelation(syntax, std::move(left), std::move(right));
        OperatorEntry const* entry = relation.exchanged
                                         ? FindOperator(syntax, relation.code, *right->type, *left->type)
                                         : FindOperator(syntax, relation.code, *left->type, *right->type);
        if (!entry) return nullptr;
        return Negated(syntax, MakeOperator(syntax.sign, *entry, Use(*entry, vocabulary.Result(*entry)),
                                            relation.exchanged, std::move(left), std::move(right)));
    }

    ExpressionPointer Negated(Syntax const& syntax, ExpressionPointer relation) {
        return syntax.relation.negated ? MakeNot(syntax.sign, *Core("boolean"), std::move(relation))
                                       : std::move(relation);
    }

    ExpressionPointer CheckTupleRelation(Syntax const& syntax, ExpressionPointer left,
                                         ExpressionPointer right) {
        int const code = syntax.relation.code;
        bool const compares = code == kRelationEqual || code == kRelationLess || code == kRelationLessOrEqual;
        if (!compares || left->type != right->type)
            return Report(syntax.sign,
                          fmt::format("there is no \"{}\" of {} and {}", SignOf(syntax.relation),
                                      left->type->name, right->type->name),
                          "tuples whose fields have the same types compare with = != < <= > >=");
        try {
            Comparison comparison = Compare(code, *left->type);
            return Negated(syntax,
                           MakeTupleRelation(syntax.sign, *Core("boolean"), std::move(comparison),
                                             syntax.relation.exchanged, std::move(left), std::move(right)));
        } catch (NotComparable const& why) {
            return Report(syntax.sign, "these tuples do not compare: " + why.message, why.hint);
        }
    }

    ExpressionPointer CheckArithmetic(Syntax const& syntax) {
        ExpressionPointer left, right;
        if (!CheckOperands(syntax, left, right)) return nullptr;
        OperatorEntry const* entry =
            FindOperator(syntax, static_cast<int>(syntax.number), *left->type, *right->type);
        if (!entry) return nullptr;
        return MakeOperator(syntax.sign, *entry, Use(*entry, vocabulary.Result(*entry)), false,
                            std::move(left), std::move(right));
    }

    // -x is 0 - x; an interval is -1 * x.
    ExpressionPointer CheckMinus(Syntax const& syntax) {
        ExpressionPointer operand = CheckAny(*syntax.parts[0]);
        if (!operand || !Singular(*syntax.parts[0], *operand, "")) return nullptr;
        bool number = operand->type == Core("integer");
        int code = number ? kOperatorMinus : kOperatorTimes;
        ExpressionPointer factor =
            MakeLiteral(syntax.sign, *Core("integer"), checked.literals++, integer(number ? 0 : -1));
        OperatorEntry const* entry = Operator(code, *factor->type, *operand->type);
        if (!entry)
            return Report(syntax.sign, fmt::format("there is no \"-\" of {}", WithArticle(*operand->type)));
        return MakeOperator(syntax.sign, *entry, Use(*entry, vocabulary.Result(*entry)), false,
                            std::move(factor), std::move(operand));
    }

    ExpressionPointer CheckCast(Syntax const& syntax) {
        ExpressionPointer operand = CheckAny(*syntax.parts[0]);
        if (!operand) return nullptr;
        CastEntry const* entry = nullptr;
        if (operand->type->fields.empty()) entry = vocabulary.FindCast(syntax.text, *operand->type);
        if (!entry) return Report(UnknownCast(vocabulary, limits, syntax, *operand->type));
        return MakeCast(syntax.sign, *entry, Use(*entry, vocabulary.Result(*entry)), std::move(operand));
    }

    Vocabulary const& vocabulary;
    Limits const& limits;
    CheckedQuery& checked;
    std::vector<Problem>& problems;
    std::optional<Binding> it;
};

// Each library once, without the core, which cannot be unloaded.
void Tidy(std::vector<Library*>& libraries) {
    std::erase_if(libraries, [](Library const* library) { return library->IsCore(); });
    std::sort(libraries.begin(), libraries.end());
    libraries.erase(std::unique(libraries.begin(), libraries.end()), libraries.end());
}

// One way to read a query; `checked` is null when it is not sound that way.
struct CheckedReading {
    SyntaxPointer syntax;
    std::unique_ptr<CheckedQuery> checked;
};

CheckedReading CheckAs(std::string_view query, Limits const& limits, Reading reading,
                       std::optional<Range>& fork, std::vector<Problem>& problems) {
    Vocabulary const& vocabulary = Vocabulary::Present();
    CheckedReading result;
    auto checked = std::make_unique<CheckedQuery>();
    try {
        result.syntax = Parse(query, vocabulary, limits, reading, fork);
        checked->root = Checker(vocabulary, limits, *checked, problems).CheckQuery(*result.syntax);
        if (!checked->root) return result;
        checked->shown = Shown(vocabulary, *checked->root->type);
    } catch (SyntaxError const& error) {
        problems.push_back(error.problem);
        return result;
    } catch (UnknownType const& unknown) {
        problems.push_back({ProblemKind::meaning, {0, query.size()}, unknown.what(), {}});
        return result;
    }
    checked->shown.AddLibraries(checked->libraries);
    Tidy(checked->libraries);
    result.checked = std::move(checked);
    return result;
}

}  // namespace

// Problems are those of the reading with the longest phrase, which is what the rules promise.
std::unique_ptr<CheckedQuery> Check(std::string_view query, Limits const& limits,
                                    std::vector<Problem>& problems) {
    std::optional<Range> fork, sameFork;
    std::vector<Problem> longestProblems, shorterProblems;
    CheckedReading longest = CheckAs(query, limits, Reading::longestPhrase, fork, longestProblems);
    CheckedReading shorter;
    if (fork) shorter = CheckAs(query, limits, Reading::shorterPhrase, sameFork, shorterProblems);
    if (longest.checked && shorter.checked) {
        problems.push_back({ProblemKind::meaning, *fork,
                            fmt::format("the query can be read in two ways: {}, and {}",
                                        Bracketed(*longest.syntax), Bracketed(*shorter.syntax)),
                            "the second can be asked for with its parentheses"});
        return nullptr;
    }
    if (!longest.checked && !shorter.checked)
        problems.insert(problems.end(), longestProblems.begin(), longestProblems.end());
    CheckedReading& sound = shorter.checked ? shorter : longest;
    if (sound.checked) sound.checked->syntax = std::move(sound.syntax);
    return std::move(sound.checked);
}

}  // namespace Evaluator
