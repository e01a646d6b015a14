#include "compareready.h"

#include "comparelevels.h"
#include "equalrun.h"

namespace vq {
namespace {

// What stays the same during a comparison.
struct Ground {
    const unsigned char* start;  // of the first text
    std::size_t limit;           // in characters
    const VqCodeSet* set;
    unsigned char language;
    unsigned short op;
};

// Codes beyond the table count as marked: nothing is known of them.
inline bool Marked(const VqKeyTable& table, unsigned short code) { return code >= table.count || table.keys[code] < 0; }

// Goes on key by key where ready keys do not say enough, or before that place: equal characters may begin a
// contraction.
template <class Unit>
[[gnu::noinline]] int GoOnByKeys(TextPair<Unit> pair, Levels levels, Ground ground) {
    const KeySource source(*ground.set, ground.language);
    while (source.table.contractions && pair.text1 != ground.start && Marked(source.table, pair.CodeBefore()))
        pair.Move(-1);
    std::size_t limit = ground.limit;
    if (limit != NoLimit) limit -= static_cast<std::size_t>(pair.text1 - ground.start) / sizeof(Unit);
    const KeyReader keys1(source, pair.text1, limit), keys2(source, pair.text2, limit);
    return ground.op & VqCmp_KeyOnly ? CompareKeys(keys1, keys2, NoLimit)
                                     : CompareLevels(keys1, keys2, levels, ground.op, nullptr);
}

// Compares from the first difference on, where the pair stands.
template <class Unit, class Run>
inline int CompareFrom(TextPair<Unit> pair, Run run, Ground ground) {
    const VqKeyTable table = ground.set->GetKeyTable(ground.language);
    const std::int32_t deciding = ground.op & VqCmp_KeyOnly ? -1 : VqKeyPrimaryMask;
    Levels levels;
    do {
        const unsigned short code1 = pair.Code1(), code2 = pair.Code2();
        if (sizeof(Unit) > 1 && (code1 >= table.count || code2 >= table.count)) return GoOnByKeys(pair, levels, ground);
        const std::int32_t key1 = table.keys[code1], key2 = table.keys[code2];
        if ((key1 | key2) < 0) return GoOnByKeys(pair, levels, ground);
        if (table.contractions && pair.text1 != ground.start && Marked(table, pair.CodeBefore())) {
            return GoOnByKeys(pair, levels, ground);
        }
        if (const std::int32_t difference = (key1 & deciding) - (key2 & deciding)) return difference;
        levels.Note(key1, key2);
        pair.Move(1);
        run.Took();
    } while (run.Skip(pair));
    return levels.Result(ground.op);
}

// Equal texts need no table.
template <class Unit, class Run>
inline int CompareUsual(Run run, const char* text1, const char* text2, unsigned char codeSet, unsigned char language,
                        unsigned short op) {
    const unsigned char* const start = reinterpret_cast<const unsigned char*>(text1);
    TextPair<Unit> pair = {start, reinterpret_cast<const unsigned char*>(text2)};
    if (!run.Skip(pair)) return 0;
    return CompareFrom(pair, run, Ground{start, NoLimit, &CodeSetOf(codeSet), language, op});
}

template <class Unit>
int CompareLimited(const char* text1, const char* text2, std::size_t limit, const VqCodeSet& set,
                   unsigned char language, unsigned short op) {
    const unsigned char* const start = reinterpret_cast<const unsigned char*>(text1);
    TextPair<Unit> pair = {start, reinterpret_cast<const unsigned char*>(text2)};
    LimitedRun<Unit> run(limit);
    return run.Skip(pair) ? CompareFrom(pair, run, Ground{start, limit, &set, language, op}) : 0;
}

}  // namespace

int CompareUsualBytes(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                      unsigned char language, unsigned short op) {
    return CompareUsual<unsigned char>(ByteRun(readable), text1, text2, codeSet, language, op);
}

int CompareUsualRecords(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                        unsigned char language, unsigned short op) {
    return CompareUsual<unsigned char>(SizedRun<unsigned char>(readable), text1, text2, codeSet, language, op);
}

int CompareUsualUnits(const char* text1, const char* text2, std::size_t readable, unsigned char codeSet,
                      unsigned char language, unsigned short op) {
    using Unit = unsigned short;
    if (readable < sizeof(Unit)) return CompareUsual<Unit>(TerminatedRun<Unit>(), text1, text2, codeSet, language, op);
    return CompareUsual<Unit>(SizedRun<Unit>(readable & ~(sizeof(Unit) - 1)), text1, text2, codeSet, language, op);
}

int CompareReady(const char* text1, const char* text2, std::size_t limit, const VqCodeSet& set, unsigned char language,
                 unsigned short op) {
    return set.GetCharSize() == 1 ? CompareLimited<unsigned char>(text1, text2, limit, set, language, op)
                                  : CompareLimited<unsigned short>(text1, text2, limit, set, language, op);
}

}  // namespace vq
