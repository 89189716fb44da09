"""The installer: what it puts onto a machine, in place of what, and what is left once it is removed."""
import pathlib
import tempfile
import unittest

from package import installer, registry as entries
from package.product import Product
from wine_machine import (DLL, DRIVE_C, LOCAL_CLASSES, PLATFORM, PRESET, ROOT, USER_CLASSES, changes, of_component,
                          registry, run, value, wine)

PACKAGE = ROOT / f'build/package/zepkit10-{PRESET}.msi'
PRODUCT = Product()
SCRIPT = 'WScript.Echo CreateObject("Zepkit10.Global").Compute("2*SIN(0)^2+|1-3|")\n'


def install(package, *properties):
    return run('msiexec', '/i', f'Z:{package}', '/qn', *properties)[1]


def remove(package):
    return run('msiexec', '/x', f'Z:{package}', '/qn')[1]


def files():
    """Every file of the programs, and every folder with None."""
    return {path: path.read_bytes() if path.is_file() else None
            for folder in DRIVE_C.glob('Program Files*') for path in folder.rglob('*')}


def computes(folder):
    """What a script prints that finds the component by its name."""
    script = pathlib.Path(folder) / 'compute.vbs'
    script.write_text(SCRIPT, encoding='ascii')
    return run('cscript', '//nologo', f'Z:{script}')[0].strip()


def added(before, after):
    changed = changes(of_component(before), of_component(after))
    return {key: lines for key, (_, lines) in changed.items() if lines is not None}


def without_paths(keys, folder):
    """The keys with the component's folder replaced, which may end in a backslash."""
    text = folder.replace('\\', '\\\\')
    return {key: [line.replace(text, 'FOLDER').replace('FOLDER\\\\"', 'FOLDER"') for line in lines]
            for key, lines in keys.items()}


def setUpModule():
    """The first installer that ever runs leaves keys of Windows' own, and so does the first script."""
    wine('regsvr32', '/s', '/u', DLL)
    with tempfile.TemporaryDirectory() as folder:
        install(PACKAGE)
        computes(folder)
        remove(PACKAGE)


class InstallerTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix='zepkit10 für alle ')
        cls.before, cls.files_before = registry(), files()
        cls.codes = [install(PACKAGE)]
        cls.installed, cls.files_installed = registry(), files()
        cls.computed = computes(cls.folder.name)
        cls.codes.append(remove(PACKAGE))
        cls.after, cls.files_after = registry(), files()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_it_installs_and_removes_without_a_question(self):
        self.assertEqual([0, 0], self.codes)

    def test_it_brings_the_component_and_a_text(self):
        new = {path.name: data for path, data in self.files_installed.items() if path not in self.files_before}
        self.assertEqual({'Zepkit10', 'README.txt', 'zepkit10.dll'}, set(new))
        self.assertEqual(DLL.read_bytes(), new['zepkit10.dll'])
        self.assertIn(f'Zepkit10 {PRODUCT.version}\r\n'.encode('ascii'), new['README.txt'])

    def test_it_writes_what_registration_writes_and_its_folder(self):
        wine('regsvr32', '/s', DLL)
        registered = added(self.before, registry())
        wine('regsvr32', '/s', '/u', DLL)
        self.assertGreater(len(registered), 100)
        build = 'Z:' + str(DLL.parent).replace('/', '\\')
        programs = value(self.installed, rf'{LOCAL_CLASSES}\TypeLib\{PRODUCT.library.guid}\1.0\0\{PLATFORM}')
        installed = without_paths(added(self.before, self.installed), programs.removesuffix(r'\zepkit10.dll'))
        self.assertEqual(['"Folder"="FOLDER"'], installed.pop(r'hkey_local_machine\software\zepkit10'))
        self.assertEqual(without_paths(registered, build), installed)

    def test_it_writes_every_entry_of_its_list(self):
        found = list(entries.class_entries(PRODUCT, 'DLL')) + list(entries.name_entries(PRODUCT))
        self.assertEqual(12 * len(PRODUCT.classes), len(found))
        for entry in found:
            text = value(self.installed, rf'{LOCAL_CLASSES}\{entry.key}', entry.name or '@')
            self.assertEqual(entry.value, 'DLL' if text.endswith(r'\zepkit10.dll') else text)

    def test_clients_find_the_component(self):
        self.assertEqual('2', self.computed)

    def test_removing_leaves_nothing(self):
        self.assertEqual({}, changes(self.before, self.after))
        self.assertEqual(self.files_before, self.files_after)

    def test_it_changes_nothing_of_the_user(self):
        self.assertFalse([key for key in added(self.before, self.installed) if key.startswith(USER_CLASSES.lower())])


class FolderTest(unittest.TestCase):
    def test_installs_from_and_into_folders_of_any_name(self):
        before = registry()
        with tempfile.TemporaryDirectory(prefix='zepkit10 Ämter & Söhne ') as name:
            package = pathlib.Path(name) / 'Größe 10.msi'
            package.write_bytes(PACKAGE.read_bytes())
            (DRIVE_C / 'Programme für Zürich').mkdir()
            self.assertEqual(0, install(package, r'INSTALLDIR=C:\Programme für Zürich\Zepkit 10'))
            installed = DRIVE_C / 'Programme für Zürich/Zepkit 10/zepkit10.dll'
            self.assertTrue(installed.exists())
            server = rf'{LOCAL_CLASSES}\CLSID\{PRODUCT.classes[0].guid}\InprocServer32'
            self.assertEqual(r'C:\Programme für Zürich\Zepkit 10\zepkit10.dll', value(registry(), server))
            self.assertEqual('2', computes(name))
            self.assertEqual(0, remove(package))
            self.assertFalse(installed.parent.exists())
            installed.parents[1].rmdir()
        self.assertEqual({}, changes(before, registry()))


class UpgradeTest(unittest.TestCase):
    """Over another version, which differs in nothing but its number."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.newer = pathlib.Path(cls.folder.name) / 'newer.msi'
        major, minor, patch = map(int, PRODUCT.version.split('.'))
        cls.next = Product(f'{major}.{minor}.{patch + 1}')
        installer.make(cls.next, PRESET, 'the newer one', cls.newer)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def setUp(self):
        self.before = registry()

    def products(self):
        """The versions that the list of installed programs shows."""
        keys = registry()
        codes = {product.version: product.code('product', product.version, PRESET) for product in (PRODUCT, self.next)}
        return [version for version, code in codes.items()
                if any(key.endswith(rf'\uninstall\{code.lower()}') for key in keys)]

    def test_a_newer_version_takes_the_place_of_an_older_one(self):
        self.assertEqual(0, install(PACKAGE))
        self.assertEqual([PRODUCT.version], self.products())
        self.assertEqual(0, install(self.newer))
        self.assertEqual([self.next.version], self.products())
        text, = DRIVE_C.glob('Program Files*/Zepkit10/README.txt')
        self.assertEqual('the newer one', text.read_text(encoding='utf-8'))
        self.assertEqual('2', computes(self.folder.name))
        self.assertEqual(0, remove(self.newer))
        self.assertEqual({}, changes(self.before, registry()))
        self.assertFalse(list(DRIVE_C.glob('Program Files*/Zepkit10')))

    def test_an_older_version_refuses_to_replace_a_newer_one(self):
        self.assertEqual(0, install(self.newer))
        installed = registry()
        self.assertNotEqual(0, install(PACKAGE))
        self.assertEqual({}, changes(installed, registry()))
        self.assertEqual(0, remove(self.newer))
        self.assertEqual({}, changes(self.before, registry()))


if __name__ == '__main__':
    unittest.main()
