#include "byteorder.h"

#include <atomic>
#include <bit>
#include <climits>

#include "byteswap.h"

static_assert(CHAR_BIT == 8 && sizeof(short) == 2 && sizeof(int) == 4 && sizeof(float) == 4 && sizeof(double) == 8);

namespace {

constexpr unsigned char OrderMask = 0x0F;
constexpr unsigned char BigEndian = 2;
constexpr unsigned char MemoryForm = 8;

constexpr bool IsForeignOrder(unsigned char format) {
    const unsigned char order = format & OrderMask;
    return order != MemoryForm && (order == BigEndian) != (std::endian::native == std::endian::big);
}

template <class Word>
void SwapChoosing(unsigned char* dst, const unsigned char* src, std::size_t size);

// Constant-initialised, so that other libraries' start-up code may store values already.
template <class Word>
constinit std::atomic<vq::SwapFunction> swapFunction{SwapChoosing<Word>};

template <class Word>
void SwapChoosing(unsigned char* dst, const unsigned char* src, std::size_t size) {
#ifdef VQ_X86_KERNELS
    __builtin_cpu_init();
#endif
    const vq::SwapKernel* kernel = vq::SwapKernels<Word>;
    while (!kernel->supported()) ++kernel;
    swapFunction<Word>.store(kernel->swap, std::memory_order_relaxed);
    kernel->swap(dst, src, size);
}

void Copy(void* dst, const void* src, std::size_t size) {
    if (size != 0 && dst != src) std::memcpy(dst, src, size);
}

template <class Word>
[[gnu::noinline]] unsigned long ConvertArray(void* dst, const void* src, unsigned char format, unsigned long count) {
    const std::size_t size = count * sizeof(Word);
    auto* to = static_cast<unsigned char*>(dst);
    const auto* from = static_cast<const unsigned char*>(src);
    if (!IsForeignOrder(format)) {
        Copy(dst, src, size);
    } else if (size < vq::LeastKernelSize) {
        vq::SwapPortable<Word>(to, from, size);
    } else {
        swapFunction<Word>.load(std::memory_order_relaxed)(to, from, size);
    }
    return static_cast<unsigned long>(size);
}

// Most calls bring one value: no loop for them, and no branch on the order.
template <class Word>
unsigned long Convert(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count != 1) [[unlikely]]
        return ConvertArray<Word>(dst, src, format, count);
    Word word;
    std::memcpy(&word, src, sizeof word);
    word = IsForeignOrder(format) ? vq::ByteSwap(word) : word;
    std::memcpy(dst, &word, sizeof word);
    return sizeof word;
}

}  // namespace

unsigned long CharStore(void* dst, const void* src, unsigned char, unsigned long count) {
    Copy(dst, src, count);
    return count;
}

#define VQBASE_CONVERT(Name, Word)                                                              \
    unsigned long Name(void* dst, const void* src, unsigned char format, unsigned long count) { \
        return Convert<Word>(dst, src, format, count);                                          \
    }

VQBASE_CONVERT(ShortStore, std::uint16_t)
VQBASE_CONVERT(LongStore, std::uint32_t)
VQBASE_CONVERT(FloatStore, std::uint32_t)
VQBASE_CONVERT(DoubleStore, std::uint64_t)
VQBASE_CONVERT(IntStore, std::uint32_t)
VQBASE_CONVERT(IntLoad, std::uint32_t)
VQBASE_CONVERT(UnsignedStore, std::uint32_t)
VQBASE_CONVERT(UnsignedLoad, std::uint32_t)

#define VQBASE_SIZES(Type, width)                                                                 \
    unsigned long Type##SizeGet(const void*, unsigned char, unsigned char, unsigned long count) { \
        return count * width;                                                                     \
    }                                                                                             \
    unsigned long Type##NullSizeGet(unsigned long count) { return count * width; }                \
    unsigned long Type##SizeGetFromMemFile(MemFile*, unsigned char, unsigned long count) { return count * width; }

VQBASE_SIZES(Char, 1)
VQBASE_SIZES(Short, 2)
VQBASE_SIZES(Long, 4)
VQBASE_SIZES(Float, 4)
VQBASE_SIZES(Double, 8)
VQBASE_SIZES(Int, 4)
VQBASE_SIZES(Unsigned, 4)
