#!/usr/bin/env python3
"""Tells how much of the logic its tests run: the unit tests, and the corpora of the fuzz targets.

Prints lines and branches of each folder of src/, then what did not run. Branches that only exceptions
take do not count. Fails where tests fail or less runs than it should.
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / 'build/coverage'
WANTED = {'lines': 95, 'branches': 90}  # percent


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


def run_tests():
    """Runs everything, beginning with no counts. False if anything failed."""
    for counts in BUILD.rglob('*.gcda'):
        counts.unlink()
    programs = [[BUILD / 'unit_tests', '--gtest_brief=1']]
    for source in sorted((ROOT / 'tests/fuzz').glob('*_fuzz.cpp')):
        corpus = ROOT / 'tests/fuzz/corpus' / source.stem.removesuffix('_fuzz')
        programs.append([BUILD / source.stem, corpus])
    passed = True
    for program in programs:
        print(f'Running {program[0].name}', flush=True)
        done = subprocess.run(program, cwd=ROOT, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False)
        if done.returncode:
            print('\n'.join(done.stdout.splitlines()[-30:]))
            passed = False
    return passed


def read_counts():
    """Each file of src/ with its lines, as gcovr tells them."""
    done = subprocess.run(
        ['gcovr', '-r', ROOT, '--filter', f'{ROOT}/src/', '--exclude-throw-branches',
         '--exclude-unreachable-branches', '--json', '-', BUILD],
        cwd=ROOT, stdout=subprocess.PIPE, check=True)
    for file in sorted(json.loads(done.stdout)['files'], key=lambda file: file['file']):
        yield file['file'], [line for line in file['lines'] if not line.get('gcovr/noncode')]


def ranges(numbers):
    """1, 2, 3, 7 as 1-3, 7."""
    parts = []
    for number in numbers:
        if parts and parts[-1][1] == number - 1:
            parts[-1][1] = number
        else:
            parts.append([number, number])
    return ', '.join(str(first) if first == last else f'{first}-{last}' for first, last in parts)


def main():
    if subprocess.run([ROOT / 'tools/build.sh', 'coverage'], check=False).returncode:
        return 1
    passed = run_tests()
    folders = collections.defaultdict(lambda: (Count(), Count()))
    whole = Count(), Count()
    missing = []
    for name, lines in read_counts():
        sums = whole, folders[str(pathlib.PurePath(name).parent)]
        for line in lines:
            for of_lines, of_branches in sums:
                of_lines.add(line['count'] > 0)
                for branch in line['branches']:
                    of_branches.add(branch['count'] > 0)
        lost = [line['line_number'] for line in lines if line['count'] == 0]
        half = [line['line_number'] for line in lines if line['count'] > 0 and
                any(branch['count'] == 0 for branch in line['branches'])]
        if lost:
            missing.append(f'{name}: lines {ranges(lost)}')
        if half:
            missing.append(f'{name}: branches of lines {ranges(half)}')
    print(f'\n{"":32}{"lines":>14}{"":9}{"branches":>14}')
    for folder, counts in [*sorted(folders.items()), ('all', whole)]:
        print(f'{folder:32}{counts[0]}{counts[1]}')
    print('\nNot run:' if missing else '')
    print('\n'.join(missing))
    for what, count in zip(WANTED, whole):
        if count.percentage < WANTED[what]:
            print(f'{count.percentage:.1f} % of the {what} ran; {WANTED[what]} % should')
            passed = False
    return 0 if passed else 1


if __name__ == '__main__':
    sys.exit(main())
