#!/usr/bin/env python3
"""validate.py SCHEMAS FOLDER: validates each file of FOLDER, which holds one JSON, by the schema that it names.
validate.py SCHEMAS --lines: the same for each line of standard input.
validate.py SCHEMAS --keys DOCUMENT: each key of the schemas stands in DOCUMENT, as `key`.

SCHEMAS is a folder; what names nuvlp/result/1 is of its result.schema.json.
"""
import json
import re
import sys
from pathlib import Path


def keys_of(schema):
    """All names of properties below a schema."""
    if isinstance(schema, list):
        return set().union(set(), *map(keys_of, schema))
    if not isinstance(schema, dict):
        return set()
    return set(schema.get("properties", ())) | keys_of(list(schema.values()))


def refuse(word):
    raise ValueError(f"{word} is no JSON")


class Schemas:
    def __init__(self, folder):
        import jsonschema

        # What all have in common is put into each, so that nothing needs to be looked up.
        texts = {path.name: path.read_text() for path in folder.glob("*.schema.json")}
        common = json.loads(texts["common.schema.json"])["$defs"]
        self.schemas = [json.loads(text.replace("common.schema.json#", "#")) for text in texts.values()]
        self.validators = {}
        for name, schema in zip(texts, self.schemas):
            schema["$defs"] = {**common, **schema["$defs"]}
            jsonschema.Draft202012Validator.check_schema(schema)
            self.validators[name] = jsonschema.Draft202012Validator(schema)

    def faults(self, text):
        """What is wrong with a JSON, one sentence each."""
        try:
            value = json.loads(text, parse_constant=refuse)
        except ValueError as error:
            return [f"this is no JSON: {error}"]
        named = re.fullmatch(r"nuvlp/([a-z]+)/1", str(value.get("schema"))) if isinstance(value, dict) else None
        validator = self.validators.get(f"{named[1]}.schema.json") if named else None
        if not validator:
            return ["it names no schema of these"]
        return [f"{error.json_path}: {error.message}" for error in validator.iter_errors(value)]


def main(folder, what, document=None):
    schemas = Schemas(Path(folder))
    faults, count = [], 0
    if what == "--keys":
        documented = set(re.findall(r"`([a-z_]+)`", Path(document).read_text()))
        keys = keys_of(schemas.schemas)
        faults, count = [f"{document} says nothing of `{key}`" for key in sorted(keys - documented)], len(keys)
    else:
        texts = (
            [("", line) for line in sys.stdin]
            if what == "--lines"
            else [(f"{path.name}: ", path.read_text()) for path in sorted(Path(what).iterdir())]
        )
        count = len(texts)
        faults = [f"{name}{fault}\n{text[:2000]}" for name, text in texts for fault in schemas.faults(text)]
    print(*faults, f"{count} looked at, {len(faults)} faults", sep="\n")
    return 1 if faults or not count else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
