/// \file
/// LMDB's pages as bytes. LMDB itself takes its pages for sound, so that a single changed bit can lead it anywhere;
/// here every number is compared with the file and the page before it is used, and no bytes whatever are a danger.
///
/// The format is that of LMDB 0.9 (data version 1) with 64-bit numbers, low byte first.
#ifndef VQTYPE_STORE_PAGES_H
#define VQTYPE_STORE_PAGES_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "bytes.h"

namespace store {

/// Takes what is wrong, a sentence that begins with the page's number.
using PageReport = std::function<void(const std::string& what)>;

/// The pages that something has already been found to use.
class PageUse {
  public:
    explicit PageUse(std::uint64_t pages) : isUsed_(pages) {}
    /// Marks a run of pages, which are within the file. False, and nothing is marked, where one of them is already.
    bool Claim(std::uint64_t first, std::uint64_t count = 1);
    bool IsUsed(std::uint64_t page) const { return isUsed_[page]; }
    std::uint64_t Count() const { return isUsed_.size(); }

  private:
    std::vector<bool> isUsed_;
};

/// What LMDB records of a tree.
struct PageTree {
    std::string name;  ///< as reports call it
    std::uint16_t flags = 0, depth = 0;
    std::uint64_t branchPages = 0, leafPages = 0, overflowPages = 0, entries = 0;
    std::uint64_t root = 0;  ///< a page's number, or NoPage

    static constexpr std::uint64_t NoPage = ~std::uint64_t{0};
};

/// Takes what a tree holds, in its order.
class TreeVisitor {
  public:
    virtual ~TreeVisitor() = default;
    /// The key by which LMDB decides between two pages: keys before it are below it, and those behind it are not.
    virtual void Separator(ByteView key) = 0;
    /// A key of 1 to 511 bytes and its value.
    virtual void Entry(ByteView key, ByteView value) = 0;
};

/// Tells which keys of a tree are not in their place, in the sequence in which a visitor takes them.
class KeyOrder {
  public:
    /// Below 0, 0 or above 0 as the first key is below, equal to or above the second.
    using Compare = std::function<int(ByteView, ByteView)>;
    explicit KeyOrder(Compare compare) : compare_(std::move(compare)) {}

    /// LMDB's own order: by bytes.
    static int ByBytes(ByteView a, ByteView b);

    /// True where the key is above what was taken last; an entry may be equal to the separator in front of it.
    bool TakeSeparator(ByteView key) { return Take(key, true); }
    bool TakeEntry(ByteView key) { return Take(key, false); }
    /// What was taken last. The bytes stay the visitor's.
    ByteView Last() const { return last_; }

  private:
    bool Take(ByteView key, bool isSeparator);

    Compare compare_;
    ByteView last_;
    bool isSeparator_ = false;
};

/// An LMDB file, open for reading. Its pages are those of one transaction; whoever wants them to stay while others
/// write holds a transaction of LMDB that reads the same.
class PageFile {
  public:
    /// Throws CommandError where the file cannot be read.
    explicit PageFile(const std::string& name);
    PageFile(const PageFile&) = delete;
    PageFile& operator=(const PageFile&) = delete;
    ~PageFile();

    /// Reads both meta pages and takes that of the `transaction`, or of the last one. False where it is not there or
    /// cannot be used.
    bool ReadMeta(std::optional<std::uint64_t> transaction, const PageReport& report);

    /// After ReadMeta.
    /// @{
    std::uint64_t PageSize() const { return pageSize_; }
    /// Pages that were ever handed out, the two meta pages among them; the file may have fewer or more.
    std::uint64_t PageCount() const { return lastPage_ + 1; }
    std::uint64_t TransactionNumber() const { return transaction_; }
    /// A map of no used pages but the meta pages.
    PageUse MakeUse() const;

    /// The named databases, in the order of their names.
    std::vector<PageTree> ReadDatabases(PageUse& use, const PageReport& report) const;
    /// Visits all of a tree that can be reached; pages that are marked in `use` already are left out.
    /// True where nothing is wrong with its pages; what is counted of them aside.
    bool Walk(const PageTree& tree, TreeVisitor& visitor, PageUse& use, const PageReport& report) const;
    /// The same for the pages alone.
    bool WalkPages(const PageTree& tree, PageUse& use, const PageReport& report) const;
    /// Compares the list of free pages with those in use, after all trees have been walked: each page is either one.
    void CheckFreeList(PageUse& use, const PageReport& report) const;
    /// @}

  private:
    struct Meta;
    Meta ReadMetaPage(std::uint64_t number, std::uint64_t pageSize, const PageReport& report) const;
    void CompareMetas(const Meta& first, const Meta& second, const PageReport& report) const;

    ByteView bytes_;  // the whole file
    std::uint64_t pageSize_ = 0, lastPage_ = 0, transaction_ = 0;
    PageTree free_, main_;
};

}  // namespace store

#endif
