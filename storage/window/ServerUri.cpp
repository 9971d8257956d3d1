// SPDX-License-Identifier: MIT
#include "storage/window/ServerUri.h"

#include "platform/text/CaseFold.h"
#include "storage/window/PercentEncoding.h"

#include <algorithm>
#include <utility>

namespace Storage {
namespace {

// libpq's keywords that hold secrets.
constexpr CStringView kSecrets[] = {u"password", u"sslpassword", u"oauth_client_secret",
                                    u"scram_client_key", u"scram_server_key"};

// What cannot be decoded is compared as it stands.
CString Decoded(CStringView text) {
    return PercentDecode(text).value_or(CString(text));
}

bool IsSecret(CStringView name) {
    const CString folded = Platform::FoldCase(Decoded(name));
    return std::ranges::find(kSecrets, folded) != std::end(kSecrets);
}

bool AreSeveral(CStringView hosts) {
    return hosts.find(u',') != CStringView::npos;
}

bool IsInBrackets(CStringView host) {
    return host.size() > 1 && host.front() == u'[' && host.back() == u']';
}

CString DecodedHost(CStringView host) {
    if (AreSeveral(host))
        return CString(host);
    return Decoded(IsInBrackets(host) ? host.substr(1, host.size() - 2) : host);
}

CString EncodedHost(CStringView host) {
    if (AreSeveral(host))
        return CString(host);
    const CStringView bare = IsInBrackets(host) ? host.substr(1, host.size() - 2) : host;
    if (bare.find(u':') == CStringView::npos)
        return PercentEncode(bare);
    return u"[" + PercentEncode(bare, u":") + u"]";
}

// Takes what stands before the first of `separators` off the front of `text`.
CStringView TakeUpTo(CStringView separators, CStringView& text) {
    const CStringView taken = text.substr(0, text.find_first_of(separators));
    text.remove_prefix(taken.size());
    return taken;
}

// "HOST:PORT", or the host alone.
struct HostAndPort {
    explicit HostAndPort(CStringView text) {
        const bool bracket = !text.empty() && text.front() == u'[';
        host = bracket ? text.substr(0, text.find(u']') + 1) : text.substr(0, text.find(u':'));
        text.remove_prefix(host.size());
        isGood = !bracket || IsInBrackets(host);
        if (text.empty())
            return;
        port = text.substr(1);
        // Letters there may be a password in front of an "@" that is missing.
        isGood = isGood && text.front() == u':' &&
                 port->find_first_not_of(u"0123456789") == CString::npos;
    }

    CStringView host;
    std::optional<CString> port;
    bool isGood = true;
};

} // namespace

std::optional<ServerUri> ServerUri::Parse(CStringView text) {
    const std::size_t colon = text.find(u"://");
    if (colon == CStringView::npos)
        return std::nullopt;
    const CString scheme = Platform::FoldCase(text.substr(0, colon));
    if (scheme != u"postgresql" && scheme != u"postgres")
        return std::nullopt;
    ServerUri uri;
    uri.m_scheme = text.substr(0, colon + 3);
    text.remove_prefix(uri.m_scheme.size());
    const CStringView authority = TakeUpTo(u"/?", text);
    const CStringView path = TakeUpTo(u"?", text);
    // libpq would find the end of a password, or a user's name, further on.
    const bool isUnclear = path.find(u'@') != CStringView::npos ||
                           (authority.find(u'@') == CStringView::npos && path.empty() &&
                            text.find(u'@') != CStringView::npos);
    if (isUnclear || !uri.ReadAuthority(authority))
        return std::nullopt;
    if (!path.empty())
        uri.m_database = path.substr(1);
    if (text == u"?")
        uri.m_tail = text;
    return uri.ReadParameters(text.substr(text.empty() ? 0 : 1)) && uri.IsDecodable()
               ? std::optional(std::move(uri))
               : std::nullopt;
}

bool ServerUri::ReadAuthority(CStringView text) {
    const std::size_t at = text.find(u'@');
    if (at == CStringView::npos)
        return ReadHost(text);
    const CStringView user = text.substr(0, at);
    m_user = user.substr(0, user.find(u':'));
    text.remove_prefix(at + 1);
    return text.find(u'@') == CStringView::npos && ReadHost(text);
}

bool ServerUri::ReadHost(CStringView text) {
    if (AreSeveral(text)) {
        m_host = text;
        while (!text.empty()) {
            if (!HostAndPort(TakeUpTo(u",", text)).isGood)
                return false;
            text.remove_prefix(std::min<std::size_t>(text.size(), 1));
        }
        return true;
    }
    const HostAndPort read(text);
    if (!read.host.empty())
        m_host = read.host;
    m_port = read.port;
    return read.isGood;
}

bool ServerUri::ReadParameters(CStringView text) {
    while (!text.empty()) {
        const CStringView piece = TakeUpTo(u"&", text);
        const std::size_t equals = piece.find(u'=');
        // Without a "=" it may be what stands behind a "&" in a password.
        if (equals == CStringView::npos)
            return false;
        if (!IsSecret(piece.substr(0, equals)))
            m_parameters.push_back(
                {CString(piece.substr(0, equals)), CString(piece.substr(equals + 1))});
        if (text == u"&")
            m_tail = text;
        text.remove_prefix(std::min<std::size_t>(text.size(), 1));
    }
    return true;
}

bool ServerUri::IsDecodable() const {
    const auto isGood = [](const Part& part) { return !part || PercentDecode(*part); };
    return isGood(m_user) && isGood(m_host) && isGood(m_port) && isGood(m_database) &&
           std::ranges::all_of(m_parameters, [&](const Parameter& parameter) {
               return PercentDecode(parameter.name) && PercentDecode(parameter.value);
           });
}

const ServerUri::Part* ServerUri::PartOf(CStringView keyword) const {
    if (keyword == u"user")
        return &m_user;
    if (keyword == u"host")
        return &m_host;
    if (keyword == u"port")
        return &m_port;
    return keyword == u"dbname" ? &m_database : nullptr;
}

ServerUri::Part* ServerUri::PartOf(CStringView keyword) {
    return const_cast<Part*>(std::as_const(*this).PartOf(keyword));
}

// Of several the last one counts, and it counts before what stands in front of the "?".
const ServerUri::Parameter* ServerUri::Find(CStringView keyword) const {
    const auto found =
        std::find_if(m_parameters.rbegin(), m_parameters.rend(), [&](const Parameter& parameter) {
            return Decoded(parameter.name) == keyword;
        });
    return found == m_parameters.rend() ? nullptr : &*found;
}

ServerUri::Parameter* ServerUri::Find(CStringView keyword) {
    return const_cast<Parameter*>(std::as_const(*this).Find(keyword));
}

CString ServerUri::Value(CStringView keyword) const {
    if (const Parameter* parameter = Find(keyword))
        return Decoded(parameter->value);
    const Part* part = PartOf(keyword);
    if (!part || !*part)
        return {};
    return keyword == u"host" ? DecodedHost(**part) : Decoded(**part);
}

void ServerUri::SetValue(CStringView keyword, CStringView value) {
    if (Value(keyword) == value)
        return;
    Parameter* parameter = Find(keyword);
    Part* part = PartOf(keyword);
    if (value.empty()) {
        std::erase_if(m_parameters,
                      [&](const Parameter& each) { return Decoded(each.name) == keyword; });
        if (part)
            part->reset();
    } else if (parameter) {
        parameter->value = PercentEncode(value);
    } else if (part == &m_host) {
        SetHost(value);
    } else if (part && !(part == &m_port && AreSeveral(m_host.value_or(CString())))) {
        *part = PercentEncode(value);
    } else {
        m_parameters.push_back({CString(keyword), PercentEncode(value)});
    }
}

// Behind several hosts a port would be that of the last one.
void ServerUri::SetHost(CStringView value) {
    m_host = EncodedHost(value);
    if (AreSeveral(value) && m_port)
        m_parameters.push_back({u"port", *std::exchange(m_port, std::nullopt)});
}

CString ServerUri::Text() const {
    CString text = m_scheme;
    if (m_user)
        text.append(*m_user).append(u"@");
    text += m_host.value_or(CString());
    if (m_port)
        text.append(u":").append(*m_port);
    if (m_database)
        text.append(u"/").append(*m_database);
    char16_t separator = u'?';
    for (const Parameter& parameter : m_parameters) {
        text.append({separator}).append(parameter.name).append(u"=").append(parameter.value);
        separator = u'&';
    }
    if (m_tail == CStringView(&separator, 1))
        text += m_tail;
    return text;
}

} // namespace Storage
