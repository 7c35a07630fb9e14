"""Plug-in libraries as a user drops them into the folder."""
import json
import unittest

from harness import BIN, Place

GOOD = BIN.parent / "tests/adapters/plugins/built/good.so"
EXAMPLE = BIN.parent / "examples/plugin/check_only.so"


class Plugins(unittest.TestCase):
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)
        self.place.ctl("setup", check=0)
        self.folder = self.place.root / "root/config/plugins"
        self.folder.mkdir(mode=0o700)

    def put(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        path.chmod(0o600)

    def test_a_good_one_is_silent_and_problems_are_told_once(self):
        self.put("example.so", EXAMPLE.read_bytes())
        self.assertEqual(self.place.ctl("sites", "list", check=0).stderr, "")

        self.put("notes.so", b"no library")
        result = self.place.ctl("sites", "list", "--json", check=0)
        self.assertEqual(json.loads(result.stdout), [])
        self.assertRegex(result.stderr, r'^QVRCOM\+: The plug-in "notes.so" is not used\. .*'
                                        rf'\n  Plug-ins are taken from "{self.folder}"\.\n$')

    def test_takes_the_place_of_a_bundled_component(self):
        self.place.add_device("--firmware", "5.01", "--partitions", "3", firmware="5.01")
        self.put("statistics.so", GOOD.read_bytes())
        result = self.place.ctl("stats", "retrieve", "--site", "101", "--partition", "3")
        self.assertRegex(result.stderr, r"No CSV of \d+\|3\|")
        self.assertEqual(result.stdout, "")


if __name__ == "__main__":
    unittest.main()
