#!/usr/bin/env python3
"""Tells whether the unit tests of the logic would see a mistake.

    mutate.py [COUNT] [--seed S] [--file PART]

Makes COUNT small mistakes, one at a time and drawn at random, in a copy of the sources: another
comparison or operator, another constant, a condition that always or never holds, a statement left
out. The unit tests should fail with each of them. What survives is printed as the line was and
as it became; it is a gap in the tests, or a mistake that changes nothing.
"""
import argparse
import collections
import filecmp
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / 'build/mutate'
TESTS = COPY / 'build/native/unit_tests'
WANTED = 80  # percent
MEMORY = 4 << 30  # bytes that the tests may have
# Those that run long go last: most mistakes are seen before.
SLOW = 'DeepTerms*:*Property*:*Million*'

Mutant = collections.namedtuple('Mutant', 'file line start end replacement')

REPLACEMENTS = {
    ' < ': (' <= ', ' >= '), ' <= ': (' < ', ' > '), ' > ': (' >= ', ' <= '), ' >= ': (' > ', ' < '),
    ' == ': (' != ',), ' != ': (' == ',), ' && ': (' || ',), ' || ': (' && ',),
    ' + ': (' - ',), ' - ': (' + ',), ' * ': (' + ',), ' / ': (' * ',), ' % ': (' / ',),
    ' += ': (' -= ',), ' -= ': (' += ',), '++': ('--',), '--': ('++',),
    'true': ('false',), 'false': ('true',), 'std::min': ('std::max',), 'std::max': ('std::min',),
}
OPERATOR = re.compile('|'.join(
    rf'\b{re.escape(text)}\b' if text[0].isalpha() else re.escape(text) for text in REPLACEMENTS))
NUMBER = re.compile(r'(?<![\w.])\d+(?![\w.\'])')
CONDITION = re.compile(r'\b(?:if|while) \(')
STATEMENT = re.compile(r'^\s*(?!return\b|using\b|throw\b|case\b|break\b|continue\b)[\w.\[\]>*+-]+'
                       r'(?: [-+*/|]?= |\().*;$')
DECLARATION = re.compile(r'^\s*(?:const |static |constexpr |auto |std::|struct |class |enum |typedef )')


def is_logic(path):
    return path.suffix in ('.cpp', '.h') and '_object' not in path.name and \
        'platform' not in path.relative_to(ROOT / 'src').parts


def masked(line):
    """The line with blanks for what is no code."""
    line = re.sub(r"'(?:[^'\\]|\\.)*'|\"(?:[^\"\\]|\\.)*\"", lambda text: '_' * len(text[0]), line)
    return re.sub(r'//.*', lambda text: ' ' * len(text[0]), line)


def closing(text, opening):
    """Where the bracket at a place closes; -1 if not in this line."""
    depth = 0
    for place in range(opening, len(text)):
        depth += {'(': 1, ')': -1}.get(text[place], 0)
        if depth == 0:
            return place
    return -1


def mutants_of_line(file, number, line):
    code = masked(line)
    if re.match(r'\s*(?:#|template|static_assert|asm|friend|using|namespace)', code) or 'operator' in code:
        return
    for found in OPERATOR.finditer(code):
        for replacement in REPLACEMENTS[found[0]]:
            yield Mutant(file, number, found.start(), found.end(), replacement)
    for found in NUMBER.finditer(code):
        yield Mutant(file, number, found.start(), found.end(), str(int(found[0]) + 1))
    for found in CONDITION.finditer(code):
        end = closing(code, found.end() - 1)
        if end > 0:
            values = ('true', 'false') if found[0].startswith('if') else ('false',)
            for value in values:
                yield Mutant(file, number, found.end(), end, value)
    if STATEMENT.match(code) and not DECLARATION.match(code):
        yield Mutant(file, number, len(line) - len(line.lstrip()), len(line), ';')


def all_mutants(part):
    for path in sorted((ROOT / 'src').rglob('*')):
        name = str(path.relative_to(ROOT))
        if is_logic(path) and part in name:
            for number, line in enumerate(path.read_text(encoding='utf-8').splitlines()):
                yield from mutants_of_line(name, number, line)


def run(*command, limits=()):
    """The exit code, under limits as `resource` takes them."""
    def limit():
        for each in limits:
            resource.setrlimit(*each)
    return subprocess.run(command, cwd=COPY, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False, preexec_fn=limit).returncode


def build():
    return run('ninja', '-C', 'build/native', '-j2', 'unit_tests') == 0


def seconds_used():
    """Of the processor, by what ran so far."""
    return resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime


class Tests:
    """The unit tests, quick ones first. A mistake that has a part run much longer than it did at
    first, or take much memory, is seen."""

    def __init__(self):
        self.limits = {}
        for part in (f'-{SLOW}', SLOW):
            before = seconds_used()
            if run(TESTS, f'--gtest_filter={part}') != 0:
                sys.exit('The unit tests fail without any mistake.')
            seconds = int(5 + 5 * (seconds_used() - before))
            self.limits[part] = ((resource.RLIMIT_CPU, (seconds, seconds)),
                                 (resource.RLIMIT_AS, (MEMORY, MEMORY)),
                                 (resource.RLIMIT_CORE, (0, 0)))

    def fail(self):
        return any(run(TESTS, f'--gtest_filter={part}', '--gtest_fail_fast', limits=limits) != 0
                   for part, limits in self.limits.items())


def copy(name):
    """Makes the copy of a file or folder the same again, and touches only what differs."""
    source, target = ROOT / name, COPY / name
    if source.is_dir():
        target.mkdir(parents=True, exist_ok=True)
        for gone in {path.name for path in target.iterdir()} - {path.name for path in source.iterdir()}:
            subprocess.run(['rm', '-r', target / gone], check=True)
        for path in source.iterdir():
            copy(path.relative_to(ROOT))
    elif not target.exists() or not filecmp.cmp(source, target, shallow=False):
        shutil.copy(source, target)


def prepare():
    """A copy of the sources, built. What is there from the last time is used again."""
    COPY.mkdir(parents=True, exist_ok=True)
    for name in ('CMakeLists.txt', 'CMakePresets.json', 'cmake', 'src', 'tests', 'idl', 'tools', 'bench'):
        copy(name)
    configured = run('cmake', '--preset', 'native', '-DZEPKIT10_SANITIZERS=') == 0
    if not configured or not build():
        sys.exit(f'The sources do not build; try it in {COPY}.')


def apply(mutant, text):
    """The text with the mistake, and the line that has it."""
    lines = text.splitlines(keepends=True)
    line = lines[mutant.line]
    ending = line[len(line.rstrip('\n')):]
    changed = line.rstrip('\n')[:mutant.start] + mutant.replacement + line.rstrip('\n')[mutant.end:]
    lines[mutant.line] = changed + ending
    return ''.join(lines), changed.strip()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('count', nargs='?', type=int, default=100)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--file', default='', metavar='PART', help='only files with this in their name')
    arguments = parser.parse_args()
    mutants = list(all_mutants(arguments.file))
    random.Random(arguments.seed).shuffle(mutants)
    print(f'{len(mutants)} possible mistakes; building', flush=True)
    prepare()
    tests = Tests()
    killed = survivors = broken = 0
    for mutant in mutants:
        if killed + survivors == arguments.count:
            break
        path = COPY / mutant.file
        original = path.read_text(encoding='utf-8')
        text, line = apply(mutant, original)
        path.write_text(text, encoding='utf-8')
        if not build():
            broken += 1
            outcome = 'does not compile'
        elif tests.fail():
            killed += 1
            outcome = 'seen'
        else:
            survivors += 1
            was = original.splitlines()[mutant.line].strip()
            outcome = f'SURVIVED\n    {was}\n    {line}'
        print(f'{mutant.file}:{mutant.line + 1}: {outcome}', flush=True)
        path.write_text(original, encoding='utf-8')
    made = killed + survivors
    percentage = 100 * killed / made if made else 0
    print(f'{killed} of {made} mistakes were seen, {percentage:.0f} %; {broken} others did not compile')
    return 0 if percentage >= WANTED else 1


if __name__ == '__main__':
    sys.exit(main())
