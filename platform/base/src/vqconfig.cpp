#include "vqconfig.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "memoryhandler.h"

namespace {

constexpr unsigned long LargestText = 1 << 20;  // bytes
constexpr char NoMemory[] = "not enough memory to load the configuration; free some and load it again";

constexpr char FoldCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

struct CaseBlindLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) { return FoldCase(x) < FoldCase(y); });
    }
};
template <class Value>
using ByName = std::map<std::string, Value, CaseBlindLess>;
using Sections = ByName<ByName<std::string>>;

std::string_view Text(const char* text) { return text ? text : ""; }

template <class Value>
Value& At(ByName<Value>& map, std::string_view name) {
    const auto found = map.find(name);
    return found != map.end() ? found->second : map.emplace(name, Value()).first->second;
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsComment(char c) { return c == ';' || c == '#'; }

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

// Whether nothing but blanks and a comment is left of a line.
bool IsIdle(std::string_view text) {
    text = Trim(text);
    return text.empty() || IsComment(text.front());
}

// A comment after a value starts after a blank, so that a value may hold ; and # itself.
std::string_view WithoutComment(std::string_view value) {
    for (std::size_t i = 1; i < value.size(); ++i) {
        if (IsComment(value[i]) && IsBlank(value[i - 1])) return Trim(value.substr(0, i));
    }
    return value;
}

std::optional<int> WholeNumber(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) text.remove_prefix(2);
    std::uint64_t magnitude = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, magnitude, hexadecimal ? 16 : 10);
    if (stop != end || error != std::errc()) return std::nullopt;
    if (magnitude > std::uint64_t{INT_MAX} + (negative ? 1 : 0)) return std::nullopt;
    const auto value = static_cast<std::int64_t>(magnitude);
    return static_cast<int>(negative ? -value : value);
}

class Reader {
  public:
    Reader(std::string_view text, std::string_view name, Sections* sections)
        : rest_(text), name_(name), sections_(sections) {
        if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
    }

    // Nothing when all lines were read, else the message about the first bad one.
    std::optional<std::string> Read() {
        while (!rest_.empty()) {
            ++line_;
            if (const char* fault = ReadLine(NextLine()))
                return std::string(name_) + ':' + std::to_string(line_) + ": " + fault;
        }
        return std::nullopt;
    }

  private:
    std::string_view NextLine() {
        const std::size_t end = rest_.find('\n');
        std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(end == rest_.npos ? rest_.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        return line;
    }

    const char* ReadLine(std::string_view line) {
        const auto isControl = [](char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F'; };
        if (std::any_of(line.begin(), line.end(), isControl)) return "control character; only text can be loaded";
        line = Trim(line);
        if (IsIdle(line)) return nullptr;
        return line.front() == '[' ? ReadSection(line.substr(1)) : ReadValue(line);
    }

    const char* ReadSection(std::string_view line) {
        const std::size_t end = line.find(']');
        if (end == line.npos) return "section without its end; write [section]";
        if (!IsIdle(line.substr(end + 1))) return "text after a section; only a comment may follow [section]";
        const std::string_view section = Trim(line.substr(0, end));
        if (section.empty()) return "section without a name; write [section]";
        values_ = &At(*sections_, section);
        return nullptr;
    }

    const char* ReadValue(std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals == line.npos) return "neither a section nor a value; write [section] or key = value";
        const std::string_view key = Trim(line.substr(0, equals));
        if (key.empty()) return "value without a key; write key = value";
        if (!values_) return "value outside a section; write a line [section] before it";
        std::string_view value = Trim(line.substr(equals + 1));
        if (value.starts_with('"')) {
            const std::size_t end = value.find('"', 1);
            if (end == value.npos) return "quote without its end; write key = \"value\"";
            if (!IsIdle(value.substr(end + 1))) return "text after a quote; only a comment may follow key = \"value\"";
            value = value.substr(1, end - 1);
        } else {
            value = WithoutComment(value);
        }
        At(*values_, key) = value;
        return nullptr;
    }

    std::string_view rest_;
    std::string_view name_;
    Sections* sections_;
    ByName<std::string>* values_ = nullptr;  // of the current section
    unsigned long line_ = 0;
};

// The bytes of a file, one more than the largest text when there are more; nothing when it cannot be read.
std::optional<std::string> Bytes(const char* name) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name, "rb"), std::fclose);
    if (!file) return std::nullopt;
    std::string bytes(LargestText + 1, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get())) return std::nullopt;
    return bytes;
}

}  // namespace

namespace vq {

struct ConfigState {
    Sections sections;
    std::string error;
};

}  // namespace vq

VqConfig::~VqConfig() { delete state_; }

int VqConfig::GetInt(const char* section, const char* key, int defaultValue) const {
    if (!state_) return defaultValue;
    const auto values = state_->sections.find(Text(section));
    if (values == state_->sections.end()) return defaultValue;
    const auto value = values->second.find(Text(key));
    return value == values->second.end() ? defaultValue : WholeNumber(value->second).value_or(defaultValue);
}

void VqConfig::SetInt(const char* section, const char* key, int value) {
    try {
        if (!state_) state_ = new vq::ConfigState;
        At(At(state_->sections, Text(section)), Text(key)) = std::to_string(value);
    } catch (const std::bad_alloc&) {
        VqCallMemoryHandler(sizeof(vq::ConfigState));
    }
}

bool VqConfig::LoadText(const char* text, unsigned long length, const char* name) {
    try {
        if (!state_) state_ = new vq::ConfigState;
        Sections sections;
        std::optional<std::string> error;
        if (length > LargestText) {
            error = std::string(Text(name)) + ": larger than 1 MiB; that is no configuration";
        } else {
            error = Reader({text ? text : "", text ? length : 0}, Text(name), &sections).Read();
        }
        state_->error = error.value_or("");
        errorText_ = state_->error.c_str();
        if (error) return false;
        state_->sections.swap(sections);
        return true;
    } catch (const std::bad_alloc&) {
        VqCallMemoryHandler(length);
        errorText_ = NoMemory;
        return false;
    }
}

bool VqConfig::Load(const char* iniFile) {
    try {
        const std::optional<std::string> bytes = Bytes(iniFile ? iniFile : "");
        if (bytes) return LoadText(bytes->data(), static_cast<unsigned long>(bytes->size()), iniFile);
        if (!state_) state_ = new vq::ConfigState;
        state_->error = std::string(Text(iniFile)) + ": cannot be read; name an INI file that exists";
        errorText_ = state_->error.c_str();
    } catch (const std::bad_alloc&) {
        VqCallMemoryHandler(LargestText);
        errorText_ = NoMemory;
    }
    return false;
}

const char* VqConfig::ErrorText() const { return errorText_; }

namespace {

constinit std::atomic<VqConfig*> chosenConfig{nullptr};

// Lives until the process ends, so that its last moments may still ask.
VqConfig* LoadFromEnvironment() {
    const char* const name = std::getenv("VQ_CONFIG");
    if (!name || !*name) return nullptr;
    auto config = std::unique_ptr<VqConfig>(new (std::nothrow) VqConfig);
    if (config && config->Load(name)) return config.release();
    std::fprintf(stderr, "VQ_CONFIG: %s\n", config ? config->ErrorText() : NoMemory);
    return nullptr;
}

}  // namespace

VqConfig* DefaultConfig(int) {
    if (VqConfig* chosen = chosenConfig.load()) return chosen;
    static VqConfig* const environment = LoadFromEnvironment();
    return environment;
}

VqConfig* VqSetDefaultConfig(VqConfig* config) { return chosenConfig.exchange(config); }
