"""The test runner's count is what a change lands by, so what it makes of programs that fail is tested."""
import pathlib
import tempfile
import unittest

from test_results import googletest_results, script_results, transcript_results, unittest_results

PASSING = '''\
[==========] Running 2 tests from 1 test suite.
[ RUN      ] Counter.Increments
[       OK ] Counter.Increments (0 ms)
[ RUN      ] Counter.Overflows
[       OK ] Counter.Overflows (1 ms)
[==========] 2 tests from 1 test suite ran. (1 ms total)
[  PASSED  ] 2 tests.
'''
FAILING = PASSING.replace('[       OK ] Counter.Overflows', 'no error 6\n[  FAILED  ] Counter.Overflows').replace(
    '[  PASSED  ] 2 tests.', '[  PASSED  ] 1 test.\n[  FAILED  ] Counter.Overflows')


def outcomes(results):
    return [(result.name, result.outcome) for result in results]


class GoogleTest(unittest.TestCase):
    def test_counts_what_passed(self):
        self.assertEqual([('Counter.Increments', 'passed'), ('Counter.Overflows', 'passed')],
                         outcomes(googletest_results(PASSING, 0)))

    def test_tells_why_a_test_failed_once(self):
        results = list(googletest_results(FAILING, 1))
        self.assertEqual([('Counter.Increments', 'passed'), ('Counter.Overflows', 'failed')],
                         outcomes(results))
        self.assertEqual('no error 6', results[1].detail)
        self.assertEqual(' --gtest_filter=Counter.Overflows', results[1].options)

    def test_a_crash_fails_the_test_that_ran(self):
        cut = PASSING[:PASSING.index('[       OK ] Counter.Overflows')]
        self.assertEqual([('Counter.Increments', 'passed'), ('Counter.Overflows', 'failed')],
                         outcomes(googletest_results(cut, 5)))

    def test_a_crash_between_tests_fails(self):
        cut = PASSING[:PASSING.index('[ RUN      ] Counter.Overflows')]
        self.assertEqual([('Counter.Increments', 'passed'), ('the test program', 'failed')],
                         outcomes(googletest_results(cut, 0)))

    def test_a_crash_at_the_end_fails(self):
        self.assertEqual(('the end of the test program', 'failed'),
                         outcomes(googletest_results(PASSING, 139))[-1])

    def test_an_empty_run_fails(self):
        for output in ('', '[==========] 0 tests from 0 test suites ran. (0 ms total)\n'):
            with self.subTest(output):
                self.assertEqual([('the test program', 'failed')],
                                 outcomes(googletest_results(output, 0)))


class Scripts(unittest.TestCase):
    def test_counts_every_line(self):
        output = 'ok one\nFAILED two: 1 instead of 2\nend of script\n'
        self.assertEqual([('one', 'passed'), ('two: 1 instead of 2', 'failed')],
                         outcomes(script_results(output, 0)))

    def test_a_script_that_stops_in_silence_fails(self):
        for output in ('', 'ok one\n', 'end of script\nok one\n'):
            with self.subTest(output):
                self.assertEqual(('the end of the script', 'failed'),
                                 outcomes(script_results(output, 0))[-1])


class PythonTests(unittest.TestCase):
    def test_counts_every_test(self):
        output = 'test_a (m.C) ... ok\ntest_b (m.C)\nWhat it does. ... FAIL\n'
        self.assertEqual([('test_a (m.C)', 'passed'), ('What it does.', 'failed')],
                         outcomes(unittest_results(output, 1)))

    def test_no_test_fails(self):
        self.assertEqual([('the tests in Python', 'failed')],
                         outcomes(unittest_results('Ran 0 tests in 0.000s\n', 0)))


class Transcripts(unittest.TestCase):
    def results(self, transcript, *arguments):
        with tempfile.TemporaryDirectory() as folder:
            expected = pathlib.Path(folder) / 'transcript.txt'
            if transcript is not None:
                expected.write_text(transcript, encoding='utf-8')
            return outcomes(transcript_results('client', *arguments[:2], expected, *arguments[2:]))

    def test_every_line_counts(self):
        for output, outcome in (('one\ntwo\n', 'passed'), ('one\n', 'failed'), ('one\ntwo\nthree\n', 'failed'),
                                ('one\nTwo\n', 'failed'), ('', 'failed')):
            with self.subTest(output):
                self.assertEqual([('client', outcome)], self.results('one\ntwo\n', output, 0))
        self.assertEqual([('client', 'failed')], self.results('one\ntwo\n', 'one\ntwo\n', 1))

    def test_nothing_to_compare_with_fails(self):
        for transcript in (None, ''):
            with self.subTest(transcript):
                self.assertEqual([('client', 'failed')], self.results(transcript, '', 0))

    def test_marked_lines_are_for_those_that_do_not_lack_what_the_mark_names(self):
        transcript = 'one\n[events]  two\n[sources]three\n'
        for lacking, output in (((), 'one\n  two\nthree\n'), (('events',), 'one\nthree\n'),
                                (('events', 'sources'), 'one\n')):
            with self.subTest(lacking):
                self.assertEqual([('client', 'passed')], self.results(transcript, output, 0, lacking))
                self.assertEqual([('client', 'failed')], self.results(transcript, output + '[events]', 0, lacking))
