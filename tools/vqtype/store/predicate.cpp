#include "predicate.h"

#include <algorithm>

namespace store {

namespace {

bool IsPattern(Test test) { return test == Test::Like || test == Test::NotLike; }

// What a number that is none does not satisfy, it satisfies when it is turned round.
bool IsRefusal(Test test) { return test == Test::Unequal || test == Test::NotBetween; }

unsigned short OperationOf(Test test, unsigned short defaultCmpOp) {
    const auto ignored = static_cast<unsigned short>(defaultCmpOp & (VqCmp_IgnoreCase | VqCmp_IgnoreAccents));
    return IsPattern(test) ? ignored : static_cast<unsigned short>(ignored | VqCmp_Exact);
}

}  // namespace

Predicate::Predicate(const Condition& condition, const Header& header)
    : condition_(condition),
      type_(header.schema[condition.column].type),
      format_(header.format),
      operation_(OperationOf(condition.test, header.defaultCmpOp)),
      compare_(Manager().CmpFuncPtrGet(type_)),
      classes_(header.schema[condition.column], format_) {
    const auto isNumber = [this](const Bytes& literal) {
        return literal.empty() || classes_.ClassOf(literal) != KeyClass::NoNumber;
    };
    isNumber_ = isNumber(condition.literal) && isNumber(condition.upper);
}

int Predicate::Compare(ByteView form, const Bytes& literal) const {
    int status = VqStatus_Ok;
    return compare_(format_, static_cast<unsigned long>(form.size()), form.data(),
                    static_cast<unsigned long>(literal.size()), literal.data(), operation_, 1, status);
}

bool Predicate::Passes(ByteView form) const {
    const int order = Compare(form, condition_.literal);
    switch (condition_.test) {
        case Test::Unequal:
        case Test::NotLike:
            return order != 0;
        case Test::Less:
            return order < 0;
        case Test::AtMost:
            return order <= 0;
        case Test::Greater:
            return order > 0;
        case Test::AtLeast:
            return order >= 0;
        case Test::NotBetween:
            return order < 0 || Compare(form, condition_.upper) > 0;
        default:
            return order == 0;
    }
}

// Most values do not pass: what null and numbers that are none say is asked of those that do.
bool Predicate::Selects(ByteView form) {
    const Test test = condition_.test;
    if (test == Test::Null) return classes_.ClassOf(form) == KeyClass::Null;
    const bool holdsForAll = test == Test::NotNull || (!isNumber_ && IsRefusal(test));
    if (!holdsForAll && (!isNumber_ || !Passes(form))) return false;
    const KeyClass keyClass = classes_.ClassOf(form);
    return keyClass == KeyClass::Value || (keyClass == KeyClass::NoNumber && (holdsForAll || IsRefusal(test)));
}

bool Filter::Selects(const std::vector<ByteView>& forms) {
    return std::all_of(predicates_.begin(), predicates_.end(), [&](const auto& predicate) {
        return predicate->Selects(forms[predicate->GetCondition().column]);
    });
}

bool Filter::Selects(ByteView form) {
    return std::all_of(predicates_.begin(), predicates_.end(),
                       [&](const auto& predicate) { return predicate->Selects(form); });
}

}  // namespace store
