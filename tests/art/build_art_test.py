#!/usr/bin/python3
"""The command that rebuilds the pictures and the typeface: the committed files are what it makes of
their sources, and its check finds every kind of difference."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PARTS = ("art", "data", "packaging/icons", "scripts/build-art", "src/gfx/SeaColor.h")


def run(tree, *arguments):
    """Runs the command of a tree from another directory; no bytecode is left behind."""
    return subprocess.run([str(tree / "scripts" / "build-art"), *arguments],
                          cwd="/", capture_output=True, text=True, check=False)


class BuildArtTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.tree = pathlib.Path(holder.name) / "a tree"
        for part in PARTS:
            source, target = ROOT / part, self.tree / part
            target.parent.mkdir(parents=True, exist_ok=True)
            if source.is_dir():
                shutil.copytree(source, target, ignore=shutil.ignore_patterns("__pycache__"))
            else:
                shutil.copy(source, target)

    def built(self):
        """All built files of the copied tree, by name."""
        return {str(path.relative_to(self.tree)): path.read_bytes()
                for folder in ("data", "packaging/icons", "src/gfx")
                for path in sorted((self.tree / folder).iterdir())}

    def test_committed_files_are_what_their_sources_say(self):
        result = run(ROOT, "--check")
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_a_rebuild_from_nothing_gives_the_same_bytes(self):
        before = self.built()
        shutil.rmtree(self.tree / "data")
        shutil.rmtree(self.tree / "packaging")
        shutil.rmtree(self.tree / "src")
        result = run(self.tree)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertEqual(self.built(), before)
        self.assertEqual(len(before), 14)

    def test_check_names_an_altered_and_a_missing_file_and_writes_nothing(self):
        altered = self.tree / "data" / "ships.png"
        with Image.open(altered) as picture:
            picture.putpixel((0, 0), (0, 0, 0, 1))
            picture.save(altered)
        content = altered.read_bytes()
        repacked = self.tree / "data" / "image.png"  # shows the same, in more bytes
        with Image.open(repacked) as picture:
            picture.save(repacked, compress_level=0)
        (self.tree / "data" / "sample.ttf").unlink()
        result = run(self.tree, "--check")
        self.assertEqual(result.returncode, 1)
        self.assertIn("data/ships.png", result.stdout)
        self.assertIn("data/sample.ttf", result.stdout)
        self.assertNotIn("data/image.png", result.stdout)
        self.assertEqual(altered.read_bytes(), content)
        self.assertFalse((self.tree / "data" / "sample.ttf").exists())

    def test_check_finds_a_changed_source(self):
        palette = self.tree / "art" / "palette.txt"
        palette.write_text(palette.read_text().replace("21628b", "21629b"))
        result = run(self.tree, "--check")
        self.assertEqual(result.returncode, 1)
        self.assertIn("data/image.png", result.stdout)
        self.assertIn("src/gfx/SeaColor.h", result.stdout)
        self.assertNotIn("data/sample.ttf", result.stdout)

    def test_a_fault_in_a_source_is_told_with_its_line(self):
        faults = (("enemies.txt", "\nkook", "\n?ook", "enemies.txt:7: '?'"),
                  ("enemies.txt", "\nkook", "\nkkook", "enemies.txt:7: 17 columns"),
                  ("ships.txt", "place up", "place aft", "ships.txt:111: no figure 'aft'"),
                  ("palette.txt", "141a2e", "141a2", "palette.txt:4: wanted"),
                  ("sample_font.txt", "glyphs A ", "glyphs ", "grids for 7 names"))
        for name, old, new, message in faults:
            with self.subTest(message):
                source = self.tree / "art" / name
                text = source.read_text()
                source.write_text(text.replace(old, new, 1))
                result = run(self.tree)
                source.write_text(text)
                self.assertEqual(result.returncode, 2)
                self.assertIn(message, result.stderr)


if __name__ == "__main__":
    unittest.main()
