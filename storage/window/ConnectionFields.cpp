// SPDX-License-Identifier: MIT
#include "storage/window/ConnectionFields.h"

#include "platform/text/CaseFold.h"
#include "platform/text/Numbers.h"

#include <algorithm>

namespace Storage {
namespace {

constexpr const char16_t* kTlsModes[] = {u"disable", u"allow",     u"prefer",
                                         u"require", u"verify-ca", u"verify-full"};

// The pieces of a list with commas; a text without one is its only piece.
std::vector<CStringView> PiecesOf(CStringView list) {
    std::vector<CStringView> pieces;
    for (std::size_t comma = 0; comma != CStringView::npos;) {
        comma = list.find(u',');
        pieces.push_back(list.substr(0, comma));
        list.remove_prefix(comma == CStringView::npos ? list.size() : comma + 1);
    }
    return pieces;
}

bool IsSocket(CStringView host) {
    return !host.empty() && (host.front() == u'/' || host.front() == u'@');
}

bool HasSeveral(CStringView host) {
    return host.find(u',') != CStringView::npos;
}

// Whether there is a port behind the host; an address of IPv6 has more than one colon.
bool HasPort(CStringView host) {
    const std::size_t bracket = host.rfind(u']');
    if (bracket != CStringView::npos)
        return host.find(u':', bracket) != CStringView::npos;
    return std::ranges::count(host, u':') == 1;
}

CStringView WithoutPort(CStringView host) {
    return HasPort(host) ? host.substr(0, host.rfind(u':')) : host;
}

bool IsHostAlone(CStringView host) {
    if (IsSocket(host))
        return true;
    const bool hasMore = host.find_first_of(u"/@?& ") != CStringView::npos;
    return !hasMore && (HasSeveral(host) || !HasPort(host));
}

bool IsLocal(CStringView host) {
    const CStringView name = WithoutPort(host);
    return IsSocket(name) || name.substr(0, 3) == u"%2F" ||
           Platform::FoldCase(name) == u"localhost" || name.substr(0, 4) == u"127." ||
           name == u"::1" || name == u"[::1]";
}

bool IsPort(CStringView text) {
    constexpr std::int32_t kHighest = 65535;
    const bool isNumber =
        !text.empty() && text.find_first_not_of(u"0123456789") == CStringView::npos;
    const std::int32_t number = Platform::ToInteger(text);
    return isNumber && number >= 1 && number <= kHighest;
}

bool IsWholePath(CStringView path) {
    const auto isSeparator = [](char16_t unit) { return unit == u'/' || unit == u'\\'; };
    return isSeparator(path.front()) && !isSeparator(path.back());
}

std::optional<WindowText> FileProblem(CStringView file) {
    if (file.empty())
        return WindowText::NoFile;
    return IsWholePath(file) ? std::nullopt : std::optional(WindowText::NotWholePath);
}

std::optional<WindowText> HostProblem(CStringView host) {
    if (host.empty())
        return WindowText::NoHost;
    return IsHostAlone(host) ? std::nullopt : std::optional(WindowText::NotHostAlone);
}

std::optional<WindowText> PortProblem(CStringView port, CStringView host) {
    if (port.empty())
        return std::nullopt;
    if (HasSeveral(host) && std::ranges::any_of(PiecesOf(host), HasPort))
        return WindowText::PortBesideHosts;
    const bool areAllPorts =
        HasSeveral(host) ? std::ranges::all_of(PiecesOf(port), IsPort) : IsPort(port);
    return areAllPorts ? std::nullopt : std::optional(WindowText::NotAPort);
}

// Who writes "ana:secret" must not find the secret in a settings file.
std::optional<WindowText> UserProblem(CStringView user) {
    const bool hasMore = user.find(u':') != CStringView::npos;
    return hasMore ? std::optional(WindowText::NotUserAlone) : std::nullopt;
}

} // namespace

std::optional<ConnectionFields> ConnectionFields::Parse(CStringView address) {
    ConnectionFields fields;
    const CStringView prefix = address.substr(0, address.find(u':') + 1);
    if (Platform::FoldCase(prefix) == u"sqlite:") {
        fields.m_filePrefix = prefix;
        fields.file = address.substr(prefix.size());
        return fields;
    }
    auto uri = ServerUri::Parse(address);
    if (!uri)
        return std::nullopt;
    fields.m_uri = std::move(*uri);
    fields.ReadServer();
    return fields;
}

void ConnectionFields::ReadServer() {
    host = m_uri.Value(u"host");
    port = m_uri.Value(u"port");
    database = m_uri.Value(u"dbname");
    user = m_uri.Value(u"user");
    tls = m_uri.Value(u"sslmode");
    service = m_uri.Value(u"service");
    place = host.empty() && !service.empty() ? Place::Service : Place::Server;
    m_placeRead = place;
}

CString ConnectionFields::Address() const {
    switch (place) {
    case Place::Server:
        return ServerAddress().Text();
    case Place::Service:
        return ServiceAddress().Text();
    case Place::File:
        break;
    }
    return m_filePrefix + file;
}

ServerUri ConnectionFields::ServerAddress() const {
    ServerUri uri = m_uri;
    // A service would fill in what the fields leave empty.
    if (m_placeRead == Place::Service)
        uri.SetValue(u"service", {});
    uri.SetValue(u"host", host);
    uri.SetValue(u"port", port);
    uri.SetValue(u"dbname", database);
    uri.SetValue(u"user", user);
    uri.SetValue(u"sslmode", tls);
    return uri;
}

ServerUri ConnectionFields::ServiceAddress() const {
    ServerUri uri = m_uri;
    // What stands beside the service in an address counts before what the service says.
    if (m_placeRead != Place::Service)
        for (const CStringView keyword : {u"host", u"port", u"dbname", u"user", u"sslmode"})
            uri.SetValue(keyword, {});
    uri.SetValue(u"service", service);
    return uri;
}

std::vector<FieldProblem> ConnectionFields::Problems() const {
    std::vector<FieldProblem> problems;
    const auto check = [&](Field field, std::optional<WindowText> problem) {
        if (problem && BelongsTo(field, place))
            problems.push_back({field, *problem});
    };
    check(Field::File, FileProblem(file));
    check(Field::Host, HostProblem(host));
    check(Field::Port, PortProblem(port, host));
    check(Field::User, UserProblem(user));
    check(Field::Service, service.empty() ? std::optional(WindowText::NoService) : std::nullopt);
    return problems;
}

bool BelongsTo(Field field, Place place) {
    switch (field) {
    case Field::File:
        return place == Place::File;
    case Field::Service:
        return place == Place::Service;
    default:
        return place == Place::Server;
    }
}

std::span<const char16_t* const> TlsModes() {
    return kTlsModes;
}

CString ProposedTls(CStringView host) {
    return std::ranges::all_of(PiecesOf(host), IsLocal) ? CString() : CString(u"verify-full");
}

} // namespace Storage
