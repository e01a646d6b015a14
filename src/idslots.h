// The functions of the identifiers' rows besides keys, for every class that IdTraits knows.
#ifndef IDSLOTS_H
#define IDSLOTS_H

#include <algorithm>

#include "classslots.h"
#include "idtext.h"
#include "ref.h"
#include "storedyear.h"

namespace vq {

// Of each class: its text, its numbers by name, and those of its disk form in their order there.
template <class Id>
struct IdTraits;

template <>
struct IdTraits<VqObjId> {
    static constexpr IdDirectives directives = {"HLB", "HLB"};
    static constexpr const char* rowFormat = "(%H-%L#%B)";
    static constexpr const char* exchangeFormat = rowFormat;

    template <class Visit>
    static void EachStored(VqObjId& id, Visit visit) {
        visit(id.block);
        visit(id.low);
        visit(id.high);
    }

    static IdNumbers Numbers(const VqObjId& id) { return {0, id.high, id.low, id.block, 0, 0}; }
    static void Assign(VqObjId& id, const IdNumbers& numbers) {
        id.block = numbers[Block];
        id.low = numbers[Low];
        id.high = static_cast<std::uint16_t>(numbers[High]);
    }
};

template <>
struct IdTraits<VqClassId> {
    static constexpr IdDirectives directives = {"CV", "CV"};
    static constexpr const char* rowFormat = "(%Cv%V)";
    static constexpr const char* exchangeFormat = rowFormat;

    template <class Visit>
    static void EachStored(VqClassId& id, Visit visit) {
        visit(id.classNumber);
        visit(id.version);
    }

    static IdNumbers Numbers(const VqClassId& id) { return {0, 0, 0, 0, id.classNumber, id.version}; }
    static void Assign(VqClassId& id, const IdNumbers& numbers) {
        id.classNumber = static_cast<std::uint16_t>(numbers[ClassNumber]);
        id.version = static_cast<std::uint16_t>(numbers[Version]);
    }
};

template <>
struct IdTraits<VqRef> {
    static constexpr IdDirectives directives = {"DHLBCV", "DHLBC"};
    static constexpr const char* rowFormat = "(%D:%H-%L#%B, %C)";
    static constexpr const char* exchangeFormat = "(%D:%H-%L#%B,%Cv%V)";

    template <class Visit>
    static void EachStored(VqRef& ref, Visit visit) {
        IdTraits<VqObjId>::EachStored(ref.id, visit);
        visit(ref.database);
        visit(ref.classId.classNumber);
    }

    static IdNumbers Numbers(const VqRef& ref) {
        return {ref.database, ref.id.high, ref.id.low, ref.id.block, ref.classId.classNumber, ref.classId.version};
    }
    static void Assign(VqRef& ref, const IdNumbers& numbers) {
        IdTraits<VqObjId>::Assign(ref.id, numbers);
        IdTraits<VqClassId>::Assign(ref.classId, numbers);
        ref.database = static_cast<std::uint16_t>(numbers[Database]);
    }
};

// --- Text of one value. Where formats are null, members use that of the exchange form, which loses nothing.

template <class Id>
void PrintId(VqString& out, const Id& id, const char* format) {
    using Traits = IdTraits<Id>;
    if (id.IsNullValue()) {
        PrintNullId(out);
    } else {
        PrintIdText(out, Traits::Numbers(id), Traits::directives, format != nullptr ? format : Traits::exchangeFormat);
    }
}

// Takes what `scan` reads, or null where it reads none.
template <class Id, class Scan>
void AssignScanned(Id& id, Scan scan) {
    IdNumbers numbers;
    if (scan(numbers)) {
        IdTraits<Id>::Assign(id, numbers);
    } else {
        id.SetNullValue();
    }
}

template <class Id>
void ScanId(Id& id, const VqString& text, const char* format) {
    using Traits = IdTraits<Id>;
    if (format == nullptr) format = Traits::exchangeFormat;
    AssignScanned(id, [&](IdNumbers& numbers) { return ScanIdText(numbers, text, Traits::directives, format); });
}

template <class Id>
struct IdExchange {
    static void ToText(const Id& id, VqString& text) { PrintId(text, id, nullptr); }
    static void FromText(Id& id, const VqString& text) {
        AssignScanned(id, [&](IdNumbers& numbers) { return ScanIdExchange(numbers, text); });
    }
};

template <class Id>
struct IdSlots : ClassSlots<Id, IdExchange<Id>> {
    static void* Create(unsigned long count) { return Id::Create(count); }
    static constexpr auto Print = Id::PrintToString;
    static constexpr auto Scan = Id::ScanFromString;
};

// --- Disk form

inline std::uint16_t Reversed(std::uint16_t number) { return __builtin_bswap16(number); }
inline std::uint32_t Reversed(std::uint32_t number) { return __builtin_bswap32(number); }

template <class Id, bool Foreign>
void StoreIds(unsigned char* to, const void* src, unsigned long count) {
    for (unsigned long i = 0; i < count; ++i) {
        Id id = LoadValue<Id>(src, i);
        IdTraits<Id>::EachStored(id, [&to](auto number) {
            if (Foreign) number = Reversed(number);
            std::memcpy(to, &number, sizeof number);
            to += sizeof number;
        });
    }
}

// Every number goes where it belongs at once: a value that is gathered in pieces and then copied as a whole makes the
// processor wait. What is not stored is 0.
template <class Id, bool Foreign>
void LoadIds(void* dst, const unsigned char* from, unsigned long count) {
    auto* to = static_cast<unsigned char*>(dst);
    Id layout;
    const auto offsetOf = [&layout](const auto& number) {
        return reinterpret_cast<const unsigned char*>(&number) - reinterpret_cast<const unsigned char*>(&layout);
    };
    for (unsigned long i = 0; i < count; ++i, to += sizeof(Id)) {
        std::memset(to, 0, sizeof(Id));
        IdTraits<Id>::EachStored(layout, [&](auto& place) {
            auto number = place;
            std::memcpy(&number, from, sizeof number);
            if (Foreign) number = Reversed(number);
            std::memcpy(to + offsetOf(place), &number, sizeof number);
            from += sizeof number;
        });
    }
}

}  // namespace vq

template <class Id>
void* VqIdentifierSlots<Id>::Create(unsigned long count) {
    return vq::NewValues<Id>(std::max(count, 1ul)).release();
}

template <class Id>
void VqIdentifierSlots<Id>::Delete(void* values, unsigned long) {
    vq::DeleteValues<Id>()(values);
}

template <class Id>
unsigned long VqIdentifierSlots<Id>::Store(void* dst, const void* src, unsigned char format, unsigned long count) {
    const auto store = vq::IsForeignOrder(format) ? vq::StoreIds<Id, true> : vq::StoreIds<Id, false>;
    store(static_cast<unsigned char*>(dst), src, count);
    return count * Id::StoredSize;
}

template <class Id>
unsigned long VqIdentifierSlots<Id>::Load(void* dst, const void* src, unsigned char format, unsigned long count) {
    const auto load = vq::IsForeignOrder(format) ? vq::LoadIds<Id, true> : vq::LoadIds<Id, false>;
    load(dst, static_cast<const unsigned char*>(src), count);
    return count * Id::StoredSize;
}

template <class Id>
unsigned long VqIdentifierSlots<Id>::NullSizeGet(unsigned long count) {
    return count * Id::StoredSize;
}
template <class Id>
unsigned long VqIdentifierSlots<Id>::SizeGet(const void*, unsigned char, unsigned char, unsigned long count) {
    return NullSizeGet(count);
}
template <class Id>
unsigned long VqIdentifierSlots<Id>::SizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) {
    return NullSizeGet(count);
}

template <class Id>
unsigned long VqIdentifierSlots<Id>::Translate(void* dst, unsigned char dstFormat, unsigned long dstLength,
                                               const void* src, unsigned char srcFormat, unsigned long srcLength,
                                               unsigned long count) {
    return vq::Translate<Id, Store, Load>(dst, dstFormat, dstLength, src, srcFormat, srcLength, count);
}

// --- Text

template <class Id>
VqString& VqIdentifierSlots<Id>::PrintToString(VqString& text, void* values, const char* format, unsigned long count) {
    using Slots = vq::ClassSlots<Id, vq::IdExchange<Id>>;
    return Slots::Print(text, values, format != nullptr ? format : vq::IdTraits<Id>::rowFormat, count);
}

template <class Id>
void* VqIdentifierSlots<Id>::ScanFromString(void* values, VqString& text, const char* format, unsigned long count) {
    using Slots = vq::ClassSlots<Id, vq::IdExchange<Id>>;
    return Slots::Scan(values, text, format != nullptr ? format : vq::IdTraits<Id>::rowFormat, count);
}

#endif
