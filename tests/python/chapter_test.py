"""The manual's chapter on Python does what it says: its examples run, and print what stands below them."""

import contextlib
import io
import os
import pathlib
import re
import runpy
import unittest

from support import PROGRAMS, WithBasin

CHAPTER = pathlib.Path(__file__).resolve().parents[2] / "docs" / "manual" / "33-python.md"
BLOCK = re.compile(r"^```python\n(.*?)^```\n(?:\n```\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


def lines(text):
    return [line.rstrip() for line in text.strip("\n").split("\n")]


class ChapterTest(WithBasin):
    def test_the_examples_print_what_the_chapter_shows(self):
        self.addCleanup(os.chdir, pathlib.Path.cwd())
        os.chdir(self.folder)
        with contextlib.redirect_stdout(io.StringIO()):
            # It makes the two tables of the chapter, and a basin of the same name.
            runpy.run_path(str(PROGRAMS / "python" / "examples" / "from_tables_to_response.py"))
        os.remove("alder.mdb")
        names = {}
        compared = 0
        for code, shown in BLOCK.findall(CHAPTER.read_text(encoding="utf-8")):
            printed = io.StringIO()
            with contextlib.redirect_stdout(printed):
                exec(compile(code, str(CHAPTER), "exec"), names)  # noqa: S102
            if shown:
                self.assertEqual(lines(printed.getvalue()), lines(shown), code)
                compared += 1
        self.assertGreaterEqual(compared, 4)

    def test_all_public_names_are_told(self):
        import nivora

        text = CHAPTER.read_text(encoding="utf-8")
        told_elsewhere = {"Basin", "Calibration", "Evaluation", "Fields", "Picture", "Response", "ResponseStudy", "Run", "Sample"}
        for name in set(nivora.__all__) - told_elsewhere:
            self.assertIn(f"nivora.{name}", text)
        for kind in (nivora.Basin, nivora.Study):
            for name in vars(kind):
                if not name.startswith("_") and name not in ("path", "ranges", "objectives", "simulations"):
                    self.assertRegex(text, rf"\.{name}\b", (kind, name))


if __name__ == "__main__":
    unittest.main()
