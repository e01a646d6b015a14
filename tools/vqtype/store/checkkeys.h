/// \file
/// The keys that an index must hold, by what its records say, beside those that it holds.
#ifndef VQTYPE_STORE_CHECKKEYS_H
#define VQTYPE_STORE_CHECKKEYS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "findings.h"
#include "header.h"
#include "keycounts.h"
#include "pages.h"
#include "treekey.h"

namespace store {

/// The keys of a column's index as the records give them: 16 bytes for each, its number and a hash of the key.
class ExpectedKeys : public TreeVisitor {
  public:
    /// The header outlives it. `records` is about how many there are.
    ExpectedKeys(const Header& header, std::size_t column, std::uint64_t records);

    /// Takes the records, as their tree holds them.
    /// @{
    void Separator(ByteView) override {}
    void Entry(ByteView id, ByteView record) override;
    /// @}
    /// Ends that.
    void Finish();

    /// How a key of the index stands to the records.
    enum class Match {
        Exact,      ///< it is a record's, found for the first time
        Again,      ///< it is a record's, and has been found before
        Other,      ///< its record gives another key
        NoRecord,   ///< there is no record of that number
        Unknowable  ///< the record is damaged
    };
    /// Marks a key as found.
    Match Find(ByteView key);
    /// The same for a copy of a key: nothing is marked, and none has been found before.
    Match Look(ByteView key) const { return Compare(Search(key), key); }

    /// Calls `take(number)` for each record whose key has not been found.
    template <class Take>
    void ForEachMissing(Take take) const {
        for (std::size_t i = 0; i < keys_.size(); ++i) {
            if (keys_[i].hash != Damaged && !isFound_[i]) take(keys_[i].number);
        }
    }
    /// None where records are damaged.
    std::optional<KeyCounts> Counts() const;

  private:
    struct Key {
        std::uint64_t number, hash;
    };
    static constexpr std::uint64_t Damaged = 0;

    std::optional<std::size_t> Search(ByteView key) const;
    Match Compare(std::optional<std::size_t> place, ByteView key) const;

    const Header& header_;
    std::size_t column_;
    RecordForm form_;
    KeyMaker maker_;
    std::vector<Key> keys_;  // by number
    std::vector<bool> isFound_;
    KeyCounts counts_;
    std::uint64_t damaged_ = 0;
    std::vector<ByteView> forms_;
    Bytes key_;
};

/// Compares an index's tree with what is expected, and with the order of the library.
class IndexChecker : public TreeVisitor {
  public:
    /// `part` is the index in findings: "index name".
    IndexChecker(const Header& header, std::size_t column, ExpectedKeys& expected, const std::string& part,
                 Findings& findings);

    void Separator(ByteView key) override;
    void Entry(ByteView key, ByteView value) override;
    /// Reports what is missing, and each count of keys that is not as the header has it.
    void Finish(const std::optional<KeyCounts>& counts);

  private:
    void Report(std::string text) { findings_.Add(part_, part_ + ": " + text); }
    void CheckPlace(ByteView key);
    std::string NameOf(ByteView key) const;

    const VqTypeId type_;
    const unsigned char format_;
    ExpectedKeys& expected_;
    const std::string part_;
    Findings& findings_;
    KeyOrder order_;  // of keys that are a record's
};

}  // namespace store

#endif
