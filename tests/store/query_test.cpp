// Queries: what they may say, and that every plan gives the rows that a look at all values gives.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

#include "../../tools/vqtype/files.h"
#include "../../tools/vqtype/store/buildindex.h"
#include "../../tools/vqtype/store/explain.h"
#include "../../tools/vqtype/store/rows.h"
#include "rowrandom.h"

namespace {

using namespace store;

// --- Language

struct Sentence {
    const char* text;
    const char* answer;  // the conditions and clauses as they were read, or what an error tells
};

std::string ReadingOf(const char* text, const Schema& schema) {
    try {
        const Query query = ParseQuery(text, schema, VqFormat_LittleEndian);
        std::string reading;
        for (const Condition& condition : query.conditions) reading += '[' + condition.text + ']';
        for (const OrderColumn& order : query.order) {
            reading += (order.isDescending ? " down " : " up ") + schema[order.column].name;
        }
        if (query.limit) reading += fmt::format(" limit {} offset {}", *query.limit, query.offset);
        return reading;
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(QueryText, IsReadOrRefusedWithItsPosition) {
    const Schema schema = Schema::Parse(
        "name:VqString(language=german), population:VqInt64, founded:VqDate, area:double, order:int, limit:int",
        "test");
    const Sentence sentences[] = {
        {"", ""},
        {"name like 'S*' AND population>=1000000 ORDER BY name, area desc LIMIT 20 offset 5",
         "[name like 'S*'][population >= 1000000] up name down area limit 20 offset 5"},
        {"NAME <> 'O''Brien' and \"order\" between 1 and 3", "[name <> 'O''Brien'][order >= 1][order <= 3]"},
        {"founded not like '1990-*-*' and area is not null", "[founded not like '1990-*-*'][area is not null]"},
        {"area not between -1e3 and inf order by area asc", "[area not between -1e3 and inf] up area"},
        {"name = '{NULL}' and name!=''", "[name = '{NULL}'][name != '']"},
        {"name = 'a' or name = 'b'", "position 12: \"or\", expected `and`"},
        {"(name = 'a')", "position 1: \"(\", expected a column: there are no parentheses"},
        {"name(1) = 'a'", "position 5: \"(\", expected a comparison: there are no functions"},
        {"not name like 'a'", "position 1: \"not\", expected a column: `not` stands behind it"},
        {"nmae = 'a'", "did you mean name?"},
        {"name = 'Größe' and population = 12x", "position 33: \"12x\" is no VqInt64: expected a whole number"},
        {"population = null", "position 14: \"null\", expected a value: `is null`"},
        {"population = '{NULL}'", "expected a value: `is null` asks for null"},
        {"population like 5", "position 1: values of VqInt64 have no patterns"},
        {"name = 'a", "position 8: the quote is never closed"},
        {"name 'a'", "position 6: \"a\", expected =, !=,"},
        {"name =", "position 7: the query ends, expected a value"},
        {"name = a and", "position 13: the query ends, expected a column"},
        {"limit -1", "position 7: \"-1\", expected a number of rows"},
        {"limit 99999999999999999999", "expected a number of rows"},
        {"offset 3", "position 1: \"offset\", expected"},
        {"limit 3 order by name", "position 9: \"order\", expected `offset` or the end"},
        {"limit 1 offset 2 offset 3", "position 18: \"offset\", expected the end"},
        {"order by name up", "position 15: \"up\", expected `asc`, `desc`, `,`, `limit` or the end"},
        {"1 < order", "position 1: \"1\", expected a column: the literal stands on the right"},
        {"order = 1", "position 7: \"=\", expected `by` (the column is \"order\", in double quotes)"},
        {"area > 1 and limit > 3",
         "position 14: \"limit\", expected a column (the column is \"limit\", in double quotes)"},
        {"founded = '1990-*-*'", "is no VqDate"},
        {"name = \xFF", "QUERY: "},
    };
    for (const Sentence& sentence : sentences) {
        const std::string reading = ReadingOf(sentence.text, schema);
        const bool isWhole = sentence.answer[0] == '\0' || sentence.answer[0] == '[';
        EXPECT_TRUE(isWhole ? reading == sentence.answer : reading.find(sentence.answer) != reading.npos)
            << sentence.text << "\nreads: " << reading << "\nexpected: " << sentence.answer;
    }
}

// --- Stores of random values

struct Sample {
    std::string schema;
    unsigned char format;
    unsigned short ignored;  // bits of the store's comparison
    std::vector<std::vector<Bytes>> rows = {};
};

// A store with an index on every column, gone with the test.
class Stored {
  public:
    explicit Stored(const Sample& sample) {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directory(folder_);
        const std::string name = (folder_ / "store").string();
        const auto operation = static_cast<unsigned short>(VqCmp_Exact | sample.ignored);
        Store::Create(name, Header::Make(Schema::Parse(sample.schema, "test"), sample.format, operation));
        store_ = std::make_unique<Store>(name, Purpose::Write);
        Transaction transaction(store_->Env(), Access::Write);
        for (std::size_t i = 0; i < sample.rows.size(); ++i) {
            const Id id = IdOf(i + 1, sample.format);
            Bytes record;
            for (const Bytes& form : sample.rows[i]) Append(record, form);
            SealBytes(record, id);
            transaction.Put(store_->Records(), id, record);
        }
        transaction.Commit();
        std::vector<std::size_t> columns(store_->GetSchema().Count());
        std::iota(columns.begin(), columns.end(), std::size_t{0});
        BuildIndexes(*store_, columns);
    }
    ~Stored() {
        store_.reset();
        std::filesystem::remove_all(folder_);
    }
    Store& Get() { return *store_; }

  private:
    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / fmt::format("vqtm-query-{}", ::getpid());
    std::unique_ptr<Store> store_;
};

// Texts that begin alike over many characters, and letters that are written with several characters or sort as two.
class RandomTexts {
  public:
    explicit RandomTexts(unsigned seed) : random_(seed) {}
    std::size_t Below(std::size_t n) { return random_() % n; }
    bool OneIn(std::size_t n) { return Below(n) == 0; }

    std::u16string Text() {
        static constexpr std::size_t lengths[] = {5, 15, 60, 120, 122, 246, 260};
        while (beginnings_.size() < 3) beginnings_.push_back(Letters(300));
        std::u16string text = beginnings_[Below(3)].substr(0, lengths[Below(std::size(lengths))] + Below(3));
        for (std::size_t changes = Below(3); changes != 0; --changes) Change(text);
        const bool isRespelled = OneIn(2);
        for (std::size_t at = 0; isRespelled && (at = text.find(u'\u00DF', at)) != text.npos;)
            text.replace(at, 1, u"ss");
        return OneIn(2) ? text : text + Letters(Below(4));
    }

  private:
    std::u16string Letters(std::size_t count) {
        static constexpr const char16_t* pieces[] = {
            u"a", u"A",       u"\u00E4", u"\u00DF", u"ss", u"\u00E6", u"ae", u"c", u"h", u"ch",     u"d", u"dz", u"dzs",
            u"s", u"e\u0301", u"\u00E9", u"l",      u"ll", u"\u0301", u" ",  u"-", u"n", u"\u00F1", u"z", u"Z"};
        std::u16string letters;
        while (letters.size() < count) letters += pieces[Below(std::size(pieces))];
        return letters;
    }
    // Another spelling of a letter, or another letter, near the beginning or anywhere.
    void Change(std::u16string& text) {
        if (text.empty()) return;
        const std::size_t at = Below(OneIn(2) ? std::min<std::size_t>(text.size(), 20) : text.size());
        text.replace(at, 1, text[at] == u'\u00DF' ? u"ss" : text[at] == u'a' ? u"A" : OneIn(8) ? u"*" : Letters(1));
    }

    std::mt19937 random_;
    std::vector<std::u16string> beginnings_;
};

VqString StringOf(const std::u16string& text, const TextOptions& options) {
    std::vector<unsigned short> units(text.begin(), text.end());
    VqString string(options.codeSet, options.language);
    string.AppendChars(units.data(), 253, static_cast<unsigned short>(units.size()));
    return string;
}

class RandomStore {
  public:
    RandomStore(unsigned seed, unsigned rows) : texts_(seed) {
        sample_.format = seed % 2 ? VqFormat_BigEndian : VqFormat_LittleEndian;
        sample_.ignored = static_cast<unsigned short>((seed / 2 % 4) << 5);
        const auto languages = Languages();
        const unsigned language = languages[seed % languages.size()].number;
        sample_.schema = fmt::format("text:VqString(language={}, codeset={})", language, texts_.OneIn(3) ? 1 : 253);
        for (char c = 'b'; c < 'e'; ++c) sample_.schema += fmt::format(", {}:{}", c, RandomType());
        schema_ = std::make_unique<Schema>(Schema::Parse(sample_.schema, "test"));
        for (const Column& column : schema_->Columns()) columns_.push_back(Forms(column, rows));
        for (unsigned i = 0; i < rows; ++i) {
            sample_.rows.emplace_back();
            for (const std::vector<Bytes>& forms : columns_) sample_.rows.back().push_back(forms[texts_.Below(rows)]);
        }
    }

    const Sample& Get() const { return sample_; }
    std::size_t Below(std::size_t n) { return texts_.Below(n); }

    Query RandomQuery() {
        Query query;
        for (std::size_t count = Below(4); count != 0; --count) query.conditions.push_back(RandomCondition());
        for (std::size_t count = Below(3); count != 0; --count) query.order.push_back({Below(4), Below(2) == 0});
        if (Below(3) == 0) query.limit = Below(30);
        if (query.limit) query.offset = Below(2) * Below(10);
        return query;
    }

  private:
    std::string RandomType() {
        for (;;) {
            const auto type = static_cast<VqTypeId>(Below(VqTypeCount));
            if (CanIndex(type)) return TypeName(type);
        }
    }

    std::vector<Bytes> Forms(const Column& column, unsigned rows) {
        std::vector<Bytes> forms;
        vqtest::RandomRow random(Manager(), column.type);
        const vqtest::RowValues values(Manager(), column.type, rows);
        random.Fill(values);
        for (unsigned i = 0; i < rows; ++i) {
            auto* const string = static_cast<VqString*>(values.At(i));
            if (column.type == VqTypeId_VqString && texts_.OneIn(15)) {
                string->SetNullValue();
            } else if (column.type == VqTypeId_VqString) {
                *string = StringOf(texts_.Text(), column.text);
            }
            forms.push_back(values.Store(sample_.format, i, 1));
            unsigned char& first = forms.back()[0];
            if (column.type == VqTypeId_VqBoolean && first != 255) first %= 2;  // others have no order
        }
        return forms;
    }

    Condition RandomCondition() {
        const std::size_t column = Below(3) == 0 ? 0 : Below(4);
        Condition condition{column, static_cast<Test>(Below(11))};
        if (condition.test == Test::Null || condition.test == Test::NotNull) return condition;
        condition.literal = Literal(column);
        if (condition.test == Test::NotBetween) condition.upper = Literal(column);
        const bool isPattern = condition.test == Test::Like || condition.test == Test::NotLike;
        if (isPattern && !HasPatterns((*schema_)[column].type)) condition.test = Test::Equal;
        if (isPattern && (*schema_)[column].type == VqTypeId_VqString) condition.literal = Pattern(condition.literal);
        return condition;
    }

    // A value that is not null.
    Bytes Literal(std::size_t column) {
        for (;;) {
            const Bytes& form = columns_[column][Below(columns_[column].size())];
            if (KeyMaker((*schema_)[column], sample_.format).ClassOf(form) != KeyClass::Null) return form;
        }
    }

    Bytes Pattern(const Bytes& form) {
        const ValueArray value(VqTypeId_VqString, 1);
        value.Load(form, sample_.format);
        auto& text = *static_cast<VqString*>(value.Data());
        const unsigned short length = text.Len();
        const VqString middle = text.Copy(static_cast<unsigned short>(Below(2) * Below(3)),
                                          static_cast<short>(Below(2) ? length : Below(length + 1u)));
        text = VqString(text.GetCodeSet(), text.GetLanguage());
        if (Below(5) == 0) text.AppendChars("*", 1, 1);
        text.AppendChars(middle.StrGet(), middle.GetCodeSet(), middle.Len());
        text.AppendChars("*?a*", 1, static_cast<unsigned short>(1 + Below(2) * Below(4)));
        return value.Store(sample_.format);
    }

    RandomTexts texts_;
    Sample sample_;
    std::unique_ptr<Schema> schema_;
    std::vector<std::vector<Bytes>> columns_;
};

// --- The plain way

class Model {
  public:
    Model(const Sample& sample, const Schema& schema) : sample_(sample), schema_(schema) {}

    // The numbers of the rows, from 1, before the limit.
    std::vector<std::uint64_t> Answer(const Query& query) const {
        std::vector<std::uint64_t> numbers;
        for (std::size_t i = 0; i < sample_.rows.size(); ++i) {
            const bool isSelected =
                std::all_of(query.conditions.begin(), query.conditions.end(),
                            [&](const Condition& c) { return IsSelected(c, sample_.rows[i][c.column]); });
            if (isSelected) numbers.push_back(i + 1);
        }
        std::sort(numbers.begin(), numbers.end(), [&](auto a, auto b) { return IsBefore(query, a, b); });
        return numbers;
    }

  private:
    int Compare(std::size_t column, const Bytes& a, const Bytes& b, unsigned short flags) const {
        int status = 0;
        const long order =
            Manager().Cmp(schema_[column].type, static_cast<unsigned long>(a.size()), a.data(),
                          static_cast<unsigned long>(b.size()), b.data(), flags, 1, sample_.format, status);
        return (order > 0) - (order < 0);
    }
    int ClassOf(std::size_t column, const Bytes& form) const {
        return static_cast<int>(KeyMaker(schema_[column], sample_.format).ClassOf(form));
    }

    bool IsSelected(const Condition& c, const Bytes& form) const {
        const int formClass = ClassOf(c.column, form);
        if (c.test == Test::Null || formClass == 0) return c.test == Test::Null && formClass == 0;
        if (c.test == Test::NotNull) return true;
        if (c.test == Test::Like) return Compare(c.column, form, c.literal, sample_.ignored) == 0;
        if (c.test == Test::NotLike) return Compare(c.column, form, c.literal, sample_.ignored) != 0;
        const bool isBetween = c.test == Test::NotBetween, isRefusal = c.test == Test::Unequal || isBetween;
        const bool isUpperNone = isBetween && ClassOf(c.column, c.upper) == 2;
        if (formClass == 2 || ClassOf(c.column, c.literal) == 2 || isUpperNone) return isRefusal;
        const auto exact = static_cast<unsigned short>(VqCmp_Exact | sample_.ignored);
        if (isBetween) {
            return Compare(c.column, form, c.literal, exact) < 0 || Compare(c.column, form, c.upper, exact) > 0;
        }
        static constexpr const char* selected[] = {"=", "<>", "<", "<=", ">", "=>"};
        const std::string_view signs = selected[isRefusal ? 1 : static_cast<int>(c.test)];
        return signs.find("<=>"[Compare(c.column, form, c.literal, exact) + 1]) != signs.npos;
    }

    bool IsBefore(const Query& query, std::uint64_t a, std::uint64_t b) const {
        int result = 0;
        bool isDescending = false;
        for (const OrderColumn& order : query.order) {
            const Bytes& form1 = sample_.rows[a - 1][order.column];
            const Bytes& form2 = sample_.rows[b - 1][order.column];
            const int class1 = ClassOf(order.column, form1), class2 = ClassOf(order.column, form2);
            const bool areValues = class1 == 1 && class2 == 1 && !IsInByteOrder(schema_[order.column].type);
            if (result == 0) isDescending = order.isDescending, result = class1 - class2;
            if (result == 0 && areValues) result = Compare(order.column, form1, form2, VqCmp_Exact);
            if (result == 0 && class1 != 0) result = (form1 > form2) - (form1 < form2);
        }
        const Id id1 = IdOf(a, sample_.format), id2 = IdOf(b, sample_.format);
        const long ids = Manager().Cmp(VqTypeId_VqObjId, id1.data(), id2.data(), VqCmp_Exact, 1, sample_.format);
        const long order = result != 0 ? result : ids;
        return isDescending ? order > 0 : order < 0;
    }

    const Sample& sample_;
    const Schema& schema_;
};

std::vector<std::uint64_t> NumbersOf(const Store& store, const Transaction& transaction, const Query& query,
                                     const Plan& plan) {
    std::vector<std::uint64_t> numbers;
    Execute(store, transaction, query, plan,
            [&](ByteView id, const std::vector<ByteView>&) { numbers.push_back(NumberOf(id, store.Format())); });
    return numbers;
}

TEST(Query, GivesTheSameRowsByEveryPlanAsALookAtAllValues) {
    constexpr unsigned seeds = 40, rows = 150, queries = 60;
    unsigned plans = 0;
    for (unsigned seed = 0; seed < seeds; ++seed) {
        RandomStore random(seed, rows);
        Stored stored(random.Get());
        const Store& store = stored.Get();
        const Transaction transaction(stored.Get().Env(), Access::Read);
        const Model model(random.Get(), store.GetSchema());
        for (unsigned i = 0; i < queries; ++i) {
            const Query query = random.RandomQuery();
            const std::vector<std::uint64_t> all = model.Answer(query);
            const std::size_t first = std::min<std::size_t>(query.offset, all.size());
            const std::size_t count = std::min<std::size_t>(query.limit.value_or(all.size()), all.size() - first);
            Plan plan = MakePlan(store, transaction, query, false);
            for (plan.chosen = 0; plan.chosen < plan.candidates.size(); ++plan.chosen, ++plans) {
                plan.mostCost = static_cast<double>((seed + i) % 3 * rows);  // the index is given up, or is not
                const double estimate = plan.Chosen().estimate;
                EXPECT_TRUE(estimate >= 0 && estimate <= 1) << estimate;
                std::vector<std::uint64_t> found = NumbersOf(store, transaction, query, plan);
                std::vector<std::uint64_t> expected(all.begin() + static_cast<std::ptrdiff_t>(first),
                                                    all.begin() + static_cast<std::ptrdiff_t>(first + count));
                if (query.order.empty()) {
                    std::sort(found.begin(), found.end());
                    EXPECT_TRUE(std::includes(all.begin(), all.end(), found.begin(), found.end()));
                    if (query.limit) expected.resize(found.size() == count ? 0 : count), found.clear();
                }
                ASSERT_EQ(found, expected) << "seed " << seed << ", query " << i << ", candidate " << plan.chosen
                                           << ", " << random.Get().schema;
            }
        }
    }
    EXPECT_GT(plans, seeds * queries * 2);
}

// --- Estimates

TEST(Query, IsEstimatedNearTheTruthOnUniformNumbers) {
    Sample sample{"n:int", VqFormat_LittleEndian, 0, {}};
    const ValueArray value(VqTypeId_int, 1);
    for (int i = 0; i < 1000; ++i) {
        *static_cast<int*>(value.Data()) = i * 7 % 1000;
        sample.rows.push_back({value.Store(sample.format)});
    }
    Stored stored(sample);
    const Transaction transaction(stored.Get().Env(), Access::Read);
    const struct {
        const char* query;
        double rows;
    } cases[] = {{"n = 5", 1},    {"n between 100 and 349", 250}, {"n > 900 and n < 950 and n != 3", 49},
                 {"n < 0", 0},    {"n > 5 and n = 3", 0},         {"n is not null", 1000},
                 {"n is null", 0}};
    for (const auto& [text, rows] : cases) {
        const Query query = ParseQuery(text, stored.Get().GetSchema(), sample.format);
        const Plan plan = MakePlan(stored.Get(), transaction, query, false);
        EXPECT_NEAR(plan.candidates.at(1).estimate * 1000, rows, 1.001) << text;
        EXPECT_NEAR(plan.candidates.at(1).keys, rows, 2) << text;
        EXPECT_EQ(plan.chosen, rows < 200 ? 1u : 0u) << text;
    }
}

// --- Plans and rows as they are shown

std::string Shown(const Store& store, const Transaction& transaction, const std::string& text, RowStyle style) {
    const Query query = ParseQuery(text, store.GetSchema(), store.Format());
    const Plan plan = MakePlan(store, transaction, query, false);
    const Explanation explanation = Explain(store, transaction, query, plan);
    std::vector<std::size_t> columns(store.GetSchema().Count());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    testing::internal::CaptureStdout();
    Write(FormatPlan(explanation) + FormatPlanAsJson(explanation) + '\n');
    const auto rows = MakeRowWriter(style, store.GetHeader(), columns);
    const Work work =
        Execute(store, transaction, query, plan, [&](ByteView, const std::vector<ByteView>& row) { rows->Add(row); });
    rows->Finish();
    Write(FormatWork(work));
    FlushOutput();
    return testing::internal::GetCapturedStdout();
}

// Most numbers are small and a few large, which no estimate from the ends can know; the key of one text is cut.
Sample SkewedSample() {
    constexpr int rows = 8000;
    Sample sample{"name:VqString, n:int", VqFormat_LittleEndian, VqCmp_IgnoreAccents, {}};
    std::u16string marked;
    for (int i = 0; i < 250; ++i) marked += u"e\u0301\u0301";
    const std::u16string texts[] = {u"say \"x\"", u"-", marked};
    const ValueArray text(VqTypeId_VqString, 1), number(VqTypeId_int, 1);
    for (int i = 0; i < rows; ++i) {
        *static_cast<int*>(number.Data()) = i < rows - 100 ? i % 100 : i * 1000;
        *static_cast<VqString*>(text.Data()) = StringOf(i < 3 ? texts[i] : u"z", {253, 0, false});
        if (i == 3) text.SetNull(0);
        sample.rows.push_back({text.Store(sample.format), number.Store(sample.format)});
    }
    return sample;
}

TEST(Query, ShowsPlansAndRows) {
    Stored stored(SkewedSample());
    Transaction transaction(stored.Get().Env(), Access::Read);
    std::string accented;
    for (int i = 0; i < 250; ++i) accented += "e\u0301\u0301";
    const struct {
        std::string query;
        RowStyle style;
        std::vector<std::string> shown;
    } cases[] = {
        {"name like 'say*' and name != 'b'",
         RowStyle::Table,
         {"range: \"say\" to", "then: name != 'b'\n", "the index on name cannot serve: name != 'b'\n", "\nsay \"x\"",
          "\n1 key scanned, 1 record read, 1 row\n"}},
        {"name < 'Aa*' and n = 1", RowStyle::Csv, {"\n-,1\n", "first value", "all that begins with \"Aa\""}},
        {"name <= 'say \"x\"' and n < 3", RowStyle::Csv, {"\n\"say \"\"x\"\"\",0\n"}},
        {"n < 100 and name = 'b'", RowStyle::Json, {"chosen: index on name", "\"true\": 0, \"order\""}},
        {"n < 200", RowStyle::Table, {"chosen: all records", "\n-  ", "\"-\""}},
        {"name = '" + accented + "'", RowStyle::Json, {"chosen: index on name", ", \"n\": 2}\n]"}},
    };
    for (const auto& [query, style, parts] : cases) {
        const std::string shown = Shown(stored.Get(), transaction, query, style);
        EXPECT_EQ(shown.find("\uFFFF"), shown.npos) << query;
        for (const std::string& part : parts) EXPECT_NE(shown.find(part), shown.npos) << part << shown.substr(0, 2500);
    }
}

}  // namespace
