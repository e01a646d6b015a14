#include "querytext.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "../error.h"
#include "../keys.h"
#include "../textrules.h"

namespace store {

namespace {

// --- Words

enum class Kind { End, Word, Literal, Name, Symbol };

struct Token {
    Kind kind = Kind::End;
    std::string text = {};     // without quotes
    std::size_t position = 0;  // in characters, from 1

    bool Is(std::string_view word) const { return kind == Kind::Word && EqualIgnoringCase(text, word); }
    bool IsSymbol(std::string_view symbol) const { return kind == Kind::Symbol && text == symbol; }
};

std::string PlaceOf(std::size_t position) { return fmt::format("QUERY, position {}", position); }

[[noreturn]] void Refuse(const Token& token, std::string_view expected) {
    const std::string found = token.kind == Kind::End ? "the query ends" : Echo(token.text);
    throw CommandError("{}: {}, expected {}", PlaceOf(token.position), found, expected);
}

constexpr std::string_view Blanks = " \t\r\n\f\v";
constexpr std::string_view Symbols = "=<>!,()";
constexpr std::string_view Numeric = "0123456789+-.";
constexpr std::string_view WordEnds = " \t\r\n\f\v=<>!,()'\"";
constexpr std::string_view LongSymbols[] = {"<=", ">=", "<>", "!="};
constexpr std::string_view Reserved[] = {"and",   "or",    "not",    "like", "between", "is",  "null",
                                         "order", "limit", "offset", "by",   "asc",     "desc"};

class Reader {
  public:
    explicit Reader(std::string_view text) : text_(text) {}

    Token Next() {
        Skip(std::min(text_.find_first_not_of(Blanks, at_), text_.size()) - at_);
        Token token{Kind::End, "", position_};
        if (at_ == text_.size()) return token;
        const char c = text_[at_];
        if (c == '\'' || c == '"') return Quote(c);
        if (Symbols.find(c) != Symbols.npos) return {Kind::Symbol, Take(SymbolLength()), token.position};
        const std::size_t end = text_.find_first_of(WordEnds, at_);
        return {Kind::Word, Take(std::min(end, text_.size()) - at_), token.position};
    }

  private:
    std::size_t SymbolLength() const {
        const auto* const end = std::end(LongSymbols);
        return std::find(std::begin(LongSymbols), end, text_.substr(at_, 2)) != end ? 2 : 1;
    }

    // A quoted text; a quote that is doubled is one of the text.
    Token Quote(char quote) {
        Token token{quote == '"' ? Kind::Name : Kind::Literal, "", position_};
        for (;;) {
            Skip(1);
            const std::size_t end = text_.find(quote, at_);
            if (end == text_.npos) throw CommandError("{}: the quote is never closed", PlaceOf(token.position));
            token.text += Take(end - at_);
            Skip(1);
            if (at_ == text_.size() || text_[at_] != quote) return token;
            token.text += quote;
        }
    }

    void Skip(std::size_t bytes) {
        for (const std::size_t end = at_ + bytes; at_ < end; ++at_) position_ += (text_[at_] & 0xC0) != 0x80;
    }
    std::string Take(std::size_t bytes) {
        const std::string taken(text_.substr(at_, bytes));
        Skip(bytes);
        return taken;
    }

    std::string_view text_;
    std::size_t at_ = 0, position_ = 1;
};

bool IsReserved(const Token& token) {
    return std::any_of(std::begin(Reserved), std::end(Reserved), [&](std::string_view word) { return token.Is(word); });
}

// --- Sentences

struct Comparison {
    std::string_view symbol;
    Test test;
};

constexpr Comparison Comparisons[] = {
    {"=", Test::Equal},   {"!=", Test::Unequal}, {"<>", Test::Unequal}, {"<", Test::Less},
    {"<=", Test::AtMost}, {">", Test::Greater},  {">=", Test::AtLeast},
};

class Parser {
  public:
    Parser(std::string_view text, const Schema& schema, unsigned char format)
        : reader_(text), schema_(schema), format_(format), token_(reader_.Next()) {}

    Query Parse() {
        if (!IsAtClause()) ParseConditions();
        if (Accept("order")) ParseOrder();
        if (Accept("limit")) ParseLimit();
        if (token_.kind != Kind::End) RefuseRest();
        return std::move(query_);
    }

  private:
    // A literal, and how the user would write it.
    struct Value {
        Bytes form;
        std::string text;
    };

    bool IsAtClause() const { return token_.kind == Kind::End || token_.Is("order") || token_.Is("limit"); }

    void Advance() { token_ = reader_.Next(); }
    bool Accept(std::string_view word) {
        const bool is = token_.Is(word);
        if (is) Advance();
        return is;
    }
    void Expect(std::string_view word) {
        if (!Accept(word)) Refuse(token_, fmt::format("`{}`", word));
    }

    [[noreturn]] void RefuseRest() const {
        if (token_.Is("or")) Refuse(token_, "`and`: conditions are joined by it alone; ask once for each case instead");
        if (token_.Is("offset") && !query_.limit) Refuse(token_, "`limit` in front of it");
        Refuse(token_, rest_);
    }

    // What to tell of a word of the language that may be meant for the column of that name.
    std::string Hint(std::string_view word) const {
        const auto isIt = [&](const Column& column) { return EqualIgnoringCase(column.name, word); };
        const bool is = std::any_of(schema_.Columns().begin(), schema_.Columns().end(), isIt);
        return is ? fmt::format(" (the column is \"{}\", in double quotes)", word) : "";
    }

    std::size_t ParseColumn() {
        if (token_.IsSymbol("(")) Refuse(token_, "a column: there are no parentheses, conditions are joined by `and`");
        if (token_.Is("not")) Refuse(token_, "a column: `not` stands behind it, before `like` and `between`");
        const bool isNumber = token_.kind == Kind::Word && Numeric.find(token_.text[0]) != Numeric.npos;
        if (token_.kind == Kind::Literal || isNumber) Refuse(token_, "a column: the literal stands on the right");
        if (token_.kind == Kind::Word && IsReserved(token_)) Refuse(token_, "a column" + Hint(token_.text));
        if (token_.kind != Kind::Name && token_.kind != Kind::Word) Refuse(token_, "a column");
        const std::size_t column = schema_.Find(token_.text, PlaceOf(token_.position));
        Advance();
        if (token_.IsSymbol("(")) Refuse(token_, "a comparison: there are no functions");
        return column;
    }

    // --- Conditions

    void ParseConditions() {
        do {
            ParseCondition();
        } while (Accept("and"));
    }

    void ParseCondition() {
        const std::size_t position = token_.position, column = ParseColumn();
        if (Accept("is")) return ParseNull(column);
        RequireOrder(column, position);
        const bool isNegated = Accept("not");
        if (Accept("like")) return ParseLike(column, isNegated, position);
        if (Accept("between")) return ParseBetween(column, isNegated);
        if (isNegated) Refuse(token_, "`like` or `between`");
        for (const Comparison& comparison : Comparisons) {
            if (token_.IsSymbol(comparison.symbol)) return ParseComparison(column, comparison);
        }
        Refuse(token_, "=, !=, <, <=, >, >=, `like`, `between` or `is`");
    }

    void RequireOrder(std::size_t column, std::size_t position) const {
        const VqTypeId type = schema_[column].type;
        if (CanSort(type)) return;
        throw CommandError("{}: values of {} have no order: column {} can only be asked whether it is null",
                           PlaceOf(position), TypeName(type), schema_[column].name);
    }

    void Add(std::size_t column, Test test, const std::string& text, const Value& value = {}, const Value& upper = {}) {
        query_.conditions.push_back({column, test, value.form, upper.form, schema_[column].name + ' ' + text});
    }

    void ParseNull(std::size_t column) {
        const bool isNegated = Accept("not");
        Expect("null");
        Add(column, isNegated ? Test::NotNull : Test::Null, isNegated ? "is not null" : "is null");
    }

    void ParseComparison(std::size_t column, const Comparison& comparison) {
        Advance();
        const Value value = ParseLiteral(column);
        Add(column, comparison.test, fmt::format("{} {}", comparison.symbol, value.text), value);
    }

    void ParseLike(std::size_t column, bool isNegated, std::size_t position) {
        const VqTypeId type = schema_[column].type;
        if (!HasPatterns(type)) {
            throw CommandError("{}: values of {} have no patterns: `like` is for texts and for dates (1990-*-*)",
                               PlaceOf(position), TypeName(type));
        }
        const Value value = ParseLiteral(column, true);
        Add(column, isNegated ? Test::NotLike : Test::Like, (isNegated ? "not like " : "like ") + value.text, value);
    }

    void ParseBetween(std::size_t column, bool isNegated) {
        const Value low = ParseLiteral(column);
        Expect("and");
        const Value high = ParseLiteral(column);
        if (isNegated) {
            return Add(column, Test::NotBetween, fmt::format("not between {} and {}", low.text, high.text), low, high);
        }
        Add(column, Test::AtLeast, ">= " + low.text, low);
        Add(column, Test::AtMost, "<= " + high.text, high);
    }

    // --- Literals

    Value ParseLiteral(std::size_t column, bool isPattern = false) {
        const Token token = token_;
        if (token.Is("null")) Refuse(token, "a value: `is null` and `is not null` ask for null");
        const bool isWord = token.kind == Kind::Word && !IsReserved(token);
        if (token.kind == Kind::Name) Refuse(token, "a value: a text stands in single quotes");
        if (token.kind != Kind::Literal && !isWord) Refuse(token, "a value: 'text' or a bare word");
        Advance();
        Value value{Scan(column, token, isPattern), token.text};
        if (!isWord) value.text = Requoted(token.text);
        return value;
    }

    static std::string Requoted(std::string_view text) {
        std::string quoted = "'";
        for (const char c : Printable(text)) quoted += c == '\'' ? "''" : std::string(1, c);
        return quoted + "'";
    }

    Bytes Scan(std::size_t index, const Token& token, bool isPattern) const {
        const Column& column = schema_[index];
        const std::string place = PlaceOf(token.position);
        const ValueArray value(column.type, 1);
        if (token.text == ToUtf8(Manager().GetNullPrintString())) {
            // To the scanner these texts are null.
            if (RowFormat(column.type) != "%s")
                throw CommandError("{}: {}, expected a value: `is null` asks for null", place, Echo(token.text));
            VqString text = ScannedText(column.type, token.text, column.text, place);
            Manager().ScanFromVqString(column.type, value.Data(), text, "%s", 1);
        } else if (isPattern) {
            ScanKey(value, 0, token.text, column.text, place);
        } else {
            value.Scan(0, token.text, column.text, place);
        }
        return value.Store(format_);
    }

    // --- Clauses

    void ParseOrder() {
        if (!Accept("by")) Refuse(token_, "`by`" + Hint("order"));
        do {
            const std::size_t position = token_.position, column = ParseColumn();
            RequireOrder(column, position);
            const bool isDescending = Accept("desc");
            const bool isTold = isDescending || Accept("asc");
            rest_ = isTold ? "`,`, `limit` or the end" : "`asc`, `desc`, `,`, `limit` or the end";
            query_.order.push_back({column, isDescending});
        } while (AcceptComma());
    }

    bool AcceptComma() {
        const bool is = token_.IsSymbol(",");
        if (is) Advance();
        return is;
    }

    void ParseLimit() {
        query_.limit = ParseNumber("limit");
        rest_ = "`offset` or the end";
        if (!Accept("offset")) return;
        query_.offset = ParseNumber("offset");
        rest_ = "the end";
    }

    std::uint64_t ParseNumber(std::string_view word) {
        std::uint64_t number = 0;
        const char* const end = token_.text.data() + token_.text.size();
        const auto result = std::from_chars(token_.text.data(), end, number);
        if (token_.kind != Kind::Word || result.ec != std::errc() || result.ptr != end) {
            Refuse(token_, "a number of rows" + Hint(word));
        }
        Advance();
        return number;
    }

    Reader reader_;
    const Schema& schema_;
    const unsigned char format_;
    Token token_;
    std::string_view rest_ = "`and`, `order by`, `limit` or the end";  // what may follow
    Query query_;
};

}  // namespace

bool HasPatterns(VqTypeId type) { return type == VqTypeId_VqDate || RowFormat(type) == "%s"; }

Query ParseQuery(std::string_view text, const Schema& schema, unsigned char format) {
    CheckUtf8(text, "QUERY");
    return Parser(text, schema, format).Parse();
}

}  // namespace store
