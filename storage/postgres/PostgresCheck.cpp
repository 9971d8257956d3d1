// SPDX-License-Identifier: MIT
#include "storage/postgres/PostgresCheck.h"

#include "platform/text/Utf8.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <set>
#include <string>

namespace Storage {
namespace {

// What is said of each table, in the server's own words; of the schema itself under "".
using Facts = std::map<std::string, std::set<std::string>>;

// Of the tables of this schema, whatever takes their place: columns, constraints, indexes, and
// what would change the meaning of reading and writing.
constexpr SqlText kTableFacts =
    "WITH tables AS (SELECT * FROM pg_class WHERE relkind IN ('r', 'p', 'v', 'm', 'f') "
    "AND relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = current_schema())) "

    "SELECT c.relname::text, a.attname || ' ' || format_type(a.atttypid, a.atttypmod) || "
    "CASE WHEN a.attcollation <> t.typcollation THEN ' COLLATE ' || l.collname ELSE '' END || "
    "CASE WHEN a.attnotnull THEN ' NOT NULL' ELSE '' END "
    "FROM pg_attribute a JOIN tables c ON c.oid = a.attrelid "
    "JOIN pg_type t ON t.oid = a.atttypid LEFT JOIN pg_collation l ON l.oid = a.attcollation "
    "WHERE a.attnum > 0 AND NOT a.attisdropped "

    "UNION ALL SELECT c.relname::text, pg_get_constraintdef(k.oid) "
    "FROM pg_constraint k JOIN tables c ON c.oid = k.conrelid WHERE k.contype <> 'n' "

    "UNION ALL SELECT c.relname::text, regexp_replace(pg_get_indexdef(i.indexrelid), "
    "'^CREATE (.*) ON \\S+ USING btree (.*)$', '\\1 \\2') || "
    "CASE WHEN i.indisvalid AND i.indisready THEN '' ELSE ' INVALID' END "
    "FROM pg_index i JOIN tables c ON c.oid = i.indrelid WHERE NOT i.indisvalid "
    "OR NOT EXISTS (SELECT FROM pg_constraint k WHERE k.conindid = i.indexrelid "
    "AND k.conrelid = i.indrelid) "

    "UNION ALL SELECT DISTINCT c.relname::text, CASE WHEN g.tgisinternal "
    "THEN 'FOREIGN KEY DISABLED' ELSE 'TRIGGER ' || g.tgname END "
    "FROM pg_trigger g JOIN tables c ON c.oid = g.tgrelid "
    "WHERE NOT g.tgisinternal OR g.tgenabled <> 'O' "

    "UNION ALL SELECT c.relname::text, 'RULE ' || r.rulename "
    "FROM pg_rewrite r JOIN tables c ON c.oid = r.ev_class "

    "UNION ALL SELECT relname::text, 'ROW LEVEL SECURITY' FROM tables WHERE relrowsecurity "
    "UNION ALL SELECT relname::text, 'UNLOGGED' FROM tables WHERE relpersistence <> 'p' "
    "UNION ALL SELECT relname::text, 'INHERITANCE' FROM tables c WHERE EXISTS "
    "(SELECT FROM pg_inherits i WHERE c.oid IN (i.inhrelid, i.inhparent))";

// What was granted to everybody and to the two group roles, and these themselves.
constexpr SqlText kRightFacts =
    "WITH schema AS (SELECT * FROM pg_namespace WHERE nspname = current_schema()), "
    "roles AS (SELECT oid, 'reader' AS label FROM pg_roles "
    "WHERE rolname = current_schema() || '_reader' UNION ALL SELECT oid, 'admin' FROM pg_roles "
    "WHERE rolname = current_schema() || '_admin' UNION ALL SELECT 0::oid, 'PUBLIC'), "
    "tables AS (SELECT c.* FROM pg_class c JOIN schema s ON c.relnamespace = s.oid "
    "WHERE c.relkind IN ('r', 'p', 'v', 'm', 'f')), "
    "granted AS (SELECT '' AS place, e.grantee, e.privilege_type AS allowed, e.is_grantable "
    "FROM schema, aclexplode(nspacl) e "
    "UNION ALL SELECT relname::text, e.grantee, e.privilege_type, e.is_grantable "
    "FROM tables, aclexplode(relacl) e "
    "UNION ALL SELECT c.relname::text, e.grantee, "
    "e.privilege_type || ' (' || a.attname || ')', e.is_grantable FROM tables c "
    "JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0, aclexplode(a.attacl) e) "

    "SELECT DISTINCT g.place, r.label || ': ' || g.allowed || "
    "CASE WHEN g.is_grantable THEN ' WITH GRANT OPTION' ELSE '' END "
    "FROM granted g JOIN roles r ON r.oid = g.grantee "

    "UNION ALL SELECT '', 'role ' || r.label || "
    "CASE WHEN p.rolsuper THEN ' SUPERUSER' ELSE '' END || "
    "CASE WHEN p.rolcanlogin THEN ' LOGIN' ELSE '' END "
    "FROM roles r JOIN pg_roles p ON p.oid = r.oid";

void Read(SqlRows& rows, Facts& facts) {
    while (rows.Next())
        facts[std::string(rows.Text(0))].insert(std::string(rows.Text(1)));
}

const std::set<std::string> kRevision = {"FOREIGN KEY (since_revision) REFERENCES revision(number)",
                                         "FOREIGN KEY (until_revision) REFERENCES revision(number)",
                                         "CHECK ((until_revision > since_revision))",
                                         "since_revision bigint NOT NULL", "until_revision bigint"};

const std::string kText = " text COLLATE C NOT NULL";
const std::string kNumber = " bigint NOT NULL";

class Expected {
public:
    Expected();
    const Facts& All() const { return m_facts; }

private:
    using Names = std::initializer_list<const char*>;

    void Table(const std::string& name, Names numbers, Names texts, Names others) {
        std::set<std::string>& facts = m_facts[name];
        for (const char* column : numbers)
            facts.insert(column + kNumber);
        for (const char* column : texts)
            facts.insert(column + kText);
        facts.insert(others.begin(), others.end());
        facts.insert({"reader: SELECT", "admin: SELECT"});
        if (name != "head")
            facts.insert("admin: INSERT");
    }
    // Its rows are valid since one revision and until another.
    void Versioned(const std::string& name, Names numbers, Names texts, Names others) {
        Table(name, numbers, texts, others);
        std::set<std::string>& facts = m_facts[name];
        facts.insert(kRevision.begin(), kRevision.end());
        facts.insert({"PRIMARY KEY (id)", "id" + kNumber, "admin: UPDATE (until_revision)",
                      "INDEX " + name + "_since (since_revision)",
                      "INDEX " + name +
                          "_until (until_revision) "
                          "WHERE (until_revision IS NOT NULL)"});
    }

    Facts m_facts;
};

Expected::Expected() {
    m_facts[""] = {"role reader", "role admin", "reader: USAGE", "admin: USAGE"};
    Table("head", {"id", "schema_version", "revision", "last_id", "content_bytes"}, {},
          {"PRIMARY KEY (id)", "CHECK ((id = 1))", "admin: UPDATE (revision)",
           "admin: UPDATE (last_id)", "admin: UPDATE (content_bytes)"});
    Table("revision", {"number"},
          {"made_at", "user_name", "workstation", "program", "operation", "subject"},
          {"PRIMARY KEY (number)"});
    Table("content", {"size_bytes"}, {},
          {"PRIMARY KEY (hash)", "hash bytea NOT NULL", "bytes bytea NOT NULL"});
    Versioned("kind", {"content_code", "message_number"}, {"kind_id"},
              {"UNIQUE INDEX kind_current (content_code, kind_id) WHERE (until_revision IS NULL)"});
    Versioned("stored_file", {"position", "file_type", "size_bytes"},
              {"name", "name_folded", "file_manager_id", "origin_id", "custom_parameter"},
              {"holder bigint", "hash bytea NOT NULL",
               "FOREIGN KEY (hash) REFERENCES content(hash)",
               ("UNIQUE INDEX stored_file_current (file_type, origin_id, name_folded) "
                "WHERE ((holder IS NULL) AND (until_revision IS NULL))"),
               "INDEX stored_file_holder (holder, \"position\") WHERE (holder IS NOT NULL)"});
    Versioned("general_settings", {"size_bytes"}, {"name"},
              {"hash bytea NOT NULL", "FOREIGN KEY (hash) REFERENCES content(hash)",
               "UNIQUE INDEX general_settings_current (name) WHERE (until_revision IS NULL)"});
    Versioned("repository_item", {"position", "entity_type", "topology_function", "topology_type"},
              {"tag", "item_id", "name", "configuration_xml", "repository_name", "repository_tag"},
              {"UNIQUE INDEX repository_item_current (tag, item_id) "
               "WHERE (until_revision IS NULL)"});
    Versioned("catalogue_item", {"position", "is_group"},
              {"catalogue_tag", "item_id", "parent_id", "name", "catalogue_name", "item_content"},
              {"UNIQUE INDEX catalogue_item_current (catalogue_tag, item_id) "
               "WHERE (until_revision IS NULL)",
               "INDEX catalogue_item_children (catalogue_tag, parent_id, \"position\") "
               "WHERE (until_revision IS NULL)"});
}

void Compare(const std::string& table, const std::set<std::string>& expected,
             const std::set<std::string>& found, const TellFinding& tell) {
    const Message where = table.empty()
                              ? Message{MessageNumber::InDatabase, {}}
                              : Message{MessageNumber::InTable, {Platform::FromUtf8(table)}};
    const auto tellAll = [&](MessageNumber number, const std::set<std::string>& left,
                             const std::set<std::string>& right) {
        for (const std::string& fact : left)
            if (!right.contains(fact))
                tell(where, {number, {Platform::FromUtf8(fact)}});
    };
    // One line says it of all that a table has.
    if (found.empty())
        tell(where, {MessageNumber::ServerLacks, {u"TABLE"}});
    else
        tellAll(MessageNumber::ServerLacks, expected, found);
    tellAll(MessageNumber::ServerHasMore, found, expected);
}

} // namespace

void CheckPostgres(SqlConnection& sql, const TellFinding& tell) {
    Facts found;
    {
        const ReadTransaction transaction(sql);
        const auto tables = sql.Query(kTableFacts, {});
        const auto rights = sql.Query(kRightFacts, {});
        Read(*tables, found);
        Read(*rights, found);
    }
    static const Expected kExpected;
    for (const auto& [table, facts] : kExpected.All())
        Compare(table, facts, found[table], tell);
}

} // namespace Storage
