/// \file
/// What a store says of itself: the schema, and all on which the order of its trees and the answers of its queries
/// depend. LMDB records nothing of that.
#ifndef VQTYPE_STORE_HEADER_H
#define VQTYPE_STORE_HEADER_H

#include <string>
#include <string_view>
#include <vector>

#include "bytes.h"
#include "schema.h"

namespace store {

/// A language of the schema and the class by which the library sorts it.
struct CollationLanguage {
    unsigned char language;
    unsigned char codeSet;
    unsigned char collationClass;
    bool operator==(const CollationLanguage&) const = default;
};

struct Header {
    Schema schema;
    unsigned char format = 0;         ///< VqFormat_LittleEndian or VqFormat_BigEndian, of all disk forms
    unsigned long formatVersion = 0;  ///< of the layout of the file's databases, keys and records
    std::string libraryVersion;       ///< "9.5.23", of the library that wrote the header
    unsigned long orderVersion = 0;   ///< VqLanguageContext::GetOrderVersion()
    unsigned char nativeCodeSet = 0;  ///< what code set 0 stands for
    unsigned short defaultCmpOp = 0;  ///< VqCmp bits by which predicates compare
    std::string wildcards;            ///< the wildcard and escape characters, as code points ("U+002A U+003F -")
    std::vector<CollationLanguage> languages;  ///< of the schema's strings

    /// The header of a new store under the library as it is now.
    static Header Make(Schema schema, unsigned char format, unsigned short defaultCmpOp);
    /// Reads the text of a header: lines of a name, '=' and a value, the format version first. Where that is another
    /// one nothing else is read. Throws CommandError, its text starting with `place`, at the first line that cannot be
    /// understood.
    static Header Parse(std::string_view text, const std::string& place);
    std::string Format() const;
};

/// What stands between a store and this library.
struct Obstacle {
    std::string reason;  ///< a sentence: what the store has, what the library has
    bool isMended;       ///< `vqtype store index --rebuild` mends it
    bool hidesRecords;   ///< nor can the records themselves be understood
};

/// The bits of a comparison operation that a store can have for its predicates; VqCmp_Exact is always one of them.
constexpr unsigned short StoreCmpOps = VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents;
/// The layout of files that this program reads and writes.
constexpr unsigned long FormatVersion = 1;

/// Compares the header with the library; sets what can be set: the native code set, the default comparison operation,
/// the wildcard characters. The rest is returned.
std::vector<Obstacle> Adopt(const Header& header);

}  // namespace store

#endif
