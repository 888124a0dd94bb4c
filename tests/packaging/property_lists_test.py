"""Reads the filled-in Info.plist and the entitlements as macOS would.

    property_lists_test.py INFO_PLIST SOURCE_FOLDER VERSION
"""
import pathlib
import plistlib
import re
import sys
import unittest

INFO, SOURCE, VERSION = sys.argv[1:4]
PACKAGING = pathlib.Path(SOURCE) / "packaging" / "macos"


def texts(value):
    """Every text in a property list, keys included."""
    if isinstance(value, dict):
        for key, inner in value.items():
            yield key
            yield from texts(inner)
    elif isinstance(value, list):
        for inner in value:
            yield from texts(inner)
    elif isinstance(value, str):
        yield value


class InfoPlistTest(unittest.TestCase):
    def setUp(self):
        with open(INFO, "rb") as file:
            self.info = plistlib.load(file, fmt=plistlib.FMT_XML)

    def test_every_placeholder_is_filled_in(self):
        for text in texts(self.info):
            self.assertNotRegex(text, r"[@$]|^\s*$")

    def test_names_the_bundle_and_its_program(self):
        self.assertEqual(self.info["CFBundleIdentifier"], "org.vellora.Vellora")
        self.assertEqual(self.info["CFBundleExecutable"], "Vellora")
        self.assertEqual(self.info["CFBundleName"], "Vellora")
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")
        self.assertEqual(self.info["CFBundleInfoDictionaryVersion"], "6.0")

    def test_versions_are_the_projects(self):
        self.assertRegex(VERSION, r"^\d+\.\d+\.\d+$")
        self.assertEqual(self.info["CFBundleVersion"], VERSION)
        self.assertEqual(self.info["CFBundleShortVersionString"], VERSION)

    def test_has_no_dock_icon(self):
        self.assertIs(self.info["LSUIElement"], True)

    def test_opens_urls_of_one_scheme(self):
        types = self.info["CFBundleURLTypes"]
        self.assertEqual([kind["CFBundleURLSchemes"] for kind in types], [["tessaly-overlay"]])

    def test_runs_from_macos_13_on(self):
        self.assertEqual(self.info["LSMinimumSystemVersion"], "13.0")

    def test_tells_the_user_why_it_asks_to_control_the_player(self):
        reason = self.info["NSAppleEventsUsageDescription"]
        self.assertRegex(reason, r"^Vellora .*Music.*\.$")
        self.assertNotRegex(reason, r"(?i)applescript|apple ?event|json|script|api\b")

    def test_icon_is_there(self):
        name = self.info["CFBundleIconFile"]
        self.assertTrue((PACKAGING / (name + ".icns")).is_file())

    def test_copyright_is_the_licences(self):
        licence = (pathlib.Path(SOURCE) / "LICENSE").read_text(encoding="utf-8")
        self.assertIn(self.info["NSHumanReadableCopyright"] + "\n", licence)

    def test_drawing_is_not_doubled_on_sharp_displays(self):
        self.assertIs(self.info["NSHighResolutionCapable"], True)


class EntitlementsTest(unittest.TestCase):
    def test_asks_for_nothing_but_to_send_events_to_the_player(self):
        with open(PACKAGING / "Vellora.entitlements", "rb") as file:
            entitlements = plistlib.load(file, fmt=plistlib.FMT_XML)
        self.assertEqual(entitlements, {"com.apple.security.automation.apple-events": True})
        self.assertIs(entitlements["com.apple.security.automation.apple-events"], True)


class WorkflowsTest(unittest.TestCase):
    def workflows(self):
        files = sorted((pathlib.Path(SOURCE) / ".github" / "workflows").glob("*.yml"))
        self.assertTrue(files)
        return [(file.name, file.read_text(encoding="utf-8")) for file in files]

    def test_actions_are_pinned_by_commit(self):
        for name, text in self.workflows():
            used = re.findall(r"^\s*-?\s*uses:\s*(.*)$", text, re.MULTILINE)
            self.assertTrue(used, name)
            for action in used:
                self.assertRegex(action, r"^[\w.-]+/[\w./-]+@[0-9a-f]{40} # v\d+\.\d+\.\d+$", name)

    def test_may_read_the_repository_and_nothing_more(self):
        for name, text in self.workflows():
            self.assertIn("\npermissions:\n  contents: read\n\n", text, name)
            self.assertEqual(len(re.findall(r"\bpermissions:", text)), 1, name)
            self.assertNotIn("secrets.", text, name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
