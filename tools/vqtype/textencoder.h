/// \file
/// From UTF-8 to the codes of a code set, text by text in the same buffers.
#ifndef VQTYPE_TEXTENCODER_H
#define VQTYPE_TEXTENCODER_H

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "text.h"
#include "utf8.h"

/// What a text has that a string of the code set cannot hold; `text` does not say where the text stands.
struct TextFault {
    std::string text;
};

/// What is wrong with the UTF-8 of `text`.
std::string DescribeFault(std::string_view text, const Utf8Fault& fault);

/// Encodes one text after the other.
class TextEncoder {
  public:
    /// Throws CommandError when there is no code set of that number.
    explicit TextEncoder(const TextOptions& options);

    /// The text's characters in the code set (1 or 2 bytes each), then a zero character; valid until the next call.
    /// Throws TextFault where MakeString throws CommandError.
    const void* Encode(std::string_view text);
    /// Characters of the last text.
    std::size_t GetLength() const { return length_; }

  private:
    void Decode(std::string_view text);
    void DecodeStrictly(std::string_view text);
    template <class Code>
    const void* Map(std::vector<Code>& codes);
    unsigned short CodeAt(std::size_t i);
    std::string CharacterAt(std::size_t i) const;
    void CheckLength() const;

    const VqCodeSet& set_;
    bool isChosen_;
    // Buffers, never made smaller. Each text ends in a zero.
    std::vector<unsigned short> units_;
    std::vector<unsigned char> bytes_;
    std::vector<unsigned short> words_;
    std::size_t length_ = 0;
    std::array<unsigned short, 256> known_{};  // codes of the first units, as they were met; 0: not yet
};

#endif
