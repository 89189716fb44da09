"""The DLLs of both bitnesses, registered side by side and unregistered one after the other."""
import pathlib
import tempfile
import unittest

from bitnesses import OTHER, TEXT, TwoOfThem, check, dll, register, run_system_program
from package.product import Product
from wine_machine import LOCAL_CLASSES, changes, for_all_users, registry, value, wine, with_library_version

PRODUCT = Product()
HELP = rf'TypeLib\{PRODUCT.library.guid}\1.0\HELPDIR'


def setUpModule():
    """The first classes of a user leave the keys that hold all classes."""
    for bitness in OTHER:
        for undo in ((), ('/u',)):
            register(bitness, *undo)
            register(bitness, *undo, '/n', '/i:user')


class ForAllUsersTest(TwoOfThem, unittest.TestCase):
    def install(self, bitness):
        register(bitness)

    def remove(self, bitness):
        register(bitness, '/u')

    def test_a_folder_for_help_that_somebody_chose_stays(self):
        before = registry()
        register('x64')
        register('x86')
        wine('reg', 'add', rf'HKLM\Software\Classes\{HELP}', '/ve', '/d', r'C:\Help', '/f')
        register('x64', '/u')
        self.assertEqual(r'C:\Help', value(registry(), rf'{LOCAL_CLASSES}\{HELP}'))
        register('x86', '/u')
        self.assertEqual({}, changes(before, registry()))

    def test_a_version_of_two_digits_is_hexadecimal_in_the_registry(self):
        before = registry()
        with tempfile.TemporaryDirectory() as folder:
            for bitness in OTHER:
                path = pathlib.Path(folder) / f'{bitness}.dll'
                path.write_bytes(with_library_version(dll(bitness).read_bytes(), 10, 27))
                run_system_program(bitness, 'regsvr32', '/s', path)
            run_system_program('x64', 'regsvr32', '/s', '/u', f'{folder}/x64.dll')
            paths = rf'{LOCAL_CLASSES}\TypeLib\{PRODUCT.library.guid}\a.1b\0'.lower()
            self.assertEqual([rf'{paths}\win32'], [key for key in registry() if key.startswith(paths + '\\')])
            run_system_program('x86', 'regsvr32', '/s', '/u', f'{folder}/x86.dll')
        self.assertEqual({}, changes(before, registry()))

    def test_removing_twice_leaves_the_other_as_well(self):
        before = registry()
        register('x86')
        alone = registry()
        register('x64', '/u')
        self.assertEqual({}, changes(alone, registry()))
        register('x86', '/u')
        self.assertEqual({}, changes(before, registry()))


class ForOneUserTest(unittest.TestCase):
    """In Wine, both bitnesses write a user's classes to the same keys, so that the last one registered has them."""

    def test_nothing_is_left_of_either(self):
        before = registry()
        for first, second in (('x64', 'x86'), ('x86', 'x64')):
            for removed in ((first, second), (second, first)):
                with self.subTest(registered=(first, second), removed=removed):
                    register(first, '/n', '/i:user')
                    register(second, '/n', '/i:user')
                    for bitness in removed:
                        register(bitness, '/u', '/n', '/i:user')
                    self.assertEqual({}, changes(before, registry()))

    def test_what_is_there_for_all_stays(self):
        before = registry()
        register('x86')
        for_all = registry()
        register('x64', '/n', '/i:user')
        register('x64', '/u', '/n', '/i:user')
        self.assertEqual([], for_all_users(changes(for_all, registry())))
        register('x86', '/u')
        self.assertEqual({}, changes(before, registry()))


class ZepcheckTest(unittest.TestCase):
    def test_says_that_only_the_other_bitness_is_registered(self):
        for bitness, other in OTHER.items():
            with self.subTest(bitness):
                register(other)
                output, faults, code = check(bitness)
                register(other, '/u')
                self.assertEqual([f'Only the component for {TEXT[other]} programs is registered: {TEXT[bitness]} '
                                  'programs do not find it.'], faults, output)
                self.assertEqual(1, code)
                self.assertRegex(output, rf'\nRegistered for {TEXT[other]} programs\n  for all users +Z:.*zepkit10.dll\n')


if __name__ == '__main__':
    unittest.main()
