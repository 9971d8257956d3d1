#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""usage: check_document.py SCHEMAS < DOCUMENT

Holds one document of zebx --json against the schema that it names, in the folder SCHEMAS.
Prints what does not fit and ends with status 1.
"""

import json
import pathlib
import re
import sys

import jsonschema


def no_duplicates(pairs):
    names = [name for name, _ in pairs]
    if len(names) != len(set(names)):
        raise ValueError(f"a field stands twice: {names}")
    return dict(pairs)


folder = pathlib.Path(sys.argv[1]).resolve()
# Strictly UTF-8 and one document: what follows it is an error.
document = json.loads(sys.stdin.buffer.read().decode("utf-8"), object_pairs_hook=no_duplicates)
name = re.fullmatch(r"zebx/([a-z-]+)/1", document["schema"]).group(1)
schema = json.loads((folder / f"{name}.json").read_text(encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
schema["$id"] = (folder / f"{name}.json").as_uri()  # what its references count from
problems = list(jsonschema.Draft202012Validator(schema).iter_errors(document))
for problem in problems:
    print(f"{problem.json_path}: {problem.message}")
sys.exit(1 if problems else 0)
