// What a store stands on: schemas, headers, records, the keys of trees and their order, files.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "../../tools/vqtype/store/newfile.h"
#include "../../tools/vqtype/store/store.h"
#include "rowrandom.h"
#include "vqtypevl.h"

namespace {

using namespace store;

constexpr unsigned char ByteOrders[] = {VqFormat_LittleEndian, VqFormat_BigEndian};

int SignOf(long number) { return (number > 0) - (number < 0); }

void ExpectPart(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), text.npos) << text << "\ndoes not tell: " << part;
}

template <class Call>
void ExpectError(const Call& call, const std::string& part) {
    try {
        call();
        ADD_FAILURE() << "no error: " << part;
    } catch (const CommandError& error) {
        ExpectPart(error.what(), part);
    }
}

// A folder that is gone with the test.
class Folder {
  public:
    Folder() : path_(std::filesystem::temp_directory_path() / fmt::format("vqtm-ground-{}", ::getpid())) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directory(path_);
    }
    ~Folder() { std::filesystem::remove_all(path_); }
    std::string Name(const char* file) const { return (path_ / file).string(); }
    bool IsEmpty() const { return std::filesystem::is_empty(path_); }

  private:
    std::filesystem::path path_;
};

Header HeaderOf(const char* schema, unsigned char format = VqFormat_LittleEndian) {
    return Header::Make(Schema::Parse(schema, "--schema"), format, VqCmp_Exact);
}

// --- Trees

// Long texts of letters that contract, expand, bear accents and marks of their own.
VqString LongText(std::mt19937& random, unsigned char language, const VqString* other) {
    static constexpr char16_t Alphabet[] = u"aAcChHdDzZsSlLnNeéÉäÄåßæÆœñčž\u0301\u0308 -\xD83D\xDE00ij";
    std::u16string units(100 + random() % 200, u'a');
    for (char16_t& unit : units) unit = Alphabet[random() % (random() % 3 ? 12 : std::size(Alphabet) - 1)];
    VqString text(253, language);
    text.AssignChars(units.data(), 253, static_cast<unsigned short>(units.size()));
    if (!other) return text;
    const auto common = static_cast<unsigned short>(random() % (other->Len() + 1u));
    return other->Left(common) + text.Left(static_cast<unsigned short>(random() % 140));
}

// Keys of one row in one byte order, random and the samples', each value under two identifiers, and ends of scans.
class Keys {
  public:
    Keys(VqTypeId type, unsigned char format, unsigned round)
        : type_(type), format_(format), column_{"c", type, {}}, maker_(column_, format), random_(manager_, type) {
        // The strings of a column are of one language.
        if (type == VqTypeId_VqString && round % 6 > 3) {
            AddCutKeys(round);
            return;
        }
        for (unsigned i = 0; i <= round; ++i) random_.Fill(values_);
        for (unsigned long i = 0; i < values_.Count(); ++i) Add(values_, i);
        // As a damaged page can have it.
        keys_.push_back({static_cast<unsigned char>(KeyClass::Value), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
        if (type == VqTypeId_VqString || type == VqTypeId_VqIString || type == VqTypeId_VqCaseIString) return;
        const vqtest::Samples& samples = vqtest::SamplesOf(type);
        const vqtest::RowValues more(manager_, type, samples.texts, samples.format, samples.exchange);
        for (unsigned long i = 0; i < more.Count(); ++i) Add(more, i);
    }

    std::size_t Count() const { return keys_.size(); }
    unsigned Pick() { return random_.Below(keys_.size()); }
    int Compare(std::size_t a, std::size_t b) const {
        return SignOf(CompareTreeKeys(type_, format_, keys_[a], keys_[b]));
    }
    const Bytes& operator[](std::size_t i) const { return keys_[i]; }

  private:
    void Add(const vqtest::RowValues& values, unsigned long i) {
        const Bytes form = values.Store(format_, i, 1);
        if (type_ == VqTypeId_VqBoolean && form[0] > 1 && form[0] != 255) return;  // no boolean
        for (const std::uint64_t number : {i + 1, i + 70000}) {
            keys_.emplace_back();
            EXPECT_FALSE(maker_.Append(keys_.back(), form, IdOf(number, format_)));
            TreeKey parts;
            ASSERT_TRUE(TreeKey::Read(keys_.back(), parts));
            EXPECT_EQ(parts.keyClass == KeyClass::Null, values.IsNull(i)) << values.Print(i);
            EXPECT_EQ(NumberOf(parts.id, format_), number);
            if (parts.keyClass == KeyClass::Value) {
                EXPECT_TRUE(std::equal(form.begin(), form.end(), parts.stored.begin()));
            }
            if (number != i + 1 || !random_.OneIn(8)) continue;
            for (const End end : {End::Below, End::Above}) keys_.push_back(ScanEnd(parts.keyClass, parts.stored, end));
            keys_.push_back(ScanEnd(parts.keyClass, {}, End::Above));
        }
    }

    void AddCutKeys(unsigned round) {
        std::mt19937 random(round);
        const ValueArray text(type_, 1);
        VqString last(253, 0);
        for (std::uint64_t number = 1; number <= 40; ++number) {
            const auto language = static_cast<unsigned char>(round % 24);
            *static_cast<VqString*>(text.Data()) = last = LongText(random, language, number == 1 ? nullptr : &last);
            keys_.emplace_back();
            maker_.Append(keys_.back(), text.Store(format_), IdOf(number, format_));
        }
    }

    VqTypeMgr manager_{5};
    VqTypeId type_;
    unsigned char format_;
    Column column_;
    KeyMaker maker_;
    vqtest::RandomRow random_;
    vqtest::RowValues values_{manager_, type_, 24};
    std::vector<Bytes> keys_;
};

// Keys have a class, then the manager's order; equal ones have the same bytes, but for the ends that are made alike.
void ExpectPairInOrder(VqTypeId type, unsigned char format, const Bytes& a, const Bytes& b, int order) {
    if ((a[0] | b[0]) & 0x60) return;
    EXPECT_EQ(order == 0, a == b);
    TreeKey first, second;
    ASSERT_TRUE(TreeKey::Read(a, first) && TreeKey::Read(b, second));
    if (first.keyClass != second.keyClass) {
        EXPECT_EQ(order, first.keyClass < second.keyClass ? -1 : 1);
    }
    if (first.keyClass != KeyClass::Value || second.keyClass != KeyClass::Value || IsInByteOrder(type)) return;
    if (first.stored.empty() || second.stored.empty()) return;
    const long expected = Manager().Cmp(type, first.stored.data(), second.stored.data(), VqCmp_Exact, 1, format);
    if (expected != 0) {
        EXPECT_EQ(order, SignOf(expected));
    }
}

TEST(Ground, TreesHaveAnOrder) {
    for (int row = 0; row < VqTypeCount; ++row) {
        const auto type = static_cast<VqTypeId>(row);
        if (!CanIndex(type)) continue;
        for (unsigned round = 0; round < 30; ++round) {
            const unsigned char format = ByteOrders[round % 2];
            Keys keys(type, format, round);
            SCOPED_TRACE(TypeName(type) + (round % 2 ? ", big" : ", little"));
            for (int i = 0; i < 600 && !testing::Test::HasFailure(); ++i) {
                const unsigned a = keys.Pick(), b = keys.Pick(), c = keys.Pick();
                const int ab = keys.Compare(a, b), bc = keys.Compare(b, c), ac = keys.Compare(a, c);
                EXPECT_EQ(ab, -keys.Compare(b, a));
                ExpectPairInOrder(type, format, keys[a], keys[b], ab);
                if (ab <= 0 && bc <= 0) {
                    EXPECT_EQ(ac, std::min(ab, bc));
                }
            }
        }
    }
}

TEST(Ground, CutKeysAreFoundByWidenedEnds) {
    std::mt19937 random(7);
    constexpr unsigned short Letters = VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents;
    unsigned cuts = 0;
    for (int i = 0; i < 40000 && !HasFailure(); ++i) {
        const unsigned char format = ByteOrders[i % 2];
        const Column column{"c", VqTypeId_VqString, {253, static_cast<unsigned char>(random() % 24), true}};
        KeyMaker maker(column, format);
        const ValueArray pair(VqTypeId_VqString, 2);
        auto* const texts = static_cast<VqString*>(pair.Data());
        texts[0] = LongText(random, column.text.language, nullptr);
        texts[1] = LongText(random, column.text.language, &texts[0]);
        const Bytes wanted = pair.Store(format, 0, 1), there = pair.Store(format, 1, 1);
        Bytes key, beginning;
        const bool isCut = maker.Append(key, there, IdOf(1, format));
        EXPECT_LE(key.size(), 1 + VqINDEX_MAX_KEYLEN + IdSize);
        EXPECT_EQ(isCut, there.size() > VqINDEX_MAX_KEYLEN);
        maker.AppendCut(beginning, wanted, 6 + 2 * 16);
        EXPECT_GE(beginning.size(), 6 + 2 * 15u);
        if (texts[0].Compare(texts[1], -1, Letters) > 0) continue;
        cuts += isCut;
        EXPECT_LT(CompareTreeKeys(column.type, format, ScanEnd(KeyClass::Value, beginning, End::Below), key), 0)
            << ToUtf8(texts[0]) << "\n"
            << ToUtf8(texts[1]);
    }
    EXPECT_GT(cuts, 1000u);
}

// --- Records

TEST(Ground, ChecksumsAreThoseOfTheStandard) {
    const Bytes text{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
    for (const std::size_t split : {0, 4, 9}) {
        EXPECT_EQ(Checksum(ByteView(text).first(split), ByteView(text).subspan(split)), 0xCBF43926u) << split;
    }
    EXPECT_EQ(Checksum({}, {}), 0u);
}

TEST(Ground, DamagedRecordsAreFoundAndNotRead) {
    const Schema schema = Schema::Parse("a:VqString(language=de), b:VqBlob, c:VqIString, d:VqInt64, e:VqString", "");
    std::mt19937 random(3);
    for (const unsigned char format : ByteOrders) {
        const RecordForm form(schema, format);
        const Id id = IdOf(42, format);
        Bytes record;
        for (const Column& column : schema.Columns()) {
            const ValueArray value(column.type, 1);
            value.Scan(0, column.type == VqTypeId_VqInt64 ? "77" : "6162", column.text, "value");
            Append(record, value.Store(format));
        }
        SealBytes(record, id);
        std::vector<ByteView> forms;
        ASSERT_EQ(form.Check(id, record, forms), "");
        EXPECT_NE(form.Check(IdOf(43, format), record, forms), "");
        for (std::size_t size = 0; size < record.size(); ++size) {
            const Bytes part(record.begin(), record.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_NE(form.Split(part, forms), "") << size;
        }
        for (std::size_t bit = 0; bit < 8 * record.size(); ++bit) {
            Bytes damaged = record;
            damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ 1u << bit % 8);
            EXPECT_NE(form.Check(id, damaged, forms), "") << bit;
        }
        // Whatever Split lets pass can be loaded.
        for (int i = 0; i < 20000; ++i) {
            Bytes damaged = record;
            for (auto changes = 1 + random() % 3; changes != 0; --changes) {
                damaged[random() % damaged.size()] = static_cast<unsigned char>(random() % 2 ? random() : 0);
            }
            if (!form.Split(damaged, forms).empty()) continue;
            for (std::size_t c = 0; c < forms.size(); ++c) {
                const Bytes own(forms[c].begin(), forms[c].end());
                EXPECT_EQ(ValueArray(schema[c].type, 1).Load(own, format), own.size());
            }
        }
    }
}

// --- Headers and schemas

TEST(Ground, HeadersTellWhatStandsBetween) {
    const Header good = HeaderOf("name:VqString(language=hu, codeset=ISO 8859-2), n:VqInt64", VqFormat_BigEndian);
    EXPECT_EQ(Header::Parse(good.Format(), "f").Format(), good.Format());
    EXPECT_TRUE(Adopt(good).empty());
    struct Case {
        const char *from, *to, *reason;
        bool isMended, hidesRecords;
    };
    const std::string order = fmt::format("order-version={}", good.orderVersion);
    const std::string collation = fmt::format("16/6:{}", good.languages.at(0).collationClass);
    const Case cases[] = {
        {"format-version=1", "format-version=2", "format 2", false, true},
        {"library-version=", "library-version=1", "was written by version 19.", false, false},
        {order.c_str(), "order-version=5", "version 5", true, false},
        {"native-code-set=1", "native-code-set=253", "native code set 253", false, true},
        {"comparison=0x0010", "comparison=0x0110", "comparison 0x0110", false, false},
        {collation.c_str(), "16/6:126", "16 (hungarian)", true, false},
        {collation.c_str(), "16/99:0", "code set 99", false, true},
    };
    for (const Case& one : cases) {
        std::string text = good.Format();
        ASSERT_NE(text.find(one.from), text.npos) << one.from;
        text.replace(text.find(one.from), std::strlen(one.from), one.to);
        const std::vector<Obstacle> obstacles = Adopt(Header::Parse(text, "f"));
        ASSERT_EQ(obstacles.size(), 1u) << text;
        ExpectPart(obstacles[0].reason, one.reason);
        EXPECT_EQ(obstacles[0].isMended, one.isMended) << one.to;
        EXPECT_EQ(obstacles[0].hidesRecords, one.hidesRecords) << one.to;
    }
    ExpectError([&] { Header::Parse("format-version=1\nx=1\n", "f"); }, "expected library-version");
}

TEST(Ground, SchemasTellTheirMistakes) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "position 1: expected a column's name"},
        {"a:VqInt64,", "position 11: expected a column's name"},
        {"a VqInt64", "position 3: expected ':'"},
        {"a:VqInt46", "position 3: \"VqInt46\": there is no type of this name; did you mean VqInt64?"},
        {"a:illegal", "position 3: illegal cannot be a column's type"},
        {"a:long, A:long", "position 9: there is a column a already"},
        {"a:long(language=de)", "position 7: only VqString has a language"},
        {"a:VqString(langage=de)", "did you mean language?"},
        {"a:VqString(language=xx)", "position 21: \"xx\": expected a number, a name or an ISO 639 code"},
        {"a:VqString(language=de, codeset=1, language=fr)", "position 36: language is there twice"},
        {"a:VqString(language=de", "position 23: expected ',' or ')'"},
        {"a:long b:long", "position 8: expected ',' and another column"},
    };
    for (const auto& [text, part] : cases) ExpectError([&t = text] { Schema::Parse(t, "--schema"); }, part);
    const Schema schema = Schema::Parse(" a : VqString ( codeset = 1 , language = DE ) ,b:VqDate", "");
    EXPECT_EQ(schema.Format(), "a:VqString(language=german, codeset=Windows-1252), b:VqDate");
    EXPECT_EQ(schema.Find("B", ""), 1u);
    ExpectError([&] { schema.Find("c2", "x"); }, "there is no column");
}

// --- Files

TEST(Ground, WhatIsNoStoreIsTold) {
    const Folder folder;
    const std::string name = folder.Name("db");
    const auto open = [&name] { Store(name, Purpose::Read); };
    ExpectError(open, "there is no such store");
    ExpectError([&] { Store::Create(folder.Name("no/db"), HeaderOf("a:long")); }, "cannot be made");
    EXPECT_TRUE(folder.IsEmpty());
    const std::pair<std::string, const char*> cases[] = {
        {"", "empty"},
        {std::string(8192, 'x'), "no store"},
        {std::string(12, '\0') + "\xDE\xC0\xEF\xBE" + std::string(8192, '\0'), "other pointers"}};
    for (const auto& [content, part] : cases) {
        std::ofstream(name, std::ios::binary) << content;
        ExpectError(open, part);
        EXPECT_FALSE(std::filesystem::exists(name + "-lock"));
    }
    ExpectError([&] { Store::Create(name, HeaderOf("a:long")); }, "there is a file of this name already");
    NewFile late(folder.Name("late"));
    std::ofstream(folder.Name("late")) << "another's";
    ExpectError([&] { late.Keep(); }, "there is a file of this name already");
    EXPECT_EQ(std::filesystem::file_size(folder.Name("late")), 9u);
    EXPECT_EQ(std::filesystem::file_size(name), 8208u);
}

TEST(Ground, MapsGrowAndDroppedChangesAreGone) {
    const Folder folder;
    const std::string name = folder.Name("db");
    Store::Create(name, HeaderOf("a:long, b:VqString"));
    const Bytes large(1 << 20, 'x');
    const auto fill = [&large](Store& store) {
        Transaction transaction(store.Env(), Access::Write);
        for (std::uint64_t number = 1; number <= 80; ++number) {
            transaction.Put(store.Records(), IdOf(number, store.Format()), large);
        }
        store.SetNextNumber(transaction, 81);
        store.MakeIndex(transaction, 1).cutKeys = 5;
        transaction.Commit();
    };
    Store store(name, Purpose::Write);
    const auto readIndexes = [&store] {
        Transaction transaction(store.Env(), Access::Read);
        store.ReadIndexes(transaction);
    };
    EXPECT_THROW(fill(store), MapFull);
    readIndexes();
    EXPECT_TRUE(store.Indexes().empty());
    EXPECT_EQ(store.NextNumber(Transaction(store.Env(), Access::Read)), 1u);
    store.Env().Grow();
    fill(store);
    EXPECT_EQ(store.CountRecords(Transaction(store.Env(), Access::Read)), 80u);
    Transaction transaction(store.Env(), Access::Write);
    EXPECT_FALSE(transaction.Append(store.Records(), IdOf(80, store.Format()), large));
    EXPECT_TRUE(transaction.Append(store.Records(), IdOf(81, store.Format()), large));
    store.SetCounts(transaction, *store.Indexes().begin(), {7, 8, 9});
    transaction.Commit();
    readIndexes();
    ASSERT_NE(store.FindIndex(1), nullptr);
    EXPECT_EQ(*store.FindIndex(1), (KeyCounts{7, 8, 9}));
    EXPECT_EQ(store.FindIndex(0), nullptr);
}

}  // namespace
