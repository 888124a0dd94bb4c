"""The schemas against themselves, their examples, the table of records and the document."""

import contextlib
import io
import json
import os
import pathlib
import re
import sys
import tempfile
import unittest
import warnings

import jsonschema

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "scripts"))
import check_exchange  # noqa: E402


class SchemasTest(unittest.TestCase):
    def setUp(self):
        self.schemas = check_exchange.Schemas()

    def test_there_is_one_for_each_of_the_six_records(self):
        self.assertEqual(set(self.schemas.documents),
                         {*check_exchange.RECORDS.values(), "overlay-line"})

    def test_are_schemas_themselves(self):
        for document in self.schemas.documents.values():
            jsonschema.Draft202012Validator.check_schema(document)

    def test_describe_every_key(self):
        for name, document in self.schemas.documents.items():
            for key, described in document["properties"].items():
                self.assertTrue(described.get("description") or "$ref" in described, (name, key))

    def test_accept_their_examples(self):
        for name, document in self.schemas.documents.items():
            self.assertGreaterEqual(len(document["examples"]), 2, name)
            for example in document["examples"]:
                self.assertEqual(self.schemas.faults(name, example), [], (name, example))

    def test_judge_the_table_of_records_as_it_says(self):
        verdicts = {"valid": 0, "invalid": 0}
        for line in (SOURCE / "tests/schema/records.tsv").read_text("utf-8").splitlines():
            if line.startswith("# "):
                continue
            name, _, expected, why, text = line.split("\t")
            faults = self.schemas.faults_in_bytes(name, text.encode("utf-8"))
            with self.subTest(record=name, why=why):
                self.assertEqual("invalid" if faults else "valid", expected, faults)
            verdicts[expected] += 1
        self.assertGreater(verdicts["valid"], 30)
        self.assertGreater(verdicts["invalid"], 100)


class DocumentTest(unittest.TestCase):
    """docs/exchange.md: a code block "json FILE" holds a file of that name."""

    def test_its_examples_are_valid(self):
        schemas = check_exchange.Schemas()
        text = (SOURCE / "docs/exchange.md").read_text("utf-8")
        seen = set()
        for name, block in re.findall(r"^```json (\S+)\n(.*?)^```$", text, re.M | re.S):
            self.assertEqual(
                schemas.faults_in_bytes(check_exchange.RECORDS[name], block.encode("utf-8")), [], name)
            seen.add(name)
        self.assertEqual(seen, set(check_exchange.RECORDS))


class CheckerTest(unittest.TestCase):
    """What the checker of files sees, and that it cannot pass over nothing."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.schemas = check_exchange.Schemas()

    def faults(self, name, text):
        (self.folder / name).write_bytes(text.encode("utf-8"))
        return check_exchange.check_file(self.schemas, self.folder / name)

    def test_takes_a_companions_file_in_any_form(self):
        self.assertEqual(self.faults("sync.json", '{ "other": 1,\n "updatedAt": 5 }\n'), [])

    def test_takes_the_overlays_file_in_its_form_alone(self):
        self.assertEqual(self.faults("status.json", '{"message":"a\\/b é: c","stopped":false}'), [])
        for text in ('{"message":"a/b","stopped":false}', '{"message": "m","stopped":false}',
                     '{"stopped":false,"message":"m"}', '{"message":"m","stopped":false}\n',
                     '{"message":"m","stopped":false,"more":1}'):
            with self.subTest(text):
                self.assertNotEqual(self.faults("status.json", text), [])

    def test_wants_every_key_of_the_overlay(self):
        whole = ('{"version":1,"updatedAt":5.5,"title":"t","artist":"a","album":"b","position":1e-05,'
                 '"playing":true}')
        self.assertEqual(self.faults("nowplaying.json", whole), [])
        self.assertNotEqual(
            self.faults("nowplaying.json", whole.replace(',"playing":true', "")), [])

    def test_refuses_a_key_that_stands_twice(self):
        self.assertNotEqual(self.faults("sync.json", '{"updatedAt":5,"updatedAt":6}'), [])

    def test_finds_files_at_every_depth(self):
        deep = self.folder / "a" / "b"
        deep.mkdir(parents=True)
        for name in ("sync.json", "other.json"):
            (deep / name).write_text(json.dumps({}))
        self.assertEqual(list(check_exchange.exchange_files([self.folder])), [deep / "sync.json"])

    def test_says_what_is_missing_or_unreadable(self):
        (self.folder / "status.json").mkdir()
        for path, said in ((self.folder / "none", "none is not there"),
                           (self.folder / "snapshot.json", "snapshot.json is not there")):
            sys.argv = ["check_exchange.py", str(path)]
            errors = io.StringIO()
            with self.assertRaises(SystemExit) as ended, contextlib.redirect_stderr(errors):
                check_exchange.main()
            self.assertEqual(ended.exception.code, 2)
            self.assertIn(said, errors.getvalue())
        self.assertEqual(check_exchange.check_file(self.schemas, self.folder / "status.json"),
                         ["cannot be read: Is a directory"])

    def test_does_not_wait_for_a_pipe(self):
        os.mkfifo(self.folder / "sync.json")
        self.assertEqual(check_exchange.check_file(self.schemas, self.folder / "sync.json"),
                         ["is no regular file"])

    def test_says_where_there_are_no_schemas(self):
        self.faults("sync.json", '{"updatedAt":5}')
        sys.argv = ["check_exchange.py", "--schemas", str(self.folder), str(self.folder)]
        errors = io.StringIO()
        with self.assertRaises(SystemExit) as ended, contextlib.redirect_stderr(errors):
            check_exchange.main()
        self.assertEqual(ended.exception.code, 2)
        self.assertIn("does not hold the schemas", errors.getvalue())

    def test_uses_nothing_that_its_library_is_about_to_drop(self):
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            self.assertEqual(self.schemas.faults("sync-request", {"updatedAt": 5}), [])
            self.assertNotEqual(self.schemas.faults("overlay-snapshot", {"lines": [{}]}), [])

    def test_ends_with_what_it_found(self):
        def status(*paths):
            sys.argv = ["check_exchange.py", *map(str, paths)]
            return check_exchange.main()

        self.assertEqual(status(self.folder), 2)
        self.faults("sync.json", '{"updatedAt":5}')
        self.assertEqual(status(self.folder), 0)
        self.faults("command.json", "{}")
        self.assertEqual(status(self.folder), 1)


if __name__ == "__main__":
    unittest.main()
