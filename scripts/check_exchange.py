#!/usr/bin/env python3
"""Checks the files of an exchange folder against the schemas in docs/schema.

usage: check_exchange.py [--schemas FOLDER] FILE-OR-FOLDER...

A file is judged by its name: snapshot.json, sync.json, command.json, nowplaying.json, status.json;
in folders those are looked for at every depth. Files that the overlay writes must also have the
overlay's form: every key, in the schema's order, and no blank between them. Exit status 0: all are
right; 1: the lines on standard output say which are not; 2: nothing was checked.

Needs the package python3-jsonschema.
"""

import argparse
import json
import math
import pathlib
import sys

try:
    import jsonschema
except ImportError:
    print("check_exchange.py: jsonschema is missing; apt-get install python3-jsonschema brings it",
          file=sys.stderr)
    sys.exit(2)

RECORDS = {
    "snapshot.json": "overlay-snapshot",
    "sync.json": "sync-request",
    "command.json": "music-command",
    "nowplaying.json": "now-playing-track",
    "status.json": "overlay-status",
}
WRITTEN_BY_OVERLAY = ("nowplaying.json", "status.json")
HERE = pathlib.Path(__file__).resolve().parent
# Beside this program where it is installed, else where the project has them.
SCHEMAS = HERE / "schema" if (HERE / "schema").is_dir() else HERE.parent / "docs" / "schema"
ENDING = ".schema.json"


def load_json(data):
    """The value in the bytes; ValueError where they are not JSON as the programs read it."""

    def number(text):
        value = float(text)
        if not math.isfinite(value):
            raise ValueError(f"the number {text} is too large")
        return value

    def constant(text):
        raise ValueError(f"{text} is no JSON number")

    def members(pairs):
        names = [name for name, _ in pairs]
        for name in names:
            if names.count(name) > 1:
                raise ValueError(f"the key {name!r} stands twice")
        return dict(pairs)

    value = json.loads(data.decode("utf-8-sig"), parse_float=number, parse_constant=constant,
                       object_pairs_hook=members)
    json.dumps(value, ensure_ascii=False).encode("utf-8")  # refuses lone surrogates
    return value


class Schemas:
    """The schemas of a folder, by their names without ".schema.json"."""

    def __init__(self, folder=SCHEMAS):
        self.documents = {}
        for path in sorted(pathlib.Path(folder).glob("*" + ENDING)):
            document = json.loads(path.read_text(encoding="utf-8"))
            self.documents[path.name[: -len(ENDING)]] = document

    def _whole(self, schema):
        """The schema with those that it refers to, each a file of the folder, in their places."""
        if isinstance(schema, list):
            return [self._whole(part) for part in schema]
        if not isinstance(schema, dict):
            return schema
        whole = {key: self._whole(part) for key, part in schema.items() if key != "$ref"}
        if "$ref" in schema:
            whole.update(self._whole(self.documents[schema["$ref"][: -len(ENDING)]]))
        return whole

    def faults(self, name, value):
        """What is wrong with the value as a record of that name: a list of texts, empty if right."""
        validator = jsonschema.Draft202012Validator(self._whole(self.documents[name]))
        return [f"{'/'.join(map(str, fault.absolute_path)) or 'the record'}: {fault.message}"
                for fault in validator.iter_errors(value)]

    def faults_in_bytes(self, name, data):
        try:
            return self.faults(name, load_json(data))
        except (ValueError, RecursionError) as error:
            return [f"not JSON as it is read: {error}"]

    def faults_in_form(self, name, data):
        """What differs from the form in which the overlay writes a record of that name."""
        value = load_json(data)
        faults = []
        if list(value) != list(self.documents[name]["properties"]):
            faults.append(f"the keys {list(value)} are not all keys in the schema's order")
        compact = json.dumps(value, ensure_ascii=False, separators=(",", ":")).replace("/", "\\/")
        if data != compact.encode("utf-8"):
            faults.append(f"not in the compact form {compact}")
        return faults


def check_file(schemas, path):
    name = RECORDS[path.name]
    if path.exists() and not path.is_file() and not path.is_dir():
        return ["is no regular file"]  # reading it might wait for ever
    try:
        data = path.read_bytes()
    except OSError as error:
        return [f"cannot be read: {error.strerror}"]
    faults = schemas.faults_in_bytes(name, data)
    if not faults and path.name in WRITTEN_BY_OVERLAY:
        faults = schemas.faults_in_form(name, data)
    return faults


def exchange_files(paths):
    for path in paths:
        if path.is_dir():
            yield from sorted(p for p in path.rglob("*.json") if p.name in RECORDS)
        else:
            yield path


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--schemas", type=pathlib.Path, default=SCHEMAS)
    parser.add_argument("paths", type=pathlib.Path, nargs="+", metavar="FILE-OR-FOLDER")
    options = parser.parse_args()
    for path in options.paths:
        if not path.exists():
            parser.error(f"{path} is not there")
    schemas = Schemas(options.schemas)
    if not set(RECORDS.values()) <= set(schemas.documents):
        parser.error(f"{options.schemas} does not hold the schemas; name their folder with --schemas")
    counts = {}
    wrong = 0
    for path in exchange_files(options.paths):
        if path.name not in RECORDS:
            parser.error(f"{path} is named like no file of the exchange: {', '.join(RECORDS)}")
        counts[path.name] = counts.get(path.name, 0) + 1
        for fault in check_file(schemas, path):
            wrong += 1
            print(f"{path}: {fault}")
    print("checked: " + (", ".join(f"{counts[name]} {name}" for name in sorted(counts)) or "nothing"))
    if not counts:
        return 2
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
