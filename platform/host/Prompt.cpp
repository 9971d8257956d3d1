// SPDX-License-Identifier: MIT
#include "platform/host/Prompt.h"

#include "platform/text/Numbers.h"
#include "platform/text/Utf8.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

Platform::PromptWriter& Writer() {
    static Platform::PromptWriter writer;
    return writer;
}

void WriteToStandardOutput(CStringView text) {
    const std::string utf8 = Platform::ToUtf8(text);
    std::fwrite(utf8.data(), 1, utf8.size(), stdout);
    std::fflush(stdout);
}

CString Format(CStringView format, std::va_list arguments) {
    CString text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const char16_t kind = format[i] == u'%' && i + 1 < format.size() ? format[i + 1] : u'\0';
        if (kind == u's')
            text += Platform::TextOf(va_arg(arguments, const char16_t*));
        else if (kind == u'd')
            text += Platform::ToText(va_arg(arguments, int));
        else
            text += format[i];
        if (kind == u's' || kind == u'd' || kind == u'%')
            ++i;
    }
    return text;
}

} // namespace

void Platform::SetPromptWriter(PromptWriter writer) {
    Writer() = std::move(writer);
}

int acutPrintf(const char16_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const CString text = Format(Platform::TextOf(format), arguments);
    va_end(arguments);
    if (Writer())
        Writer()(text);
    else
        WriteToStandardOutput(text);
    return static_cast<int>(text.size());
}
