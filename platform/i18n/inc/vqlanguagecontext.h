/// \file
/// The process-wide language context: defaults for new texts, the code sets by number, the languages by number and
/// name.
///
/// The defaults are read without a lock; whoever changes them while other threads use the library serialises that.
#ifndef VQLANGUAGECONTEXT_H
#define VQLANGUAGECONTEXT_H

#include "vqcodeset.h"

/// Attaches (`attach` non-zero) or detaches (0) the library for this process. Attaching sets every default of the
/// context to its start value; detaching does the same, so that a later attach finds nothing of the earlier use.
extern "C" VQI18N_API void ___VqI18NContext(int attach);

/// Process-wide defaults and queries. All members are static.
class VQI18N_API VqLanguageContext {
  public:
    /// The code set that code 0 stands for. At start 1 (Windows-1252). Only a set of 1-byte characters can be set; any
    /// other number changes nothing.
    /// @{
    static unsigned char GetNativeCodeSet() { return defaults_.nativeCodeSet; }
    static void SetNativeCodeSet(unsigned char codeSet);
    /// @}

    /// The code set of a default-constructed string. At start 1.
    /// @{
    static unsigned char GetDefaultCodeSet() { return defaults_.codeSet; }
    static void SetDefaultCodeSet(unsigned char codeSet) { defaults_.codeSet = codeSet; }
    /// @}

    /// The code set of strings made from 1-byte texts. At start 1. A set of 2-byte characters changes nothing: the
    /// texts would be read past their ends.
    /// @{
    static unsigned char GetDefault8CodeSet() { return defaults_.codeSet8; }
    static void SetDefault8CodeSet(unsigned char codeSet);
    /// @}

    /// The code set of strings made from 2-byte texts. At start 253 (Unicode). A set of 1-byte characters changes
    /// nothing.
    /// @{
    static unsigned char GetDefault16CodeSet() { return defaults_.codeSet16; }
    static void SetDefault16CodeSet(unsigned char codeSet);
    /// @}

    /// The language of new strings. At start 0 (neutral).
    /// @{
    static unsigned char GetDefaultLanguage() { return defaults_.language; }
    static void SetDefaultLanguage(unsigned char language) { defaults_.language = language; }
    /// @}

    /// The comparison operation that stands behind 65535. At start 0x10 (exact).
    /// @{
    static unsigned short GetDefaultCmpOp() { return defaults_.cmpOp; }
    static void SetDefaultCmpOp(unsigned short op) { defaults_.cmpOp = op; }
    /// @}

    /// Sets every default to its start value.
    static void ResetDefaults();

    /// The code set of that number; 0 gives the native one. Null for a code that stands for no set.
    static const VqCodeSet* QueryCodeSet(unsigned char codeSet);
    /// VqCodeSet::GetKeyTable(language).keys of that set of 1-byte characters, without a call. Null for any other
    /// number, and for 0.
    static const std::int32_t* QueryByteKeys(unsigned char codeSet, unsigned char language) {
        const unsigned set = codeSet - 1U;
        if (set >= byteKeys_.setCount) return nullptr;
        return byteKeys_.keys[set * byteKeys_.placeCount + byteKeys_.placeOfLanguage[language]];
    }

    /// The language's English name in lower case ("german"), or null for a code that stands for no language. Static
    /// text.
    static const char* GetLanguageName(unsigned char language);
    /// Finds a language by its English name, in any case. Returns its code, or -1 when there is none of that name.
    static int FindLanguage(const char* name);

    /// The version of all orders together: changes whenever any two texts change places in any language, so that a file
    /// sorted under another version can be told.
    static unsigned long GetOrderVersion();

  private:
    struct Defaults {
        unsigned char nativeCodeSet = 1;
        unsigned char codeSet = 1;
        unsigned char codeSet8 = 1;
        unsigned char codeSet16 = 253;
        unsigned char language = 0;
        unsigned short cmpOp = 0x10;
    };
    static Defaults defaults_;

    // The ready keys of each 1-byte set in each collation class.
    struct ByteKeys {
        const std::int32_t* const* keys;
        const std::uint8_t* placeOfLanguage;
        unsigned setCount;
        unsigned placeCount;
    };
    static const ByteKeys byteKeys_;
};

#endif
