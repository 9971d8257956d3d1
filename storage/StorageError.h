// SPDX-License-Identifier: MIT
// How the storage says that something went wrong: a kind of problem and one or more
// messages by number, which the plug-in's border turns into the user's language.
#pragma once

#include "ZEBXRepositoryStorage/RepositoryAdministration.h"
#include "storage/Messages.h"

#include <exception>

namespace Storage {

class StorageError : public std::exception {
public:
    StorageError(Problem problem, std::vector<Message> messages)
        : m_problem(problem), m_messages(std::move(messages)) {}
    StorageError(Problem problem, MessageNumber number, std::vector<CString> values = {})
        : StorageError(problem, std::vector<Message>{{number, std::move(values)}}) {}

    const char* what() const noexcept override { return "storage error"; }
    Problem Kind() const { return m_problem; }
    // Never empty; each is a line of its own for the user.
    const std::vector<Message>& Messages() const { return m_messages; }

private:
    Problem m_problem;
    std::vector<Message> m_messages;
};

// There is no connection and none can be made.
class NoConnection : public StorageError {
public:
    explicit NoConnection(const StorageError& reason) : StorageError(reason) {}
};

} // namespace Storage
