// Stores that are damaged in every way, and what a check says of them; dumps, which lose nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>

#include "../../tools/vqtype/files.h"
#include "../../tools/vqtype/store/buildindex.h"
#include "../../tools/vqtype/store/check.h"
#include "../../tools/vqtype/store/commands.h"
#include "../../tools/vqtype/store/load.h"
#include "../../tools/vqtype/store/names.h"
#include "../../tools/vqtype/store/pages.h"
#include "rowrandom.h"

namespace {

using namespace store;

// A file's name in a folder that is gone with the test.
class StoreDamage : public testing::Test {
  protected:
    StoreDamage() : folder_(std::filesystem::temp_directory_path() / fmt::format("vqtm-damage-{}", ::getpid())) {
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directory(folder_);
    }
    ~StoreDamage() override { std::filesystem::remove_all(folder_); }
    std::string Name(const std::string& file) const { return (folder_ / file).string(); }

    std::string MakeStore(const std::string& file, const std::string& schema,
                          unsigned char format = VqFormat_LittleEndian) const {
        std::filesystem::remove(Name(file));
        Store::Create(Name(file), Header::Make(Schema::Parse(schema, "schema"), format, VqCmp_Exact));
        return Name(file);
    }
    // Loads a text; returns what was told of rows that did not fit.
    std::string LoadText(const std::string& store, const std::string& csv,
                         const std::optional<std::string>& null = std::nullopt) const {
        std::ofstream(Name("in.csv"), std::ios::binary) << csv;
        LoadOptions options;
        options.store = store;
        options.file = Name("in.csv");
        options.null = null;
        std::string fault;
        Printed([&] { fault = ErrorOf([&] { RunLoad(options); }); });
        return fault;
    }
    static std::string Dump(const std::string& store, const std::optional<std::string>& null = std::nullopt) {
        return Printed([&] { RunDump({store, null, false}); });
    }
    static std::string Printed(const std::function<void()>& call) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        call();
        FlushOutput();
        testing::internal::GetCapturedStderr();
        return testing::internal::GetCapturedStdout();
    }
    static std::string ErrorOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const CommandError& error) {
            return error.what();
        }
        return "";
    }

    // Records with a null and long texts, of which some have pages of their own, and two indexes with cut keys.
    std::string MakeSample(std::size_t rows) const {
        const std::string store = MakeStore("sample", "name:VqString(language=de), size:VqNull_VqInt64");
        std::mt19937 random(7);
        std::string csv = "name,size\n";
        for (std::size_t i = 0; i < rows; ++i) {
            const std::size_t length = i % 40 == 3 ? 2500 : i % 9 == 0 ? 200 : 3 + random() % 9;
            for (std::size_t k = 0; k < length; ++k) csv += static_cast<char>('a' + random() % 26);
            csv += i % 13 == 5 ? ",\n" : fmt::format(",{}\n", random() % 1000);
        }
        EXPECT_EQ(LoadText(store, csv), "");
        Store made(store, Purpose::Write);
        BuildIndexes(made, {0, 1});
        return store;
    }

  private:
    std::filesystem::path folder_;
};

// All that a file's trees hold, or an empty text where its pages are damaged.
class Contents : public TreeVisitor {
  public:
    static std::string Of(const std::string& name) {
        Contents contents;
        PageFile file(name);
        const PageReport ignore = [](const std::string&) {};
        if (!file.ReadMeta(std::nullopt, ignore)) return "";
        PageUse use = file.MakeUse();
        for (const PageTree& tree : file.ReadDatabases(use, ignore)) {
            contents.text_ += tree.name + '\n';
            file.Walk(tree, contents, use, ignore);
        }
        return contents.text_;
    }
    void Separator(ByteView) override {}
    void Entry(ByteView key, ByteView value) override {
        text_ += fmt::format("{} {} {}{}\n", key.size(), value.size(), TextOf(key), TextOf(value));
    }

  private:
    std::string text_;
};

// The number of findings; a file that cannot even be looked at has one.
std::uint64_t CountFindings(const std::string& name) {
    try {
        return CheckStore(name).findings.Count();
    } catch (const CommandError&) {
        return 1;
    }
}

// --- Bytes

TEST_F(StoreDamage, EveryFlippedBitIsReportedOrHarmless) {
    const std::string name = MakeSample(240);
    ASSERT_EQ(CountFindings(name), 0u);
    const std::string bytes = ReadFile(name), contents = Contents::Of(name);
    constexpr std::size_t PageSize = 4096, MetaSize = 160, PlaceSize = 24;
    std::vector<std::size_t> bits;
    for (std::size_t page = 0; page < bytes.size() / PageSize; ++page) {
        // What decides on all else: of meta pages what they say, of others the header and the places of nodes.
        const std::size_t size = page < 2 ? MetaSize : PlaceSize;
        for (std::size_t i = 0; i < size; ++i) bits.push_back((page * PageSize + i) * 8 + (i * 5 + page) % 8);
    }
    for (std::size_t i = 0; i < MetaSize * 8; ++i) bits.push_back((i % 2) * PageSize * 8 + i);
    std::mt19937 random(11);
    for (int i = 0; i < 2000; ++i) bits.push_back(random() % (bytes.size() * 8));
    std::fstream file(name, std::ios::binary | std::ios::in | std::ios::out);
    const auto put = [&file](std::size_t place, char byte) {
        file.seekp(static_cast<std::streamoff>(place)).put(byte).flush();
    };
    for (const std::size_t bit : bits) {
        const std::size_t place = bit / 8;
        put(place, static_cast<char>(bytes[place] ^ (1 << bit % 8)));
        EXPECT_TRUE(CountFindings(name) > 0 || Contents::Of(name) == contents)
            << "bit " << bit % 8 << " of byte " << place;
        put(place, bytes[place]);
    }
    EXPECT_EQ(CountFindings(name), 0u);
}

TEST_F(StoreDamage, CutFilesAreReported) {
    const std::string name = MakeSample(120), copy = Name("copy"), bytes = ReadFile(name),
                      contents = Contents::Of(name);
    std::mt19937 random(13);
    for (int round = 0; round < 100; ++round) {
        std::ofstream(copy, std::ios::binary) << bytes.substr(0, random() % bytes.size());
        EXPECT_TRUE(CountFindings(copy) > 0 || Contents::Of(copy) == contents) << "round " << round;
    }
}

// --- Trees

// Changes a store behind its back.
struct Change {
    const char* report;  // that a check must give
    void (*make)(Transaction& transaction);
    std::uint64_t least = 1;  // findings
};

constexpr VqTypeId NameType = VqTypeId_VqString;

int ReversedOrder(const MDB_val* a, const MDB_val* b) { return IndexOrder(NameType, VqFormat_LittleEndian)(b, a); }

Database NameIndex(Transaction& transaction, MDB_cmp_func* order = IndexOrder(NameType, VqFormat_LittleEndian)) {
    return *transaction.Open("index name", order);
}

Database Records(Transaction& transaction) {
    return *transaction.Open(RecordsDatabase, RecordOrder(VqFormat_LittleEndian));
}

std::vector<Bytes> KeysOf(Transaction& transaction, Database database) {
    std::vector<Bytes> keys;
    Cursor cursor(transaction, database);
    for (bool isThere = cursor.First(); isThere; isThere = cursor.Next()) {
        keys.emplace_back(cursor.Key().begin(), cursor.Key().end());
    }
    return keys;
}

void Remove(Transaction& transaction, Database database, Bytes key) {
    MDB_val val{key.size(), key.data()};
    EXPECT_EQ(mdb_del(transaction.Handle(), database, &val, nullptr), 0);
}

// The first name's key, as if it were that object's.
void AddFirstKeyFor(Transaction& transaction, std::uint64_t number) {
    const Database index = NameIndex(transaction);
    Bytes key = KeysOf(transaction, index).front();
    const Id id = IdOf(number, VqFormat_LittleEndian);
    std::copy(id.begin(), id.end(), key.end() - IdSize);
    transaction.Put(index, key, {});
}

void PutEntry(Transaction& transaction, const std::string& name, std::string_view text, bool isSealed = true) {
    Bytes value;
    Append(value, ViewOf(text));
    SealBytes(value, ViewOf(isSealed ? name : ""));
    transaction.Put(*transaction.Open(HeaderDatabase, nullptr), ViewOf(name), value);
}

void Reverse(Transaction& transaction) {
    const Database index = NameIndex(transaction, ReversedOrder);
    const std::vector<Bytes> keys = KeysOf(transaction, index);
    transaction.Clear(index);
    for (const Bytes& key : keys) transaction.Put(index, key, {});
}

const Change Changes[] = {
    {"index name: the key of record", Reverse, 900},
    {"is missing",
     [](Transaction& transaction) {
         const Database index = NameIndex(transaction);
         Remove(transaction, index, KeysOf(transaction, index)[500]);
     }},
    {"is not the one that its value gives", [](Transaction& transaction) { AddFirstKeyFor(transaction, 777); }},
    {"a key of record 4711, which is not there", [](Transaction& transaction) { AddFirstKeyFor(transaction, 4711); }},
    {"has 1 bytes behind it",
     [](Transaction& transaction) {
         const Database index = NameIndex(transaction);
         transaction.Put(index, KeysOf(transaction, index)[500], ViewOf("x"));
     }},
    {"record 17: the bytes are not those that were written",
     [](Transaction& transaction) {
         const Id id = IdOf(17, VqFormat_LittleEndian);
         const ByteView record = *transaction.Get(Records(transaction), id);
         Bytes changed(record.begin(), record.end());
         changed[5] ^= 1;
         transaction.Put(Records(transaction), id, changed);
     }},
    {"a key of record 18, which is not there",
     [](Transaction& transaction) {
         const Id id = IdOf(18, VqFormat_LittleEndian);
         Remove(transaction, Records(transaction), Bytes(id.begin(), id.end()));
     }},
    {"the next record is 9, and the last one is 1000",
     [](Transaction& transaction) { PutEntry(transaction, NextEntry, "9"); }},
    {"entry \"next\" is \"281474976710657\"",
     [](Transaction& transaction) { PutEntry(transaction, NextEntry, "281474976710657"); }},
    {"index name: 7 cut keys are counted, and there are",
     [](Transaction& transaction) { PutEntry(transaction, "index name", "cut keys=7, nulls=0, no numbers=0"); }},
    {"index size: 9 nulls are counted, and there are 77",
     [](Transaction& transaction) { PutEntry(transaction, "index size", "cut keys=0, nulls=9, no numbers=0"); }},
    {"entry \"index size\" is \"cut keys=0, nulls=77\"",
     [](Transaction& transaction) { PutEntry(transaction, "index size", "cut keys=0, nulls=77"); }},
    {"entry \"store\" is not what was written",
     [](Transaction& transaction) { PutEntry(transaction, StoreEntry, "format-version=1", false); }},
    {"index size: its tree is missing",
     [](Transaction& transaction) { mdb_drop(transaction.Handle(), *transaction.Open("index size", nullptr), 1); }},
    {"database \"other\" is unknown", [](Transaction& transaction) { transaction.Open("other", nullptr, true); }},
};

TEST_F(StoreDamage, EveryFaultOfTreesIsNamed) {
    const std::string name = MakeSample(1000), copy = Name("copy");
    for (const Change& change : Changes) {
        std::filesystem::copy_file(name, copy, std::filesystem::copy_options::overwrite_existing);
        {
            Environment environment(copy, Access::Write);
            Transaction transaction(environment, Access::Write);
            change.make(transaction);
            transaction.Commit();
        }
        const Findings findings = CheckStore(copy).findings;
        const auto tells = [&change](const std::string& text) { return text.find(change.report) != text.npos; };
        EXPECT_TRUE(std::any_of(findings.Texts().begin(), findings.Texts().end(), tells))
            << change.report << ": " << findings.Count() << " findings, "
            << (findings.Count() == 0 ? "" : findings.Texts().front());
        EXPECT_GE(findings.Count(), change.least);
        const std::string_view report = change.report;
        if (!report.starts_with("index") && !report.starts_with("entry \"index")) continue;
        Printed([&] { EXPECT_EQ(ErrorOf([&] { RunIndex({copy, "", true}); }), "") << change.report; });
        EXPECT_EQ(CheckStore(copy).findings.Count(), 0u) << change.report;
    }
}

// What LMDB takes for pages of an index would be free with it.
TEST_F(StoreDamage, RebuildFreesNoPagesOfRecords) {
    const std::string name = MakeSample(4000);
    std::map<std::string, std::uint64_t> roots;
    const PageReport ignore = [](const std::string&) {};
    PageFile pages(name);
    ASSERT_TRUE(pages.ReadMeta(std::nullopt, ignore));
    PageUse use = pages.MakeUse();
    for (const PageTree& tree : pages.ReadDatabases(use, ignore)) roots[tree.name] = tree.root;
    std::fstream file(name, std::ios::in | std::ios::out | std::ios::binary);
    const auto place = static_cast<std::streamoff>(roots["index name"] * pages.PageSize());
    std::uint16_t node = 0;
    file.seekg(place + 16).read(reinterpret_cast<char*>(&node), sizeof node);
    const auto child = static_cast<std::uint32_t>(roots[RecordsDatabase]);
    file.seekp(place + node).write(reinterpret_cast<const char*>(&child), sizeof child);
    file.close();
    const std::string fault = ErrorOf([&] { RunIndex({name, "", true}); });
    EXPECT_NE(fault.find("make the store anew"), fault.npos) << fault;
}

// --- Dumps

TEST_F(StoreDamage, DumpsOfAllTypesLoadToTheSameRecords) {
    unsigned round = 0;
    for (int i = 0; i < VqTypeCount; ++i) {
        const auto type = static_cast<VqTypeId>(i);
        if (!CanEncode(type) || TypeName(type) == "illegal") continue;
        SCOPED_TRACE(TypeName(type));
        const unsigned char format = ++round % 2 == 0 ? VqFormat_LittleEndian : VqFormat_BigEndian;
        const std::optional<std::string> null =
            round % 3 == 0 ? std::nullopt : std::optional<std::string>("no, \"none\"");
        const std::string schema = "number:long, value:" + TypeName(type);
        const std::string first = MakeStore("first", schema, format);
        {
            Store store(first, Purpose::Write);
            const vqtest::RowValues values(Manager(), type, 200);
            vqtest::RandomRow(Manager(), type).Fill(values);
            Batch batch;
            for (unsigned long row = 0; row < values.Count(); ++row) {
                Append(batch.bytes, Bytes{1, 2, 3, 4});
                Append(batch.bytes, values.Store(format, row, 1));
                batch.ends.push_back(batch.bytes.size());
            }
            WriteBatch(store, batch);
        }
        // Not every random value has a text.
        const std::string second = MakeStore("second", schema, format), third = MakeStore("third", schema, format);
        LoadText(second, Dump(first, null), null);
        EXPECT_EQ(LoadText(third, Dump(second, null), null), "");
        const std::string contents = Contents::Of(second);
        EXPECT_EQ(Contents::Of(third), contents);
        EXPECT_GT(contents.size(), 1000u);
    }
}

TEST_F(StoreDamage, DumpsKeepTextsAsTheyStand) {
    const std::string csv =
        "name,size\n"
        "\"a, \"\"b\"\"\",1.5\n\"\",\n,nan\n\" c \",-inf\n\"two\r\nlines\",0.1\n{NULL},4.94065645841247e-324\nS\u00E3o "
        "\u65E5\u672C,-0\n";
    const std::string store = MakeStore("texts", "name:VqString, size:VqNull_double");
    EXPECT_EQ(LoadText(store, csv), "");
    EXPECT_EQ(Dump(store), csv);
    std::string fault;
    Printed([&] { fault = ErrorOf([&] { RunDump({store, "{NULL}", false}); }); });
    EXPECT_NE(fault.find("record 6: column name"), fault.npos) << fault;
    const std::string commands = Printed([&] { RunDump({store, std::nullopt, true}); });
    EXPECT_EQ(commands, "vqtype store create " + store + " --schema 'name:VqString, size:VqNull_double'\n");
}

TEST_F(StoreDamage, WhatHasNoTextIsLeftOutAndNoLibraryOfAnotherOrderCallsItDamage) {
    const std::string name = MakeStore("textless", "name:VqString");
    EXPECT_EQ(LoadText(name, "name\none\ntwo\nthree\n"), "");
    const auto change = [&name](auto make) {
        Environment environment(name, Access::Write);
        Transaction transaction(environment, Access::Write);
        make(transaction);
        transaction.Commit();
    };
    change([](Transaction& transaction) {
        std::string text =
            TextOf(Unsealed(*transaction.Get(*transaction.Open(HeaderDatabase, nullptr), ViewOf(StoreEntry))));
        const std::size_t place = text.find("order-version=") + 14;
        PutEntry(transaction, StoreEntry, text.replace(place, text.find('\n', place) - place, "1"));
    });
    const CheckResult other = CheckStore(name);
    EXPECT_TRUE(other.findings.Count() == 1 && !other.IsDamaged() && other.isMended);

    change([](Transaction& transaction) {
        const Id id = IdOf(2, VqFormat_LittleEndian);
        const ByteView record = Unsealed(*transaction.Get(Records(transaction), id));
        Bytes changed(record.begin(), record.end());
        changed[2] = 200;
        SealBytes(changed, id);
        transaction.Put(Records(transaction), id, changed);
    });
    EXPECT_TRUE(CheckStore(name).IsDamaged());
    const std::string dump = Printed([&] { ErrorOf([&] { RunDump({name, std::nullopt, false}); }); });
    EXPECT_EQ(dump, "name\none\nthree\n");
}

}  // namespace
