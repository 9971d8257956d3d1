// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresLogin.h"

#include "platform/os/Environment.h"
#include "platform/text/Utf8.h"
#include "storage/StorageError.h"
#include "storage/postgres/PostgresError.h"

#include <algorithm>
#include <string>
#include <vector>

namespace Storage {
namespace {

using Platform::FromUtf8;
using Platform::ToUtf8;

struct EndOptions {
    void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};
using Options = std::unique_ptr<PQconninfoOption, EndOptions>;

// The value of an option; empty when it has none.
std::string_view ValueOf(const Options& options, std::string_view keyword) {
    for (const auto* option = options.get(); option && option->keyword; ++option)
        if (option->keyword == keyword)
            return option->val ? option->val : "";
    return {};
}

// What libpq is told; of two values of one keyword the later one counts.
class Parameters {
public:
    void Add(const char* keyword, std::string value) {
        m_keywords.push_back(keyword);
        m_values.push_back(std::move(value));
    }
    PostgresHandle Start() { return Call(PQconnectStartParams); }
    PostgresHandle Connect() { return Call(PQconnectdbParams); }

private:
    template<typename Function>
    PostgresHandle Call(Function function) {
        std::vector<const char*> keywords = m_keywords;
        std::vector<const char*> values;
        for (const std::string& value : m_values)
            values.push_back(value.c_str());
        keywords.push_back(nullptr);
        values.push_back(nullptr);
        constexpr int kDatabaseMayBeUri = 1;
        PostgresHandle handle(function(keywords.data(), values.data(), kDatabaseMayBeUri));
        if (!handle)
            throw std::bad_alloc();
        return handle;
    }

    std::vector<const char*> m_keywords;
    std::vector<std::string> m_values;
};

Options Parse(const CString& uri, CString& complaint) {
    char* error = nullptr;
    Options options(PQconninfoParse(ToUtf8(uri).c_str(), &error));
    if (error) {
        complaint = FromUtf8(error);
        while (!complaint.empty() && complaint.back() == u'\n')
            complaint.pop_back();
        PQfreemem(error);
    }
    return options;
}

// The options in force, from URI, service file and environment, as libpq itself finds them: it
// is given one more that it refuses before it reaches for the network.
Options InForce(const Address& address) {
    constexpr std::string_view kRefused = "(only asking)";
    Parameters parameters;
    parameters.Add("dbname", ToUtf8(address.server));
    parameters.Add("channel_binding", std::string(kRefused));
    const PostgresHandle handle = parameters.Start();
    Options options(PQconninfo(handle.get()));
    if (ValueOf(options, "channel_binding") != kRefused)
        ThrowNoPostgresConnection(handle.get(), address.server);
    return options;
}

bool IsLocal(std::string_view host) {
    return host.empty() || host.front() == '/' || host.front() == '@' || host == "localhost" ||
           host.substr(0, 4) == "127." || host == "::1";
}

bool IsEveryHostLocal(std::string_view hosts) {
    while (true) {
        const std::size_t comma = hosts.find(',');
        if (!IsLocal(hosts.substr(0, comma)))
            return false;
        if (comma == std::string_view::npos)
            return true;
        hosts.remove_prefix(comma + 1);
    }
}

bool SaysTls(const Address& address, const Options& inForce) {
    constexpr std::string_view kNobodySaidSo = "prefer"; // libpq's own default
    CString complaint;
    return ValueOf(inForce, "sslmode") != kNobodySaidSo ||
           !ValueOf(Parse(address.server, complaint), "sslmode").empty() ||
           Platform::EnvironmentValue("PGSSLMODE").has_value();
}

// Servers elsewhere prove who they are unless somebody decided otherwise.
bool NeedsProof(const Address& address, const Options& inForce) {
    const bool local = IsEveryHostLocal(ValueOf(inForce, "host")) &&
                       IsEveryHostLocal(ValueOf(inForce, "hostaddr"));
    return !local && !SaysTls(address, inForce);
}

} // namespace

PostgresHandle LogIn(const Address& address) {
    const Options inForce = InForce(address);
    Parameters parameters;
    parameters.Add("fallback_application_name", ToUtf8(address.application));
    parameters.Add("dbname", ToUtf8(address.server));
    parameters.Add("client_encoding", "UTF8");
    if (NeedsProof(address, inForce))
        parameters.Add("sslmode", "verify-full");
    // A server that vanished without a word is noticed within ten seconds.
    constexpr std::pair<const char*, const char*> kPatience[] = {{"connect_timeout", "10"},
                                                                 {"keepalives_idle", "3"},
                                                                 {"keepalives_interval", "2"},
                                                                 {"keepalives_count", "3"},
                                                                 {"tcp_user_timeout", "9000"}};
    for (const auto& [keyword, value] : kPatience)
        if (ValueOf(inForce, keyword).empty())
            parameters.Add(keyword, value);
    PostgresHandle handle = parameters.Connect();
    if (PQstatus(handle.get()) != CONNECTION_OK)
        ThrowNoPostgresConnection(handle.get(), address.server);
    return handle;
}

CString TlsMode(PGconn* connection) {
    const Options options(PQconninfo(connection));
    return FromUtf8(ValueOf(options, "sslmode"));
}

void CheckServerUri(const CString& uri) {
    CString complaint;
    const Options options = Parse(uri, complaint);
    if (!options) {
        // What libpq does not understand it repeats; it could be a password.
        const bool isSafe = uri.find(u'@') == CString::npos && uri.find(u"pass") == CString::npos;
        throw StorageError(Problem::Configuration, MessageNumber::NotAServerUri,
                           {isSafe ? complaint : CString()});
    }
    if (!ValueOf(options, "password").empty() || !ValueOf(options, "sslpassword").empty())
        throw StorageError(Problem::Configuration, MessageNumber::PasswordInUri);
}

} // namespace Storage
