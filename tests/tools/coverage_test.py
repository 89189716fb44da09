"""What counts as a branch, and as run."""
import unittest

from coverage import Line, decisions, ranges


def branch(count, kind=''):
    """As gcov tells it; the kind is `next` for what follows in the code, or `throw`."""
    return {'count': count, 'fallthrough': kind == 'next', 'throw': kind == 'throw'}


class CoverageTest(unittest.TestCase):
    def test_each_decision_has_its_ways(self):
        self.assertEqual([[True, False], [True, True]],
                         decisions([branch(3, 'next'), branch(0), branch(2, 'next'), branch(1)]))
        self.assertEqual([[True, False, True]], decisions([branch(3), branch(0), branch(1)]))

    def test_a_call_is_no_decision(self):
        self.assertEqual([], decisions([branch(3, 'next'), branch(0, 'throw')]))
        self.assertEqual([[False, True]], decisions(
            [branch(3, 'next'), branch(0, 'throw'), branch(0, 'next'), branch(3)]))

    def test_a_line_is_the_sum_of_the_functions_made_of_it(self):
        line = Line()
        line.add(False, [[False, False], [False, False]])
        self.assertEqual((False, [False] * 4), (line.ran, line.branches()))
        line.add(True, [[True, False]])
        line.add(True, [[False, True]])
        line.add(False, [[False, False, False]])
        self.assertEqual((True, [True, True]), (line.ran, line.branches()))

    def test_what_only_an_exception_reaches_is_left_out(self):
        line = Line()
        line.add(True, [[True, False], [False, False]])
        self.assertEqual([True, False], line.branches())

    def test_ranges(self):
        self.assertEqual('1-3, 7', ranges([1, 2, 3, 7]))


if __name__ == '__main__':
    unittest.main()
