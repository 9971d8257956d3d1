// SPDX-License-Identifier: MIT
#include "ItemProperty.h"

#include "YesNo.h"

#include <algorithm>
#include <charconv>

namespace ZEBGis::Data {
namespace {

// Empty when there is a character that no number has.
std::string Ascii(CStringView text) {
    std::string ascii;
    for (const char16_t unit : text)
        ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
    return ascii;
}

template<typename Number>
bool ReadsAsNumber(CStringView text, Number& number) {
    const std::string digits = Ascii(text);
    const char* end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number);
    return !digits.empty() && read.ec == std::errc() && read.ptr == end;
}

CDataBox IntegerOf(const CString& text) {
    std::int64_t number = 0;
    return ReadsAsNumber(text, number) ? CDataBox::OfInteger(number) : CDataBox();
}

CDataBox RealOf(const CString& text) {
    double number = 0;
    return ReadsAsNumber(text, number) ? CDataBox::OfReal(number) : CDataBox();
}

CDataBox BooleanOf(const CString& text) {
    const std::optional<bool> isYes = YesOrNo(text);
    return isYes ? CDataBox::OfBoolean(*isYes) : CDataBox();
}

CDataBox DateOf(const CString& text) {
    return CDataBox::OfDate(text.c_str());
}

struct Type {
    enmDataType type;
    const char16_t* name;
    CDataBox (*read)(const CString& text);
};

constexpr Type kTypes[] = {{DataInteger, u"integer", IntegerOf},
                           {DataReal, u"number", RealOf},
                           {DataBoolean, u"boolean", BooleanOf},
                           {DataDate, u"date", DateOf}};

constexpr const char16_t* kNull = u"null";

} // namespace

CDataBox ItemProperty::GetValue() const {
    if (type == kNull && value.empty())
        return {};
    for (const Type& each : kTypes)
        if (type == each.name)
            if (CDataBox box = each.read(value); !box.IsNull())
                return box;
    return CDataBox::OfText(value.c_str());
}

void ItemProperty::SetValue(const CDataBox& box) {
    const auto known = std::ranges::find(kTypes, box.GetType(), &Type::type);
    CString newType = box.IsNull() ? kNull : known != std::end(kTypes) ? known->name : u"";
    value = box.ToText();
    type.swap(newType);
}

} // namespace ZEBGis::Data
