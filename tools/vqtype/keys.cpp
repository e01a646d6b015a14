#include "keys.h"

#include <fmt/format.h>

#include "diskform.h"
#include "error.h"
#include "operations.h"

namespace {

constexpr KeyForm Forms[] = {
    {"memory", VqFormat_Memory}, {"little", VqFormat_LittleEndian}, {"big", VqFormat_BigEndian}};

constexpr std::size_t BytesShown = 16;

std::string WithWildcards(VqTypeId id, const std::string& text) {
    if (id != VqTypeId_VqDate && id != VqTypeId_VqDateTime) return text;
    const std::size_t time = text.find_first_of("Tt");
    std::string out;
    for (const char c : text.substr(0, time)) {
        if (c == '*') {
            out += out.empty() ? "-0001" : "-01";
        } else {
            out += c;
        }
    }
    return time == text.npos ? out : out + text.substr(time);
}

bool HasWildcards(const ValueArray& value, const std::string& given) {
    return WithWildcards(value.GetType(), given) != given;
}

}  // namespace

std::vector<KeyForm> KeyFormsOf(const std::string& name) {
    std::vector<KeyForm> forms;
    for (const KeyForm& form : Forms) {
        if (name.empty() || name == form.name) forms.push_back(form);
    }
    return forms;
}

Answer<long> CompareKeys(const Key& a, const Key& b, unsigned short flags, unsigned long length1,
                         unsigned long length2) {
    Answer<long> answer{0, VqStatus_Ok};
    // Only stored keys can be cut, but then their whole lengths are told, too.
    const auto lengthOf = [](const Key& key, unsigned long length) {
        return length != 0 && key.IsStored() ? length : static_cast<unsigned long>(key.Stored().size());
    };
    answer.number = Manager().Cmp(a.Values().GetType(), lengthOf(a, length1), a.Data(), lengthOf(b, length2), b.Data(),
                                  flags, a.Values().GetCount(), a.Format(), answer.status);
    return answer;
}

Answer<unsigned long> HashKey(const Key& key) {
    Answer<unsigned long> answer{0, VqStatus_Ok};
    answer.number = Manager().Hash(key.Values().GetType(), static_cast<unsigned long>(key.Stored().size()), key.Data(),
                                   key.Values().GetCount(), key.Format(), answer.status);
    return answer;
}

std::string DescribeStatus(int status) {
    if (status == VqStatus_Ok) return "ok";
    if (status == VqStatus_BufferEnd) return fmt::format("{}: a key ends before its value does", status);
    if (status == VqStatus_NotSupported) return fmt::format("{}: a text is longer than its bytes", status);
    return fmt::to_string(status);
}

std::string FormatKey(const Bytes& bytes) {
    if (bytes.size() <= BytesShown) return FormatHex(bytes);
    return fmt::format("{} \u2026 ({} bytes)", FormatHex({bytes.begin(), bytes.begin() + BytesShown}), bytes.size());
}

VqTypeId ParseKeyType(const std::string& name, const char* operation, const char* done, const char* column) {
    const VqTypeId id = ParseType(name);
    if (CanEncode(id) && Does(id, operation)) return id;
    throw CommandError("TYPE {}: cannot be {} (`vqtype types` shows which can: {})", TypeName(id), done, column);
}

void ScanKey(const ValueArray& values, unsigned long index, const std::string& text, const TextOptions& options,
             const std::string& place) {
    values.Scan(index, WithWildcards(values.GetType(), text), options, place, text);
}

std::string KeyText(const ValueArray& value, const std::string& given) {
    return HasWildcards(value, given) ? given : value.PrintExact(0);
}

std::string DescribeKey(const ValueArray& value, const std::string& given) {
    const std::string text = HasWildcards(value, given) ? given : value.Describe(0);
    return text.empty() ? Quoted(text) : text;
}

void AddFormOption(CLI::App& command, std::string& order) {
    AddText(command, "--order", Takes::Form, order, "Only this form of the keys: memory, little or big");
}
