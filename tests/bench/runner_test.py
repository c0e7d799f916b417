"""The bench's runner: what ends a run, and how its figures come about."""

import importlib.util
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench"))

import alone
import chart
import measuring
import page
import run
import servers
from measuring import Measurement
from races import Race
from way import Way


def race(ways, content=lambda: "the same"):
    return Race("a case", 1000, ways, prepare=lambda: None, content=content)


class RunnerTest(unittest.TestCase):
    def setUp(self):
        self.taken = []
        measured = mock.patch.object(run, "measured", self.measured)
        measured.start()
        self.addCleanup(measured.stop)

    def measured(self, command, processors, components):
        self.taken.append("".join(command) + (components or ""))
        return Measurement(seconds=1, processor=1, peak=1)

    def test_takes_the_ways_in_turn_and_begins_each_round_with_another_one(self):
        run.run_race(race([Way("program", ["A"]), Way("other", ["B"]), Way("third", ["C"])]), 4, "0")
        self.assertEqual(self.taken, ["A", "B", "C", "B", "C", "A", "C", "A", "B", "A", "B", "C"])

    def test_takes_a_slow_way_in_the_first_round_only_and_still_compares_its_content(self):
        contents = iter(["same", "same", "other"])
        with self.assertRaisesRegex(SystemExit, "program: other"):
            run.run_race(race([Way("program", ["A"]), Way("slow", ["B"], once=True)], lambda: next(contents)), 3, "0")
        self.assertEqual(self.taken, ["A", "B", "A"])

    def test_gives_a_way_its_own_components(self):
        run.run_race(race([Way("program", ["A"], components=" of Java"), Way("other", ["B"])]), 1, "0")
        self.assertEqual(self.taken, ["A of Java", "B"])

    def test_ends_where_a_way_leaves_another_content(self):
        contents = iter(["2 rows, abc", "2 rows, abd"])
        with self.assertRaisesRegex(SystemExit, "(?s)a case.*program: 2 rows, abc.*other: 2 rows, abd"):
            run.run_race(race([Way("program", ["A"]), Way("other", ["B"])], lambda: next(contents)), 1, "0")

    def test_looks_at_the_content_once_a_way_is_finished(self):
        steps = []
        ways = [Way("program", ["A"], finish=lambda: steps.append("finish"))]
        run.run_race(race(ways, lambda: steps.append("content")), 1, "0")
        self.assertEqual(steps, ["finish", "content"])


class FiguresTest(unittest.TestCase):
    def lines(self, program, other, most):
        ways = [Way("program", []), Way("other", [], most)]
        taken = {name: [Measurement(second, second / 4, peak) for peak, second in enumerate(seconds)]
                 for name, seconds in (("program", program), ("other", other))}
        return list(run.lines(race(ways), taken))

    def test_a_ratio_is_taken_within_each_round(self):
        # The medians alone would give 2 / 2 = 1.
        self.assertEqual(self.lines([1, 2, 9], [2, 1, 3], 2.5), [
            ["a case", "program", "2.00 s", "0.50 s", "500", "", "", "2.0 MiB"],
            ["a case", "other", "2.00 s", "0.50 s", "500", "2.00 (0.50 to 3.00)", "2.50, met", "2.0 MiB"],
        ])

    def test_a_target_is_missed_by_a_greater_ratio(self):
        self.assertEqual(self.lines([2], [1], 2)[1][6], "2.00, met")
        self.assertEqual(self.lines([2.01], [1], 2)[1][6], "2.00, **missed**")

    def test_a_way_without_a_target_has_a_ratio_too(self):
        self.assertEqual(self.lines([3], [2], None)[1][5:7], ["1.50 (1.50 to 1.50)", ""])

    def test_a_way_of_one_round_is_compared_with_that_round(self):
        self.assertEqual(self.lines([6, 2, 2], [3], None)[1][5], "2.00 (2.00 to 2.00)")


class PageTest(unittest.TestCase):
    def text(self, **fields):
        with mock.patch.object(page, "_machine", lambda: "a machine"):
            return page.Report(rounds=5, **fields).text()

    def test_says_that_others_were_at_work(self):
        self.assertIn("busy with other work** (load 99.0", self.text(scale=1, load=99))
        self.assertNotIn("busy", self.text(scale=1, load=0))

    def test_says_what_part_of_the_usual_sizes_was_measured(self):
        self.assertIn("Sizes are 0.1 times the usual ones.", self.text(scale=0.1, load=0))
        self.assertNotIn("Sizes", self.text(scale=1, load=0))


class ChartTest(unittest.TestCase):
    @unittest.skipUnless(importlib.util.find_spec("matplotlib"), "needs python3-matplotlib")
    def test_has_its_names_as_text_and_not_as_paths(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "chart.svg"
            chart.draw([("a case", [("program", 1.5), ("another way", 3)])], file)
            self.assertRegex(file.read_text(), "<text[^>]*>another way</text>")


class ProgramsTest(unittest.TestCase):
    def test_one_that_fails_ends_the_run(self):
        with self.assertRaisesRegex(SystemExit, "(?s)ended with status 3.*what it said"):
            measuring.run("sh", "-c", "echo what it said >&2; exit 3")

    def test_a_measurement_has_seconds_processor_time_and_memory(self):
        with tempfile.TemporaryDirectory() as folder, mock.patch.object(measuring, "FOLDER", Path(folder)):
            def made(output):
                (Path(folder) / "took").write_text("2.5 1.25 2048\n")
                return mock.patch.object(measuring, "run", lambda *_, **__: output)

            with made(""):
                self.assertEqual(measuring.measured(["A"]), Measurement(2.5, 1.25, 2.0))
            with made("seconds 0.5 of processor time 0.25\n"):
                self.assertEqual(measuring.measured(["A"]), Measurement(0.5, 0.25, 2.0))

    def test_system_calls_are_counted_and_what_they_read_is_added_up(self):
        log = ('7 read(3, "abc", 4096) = 3\n'
               '7 openat(AT_FDCWD, "a = 5", O_RDONLY) = -1 ENOENT (No such file or directory)\n'
               '8 pread64(4,  <unfinished ...>\n'
               '7 read(3, "", 4096) = 0\n'
               '8 <... pread64 resumed>"x"..., 1024, 0) = 1024\n'
               '7 mmap(NULL, 8192, PROT_READ, MAP_PRIVATE, 3, 0) = 0x7f0000000000\n'
               '8 read(3, 0x7ff, 10) = -1 EAGAIN (Resource temporarily unavailable)\n'
               '8 +++ exited with 0 +++\n'
               '7 exit_group(0) = ?\n')
        self.assertEqual(alone.calls_and_bytes(log), (7, 1027))

    def test_the_parts_of_a_connection_text_come_without_their_braces(self):
        self.assertEqual(servers.parts("DRIVER=MariaDB Unicode;PORT=1;PWD={wild;{}}rose}"),
                         {"DRIVER": "MariaDB Unicode", "PORT": "1", "PWD": "wild;{}rose"})


if __name__ == "__main__":
    unittest.main()
