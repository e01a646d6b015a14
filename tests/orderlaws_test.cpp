// The laws of orders and hashes, over random values of every row in every form, and all that breaks them.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "datetime.h"
#include "rowrandom.h"
#include "rowtest.h"

using namespace vqtest;

namespace {

// --- Laws and forms, as sets of bits

enum Law : unsigned {
    Antisymmetric = 1,  // swapped operands give the other sign, and a value is equal to itself
    Transitive = 2,     // the order, and equality with it
    NullsFirst = 4,
    EqualHash = 8,   // values that are equal under VqCmp_Exact have equal codes
    SameOrder = 16,  // the form has the order of the others
    SameHash = 32,   // and their codes
    EveryLaw = 63,
};

enum FormBit : unsigned { Memory = 1, Little = 2, Big = 4, Stored = Little | Big, EveryForm = 7 };

struct Form {
    FormBit bit;
    unsigned char format;
};
constexpr Form forms[] = {{Memory, VqFormat_Memory}, {Little, VqFormat_LittleEndian}, {Big, VqFormat_BigEndian}};

// --- Exceptions

std::int64_t FieldOf(const ByteVector& bytes, std::size_t at, std::size_t size) {
    std::uint64_t word = 0;
    for (std::size_t i = size; i-- != 0;) word = word << 8 | bytes.at(at + i);
    const unsigned unused = static_cast<unsigned>(64 - 8 * size);
    return static_cast<std::int64_t>(word << unused) >> unused;
}

bool IsNullable(char id) { return id >= VqTypeId_VqNull_char && id <= VqTypeId_VqNull_VqInt64; }

double NumberOf(char id, const ByteVector& bytes) {
    const unsigned char* const at = bytes.data() + IsNullable(id);
    if (bytes.size() - IsNullable(id) == sizeof(double)) {
        double number;
        std::memcpy(&number, at, sizeof number);
        return number;
    }
    float number;
    std::memcpy(&number, at, sizeof number);
    return static_cast<double>(number);
}

// Stored values, low byte first.

ByteVector Number(char id, double number) {
    const bool isDouble = id == VqTypeId_double || id == VqTypeId_VqNull_double;
    const float narrow = static_cast<float>(number);
    const void* const from = isDouble ? static_cast<const void*>(&number) : &narrow;
    ByteVector bytes(isDouble ? sizeof number : sizeof narrow);
    std::memcpy(bytes.data(), from, bytes.size());
    if (IsNullable(id)) bytes.insert(bytes.begin(), 0);
    return bytes;
}
// A date, or a date-time at a time that is null.
ByteVector Date(char id, int year, int month, int day) {
    const auto byte = [](int number) { return static_cast<unsigned char>(number); };
    ByteVector bytes = {byte(year), byte(year >> 8), byte(month), byte(day)};
    bytes.resize(id == VqTypeId_VqDateTime ? 7 : 4, 0x80);
    return bytes;
}
ByteVector Time(char id, unsigned char second, unsigned char hundredths) {
    ByteVector bytes(id == VqTypeId_d_Timestamp ? 10 : 6);
    bytes[bytes.size() - 2] = second;
    bytes[bytes.size() - 1] = hundredths;
    return bytes;
}
ByteVector OnDisk(const VqString& string) {
    ByteVector bytes(StringSizeGet(&string, VqFormat_Memory, VqFormat_LittleEndian, 1));
    StringStore(bytes.data(), &string, VqFormat_LittleEndian, 1);
    return bytes;
}
ByteVector String(unsigned char codeSet, const std::string& text) { return OnDisk(In(codeSet, text)); }
ByteVector NullString() {
    VqString string;
    string.SetNullValue();
    return OnDisk(string);
}
ByteVector IString(unsigned char flags, const std::string& text) {
    const std::string header = {static_cast<char>(flags), static_cast<char>(text.size()), 0}, all = header + text;
    return ByteVector(all.begin(), all.end());
}
ByteVector Text(char id, const std::string& text) {
    return id == VqTypeId_VqString ? String(1, text) : IString(0, text);
}
// A reference's object has the same number in both byte orders.
ByteVector Ref(unsigned char object, unsigned char database) {
    ByteVector bytes(14);
    std::fill_n(&bytes[4], 4, object);
    std::fill_n(&bytes[10], 2, database);
    return bytes;
}
// Two bytes of the number by which an identifier is compared first.
ByteVector Id(char id, unsigned char low, unsigned char high) {
    ByteVector bytes(id == VqTypeId_VqObjId ? 10 : id == VqTypeId_VqRef ? 14 : 4);
    const std::size_t at = id == VqTypeId_VqClassId ? 0 : 4;
    bytes[at] = low, bytes[at + 1] = high;
    return bytes;
}

// Which values an exception concerns.

bool IsNotANumber(char id, const ByteVector& bytes) { return std::isnan(NumberOf(id, bytes)); }
bool IsNegativeZero(char id, const ByteVector& bytes) { return bytes == Number(id, -0.); }
bool HasWildcard(char, const ByteVector& bytes) {
    return FieldOf(bytes, 0, 2) == -1 || FieldOf(bytes, 2, 1) == -1 || FieldOf(bytes, 3, 1) == -1;
}
bool HasHundredths(char, const ByteVector& bytes) { return FieldOf(bytes, bytes.size() - 1, 1) % 100 != 0; }
bool IsNoTruth(char, const ByteVector& bytes) { return bytes[0] > 1 && bytes[0] < 255; }
bool EndsInTwoLetters(char, const ByteVector& bytes) {
    return bytes.back() == 0xDF || bytes.back() == 0x8C || bytes.back() == 0x9C;
}
bool HasDatabase(char, const ByteVector& bytes) { return FieldOf(bytes, 10, 2) != 0; }
bool Always(char, const ByteVector&) { return true; }
// Random values meet neither operands of other sets, languages or flags, nor patterns.
bool Apart(char, const ByteVector&) { return false; }

using Ids = std::vector<char>;
const Ids floatingRows = {VqTypeId_float, VqTypeId_double, VqTypeId_d_Interval, VqTypeId_VqNull_float,
                          VqTypeId_VqNull_double};
const Ids dateRows = {VqTypeId_VqDate, VqTypeId_VqDateTime};
const Ids textRows = {VqTypeId_VqString, VqTypeId_VqIString, VqTypeId_VqCaseIString};

using Example = std::vector<ByteVector>;

// Values for which laws do not hold in some forms, and values that break each of these laws under comparison flags.
struct Exception {
    const char* what;
    Ids ids;
    unsigned laws, forms;
    bool (*concerns)(char id, const ByteVector& stored);
    unsigned short flags;
    Example (*example)(char id);
};

// Two more are no single whole values, and have tests of their own below: clipped keys (CutKeys) break Transitive,
// arrays of classes that begin with null (ClassArrays) Antisymmetric. Codes are those of the exact comparison: texts
// that are equal under VqCmp_IgnoreCase or VqCmp_IgnoreAccents, or by a pattern, have others, so that EqualHash is
// asked under VqCmp_Exact alone.
// clang-format off
const Exception exceptions[] = {
    {"what is not a number sorts before everything, on either side",
     floatingRows, Antisymmetric | Transitive, EveryForm, IsNotANumber, VqCmp_Exact,
     [](char id) { return Example{Number(id, 1), Number(id, std::nan("")), Number(id, 0)}; }},
    {"the zeros are equal and hash by their bits",
     floatingRows, EqualHash, EveryForm, IsNegativeZero, VqCmp_Exact,
     [](char id) { return Example{Number(id, 0), Number(id, -0.)}; }},

    {"in memory a date's field of -1 is equal to all",
     dateRows, Transitive | NullsFirst | EqualHash | SameOrder, Memory, HasWildcard, VqCmp_Exact,
     [](char id) { return Example{Date(id, 2005, 3, 7), Date(id, -1, -1, -1), Date(id, -32768, -128, -128)}; }},
    {"stored dates are patterns as second operands",
     {VqTypeId_VqDate}, Antisymmetric | Transitive | NullsFirst | SameOrder, Stored, Apart, 0,
     [](char id) {
         return Example{Date(id, 2005, 3, 7), Date(id, -1, -1, -1), Date(id, 2006, 3, 7), Date(id, -32768, -128, -128)};
     }},
    {"times less than a second apart are equal in memory",
     {VqTypeId_d_Time, VqTypeId_d_Timestamp}, Transitive | SameOrder, Memory, HasHundredths, VqCmp_Exact,
     [](char id) { return Example{Time(id, 0, 0), Time(id, 0, 90), Time(id, 1, 50)}; }},
    {"a boolean's other bytes are as true as 1, and order and hash by what they are",
     {VqTypeId_VqBoolean}, Antisymmetric | Transitive | EqualHash, EveryForm, IsNoTruth, VqCmp_Exact,
     [](char) { return Example{{1}, {2}}; }},

    {"texts are patterns as second operands",
     textRows, Antisymmetric | Transitive, EveryForm, Apart, 0,
     [](char id) { return Example{Text(id, "ab"), Text(id, "*"), Text(id, "cd")}; }},
    {"null is like a pattern that any text is like",
     {VqTypeId_VqString}, Antisymmetric | Transitive | NullsFirst, EveryForm, Apart, 0,
     [](char) { return Example{NullString(), String(1, "*")}; }},
    {"texts of the native set compare with each other by bytes, with others by letters",
     {VqTypeId_VqString}, Transitive | EqualHash, EveryForm, Apart, VqCmp_Exact,
     [](char) { return Example{String(0, "a"), String(0, "B"), String(1, "a")}; }},
    {"accents and case may decide before the lengths of a text and its beginning",
     {VqTypeId_VqString}, Transitive, EveryForm, Apart, VqCmp_Exact | VqCmp_EndLast,
     [](char) { return Example{String(1, "sb"), String(1, "S"), String(1, "Sa")}; }},
    {"an 8-bit string that ends in a byte of two letters is equal to all that go on behind them",
     {VqTypeId_VqIString, VqTypeId_VqCaseIString}, Transitive, EveryForm, EndsInTwoLetters, VqCmp_Exact,
     [](char) { return Example{IString(0, "\xDF"), IString(0, "ss"), IString(0, "ssx")}; }},
    {"whether accents decide is the first operand's flag",
     {VqTypeId_VqCaseIString}, Antisymmetric | Transitive, EveryForm, Apart, VqCmp_Exact,
     [](char) { return Example{IString(VqIStringFlag_Accents, "\xE9"), IString(0, "e"), IString(0, "\xE9")}; }},

    {"stored identifiers are read low byte first in every form",
     {VqTypeId_VqObjId, VqTypeId_VqClassId, VqTypeId_VqRef}, SameOrder | SameHash, Big, Always, VqCmp_Exact,
     [](char id) { return Example{Id(id, 1, 0), Id(id, 0, 1)}; }},
    {"references order by object in memory, by database first where they are stored",
     {VqTypeId_VqRef}, SameOrder, Memory, Always, VqCmp_Exact,
     [](char) { return Example{Ref(2, 0), Ref(1, 1)}; }},
    {"null references into several databases differ",
     {VqTypeId_VqRef}, NullsFirst, EveryForm, HasDatabase, VqCmp_Exact,
     [](char) { return Example{Ref(0, 1), Ref(0, 0)}; }},
};
// clang-format on

bool Concerns(const Exception& exception, char id) {
    return std::find(exception.ids.begin(), exception.ids.end(), id) != exception.ids.end();
}

// --- The laws over a few values

class Values {
  public:
    Values(VqTypeMgr& manager, char id, unsigned long count) : manager_(manager), id_(id), values_(manager, id, count) {
        for (const Form& form : forms) views_[form.bit].form = form;
    }
    RowValues& Get() { return values_; }

    // The laws that some of the values break, each with the first that do, under comparison flags. Laws are not asked
    // of values that an exception concerns.
    std::map<unsigned, std::string> Broken(unsigned short flags, unsigned laws) {
        broken_.clear();
        laws_ = flags == VqCmp_Exact ? laws : laws & ~EqualHash;
        for (auto& [bit, view] : views_) Compare(view, flags);
        for (const auto& [bit, view] : views_) CheckForm(view);
        for (const auto& [bit, view] : views_) {
            for (const auto& [otherBit, other] : views_) CheckForms(view, other);
        }
        return broken_;
    }
    // From now on exceptions count.
    void Except() { excepting_ = true; }

  private:
    // The values in one form, every comparison of two, every code.
    struct View {
        Form form;
        std::vector<ByteVector> bytes;
        std::vector<std::vector<int>> sign;
        std::vector<unsigned long> code;
        std::vector<unsigned> lawful;  // laws that hold for each value
    };

    void Compare(View& view, unsigned short flags) {
        const unsigned long n = values_.Count();
        const bool inMemory = view.form.bit == Memory;
        view.bytes.resize(n), view.sign.assign(n, std::vector<int>(n)), view.code.resize(n), view.lawful.resize(n);
        for (unsigned long i = 0; i < n; ++i) {
            if (!inMemory) view.bytes[i] = values_.Store(view.form.format, i, 1);
            view.lawful[i] = LawsOf(view.form, values_.Store(VqFormat_LittleEndian, i, 1));
        }
        const auto at = [&](unsigned long i) { return inMemory ? values_.At(i) : view.bytes[i].data(); };
        const auto length = [&](unsigned long i) { return static_cast<unsigned long>(view.bytes[i].size()); };
        for (unsigned long i = 0; i < n; ++i) {
            int status = VqStatus_BufferEnd;
            view.code[i] = manager_.Hash(id_, length(i), at(i), 1, view.form.format, status);
            ASSERT_EQ(status, VqStatus_Ok) << values_.Print(i);
            for (unsigned long j = 0; j < n; ++j) {
                status = VqStatus_BufferEnd;
                view.sign[i][j] =
                    Sign(manager_.Cmp(id_, length(i), at(i), length(j), at(j), flags, 1, view.form.format, status));
                ASSERT_EQ(status, VqStatus_Ok) << Described({i, j});
            }
        }
    }

    unsigned LawsOf(const Form& form, const ByteVector& stored) const {
        unsigned laws = laws_;
        for (const Exception& exception : exceptions) {
            if (excepting_ && (exception.forms & form.bit) && Concerns(exception, id_) &&
                exception.concerns(id_, stored)) {
                laws &= ~exception.laws;
            }
        }
        return laws;
    }

    void CheckForm(const View& view) {
        const unsigned long n = values_.Count();
        for (unsigned long i = 0; i < n; ++i) {
            for (unsigned long j = 0; j < n; ++j) {
                const int order = view.sign[i][j];
                const unsigned laws = view.lawful[i] & view.lawful[j];
                Check(laws & Antisymmetric, order == -view.sign[j][i], {i, j});
                if (values_.IsNull(i)) Check(laws & NullsFirst, order == (values_.IsNull(j) ? 0 : -1), {i, j});
                if (order == 0) Check(laws & EqualHash, view.code[i] == view.code[j], {i, j});
                if (laws & Transitive) CheckTriples(view, i, j);
            }
        }
    }
    void CheckTriples(const View& view, unsigned long i, unsigned long j) {
        const int first = view.sign[i][j];
        for (unsigned long k = 0; k < values_.Count(); ++k) {
            const int second = view.sign[j][k];
            const bool isChain = first == 0 || second == 0 || first == second;
            if (isChain && view.sign[i][k] != (first != 0 ? first : second)) {
                Check(view.lawful[k] & Transitive, false, {i, j, k});
            }
        }
    }
    void CheckForms(const View& a, const View& b) {
        const unsigned long n = values_.Count();
        for (unsigned long i = 0; i < n; ++i) {
            const unsigned laws = a.lawful[i] & b.lawful[i];
            Check(laws & SameHash, a.code[i] == b.code[i], {i});
            for (unsigned long j = 0; j < n; ++j) {
                Check(laws & a.lawful[j] & b.lawful[j] & SameOrder, a.sign[i][j] == b.sign[i][j], {i, j});
            }
        }
    }

    void Check(unsigned law, bool holds, std::initializer_list<unsigned long> indices) {
        if (law != 0 && !holds && !broken_.contains(law)) broken_[law] = Described(indices);
    }
    std::string Described(std::initializer_list<unsigned long> indices) const {
        std::string text;
        for (const unsigned long i : indices) {
            const ByteVector bytes = values_.Store(VqFormat_LittleEndian, i, 1);
            text += (text.empty() ? "" : " | ") + Hex(bytes.data(), bytes.size());
        }
        return text;
    }

    VqTypeMgr& manager_;
    const char id_;
    RowValues values_;
    std::map<unsigned, View> views_;
    std::map<unsigned, std::string> broken_;
    unsigned laws_ = EveryLaw;
    bool excepting_ = false;
};

// --- Every row

class OrderLaws : public RowTest {
  protected:
    // So many arrays of values that their triples are 100000.
    void ExpectLawful(unsigned short flags, unsigned laws, int arrays = 180) {
        RandomRow random(manager, id);
        Values values(manager, id, 16);
        values.Except();
        for (int i = 0; i < arrays && !HasFailure(); ++i) {
            random.Fill(values.Get());
            for (const auto& [law, where] : values.Broken(flags, laws)) {
                ADD_FAILURE() << "law " << law << " is broken by " << where << " under flags " << flags;
            }
        }
    }
};

TEST_P(OrderLaws, HoldForRandomValues) { ExpectLawful(VqCmp_Exact, EveryLaw); }

TEST_P(OrderLaws, HoldForTextsUnderOptions) {
    if (id != VqTypeId_VqString) return;
    for (const int options : {0x20, 0x40, 0x60, 0x100}) {
        ExpectLawful(static_cast<unsigned short>(VqCmp_Exact | options), EveryLaw, 60);
    }
    ExpectLawful(VqCmp_Exact | VqCmp_EndLast, EveryLaw & ~Transitive, 60);
}

TEST_P(OrderLaws, AreBrokenByWhatIsExcepted) {
    if (id == VqTypeId_VqString && GetParam().version == 3) return;  // its disk form keeps neither set nor language
    for (const Exception& exception : exceptions) {
        if (!Concerns(exception, id)) continue;
        SCOPED_TRACE(exception.what);
        const std::vector<ByteVector> example = exception.example(id);
        Values values(manager, id, static_cast<unsigned long>(example.size()));
        for (unsigned long i = 0; i < example.size(); ++i) {
            manager.Load(id, values.Get().At(i), example[i].data(), VqFormat_LittleEndian, 1);
        }
        const auto broken = values.Broken(exception.flags, EveryLaw);
        for (unsigned law = 1; law < EveryLaw; law *= 2) {
            EXPECT_EQ(broken.contains(law), (exception.laws & law) != 0) << "law " << law;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, OrderLaws, testing::ValuesIn(Subjects(true)), SubjectName);

// Clipped keys are equal to all that they may be the beginning of: an index takes them as the shorter texts that they
// are, with their own lengths.
TEST(CutKeys, AreEqualToSeveralTexts) {
    VqTypeMgr manager(5);
    const struct {
        char id;
        ByteVector cut, first, second;
    } rows[] = {
        {VqTypeId_VqString, String(1, "abc"), String(1, "abx"), String(1, "aby")},
        {VqTypeId_VqIString, IString(0, "abc"), IString(0, "abx"), IString(0, "aby")},
        {VqTypeId_VqCaseIString, IString(0, "abc"), IString(0, "abx"), IString(0, "aby")},
    };
    for (const auto& row : rows) {
        const std::size_t end = row.id == VqTypeId_VqString ? 6 : 5;
        const Block cut(row.cut.data(), end);
        const auto compare = [&](const unsigned char* a, std::size_t sizeA, const ByteVector& b, int& status) {
            return Sign(manager.Cmp(row.id, static_cast<unsigned long>(sizeA), a, static_cast<unsigned long>(b.size()),
                                    b.data(), VqCmp_Exact, 1, VqFormat_LittleEndian, status));
        };
        int status = VqStatus_Ok;
        EXPECT_EQ(compare(cut.Get(), end, row.first, status), 0);
        EXPECT_EQ(status, VqStatus_BufferEnd);
        EXPECT_EQ(compare(cut.Get(), end, row.second, status), 0);
        EXPECT_EQ(compare(row.first.data(), row.first.size(), row.second, status), -1);
        EXPECT_EQ(status, VqStatus_Ok);
    }
}

// A null class sorts before all others by the first element alone.
TEST(ClassArrays, ThatBothBeginWithNullAreEachLessThanTheOther) {
    const ByteVector a = {0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0}, b = {0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0};
    const VqTypeMgr manager(5);
    EXPECT_EQ(manager.Cmp(VqTypeId_VqClassId, a.data(), b.data(), VqCmp_Exact, 2, VqFormat_LittleEndian), -1);
    EXPECT_EQ(manager.Cmp(VqTypeId_VqClassId, b.data(), a.data(), VqCmp_Exact, 2, VqFormat_LittleEndian), -1);
}

}  // namespace
