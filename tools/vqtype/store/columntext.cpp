#include "columntext.h"

namespace store {

ColumnText::ColumnText(const Column& column, unsigned char format)
    : format_(format), value_(std::make_unique<ValueArray>(column.type, 1)) {}

std::optional<std::string> ColumnText::Of(ByteView form) {
    const VqTypeId type = value_->GetType();
    void* const value = value_->Data();
    Manager().Load(type, value, form.data(), format_, 1);
    if (value_->IsNull(0)) return std::nullopt;
    return type == VqTypeId_VqString ? ToUtf8(*static_cast<const VqString*>(value)) : value_->PrintExact(0);
}

}  // namespace store
