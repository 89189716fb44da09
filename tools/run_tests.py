#!/usr/bin/env python3
"""Builds and runs the tests, and tells in the end what failed and how to run it again.

    run_tests.py [SUITE…] [--gtest_filter=PATTERN]

Without a SUITE every one runs. The last line counts: N passed, N failed.
"""
import argparse
import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from test_results import (Result, googletest_results, program_results, script_results,
                          transcript_results, unittest_results)

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / 'build'
WINE = str(ROOT / 'tools/wine.sh')
TIME_LIMIT = 300  # seconds for one program


class BuildFailed(Exception):
    pass


class Run:
    """One run of suites: what is built, what passed, what failed."""

    def __init__(self, gtest_filter):
        self.gtest_filter = gtest_filter
        self.built, self.passed, self.failures, self.skipped = {}, 0, [], []

    def add(self, suite):
        try:
            for result in SUITES[suite](self):
                self.count(suite, result)
        except BuildFailed as failure:
            self.count(suite, Result('build', 'failed', str(failure)))

    def count(self, suite, result):
        if result.outcome == 'passed':
            self.passed += 1
        elif result.outcome == 'skipped':
            self.skipped.append(f'{suite}: {result.name}')
        else:
            self.failures.append((suite, result))

    def build(self, preset, *targets):
        """Builds the targets of a preset, or all, the first time it is asked to."""
        if preset not in self.built:
            command = [str(ROOT / 'tools/build.sh'), preset, *targets]
            self.built[preset] = subprocess.run(command, check=False).returncode == 0
        if not self.built[preset]:
            raise BuildFailed(f'building {preset} failed, see above')

    def program(self, command, **environment):
        """Output (both streams) and exit code; 124 after the time limit."""
        environment = dict(os.environ, WINE_TIMEOUT=str(TIME_LIMIT), **environment)
        try:
            done = subprocess.run(command, cwd=ROOT, env=environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                                  timeout=TIME_LIMIT + 30)
        except subprocess.TimeoutExpired as expired:
            return (expired.stdout or b'').decode('utf-8', 'replace'), 124
        except OSError as error:
            return str(error), 127
        return done.stdout.decode('utf-8', 'replace').replace('\r\n', '\n'), done.returncode

    def googletest(self, command, gtest_filter='*'):
        gtest_filter = self.gtest_filter or gtest_filter
        return googletest_results(*self.program([*command, f'--gtest_filter={gtest_filter}']))

    def unittests(self, folder):
        return unittest_results(*self.program(
            [sys.executable, '-m', 'unittest', 'discover', '-v', '-s', str(ROOT / folder),
             '-p', '*test*.py'], PYTHONPATH=str(ROOT / 'tools')))


def formatting(run):
    files = [str(path.relative_to(ROOT)) for folder in ('src', 'tests', 'bench', 'samples')
             for path in sorted((ROOT / folder).rglob('*')) if path.suffix in ('.cpp', '.h')]
    output, code = run.program(['clang-format', '--dry-run', '--Werror', *files])
    outcome = 'failed' if code else 'passed'
    return [Result('every source is formatted', outcome, f'{output[:4000]}\n./dev format mends it')]


def tools(run):
    return run.unittests('tests/tools')


def unit(run):
    run.build('native')
    return run.googletest([str(BUILD / 'native/unit_tests')])


def fuzz(run):
    """Replays every corpus."""
    run.build('native')
    for source in sorted((ROOT / 'tests/fuzz').glob('*_fuzz.cpp')):
        corpus = ROOT / 'tests/fuzz/corpus' / source.stem.removesuffix('_fuzz')
        for result in program_results(*run.program([str(BUILD / 'native' / source.stem), str(corpus)])):
            yield Result(f'{source.stem} {result.name}', result.outcome, result.detail)


def windows_unit(run):
    run.build('x64')
    return run.googletest([WINE, 'english', str(BUILD / 'x64/unit_tests.exe')])


def com_suite(user, gtest_filter, *arguments):
    def suite(run):
        run.build('x64')
        return run.googletest([WINE, user, str(BUILD / 'x64/com_tests.exe'), *arguments], gtest_filter)
    return suite


@contextlib.contextmanager
def registered(run):
    """The component is registered, for clients that find it as users' programs do."""
    run.build('x64')
    dll = str(BUILD / 'x64/zepkit10.dll')
    output, code = run.program([WINE, 'english', 'regsvr32', '/s', dll])
    if code:
        raise BuildFailed(f'{output}\nregsvr32 ended with {code}')
    yield
    run.program([WINE, 'english', 'regsvr32', '/s', '/u', dll])


def run_scripts(run, folder):
    """Output and exit code of each script in a folder."""
    for path in sorted((ROOT / folder).iterdir()):
        if path.suffix in ('.vbs', '.js'):
            # Script hosts take what begins with a slash for an option.
            yield path, *run.program([WINE, 'english', 'cscript', '//nologo', str(path.relative_to(ROOT))])


def script(run):
    with registered(run):
        for path, output, code in run_scripts(run, 'tests/script'):
            for result in script_results(output, code):
                yield Result(f'{path.name}: {result.name}', result.outcome, result.detail)


def samples(run):
    """What each sample prints is compared with the text of its name in tests/samples."""
    def result(name, output, code):
        return transcript_results(name, output, code, ROOT / 'tests/samples' / f'{name}.txt')
    with registered(run):
        for path, output, code in run_scripts(run, 'samples/vbscript'):
            yield from result(path.stem, output, code)
        with tempfile.TemporaryDirectory() as folder:
            program = str(BUILD / 'x64/document_sample.exe')
            yield from result('document', *run.program([WINE, 'english', program, f'Z:{folder}/document.txt']))


def binary(run):
    """The DLLs of both bitnesses."""
    run.build('x64')
    run.build('x86', 'zepkit10', 'com_tests')
    yield Result('the tests build for 32 bits', 'passed')
    yield from run.unittests('tests/binary')


def registration(run):
    run.build('x64')
    return run.unittests('tests/registration')


# Tests whose name says German need a German user.
DLL = f'--dll={BUILD / "x64/zepkit10.dll"}'
SUITES = {
    'format': formatting,
    'tools': tools,
    'unit': unit,
    'fuzz': fuzz,
    'windows-unit': windows_unit,
    'com': com_suite('english', '-*German*'),
    'com-dll': com_suite('english', '-*German*', DLL),
    'com-german': com_suite('german', '*German*'),
    'com-dll-german': com_suite('german', '*German*', DLL),
    'registration': registration,
    'script': script,
    'samples': samples,
    'binary': binary,
}


def report(run):
    for name in run.skipped:
        print(f'skipped {name}')
    for suite, result in run.failures:
        print(f'\nFAILED {suite}: {result.name}')
        print('\n'.join(f'    {line}' for line in result.detail.strip().splitlines()[-40:]))
        print(f'    again: ./dev test {suite}{result.options}')
    print(f'{run.passed} passed, {len(run.failures)} failed', flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('suites', nargs='*', metavar='SUITE', help=', '.join(SUITES))
    parser.add_argument('--gtest_filter')
    arguments = parser.parse_args()
    unknown = [name for name in arguments.suites if name not in SUITES]
    if unknown:
        parser.error(f'no suite {unknown[0]}; there are {", ".join(SUITES)}')
    run = Run(arguments.gtest_filter)
    for name in arguments.suites or SUITES:
        started, passed, failed = time.monotonic(), run.passed, len(run.failures)
        run.add(name)
        print(f'{name}: {run.passed - passed} passed, {len(run.failures) - failed} failed '
              f'({time.monotonic() - started:.0f} s)', flush=True)
    report(run)
    sys.exit(1 if run.failures else 0)


if __name__ == '__main__':
    main()
