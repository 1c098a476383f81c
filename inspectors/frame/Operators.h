#pragma once

// Records of casts and of binary operators. As with properties, the constructor's arguments are the row of
// the module's table, a null result slot makes Thunk do nothing, and exceptions go through to the host.

#include <new>

#include "Evaluator/Registration.h"
#include "Evaluator/Text.h"
#include "Evaluator/Values.h"
#include "frame/HostArea.h"
#include "frame/Properties.h"

/// A conversion, asked for as `value as phrase`.
template <class A, class B>
class Cast : Inspectors::HostArea<kCastRecordSize> {
  public:
    Cast(char const* phrase, char const* source, char const* target, B (*convert)(A const&),
         DependencyFunction dependency = nullptr) {
        Register_Cast(this, kCastRecordSize, phrase, source, target, Thunk, this, dependency);
        conversion = convert;
    }
    ~Cast() { Unregister_Cast(this); }

    static void Thunk(void* result, void const* source, void const* record) {
        if (result == nullptr) return;
        ::new (result) B(static_cast<Cast const*>(record)->conversion(Inspectors::As<A>(source)));
    }

  private:
    B (*conversion)(A const&);
};

/// An operator by its code and the names of the operands' and the result's types.
template <class A, class B, class R>
class Operator2 : Inspectors::HostArea<kBinaryOperatorRecordSize> {
  public:
    Operator2(BinaryOperatorCode code, char const* left, char const* right, char const* result,
              R (*compute)(A const&, B const&), DependencyFunction dependency = nullptr) {
        Register_Binary_Operator(this, kBinaryOperatorRecordSize, code, left, right, result, Thunk, this,
                                 dependency);
        function = compute;
    }
    ~Operator2() { Unregister_Binary_Operator(this); }

    static void Thunk(void* result, void const* left, void const* right, void const* record) {
        if (result == nullptr) return;
        ::new (result) R(static_cast<Operator2 const*>(record)->function(Inspectors::As<A>(left),
                                                                         Inspectors::As<B>(right)));
    }

  private:
    R (*function)(A const&, B const&);
};

// The operators proper: records whose function is the operator of the value types themselves.

template <class A, class B, class R>
class OperatorPlus : public Operator2<A, B, R> {
  public:
    OperatorPlus(char const* left, char const* right, char const* result,
                 DependencyFunction dependency = nullptr)
        : Operator2<A, B, R>(kOperatorPlus, left, right, result, Plus, dependency) {}
    static R Plus(A const& left, B const& right) { return left + right; }
};

template <class A, class B, class R>
class BinaryOperatorMinus : public Operator2<A, B, R> {
  public:
    BinaryOperatorMinus(char const* left, char const* right, char const* result,
                        DependencyFunction dependency = nullptr)
        : Operator2<A, B, R>(kOperatorMinus, left, right, result, Minus, dependency) {}
    static R Minus(A const& left, B const& right) { return left - right; }
};

template <class A, class B, class R>
class OperatorTimes : public Operator2<A, B, R> {
  public:
    OperatorTimes(char const* left, char const* right, char const* result,
                  DependencyFunction dependency = nullptr)
        : Operator2<A, B, R>(kOperatorTimes, left, right, result, Times, dependency) {}
    static R Times(A const& left, B const& right) { return left * right; }
};

template <class A, class B, class R>
class OperatorDivide : public Operator2<A, B, R> {
  public:
    OperatorDivide(char const* left, char const* right, char const* result,
                   DependencyFunction dependency = nullptr)
        : Operator2<A, B, R>(kOperatorDividedBy, left, right, result, Divide, dependency) {}
    static R Divide(A const& left, B const& right) { return left / right; }
};

template <class A, class B>
class RelationEqual : public Operator2<A, B, boolean> {
  public:
    RelationEqual(char const* left, char const* right, DependencyFunction dependency = nullptr)
        : Operator2<A, B, boolean>(kRelationEqual, left, right, "boolean", Equal, dependency) {}
    static boolean Equal(A const& left, B const& right) { return left == right; }
};

template <class A, class B>
class RelationLess : public Operator2<A, B, boolean> {
  public:
    RelationLess(char const* left, char const* right, DependencyFunction dependency = nullptr)
        : Operator2<A, B, boolean>(kRelationLess, left, right, "boolean", Less, dependency) {}
    static boolean Less(A const& left, B const& right) { return left < right; }
};

template <class A, class B>
class RelationLessOrEqual : public Operator2<A, B, boolean> {
  public:
    RelationLessOrEqual(char const* left, char const* right, DependencyFunction dependency = nullptr)
        : Operator2<A, B, boolean>(kRelationLessOrEqual, left, right, "boolean", LessOrEqual, dependency) {}
    static boolean LessOrEqual(A const& left, B const& right) { return left <= right; }
};

template <class A, class B>
class RelationContains : public Operator2<A, B, boolean> {
  public:
    RelationContains(char const* left, char const* right, DependencyFunction dependency = nullptr)
        : Operator2<A, B, boolean>(kRelationContains, left, right, "boolean", Contains, dependency) {}
    static boolean Contains(A const& whole, B const& part) {
        using ::Contains;
        return Contains(whole, part);
    }
};
