"""Registering and unregistering the DLL with regsvr32, looked at in the whole registry."""
import pathlib
import re
import tempfile
import unittest

from wine_machine import DLL, LOCAL_CLASSES, PLATFORM, PRESET, ROOT, changes, registry, value, wine


def library_of_idl():
    """The library's GUID, and GUID by name for its classes."""
    text = (ROOT / 'idl/Zepkit10.idl').read_text(encoding='utf-8')
    attributes = r'\[\s*uuid\(([0-9a-f-]+)\)[^\]]*\]\s*'
    library = re.search(attributes + r'library', text)[1]
    blocks = re.findall(r'\[\s*uuid\(([0-9a-f-]+)\)([^\]]*)\]\s*coclass (\w+)', text)
    creatable = {name: guid for guid, others, name in blocks if 'noncreatable' not in others}
    return library, creatable, {guid for guid, _, _ in blocks} - set(creatable.values())


class RegistrationTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        wine('regsvr32', '/s', '/u', DLL)  # twice does no harm
        wine('regsvr32', '/s', '/u', DLL)
        cls.before = registry()
        wine('regsvr32', '/s', DLL)
        cls.registered = registry()
        wine('regsvr32', '/s', '/u', DLL)
        cls.after = registry()

    def value(self, key, name='@'):
        return value(self.registered, rf'{LOCAL_CLASSES}\{key}', name)

    def test_every_creatable_class_is_found_by_its_name(self):
        library, creatable, _ = library_of_idl()
        self.assertTrue(creatable)
        for name, guid in creatable.items():
            with self.subTest(name):
                clsid = f'{{{guid}}}'.upper()
                for prog_id in (f'Zepkit10.{name}', f'Zepkit10.{name}.1'):
                    self.assertEqual(f'Zepkit10.{name}', self.value(prog_id))
                    self.assertEqual(clsid, self.value(rf'{prog_id}\CLSID').upper())
                self.assertEqual(f'Zepkit10.{name}.1', self.value(rf'Zepkit10.{name}\CurVer'))
                self.assertEqual(f'Zepkit10.{name}.1', self.value(rf'CLSID\{clsid}\ProgID'))
                self.assertEqual(f'Zepkit10.{name}', self.value(rf'CLSID\{clsid}\VersionIndependentProgID'))
                self.assertEqual(f'{{{library}}}'.upper(),
                                 self.value(rf'CLSID\{clsid}\TypeLib').upper())
                server = rf'CLSID\{clsid}\InprocServer32'
                self.assertTrue(self.value(server).endswith(rf'\build\{PRESET}\zepkit10.dll'))
                self.assertEqual('Apartment', self.value(server, 'ThreadingModel'))

    def test_classes_that_no_client_creates_are_not_registered(self):
        _, _, others = library_of_idl()
        for guid in others:
            self.assertNotIn(rf'{LOCAL_CLASSES}\CLSID\{{{guid}}}'.lower(), self.registered)

    def test_the_type_library_is_registered(self):
        library, _, _ = library_of_idl()
        path = self.value(rf'TypeLib\{{{library}}}\1.0\0\{PLATFORM}')
        self.assertTrue(path.endswith(rf'\build\{PRESET}\zepkit10.dll'))

    def test_nothing_is_marked_safe_for_scripting(self):
        new = set(self.registered) - set(self.before)
        self.assertTrue(new)
        self.assertFalse([key for key in new if 'implemented categories' in key])

    def test_unregistering_does_without_the_file_that_was_registered(self):
        with tempfile.TemporaryDirectory() as folder:
            dll = pathlib.Path(folder) / 'zepkit10.dll'
            dll.write_bytes(DLL.read_bytes())
            wine('regsvr32', '/s', dll)
            dll.unlink()
            wine('regsvr32', '/s', '/u', DLL)
        self.assertEqual({}, changes(self.before, registry()))

    def test_unregistering_leaves_no_key_and_takes_none_along(self):
        self.assertEqual({}, changes(self.before, self.after))


if __name__ == '__main__':
    unittest.main()
