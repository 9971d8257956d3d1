// SPDX-License-Identifier: MIT
#include "storage/Messages.h"

#include "platform/text/Fill.h"
#include "platform/text/Numbers.h"

namespace Storage {
namespace {

// Names come from foreign files and repositories: a control character in one would end the
// line, or the text, in which it is told.  Each has a picture in Unicode.
CString Shown(CString value) {
    for (char16_t& c : value) {
        if (c < 32)
            c = static_cast<char16_t>(0x2400 + c);
        else if (c == 127)
            c = 0x2421;
    }
    return value;
}

// Platform::Fill takes its values as a list; no message has more than three.
CString FillAll(CStringView pattern, std::vector<CString> values) {
    for (CString& text : values)
        text = Shown(std::move(text));
    const auto value = [&](std::size_t i) { return CStringView(values[i]); };
    switch (values.size()) {
    case 0:
        return Platform::Fill(pattern, {});
    case 1:
        return Platform::Fill(pattern, {value(0)});
    case 2:
        return Platform::Fill(pattern, {value(0), value(1)});
    default:
        return Platform::Fill(pattern, {value(0), value(1), value(2)});
    }
}

} // namespace

CString TextOf(const Message& message, Repository::IMsgProvider* provider) {
    const int number = static_cast<int>(message.number);
    if (provider) {
        CString pattern;
        provider->GetMsg(pattern, number);
        return FillAll(pattern, message.values);
    }
    CString text = Platform::ToText(number);
    for (const CString& value : message.values)
        text.append(u" ").append(Shown(value));
    return text;
}

CString TextOf(const std::vector<Message>& messages, Repository::IMsgProvider* provider) {
    CString text;
    for (const Message& message : messages) {
        if (!text.empty())
            text += u'\n';
        text += TextOf(message, provider);
    }
    return text;
}

} // namespace Storage
