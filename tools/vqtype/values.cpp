#include "values.h"

#include <algorithm>
#include <memory>

#include "disktext.h"
#include "error.h"
#include "nearest.h"
#include "operations.h"
#include "textrules.h"
#include "vqbase.h"

namespace {

// --- Names

// What the type of that name may have been, also without the Vq in front.
std::string NearestType(const std::string& given) {
    NearestName nearest(given);
    for (int i = 0; i < VqTypeCount; ++i) {
        const std::string name = TypeName(static_cast<VqTypeId>(i));
        nearest.Try(name);
        if (name.rfind("Vq", 0) == 0) nearest.Try(name.substr(2), name);
    }
    return nearest.Question();
}

// --- Overflow

bool stringOverflowed = false;
VqAssertHandler otherReports = nullptr;

void TakeReport(const char* expression, const char* file, int line) {
    if (std::string_view(expression).find("String overflow") == std::string_view::npos) {
        otherReports(expression, file, line);
    } else {
        stringOverflowed = true;
    }
}

// While it lives, a text that a string cannot hold is noted and not reported.
class OverflowWatch {
  public:
    OverflowWatch() {
        stringOverflowed = false;
        otherReports = VqSetAssertHandler(TakeReport);
    }
    OverflowWatch(const OverflowWatch&) = delete;
    OverflowWatch& operator=(const OverflowWatch&) = delete;
    ~OverflowWatch() { VqSetAssertHandler(otherReports); }
    bool HasSeen() const { return stringOverflowed; }
};

bool IsFull(const VqString& text) { return text.GetSize() == VqString::MaxSize; }

}  // namespace

VqTypeMgr& Manager() { return *DefaultTypeMgr(nullptr); }

VqTypeId ParseType(const std::string& name, const char* place) {
    char id = 0;
    if (Manager().Name2VqTypeId(name.c_str(), id) == 0) return static_cast<VqTypeId>(id);
    throw CommandError("{} {}: there is no type of this name{} (`vqtype types` lists all)", place, Echo(name),
                       NearestType(name));
}

std::string TypeName(VqTypeId id) { return Manager().NameGet(id, nullptr); }

bool CanEncode(VqTypeId id) {
    return Does(id, "create") && Does(id, "store") && Does(id, "load") && Does(id, "size") && Does(id, "print") &&
           Does(id, "scan");
}

bool CanPrint(VqTypeId id) { return Does(id, "create") && Does(id, "print") && Does(id, "scan"); }

VqTypeId ParsePrintableType(const std::string& name, const char* done) {
    const VqTypeId id = ParseType(name);
    if (CanPrint(id)) return id;
    throw CommandError("TYPE {}: cannot be {} (`vqtype types` shows which can: text)", TypeName(id), done);
}

VqString ScannedText(VqTypeId id, std::string_view text, const TextOptions& options, const std::string& place) {
    // Only strings have a code set of their own.
    const TextOptions singleByte{VqString::GetDefault8CodeSet(), 0, false};
    return MakeString(text, id == VqTypeId_VqString ? options : singleByte, place);
}

bool CanConvertTo(VqTypeId id) { return CanPrint(id) && Does(id, "convertTo"); }

bool CanConvertFrom(VqTypeId id) { return CanPrint(id) && Does(id, "convertFrom"); }

bool CanSort(VqTypeId id) { return CanEncode(id) && Does(id, "compare"); }

std::optional<std::string> ExchangeTextOf(VqTypeId id, void* value) {
    const std::unique_ptr<VqTypeConvertData> record(Manager().ConvertTo(id, value, 1));
    const VqString* text = record ? record->GetString(0) : nullptr;
    if (!text || text->IsNullValue()) return std::nullopt;
    return ToUtf8(*text);
}

ValueArray::ValueArray(VqTypeId id, unsigned long count)
    : id_(id), count_(count), values_(Manager().Create(id, count)) {}

ValueArray::ValueArray(VqTypeId id, const std::vector<std::string>& texts, const TextOptions& options)
    : ValueArray(id, static_cast<unsigned long>(texts.size())) {
    for (unsigned long i = 0; i < count_; ++i) Scan(i, texts[i], options, fmt::format("VALUE {}", i + 1));
}

ValueArray::~ValueArray() { Manager().Delete(id_, values_, count_); }

unsigned long ValueArray::CountNulls() const {
    unsigned long nulls = 0;
    for (unsigned long i = 0; i < count_; ++i) nulls += IsNull(i);
    return nulls;
}

void ValueArray::Scan(unsigned long index, std::string_view text, const TextOptions& options, const std::string& place,
                      std::string_view given) const {
    if (text == ToUtf8(Manager().GetNullPrintString())) {
        if (!Manager().SupportsNullValue(id_)) throw CommandError("{}: {} has no null value", place, TypeName(id_));
        SetNull(index);
        return;
    }
    CheckUtf8(text, place);
    const TextRule rule = TextRuleOf(id_);
    const bool isRead = !rule.accepts || rule.accepts(text);
    if (isRead) Read(index, text, rule.format, options, place);
    if (isRead && (rule.accepts || EqualIgnoringCase(text, PrintExact(index)))) return;
    throw CommandError("{}: {} is no {}: expected {}{}", place, Echo(given), TypeName(id_), rule.expected,
                       isRead ? fmt::format(" (it reads as {})", Echo(PrintExact(index))) : "");
}

void ValueArray::Read(unsigned long index, std::string_view text, const char* format, const TextOptions& options,
                      const std::string& place) const {
    if (const DiskText* disk = DiskTextOf(id_)) {
        Manager().Load(id_, At(index), disk->read(text).data(), VqFormat_LittleEndian, 1);
        return;
    }
    VqString string = ScannedText(id_, text, options, place);
    if (format) {
        Manager().ScanFromVqString(id_, At(index), string, format, 1);
    } else {
        TakeExchangeText(index, string);
    }
}

void ValueArray::TakeExchangeText(unsigned long index, const VqString& text) const {
    const ValueArray texts(VqTypeId_VqString, 1);
    *static_cast<VqString*>(texts.Data()) = text;
    const std::unique_ptr<VqTypeConvertData> record(
        VqTypeConvertData::Make(VqTypeId_VqString, 1, texts.Data(), nullptr));
    const ValueArray value(id_, 1, Manager().ConvertFrom(id_, record.get(), 1));
    record->manager = nullptr;  // the strings stay the array's
    Manager().AssignmentPtrGet(id_)(At(index), value.Data(), 1, 1);
}

std::string ValueArray::Print(unsigned long index, const char* format) const {
    if (id_ == VqTypeId_VqString && !IsNull(index)) {
        // In the string's own code set, so that no character is lost on the way.
        const auto& string = *static_cast<const VqString*>(At(index));
        return Print(VqString(string.GetCodeSet(), string.GetLanguage()), At(index), format, 1);
    }
    return Print(VqString(), At(index), format, 1);
}

// The rows of strings report what does not fit, as most do; others just stop where a string is full.
std::string ValueArray::Print(VqString out, void* values, const char* format, unsigned long count) const {
    const OverflowWatch watch;
    Manager().PrintToVqString(id_, out, values, format, count);
    if (watch.HasSeen() || (RowFormat(id_) != "%s" && IsFull(out))) {
        throw CommandError("the text of {} {} of {} fills a string: it must be shorter than {} bytes", count,
                           count == 1 ? "value" : "values", TypeName(id_), VqString::MaxSize - 1);
    }
    return ToUtf8(out);
}

std::string ValueArray::PrintExact(unsigned long index) const {
    if (IsNull(index)) return Print(index);
    if (const DiskText* disk = DiskTextOf(id_)) return disk->write(Store(VqFormat_LittleEndian, index, 1));
    const TextRule rule = TextRuleOf(id_);
    if (!rule.format) return ExchangeText(index).value_or("");
    const std::string_view format = rule.format;
    if (format != "%f" && format != "%lf") return Print(index, rule.format);
    const bool isDouble = format == "%lf";
    const std::string shorter = Print(index, isDouble ? "%.15g" : "%.6g");
    const ValueArray copy(id_, 1);
    VqString text(shorter.c_str());
    Manager().ScanFromVqString(id_, copy.Data(), text, nullptr, 1);
    const bool same = copy.Store(VqFormat_LittleEndian) == Store(VqFormat_LittleEndian, index, 1);
    return same ? shorter : Print(index, isDouble ? "%.17g" : "%.9g");
}

std::string ValueArray::PrintLines() const {
    std::string lines;
    for (unsigned long i = 0; i < count_; ++i) lines += PrintExact(i) + "\n";
    return lines;
}

std::string ValueArray::Describe(unsigned long index) const {
    const std::string text = PrintExact(index), format = RowFormat(id_);
    const bool isText = format == "%s" || (format == "%c" && text.size() == 1);
    return isText && !IsNull(index) ? Quoted(text) : text;
}

std::string ValueArray::PrintAll(const char* format, const TextOptions& options) const {
    const bool hasCodeSet = id_ == VqTypeId_VqString;
    return Print(hasCodeSet ? VqString(options.codeSet, options.language) : VqString(), Data(), format, count_);
}

Bytes ValueArray::Store(unsigned char format, unsigned long first, unsigned long count) const {
    if (count == 0) return {};
    Bytes bytes(Manager().DiskLenGet(id_, At(first), format, count, VqFormat_Memory));
    bytes.resize(Manager().Store(id_, bytes.data(), At(first), format, count));
    return bytes;
}

unsigned long ValueArray::Load(const Bytes& bytes, unsigned char format) const {
    return Manager().Load(id_, values_, bytes.data(), format, count_);
}
