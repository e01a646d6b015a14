#include "compareready.h"

#include <algorithm>

#include "comparelevels.h"
#include "equalrun.h"

namespace vq {
namespace {

// Codes beyond the table count as marked: nothing is known of them.
inline bool Marked(const VqKeyTable& table, unsigned short code) { return code >= table.count || table.keys[code] < 0; }

// Goes on key by key where ready keys do not say enough, or before that place: equal characters may begin a
// contraction.
template <class Unit>
[[gnu::noinline]] int GoOnByKeys(const ReadyTexts& texts, TextPair<Unit> pair, const Levels& levels, unsigned short op,
                                 std::size_t limit) {
    const KeySource source(*texts.set, texts.language);
    const unsigned char* const start = reinterpret_cast<const unsigned char*>(texts.text1);
    while (source.table.contractions && pair.text1 != start && Marked(source.table, pair.CodeBefore())) pair.Move(-1);
    if (limit != NoLimit) limit -= static_cast<std::size_t>(pair.text1 - start) / sizeof(Unit);
    const KeyReader keys1(source, pair.text1, limit), keys2(source, pair.text2, limit);
    return op & VqCmp_KeyOnly ? CompareKeys(keys1, keys2) : CompareLevels(keys1, keys2, levels, op, nullptr);
}

template <class Unit, class Run>
[[gnu::noinline]] int CompareBy(Run run, const ReadyTexts& texts, const VqKeyTable& table, unsigned short op,
                                std::size_t limit) {
    const unsigned char* const start = reinterpret_cast<const unsigned char*>(texts.text1);
    TextPair<Unit> pair = {start, reinterpret_cast<const unsigned char*>(texts.text2)};
    const std::int32_t deciding = op & VqCmp_KeyOnly ? -1 : PrimaryMask;
    for (Levels levels;; pair.Move(1), run.Took()) {
        if (!run.Skip(pair)) return levels.Result(op);
        const unsigned short code1 = pair.Code1(), code2 = pair.Code2();
        if (sizeof(Unit) > 1 && (code1 >= table.count || code2 >= table.count)) {
            return GoOnByKeys(texts, pair, levels, op, limit);
        }
        const std::int32_t key1 = table.keys[code1], key2 = table.keys[code2];
        if ((key1 | key2) < 0 || (table.contractions && pair.text1 != start && Marked(table, pair.CodeBefore()))) {
            return GoOnByKeys(texts, pair, levels, op, limit);
        }
        if (const std::int32_t difference = (key1 & deciding) - (key2 & deciding)) return difference;
        levels.Note(key1, key2);
    }
}

template <class Unit>
inline int CompareWhole(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op) {
    const std::size_t bytes = texts.readable & ~(sizeof(Unit) - 1);
    return bytes != 0 ? CompareBy<Unit>(SizedRun<Unit>(bytes), texts, table, op, NoLimit)
                      : CompareBy<Unit>(TerminatedRun<Unit>(), texts, table, op, NoLimit);
}

}  // namespace

int CompareReadyBytes(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op) {
    return CompareWhole<unsigned char>(texts, table, op);
}

int CompareReadyUnits(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op) {
    return CompareWhole<unsigned short>(texts, table, op);
}

int CompareReadyBytes(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op, std::size_t limit) {
    return CompareBy<unsigned char>(LimitedRun<unsigned char>(limit), texts, table, op, limit);
}

int CompareReadyUnits(const ReadyTexts& texts, const VqKeyTable& table, unsigned short op, std::size_t limit) {
    return CompareBy<unsigned short>(LimitedRun<unsigned short>(limit), texts, table, op, limit);
}

}  // namespace vq
