// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresError.h"

#include "platform/text/Utf8.h"

#include <algorithm>

namespace Storage {
namespace {

using Number = MessageNumber;

struct Meaning {
    std::string_view sign;
    Problem problem;
    MessageNumber number;
};

// By SQLSTATE, or by how it begins: the first that fits counts.
constexpr Meaning kStates[] = {
    {"08", Problem::Unreachable, Number::ConnectionBroke},
    {"0A000", Problem::NotAllowed, Number::ServerTakesNoWrites}, // a standby's word for BEGIN
    {"25006", Problem::NotAllowed, Number::ServerTakesNoWrites},
    {"28P01", Problem::NotAllowed, Number::WrongPassword},
    {"28", Problem::NotAllowed, Number::NotLetIn},
    {"3D000", Problem::Missing, Number::NoServerDatabase},
    {"3F000", Problem::Missing, Number::NoTables},
    {"42P01", Problem::Missing, Number::NoTables},
    {"42501", Problem::NotAllowed, Number::ServerForbids},
    {"40", Problem::Busy, Number::Busy}, // a deadlock, or a transaction that came too late
    {"55P03", Problem::Busy, Number::Busy},
    {"57014", Problem::Busy, Number::StatementEnded},
    {"57P03", Problem::Unreachable, Number::ServerStarting},
    {"57", Problem::Unreachable, Number::ServerStopped},
    {"53100", Problem::ServerFull, Number::ServerDiskFull},
    {"53300", Problem::Unreachable, Number::NoMoreConnections},
    {"53", Problem::Unreachable, Number::ServerExhausted},
    {"58", Problem::Unreachable, Number::ServerExhausted},
    {"XX001", Problem::Integrity, Number::ServerDamaged},
    {"XX002", Problem::Integrity, Number::ServerDamaged},
};

// What stands in libpq's text when there is no connection, for which it gives no SQLSTATE.  The
// texts are those of libpq and of a server that speak English; what nobody recognises is told as
// it stands.  Several servers may each have said something: what the user can do most about
// counts.
constexpr Meaning kTexts[] = {
    {"password authentication failed", Problem::NotAllowed, Number::WrongPassword},
    {"authentication failed", Problem::NotAllowed, Number::NotLetIn},
    {"no pg_hba.conf entry", Problem::NotAllowed, Number::NotLetIn},
    {"pg_hba.conf rejects", Problem::NotAllowed, Number::NotLetIn},
    {"not permitted to log in", Problem::NotAllowed, Number::NotLetIn},
    {"no such user", Problem::NotAllowed, Number::NotLetIn}, // a pooler's words
    {"permission denied for database", Problem::NotAllowed, Number::NotLetIn},
    {"no such database", Problem::Missing, Number::NoServerDatabase}, // a pooler's words
    {"unsupported startup parameter", Problem::Configuration, Number::PoolerRefuses},
    {"unrecognized configuration parameter", Problem::Configuration, Number::OptionRefused},
    {"definition of service", Problem::Configuration, Number::NoService},
    {"service file", Problem::Configuration, Number::NoService},
    {"root certificate file", Problem::Configuration, Number::NoRootCertificate},
    {"does not match host name", Problem::Unreachable, Number::CertificateOfAnother},
    {"certificate verify failed", Problem::Unreachable, Number::CertificateNotTrusted},
    {"server does not support SSL", Problem::Unreachable, Number::ServerWithoutTls},
    {"terminating connection", Problem::Unreachable, Number::ServerStopped},
    {"the database system is", Problem::Unreachable, Number::ServerStarting},
    {"too many c", Problem::Unreachable, Number::NoMoreConnections}, // clients, connections
    {"connection slots are reserved", Problem::Unreachable, Number::NoMoreConnections},
    {"no more connections allowed", Problem::Unreachable, Number::NoMoreConnections},
    {"session is read-only", Problem::Unreachable, Number::NoFittingServer},
    {"session is not read-only", Problem::Unreachable, Number::NoFittingServer},
    {"hot standby mode", Problem::Unreachable, Number::NoFittingServer},
    {"timeout expired", Problem::Unreachable, Number::ServerDoesNotAnswer},
    {"could not translate host name", Problem::Unreachable, Number::UnknownServer},
    {"Connection refused", Problem::Unreachable, Number::NoServerThere},
    {"No such file or directory", Problem::Unreachable, Number::NoServerThere},
    {"out of memory", Problem::Internal, Number::Internal},
    {"", Problem::Unreachable, Number::ConnectionBroke},
};

// Without the hints, which stand in lines of their own behind a tab and are for people who run
// servers; "; " between the lines.
CString ReasonOf(const char* text) {
    std::string_view rest = text ? text : "";
    std::string reason;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        if (!line.empty() && line.front() != '\t')
            reason.append(reason.empty() ? "" : "; ").append(line);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return Platform::FromUtf8(reason);
}

[[noreturn]] void Throw(const Meaning& meaning, const CString& name, const CString& reason) {
    if (meaning.number == Number::Internal)
        throw StorageError(meaning.problem, meaning.number, {reason});
    throw StorageError(meaning.problem, meaning.number, {name, reason});
}

std::string_view FieldOf(const PGresult* result, int field) {
    const char* text = PQresultErrorField(result, field);
    return text ? text : "";
}

// "role "ana" does not exist", "database "gis" does not exist": the same words for two things.
bool IsUnknown(std::string_view thing, std::string_view text) {
    return text.find("FATAL:  " + std::string(thing) + " \"") != text.npos &&
           text.find("\" does not exist") != text.npos;
}

Meaning MeaningOfText(std::string_view text) {
    if (IsUnknown("role", text))
        return {{}, Problem::NotAllowed, Number::NotLetIn};
    if (IsUnknown("database", text))
        return {{}, Problem::Missing, Number::NoServerDatabase};
    return *std::ranges::find_if(
        kTexts, [&](const Meaning& meaning) { return text.find(meaning.sign) != text.npos; });
}

} // namespace

void ThrowPostgresError(const PGresult* result, const CString& name) {
    const std::string_view state = FieldOf(result, PG_DIAG_SQLSTATE);
    const CString reason = ReasonOf(PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY));
    // libpq makes a result of its own when the connection breaks under a statement.
    if (state.empty())
        Throw(MeaningOfText(PQresultErrorMessage(result)), name,
              ReasonOf(PQresultErrorMessage(result)));
    for (const Meaning& meaning : kStates)
        if (state.substr(0, meaning.sign.size()) == meaning.sign)
            Throw(meaning, name, reason);
    throw StorageError(Problem::Internal, Number::ServerRefusedStatement,
                       {name, reason, Platform::FromUtf8(state)});
}

void ThrowNoPostgresConnection(PGconn* connection, const CString& name) {
    if (!connection)
        throw StorageError(Problem::Internal, Number::Internal, {u"out of memory"});
    const char* text = PQerrorMessage(connection);
    if (PQconnectionNeedsPassword(connection))
        throw StorageError(Problem::NotAllowed, Number::NoPassword,
                           {name, Platform::FromUtf8(PQuser(connection))});
    Throw(MeaningOfText(text), name, ReasonOf(text));
}

} // namespace Storage
