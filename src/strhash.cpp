#include "strhash.h"

#include <atomic>
#include <cstring>

#include "hash9.h"
#include "stringiterator.h"
#include "textunit.h"
#include "vqcollation.h"
#include "vqstring.h"

namespace {

constexpr unsigned char Unicode = 253;
constexpr std::uint32_t NullHash = 0xFEFE7575;
constexpr std::size_t All = ~std::size_t{0};

template <vq::HashUnit unit>
std::uint32_t ChooseHash(const unsigned char* text, std::size_t size);

// Constant-initialised, so that other libraries' start-up code may hash already.
template <vq::HashUnit unit>
constinit std::atomic<vq::HashFunction> hashFunction{ChooseHash<unit>};

template <vq::HashUnit unit>
std::uint32_t ChooseHash(const unsigned char* text, std::size_t size) {
#ifdef VQ_X86_HASH
    __builtin_cpu_init();
#endif
    const vq::HashKernel* kernel = vq::hashKernels<unit>;
    while (!kernel->supported()) ++kernel;
    hashFunction<unit>.store(kernel->hash, std::memory_order_relaxed);
    return kernel->hash(text, size);
}

template <vq::HashUnit unit>
std::uint32_t HashUnits(const void* text, std::size_t size) {
    return hashFunction<unit>.load(std::memory_order_relaxed)(static_cast<const unsigned char*>(text), size);
}

// The buffer's last unit is the zero character, so that the units before it are the most there can be.
template <vq::HashUnit byte, vq::HashUnit word>
std::uint32_t HashStored(const VqString& s) {
    const std::size_t size = s.GetSize();
    if (size == 0) return 0;
    return s.GetCodeSet() == Unicode ? HashUnits<word>(s.StrGet(), size - 2) : HashUnits<byte>(s.StrGet(), size - 1);
}

std::size_t Distance(const char* from, const void* to) {
    return static_cast<std::size_t>(static_cast<const char*>(to) - from);
}

// A text of which `most` characters count, in the tables of its code set.
class OrderHash {
  public:
    OrderHash(unsigned char codeSet, unsigned char language, const char* text, std::size_t most, unsigned char order)
        : table_(vq::CodeSetOf(codeSet).GetKeyTable(language)),
          text_(text),
          most_(most),
          charSize_(vq::CharSizeOf(codeSet)),
          codeSet_(codeSet),
          language_(language),
          order_(order) {}

    std::uint32_t Get() {
        while (HashReady()) HashOthers();
        return hash_;
    }

  private:
    unsigned short Code(std::size_t i) const { return vq::LoadChar(text_ + i * charSize_, charSize_, order_); }
    bool IsReady(unsigned short code) const { return code < table_.count && table_.keys[code] >= 0; }
    void Add(std::int32_t key) { hash_ = hash_ * 9 + static_cast<std::uint32_t>(key); }

    // Characters whose keys stand ready. False at the end.
    bool HashReady() {
        for (; done_ < most_; ++done_) {
            const unsigned short code = Code(done_);
            if (code == 0) return false;
            if (!IsReady(code)) return true;
            Add(table_.keys[code]);
        }
        return false;
    }

    // At least one character, up to the next one whose key stands ready.
    void HashOthers() {
        VqStringIterator at(codeSet_, language_, text_ + done_ * charSize_, order_);
        if (most_ != All) at.SetLimit(static_cast<unsigned long>(most_ - done_));
        unsigned long last = 0;
        do {
            for (last = at.GetPosition(); at.GetPosition() == last;) {
                Add(VqCollationKey(at.GetNextOrder(1), at.GetCollationClass()));
            }
        } while (done_ + at.GetPosition() < most_ && !at.IsEnd() && !IsReady(at.GetCode()));
        done_ += at.GetPosition();
    }

    VqKeyTable table_;
    const char* text_;
    std::size_t most_;
    std::size_t done_ = 0;  // characters
    std::uint32_t hash_ = 0;
    unsigned charSize_;
    unsigned char codeSet_;
    unsigned char language_;
    unsigned char order_;
};

}  // namespace

std::uint32_t HashVqString(const VqString& s) { return HashStored<vq::HashUnit::SignedByte, vq::HashUnit::Word>(s); }

std::uint32_t HashVqString7(const VqString& s) {
    return HashStored<vq::HashUnit::LowBitsOfByte, vq::HashUnit::LowBitsOfWord>(s);
}

std::uint32_t HashString(unsigned char codeSet, unsigned char language, const char* text, short n,
                         unsigned char order) {
    if (vq::IsNullText(codeSet, language)) return NullHash;
    if (n == 0 || text == nullptr) return 0;
    const std::size_t most = n > 0 ? static_cast<std::size_t>(n) : All;
    if (codeSet != 0) return OrderHash(codeSet, language, text, most, order).Get();
    const void* const end = n > 0 ? std::memchr(text, 0, most) : text + std::strlen(text);
    return HashUnits<vq::HashUnit::Byte>(text, end != nullptr ? Distance(text, end) : most);
}
