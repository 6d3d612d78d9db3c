"""What is said of the mutants that were tried, and of the tests that noticed them."""

import contextlib
import io
import unittest

import mutate
from mutants import mutants_of
from worth import Worth, noticed_by


class Told(unittest.TestCase):
    MUTANTS = list(mutants_of('a.cpp', 'f();\n  f();\n  g();\n  h();\n  i();\n'))

    def tell(self, count, *verdicts):
        found = {mutant.key(): {**mutate.entry_of(mutant), 'verdict': verdict}
                 for mutant, verdict in zip(self.MUTANTS, verdicts)}
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = mutate.tell(self.MUTANTS, count, found)
        return status, output.getvalue().strip().split('\n')[-1]

    def test_all_that_were_asked_for_are_tried_and_killed(self):
        self.assertEqual(self.tell(3, 'killed', 'killed', 'killed'),
                         (0, '3 mutants; 0 give the same code, 0 are listed with their reason; 3 of the other 3 killed: 100.0 %'))

    def test_no_success_with_fewer_tried_than_were_asked_for(self):
        self.assertEqual(self.tell(3, 'killed', 'killed'), (1, '1 more are still to be tried'))
        self.assertEqual(self.tell(3), (1, '3 more are still to be tried'))
        self.assertEqual(self.tell(4, 'killed', 'lost', 'killed', 'killed'), (1, '1 more are still to be tried'))

    def test_files_may_have_fewer_than_were_asked_for(self):
        self.assertEqual(self.tell(500, 'killed', 'uncompiled', 'killed', 'killed')[0], 0)

    def test_no_success_with_a_survivor_among_few(self):
        self.assertEqual(self.tell(3, 'killed', 'survived', 'killed'),
                         (1, '3 mutants; 0 give the same code, 0 are listed with their reason; 2 of the other 3 killed: 66.7 %'))
        self.assertEqual(self.tell(3, 'killed', 'equivalent', 'killed')[0], 0)


class Reasons(unittest.TestCase):
    def test_each_is_of_a_mutant_of_the_sources(self):
        listed = mutate.reasons()
        self.assertGreaterEqual(len(listed), 10)
        there = set()
        for file in {file for file, _ in listed}:
            mutants = mutants_of(file, (mutate.ROOT / file).read_text())
            there |= {(file, mutate.change(mutate.entry_of(mutant))) for mutant in mutants}
        self.assertEqual(listed - there, set())


class Tests(unittest.TestCase):
    def test_a_mutant_is_noticed_by_tests_of_several_programs(self):
        self.assertEqual(noticed_by({'everyone': [{'by': 'tool', 'tests': ['A.B', 'A.C']}, {'by': 'host', 'tests': ['A.B']}]}),
                         {('tool', 'A.B'), ('tool', 'A.C'), ('host', 'A.B')})

    def test_a_test_is_worth_what_no_other_notices(self):
        a, b, c, d = (('tool', name) for name in 'abcd')
        worth = Worth({a, b, c, d}, [{a}, {a, b}, {a, b, c}, {b, c}])
        self.assertEqual(worth.summary(), '4 mutants and 4 tests: 1 tests notice one alone, 2 only such as others notice, too, '
                                          '1 none of them')
        self.assertEqual(list(worth.lines()), ['tool/b: 3', 'tool/c: 2, as b does and more'])


if __name__ == '__main__':
    unittest.main()
