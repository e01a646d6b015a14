// Booleans and seals as keys: comparison and hashing, in memory and stored.

#include "boolean.h"
#include "keyforms.h"
#include "seal.h"
#include "vqtypcmp.h"
#include "vqtyphash.h"

namespace {

// --- Booleans

// By the two operators alone: one byte that no boolean has can be equal to another and greater than it, too.
struct Truth {
    VqBoolean boolean;
};

int Order(Truth a, Truth b) { return (a.boolean > b.boolean) - (a.boolean < b.boolean); }

struct BooleanElement {
    static constexpr unsigned long Size = sizeof(VqBoolean);
    static Truth Load(const unsigned char* at) { return {std::bit_cast<VqBoolean>(*at)}; }
    static std::uint32_t HashWord(const unsigned char* at) {
        return static_cast<std::uint32_t>(static_cast<std::int8_t>(*at));
    }
};

// --- Seals: the high word first in every form, stored words with their high byte first

template <bool Swapped>
struct SealElement {
    static constexpr unsigned long Size = sizeof(VqSeal);
    static std::uint64_t Load(const unsigned char* at) {
        return std::uint64_t{Word(at)} << 32 | std::uint32_t{Word(at + 2)} << 16 | Word(at + 4);
    }
    static std::uint32_t HashWord(const unsigned char* at) { return Word(at) ^ Word(at + 2) ^ Word(at + 4); }

  private:
    static std::uint16_t Word(const unsigned char* at) { return vq::Scalar<std::uint16_t, Swapped>::Load(at); }
};

struct SealForms : vq::SameInEveryForm<SealElement<true>> {
    using InMemory = SealElement<false>;
};

}  // namespace

VQ_COMPARE_FUNCTION(BooleanCompare, vq::CompareKeys<BooleanElement>(VQ_OPERANDS, error))
VQ_COMPARE_FUNCTION(SealCompare, vq::CompareForms<SealForms>(format, VQ_OPERANDS, error))

VQ_HASH_FUNCTION(BooleanHash, vq::HashElements<BooleanElement>(length, values, count, error))
VQ_HASH_FUNCTION(SealHash, vq::HashForms<SealForms>(format, length, values, count, error))
