#include "library.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "defaultmanager.h"
#include "options.h"
#include "vqlanguagecontext.h"
#include "vqversion.h"

#define VQ_TEXT(number) #number
#define VQ_VERSION_TEXT(major, minor, patch) VQ_TEXT(major) "." VQ_TEXT(minor) "." VQ_TEXT(patch)

namespace {

// --- Identity

constexpr char product[] = "Quillbase Typemanager";
constexpr char module[] = "vq95FtmsB";
constexpr char buildDate[] = "Jun 28 2005";
constexpr char buildDateTime[] = "Jun 28 2005 01:17:27";
constexpr unsigned long buildNumber = 1361;

// The word size is the product's: what passes through the interface has the widths of a 32-bit machine everywhere.
constexpr char compiler[] =
#if defined(__clang__)
    "clang++ " VQ_VERSION_TEXT(__clang_major__, __clang_minor__, __clang_patchlevel__)
#elif defined(__GNUC__)
    "g++ " VQ_VERSION_TEXT(__GNUC__, __GNUC_MINOR__, __GNUC_PATCHLEVEL__)
#else
    "C++"
#endif
        " / 32";

struct Description {
    std::array<char, 64> text{};
    std::size_t length = 0;

    constexpr void Append(std::string_view part) {
        for (const char c : part) text[length++] = c;
    }
    constexpr void Append(unsigned long number) {
        if (number >= 10) Append(number / 10);
        text[length++] = static_cast<char>('0' + number % 10);
    }
};

// The product and the five numbers of its version, a blank behind each of the two.
consteval Description MakeDescription() {
    Description description;
    description.Append(product);
    const char* separator = " ";
    for (const unsigned long part :
         {VqVersionMajor, VqVersionMinor, VqVersionRelease, VqVersionBuild, VqVersionPatch}) {
        description.Append(std::string_view(separator));
        description.Append(part);
        separator = ".";
    }
    description.Append(std::string_view(" "));
    return description;
}

// Callers at the same time write the same bytes over the same bytes.
const char* FillDescription() {
    static constexpr Description description = MakeDescription();
    static constinit std::array<char, 64> buffer{};
    std::copy_n(description.text.begin(), description.length + 1, buffer.begin());
    return buffer.data();
}

template <class Value>
void Tell(Value* out, Value value) {
    if (out != nullptr) *out = value;
}

}  // namespace

const char* _VqDescribeDll(unsigned long* major, unsigned long* minor, unsigned long* release, unsigned long* build,
                           unsigned long* patch, const char** moduleName, const char** dateTime, const char** text2,
                           unsigned long* number, const char** compilerName, const char** extra) {
    *major = VqVersionMajor;
    *minor = VqVersionMinor;
    *release = VqVersionRelease;
    *build = VqVersionBuild;
    *patch = VqVersionPatch;
    *moduleName = module;
    *dateTime = buildDateTime;
    *text2 = "unknown";
    *number = buildNumber;
    *compilerName = compiler;
    *extra = "";
    return product;
}

int _VqCheckDll(unsigned long flags) {
    return CheckVqVersionNumber(VqVersionMajor, VqVersionMinor, VqVersionRelease, VqVersionBuild, VqVersionPatch,
                                flags | VqVersionCheck_MajorMinor | VqVersionCheck_Release);
}

void _GetVqTypeMgrInfo(const char** compilerName, unsigned long* number, const char** description, const char** date,
                       const char** moduleName) {
    Tell<const char*>(compilerName, compiler);
    Tell(number, buildNumber);
    if (description != nullptr) *description = FillDescription();
    Tell<const char*>(date, buildDate);
    Tell<const char*>(moduleName, module);
}

std::uint32_t* ___VqTypeMgrOptions() { return &vq::optionBlock; }

// --- Life

void ___VqTypemgrContext(int attach) {
    ___VqI18NContext(attach);
    if (attach != 0) {
        vq::AttachDefaultManager();
    } else {
        vq::DetachDefaultManager();
    }
}
