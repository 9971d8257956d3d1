// SPDX-License-Identifier: MIT
#include "app/ConsoleLines.h"

#include "app/Texts.h"

#include "platform/host/Keyboard.h"
#include "platform/text/Utf8.h"

#include <cstdio>
#include <cstdlib>
#include <editline/readline.h>
#include <istream>
#include <locale>
#include <memory>
#include <stdexcept>

namespace App {
namespace {

using Platform::KeyEvent;

// The library edits characters and knows no wrong bytes: each travels through it as a private
// character of plane 16, which nobody can type.
constexpr char32_t kWrongByte = 0x10FF00;

int LengthBy(unsigned char lead) {
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 1;
}

// Makes characters of the keyboard's bytes.
class Keys {
public:
    // A character; the line's end for Ctrl-C, which is noted; -1 at the end of input.
    int Next() {
        unsigned char byte = 0;
        if (m_waiting.empty()) {
            const KeyEvent event = m_keyboard.Read(byte);
            if (event != KeyEvent::Byte)
                return Ended(event);
            m_waiting.push_back(static_cast<char>(byte));
        }
        while (static_cast<int>(m_waiting.size()) < LengthBy(Lead()) && IsBegun()) {
            const KeyEvent event = m_keyboard.Read(byte);
            if (event != KeyEvent::Byte)
                return Ended(event);
            m_waiting.push_back(static_cast<char>(byte));
        }
        return TakeCharacter();
    }

    bool WasInterrupted() const { return m_wasInterrupted; }

private:
    unsigned char Lead() const { return static_cast<unsigned char>(m_waiting.front()); }

    // Whether the bytes so far can become a character.
    bool IsBegun() const {
        for (std::size_t i = 1; i < m_waiting.size(); ++i) {
            if ((static_cast<unsigned char>(m_waiting[i]) & 0xC0) != 0x80)
                return false;
        }
        return true;
    }

    int Ended(KeyEvent event) {
        m_waiting.clear();
        m_wasInterrupted = event == KeyEvent::Interruption;
        if (!m_wasInterrupted)
            return -1;
        std::fputs("^C", stdout);
        std::fflush(stdout);
        return '\n';
    }

    int TakeCharacter() {
        const auto length = static_cast<std::size_t>(LengthBy(Lead()));
        if (length == 1 && Lead() < 0x80)
            return Take(1, Lead());
        const CString text = Platform::FromUtf8(m_waiting.substr(0, length));
        if (length > 1 && m_waiting.size() == length && Platform::IsWellFormed(text))
            return Take(length, CodePoint(text));
        return Take(1, kWrongByte + Lead());
    }

    int Take(std::size_t bytes, char32_t character) {
        m_waiting.erase(0, bytes);
        return static_cast<int>(character);
    }

    static char32_t CodePoint(const CString& text) {
        if (text.size() == 1)
            return text[0];
        return 0x10000U + ((text[0] - 0xD800U) << 10) + (text[1] - 0xDC00U);
    }

    Platform::Keyboard m_keyboard;
    std::string m_waiting; // bytes that were read and not given yet
    bool m_wasInterrupted = false;
};

Keys* g_keys = nullptr; // of the line under way: the library's function takes no data

int NextKey(FILE*) {
    return g_keys->Next();
}

CString WithWrongBytes(const std::string& utf8) {
    static const std::string kLead = "\xF4\x8F\xBC"; // of U+10FF00 and what follows it
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const bool isWrong = utf8.compare(i, 2, kLead, 0, 2) == 0 && i + 3 < utf8.size() &&
                             static_cast<unsigned char>(utf8[i + 2]) >= 0xBC;
        if (!isWrong) {
            bytes += utf8[i];
            continue;
        }
        const auto high = static_cast<unsigned char>(utf8[i + 2]) & 0x3U;
        const auto low = static_cast<unsigned char>(utf8[i + 3]) & 0x3FU;
        bytes += static_cast<char>(high << 6 | low);
        i += 3;
    }
    return Platform::FromUtf8(bytes);
}

// The library takes the terminal's encoding from the process; ours is UTF-8 everywhere.
void UseUtf8() try {
    std::locale::global(std::locale(std::locale::classic(), "C.UTF-8", std::locale::ctype));
} catch (const std::runtime_error&) { // without it letters outside of ASCII look wrong
}

} // namespace

std::optional<CString> PlainLines::Next() {
    std::string line;
    if (!std::getline(m_in, line))
        return std::nullopt;
    return Platform::FromUtf8(line);
}

TerminalLines::TerminalLines(ConsoleHistory& history) : m_history(history) {
    UseUtf8();
    rl_getc_function = NextKey;
    stifle_history(static_cast<int>(ConsoleHistory::kMostLines));
    for (const CString& line : history.Lines())
        add_history(Platform::ToUtf8(line).c_str());
}

TerminalLines::~TerminalLines() {
    clear_history();
}

std::optional<CString> TerminalLines::Next() {
    Keys keys;
    g_keys = &keys;
    const std::string prompt = Platform::ToUtf8(Text(Message::ConsolePrompt) + u" ");
    const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt.c_str()), &std::free);
    g_keys = nullptr;
    if (keys.WasInterrupted())
        return CString();
    if (!typed) {
        std::fputs("\n", stdout); // whoever comes next begins a line of his own
        return std::nullopt;
    }
    const CString line = WithWrongBytes(typed.get());
    if (m_history.Add(line))
        add_history(typed.get());
    return line;
}

} // namespace App
