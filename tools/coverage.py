#!/usr/bin/env python3
"""Tells how much of the sources the tests run: of the logic the unit tests and the corpora of the
fuzz targets, of the component's own sources its tests under Wine.

    coverage.py [logic] [component]

Prints lines and branches of each folder of src/, of what has to run as a whole, and what did not run.
Branches that only exceptions take do not count. Fails where tests fail or less runs than it should.
"""
import collections
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WANTED = {'lines': 95, 'branches': 90}  # percent
# What every call passes through runs as a whole.
COMPLETE = {
    'the binder': ('binder', 'arguments', 'array_conversion', 'array_access', 'variant'),
    'the shims': ('shim', 'abi', 'automation_object', 'object_core', 'module', 'ref', 'safe_array', 'string'),
    'translation of errors': ('translate', 'errors', 'error_text'),
}
WINE = ROOT / 'tools/wine.sh'
# Where the compiler decides what the source does not: whether `this` is null, whether a constructor
# failed that left memory to free, whether values are equal, whether another thread initialises a static.
COMPILERS_OWN = re.compile(r'\bdelete this;|\bnew T\(|= default;|^\s*static const ')
NO_CODE = re.compile(r'\s*}*')


class Count:
    """How many there are, and how many of them ran."""

    def __init__(self):
        self.ran, self.all = 0, 0

    def add(self, ran):
        self.ran += ran
        self.all += 1

    @property
    def percentage(self):
        return 100 * self.ran / self.all if self.all else 100

    def __str__(self):
        return f'{self.ran} of {self.all}'.rjust(14) + f'{self.percentage:7.1f} %'


def is_component(name):
    return name.startswith('src/platform/') or '_object.' in name or '_windows.' in name


class Logic:
    """What is built for this machine."""
    preset, gcov = 'coverage', 'gcov'

    @staticmethod
    def owns(name):
        return not is_component(name)

    @staticmethod
    def programs(build):
        yield [build / 'unit_tests', '--gtest_brief=1'], {}
        for source in sorted((ROOT / 'tests/fuzz').glob('*_fuzz.cpp')):
            corpus = ROOT / 'tests/fuzz/corpus' / source.stem.removesuffix('_fuzz')
            yield [build / source.stem, corpus], {}


class Component:
    """What is built for Windows: linked into its tests, and as a DLL what only the DLL has."""
    preset, gcov = 'coverage-x64', 'x86_64-w64-mingw32-gcov-posix'

    @staticmethod
    def owns(name):
        return is_component(name)

    @classmethod
    def programs(cls, build):
        com_tests = build / 'com_tests.exe'
        dll = f'--dll={build}/zepkit10.dll'
        yield [WINE, 'english', com_tests, '--gtest_brief=1', '--gtest_filter=-*German*'], {}
        yield [WINE, 'german', com_tests, '--gtest_brief=1', '--gtest_filter=*German*'], {}
        yield [WINE, 'english', build / 'fault_tests.exe', '--gtest_brief=1'], {}
        yield [WINE, 'english', com_tests, dll, '--gtest_brief=1',
               '--gtest_filter=UnloadTest.TheDll*:CounterTest.*'], {}
        yield [sys.executable, '-m', 'unittest', 'discover', '-s', ROOT / 'tests/registration', '-p', '*test.py'], {
            'PYTHONPATH': f"{ROOT / 'tools'}:{ROOT / 'tests'}", 'ZEPKIT10_PRESET': cls.preset, 'WINE_USER': 'english'}


PARTS = {'logic': Logic, 'component': Component}


def run_tests(part):
    """Runs everything, beginning with no counts. False if anything failed."""
    build = ROOT / 'build' / part.preset
    for counts in build.rglob('*.gcda'):
        counts.unlink()
    passed = True
    for program, settings in part.programs(build):
        print('Running', *(os.path.basename(word) for word in program), flush=True)
        environment = {**os.environ, 'WINE_TIMEOUT': '0', **settings}
        done = subprocess.run(program, cwd=ROOT, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        if done.returncode:
            print('\n'.join(done.stdout.splitlines()[-30:]))
            passed = False
    return passed


def decisions(branches):
    """The ways that each decision of a line has. Calls, which also end by exceptions, are none."""
    found, complete = [], True
    for branch in branches:
        if branch['fallthrough'] or complete:
            found.append([])
        found[-1].append(branch)
        complete = found[-1][0]['fallthrough'] and len(found[-1]) == 2
    return [[way['count'] > 0 for way in ways] for ways in found
            if len(ways) > 1 and not any(way['throw'] for way in ways)]


class Line:
    """What ran of a line, in all functions that templates have made of it."""

    def __init__(self):
        self.ran, self.shapes = False, {}

    def add(self, ran, found):
        if ran and not self.ran:
            self.ran, self.shapes = True, {}
        if ran or not self.ran:
            shape = tuple(len(ways) for ways in found)
            before = self.shapes.get(shape, found)
            self.shapes[shape] = [[any(way) for way in zip(*both)] for both in zip(before, found)]

    def branches(self):
        """Whether each ran. Where no way of a decision did although the line ran, either another
        branch is missing that leads there, or only an exception does."""
        return [way for found in self.shapes.values() for ways in found
                if any(ways) or not self.ran for way in ways]


def read_counts(part):
    """The lines of each file of the part, by number."""
    build = ROOT / 'build' / part.preset
    files = collections.defaultdict(lambda: collections.defaultdict(Line))
    for notes in sorted(build.rglob('*.gcno')):
        done = subprocess.run([part.gcov, '--branch-probabilities', '--json-format', '--stdout', notes], cwd=build,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
        for file in json.loads(done.stdout)['files']:
            path = pathlib.Path(os.path.normpath(build / file['file']))
            if path.is_relative_to(ROOT / 'src') and part.owns(name := str(path.relative_to(ROOT))):
                for line in file['lines']:
                    files[name][line['line_number']].add(line['count'] > 0, decisions(line['branches']))
    for name, lines in files.items():
        source = (ROOT / name).read_text(encoding='utf-8').splitlines()
        for number in list(lines):
            if NO_CODE.fullmatch(source[number - 1]):
                del lines[number]
            elif COMPILERS_OWN.search(source[number - 1]):
                lines[number].shapes = {}
    return files


def ranges(numbers):
    """1, 2, 3, 7 as 1-3, 7."""
    parts = []
    for number in numbers:
        if parts and parts[-1][1] == number - 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ', '.join(str(first) if first == last else f'{first}-{last}' for first, last in parts)


def groups(name):
    """What a file counts for."""
    path = pathlib.PurePath(name)
    yield str(path.parent)
    yield from (what for what, stems in COMPLETE.items() if path.stem in stems)
    yield 'all'


def not_run(name, lines):
    lost = [number for number, line in sorted(lines.items()) if not line.ran]
    half = [number for number, line in sorted(lines.items()) if line.ran and not all(line.branches())]
    if lost:
        yield f'{name}: lines {ranges(lost)}'
    if half:
        yield f'{name}: branches of lines {ranges(half)}'


def report(files):
    """Prints the counts of files and their lines. False if too little ran."""
    counts = collections.defaultdict(lambda: dict(zip(WANTED, (Count(), Count()))))
    for name, lines in files.items():
        for group in groups(name):
            for line in lines.values():
                counts[group]['lines'].add(line.ran)
                for ran in line.branches():
                    counts[group]['branches'].add(ran)
    print(f'\n{"":32}{"lines":>14}{"":9}{"branches":>14}')
    folders = sorted(group for group in counts if group.startswith('src'))
    for group in [*folders, *(what for what in COMPLETE if what in counts), 'all']:
        print(f'{group:32}{counts[group]["lines"]}{counts[group]["branches"]}')
    missing = [line for name in sorted(files) for line in not_run(name, files[name])]
    print('\n'.join(['\nNot run:', *missing] if missing else []))
    enough = True
    for group in ('all', *COMPLETE):
        for what, count in counts[group].items():
            wanted = WANTED[what] if group == 'all' else 100
            if count.percentage < wanted:
                print(f'{count.percentage:.1f} % of the {what} of {group} ran; {wanted} % should')
                enough = False
    return enough


def main():
    passed, files = True, {}
    for name in sys.argv[1:] or PARTS:
        part = PARTS[name]
        if subprocess.run([ROOT / 'tools/build.sh', part.preset], check=False).returncode:
            return 1
        passed = run_tests(part) and passed
        files |= read_counts(part)
    return 0 if report(files) and passed else 1


if __name__ == '__main__':
    sys.exit(main())
