"""The program as its user meets it: options, formats, errors.

usage: test_program.py TORVAN_SLICE DIAGRAM
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

PROGRAM, DIAGRAM = sys.argv[1:3]


def run(*words, **options):
    return subprocess.run([PROGRAM, *map(str, words)], capture_output=True, text=True, check=False, **options)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def assert_refused(self, message, *words, is_one_line=True, **options):
        result = run(*words, **options)
        self.assertEqual((result.returncode, result.stdout), (2, ""), result)
        self.assertIn(message, result.stderr)
        self.assertTrue(result.stderr.count("\n") == 1 or not is_one_line, result.stderr)

    def test_formats_agree(self):
        criterion = ("--criterion", "CMSCOPE#1")
        blocks = json.loads(run(DIAGRAM, *criterion, "--format", "json").stdout)["blocks"]
        self.assertEqual(blocks, sorted(blocks))
        text = run(DIAGRAM, *criterion).stdout.splitlines()
        self.assertEqual([line.strip() for line in text[1:]], blocks)
        self.assertEqual(run(*criterion, DIAGRAM, "--format", "text").stdout.splitlines(), text)
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
            for words in (["--stats"], ["--forward", "--stats"], ["--equations"], ["--list", "sources"],
                          [word for text in names + known for word in ("--criterion", text)],
                          ["--format", "json"]):
                wanted, found = (run(file, *words, "--deps", deps) for file in (DIAGRAM, saved))
                self.assertEqual(found.returncode, 0, found)
                self.assertEqual(found.stdout, wanted.stdout)
                self.assertEqual(found.stderr.split("solved")[0], wanted.stderr.split("solved")[0])
        for text in set(inputs) - set(known):
            self.assertEqual(run(saved, "--criterion", text).stderr, run(DIAGRAM, "--criterion", text).stderr)

    def test_negative_port_numbers_are_saved(self):
        odd, saved = self.folder / "odd.xcos", self.folder / "saved"
        odd.write_text(pathlib.Path(DIAGRAM).read_text().replace('ordering="1"', 'ordering="-1"'))
        wanted = run(odd, "--save", saved)
        self.assertEqual((wanted.returncode, run(saved).stdout), (0, wanted.stdout))
        self.assert_refused("has no input 9999999999", saved, "--criterion", "MUX#1.in9999999999")

    def test_diagrams_come_through_pipes(self):
        text = pathlib.Path(DIAGRAM).read_text()
        self.assertEqual(run("/dev/stdin", "--list", "blocks", input=text).stdout,
                         run(DIAGRAM, "--list", "blocks").stdout)
        self.assert_refused("cannot come through a pipe", "/dev/stdin", input="{}")

    def test_what_is_in_use_is_not_overwritten(self):
        diagram, saved, other = (self.folder / name for name in ("d.xcos", "saved", "other"))
        diagram.write_text(pathlib.Path(DIAGRAM).read_text())
        run(diagram, "--save", saved)
        (self.folder / "link").symlink_to(diagram)
        before = {file: file.read_bytes() for file in self.folder.iterdir()}
        for words in ((diagram, "--save", diagram), (diagram, "-o", self.folder / "link"),
                      (saved, "-o", f"{saved}.values"), (diagram, "--save", other, "-o", other)):
            self.assert_refused("is not overwritten", *words)
        self.assertEqual({file: file.read_bytes() for file in self.folder.iterdir()}, before)

    def test_saving_changes_nothing_beside_the_target(self):
        diagram, target, link, later = (self.folder / name for name in ("slice.part", "slice", "link", "later"))
        diagram.write_text(pathlib.Path(DIAGRAM).read_text())
        target.touch()
        target.chmod(0o606)
        link.symlink_to("slice")
        later.symlink_to(self.folder / "new")
        wanted = run(diagram).stdout
        for output in (link, later):
            run(diagram, "-o", output, umask=0o027)
            self.assertTrue(output.is_symlink())
            self.assertEqual(output.read_text(), wanted)
        self.assertEqual([output.stat().st_mode & 0o777 for output in (link, later)], [0o606, 0o640])
        self.assertEqual(diagram.read_text(), pathlib.Path(DIAGRAM).read_text())
        self.assertEqual(set(self.folder.iterdir()), {diagram, target, link, later, self.folder / "new"})
        target.unlink()
        target.symlink_to("link")
        self.assert_refused("cannot write", diagram, "-o", link)
        self.assertTrue(link.is_symlink())

    def test_output_goes_into_devices_and_pipes(self):
        wanted = run(DIAGRAM).stdout
        for output in ("-", "/dev/stdout", "/dev/fd/1"):
            self.assertEqual(run(DIAGRAM, "-o", output).stdout, wanted)
        self.assertEqual(run(DIAGRAM, "-o", "/dev/null").stdout, "")
        log = self.folder / "log"
        log.write_text("before\n")
        with log.open("a") as out:
            subprocess.run([PROGRAM, DIAGRAM, "-o", "/dev/stdout"], stdout=out, check=True)
        self.assertEqual(log.read_text(), "before\n" + wanted)
        self.assert_refused("cannot write '/dev/full'", DIAGRAM, "-o", "/dev/full")
        self.assert_refused("is no file", DIAGRAM, "-o", self.folder)
        self.assertEqual(list(self.folder.iterdir()), [log])

    def test_empty_names_are_refused(self):
        for words in (["", "--list", "sinks"], [DIAGRAM, "-o", ""], [DIAGRAM, "--save", ""]):
            self.assert_refused("the name is empty", *words, is_one_line=False)

    def test_who_slices_a_diagram_without_sinks_is_told(self):
        source = self.folder / "source.xcos"
        source.write_text('<XcosDiagram><mxGraphModel><root><BasicBlock interfaceFunctionName="CONST_m" '
                          'simulationFunctionType="DEFAULT"/></root></mxGraphModel></XcosDiagram>')
        for words in ([], ["--forward"], ["--format", "svg"]):
            result = run(source, *words)
            self.assertEqual((result.returncode, result.stdout), (2 if "svg" in words else 0, ""))
            self.assertIn("warning: " + str(source) + ": has no sinks to slice by", result.stderr)
        self.assertEqual(run(source, "--criterion", "CONST_m").stdout.split()[-1], "CONST_m#1")
        for words in (["--list", "sinks"], ["--equations"], ["--stats"], ["--save", self.folder / "saved"]):
            self.assertEqual(run(source, *words).returncode, 0, words)

    def test_names_of_a_file_break_no_message(self):
        source = self.folder / "forged.xcos"
        source.write_text('<XcosDiagram><mxGraphModel as="model"><root>'
                          '<ExplicitInputPort id="p&#10;torvan-slice: well" parent="none"/>'
                          '</root></mxGraphModel></XcosDiagram>')
        for line in run(source).stderr.splitlines():
            self.assertTrue(line.startswith("torvan-slice: warning: "), line)
        self.assert_refused("'A B'", source, "--criterion", "A\nB", is_one_line=False)

    def test_options_that_do_not_go_together_are_refused(self):
        for words in (["--equations", "--format", "svg"], ["--equations", "--format", "json"],
                      ["--list", "sinks", "--format", "json"], ["--list", "sinks", "--equations"],
                      ["--list", "sinks", "--criterion", "MUX#1"], ["--list", "sinks", "--stats"]):
            self.assert_refused("excludes", DIAGRAM, *words, is_one_line=False)

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
        text = saved.read_text()
        saved.write_text(text.replace('"field":"in', '"field":"inside', 1))
        self.assert_refused("saved: ", saved)
        saved.write_text(re.sub(r'(datamodel.Join":)("[^"]*")(.*"operands":\[)', r"\1\2\3\2,", text))
        self.assert_refused("saved: The object contains itself", saved)
        saved.write_text("{}")
        self.assert_refused("saved", saved)

    def test_bad_input_is_refused_in_one_line(self):
        self.assert_refused("no-such-file.zcos", "no-such-file.zcos")
        self.assert_refused("there is no block 'NONE#1'", DIAGRAM, "--criterion", "CMSCOPE#1", "--criterion", "NONE#1",
                            "--save", self.folder / "saved")
        self.assertEqual(list(self.folder.iterdir()), [])
        for text in ("N" * 100_000, "]", "MUX#1.in", "MUX#1.in1[]", "MUX#1.1[1]", ".in1.in1[1]"):
            self.assert_refused("there is no block", DIAGRAM, "--criterion", text)
        self.assert_refused("'CONST_m' is ambiguous", DIAGRAM, "--criterion", "CONST_m")
        self.assert_refused("has no input 9", DIAGRAM, "--criterion", "MUX#1.in9")
        self.assert_refused("has no element 3", DIAGRAM, "--criterion", "DEMUX#1.in1[3]")
        self.assert_refused("not at an input", DIAGRAM, "--forward", "--criterion", "MUX#1.in1")
        self.assert_refused("one criterion", DIAGRAM, "--format", "svg")
        self.assert_refused("cannot write", DIAGRAM, "-o", self.folder / "none" / "slice.txt")
        self.assertEqual(run(DIAGRAM, "--format", "pdf").returncode, 2)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
