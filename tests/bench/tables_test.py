"""The pages that bench/run writes, from figures that are given.

  tables_test.py BENCH_FOLDER [UNITTEST_ARGUMENT...]
"""
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, sys.argv.pop(1))
import performance_tables as tables
import process_meter as meter
import system_table as system


def repetition(name, seconds, **counters):
    return {"name": name, "run_type": "iteration", "cpu_time": seconds * 1e6, "real_time": seconds * 2e6,
            "time_unit": "us", **counters}


def result(name, benchmarks=None, elsewhere=3, failed=None, output="what it printed"):
    return {"name": name, "date": "2026-11-22", "machine": "a machine", "quick": False, "elsewhere": elsewhere,
            "failed": failed, "output": output, "figures": benchmarks and {"benchmarks": benchmarks}}


def page(given):
    with tempfile.TemporaryDirectory() as folder:
        tables.write(given, pathlib.Path(folder))
        return (pathlib.Path(folder) / f"{given['name']}.md").read_text(encoding="utf-8")


class PageTest(unittest.TestCase):
    lookups = [repetition(f"lookUpRow/{language}/60", seconds)
               for language in range(7) for seconds in (1e-6, 1.2e-6, 1.4e-6)]

    def test_medianLeastAndMostAreOfTheRepetitions(self):
        text = page(result("unknown", self.lookups))
        self.assertIn("| `lookUpRow/0/60` | 1.2 µs (1 µs–1.4 µs) |", text)

    def test_aLimitHoldsForTheWorst(self):
        self.assertIn("| 1.5 µs | yes |", page(result("matching", self.lookups)))
        slow = self.lookups + [repetition("lookUpRow/6/60", 1.6e-6)] * 4
        self.assertIn("| 1.5 µs | **no** |", page(result("matching", slow)))

    def test_anOverallFigureIsNoRepetition(self):
        overall = {"name": "lookUpRow/0/60_mean", "run_type": "aggregate"}
        self.assertNotIn("_mean", page(result("unknown", [*self.lookups, overall])))

    def test_figuresOfABusyMachineAreCalledThat(self):
        self.assertNotIn("The machine was busy", page(result("unknown", self.lookups)))
        self.assertIn("The machine was busy", page(result("unknown", self.lookups, elsewhere=90)))

    def test_whatFailedSaysSoAndShowsWhatItPrinted(self):
        text = page(result("matching", failed="exit status 3"))
        self.assertIn("**It failed** (exit status 3)", text)
        self.assertIn("```\nwhat it printed\n```", text)

    def test_missingFiguresLeaveTheOthers(self):
        text = page(result("drawing", [repetition("sharpCaption/0", 6e-5), repetition("pangoAlone/0", 5e-5)]))
        self.assertIn("| ratio | 1.20 | – | – | – | 1.5 | yes |", text)


class SystemTest(unittest.TestCase):
    def setUp(self):
        def run(**cpu):
            return {"seconds": 30, "elsewhere": 0, "processes": {
                name.replace("_", " "): {"cpu": seconds, "sleeps": 60, "waits": 30, "rss": 20, "pss": 10}
                for name, seconds in cpu.items()}}
        scenes = {scene: [] for scene in ("following", "least_following", "alone", "background", "waiting",
                                          "least_waiting", "least_background", "conky", "dunst")}
        scenes["following"] = [run(overlay=0.2, player=0.5, accessibility_bus=0.1)]
        scenes["least_following"] = [run(least=0.05, player=0.4)]
        scenes["alone"] = [run(player=0.3, accessibility_bus=0)]
        scenes["conky"] = [run(conky=0.1)]
        self.results = {"scenes": scenes, "messages": {"following": {"seconds": 20, "messages": 3000}}, "memory": {},
                        "seconds": 30, "rounds": 1, "memory_seconds": 60, "failed": ["dunst"]}

    def test_whatIsAddedIsTheOverlayAndTheDifferenceOfTheOthers(self):
        measured = {what: value for what, value, _, _ in system.targets(self.results)}
        self.assertAlmostEqual(measured["following, all that it adds to the system, CPU s in a minute"],
                               2 * (0.2 + 0.2 + 0.1))
        self.assertAlmostEqual(measured["Vellora following ÷ conky at 8 Hz, CPU"], 2)
        self.assertEqual(measured["switches a second, following"], 3)
        self.assertEqual(measured["messages in 10 s of following"], 1500)
        self.assertIsNone(measured["waiting, CPU s in a minute"])

    def test_theTableTellsWhatHoldsWhatNotAndWhatIsUnknown(self):
        text = system.table(self.results)
        self.assertIn("| messages in 10 s of following | 1500 | 1300 | **no** |", text)
        self.assertIn("| switches a second, following | 3 | 90 | yes |", text)
        self.assertIn("| waiting, CPU s in a minute | not measured | 0.06 | |", text)
        self.assertIn("Failed, and not in the tables: dunst.", text)

    def test_theFloorStandsBesideTheLimit(self):
        text = system.table(self.results)
        self.assertIn("following, all that it adds to the system, CPU s in a minute | 1.00 | 1.2 | yes | 0.30 |", text)
        self.assertIn("| floor, following |", text)
        self.assertIn("| the floor's program |", text)


class MeterTest(unittest.TestCase):
    def test_aThreadThatBeganMeanwhileCountsWhole(self):
        before = {"1": (5_000_000_000, 10, 1)}
        after = {"1": (6_000_000_000, 15, 3), "2": (500_000_000, 2, 0)}
        self.assertEqual(meter.difference(before, after), {"cpu": 1.5, "sleeps": 7, "waits": 2})

    def test_thisProcessIsSeen(self):
        import os
        used = meter.threads(os.getpid())
        self.assertGreater(used[str(os.getpid())][0], 0)
        self.assertIn(os.getpid(), meter.descendants({os.getppid()}))
        self.assertEqual(meter.threads(0), {})


unittest.main()
