#!/usr/bin/env python3
"""Builds and runs the tests, and tells in the end what failed and how to run it again.

    run_tests.py [SUITE…] [--x86] [--gtest_filter=PATTERN]

Without a SUITE every one runs. Those whose name ends in -x86, and both-bitnesses, need a 32-bit Wine and are
left out, and the run says so, where there is none; with --x86 they are the ones that run, and must. The last line
counts: N passed, N failed.
"""
import argparse
import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import client_suites
import doc_suites
from test_results import (Result, googletest_results, program_results, script_results,
                          transcript_results, unittest_results)

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / 'build'
WINE = str(ROOT / 'tools/wine.sh')
TIME_LIMIT = 1200  # seconds for one program, while others run
# Tests that show windows, or make long or many calls: with failing memory they take minutes.
SLOW_TESTS = '*About*:*FileDialog*:*Monkey*:*Many*:*Deep*:*Depth*:*Model*:*AppendingThrough*:*LongTerms*:*EntersLinks*'


class BuildFailed(Exception):
    pass


class Run:
    """One run of suites: what is built, what passed, what failed."""

    def __init__(self, gtest_filter):
        self.gtest_filter = gtest_filter
        self.built, self.passed, self.failures, self.skipped = {}, 0, [], []
        self.building, self.counting = threading.Lock(), threading.Lock()

    def add(self, suite):
        started, results = time.monotonic(), []
        try:
            results += SUITES[suite](self)
        except BuildFailed as failure:
            results.append(Result('build', 'failed', str(failure)))
        with self.counting:
            self.count(suite, results, time.monotonic() - started)

    def count(self, suite, results, seconds):
        outcomes = [result.outcome for result in results]
        passed, skipped = outcomes.count('passed'), outcomes.count('skipped')
        failures = [(suite, result) for result in results if result.outcome not in ('passed', 'skipped')]
        self.passed += passed
        self.failures += failures
        self.skipped += [f'{suite}: {result.name}' for result in results if result.outcome == 'skipped']
        print(f'{suite}: {passed} passed, {len(failures)} failed ({seconds:.0f} s)', flush=True)

    def build(self, preset):
        """Builds everything of a preset the first time it is asked to."""
        with self.building:
            if preset not in self.built:
                command = [str(ROOT / 'tools/build.sh'), preset]
                self.built[preset] = subprocess.run(command, check=False).returncode == 0
        if not self.built[preset]:
            raise BuildFailed(f'building {preset} failed, see above')

    def package(self):
        """Makes the packages of the components, the first time it is asked to."""
        self.build('x64')
        self.build('x86')
        with self.building:
            if 'package' not in self.built:
                self.built['package'] = self.program([sys.executable, '-m', 'package'], PYTHONPATH=str(ROOT / 'tools'))
        output, code = self.built['package']
        if code:
            raise BuildFailed(f'{output}\nmaking the packages failed')

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

    def unittests(self, folder, python=sys.executable, **environment):
        return unittest_results(*self.program(
            [python, '-m', 'unittest', 'discover', '-v', '-s', str(ROOT / folder),
             '-p', '*test*.py'], PYTHONPATH=f"{ROOT / 'tools'}:{ROOT / 'tests'}", **environment))


def formatting(run):
    files = [str(path.relative_to(ROOT)) for folder in ('src', 'check', 'tests', 'bench', 'samples')
             for path in sorted((ROOT / folder).rglob('*')) if path.suffix in ('.c', '.cpp', '.h')]
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


class Windows:
    """A Windows of one bitness and user: what is built for it, and how programs run there."""

    def __init__(self, preset, user='english'):
        self.preset = preset
        self.user = user if preset == 'x64' else f'{user}-{preset}'
        self.dll = str(BUILD / preset / 'zepkit10.dll')
        tools = f"{'x86_64' if preset == 'x64' else 'i686'}-w64-mingw32"
        self.compiler, self.c_compiler = f'{tools}-g++-posix', f'{tools}-gcc-posix'

    def command(self, *command):
        return [WINE, self.user, *command]

    def built(self, program):
        return self.command(str(BUILD / self.preset / f'{program}.exe'))


def windows_unit(windows):
    def suite(run):
        run.build(windows.preset)
        return run.googletest(windows.built('unit_tests'))
    return suite


def com(windows, gtest_filter):
    """The tests against the component that is linked into them."""
    def suite(run):
        run.build(windows.preset)
        return run.googletest(windows.built('com_tests'), gtest_filter)
    return suite


def faults(windows):
    """Members called while memory and files fail."""
    def suite(run):
        run.build(windows.preset)
        return run.googletest(windows.built('fault_tests'))
    return suite


def com_faults(windows, gtest_filter):
    """Those against the linked component, while memory fails."""
    def suite(run):
        run.build(windows.preset)
        return run.googletest([*windows.built('com_tests'), '--failing-memory'], gtest_filter)
    return suite


def com_dll(windows, gtest_filter):
    """The same tests against the DLL."""
    def suite(run):
        run.build(windows.preset)
        return run.googletest([*windows.built('com_tests'), f'--dll={windows.dll}'], gtest_filter)
    return suite


def monkey(windows):
    """A short run: every member, with arguments at random."""
    def suite(run):
        run.build(windows.preset)
        yield from program_results(*run.program([*windows.built('monkey'), '--calls', '100000', '--seed', '1']))
    return suite


@contextlib.contextmanager
def registered(run, windows):
    """The component is registered, for clients that find it as users' programs do."""
    run.build(windows.preset)
    output, code = run.program(windows.command('regsvr32', '/s', windows.dll))
    if code:
        raise BuildFailed(f'{output}\nregsvr32 ended with {code}')
    yield
    run.program(windows.command('regsvr32', '/s', '/u', windows.dll))


def run_scripts(run, windows, folder):
    """Output and exit code of each script in a folder."""
    for path in sorted((ROOT / folder).iterdir()):
        if path.suffix in ('.vbs', '.js'):
            # Script hosts take what begins with a slash for an option.
            yield path, *run.program(windows.command('cscript', '//nologo', str(path.relative_to(ROOT))))


def script(windows):
    def suite(run):
        with registered(run, windows):
            for path, output, code in run_scripts(run, windows, 'tests/script'):
                for result in script_results(output, code):
                    yield Result(f'{path.name}: {result.name}', result.outcome, result.detail)
    return suite


def samples(windows):
    """What each sample prints is compared with the text of its name in tests/samples."""
    def result(name, output, code):
        return transcript_results(name, output, code, ROOT / 'tests/samples' / f'{name}.txt')

    def suite(run):
        with registered(run, windows):
            for path, output, code in run_scripts(run, windows, 'samples/vbscript'):
                yield from result(path.stem, output, code)
            with tempfile.TemporaryDirectory() as folder:
                yield from result('document', *run.program(
                    [*windows.built('document_sample'), f'Z:{folder}/document.txt']))
    return suite


def clients(windows):
    """One conversation in every language."""
    def suite(run):
        with registered(run, windows):
            yield from client_suites.clients(run, windows, BUILD / windows.preset / 'generated/zepkit10')
        if windows.preset == 'x64':
            yield from client_suites.others(run)
    return suite


def documents(windows):
    def suite(run):
        with registered(run, windows):
            yield from doc_suites.documents(run, windows, BUILD / windows.preset / 'generated/zepkit10')
    return suite


def docs(run):
    with registered(run, Windows('x64')):
        yield from doc_suites.docs(run)


def docs_browser(run):
    with registered(run, Windows('x64')):
        yield from doc_suites.docs_browser(run)


def binary(run):
    """The DLLs of both bitnesses."""
    run.build('x64')
    run.build('x86')
    return run.unittests('tests/binary')


def registration(windows):
    def suite(run):
        run.build(windows.preset)
        return run.unittests('tests/registration', ZEPKIT10_PRESET=windows.preset, WINE_USER=windows.user)
    return suite


def zepcheck(windows):
    """The program that checks installations, on good and bad ones."""
    def suite(run):
        run.build('x64')
        run.build('x86')  # each meets the other's DLL
        return run.unittests('tests/zepcheck', ZEPKIT10_PRESET=windows.preset, WINE_USER=windows.user)
    return suite


def package(windows):
    """What users download: installed, unpacked and used."""
    def suite(run):
        run.package()
        return run.unittests('tests/package', ZEPKIT10_PRESET=windows.preset, WINE_USER=windows.user)
    return suite


def both_bitnesses(run):
    """Installed side by side on a 64-bit Windows, and removed one after the other."""
    run.package()
    return run.unittests('tests/both_bitnesses', WINE_USER='english-both')


def suites_for_clients_on(preset):
    """Those that install the component."""
    windows = Windows(preset, 'english-clients')
    return {
        'registration': registration(windows),
        'zepcheck': zepcheck(windows),
        'package': package(windows),
        'script': script(windows),
        'samples': samples(windows),
        'clients': clients(windows),
        'documents': documents(windows),
    }


def suites_on(preset):
    """Tests whose name says German need a German user."""
    english, german = Windows(preset), Windows(preset, 'german')
    return {
        'windows-unit': windows_unit(english),
        'com': com(english, '-*German*'),
        'com-dll': com_dll(english, '-*German*'),
        'faults': faults(english),
        'com-faults': com_faults(english, '-*German*:' + SLOW_TESTS),
        'com-german': com(german, '*German*'),
        'com-dll-german': com_dll(german, '*German*'),
        'monkey': monkey(english),
        **suites_for_clients_on(preset),
    }


X86_SUITES = {**{f'{name}-x86': suite for name, suite in suites_on('x86').items()}, 'both-bitnesses': both_bitnesses}
SUITES = {
    'format': formatting,
    'tools': tools,
    'unit': unit,
    'fuzz': fuzz,
    **suites_on('x64'),
    'binary': binary,
    'docs': docs,
    'docs-browser': docs_browser,
    **X86_SUITES,
}


def have_32_bits():
    return subprocess.run([str(ROOT / 'tools/make_wine32.sh')], check=False).returncode == 0


def lane_of(name):
    """Suites that need the same user of Windows run one after another; they wait often enough to leave time
    for others."""
    if 'german' in name or name in ('format', 'tools', 'unit', 'fuzz', 'binary', 'both-bitnesses'):
        return 'other users, or none'
    family = 'clients' if name.removesuffix('-x86') in suites_for_clients_on('x64') else 'english'
    return family + ('-x86' if name in X86_SUITES else '')


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
    parser.add_argument('--x86', action='store_true', help='the suites for 32 bits, which must run')
    parser.add_argument('--gtest_filter')
    arguments = parser.parse_args()
    unknown = [name for name in arguments.suites if name not in SUITES]
    if unknown:
        parser.error(f'no suite {unknown[0]}; there are {", ".join(SUITES)}')
    run = Run(arguments.gtest_filter)
    names = arguments.suites or list(X86_SUITES if arguments.x86 else SUITES)
    if any(name in X86_SUITES for name in names) and not have_32_bits():
        if arguments.x86 or arguments.suites:
            sys.exit('Without a 32-bit Wine nothing can be tested for 32 bits, see above.')
        run.skipped += [f'{name}: there is no 32-bit Wine, see above' for name in X86_SUITES]
        names = [name for name in names if name not in X86_SUITES]
    lanes = {lane_of(name): [] for name in names}
    for name in names:
        lanes[lane_of(name)].append(name)
    with ThreadPoolExecutor(len(lanes)) as threads:
        list(threads.map(lambda lane: [run.add(name) for name in lane], lanes.values()))
    report(run)
    sys.exit(1 if run.failures else 0)


if __name__ == '__main__':
    main()
