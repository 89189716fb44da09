"""The scripts of the archive that register for one user and undo it."""
import pathlib
import tempfile
import unittest
import zipfile

from package.product import Product
from wine_machine import DLL, PRESET, ROOT, USER_CLASSES, changes, for_all_users, registry, run, value, wine

PRODUCT = Product()
ARCHIVE = ROOT / f'build/package/zepkit10-{PRODUCT.version}.zip'


class UserScriptsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix='zepkit10 für mich (neu) ')
        with zipfile.ZipFile(ARCHIVE) as archive:
            archive.extractall(cls.temporary.name)
        cls.folder = pathlib.Path(cls.temporary.name) / f'zepkit10-{PRODUCT.version}'
        wine('regsvr32', '/s', '/u', DLL)
        for undo in ((), ('/u',)):  # the first classes of a user leave the keys that hold all classes
            wine('regsvr32', '/s', *undo, '/n', '/i:user', DLL)
        cls.before = registry()

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_they_register_this_folder_and_undo_it(self):
        self.assertEqual(('', 0), run('cmd', '/c', 'register-user.cmd', folder=self.folder))
        registered = registry()
        self.assertEqual([], for_all_users(changes(self.before, registered)))
        server = value(registered, rf'{USER_CLASSES}\CLSID\{PRODUCT.classes[0].guid}\InprocServer32')
        self.assertEqual(f'Z:{self.folder}/{PRESET}/zepkit10.dll'.replace('/', '\\'), server)
        self.assertEqual(('', 0), run('cmd', '/c', 'unregister-user.cmd', folder=self.folder))
        self.assertEqual({}, changes(self.before, registry()))

    def test_they_tell_what_failed(self):
        dll = self.folder / PRESET / 'zepkit10.dll'
        data = dll.read_bytes()
        dll.unlink()
        try:
            output, code = run('cmd', '/c', 'register-user.cmd', folder=self.folder)
        finally:
            dll.write_bytes(data)
        self.assertEqual(1, code)
        self.assertIn('could not be registered or unregistered', output)


if __name__ == '__main__':
    unittest.main()
