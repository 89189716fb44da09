"""A 64-bit Windows that runs programs of both bitnesses, and the component of each."""
import re

from wine_machine import ROOT, changes, registry, run

OTHER = {'x64': 'x86', 'x86': 'x64'}
SYSTEM = {'x64': r'C:\windows\system32', 'x86': r'C:\windows\syswow64'}
TEXT = {'x64': '64-bit', 'x86': '32-bit'}


def dll(bitness):
    return ROOT / f'build/{bitness}/zepkit10.dll'


def run_system_program(bitness, name, *arguments):
    """Runs the one of a bitness; it must succeed."""
    output, code = run(rf'{SYSTEM[bitness]}\{name}.exe', *arguments)
    if code:
        raise AssertionError(f'{name} of {bitness} ended with {code}\n{output}')
    return output


def register(bitness, *options):
    run_system_program(bitness, 'regsvr32', '/s', *options, dll(bitness))


def check(bitness):
    """What zepcheck of a bitness says, its faults, and its exit code."""
    output, code = run(ROOT / f'build/{bitness}/zepcheck.exe')
    return output, re.findall(r'^  FAULT: (.*)$', output, re.MULTILINE), code


class TwoOfThem:
    """What holds for every way to install, told by `install(bitness)` and `remove(bitness)`."""

    def keys(self):
        """What there is to compare."""
        return registry()

    def assert_works(self, bitness):
        output, _, code = check(bitness)
        self.assertEqual(0, code, output)

    def assert_same(self, expected, found, what):
        self.assertEqual({}, changes(expected, found), what)

    def remove_each_beside_the_other(self, first, second):
        """The keys of each when it is alone: of the first before there was the second, of the second after."""
        before = self.keys()
        self.install(first)
        alone = self.keys()
        self.assertGreater(len(changes(before, alone)), 100)
        self.install(second)
        self.assert_works(first)
        self.assert_works(second)
        self.remove(second)
        self.assert_same(alone, self.keys(), f'{second} took something of {first} along')
        self.assert_works(first)
        self.install(second)
        self.remove(first)
        left = self.keys()
        self.assert_works(second)
        self.remove(second)
        self.assert_same(before, self.keys(), 'something was left behind')
        return alone, left

    def test_removing_one_leaves_the_other_as_if_it_had_been_alone(self):
        alone_64, left_32 = self.remove_each_beside_the_other('x64', 'x86')
        alone_32, left_64 = self.remove_each_beside_the_other('x86', 'x64')
        self.assert_same(alone_64, left_64, 'what is left of x64')
        self.assert_same(alone_32, left_32, 'what is left of x86')
