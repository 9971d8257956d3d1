// SPDX-License-Identifier: MIT
#include "platform/window/Mnemonics.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace Platform {
namespace {

// Only what every keyboard has: a letter with a mark above cannot be typed on most.
constexpr std::u16string_view kKeys = u"abcdefghijklmnopqrstuvwxyz0123456789";

char16_t KeyOf(char16_t unit) {
    const char16_t lower = unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit;
    return kKeys.find(lower) == kKeys.npos ? u'\0' : lower;
}

bool IsDigit(char16_t key) {
    return key >= u'0' && key <= u'9';
}

bool IsBetweenWords(char16_t unit) {
    return unit < 0x80 && !KeyOf(unit);
}

// Best places first: beginnings of words, other letters, digits.
int Rank(const CString& text, std::size_t position) {
    if (IsDigit(text[position]))
        return 2;
    return position == 0 || IsBetweenWords(text[position - 1]) ? 0 : 1;
}

std::vector<Mnemonic> CandidatesIn(const CString& text) {
    std::vector<Mnemonic> candidates;
    for (int rank = 0; rank < 3; ++rank) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (const char16_t key = KeyOf(text[i]); key && Rank(text, i) == rank)
                candidates.push_back({key, i});
        }
    }
    return candidates;
}

class Assignment {
public:
    Assignment(const std::vector<CString>& texts, std::set<char16_t>& taken)
        : m_taken(taken), m_chosen(texts.size()) {
        for (const CString& text : texts)
            m_candidates.push_back(CandidatesIn(text));
    }

    std::vector<Mnemonic> Make() {
        for (std::size_t i = 0; i < m_chosen.size(); ++i) {
            m_tried.clear();
            if (!TakeFree(i))
                TakeFromAnother(i);
        }
        for (Mnemonic& chosen : m_chosen)
            TakeAnyKey(chosen);
        return m_chosen;
    }

private:
    bool TakeFree(std::size_t who) {
        for (const Mnemonic& candidate : m_candidates[who]) {
            if (!m_taken.contains(candidate.key) && !m_owners.contains(candidate.key)) {
                Give(who, candidate);
                return true;
            }
        }
        return false;
    }

    // Whoever has the key and can do with another one moves over.
    bool TakeFromAnother(std::size_t who) {
        for (const Mnemonic& candidate : m_candidates[who]) {
            const auto owner = m_owners.find(candidate.key);
            if (owner == m_owners.end() || !m_tried.insert(candidate.key).second)
                continue;
            const std::size_t other = owner->second;
            if (TakeFree(other) || TakeFromAnother(other)) {
                Give(who, candidate);
                return true;
            }
        }
        return false;
    }

    void TakeAnyKey(Mnemonic& chosen) {
        for (std::size_t i = 0; i < kKeys.size() && !chosen.key; ++i) {
            if (!m_taken.contains(kKeys[i]) && !m_owners.contains(kKeys[i]))
                chosen.key = kKeys[i];
        }
        if (chosen.key)
            m_taken.insert(chosen.key);
    }

    void Give(std::size_t who, const Mnemonic& mnemonic) {
        if (m_chosen[who].key && m_owners[m_chosen[who].key] == who)
            m_owners.erase(m_chosen[who].key);
        m_owners[mnemonic.key] = who;
        m_chosen[who] = mnemonic;
    }

    std::set<char16_t>& m_taken;
    std::vector<Mnemonic> m_chosen;
    std::vector<std::vector<Mnemonic>> m_candidates;
    std::map<char16_t, std::size_t> m_owners;
    std::set<char16_t> m_tried;
};

} // namespace

std::vector<Mnemonic> AssignMnemonics(const std::vector<CString>& texts,
                                      std::set<char16_t>& taken) {
    return Assignment(texts, taken).Make();
}

CString WithMnemonic(CStringView text, const Mnemonic& mnemonic) {
    CString marked;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == mnemonic.position || text[i] == u'&')
            marked += u'&';
        marked += text[i];
    }
    return marked;
}

} // namespace Platform
