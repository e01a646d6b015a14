#include "treekey.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "../operations.h"
#include "blob.h"
#include "vqcodeset.h"
#include "vqistring.h"
#include "vqtypevl.h"

namespace store {

namespace {

constexpr unsigned char EndMarks = static_cast<unsigned char>(End::Below) | static_cast<unsigned char>(End::Above);
constexpr unsigned short LetterLevel = VqCmp_Exact | VqCmp_IgnoreCase | VqCmp_IgnoreAccents;

// The rows are one for all managers; this one is at hand without a call.
const VqTypeMgr manager(5);

// --- Order

int BytesOrder(ByteView a, ByteView b) {
    const int order = std::memcmp(a.data(), b.data(), std::min(a.size(), b.size()));
    return order != 0 ? order : (a.size() > b.size()) - (a.size() < b.size());
}

bool AreSame(ByteView a, ByteView b) { return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0; }

int ManagerOrder(VqTypeId type, unsigned char format, ByteView a, ByteView b, unsigned short operation) {
    int status = VqStatus_Ok;
    const long order = manager.Cmp(type, a.size(), a.data(), b.size(), b.data(), operation, 1, format, status);
    return (order > 0) - (order < 0);
}

int IdOrder(unsigned char format, ByteView a, ByteView b) {
    const int order = ManagerOrder(VqTypeId_VqObjId, format, a, b, VqCmp_Exact);
    return order != 0 ? order : BytesOrder(a, b);
}

int SideOf(End end) { return end == End::Below ? -1 : 1; }
End EndOf(ByteView key) { return static_cast<End>(key[0] & EndMarks); }
bool IsEnd(ByteView key) { return (key[0] & EndMarks) != 0; }

// What the manager can put in order: values of that class, of a type whose keys do not go by bytes. A damaged page can
// have keys without stored bytes, and a length of 0 is to the manager one that was not told.
bool HasOrder(VqTypeId type, ByteView a, ByteView b) {
    return ClassOf(a) == KeyClass::Value && !IsInByteOrder(type) && !StoredOf(a).empty() && !StoredOf(b).empty();
}

// Like their difference.
int ClassOrder(ByteView a, ByteView b) { return static_cast<int>(ClassOf(a)) - static_cast<int>(ClassOf(b)); }

// Where the end of a scan lies beside a key of its class, or beside another end.
int OrderOfEnd(VqTypeId type, unsigned char format, ByteView end, ByteView key) {
    const ByteView stored = StoredOf(end), other = StoredOf(key);
    const int side = SideOf(EndOf(end)), otherSide = IsEnd(key) ? SideOf(EndOf(key)) : 0;
    const bool isOutermost = stored.empty(), isOtherOutermost = otherSide != 0 && other.empty();
    if (isOutermost != isOtherOutermost) return isOutermost ? side : -otherSide;
    if (isOutermost) return side - otherSide;
    const int order =
        HasOrder(type, end, key) ? ManagerOrder(type, format, stored, other, LetterLevel) : BytesOrder(stored, other);
    return order != 0 ? order : side - otherSide;
}

int OrderBesideEnd(VqTypeId type, unsigned char format, ByteView a, ByteView b) {
    const int classes = ClassOrder(a, b);
    if (classes != 0) return classes;
    return IsEnd(a) ? OrderOfEnd(type, format, a, b) : -OrderOfEnd(type, format, b, a);
}

// In line, so that each type's function has the type as a constant.
[[gnu::always_inline]] inline int Order(VqTypeId type, unsigned char format, ByteView a, ByteView b) {
    if (a.size() <= IdSize || b.size() <= IdSize) return BytesOrder(a, b);  // none is a key
    if ((a[0] | b[0]) & EndMarks) return OrderBesideEnd(type, format, a, b);
    const int classes = ClassOrder(a, b);
    if (classes != 0) return classes;
    const ByteView storedA = StoredOf(a), storedB = StoredOf(b);
    if (!AreSame(storedA, storedB)) {
        const int order = HasOrder(type, a, b) ? ManagerOrder(type, format, storedA, storedB, VqCmp_Exact) : 0;
        return order != 0 ? order : BytesOrder(storedA, storedB);
    }
    return IdOrder(format, IdOfKey(a), IdOfKey(b));
}

ByteView ViewOf(const MDB_val* key) { return {static_cast<const unsigned char*>(key->mv_data), key->mv_size}; }

// --- Comparison functions, one for each type and byte order, as LMDB hands nothing on to them

template <int type, unsigned char format>
int TreeOrder(const MDB_val* a, const MDB_val* b) {
    return Order(static_cast<VqTypeId>(type), format, ViewOf(a), ViewOf(b));
}

template <unsigned char format>
int IdsOrder(const MDB_val* a, const MDB_val* b) {
    const ByteView first = ViewOf(a), second = ViewOf(b);
    if (first.size() != IdSize || second.size() != IdSize) return BytesOrder(first, second);
    return IdOrder(format, first, second);
}

template <unsigned char format, int... types>
constexpr std::array<MDB_cmp_func*, sizeof...(types)> TreeOrders(std::integer_sequence<int, types...>) {
    return {TreeOrder<types, format>...};
}

constexpr auto LittleOrders = TreeOrders<VqFormat_LittleEndian>(std::make_integer_sequence<int, VqTypeCount>());
constexpr auto BigOrders = TreeOrders<VqFormat_BigEndian>(std::make_integer_sequence<int, VqTypeCount>());

// --- Shorter values

// Bytes of a disk form that are not the value's own.
constexpr std::size_t StringOverhead = 6, ShortStringOverhead = 3, BlobOverhead = 8;

std::size_t RoomFor(std::size_t most, std::size_t overhead) { return most > overhead ? most - overhead : 0; }

void Shorten(VqString& string, std::size_t most) {
    const std::size_t size = string.GetCodeSet() < VqFirstWideCodeSet ? 1 : 2;
    auto length = static_cast<unsigned short>(RoomFor(most, StringOverhead) / size);
    const auto isHigh = [&](std::uint16_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    std::uint16_t last = 0;
    if (size == 2 && length > 0 && length < string.Len()) std::memcpy(&last, string.StrGet() + 2 * (length - 1), 2);
    if (isHigh(last)) --length;
    string = string.Left(length);
}

template <class String>
void ShortenBytes(String& string, std::size_t most) {
    const unsigned char flags = string.GetFlags();
    const String shorter(string);
    string.SetText(shorter.StrGet(), static_cast<unsigned short>(
                                         std::min<std::size_t>(shorter.Len(), RoomFor(most, ShortStringOverhead))));
    string.SetFlags(flags);
}

void Shorten(VqBlob& blob, std::size_t most) {
    blob = VqBlob(blob.Data(), static_cast<long>(std::min<std::size_t>(static_cast<std::size_t>(blob.Length()),
                                                                       RoomFor(most, BlobOverhead))));
}

void ShortenValue(VqTypeId type, void* value, std::size_t most) {
    if (type == VqTypeId_VqString) Shorten(*static_cast<VqString*>(value), most);
    if (type == VqTypeId_VqIString) ShortenBytes(*static_cast<VqIString*>(value), most);
    if (type == VqTypeId_VqCaseIString) ShortenBytes(*static_cast<VqCaseIString*>(value), most);
    if (type == VqTypeId_VqBlob) Shorten(*static_cast<VqBlob*>(value), most);
}

Bytes NullForm(const ValueArray& value, unsigned char format) {
    if (!manager.SupportsNullValue(value.GetType())) return {};
    value.SetNull(0);
    return value.Store(format);
}

}  // namespace

bool TreeKey::Read(ByteView key, TreeKey& parts) {
    if (key.size() <= IdSize || (key[0] & ~CutKey) > static_cast<int>(KeyClass::NoNumber)) return false;
    parts = {ClassOf(key), (key[0] & CutKey) != 0, StoredOf(key), IdOfKey(key)};
    return true;
}

bool CanIndex(VqTypeId type) { return CanSort(type); }

bool IsInByteOrder(VqTypeId type) { return type == VqTypeId_VqIString || type == VqTypeId_VqCaseIString; }

KeyMaker::KeyMaker(const Column& column, unsigned char format)
    : column_(column), format_(format), value_(column.type, 1), null_(NullForm(value_, format)) {}

// Values whose size depends on the value cost memory to load; all their nulls are equal to one another, and to nothing
// else.
KeyClass KeyMaker::ClassOf(ByteView form) {
    const VqTypeId type = column_.type;
    if (!manager.IsFixed(type)) {
        const bool isNull = !null_.empty() && ManagerOrder(type, format_, form, null_, VqCmp_Exact) == 0;
        return isNull ? KeyClass::Null : KeyClass::Value;
    }
    if (!null_.empty()) {
        manager.LoadPtrGet(type)(value_.Data(), form.data(), format_, 1);
        if (value_.IsNull(0)) return KeyClass::Null;
    }
    return ManagerOrder(type, format_, form, form, VqCmp_Exact) == 0 ? KeyClass::Value : KeyClass::NoNumber;
}

bool KeyMaker::Append(Bytes& key, ByteView form, ByteView id) {
    const KeyClass keyClass = ClassOf(form);
    const bool isCut = keyClass == KeyClass::Value && form.size() > VqINDEX_MAX_KEYLEN;
    key.push_back(static_cast<unsigned char>(static_cast<unsigned char>(keyClass) | (isCut ? CutKey : 0)));
    if (isCut) {
        AppendCut(key, form, VqINDEX_MAX_KEYLEN);
    } else if (keyClass != KeyClass::Null) {
        store::Append(key, form);
    }
    store::Append(key, id);
    return isCut;
}

void KeyMaker::AppendCut(Bytes& stored, ByteView form, std::size_t most) {
    if (form.size() <= most) return store::Append(stored, form);
    Manager().Load(column_.type, value_.Data(), form.data(), format_, 1);
    ShortenValue(column_.type, value_.Data(), most);
    store::Append(stored, value_.Store(format_));
}

Bytes ScanEnd(KeyClass keyClass, ByteView stored, End end) {
    Bytes key{static_cast<unsigned char>(static_cast<unsigned char>(keyClass) | static_cast<unsigned char>(end))};
    Append(key, stored);
    key.resize(key.size() + IdSize);
    return key;
}

MDB_cmp_func* IndexOrder(VqTypeId type, unsigned char format) {
    const auto row = static_cast<std::size_t>(type);
    return (format == VqFormat_BigEndian ? BigOrders : LittleOrders)[row];
}

MDB_cmp_func* RecordOrder(unsigned char format) {
    return format == VqFormat_BigEndian ? IdsOrder<VqFormat_BigEndian> : IdsOrder<VqFormat_LittleEndian>;
}

int CompareTreeKeys(VqTypeId type, unsigned char format, ByteView a, ByteView b) {
    const MDB_val first{a.size(), const_cast<unsigned char*>(a.data())};
    const MDB_val second{b.size(), const_cast<unsigned char*>(b.data())};
    return IndexOrder(type, format)(&first, &second);
}

}  // namespace store
