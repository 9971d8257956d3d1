// SPDX-License-Identifier: MIT
// One value of a catalogue item's property: nothing, a text, a whole number, a number, yes
// or no, or a date.
#pragma once

#include "platform/Export.h"
#include "platform/text/Text.h"

#include <cstdint>

namespace ZEBGis::Data {

enum enmDataType : std::int32_t {
    DataNull = 0,
    DataText,
    DataInteger,
    DataReal,
    DataBoolean,
    DataDate
};

class ZEBX_EXPORT CDataBox {
public:
    // Null.
    CDataBox() = default;
    static CDataBox OfText(const char16_t* text);
    static CDataBox OfInteger(std::int64_t number);
    // A number that is not finite gives null.
    static CDataBox OfReal(double number);
    static CDataBox OfBoolean(int isYes);
    // "2026-11-21"; a text that is no date of the calendar gives null.
    static CDataBox OfDate(const char16_t* date);

    int IsNull() const { return m_type == DataNull; }
    enmDataType GetType() const { return m_type; }

    // The value as text: as it stands, decimal digits, the shortest form that reads back as
    // the same number ("0.1"), "yes" or "no", "2026-11-21".  Null gives the empty text.
    CString ToText() const;
    // 0 unless the value is of that type; a whole number is also a number.
    std::int64_t GetInteger() const;
    double GetReal() const;
    int GetBoolean() const;

    bool operator==(const CDataBox&) const = default;

private:
    enmDataType m_type = DataNull;
    CString m_text; // of a text or a date
    std::int64_t m_integer = 0;
    double m_real = 0;
};

} // namespace ZEBGis::Data
