// SPDX-License-Identifier: MIT
// A repository in a schema of its own on the tests' server, and the server's users who come to it.
#pragma once

#include "platform/text/Utf8.h"
#include "storage/Engine.h"
#include "storage/TestFiles.h"
#include "support/TestServer.h"

#include <gtest/gtest.h>

namespace Storage {

class ServerRepository : public testing::Test {
protected:
    void SetUp() override { ZEBX_NEEDS_SERVER(); }

    Address At(const std::string& user = "keeper") const {
        return ParseAddress(Platform::FromUtf8(schema.Uri(user)), {});
    }
    void Create() const { CreateRepository(At()); }
    std::unique_ptr<Store> OpenStore(const std::string& user = "keeper") const {
        StoreOptions options;
        options.stamp = [] { return Stamp{u"2026-11-22T08:05:19Z", u"ana", u"here", u"test"}; };
        return std::make_unique<Store>(OpenRepository(At(user)), std::move(options));
    }
    // Statements of the user's own; gives the server's complaint, or nothing.
    std::string ComplaintOf(const std::string& user, const std::string& sql) const {
        try {
            RunAt(schema.Uri(user), sql);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }
    std::string Table(const std::string& name) const { return schema.Name() + "." + name; }

    TestSchema schema;
};

} // namespace Storage
