// SPDX-License-Identifier: MIT
// A URI of a PostgreSQL server, taken apart and put together again:
//
//     postgresql://USER@HOST:PORT/DATABASE?NAME=VALUE&NAME=VALUE
//
// as libpq reads it.  What nobody changes comes out as it went in, but for passwords, which
// this system never shows and never keeps: they are gone once the URI is read.
#pragma once

#include "platform/text/Text.h"

#include <optional>
#include <vector>

namespace Storage {

class ServerUri {
public:
    // Nothing when it is none, or is one of which it is not clear where a password ends.
    static std::optional<ServerUri> Parse(CStringView text);

    // The value of one of libpq's keywords ("host", "dbname", "sslmode"), decoded, wherever in
    // the URI it stands; empty when it does not.  Several hosts stand with their ports, as they
    // are written: "one:5432,[::1]:5433".
    CString Value(CStringView keyword) const;
    // Sets it where it stands, or where it usually does; empty: takes it out.
    void SetValue(CStringView keyword, CStringView value);

    CString Text() const;

private:
    // As they stand, encoded.  A part that is there and empty keeps its separator.
    using Part = std::optional<CString>;
    struct Parameter {
        CString name;
        CString value;
    };

    bool ReadAuthority(CStringView text);
    bool ReadHost(CStringView text);
    bool ReadParameters(CStringView text);
    bool IsDecodable() const;

    void SetHost(CStringView value);
    const Part* PartOf(CStringView keyword) const;
    Part* PartOf(CStringView keyword);
    const Parameter* Find(CStringView keyword) const;
    Parameter* Find(CStringView keyword);

    CString m_scheme = u"postgresql://";
    Part m_user;
    Part m_host;
    Part m_port;
    Part m_database;
    std::vector<Parameter> m_parameters;
    CString m_tail; // a "?" or "&" that nothing follows
};

} // namespace Storage
