"""The program as its user meets it: options, formats, errors.

usage: test_program.py TORVAN_SLICE DIAGRAM
"""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

PROGRAM, DIAGRAM = sys.argv[1:3]


def run(*words):
    return subprocess.run([PROGRAM, *map(str, words)], capture_output=True, text=True, check=False)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def assert_refused(self, message, *words):
        result = run(*words)
        self.assertEqual(result.returncode, 2, result)
        self.assertEqual(result.stdout, "")
        self.assertIn(message, result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)

    def test_formats_agree(self):
        criterion = ("--criterion", "CMSCOPE#1")
        blocks = json.loads(run(DIAGRAM, *criterion, "--format", "json").stdout)["blocks"]
        self.assertEqual(blocks, sorted(blocks))
        text = run(DIAGRAM, *criterion).stdout.splitlines()
        self.assertEqual([line.strip() for line in text[1:]], blocks)
        dot = run(DIAGRAM, *criterion, "--format", "dot").stdout
        self.assertTrue(dot.startswith("digraph"))
        picture = self.folder / "slice.svg"
        self.assertEqual(run(DIAGRAM, *criterion, "--format", "svg", "-o", picture).stdout, "")
        self.assertTrue(ET.parse(picture).getroot().tag.endswith("svg"))
        self.assertEqual(list(self.folder.iterdir()), [picture])

    def test_equations_use_the_whole_language(self):
        text = run(DIAGRAM, "--equations", "--criterion", "CMSCOPE#1").stdout
        for form in ("IndexRef(MUX#1,", "StructRef(DEMUX#1,'out1') = ", "Conditional(ctrlExpr: ", "Join("):
            self.assertIn(form, text)
        self.assertIn("equations    20", run(DIAGRAM, "--stats").stderr)

    def test_lists(self):
        sinks = run(DIAGRAM, "--list", "sinks").stdout.split()
        sources = run(DIAGRAM, "--list", "sources").stdout.split()
        blocks = run(DIAGRAM, "--list", "blocks").stdout.split()
        self.assertIn("CMSCOPE#1", sinks)
        self.assertIn("GENSIN_f#1", sources)
        self.assertTrue(set(sinks) | set(sources) < set(blocks))

    def test_saved_systems_give_the_slices_of_their_diagrams(self):
        names = run(DIAGRAM, "--list", "blocks").stdout.split()
        inputs = [f"{name}.in{k}{element}" for name in names for k in (1, 2) for element in ("", "[1]", "[3]")]
        known = [text for text in inputs if run(DIAGRAM, "--criterion", text).returncode == 0]
        for deps in ("data", "activation", "direct"):
            saved = self.folder / deps
            self.assertEqual(run(DIAGRAM, "--deps", deps, "--save", saved).returncode, 0)
            for words in ([], ["--forward"], ["--equations"], ["--list", "sources"],
                          [word for text in names + known for word in ("--criterion", text)]):
                for form in ("text", "json"):
                    wanted, found = (run(file, *words, "--deps", deps, "--format", form, "--stats")
                                     for file in (DIAGRAM, saved))
                    self.assertEqual(found.stdout, wanted.stdout)
                    self.assertEqual(found.stderr.split("solved")[0], wanted.stderr.split("solved")[0])
        for text in set(inputs) - set(known):
            self.assertEqual(run(saved, "--criterion", text).stderr, run(DIAGRAM, "--criterion", text).stderr)

    def test_bad_systems_are_refused_in_one_line(self):
        saved, values = self.folder / "saved", self.folder / "saved.values"
        run(DIAGRAM, "--save", saved)
        self.assertEqual(set(self.folder.iterdir()), {saved, values})
        self.assert_refused("needs the diagram", saved, "--criterion", "MUX#1", "--format", "svg")
        self.assert_refused("'--deps data'", saved, "--deps", "direct")
        self.assert_refused("cannot write", DIAGRAM, "--save", self.folder / "none" / "saved")
        text = values.read_text()
        for broken in (text[:-9], text.replace('"bits":"', '"bits":"x', 1), "{}"):
            values.write_text(broken)
            self.assert_refused("saved.values: ", saved)
        values.unlink()
        self.assert_refused("saved.values: cannot open", saved)
        values.write_text(text)
        saved.write_text(saved.read_text().replace('"field":"in', '"field":"inside', 1))
        self.assert_refused("saved: ", saved)
        saved.write_text("{}")
        self.assert_refused("saved", saved)

    def test_bad_input_is_refused_in_one_line(self):
        self.assert_refused("no-such-file.zcos", "no-such-file.zcos")
        self.assert_refused("there is no block 'NONE#1'", DIAGRAM, "--criterion", "NONE#1")
        self.assert_refused("'CONST_m' is ambiguous", DIAGRAM, "--criterion", "CONST_m")
        self.assert_refused("has no input 9", DIAGRAM, "--criterion", "MUX#1.in9")
        self.assert_refused("has no element 3", DIAGRAM, "--criterion", "DEMUX#1.in1[3]")
        self.assert_refused("not at an input", DIAGRAM, "--forward", "--criterion", "MUX#1.in1")
        self.assert_refused("one criterion", DIAGRAM, "--format", "svg")
        self.assert_refused("cannot write", DIAGRAM, "-o", self.folder / "none" / "slice.txt")
        self.assertEqual(run(DIAGRAM, "--format", "pdf").returncode, 2)
        cut = self.folder / "cut.xcos"
        cut.write_bytes(pathlib.Path(DIAGRAM).read_bytes()[:2000])
        self.assert_refused("cut.xcos", cut)
        broken = self.folder / "broken.zcos"
        broken.write_bytes(b"PK\x03\x04 and nothing more")
        self.assert_refused("broken.zcos", broken)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
