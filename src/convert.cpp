#include "convert.h"

#include <bitset>
#include <memory>
#include <new>

#include "memoryhandler.h"
#include "stringiterator.h"
#include "textunit.h"
#include "valueslots.h"
#include "vqtypes.h"

// --- The record

VqTypeConvertData* VqTypeConvertData::Make(unsigned char type, unsigned long count, void* data, VqTypeMgr* manager) {
    do {
        auto* const record = new (std::nothrow) VqTypeConvertData(type, count, data, manager);
        if (record != nullptr) return record;
    } while (VqCallMemoryHandler(sizeof(VqTypeConvertData)) != 0);
    return nullptr;
}

VqTypeConvertData::~VqTypeConvertData() {
    // Released records are looked at, so the compiler must not take these for the last writes to a dead object.
    if (manager != nullptr && data != nullptr) {
        manager->Delete(static_cast<char>(type), data, count);
        *const_cast<void* volatile*>(&data) = nullptr;
    }
    *const_cast<volatile unsigned long*>(&count) = 0;
    *const_cast<volatile unsigned char*>(&type) = Released;
}

VqString* VqTypeConvertData::GetString(int index) const {
    if (index < 0 || static_cast<unsigned long>(index) >= count || type != VqTypeId_VqString || data == nullptr) {
        return nullptr;
    }
    return static_cast<VqString*>(data) + index;
}

// --- All values in one text

namespace {

using Codes = std::bitset<65536>;

// One character in the code set of `text`.
VqString CharacterFor(const VqString& text, unsigned char code) {
    VqString character(text.GetCodeSet(), text.GetLanguage());
    return character += VqString(static_cast<char>(code));
}

// The first character from 1 up to 254 that is not in use in `text`'s code set, else a comma.
VqString ChooseSeparator(const VqString& text, const Codes& used) {
    for (unsigned char code = 1; code < 255; ++code) {
        VqString separator = CharacterFor(text, code);
        if (!used[VqStringIterator(separator).GetCode()]) return separator;
    }
    return CharacterFor(text, ',');
}

// The characters of all strings as they will stand in `text`.
Codes UsedCodes(const VqTypeConvertData& record, const VqString& text) {
    Codes used;
    for (unsigned long i = 0; i < record.count; ++i) {
        VqString mapped(text.GetCodeSet(), text.GetLanguage());
        mapped += static_cast<const VqString*>(record.data)[i];
        for (VqStringIterator at(mapped); !at.IsEnd(); ++at) used.set(at.GetCode());
    }
    return used;
}

// Appends, and tells whether there was room for all.
bool Append(VqString& text, const VqString& more) {
    const std::size_t characters = std::size_t{text.Len()} + more.Len() + 1;
    text += more;
    return characters * vq::CharSizeOf(text.GetCodeSet()) <= VqString::MaxSize;
}

// Appends every string with the separator behind it. A string is copied as a whole when it grows, so that many short
// ones are gathered in a short one first. Nothing follows what is cut: each would be reported as one more overflow.
void JoinTexts(VqString& text, const VqTypeConvertData& record, const VqString& separator) {
    constexpr unsigned short Gathered = 512;
    VqString part(text.GetCodeSet(), text.GetLanguage());
    bool fits = true;
    for (unsigned long i = 0; fits && i < record.count; ++i) {
        fits = Append(part, static_cast<const VqString*>(record.data)[i]) && Append(part, separator);
        if (fits && part.GetSize() < Gathered && i + 1 != record.count) continue;
        fits = Append(text, part) && fits;
        part = VqString(text.GetCodeSet(), text.GetLanguage());
    }
}

// The part of `text` up to the separator, behind which the walk goes on. A null text's language would make it null.
VqString TakeText(VqStringIterator& at, const VqString& text, unsigned short separator) {
    const unsigned long start = at.GetOffset(), position = at.GetPosition();
    while (!at.IsEnd() && at.GetCode() != separator) ++at;
    VqString part(text.GetCodeSet(), VqString::GetDefaultLanguage());
    part.AssignChars(text.StrGet() + start, text.GetCodeSet(),
                     static_cast<unsigned short>(at.GetPosition() - position));
    if (!at.IsEnd()) ++at;
    return part;
}

unsigned short LastCharacter(const VqString& text) {
    unsigned short last = ',';
    for (VqStringIterator at(text); !at.IsEnd(); ++at) last = at.GetCode();
    return last;
}

}  // namespace

VqString* VqTypeMgr::ConvertToVqStringOld(void* values, char id, unsigned long count) {
    const std::unique_ptr<VqTypeConvertData> record(ConvertTo(id, values, count));
    if (record == nullptr) return nullptr;
    vq::Values<VqString> text(static_cast<VqString*>(Create(VqTypeId_VqString, 1)));
    if (text != nullptr) JoinTexts(text[0], *record, ChooseSeparator(text[0], UsedCodes(*record, text[0])));
    return text.release();
}

void* VqTypeMgr::ConvertFromVqStringOld(VqString& text, char id, unsigned long count) {
    const unsigned short separator = LastCharacter(text);
    VqStringIterator at(text);
    const std::unique_ptr<VqTypeConvertData> record(
        vq::MakeTexts(count, [&](unsigned long, VqString& part) { part = TakeText(at, text, separator); }));
    return record == nullptr ? nullptr : ConvertFrom(id, record.get(), count);
}
