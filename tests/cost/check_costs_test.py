"""What check_costs makes of callgrind's dumps and of its table."""
import collections
import importlib.machinery
import importlib.util
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
PATH = str(pathlib.Path(__file__).resolve().parent / "check_costs")
LOADER = importlib.machinery.SourceFileLoader("check_costs", PATH)
costs = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_costs", LOADER))
LOADER.exec_module(costs)

DUMP = """\
desc: Trigger: Client Request: a path
events: Ir
ob=/usr/lib/libother.so
fn=other
10 5
cob=/the/program
cfn=own
calls=1 0
11 100
ob=/the/program
fn=own
20 60
21 40
fn=nothing
22
"""


def cost(own, whole):
    return costs.Cost(own, whole, collections.Counter({"std::map<int>::find(int) const": whole}))


class DumpTest(unittest.TestCase):
    def test_whatACalledFunctionCostsCountsOnce(self):
        with tempfile.TemporaryDirectory() as folder:
            dump = pathlib.Path(folder) / "dump"
            dump.write_text(DUMP, encoding="utf-8")
            name, own, whole, functions = costs.read_dump(dump, "/the/program")
        self.assertEqual((name, own, whole), ("a path", 100, 105))
        self.assertEqual(functions["own"], 100)


class JudgeTest(unittest.TestCase):
    table = {"a path": costs.Limit(1000, 5, 2000, 15)}

    def test_withinTheMarginsNothingIsSaid(self):
        for now in (cost(1050, 2300), cost(950, 1700), cost(1000, 2000)):
            self.assertEqual(costs.judge({"a path": now}, self.table), ([], []))

    def test_beyondEitherMarginAPathIsTooDear(self):
        for now in (cost(1051, 2000), cost(1000, 2301)):
            dear, cheap = costs.judge({"a path": now}, self.table)
            self.assertEqual((len(dear), cheap), (1, []))
            self.assertIn("100 % in std::map::find", dear[0])

    def test_muchCheaperIsToldAndNoFailure(self):
        dear, cheap = costs.judge({"a path": cost(900, 2000)}, self.table)
        self.assertEqual((dear, len(cheap)), ([], 1))

    def test_pathsAndTableHoldTheSameNames(self):
        dear, _ = costs.judge({"another": cost(1, 1)}, self.table)
        self.assertEqual(len(dear), 2)

    def test_aRecordKeepsTheMargins(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "table"
            wider = {"a path": costs.Limit(1, 7, 2, 40)}
            costs.record({"a path": cost(10, 20), "new": cost(30, 40)}, wider, path)
            self.assertEqual(costs.read_table(path), {
                "a path": costs.Limit(10, 7, 20, 40),
                "new": costs.Limit(30, costs.OWN_MARGIN, 40, costs.ALL_MARGIN)})


unittest.main()
