// Arrays of strings in each of their forms, as keys: walked and read where they stand, without loading them.
#ifndef VQ_STRINGARRAY_H
#define VQ_STRINGARRAY_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "textunit.h"
#include "vqbase.h"
#include "vqstring.h"

namespace vq {

// Index keys are clipped to less behind their length: an element of which so many bytes are there and others are not is
// no clipped key, but a damaged one.
constexpr unsigned long NoClippedLength = 254;

// One element of an array of strings.
struct StringElement {
    const char* text;
    unsigned long bytes;  // of characters; of a cut element, those that are there
    unsigned long whole;  // bytes of characters by the element's length
    unsigned char codeSet;
    unsigned char language;
    bool terminated;     // a zero character follows
    bool cut;            // the array ends within the element
    bool malformed;      // as no clipping leaves one
    unsigned long step;  // bytes to the next element

    unsigned CharSize() const { return CharSizeOf(codeSet); }
    unsigned long Characters() const { return bytes / CharSize(); }

    // A header that no string has. Its language counts without the top bit.
    bool Repair() {
        const bool damaged = codeSet == VqNullMark && language >= 128;
        if (damaged) language &= 127;
        return damaged;
    }
};

// An array of strings in one of its forms, and a place in it.
class StringArray {
  public:
    static constexpr unsigned long Unlimited = ~0UL;

    // `lacking`: bytes by which a record may be shorter than its length says.
    StringArray(unsigned char format, unsigned long length, const void* value, unsigned long lacking)
        : at_(static_cast<const unsigned char*>(value)),
          left_(length == 0 ? Unlimited : length),
          format_(format),
          lacking_(lacking) {
        if (format == VqFormat_Memory) {
            form_ = Form::Memory;
        } else if (left_ >= 2 && IsLegacyArea()) {
            form_ = Form::Legacy;
            const unsigned long area = LoadLength();
            left_ = std::min(left_ - 2, area);
            missing_ = area - left_;
            at_ += 2;
        }
    }

    bool Ended() const {
        static constexpr unsigned long leastSize[] = {sizeof(VqString), 5, 1};
        return left_ < leastSize[static_cast<int>(form_)];
    }
    StringElement Current() const {
        return form_ == Form::Memory ? InMemory() : form_ == Form::Legacy ? InLegacyArea() : InRecord();
    }
    void Advance(const StringElement& text) {
        at_ += text.step;
        if (left_ != Unlimited) left_ -= text.step;
    }

  private:
    enum class Form { Memory, Records, Legacy };

    unsigned long LoadLength() const { return LoadChar(at_, 2, format_ & VqFormat_OrderMask); }

    // The last byte of a first record is not 0. Where that is missing, the bytes behind the length tell: in a record
    // they are a code set and a language.
    bool IsLegacyArea() const {
        const unsigned long length = LoadLength();
        if (length + 2 <= left_) return at_[length + 1] == 0;
        return left_ >= 4 && !IsHeader(at_[2], at_[3]);
    }
    // True also for the header of null and for damaged ones.
    static bool IsHeader(unsigned char codeSet, unsigned char language) {
        if (codeSet == VqNullMark) return language == 0 || language >= 128;
        const bool hasLanguage = language == VqNullMark || VqLanguageContext::GetLanguageName(language) != nullptr;
        return hasLanguage && VqLanguageContext::QueryCodeSet(codeSet) != nullptr;
    }

    StringElement InMemory() const {
        const VqString& string = *reinterpret_cast<const VqString*>(at_);
        const unsigned long size = string.GetSize();
        const unsigned long bytes = size == 0 ? 0 : size - CharSizeOf(string.GetCodeSet());
        return {.text = string.StrGet(),
                .bytes = bytes,
                .whole = bytes,
                .codeSet = string.GetCodeSet(),
                .language = string.GetLanguage(),
                .terminated = true,
                .cut = false,
                .malformed = false,
                .step = sizeof(VqString)};
    }
    StringElement InLegacyArea() const {
        const char* const text = reinterpret_cast<const char*>(at_);
        const void* const zero = std::memchr(text, 0, left_);
        const unsigned long bytes = zero ? static_cast<unsigned long>(static_cast<const char*>(zero) - text) : left_;
        const bool cut = zero == nullptr && missing_ > lacking_;
        return {.text = text,
                .bytes = bytes,
                .whole = cut ? bytes + missing_ - 1 : bytes,
                .codeSet = VqString::GetDefault8CodeSet(),
                .language = VqString::GetDefaultLanguage(),
                .terminated = zero != nullptr,
                .cut = cut,
                .malformed = cut && left_ >= NoClippedLength,
                .step = bytes + (zero != nullptr)};
    }
    // 16-bit length of what follows, code set, language, characters, 0x00, 0xFF.
    StringElement InRecord() const {
        const unsigned long length = LoadLength(), room = left_ - 2;
        const bool cut = length > room && length - room > lacking_;
        const unsigned long charSize = CharSizeOf(at_[2]), declared = length < 4 ? 0 : length - 4;
        const auto characters = [charSize](unsigned long bytes) { return bytes / charSize * charSize; };
        return {.text = reinterpret_cast<const char*>(at_ + 4),
                .bytes = characters(cut ? std::min(room - 2, declared) : declared),
                .whole = characters(declared),
                .codeSet = at_[2],
                .language = at_[3],
                .terminated = length >= 4 && length - 1 <= room && charSize == 1 && at_[length] == 0,
                .cut = cut,
                .malformed = cut && room >= NoClippedLength,
                .step = std::min(length, room) + 2};
    }

    const unsigned char* at_;
    unsigned long left_;  // bytes that may be read, Unlimited when the elements alone tell
    unsigned char format_;
    unsigned long lacking_;
    unsigned long missing_ = 0;  // bytes behind the end of a legacy area that was clipped
    Form form_ = Form::Records;
};

// A text with a zero character behind it, copied only where it has none.
class TerminatedText {
  public:
    explicit TerminatedText(const StringElement& text) : text_(text.terminated ? text.text : Room(text.bytes + 2)) {
        if (text.terminated || text_ == nullptr) return;
        char* const copy = heap_ ? heap_.get() : stack_;
        std::memcpy(copy, text.text, text.bytes);
        copy[text.bytes] = copy[text.bytes + 1] = 0;
    }

    // Null when memory ran out.
    const char* Get() const { return text_; }

  private:
    const char* Room(unsigned long size) {
        if (size <= sizeof stack_) return stack_;
        do {
            heap_.reset(new (std::nothrow) char[size]);
        } while (!heap_ && VqCallMemoryHandler(size) != 0);
        return heap_.get();
    }

    char stack_[256 + 2];
    std::unique_ptr<char[]> heap_;
    const char* text_;
};

}  // namespace vq

#endif
