// A script of edits on a string next to the same edits on a plain row of characters, and searches next to the slow way.

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "../tests/searchreference.h"
#include "vqtm.h"

namespace {

using Units = std::vector<unsigned short>;

// Long enough for every path of the engine, short enough for the slow way.
constexpr std::size_t Longest = 2000;

void Require(bool holds) {
    if (!holds) std::abort();
}

// Reads the script; zeros behind its end.
class Script {
  public:
    Script(const unsigned char* data, std::size_t size) : data_(data), left_(size) {}

    bool Done() const { return left_ == 0; }
    unsigned char Byte() {
        if (left_ == 0) return 0;
        --left_;
        return *data_++;
    }
    // A character that the text's code set has.
    unsigned short Unit(bool wide) {
        const unsigned char byte = Byte();
        const unsigned unit = wide && byte > 200 ? 0x100U + byte * 40U : byte;
        return static_cast<unsigned short>(unit != 0 ? unit : 'a');
    }

  private:
    const unsigned char* data_;
    std::size_t left_;
};

VqString Make(const Units& units, const VqString& like) {
    VqString s(like.GetCodeSet(), like.GetLanguage());
    if (vqtest::CharSize(like) == 2) {
        s.AssignChars(units.data(), like.GetCodeSet(), static_cast<unsigned short>(units.size()));
    } else {
        const std::vector<unsigned char> bytes(units.begin(), units.end());
        s.AssignChars(bytes.data(), like.GetCodeSet(), static_cast<unsigned short>(bytes.size()));
    }
    return s;
}

Units TextOf(const VqString& s) {
    Units units;
    for (int i = 0; i < s.Len(); ++i) units.push_back(s[i].GetCode());
    return units;
}

class Fuzzed {
  public:
    Fuzzed(unsigned char codeSet, unsigned char language) : text_(codeSet, language) {}

    void Step(Script& script) {
        const unsigned char operation = script.Byte();
        const std::size_t pos = script.Byte(), n = script.Byte();
        const VqString piece = Piece(script);
        if (operation % 8 < 5)
            Edit(operation, pos, n, piece);
        else
            Search(operation, static_cast<unsigned short>(pos), script.Byte(), piece);
        Check();
    }

  private:
    VqString Piece(Script& script) const {
        const bool wide = vqtest::CharSize(text_) == 2;
        Units units(script.Byte() % 8);
        for (unsigned short& unit : units) unit = script.Unit(wide);
        return Make(units, text_);
    }

    void Edit(unsigned operation, std::size_t pos, std::size_t n, const VqString& piece) {
        const auto place = static_cast<unsigned short>(pos), count = static_cast<unsigned short>(n);
        const Units units = TextOf(piece);
        const std::size_t rest = pos < model_.size() ? model_.size() - pos : 0;
        const auto at = model_.begin() + static_cast<std::ptrdiff_t>(std::min(pos, model_.size()));
        const bool self = operation >= 128;
        switch (operation % 8) {
            case 0:
                text_.Insert(self ? text_ : piece, place);
                if (pos <= model_.size()) InsertInModel(pos, self ? Units(model_) : units);
                break;
            case 1:
                text_.Replace(piece, place);
                std::copy_n(units.begin(), std::min(rest, units.size()), at);
                break;
            case 2:
                text_.Cut(place, self ? static_cast<short>(-1) : static_cast<short>(count));
                model_.erase(at, at + static_cast<std::ptrdiff_t>(self ? rest : std::min(rest, n)));
                break;
            case 3:
                self ? text_.Fill(count, '!') : text_.Expand(count, '.');
                if (self) model_.assign(n, '!');
                if (n > model_.size()) model_.resize(n, '.');
                break;
            default:
                Require(TextOf(text_.Copy(place, static_cast<short>(count))) ==
                        Units(at, at + static_cast<std::ptrdiff_t>(std::min(rest, n))));
                text_ = text_ + (self ? text_.Right(count) : text_.Left(count));
                const std::size_t taken = std::min(n, model_.size());
                const std::size_t from = self ? model_.size() - taken : 0;
                for (std::size_t i = 0; i < taken; ++i) model_.push_back(model_[from + i]);
        }
        if (model_.size() > Longest) {
            text_.Cut(Longest);
            model_.resize(Longest);
        }
    }

    void InsertInModel(std::size_t pos, const Units& units) {
        model_.insert(model_.begin() + static_cast<std::ptrdiff_t>(pos), units.begin(), units.end());
    }

    void Search(unsigned operation, unsigned short start, unsigned bits, const VqString& piece) {
        const auto op = static_cast<unsigned short>(bits << 4 & 0x1F0);
        const VqString pattern =
            operation >= 128 ? text_.Copy(start, static_cast<short>(bits % 64)) + piece : VqString(piece);
        Require(text_.Find(pattern, start, op) == vqtest::FindSlowly(text_, pattern, start, op));
        if (operation % 8 != 7) return;
        VqString::SetDefaultCmpOp(op);
        VqString slow(text_);
        if (piece.Len() != 0) vqtest::ReplaceSlowly(slow, piece, pattern, start);
        text_.ReplaceAll(piece, pattern, start).Cut(Longest);
        VqString::SetDefaultCmpOp(VqCmp_Exact);
        model_ = TextOf(slow.Cut(Longest));
    }

    void Check() const {
        Require(TextOf(text_) == model_);
        const auto size = static_cast<std::size_t>(vqtest::CharSize(text_)) * (model_.size() + 1);
        Require(text_.GetSize() == size || (text_.GetSize() == 0 && model_.empty()));
    }

    VqString text_;
    Units model_;
};

}  // namespace

// First byte: code set; second: language; then the edits.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    constexpr unsigned char codeSets[] = {0, 1, 6, 7, 12, 253, 225};
    if (size > 1024) return 0;
    Script script(data, size);
    const unsigned char codeSet = codeSets[script.Byte() % std::size(codeSets)];
    Fuzzed fuzzed(codeSet, script.Byte() % 24);
    while (!script.Done()) fuzzed.Step(script);
    return 0;
}
