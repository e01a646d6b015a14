#include "pages.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "../error.h"
#include "../text.h"
#include "descriptor.h"

namespace store {

namespace {

constexpr std::uint64_t MetaPages = 2;
constexpr std::size_t HeaderSize = 16;     // of a page
constexpr std::size_t NodeHeaderSize = 8;  // in front of a node's key
constexpr std::size_t TreeSize = 48;       // of what is recorded of a tree
constexpr std::size_t MostKeyBytes = 511;
constexpr unsigned MostLevels = 32;  // that a cursor of LMDB can go down

enum PageFlags : std::uint16_t { Branch = 0x01, Leaf = 0x02, Overflow = 0x04, Meta = 0x08 };
enum NodeFlags : std::uint16_t { BigData = 0x01, SubData = 0x02 };
enum TreeFlags : std::uint16_t { IntegerKey = 0x08, NoSubdirectory = 0x4000 };

// The number at an offset, low byte first; `bytes` reach that far.
template <class Number>
Number Read(ByteView bytes, std::size_t offset) {
    Number number;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

std::size_t Even(std::size_t size) { return size + size % 2; }

PageTree ReadTree(ByteView bytes, std::string name) {
    PageTree tree;
    tree.name = std::move(name);
    tree.flags = Read<std::uint16_t>(bytes, 4);
    tree.depth = Read<std::uint16_t>(bytes, 6);
    tree.branchPages = Read<std::uint64_t>(bytes, 8);
    tree.leafPages = Read<std::uint64_t>(bytes, 16);
    tree.overflowPages = Read<std::uint64_t>(bytes, 24);
    tree.entries = Read<std::uint64_t>(bytes, 32);
    tree.root = Read<std::uint64_t>(bytes, 40);
    return tree;
}

// A page within the file.
struct Page {
    std::uint64_t number;
    ByteView bytes;

    std::uint16_t Flags() const { return Read<std::uint16_t>(bytes, 10); }
    std::size_t Lower() const { return Read<std::uint16_t>(bytes, 12); }
    std::size_t Upper() const { return Read<std::uint16_t>(bytes, 14); }
    std::uint32_t OverflowCount() const { return Read<std::uint32_t>(bytes, 12); }
    std::size_t NodeOffset(std::size_t index) const { return Read<std::uint16_t>(bytes, HeaderSize + 2 * index); }
    std::size_t NodeCount() const { return (Lower() - HeaderSize) / 2; }
};

// A key and what stands with it, within a page.
struct Node {
    ByteView bytes;  // all of it
    ByteView key;

    std::uint16_t Flags() const { return Read<std::uint16_t>(bytes, 4); }
    std::size_t DataSize() const { return Read<std::uint32_t>(bytes, 0); }
    ByteView Data() const { return bytes.subspan(NodeHeaderSize + key.size()); }
    std::uint64_t Child() const { return Read<std::uint32_t>(bytes, 0) | std::uint64_t{Flags()} << 32; }
};

// --- One tree from its root

class TreeWalk {
  public:
    TreeWalk(ByteView file, std::size_t pageSize, std::uint16_t nodeFlags, const PageTree& tree, TreeVisitor& visitor,
             PageUse& use, const PageReport& report)
        : file_(file),
          pageSize_(pageSize),
          nodeFlags_(nodeFlags),
          tree_(tree),
          visitor_(visitor),
          use_(use),
          report_(report) {}

    bool Run() {
        if (tree_.root != PageTree::NoPage) Visit(tree_.root, 1);
        if (reports_ == 0) CompareCounts();
        return reports_ == 0;
    }

  private:
    template <class... Args>
    void Report(std::uint64_t page, fmt::format_string<Args...> format, Args&&... args) {
        ++reports_;
        report_(fmt::format("page {} ({}): {}", page, Printable(tree_.name),
                            fmt::format(format, std::forward<Args>(args)...)));
    }

    // The page, where it is within the file, not visited before, and says that it is this one.
    std::optional<Page> Enter(std::uint64_t number) {
        if (number < MetaPages || number >= use_.Count()) {
            Report(number, "there is no page of this number");
        } else if (number >= file_.size() / pageSize_) {
            Report(number, "the file ends in front of it");
        } else if (!use_.Claim(number)) {
            Report(number, "it is in use elsewhere, too");
        } else {
            const Page page{number, file_.subspan(number * pageSize_, pageSize_)};
            const auto told = Read<std::uint64_t>(page.bytes, 0);
            if (told == number) return page;
            Report(number, "it says that it is page {}", told);
        }
        return std::nullopt;
    }

    void Visit(std::uint64_t number, unsigned depth) {
        if (depth > MostLevels) return Report(number, "it is deeper than a tree can be");
        const std::optional<Page> page = Enter(number);
        if (!page) return;
        const unsigned flags = page->Flags();
        if (flags != Branch && flags != Leaf) return Report(number, "its flags {:#x} are no tree's", flags);
        if (!HasNodes(*page)) return;
        if (flags == Branch) {
            ++branches_;
            VisitBranch(*page, depth);
        } else {
            ++leaves_;
            if (leafDepth_ == 0) leafDepth_ = depth;
            if (depth != leafDepth_) Report(number, "a leaf at depth {}; others are at {}", depth, leafDepth_);
            VisitLeaf(*page);
        }
    }

    bool HasNodes(const Page& page) {
        const std::size_t lower = page.Lower(), upper = page.Upper();
        const std::size_t least = page.Flags() == Branch ? 2 : 1;
        if (lower < HeaderSize || lower > pageSize_ || lower % 2 != 0 || upper > pageSize_ || lower > upper) {
            Report(page.number, "its free space is from {} to {}", lower, upper);
            if (lower < HeaderSize || lower > pageSize_) return false;
        }
        if (page.NodeCount() < least) Report(page.number, "it has {} nodes; the least is {}", page.NodeCount(), least);
        return true;
    }

    std::optional<Node> ReadNode(const Page& page, std::size_t index) {
        const std::size_t offset = page.NodeOffset(index);
        if (offset < page.Lower() || offset + NodeHeaderSize > pageSize_) {
            Report(page.number, "node {} is at offset {}", index, offset);
            return std::nullopt;
        }
        const ByteView rest = page.bytes.subspan(offset);
        const std::size_t keySize = Read<std::uint16_t>(rest, 6);
        const std::size_t size = NodeHeaderSize + keySize + InlineSize(page, rest);
        if (size > rest.size()) {
            Report(page.number, "node {} is longer than the page", index);
            return std::nullopt;
        }
        const bool needsKey = page.Flags() == Leaf || index > 0;
        if (keySize > MostKeyBytes || (needsKey && keySize == 0)) {
            Report(page.number, "node {} has a key of {} bytes", index, keySize);
            return std::nullopt;
        }
        return Node{rest.first(size), rest.subspan(NodeHeaderSize, keySize)};
    }

    // Bytes behind a node's key, in the page.
    static std::size_t InlineSize(const Page& page, ByteView node) {
        if (page.Flags() == Branch) return 0;
        return Read<std::uint16_t>(node, 4) & BigData ? sizeof(std::uint64_t) : Read<std::uint32_t>(node, 0);
    }

    // All nodes in their order; they fill the page from its upper end, without gaps, in any order.
    template <class Take>
    void ForEachNode(const Page& page, Take take) {
        std::vector<std::pair<std::size_t, std::size_t>> runs;  // places and ends
        bool areWhole = true;
        for (std::size_t i = 0; i < page.NodeCount(); ++i) {
            const std::optional<Node> node = ReadNode(page, i);
            areWhole = areWhole && node;
            if (!node) continue;
            runs.emplace_back(page.NodeOffset(i), page.NodeOffset(i) + Even(node->bytes.size()));
            take(i, *node);
        }
        if (!areWhole) return;
        std::sort(runs.begin(), runs.end());
        std::size_t end = page.Upper();
        bool isFilled = true;
        for (const auto& [first, last] : runs) {
            isFilled = isFilled && first == end;
            end = last;
        }
        if (!isFilled || end != pageSize_) Report(page.number, "its nodes do not fill it from offset {}", page.Upper());
    }

    void VisitBranch(const Page& page, unsigned depth) {
        ForEachNode(page, [&](std::size_t index, const Node& node) {
            if (index > 0) visitor_.Separator(node.key);
            Visit(node.Child(), depth + 1);
        });
    }

    void VisitLeaf(const Page& page) {
        ForEachNode(page, [&](std::size_t index, const Node& node) {
            const unsigned flags = node.Flags();
            if ((flags & ~unsigned{BigData}) != nodeFlags_) {
                return Report(page.number, "node {} has flags {:#x}", index, flags);
            }
            const std::optional<ByteView> value = flags & BigData ? ReadOverflow(node) : node.Data();
            if (!value) return;
            ++entries_;
            visitor_.Entry(node.key, *value);
        });
    }

    // A value in pages of its own.
    std::optional<ByteView> ReadOverflow(const Node& node) {
        const auto number = Read<std::uint64_t>(node.Data(), 0);
        const std::optional<Page> page = Enter(number);
        if (!page) return std::nullopt;
        const unsigned flags = page->Flags();
        const std::uint64_t count = page->OverflowCount();
        const std::uint64_t present = std::min<std::uint64_t>(use_.Count(), file_.size() / pageSize_) - number;
        if (flags != Overflow) {
            Report(number, "its flags {:#x} are not those of a long value", flags);
        } else if (count == 0 || count > present || HeaderSize + node.DataSize() > count * pageSize_) {
            Report(number, "a value of {} bytes in {} pages", node.DataSize(), count);
        } else if (count > 1 && !use_.Claim(number + 1, count - 1)) {
            Report(number, "one of the {} pages of its value is in use elsewhere, too", count);
        } else {
            overflows_ += count;
            return file_.subspan(number * pageSize_ + HeaderSize, node.DataSize());
        }
        return std::nullopt;
    }

    // Of a tree that is damaged the counts are of no interest.
    void CompareCounts() {
        const struct {
            const char* what;
            std::uint64_t told, found;
        } counts[] = {{"branch pages", tree_.branchPages, branches_},
                      {"leaf pages", tree_.leafPages, leaves_},
                      {"pages of long values", tree_.overflowPages, overflows_},
                      {"entries", tree_.entries, entries_},
                      {"levels", tree_.depth, leafDepth_}};
        for (const auto& [what, told, found] : counts) {
            if (told != found)
                report_(fmt::format("{}: {} {} are counted, and {} found", Printable(tree_.name), told, what, found));
        }
    }

    const ByteView file_;
    const std::size_t pageSize_;
    const std::uint16_t nodeFlags_;  // of each node, BigData aside
    const PageTree& tree_;
    TreeVisitor& visitor_;
    PageUse& use_;
    const PageReport& report_;
    std::uint64_t branches_ = 0, leaves_ = 0, overflows_ = 0, entries_ = 0, reports_ = 0;
    unsigned leafDepth_ = 0;
};

// --- The trees that are LMDB's own

std::string_view AsText(ByteView bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

class DatabaseReader : public TreeVisitor {
  public:
    explicit DatabaseReader(const PageReport& report) : report_(report) {}

    void Separator(ByteView key) override {
        if (!order_.TakeSeparator(key)) ReportOrder(std::string(AsText(key)));
    }
    void Entry(ByteView key, ByteView value) override {
        const std::string name(AsText(key));
        if (!order_.TakeEntry(key)) ReportOrder(name);
        if (value.size() != TreeSize) return report_(fmt::format("database {}: its entry is damaged", Quoted(name)));
        trees_.push_back(ReadTree(value, name));
        // All trees of a store are of the plain kind.
        if (const unsigned flags = trees_.back().flags; flags != 0) {
            report_(fmt::format("database {}: its flags are {:#x}", Quoted(name), flags));
        }
    }

    std::vector<PageTree> Take() { return std::move(trees_); }

  private:
    void ReportOrder(const std::string& name) { report_(fmt::format("database {} is not in its place", Quoted(name))); }

    const PageReport& report_;
    std::vector<PageTree> trees_;
    KeyOrder order_{KeyOrder::ByBytes};
};

// Each entry of the list of free pages is of a transaction: how many, then their numbers, the highest first.
class FreeReader : public TreeVisitor {
  public:
    FreeReader(std::uint64_t transaction, std::uint64_t pages, const PageReport& report)
        : transaction_(transaction), isFree_(pages), report_(report) {}

    void Separator(ByteView key) override { CheckKey(key, order_.TakeSeparator(key)); }
    void Entry(ByteView key, ByteView value) override {
        CheckKey(key, order_.TakeEntry(key));
        const std::uint64_t present = value.size() / sizeof(std::uint64_t);
        const std::uint64_t count = present == 0 ? 0 : Read<std::uint64_t>(value, 0);
        if (present == 0 || count > present - 1) {
            return report_(fmt::format("free pages: an entry of {} bytes has {} numbers", value.size(), count));
        }
        std::uint64_t above = PageTree::NoPage;
        for (std::uint64_t i = 1; i <= count; ++i) {
            const auto page = Read<std::uint64_t>(value, i * sizeof(std::uint64_t));
            if (page >= above) report_(fmt::format("free pages: page {} is not in its place", page));
            above = page;
            Add(page);
        }
    }

    const std::vector<bool>& FreePages() const { return isFree_; }

  private:
    static std::uint64_t NumberOf(ByteView key) {
        return key.size() == sizeof(std::uint64_t) ? Read<std::uint64_t>(key, 0) : 0;
    }
    static int CompareNumbers(ByteView a, ByteView b) {
        return NumberOf(a) < NumberOf(b) ? -1 : NumberOf(a) > NumberOf(b);
    }
    void CheckKey(ByteView key, bool isInPlace) {
        const std::uint64_t number = NumberOf(key);
        if (isInPlace && number != 0 && number <= transaction_) return;
        report_(fmt::format("free pages: the entry of transaction {} is not in its place", number));
    }

    void Add(std::uint64_t page) {
        if (page < MetaPages || page >= isFree_.size()) {
            report_(fmt::format("free pages: there is no page {}", page));
        } else if (isFree_[page]) {
            report_(fmt::format("free pages: page {} is there twice", page));
        } else {
            isFree_[page] = true;
        }
    }

    const std::uint64_t transaction_;
    std::vector<bool> isFree_;
    const PageReport& report_;
    KeyOrder order_{CompareNumbers};
};

// --- The file

ByteView MapFile(const std::string& name) {
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat facts {};
    if (file < 0 || ::fstat(file, &facts) != 0) throw CommandError("{}: {}", Printable(name), std::strerror(errno));
    if (!S_ISREG(facts.st_mode)) throw CommandError("{}: it is no file", Printable(name));
    const auto size = static_cast<std::size_t>(facts.st_size);
    if (size == 0) return {};
    void* const bytes = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file, 0);
    if (bytes == MAP_FAILED) throw CommandError("{}: {}", Printable(name), std::strerror(errno));
    return {static_cast<const unsigned char*>(bytes), size};
}

bool IsPageSize(std::uint64_t size) { return std::has_single_bit(size) && size >= 512 && size <= 32768; }

}  // namespace

// --- Use

bool PageUse::Claim(std::uint64_t first, std::uint64_t count) {
    const auto begin = isUsed_.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    if (std::find(begin, end, true) != end) return false;
    std::fill(begin, end, true);
    return true;
}

int KeyOrder::ByBytes(ByteView a, ByteView b) { return AsText(a).compare(AsText(b)); }

bool KeyOrder::Take(ByteView key, bool isSeparator) {
    const int order = last_.empty() ? -1 : compare_(last_, key);
    const bool mayBeEqual = isSeparator_ && !isSeparator;
    last_ = key;
    isSeparator_ = isSeparator;
    return order < 0 || (order == 0 && mayBeEqual);
}

// --- Meta pages

struct PageFile::Meta {
    bool isSound = false;
    std::uint64_t pageSize = 0, lastPage = 0, transaction = 0;
    PageTree free, main;
};

PageFile::PageFile(const std::string& name) : bytes_(MapFile(name)) {}

PageFile::~PageFile() {
    if (!bytes_.empty()) ::munmap(const_cast<unsigned char*>(bytes_.data()), bytes_.size());
}

PageFile::Meta PageFile::ReadMetaPage(std::uint64_t number, std::uint64_t pageSize, const PageReport& report) const {
    constexpr std::uint32_t Magic = 0xBEEFC0DE, DataVersion = 1;
    constexpr std::size_t MetaSize = 136;
    Meta meta;
    const std::uint64_t place = number * pageSize;
    const auto refuse = [&](const std::string& what) {
        report(fmt::format("page {} (meta): {}", number, what));
        return meta;
    };
    if (bytes_.size() < place + HeaderSize + MetaSize) return refuse("the file ends in front of its end");
    const Page page{number, bytes_.subspan(place)};
    const ByteView bytes = page.bytes.subspan(HeaderSize);
    meta.free = ReadTree(bytes.subspan(24), "free pages");
    meta.main = ReadTree(bytes.subspan(24 + TreeSize), "databases");
    meta.pageSize = Read<std::uint32_t>(bytes, 24);
    meta.lastPage = Read<std::uint64_t>(bytes, 120);
    meta.transaction = Read<std::uint64_t>(bytes, 128);
    const auto mapSize = Read<std::uint64_t>(bytes, 16);

    if (Read<std::uint64_t>(page.bytes, 0) != number) return refuse("it says that it is another page");
    if (page.Flags() != PageFlags::Meta)
        return refuse(fmt::format("its flags {:#x} are no meta page's", unsigned{page.Flags()}));
    if (Read<std::uint32_t>(bytes, 0) != Magic) return refuse("it does not begin as one of LMDB's");
    if (Read<std::uint32_t>(bytes, 4) != DataVersion) return refuse("it is of another version of LMDB's format");
    if (!IsPageSize(meta.pageSize)) return refuse(fmt::format("pages of {} bytes", meta.pageSize));
    if (meta.lastPage == 0 || meta.lastPage >= mapSize / meta.pageSize || mapSize % meta.pageSize != 0 ||
        mapSize >> 47 != 0) {
        return refuse(fmt::format("a last page {} in a map of {} bytes", meta.lastPage, mapSize));
    }
    if ((meta.free.flags & ~unsigned{NoSubdirectory}) != IntegerKey) {
        return refuse(fmt::format("flags {:#x} of the free pages", unsigned{meta.free.flags}));
    }
    if (meta.main.flags != 0) return refuse(fmt::format("flags {:#x} of the databases", unsigned{meta.main.flags}));
    meta.isSound = true;
    return meta;
}

// The transactions write them in turns: the even ones page 0, the odd ones page 1.
void PageFile::CompareMetas(const Meta& first, const Meta& second, const PageReport& report) const {
    if (first.pageSize != second.pageSize) {
        report(fmt::format("the meta pages: pages of {} and of {} bytes", first.pageSize, second.pageSize));
    }
    const std::uint64_t low = std::min(first.transaction, second.transaction);
    const std::uint64_t high = std::max(first.transaction, second.transaction);
    const Meta& older = first.transaction < second.transaction ? first : second;
    const Meta& newer = &older == &first ? second : first;
    if (older.lastPage > newer.lastPage) {
        report(fmt::format("the meta pages: transaction {} has page {}, and the one behind it only {}",
                           older.transaction, older.lastPage, newer.lastPage));
    }
    const bool isNew = high == 0;
    if (!isNew && (high - low != 1 || first.transaction % 2 != 0)) {
        report(fmt::format("the meta pages: transactions {} and {}", first.transaction, second.transaction));
    }
}

namespace {

// Pages at the file's end that were handed out and given back at once have never been written: some, not millions.
std::uint64_t BoundLastPage(std::uint64_t lastPage, std::uint64_t present, const PageReport& report) {
    constexpr std::uint64_t MostUnwritten = std::uint64_t{1} << 20;
    if (lastPage < present + MostUnwritten) return lastPage;
    report(fmt::format("the meta pages: {} is the last page, and the file has {}", lastPage, present));
    return std::max(present, MetaPages) - 1;
}

}  // namespace

bool PageFile::ReadMeta(std::optional<std::uint64_t> transaction, const PageReport& report) {
    const Meta first = ReadMetaPage(0, 0, report);
    const auto systemPage = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
    const Meta second = ReadMetaPage(1, first.isSound ? first.pageSize : systemPage, report);
    if (first.isSound && second.isSound) CompareMetas(first, second, report);
    const bool isFirst = first.isSound && (!second.isSound || first.transaction >= second.transaction);
    const Meta* meta = isFirst ? &first : &second;
    if (transaction) meta = first.transaction == *transaction ? &first : &second;
    if (!meta->isSound || (transaction && meta->transaction != *transaction)) return false;
    pageSize_ = meta->pageSize;
    lastPage_ = BoundLastPage(meta->lastPage, bytes_.size() / pageSize_, report);
    transaction_ = meta->transaction;
    free_ = meta->free;
    main_ = meta->main;
    return true;
}

PageUse PageFile::MakeUse() const {
    PageUse use(PageCount());
    use.Claim(0, MetaPages);
    return use;
}

// --- Trees

bool PageFile::Walk(const PageTree& tree, TreeVisitor& visitor, PageUse& use, const PageReport& report) const {
    const std::uint16_t nodeFlags = &tree == &main_ ? SubData : 0;
    return TreeWalk(bytes_, static_cast<std::size_t>(pageSize_), nodeFlags, tree, visitor, use, report).Run();
}

bool PageFile::WalkPages(const PageTree& tree, PageUse& use, const PageReport& report) const {
    class : public TreeVisitor {
        void Separator(ByteView) override {}
        void Entry(ByteView, ByteView) override {}
    } nothing;
    return Walk(tree, nothing, use, report);
}

std::vector<PageTree> PageFile::ReadDatabases(PageUse& use, const PageReport& report) const {
    DatabaseReader reader(report);
    Walk(main_, reader, use, report);
    return reader.Take();
}

void PageFile::CheckFreeList(PageUse& use, const PageReport& report) const {
    FreeReader reader(transaction_, PageCount(), report);
    Walk(free_, reader, use, report);
    std::uint64_t lost = 0, lastLost = 0;
    for (std::uint64_t page = MetaPages; page < PageCount(); ++page) {
        const bool isUsed = page < use.Count() && use.IsUsed(page), isFree = reader.FreePages()[page];
        if (isUsed && isFree) report(fmt::format("page {}: it is in use, and among the free pages", page));
        if (isUsed || isFree) continue;
        ++lost;
        lastLost = page;
    }
    if (lost > 0) report(fmt::format("{} pages, {} the last of them, are neither in use nor free", lost, lastLost));
}

}  // namespace store
