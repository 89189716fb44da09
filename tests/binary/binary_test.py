"""The DLLs as a user's system sees them: what they import, what they allow, what they say of themselves."""
import pathlib
import re
import struct
import subprocess
import unittest

BUILD = pathlib.Path(__file__).resolve().parents[2] / 'build'
# Windows takes these from its own folder, whatever lies beside the program or in the current directory.
KNOWN = {'advapi32', 'comdlg32', 'gdi32', 'kernel32', 'msvcrt', 'ole32', 'oleaut32', 'user32'}
EXPORTS = {'DllCanUnloadNow', 'DllGetClassObject', 'DllInstall', 'DllRegisterServer', 'DllUnregisterServer'}
RELOCATABLE, NO_EXECUTE, HIGH_ENTROPY = 0x40, 0x100, 0x20


class BinaryTest:
    """The tests of both DLLs."""

    def setUp(self):
        self.path = BUILD / self.preset / 'zepkit10.dll'
        self.headers = subprocess.run(['x86_64-w64-mingw32-objdump', '-p', str(self.path)], check=True,
                                      capture_output=True, text=True).stdout

    def test_imports_only_libraries_that_nobody_can_plant(self):
        imported = {name.lower().removesuffix('.dll')
                    for name in re.findall(r'DLL Name: (\S+)', self.headers)}
        self.assertIn('oleaut32', imported)
        self.assertLessEqual(imported, KNOWN)

    def test_loads_no_user_interface_before_it_is_shown(self):
        imported = re.findall(r'DLL Name: (\S+)', self.headers)
        self.assertNotIn('comdlg32.dll', imported)
        self.assertIn(b'GetOpenFileNameW\0', self.path.read_bytes())

    def test_is_not_large(self):
        self.assertLessEqual(self.path.stat().st_size, self.most_bytes)

    def test_exports_the_functions_of_a_component_under_plain_names(self):
        table = self.headers[self.headers.index('[Ordinal/Name Pointer] Table'):]
        self.assertEqual(EXPORTS, set(re.findall(r'^\s+\[ *\d+\] (\S+)$', table, re.MULTILINE)))

    def test_lets_the_system_protect_it(self):
        found = int(re.search(r'^DllCharacteristics\s+([0-9a-f]+)', self.headers, re.MULTILINE)[1], 16)
        self.assertEqual(self.characteristics, found)

    def test_can_be_moved(self):
        # Without a relocation table the address would be fixed whatever the flags say.
        size = re.search(r'^Entry 5 [0-9a-f]+ ([0-9a-f]+) Base Relocation', self.headers, re.MULTILINE)
        self.assertGreater(int(size[1], 16), 0)

    def test_tells_its_version(self):
        content = self.path.read_bytes()
        project = (BUILD.parent / 'CMakeLists.txt').read_text(encoding='utf-8')
        version = re.search(r'project\(Zepkit10 VERSION (\d+)\.(\d+)\.(\d+)', project)
        major, minor, patch = map(int, version.groups())
        fixed = b''.join(part.to_bytes(2, 'little') for part in (minor, major, 0, patch))
        self.assertIn('VS_VERSION_INFO'.encode('utf-16-le'), content)
        self.assertIn(b'\xbd\x04\xef\xfe\x00\x00\x01\x00' + fixed + fixed, content)
        for text in ('ProductVersion', f'{major}.{minor}.{patch}', 'zepkit10.dll'):
            self.assertIn(text.encode('utf-16-le'), content)

    def test_tells_the_version_of_its_type_library(self):
        content = self.path.read_bytes()
        fixed = content.index(b'\xbd\x04\xef\xfe\x00\x00\x01\x00')
        library = content.index(b'MSFT\x02\x00\x01\x00')
        minor, major = struct.unpack_from('<HH', content, fixed + 8)
        self.assertEqual((major, minor), struct.unpack_from('<HH', content, library + 24))

    def test_has_the_help_context_of_its_type_library(self):
        # The other ones are compared by the tests of the type library; Wine does not tell this one.
        content = self.path.read_bytes()
        library = content.index(b'MSFT\x02\x00\x01\x00')
        self.assertEqual((1,), struct.unpack_from('<I', content, library + 44))

    def test_carries_nothing_for_debuggers_and_no_time_stamp(self):
        self.assertNotIn('.debug', self.headers)
        self.assertRegex(self.headers, r'Time/Date\s+Thu Jan  1 00:00:00 1970')


class X64Test(BinaryTest, unittest.TestCase):
    preset = 'x64'
    characteristics = RELOCATABLE | NO_EXECUTE | HIGH_ENTROPY
    most_bytes = 1_000_000


class X86Test(BinaryTest, unittest.TestCase):
    preset = 'x86'
    characteristics = RELOCATABLE | NO_EXECUTE
    most_bytes = 1_150_000  # what exceptions need is not as compact
