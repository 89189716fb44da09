"""What test programs print, turned into results.

Every reader takes a program's output and yields a Result per test. A program that died or was cut
short yields a failed one for what it was about.
"""
import dataclasses
import difflib
import re


@dataclasses.dataclass
class Result:
    name: str
    outcome: str  # 'passed', 'failed' or 'skipped'
    detail: str = ''
    options: str = ''  # that make ./dev test run this one alone


def ending(exit_code):
    return 'ran into its time limit' if exit_code == 124 else f'ended with exit code {exit_code}'


def googletest_results(output, exit_code):
    outcomes = {'      OK': 'passed', ' FAILED ': 'failed', ' SKIPPED': 'skipped'}
    name, detail, count, failed = None, [], 0, False
    for line in output.splitlines():
        match = re.match(r'\[( RUN    |       OK|  FAILED |  SKIPPED) +\] (\S+)', line)
        if match and match[1] == ' RUN    ':
            name, detail = match[2], []
        elif match and name == match[2].rstrip(','):
            outcome = outcomes[match[1][1:]]
            yield Result(name, outcome, '\n'.join(detail), f' --gtest_filter={name}')
            failed |= outcome == 'failed'
            name, count = None, count + 1
        elif name:
            detail.append(line)
    finished = re.search(r'^\[==========\] \d+ tests? .*ran\.', output, re.MULTILINE)
    if name or not finished:
        yield Result(name or 'the test program', 'failed', '\n'.join(detail + [ending(exit_code)]))
    elif exit_code and not failed:
        yield Result('the end of the test program', 'failed', ending(exit_code))
    elif not count:
        yield Result('the test program', 'failed', 'no test ran')


def unittest_results(output, exit_code):
    outcomes = {'ok': 'passed', 'FAIL': 'failed', 'ERROR': 'failed', 'skipped': 'skipped'}
    failed, count = False, 0
    for line in output.splitlines():
        match = re.match(r'(.+) \.\.\. .*?\b(ok|FAIL|ERROR|skipped)\b', line)
        if match:
            outcome, count = outcomes[match[2]], count + 1
            failed |= outcome == 'failed'
            yield Result(match[1], outcome, output if outcome == 'failed' else '')
    if exit_code and not failed or not count:
        yield Result('the tests in Python', 'failed', f'{output}\n{ending(exit_code)}')


def script_results(output, exit_code):
    """A script prints 'ok …' and 'FAILED …', and 'end of script' in its last line.

    Script hosts are silent about uncaught errors: only the last line proves that all of it ran.
    """
    lines = output.splitlines()
    for line in lines:
        if line.startswith('ok '):
            yield Result(line[3:], 'passed')
        elif line.startswith('FAILED '):
            yield Result(line[7:], 'failed', line)
    if exit_code or not lines or lines[-1] != 'end of script':
        yield Result('the end of the script', 'failed',
                     '\n'.join(lines[-5:] + [f'{ending(exit_code)} before "end of script"']))


def lines_of(transcript, lacking=()):
    """The lines of a text, some of which begin with a mark, as [events]: those are for programs that do not lack it."""
    for line in transcript.splitlines():
        mark, text = re.fullmatch(r'(?:\[(\w+)\])?(.*)', line).groups()
        if mark not in lacking:
            yield text


def transcript_results(name, output, exit_code, expected, lacking=()):
    """A program that is one test: what it prints is what a file holds."""
    lines = list(lines_of(expected.read_text(encoding='utf-8'), lacking)) if expected.exists() else []
    difference = '\n'.join(difflib.unified_diff(lines, output.splitlines(), expected.name, 'printed', lineterm=''))
    good = not exit_code and lines and not difference
    yield Result(name, 'passed' if good else 'failed', f'{difference}\n{ending(exit_code)}')


def program_results(output, exit_code):
    """A program that is one test."""
    yield Result('runs', 'failed' if exit_code else 'passed', f'{output[-4000:]}\n{ending(exit_code)}')
