#include "keycounts.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "treekey.h"

namespace store {

void KeyCounts::Count(ByteView key) {
    TreeKey parts;
    if (!TreeKey::Read(key, parts)) return;
    cutKeys += parts.isCut;
    nulls += parts.keyClass == KeyClass::Null;
    noNumbers += parts.keyClass == KeyClass::NoNumber;
}

KeyCounts& KeyCounts::operator+=(const KeyCounts& other) {
    for (const auto& [name, count] : KeyCountFields) this->*count += other.*count;
    return *this;
}

std::string KeyCounts::Format() const {
    std::string text;
    for (const auto& [name, count] : KeyCountFields) {
        text += fmt::format("{}{}={}", text.empty() ? "" : ", ", name, this->*count);
    }
    return text;
}

std::optional<KeyCounts> KeyCounts::Parse(std::string_view text) {
    KeyCounts counts;
    std::string_view rest = text;
    for (const auto& [name, count] : KeyCountFields) {
        rest.remove_prefix(std::min(rest.find('=') + 1, rest.size()));
        std::from_chars(rest.data(), rest.data() + rest.size(), counts.*count);
    }
    return counts.Format() == text ? std::optional(counts) : std::nullopt;
}

}  // namespace store
