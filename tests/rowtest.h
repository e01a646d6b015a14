// Tests of every row that lives, under a manager of each table, with the row's samples.
#ifndef VQ_ROWTEST_H
#define VQ_ROWTEST_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "rowvalues.h"

namespace vqtest {

// A row under a manager of one of the tables.
struct Subject {
    unsigned long version;
    char id;

    std::string Name() const {
        const VqTypeMgr manager(version);
        return manager.NameGet(id, nullptr) + std::string(version < 4 ? ", older table" : "");
    }
    friend void PrintTo(const Subject& subject, std::ostream* out) { *out << subject.Name(); }
};

// A row without row functions of its own makes no arrays.
inline bool IsAlive(const Subject& subject) {
    const VqTypeMgr manager(subject.version);
    void* const values = manager.Create(subject.id, 1);
    manager.Delete(subject.id, values, 1);
    return values != nullptr;
}

inline std::vector<Subject> Subjects(bool alive) {
    std::vector<Subject> subjects;
    for (const unsigned long version : {3ul, 5ul}) {
        for (char id = 0; id < VqTypeCount; ++id) {
            if (IsAlive({version, id}) == alive) subjects.push_back({version, id});
        }
    }
    return subjects;
}

class RowTest : public testing::TestWithParam<Subject> {
  protected:
    RowTest() {
        std::vector<std::string> texts = SamplesOf(id).texts;
        if (manager.SupportsNullValue(id)) texts.insert(texts.begin() + 2, 2, "{NULL}");
        samples = std::make_unique<RowValues>(manager, id, texts, format, SamplesOf(id).exchange);
        count = samples->Count();
        readable = static_cast<unsigned long>(texts.size());
    }

    void ExpectEqual(const RowValues& a, unsigned long i, const RowValues& b, unsigned long j) {
        EXPECT_EQ(a.Cmp(i, b, j), 0) << i << ": " << a.Print(i) << " and " << b.Print(j);
        EXPECT_EQ(a.IsNull(i), b.IsNull(j)) << i;
        EXPECT_EQ(a.Store(VqFormat_BigEndian, i, 1), b.Store(VqFormat_BigEndian, j, 1)) << i << ": " << a.Print(i);
    }
    // The values that both have.
    void ExpectEqualArrays(const RowValues& a, const RowValues& b) {
        for (unsigned long i = 0; i < std::min(a.Count(), b.Count()); ++i) ExpectEqual(a, i, b, i);
    }

    VqTypeMgr manager{GetParam().version};
    const char id = GetParam().id;
    const char* const format = SamplesOf(id).format;  // loses nothing of the readable samples
    std::unique_ptr<RowValues> samples;
    unsigned long count = 0;
    unsigned long readable = 0;  // as many from the first on come back from their printed texts
};

inline std::string SubjectName(const testing::TestParamInfo<Subject>& info) {
    std::string name = info.param.Name();
    std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
    return name;
}

}  // namespace vqtest

#endif
