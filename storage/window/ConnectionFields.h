// SPDX-License-Identifier: MIT
// What the connection window shows of an address, and the address that its fields make.
#pragma once

#include "storage/window/ServerUri.h"
#include "storage/window/Texts.h"

#include <span>

namespace Storage {

// Where a repository is.
enum class Place { File, Server, Service };

enum class Field { File, Host, Port, Database, User, Tls, Service };

// A field that cannot stay as it is, and what to do.
struct FieldProblem {
    Field field;
    WindowText text;
};

class ConnectionFields {
public:
    ConnectionFields() = default;

    // Reads "sqlite:PATH" or a URI of a PostgreSQL server; nothing when it is neither.  A
    // password in it is dropped.
    static std::optional<ConnectionFields> Parse(CStringView address);

    // The address; unchanged fields give the address that was read, letter by letter, but for
    // a password.  What the window does not show of it stays.
    CString Address() const;

    // What is wrong with the fields of the chosen place, in the window's order.
    std::vector<FieldProblem> Problems() const;

    Place place = Place::File;
    CString file;
    CString host; // or several: "one:5432,two:5433"
    CString port;
    CString database;
    CString user;
    CString tls; // as libpq names its modes; empty: not set
    CString service;

private:
    void ReadServer();
    ServerUri ServerAddress() const;
    ServerUri ServiceAddress() const;

    CString m_filePrefix = u"sqlite:";
    Place m_placeRead = Place::File;
    ServerUri m_uri;
};

// Whether a field is one of that place.
bool BelongsTo(Field field, Place place);

// libpq's modes, the least safe one first.
std::span<const char16_t* const> TlsModes();

// The mode to propose for a host: servers elsewhere must prove who they are; for one on this
// computer libpq's own choice will do (empty).
CString ProposedTls(CStringView host);

} // namespace Storage
