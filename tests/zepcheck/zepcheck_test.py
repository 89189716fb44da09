"""zepcheck on machines in good and bad order: what it says, and how it ends."""
import pathlib
import re
import shutil
import struct
import tempfile
import unittest

from package.product import Product
from wine_machine import (DLL, DRIVE_C, LOCAL_CLASSES, PLATFORM, PRESET, ROOT, changes, registry, run, value, wine,
                          with_library_version)

PRODUCT = Product()
PROGRAM = ROOT / f'build/{PRESET}/zepcheck.exe'
CLASSES = r'HKLM\Software\Classes'
COUNTER = next(each for each in PRODUCT.classes if each.name == 'Counter')
LIST = next(each for each in PRODUCT.classes if each.name == 'List')
TYPE_LIBRARY = rf'{CLASSES}\TypeLib\{PRODUCT.library.guid}\{PRODUCT.library.version}\0\{PLATFORM}'
OWN, OTHER = {'x64': ('64-bit', '32-bit'), 'x86': ('32-bit', '64-bit')}[PRESET]


def windows_path(path):
    return f'Z:{path}'.replace('/', '\\')


def write(key, text, *options):
    wine('reg', 'add', key, '/ve', '/d', text, '/f', *options)


class ZepcheckTest(unittest.TestCase):
    def setUp(self):
        # What is registered wrongly is put right before it is removed.
        for options in ([], ['/u'], ['/u', '/n', '/i:user']):
            wine('regsvr32', '/s', *options, DLL)

    tearDown = setUp

    def check(self):
        """Its words, its faults with the advice to each, its exit code."""
        output, code = run(PROGRAM)
        faults = re.findall(r'^  FAULT: (.*)\n  DO:    (.*)$', output, re.MULTILINE)
        self.assertEqual(output.count('FAULT'), len(faults), output)
        return output, dict(faults), code

    def assert_faults(self, *sentences):
        output, faults, code = self.check()
        self.assertEqual(list(sentences), list(faults), output)
        self.assertEqual(1, code)
        number = '1 fault was' if len(sentences) == 1 else f'{len(sentences)} faults were'
        self.assertIn(f'\n{number} found; ', output)
        return faults

    def assert_self_test_passes(self, output):
        families = output.split('\nSelf-test\n')[1].split('\n\n')[0].splitlines()
        self.assertEqual(17, len(families))
        self.assertEqual([], [line for line in families if not line.endswith(' works')])

    def test_says_that_all_is_well(self):
        wine('regsvr32', '/s', DLL)
        before = registry()
        output, faults, code = self.check()
        self.assertEqual(({}, 0), (faults, code), output)
        self.assertTrue(output.endswith('\n\nAll is well.\n'))
        self.assert_self_test_passes(output)
        self.assertEqual({}, changes(before, registry()))
        self.assertEqual([], list((DRIVE_C / 'users').rglob('zepcheck *')))

    def test_says_what_is_registered_where(self):
        wine('regsvr32', '/s', DLL)
        output, _, _ = self.check()
        self.assertIn(f'\nzepcheck {PRODUCT.version}, {OWN}: {windows_path(PROGRAM)}\n', output)
        for_all = output.split('\nRegistered for all users\n')[1].split('\n\n')[0]
        for each in PRODUCT.classes:
            self.assertRegex(for_all, rf'\n? +{each.name} +Zepkit10.{each.name}, Zepkit10.{each.name}.1, {each.guid}\n')
        self.assertRegex(for_all, f'\n  file +{re.escape(windows_path(DLL))}\n')
        self.assertRegex(for_all, rf'\n  version +{PRODUCT.version}, {OWN}\n')
        self.assertRegex(for_all, rf'\n  type library +1\.0, {re.escape(windows_path(DLL))}$')
        self.assertRegex(output, rf'\nRegistered for you alone\n  nothing +for {OWN} programs\n')

    def test_finds_a_type_library_of_a_version_with_two_digits(self):
        with tempfile.TemporaryDirectory() as folder:
            dll, program = (pathlib.Path(folder) / path.name for path in (DLL, PROGRAM))
            for path in (DLL, PROGRAM):
                (pathlib.Path(folder) / path.name).write_bytes(with_library_version(path.read_bytes(), 10, 27))
            before = registry()
            wine('regsvr32', '/s', dll)
            path = value(registry(), rf'{LOCAL_CLASSES}\TypeLib\{PRODUCT.library.guid}\a.1b\0\{PLATFORM}')
            self.assertEqual(windows_path(dll), path)
            output, code = run(program)
            wine('regsvr32', '/s', '/u', dll)
        self.assertEqual(0, code, output)
        self.assertRegex(output, rf'\n  type library +10\.27, {re.escape(windows_path(dll))}\n')
        self.assertIn('Zepkit10.Counter.10,', output)
        self.assertEqual({}, changes(before, registry()))

    def test_leaves_folders_of_others_alone(self):
        wine('regsvr32', '/s', DLL)
        # Whatever number the process has, there are folders of its name, with a file in each.
        temporary = [path for path in (DRIVE_C / 'users').rglob('Temp') if path.is_dir()]
        files = [folder / f'zepcheck {number}{end}/kept.txt' for folder in temporary for number in range(4, 2000, 4)
                 for end in ('', ' 1', ' 2')]
        self.assertTrue(files)
        for file in files:
            file.parent.mkdir()
            file.write_text('kept', encoding='ascii')
        try:
            output, _, code = self.check()
            self.assertEqual(0, code, output)
            self.assert_self_test_passes(output)
            self.assertEqual([], [file for file in files if file.read_text(encoding='ascii') != 'kept'])
            self.assertEqual(len(files), sum(len(list(folder.glob('zepcheck *'))) for folder in temporary))
        finally:
            for file in files:
                shutil.rmtree(file.parent, ignore_errors=True)

    def test_says_that_it_is_not_registered(self):
        faults = self.assert_faults(
            f'Zepkit10 is not registered for {OWN} programs, neither for all users nor for you alone.')
        advice, = faults.values()
        self.assertIn(f'zepkit10-{PRESET}.msi', advice)
        self.assertIn(rf'C:\windows\system32\regsvr32.exe "{windows_path(DLL)}"', advice)

    def test_its_advice_helps(self):
        advice, = self.check()[1].values()
        command = re.search(r'as an administrator: (\S+) "(.*?)"', advice)
        wine(command[1], '/s', command[2])
        self.assertEqual(0, self.check()[2])

    def test_says_that_the_dll_is_gone(self):
        with tempfile.TemporaryDirectory(prefix='zepkit10 für Müller ') as folder:
            dll = pathlib.Path(folder) / 'zepkit10.dll'
            dll.write_bytes(DLL.read_bytes())
            wine('regsvr32', '/s', dll)
            self.assertEqual(0, self.check()[2])
            dll.unlink()
            path = windows_path(dll)
            self.assert_faults(
                f'The file {path} is registered, but it is not there.',
                f'The registered path of the type library, {path}, leads to no type library.')

    def test_says_that_the_type_library_leads_elsewhere(self):
        wine('regsvr32', '/s', DLL)
        write(TYPE_LIBRARY, r'C:\nowhere.tlb')
        self.assert_faults(r'The registered path of the type library, C:\nowhere.tlb, leads to no type library.')
        write(TYPE_LIBRARY, windows_path(PROGRAM))
        self.assert_faults(f'The type library is registered in {windows_path(PROGRAM)}, but the classes are in '
                           f'{windows_path(DLL)}.')
        write(TYPE_LIBRARY, r'stdole2.tlb')
        self.assert_faults('The type library in stdole2.tlb describes other classes: it is '
                           '{00020430-0000-0000-C000-000000000046} 2.0.')
        wine('reg', 'delete', TYPE_LIBRARY, '/f')
        self.assert_faults('The type library is not registered.')

    def test_says_that_a_name_leads_elsewhere(self):
        wine('regsvr32', '/s', DLL)
        write(rf'{CLASSES}\Zepkit10.Counter\CLSID', LIST.guid)
        wine('reg', 'delete', rf'{CLASSES}\Zepkit10.List.1', '/f')
        faults = self.assert_faults(
            f'The name Zepkit10.Counter leads to the class {LIST.guid} instead of {COUNTER.guid}.',
            'The name Zepkit10.List.1 leads nowhere.',
            'The self-test of counter found: the object has no member Increment.')
        self.assertIn('Another program took the name', next(iter(faults.values())))

    def test_says_that_a_class_is_missing_or_not_as_it_should_be(self):
        wine('regsvr32', '/s', DLL)
        wine('reg', 'delete', rf'{CLASSES}\CLSID\{LIST.guid}', '/f')
        write(rf'{CLASSES}\CLSID\{COUNTER.guid}\ProgID', 'Zepkit10.List.1')
        faults = self.check()[1]
        self.assertIn('These classes are not registered: List.', faults)
        self.assertIn(rf'The value CLSID\{COUNTER.guid}\ProgID is "Zepkit10.List.1" instead of "Zepkit10.Counter.1".',
                      faults)

    def test_tells_a_text_of_any_length(self):
        wine('regsvr32', '/s', DLL)
        text = ''.join(f'{number:05}' for number in range(1000))
        key = rf'CLSID\{COUNTER.guid}\VersionIndependentProgID'
        write(rf'{CLASSES}\{key}', text)
        self.assert_faults(f'The value {key} is "{text}" instead of "Zepkit10.Counter".')

    def test_says_that_only_the_user_finds_it(self):
        wine('regsvr32', '/s', '/n', '/i:user', DLL)
        output, faults, code = self.check()
        self.assertRegex(output, rf'\nRegistered for all users\n  nothing +for {OWN} programs\n')
        self.assertIn('Zepkit10.Counter.1', output.split('\nRegistered for you alone\n')[1].split('\n\n')[0])
        # Wine looks for classes of all users only.
        self.assertEqual(1, code)
        self.assertEqual(['Creating Zepkit10.Global failed: (0x800401F3), although it is registered.'], list(faults))
        advice, = faults.values()
        self.assertIn('look for classes of all users only', advice)

    @unittest.skipIf(PRESET == 'x86', 'a 32-bit Windows has no other programs')
    def test_says_that_only_the_other_bitness_is_registered(self):
        for each in PRODUCT.classes:
            write(rf'{CLASSES}\CLSID\{each.guid}\InprocServer32', r'C:\Zepkit10\x86\zepkit10.dll', '/reg:32')
        try:
            output, _, _ = self.check()
            self.assertRegex(output, r'\nRegistered for 32-bit programs\n  for all users +C:.Zepkit10.x86.zepkit10.dll\n')
            self.assert_faults(f'Only the component for {OTHER} programs is registered: {OWN} programs do not find it.')
        finally:
            for each in PRODUCT.classes:
                wine('reg', 'delete', rf'{CLASSES}\CLSID\{each.guid}', '/f', '/reg:32')

    def test_says_that_the_dll_is_of_the_other_bitness(self):
        other = ROOT / f"build/{'x86' if PRESET == 'x64' else 'x64'}/zepkit10.dll"
        wine('regsvr32', '/s', DLL)
        path = windows_path(other)
        for each in PRODUCT.classes:
            write(rf'{CLASSES}\CLSID\{each.guid}\InprocServer32', path)
        write(TYPE_LIBRARY, path)
        faults = self.check()[1]
        self.assertIn(f'The file {path} is for {OTHER} programs, but it is registered for {OWN} ones.', faults)

    def test_says_that_the_dll_is_of_another_version(self):
        with tempfile.TemporaryDirectory() as folder:
            dll, content = pathlib.Path(folder) / 'zepkit10.dll', bytearray(DLL.read_bytes())
            struct.pack_into('<HHHH', content, content.index(b'\xbd\x04\xef\xfe') + 8, 5, 9, 0, 7)
            dll.write_bytes(content)
            wine('regsvr32', '/s', dll)
            output, _, _ = self.check()
            self.assert_faults(f'The file is of version 9.5.7, and this zepcheck is of version {PRODUCT.version}.')
        self.assert_self_test_passes(output)

    def test_says_that_the_file_is_no_dll(self):
        wine('regsvr32', '/s', DLL)
        path = windows_path(pathlib.Path(__file__).resolve())
        for each in PRODUCT.classes:
            write(rf'{CLASSES}\CLSID\{each.guid}\InprocServer32', path)
        self.assertIn(f'The file {path} is registered, but it is no DLL.', self.check()[1])


if __name__ == '__main__':
    unittest.main()
