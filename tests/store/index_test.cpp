// Keys in order: sorted with hints and without, in memory and in runs, added by batches and all at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <random>

#include "../../tools/vqtype/store/buildindex.h"
#include "../../tools/vqtype/store/keysorter.h"
#include "../../tools/vqtype/store/load.h"
#include "rowrandom.h"

namespace {

using namespace store;

using KeyList = std::vector<Bytes>;

Bytes CopyOf(ByteView bytes) { return {bytes.begin(), bytes.end()}; }

// Random keys of one type in one byte order, many of them of equal values; texts are of few code sets and languages.
KeyList RandomKeys(vqtest::RandomRow& random, VqTypeId type, unsigned char format, std::size_t count) {
    const Column column{"c", type, {}};
    KeyMaker maker(column, format);
    VqTypeMgr manager(5);
    const vqtest::RowValues values(manager, type, 60);
    KeyList keys(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 200 == 0) random.Fill(values);
        Bytes form = values.Store(format, random.Below(values.Count()), 1);
        if (type == VqTypeId_VqBoolean) form[0] %= 2;  // other bytes are no booleans, and have no order
        maker.Append(keys[i], form, IdOf(i + 1, format));
    }
    return keys;
}

// `spill` keys are held in memory at most.
KeyList Sorted(const KeyList& keys, VqTypeId type, unsigned char format, KeySorter::Use use, std::size_t spill) {
    KeySorter sorter(type, format, testing::TempDir() + fmt::format("vqtm-sorted-{}", ::getpid()), use);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        sorter.Add(keys[i]);
        if ((i + 1) % spill == 0) sorter.Spill();
    }
    sorter.Sort();
    KeyList sorted;
    sorter.Drain([&](ByteView key) { sorted.push_back(CopyOf(key)); });
    EXPECT_EQ(sorter.Memory(), 0u);
    return sorted;
}

TEST(Index, KeysOfAllTypesAreSorted) {
    for (int row = 0; row < VqTypeCount; ++row) {
        const auto type = static_cast<VqTypeId>(row);
        if (!CanIndex(type)) continue;
        VqTypeMgr manager(5);
        vqtest::RandomRow random(manager, type);
        for (int round = 0; round < 8; ++round) {
            const unsigned char format = round % 2 == 0 ? VqFormat_LittleEndian : VqFormat_BigEndian;
            SCOPED_TRACE(TypeName(type) + (format == VqFormat_BigEndian ? ", big" : ", little"));
            const KeyList keys = RandomKeys(random, type, format, round < 6 ? 200 : 400);
            KeyList expected = keys;
            std::sort(expected.begin(), expected.end(),
                      [&](const Bytes& a, const Bytes& b) { return CompareTreeKeys(type, format, a, b) < 0; });
            EXPECT_TRUE(Sorted(keys, type, format, KeySorter::Use::Hints, 10000) == expected);
            EXPECT_TRUE(Sorted(keys, type, format, KeySorter::Use::Hints, 70) == expected);
            EXPECT_TRUE(Sorted(keys, type, format, KeySorter::Use::Comparisons, 7) == expected);
            EXPECT_TRUE(Sorted({}, type, format, KeySorter::Use::Hints, 1).empty());
        }
    }
}

// --- Trees

class IndexTrees : public testing::Test {
  protected:
    ~IndexTrees() override {
        for (const char* end : {"", "-lock"}) std::filesystem::remove(name_ + end);
    }

    Store& Made(unsigned char format) {
        constexpr const char* schema = "name:VqString(language=de, codeset=1), n:VqNull_long, area:double, raw:VqBlob";
        Store::Create(name_, Header::Make(Schema::Parse(schema, "SCHEMA"), format, VqCmp_Exact));
        return store_.emplace(name_, Purpose::Write);
    }
    // Few words, so that many values are equal; some make texts that no key holds whole, or look like patterns.
    Bytes NameForm(unsigned char format) {
        static constexpr const char* words[] = {
            "Stra\xDF"
            "e",
            "strasse",
            "\xC4pfel ",
            "a*",
            "Zug",
            "zug"};
        VqString text(1, 2);
        for (unsigned n = Below(Below(40) == 0 ? 150 : 4); n != 0; --n) text += words[Below(std::size(words))];
        Bytes form(Manager().DiskLenGet(VqTypeId_VqString, &text, format, 1, VqFormat_Memory));
        Manager().Store(VqTypeId_VqString, form.data(), &text, format, 1);
        return form;
    }
    void AddBatches(Store& store, unsigned batches, unsigned rows) {
        VqTypeMgr manager(5);
        for (; batches != 0; --batches) {
            Batch batch;
            batch.ends.resize(rows);
            std::vector<std::unique_ptr<vqtest::RowValues>> others;
            for (std::size_t i = 1; i < store.GetSchema().Count(); ++i) {
                const VqTypeId type = store.GetSchema()[i].type;
                others.push_back(std::make_unique<vqtest::RowValues>(manager, type, 60));
                vqtest::RandomRow(manager, type).Fill(*others.back());
            }
            for (std::size_t& end : batch.ends) {
                Append(batch.bytes, NameForm(store.Format()));
                for (const auto& values : others) Append(batch.bytes, values->Store(store.Format(), Below(60), 1));
                end = batch.bytes.size();
            }
            WriteBatch(store, batch);
        }
    }

    static std::string Dump(Store& store) {
        Transaction transaction(store.Env(), Access::Read);
        store.ReadIndexes(transaction);
        std::string dump;
        for (const Index& index : store.Indexes()) {
            dump += fmt::format("\n{}\n", index.Format());
            Cursor cursor(transaction, index.database);
            for (bool more = cursor.First(); more; more = cursor.Next())
                dump.append(cursor.Key().begin(), cursor.Key().end()) += '\n';
        }
        return dump;
    }

    const std::string name_ = testing::TempDir() + fmt::format("vqtm-index-{}.db", ::getpid());
    std::optional<Store> store_;

  private:
    unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }

    std::mt19937 random_{1};
};

const std::vector<std::size_t> AllColumns{0, 1, 2, 3};

TEST_F(IndexTrees, AreTheSameByBatchesAndAtOnce) {
    Store& store = Made(VqFormat_BigEndian);
    BuildIndexes(store, AllColumns);
    EXPECT_EQ(store.Indexes().size(), AllColumns.size());
    AddBatches(store, 9, 700);
    const std::string byBatches = Dump(store);
    EXPECT_GT(store.FindIndex(0)->cutKeys, 0u);
    EXPECT_EQ(store.FindIndex(2)->cutKeys, 0u);
    for (const std::size_t memory : {SortMemory, std::size_t{1}}) {
        BuildIndexes(store, {3, 0}, memory);
        BuildIndexes(store, {}, memory);
        EXPECT_TRUE(Dump(store) == byBatches) << memory;
    }
    EXPECT_TRUE(Dump(*std::make_unique<Store>(name_, Purpose::Read)) == byBatches);
}

TEST_F(IndexTrees, StayAsTheyWereWhereARecordIsDamaged) {
    Store& store = Made(VqFormat_LittleEndian);
    BuildIndexes(store, {0});
    AddBatches(store, 1, 500);
    const std::string before = Dump(store);
    Transaction damage(store.Env(), Access::Write);
    const Id id = IdOf(321, store.Format());
    Bytes record = CopyOf(*damage.Get(store.Records(), id));
    record[record.size() / 2] ^= 4;
    damage.Put(store.Records(), id, record);
    damage.Commit();
    try {
        BuildIndexes(store, AllColumns);
        ADD_FAILURE() << "indexes of a damaged record";
    } catch (const CommandError& error) {
        EXPECT_NE(std::string(error.what()).find("record 321"), std::string::npos) << error.what();
    }
    EXPECT_TRUE(Dump(store) == before);
}

TEST_F(IndexTrees, NoRecordIsWrittenOver) {
    Store& store = Made(VqFormat_LittleEndian);
    AddBatches(store, 1, 10);
    const std::pair<std::uint64_t, const char*> cases[] = {{0, "its entry \"next\" is \"0\""},
                                                           {5, "there is a record 5 already"},
                                                           {MostRecords - 3, "full"},
                                                           {MostRecords + 2, "its entry \"next\" is"}};
    for (const auto& [next, part] : cases) {
        Transaction change(store.Env(), Access::Write);
        store.SetNextNumber(change, next);
        change.Commit();
        try {
            AddBatches(store, 1, 10);
            ADD_FAILURE() << next;
        } catch (const CommandError& error) {
            EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
        }
    }
    EXPECT_EQ(store.CountRecords(Transaction(store.Env(), Access::Read)), 10u);
}

}  // namespace
