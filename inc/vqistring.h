/// \file
/// VqIString and VqCaseIString: 8-bit texts without code set and language.
#ifndef VQISTRING_H
#define VQISTRING_H

#include <cstdint>

/// Case decides the order of texts. A new text is empty.
class VqIString {
  public:
    VqIString() = default;
    VqIString(const VqIString&) = delete;
    VqIString& operator=(const VqIString&) = delete;

  private:
    [[maybe_unused]] char* text_ = nullptr;    // zero-terminated, owned; null for the empty text
    [[maybe_unused]] std::uint8_t flags_ = 0;  // comparison flags
};

/// Case does not decide the order of texts.
class VqCaseIString {
  public:
    VqCaseIString() = default;
    VqCaseIString(const VqCaseIString&) = delete;
    VqCaseIString& operator=(const VqCaseIString&) = delete;

  private:
    [[maybe_unused]] char* text_ = nullptr;    // zero-terminated, owned; null for the empty text
    [[maybe_unused]] std::uint8_t flags_ = 0;  // comparison flags
};

#endif
