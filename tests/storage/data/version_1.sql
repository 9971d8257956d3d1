-- The tables as programs up to November 2026 made them, with what one of them wrote: two files, of
-- which the second replaced the first.
CREATE TABLE head (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    schema_version INTEGER NOT NULL,
    revision INTEGER NOT NULL,
    last_id INTEGER NOT NULL,
    content_bytes INTEGER NOT NULL
) STRICT;

CREATE TABLE revision (
    number INTEGER PRIMARY KEY,
    made_at TEXT NOT NULL,
    user_name TEXT NOT NULL,
    workstation TEXT NOT NULL,
    program TEXT NOT NULL,
    operation TEXT NOT NULL,
    subject TEXT NOT NULL
) STRICT;

CREATE TABLE content (
    hash BLOB PRIMARY KEY NOT NULL,
    size_bytes INTEGER NOT NULL,
    bytes BLOB NOT NULL
) STRICT;

CREATE TABLE kind (
    id INTEGER PRIMARY KEY,
    content_code INTEGER NOT NULL,
    kind_id TEXT NOT NULL,
    message_number INTEGER NOT NULL,
    since_revision INTEGER NOT NULL REFERENCES revision (number),
    until_revision INTEGER REFERENCES revision (number),
    CHECK (until_revision > since_revision)
) STRICT;
CREATE UNIQUE INDEX kind_current ON kind (content_code, kind_id)
    WHERE until_revision IS NULL;

CREATE TABLE stored_file (
    id INTEGER PRIMARY KEY,
    holder INTEGER,
    position INTEGER NOT NULL,
    name TEXT NOT NULL,
    name_folded TEXT NOT NULL,
    file_manager_id TEXT NOT NULL,
    origin_id TEXT NOT NULL,
    custom_parameter TEXT NOT NULL,
    file_type INTEGER NOT NULL,
    size_bytes INTEGER NOT NULL,
    hash BLOB NOT NULL REFERENCES content (hash),
    since_revision INTEGER NOT NULL REFERENCES revision (number),
    until_revision INTEGER REFERENCES revision (number),
    CHECK (until_revision > since_revision)
) STRICT;
CREATE UNIQUE INDEX stored_file_current ON stored_file (file_type, origin_id, name_folded)
    WHERE holder IS NULL AND until_revision IS NULL;
CREATE INDEX stored_file_holder ON stored_file (holder, position)
    WHERE holder IS NOT NULL;

CREATE TABLE general_settings (
    id INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    size_bytes INTEGER NOT NULL,
    hash BLOB NOT NULL REFERENCES content (hash),
    since_revision INTEGER NOT NULL REFERENCES revision (number),
    until_revision INTEGER REFERENCES revision (number),
    CHECK (until_revision > since_revision)
) STRICT;
CREATE UNIQUE INDEX general_settings_current ON general_settings (name)
    WHERE until_revision IS NULL;

CREATE TABLE repository_item (
    id INTEGER PRIMARY KEY,
    tag TEXT NOT NULL,
    item_id TEXT NOT NULL,
    position INTEGER NOT NULL,
    name TEXT NOT NULL,
    entity_type INTEGER NOT NULL,
    topology_function INTEGER NOT NULL,
    topology_type INTEGER NOT NULL,
    configuration_xml TEXT NOT NULL,
    repository_name TEXT NOT NULL,
    repository_tag TEXT NOT NULL,
    since_revision INTEGER NOT NULL REFERENCES revision (number),
    until_revision INTEGER REFERENCES revision (number),
    CHECK (until_revision > since_revision)
) STRICT;
CREATE UNIQUE INDEX repository_item_current ON repository_item (tag, item_id)
    WHERE until_revision IS NULL;

CREATE TABLE catalogue_item (
    id INTEGER PRIMARY KEY,
    catalogue_tag TEXT NOT NULL,
    item_id TEXT NOT NULL,
    parent_id TEXT NOT NULL,
    position INTEGER NOT NULL,
    is_group INTEGER NOT NULL,
    name TEXT NOT NULL,
    catalogue_name TEXT NOT NULL,
    item_content TEXT NOT NULL,
    since_revision INTEGER NOT NULL REFERENCES revision (number),
    until_revision INTEGER REFERENCES revision (number),
    CHECK (until_revision > since_revision)
) STRICT;
CREATE UNIQUE INDEX catalogue_item_current ON catalogue_item (catalogue_tag, item_id)
    WHERE until_revision IS NULL;
CREATE INDEX catalogue_item_children ON catalogue_item (catalogue_tag, parent_id, position)
    WHERE until_revision IS NULL;

INSERT INTO head VALUES (1, 1, 2, 3, 3);
INSERT INTO revision VALUES
    (1, '2026-11-20T07:00:00Z', 'ana', 'station-1', 'test 1.0', 'AddRepositoryFiles', '001_LABEL'),
    (2, '2026-11-20T08:00:00Z', 'ana', 'station-1', 'test 1.0', 'AddRepositoryFiles', '001_LABEL');
INSERT INTO content VALUES
    (x'6b86b273ff34fce19d6b804eff5a3f5747ada4eaa22f1d49c01e52ddb7875b4b', 1, x'31'),
    (x'785f3ec7eb32f30b90cd0fcf3657d388b5ff4297f2f9716ff66e9b69c05ddd09', 2, x'3232');
INSERT INTO kind VALUES (1, 4, '001_LABEL', 0, 1, NULL);
INSERT INTO stored_file VALUES
    (2, NULL, 2, 'a.dwg', 'a.dwg', 'NCF', '001_LABEL', '001_LABEL', 4, 1,
     x'6b86b273ff34fce19d6b804eff5a3f5747ada4eaa22f1d49c01e52ddb7875b4b', 1, 2),
    (3, NULL, 2, 'a.dwg', 'a.dwg', 'NCF', '001_LABEL', '001_LABEL', 4, 2,
     x'785f3ec7eb32f30b90cd0fcf3657d388b5ff4297f2f9716ff66e9b69c05ddd09', 2, NULL);
