#include "ownletters.h"

#include <algorithm>
#include <map>

#include "text.h"
#include "utf8.h"
#include "vqcollation.h"

namespace {

constexpr std::int32_t PrimaryMask = ~0x7F;

// How one language sorts letters in Unicode.
class Alphabet {
  public:
    explicit Alphabet(unsigned char language)
        : set_(RequireCodeSet(253)), language_(language), class_(set_.GetCollationClass(language)) {
        for (char16_t letter = 'a'; letter <= 'z'; ++letter) basic_.push_back(PrimaryOf(KeyOf(letter)));
    }

    bool IsIdeographic() const { return class_ == VqIdeographicClass; }

    /// The key of a letter; 0 for what is none, or sorts as two.
    std::int32_t KeyOf(char16_t letter) const {
        unsigned short orders[2];
        const int count = set_.GetOrders(letter, language_, orders);
        return (set_.GetProperties(letter) & VqCharProperty_Lower) && count == 1 ? KeyOfOrder(orders[0]) : 0;
    }
    /// The key of the letters that the text is, if they sort as one; else 0.
    std::int32_t KeyOf(const std::u16string& letters) const {
        unsigned short codes[VqMaxContraction] = {}, orders[2];
        std::copy(letters.begin(), letters.end(), codes);
        const int count = set_.GetContraction(codes, language_, orders);
        return count == static_cast<int>(letters.size()) && orders[1] == 0 ? KeyOfOrder(orders[0]) : 0;
    }

    /// True for the key of a letter that is none of a to z with an accent.
    bool IsOwn(std::int32_t key) const {
        return key != 0 && std::find(basic_.begin(), basic_.end(), PrimaryOf(key)) == basic_.end();
    }
    static std::int32_t PrimaryOf(std::int32_t key) { return key & PrimaryMask; }

  private:
    std::int32_t KeyOfOrder(unsigned short order) const {
        return order >= 0x4000 && order < 0x8000 ? VqCollationKey(order, class_) : 0;
    }

    const VqCodeSet& set_;
    unsigned char language_;
    unsigned char class_;
    std::vector<std::int32_t> basic_;
};

// Letters by key; of those in one place of the alphabet the first.
using Letters = std::map<std::int32_t, std::u16string>;

struct Range {
    char16_t first, last;
};

// Latin letters beyond ASCII, and the modern letters of the two other alphabets.
constexpr Range Candidates[] = {{0x00DF, 0x024F}, {0x03AC, 0x03CE}, {0x0430, 0x045F}};

void AddSingleLetters(Letters& letters, const Alphabet& alphabet) {
    const Alphabet neutral(0);
    for (const Range range : Candidates) {
        for (char16_t letter = range.first; letter <= range.last; ++letter) {
            const std::int32_t key = alphabet.KeyOf(letter);
            const bool isOwn = alphabet.IsOwn(key) && !neutral.IsOwn(neutral.KeyOf(letter));
            if (isOwn) letters.emplace(key, std::u16string(1, letter));
        }
    }
}

void AddGroups(Letters& letters, const Alphabet& alphabet, const std::u16string& start) {
    for (char16_t letter = 'a'; letter <= 'z'; ++letter) {
        const std::u16string group = start + letter;
        const std::int32_t key = group.size() > 1 ? alphabet.KeyOf(group) : 0;
        if (alphabet.IsOwn(key)) letters.emplace(key, group);
        if (group.size() < VqMaxContraction) AddGroups(letters, alphabet, group);
    }
}

}  // namespace

std::vector<std::string> OwnLetters(unsigned char language) {
    const Alphabet alphabet(language);
    Letters letters;
    if (!alphabet.IsIdeographic()) {
        AddSingleLetters(letters, alphabet);
        AddGroups(letters, alphabet, u"");
    }
    std::vector<std::string> texts;
    std::int32_t primary = 0;
    for (const auto& [key, letter] : letters) {
        if (Alphabet::PrimaryOf(key) != primary) texts.push_back(Utf16ToUtf8(letter));
        primary = Alphabet::PrimaryOf(key);
    }
    return texts;
}
