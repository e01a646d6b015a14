// Random values of every row: edges, near neighbours of one another, and nulls.
#ifndef VQ_ROWRANDOM_H
#define VQ_ROWRANDOM_H

#include <random>

#include "blob.h"
#include "rowvalues.h"
#include "vqistring.h"
#include "vqlanguagecontext.h"

namespace vqtest {

class RandomRow {
  public:
    RandomRow(VqTypeMgr& manager, char id) : manager_(manager), id_(id), random_(static_cast<unsigned>(id) + 1) {}

    unsigned Below(std::size_t n) { return static_cast<unsigned>(random_() % n); }
    bool OneIn(unsigned n) { return Below(n) == 0; }

    // Gives every value of the array another one. Texts of one array are of one set, language and flags. Values are as
    // they come from disk.
    void Fill(const RowValues& values) {
        profile_ = profiles[Below(manager_.SupportsNullValue(id_) ? std::size(profiles) : 1)];
        flags_ = static_cast<unsigned char>(Below(2) * VqIStringFlag_Accents);
        seeds_.clear();
        for (unsigned long i = 0; i < values.Count(); ++i) {
            if (manager_.SupportsNullValue(id_) && OneIn(12)) {
                manager_.SetNullValue(id_, values.At(i));
            } else {
                FillOne(values.At(i));
            }
            const ByteVector bytes = values.Store(VqFormat_LittleEndian, i, 1);
            manager_.Load(id_, values.At(i), bytes.data(), VqFormat_LittleEndian, 1);
        }
    }

    // What another row's bytes or texts can be made of: edges, and bytes near those of one made before.
    ByteVector Bytes(std::size_t size) {
        ByteVector bytes(size);
        if (seeds_.empty() || OneIn(4)) {
            const bool isEdge = OneIn(3);
            for (unsigned char& byte : bytes) byte = isEdge ? edges[Below(3)] : Byte();
        } else {
            bytes = seeds_[Below(seeds_.size())];
            bytes.resize(size);
            for (unsigned changes = Below(3); changes != 0 && size != 0; --changes) {
                unsigned char& byte = bytes[Below(size)];
                byte = OneIn(2) ? Byte() : static_cast<unsigned char>(byte + 1 - 2 * Below(2));
            }
        }
        seeds_.push_back(bytes);
        return bytes;
    }

  private:
    struct Profile {
        unsigned char codeSet, language;
    };
    // Sets and languages with orders of their own: Latin letters that stand apart, contract or expand; other scripts;
    // ideographs; the native set, whose texts compare by bytes.
    static constexpr Profile profiles[] = {{0, 0},    {1, 0},   {1, 2},   {1, 4},   {2, 8},
                                           {5, 10},   {12, 14}, {10, 17}, {13, 18}, {14, 19},
                                           {225, 20}, {253, 0}, {253, 2}, {253, 8}, {253, 16}};
    static constexpr unsigned char edges[] = {0, 0xFF, 1, 0x7F, 0x80, 0xFE, 2};

    unsigned char Byte() { return OneIn(2) ? edges[Below(std::size(edges))] : static_cast<unsigned char>(random_()); }

    void FillOne(void* value) {
        if (id_ == VqTypeId_VqString) return Assign(value, RandomString());
        if (id_ == VqTypeId_VqIString) return Assign(value, RandomIString<VqIString>());
        if (id_ == VqTypeId_VqCaseIString) return Assign(value, RandomIString<VqCaseIString>());
        if (id_ == VqTypeId_VqBlob) {
            const ByteVector bytes = Bytes(Below(6));
            return Assign(value, VqBlob(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size())));
        }
        ByteVector bytes = Bytes(manager_.DiskLenGet(id_, nullptr, VqFormat_LittleEndian, 1, VqFormat_Memory));
        const bool isNullable = id_ >= VqTypeId_VqNull_char && id_ <= VqTypeId_VqNull_VqInt64;
        if (isNullable && !OneIn(4)) bytes[0] = 0;
        manager_.Load(id_, value, bytes.data(), VqFormat_LittleEndian, 1);
    }
    template <class Value>
    void Assign(void* to, const Value& value) {
        manager_.AssignmentPtrGet(id_)(to, &value, 1, 0);
    }

    // Few letters, so that texts meet: cases, accents, contractions and expansions, and signs between.
    std::u16string Letters() {
        static constexpr char16_t alphabet[] =
            u"aaAbcChHzZsSlLnN\u00E4\u00C4\u00E1\u00E9\u00E5\u00DF\u00E6\u00F1"
            u"\u0153\u010D\u017E -.1\u0436\u0416\u03B1\u03AC\u4E00\u3042";
        std::u16string letters(Below(6), u'a');
        for (char16_t& letter : letters) letter = alphabet[Below(std::size(alphabet) - 1)];
        return letters;
    }
    // A beginning that another text has, and more.
    std::u16string Text() {
        if (texts_.empty() || OneIn(3)) {
            texts_.assign(1, Letters());
            return texts_[0];
        }
        const std::u16string& other = texts_[Below(texts_.size())];
        texts_.push_back(other.substr(0, Below(other.size() + 1)) + (OneIn(2) ? u"" : Letters()));
        return texts_.back();
    }
    VqString RandomString() {
        VqString string = Wide(Text());
        string.SetCodeSet(profile_.codeSet);
        string.SetLanguage(profile_.language);
        return string;
    }
    template <class Value>
    Value RandomIString() {
        std::string bytes;
        for (const char16_t letter : Text()) bytes += static_cast<char>(letter < 256 ? letter : 0x8C + letter % 17);
        Value string(bytes.c_str());
        string.SetFlags(static_cast<unsigned char>(flags_ | (OneIn(4) ? VqIStringFlag_Raw : 0)));
        return string;
    }

    VqTypeMgr& manager_;
    const char id_;
    std::mt19937 random_;
    Profile profile_ = profiles[0];
    unsigned char flags_ = 0;
    std::vector<ByteVector> seeds_;
    std::vector<std::u16string> texts_;
};

}  // namespace vqtest

#endif
