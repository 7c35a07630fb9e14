"""The lint that guards the floors, tried on small houses."""
import pathlib
import subprocess
import tempfile
import unittest

LINT = pathlib.Path(__file__).resolve().parents[2] / "tools" / "lint" / "floors.py"
HOUSE = "qvrcom_floor(low)\nqvrcom_floor(high DEPENDS low)\nqvrcom_floor(view DEPENDS high LINKS Qt6::Core)\n"


def lint(files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in {"CMakeLists.txt": HOUSE, "low/a.h": "", "high/b.h": '#include "low/a.h"',
                            "view/v.h": '#include "high/b.h"', **files}.items():
            path = pathlib.Path(folder, "src", name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        result = subprocess.run([LINT, folder], capture_output=True, text=True, check=False)
        return result.returncode, result.stdout + result.stderr


class FloorsTest(unittest.TestCase):
    def test_cases(self):
        cases = [
            ("arrows that point down", {}, 0, "in order"),
            ("a view may use what lies far below", {"view/c.h": '#include "low/a.h"\n#include <QString>'}, 0, "in order"),
            ("an arrow that nothing uses", {"high/b.h": ""}, 1, "high names low, and includes nothing of it"),
            ("an arrow that points up", {"low/a.h": '#include "high/b.h"'}, 1, "low/ may not include high/"),
            ("a toolkit in the core", {"low/a.h": "#include <QString>"}, 1, "standard library alone"),
            ("a system header in the core", {"low/a.h": "#include <sys/stat.h>"}, 1, "standard library alone"),
            ("a file beside itself", {"low/a.h": '#include "a.h"'}, 1, "by its folder"),
            ("a folder that no line names", {"attic/x.h": ""}, 1, "no qvrcom_floor() line"),
            ("headers in a circle", {"low/a.h": '#include "low/d.h"', "low/d.h": '#include "low/a.h"'}, 1, "circle"),
            ("floors in a circle", {"CMakeLists.txt": HOUSE.replace("low)", "low DEPENDS high)")}, 1, "floors in a circle"),
        ]
        for name, files, code, text in cases:
            with self.subTest(name):
                got, output = lint(files)
                self.assertEqual(got, code, output)
                self.assertIn(text, output)


if __name__ == "__main__":
    unittest.main()
