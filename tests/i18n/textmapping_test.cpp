// Texts mapped whole come out as their characters do one by one.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "i18nsupport.h"
#include "testsupport.h"
#include "vqchar.h"

namespace {

using namespace vqtest;

using Codes = std::vector<unsigned short>;

// Runs of ASCII and codes of all kinds.
Codes RandomCodes(std::mt19937& random, std::size_t n, unsigned limit) {
    Codes codes;
    bool ascii = false;
    while (codes.size() != n) {
        if (random() % 20 == 0) ascii = !ascii;
        codes.push_back(static_cast<unsigned short>(random() % (ascii ? 128 : random() % 2 ? limit : 256)));
    }
    return codes;
}

// Characters of `size` bytes at an odd address, with nothing around them.
std::vector<char> Packed(const Codes& codes, int size) {
    std::vector<char> text(1);
    for (const unsigned short code : codes) {
        const char bytes[] = {static_cast<char>(code), static_cast<char>(code >> 8)};
        text.insert(text.end(), bytes, bytes + size);
    }
    return text;
}

TEST(TextMapping, AgreesWithTheCharacters) {
    std::mt19937 random(1);
    for (const VqCodeSet* set : AllSets()) {
        SCOPED_TRACE(set->GetName());
        const int size = set->GetCharSize();
        for (std::size_t n = 0; n < 150; ++n) {
            const Codes codes = RandomCodes(random, n, size == 1 ? 256 : 65536), units = RandomCodes(random, n, 65536);
            Codes toUnits, toCodes;
            for (const unsigned short code : codes) toUnits.push_back(set->ToUnicode(code));
            for (const unsigned short unit : units) toCodes.push_back(set->FromUnicode(unit));

            std::vector<char> out(1 + 2 * n);
            set->MapToUnicode(Packed(codes, size).data() + 1, n, out.data() + 1);
            EXPECT_EQ(out, Packed(toUnits, 2)) << n;
            out.assign(1 + static_cast<std::size_t>(size) * n, 0);
            set->MapFromUnicode(Packed(units, 2).data() + 1, n, out.data() + 1);
            EXPECT_EQ(out, Packed(toCodes, size)) << n;
        }
    }
}

TEST(TextMapping, OfStringsAgreesWithTheCharacters) {
    std::mt19937 random(2);
    for (const unsigned n : {1u, 9u, 255u, 256u, 257u, 700u}) {
        for (const VqCodeSet* from : AllSets()) {
            const int size = from->GetCharSize();
            Codes codes = RandomCodes(random, n, size == 1 ? 256 : 65536);
            for (unsigned short& code : codes) code = code != 0 ? code : static_cast<unsigned short>('a');
            const std::vector<char> text = Packed(codes, size);
            VqString original(from->GetCode(), static_cast<unsigned char>(3));
            original.AssignChars(text.data() + 1, from->GetCode(), static_cast<unsigned short>(n));
            std::vector<char> swapped = text;
            for (std::size_t i = 1; size == 2 && i + 1 < text.size(); i += 2) std::swap(swapped[i], swapped[i + 1]);
            for (const VqCodeSet* to : AllSets()) {
                SCOPED_TRACE(std::string(from->GetName()) + " to " + to->GetName());
                VqString mapped, other(to->GetCode(), static_cast<unsigned char>(3));
                mapped.CopyMapped(original, to->GetCode());
                other.AssignChars(swapped.data() + 1, from->GetCode(), static_cast<unsigned short>(n), 2);
                ASSERT_EQ(mapped.Len(), n);
                ASSERT_EQ(Hex(other.StrGet(), other.GetSize()), Hex(mapped.StrGet(), mapped.GetSize()));
                for (int i = 0; i < static_cast<int>(n); ++i) {
                    ASSERT_EQ(mapped[i].GetCode(), original[i].GetCodeIn(to->GetCode())) << i;
                }
            }
        }
    }
}

}  // namespace
