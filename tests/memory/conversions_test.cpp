// Conversions when memory runs out.
#include <gtest/gtest.h>

#include <new>

#include "allocations.h"
#include "rowtest.h"

using namespace vqtest;

namespace {

constexpr unsigned long Count = 3;

// What the operations work on.
struct Subjected {
    VqTypeMgr& manager;
    char id;
    void* values;
    VqTypeConvertData* texts;
    VqString& text;
};

// What an operation makes is shown, and freed.
std::string ShowTexts(const Subjected& on, void* made) {
    auto* const record = static_cast<VqTypeConvertData*>(made);
    std::string shown;
    for (int i = 0; i < static_cast<int>(Count); ++i) {
        const VqString& text = *record->GetString(i);
        shown += (text.IsNullValue() ? "null" : "=" + Bytes(text)) + "\n";
    }
    EXPECT_EQ(record->manager, &on.manager);
    delete record;
    return shown;
}
std::string ShowText(const Subjected& on, void* made) {
    std::string shown = Bytes(*static_cast<VqString*>(made));
    on.manager.Delete(VqTypeId_VqString, made, 1);
    return shown;
}
std::string ShowValues(const Subjected& on, void* made) {
    const RowValues values(on.manager, on.id, Count, made);
    const ByteVector bytes = values.Store(VqFormat_BigEndian, 0, Count);
    return Hex(bytes.data(), bytes.size());
}

struct Operation {
    const char* name;
    void* (*run)(const Subjected& on);
    std::string (*show)(const Subjected& on, void* made);
};
constexpr Operation operations[] = {
    {"ConvertTo", [](const Subjected& on) -> void* { return on.manager.ConvertTo(on.id, on.values, Count); },
     ShowTexts},
    {"ConvertFrom", [](const Subjected& on) { return on.manager.ConvertFrom(on.id, on.texts, Count); }, ShowValues},
    {"DefaultValue", [](const Subjected& on) { return on.manager.DefaultValue(on.id, Count, 0); }, ShowValues},
    {"DefaultValue, null", [](const Subjected& on) { return on.manager.DefaultValue(on.id, Count, 1); }, ShowValues},
    {"ConvertToVqStringOld",
     [](const Subjected& on) -> void* { return on.manager.ConvertToVqStringOld(on.values, on.id, Count); }, ShowText},
    {"ConvertFromVqStringOld",
     [](const Subjected& on) { return on.manager.ConvertFromVqStringOld(on.text, on.id, Count); }, ShowValues},
};

// The first exception of a program may make tables that stay.
const bool hasThrown = [] {
    try {
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        return true;
    }
}();

class ConversionMemory : public RowTest {
  protected:
    ConversionMemory() : texts_(manager.ConvertTo(id, samples->Get(), Count)) {}
    ~ConversionMemory() override { delete texts_; }

    // Runs it while an allocation fails; false when it has not so many. Null stands for nothing made.
    bool RunWithout(long allocation, const Operation& operation, bool throws, std::string& shown) {
        const Subjected on = {manager, id, samples->Get(), texts_, text_};
        void* made = nullptr;
        const auto run = [&] {
            try {
                made = operation.run(on);
            } catch (const std::bad_alloc&) {
            }
        };
        const bool ran =
            throws ? Allocations::FailingOrThrowing(allocation, run) : Allocations::Failing(allocation, run);
        shown = made != nullptr ? operation.show(on, made) : "nothing";
        return ran;
    }

  private:
    VqTypeConvertData* const texts_;
    VqString text_{"7;;8;"};
};

// Where the handler does not help there is no result, but for blobs of which one is null; where it does, nothing is
// amiss; where new throws, nothing is promised. Nothing leaks.
TEST_P(ConversionMemory, ThatLacksIsToldAndGivesNothing) {
    ASSERT_TRUE(hasThrown);
    constexpr struct { bool helps, throws; } ways[] = {{false, false}, {true, false}, {false, true}};
    for (const Operation& operation : operations) {
        std::string whole;
        ASSERT_FALSE(RunWithout(1000000, operation, false, whole));
        for (const auto& [helps, throws] : ways) {
            bool ran = true;
            for (long allocation = 0; ran; ++allocation) {
                SCOPED_TRACE(operation.name + std::string(", ") + std::to_string(allocation));
                const RefusedMemory refused(helps);
                std::string shown;
                shown.reserve(1000);
                const long blocks = Allocations::blocks, objects = Allocations::objects;
                ran = RunWithout(allocation, operation, throws, shown);
                EXPECT_EQ(Allocations::blocks, blocks);
                EXPECT_EQ(Allocations::objects, objects);
                if (throws) continue;
                EXPECT_EQ(refused.Sizes().size(), ran ? 1u : 0u);
                if (helps || !ran) {
                    EXPECT_EQ(shown, whole);
                } else if (id != VqTypeId_VqBlob) {
                    EXPECT_EQ(shown, "nothing");
                }
            }
        }
    }
}

TEST(ConversionRecord, ThatLacksIsToldInItsBytes) {
    const RefusedMemory refused;
    EXPECT_TRUE(Allocations::Failing(
        0, [] { EXPECT_EQ(VqTypeConvertData::Make(VqTypeId_VqString, 0, nullptr, nullptr), nullptr); }));
    EXPECT_EQ(refused.Sizes(), std::vector<unsigned long>{sizeof(VqTypeConvertData)});
}

// A value that cannot be set to null keeps what it was.
TEST_P(ConversionMemory, ThatLacksKeepsAValueFromBeingSet) {
    const RowValues unset(manager, id, 1), set(manager, id, 1);
    manager.AssignmentPtrGet(id)(unset.Get(), samples->At(1), 1, 0);
    manager.SetNullValue(id, set.Get());
    const ByteVector before = unset.Store(VqFormat_BigEndian, 0, 1), after = set.Store(VqFormat_BigEndian, 0, 1);
    for (const bool throws : {false, true}) {
        bool ran = true;
        for (long allocation = 0; ran; ++allocation) {
            SCOPED_TRACE(allocation);
            const RefusedMemory refused;
            ByteVector now;
            const long objects = Allocations::objects;
            {
                const RowValues value(manager, id, 1);
                manager.AssignmentPtrGet(id)(value.Get(), samples->At(1), 1, 0);
                const auto run = [&] {
                    try {
                        EXPECT_EQ(manager.SetNullValue(id, value.Get()), VqStatus_Ok);
                    } catch (const std::bad_alloc&) {
                    }
                };
                ran = throws ? Allocations::FailingOrThrowing(allocation, run) : Allocations::Failing(allocation, run);
                const ByteVector stored = value.Store(VqFormat_BigEndian, 0, 1);
                EXPECT_EQ(stored, ran ? before : after);
            }
            EXPECT_EQ(Allocations::objects, objects);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, ConversionMemory, testing::ValuesIn(Subjects(true)), SubjectName);

}  // namespace
