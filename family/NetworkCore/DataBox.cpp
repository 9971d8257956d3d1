// SPDX-License-Identifier: MIT
#include "ZEBXNetworkCore/DataBox.h"

#include "CalendarDate.h"

#include "platform/text/Numbers.h"

#include <charconv>
#include <cmath>

namespace ZEBGis::Data {
namespace {

CString ShortestText(double number) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    return {digits, end};
}

} // namespace

CDataBox CDataBox::OfText(const char16_t* text) try {
    CDataBox box;
    box.m_text = Platform::TextOf(text);
    box.m_type = DataText;
    return box;
} catch (...) {
    return {};
}

CDataBox CDataBox::OfInteger(std::int64_t number) {
    CDataBox box;
    box.m_type = DataInteger;
    box.m_integer = number;
    return box;
}

CDataBox CDataBox::OfReal(double number) {
    CDataBox box;
    if (!std::isfinite(number))
        return box;
    box.m_type = DataReal;
    box.m_real = number;
    return box;
}

CDataBox CDataBox::OfBoolean(int isYes) {
    CDataBox box;
    box.m_type = DataBoolean;
    box.m_integer = isYes ? 1 : 0;
    return box;
}

CDataBox CDataBox::OfDate(const char16_t* date) try {
    CDataBox box;
    if (!IsCalendarDate(Platform::TextOf(date)))
        return box;
    box.m_text = Platform::TextOf(date);
    box.m_type = DataDate;
    return box;
} catch (...) {
    return {};
}

CString CDataBox::ToText() const try {
    switch (m_type) {
    case DataText:
    case DataDate:
        return m_text;
    case DataInteger:
        return Platform::ToText(m_integer);
    case DataReal:
        return ShortestText(m_real);
    case DataBoolean:
        return m_integer ? u"yes" : u"no";
    case DataNull:
        break;
    }
    return {};
} catch (...) {
    return {};
}

std::int64_t CDataBox::GetInteger() const {
    return m_type == DataInteger ? m_integer : 0;
}

double CDataBox::GetReal() const {
    if (m_type == DataInteger)
        return static_cast<double>(m_integer);
    return m_type == DataReal ? m_real : 0;
}

int CDataBox::GetBoolean() const {
    return m_type == DataBoolean && m_integer ? 1 : 0;
}

} // namespace ZEBGis::Data
