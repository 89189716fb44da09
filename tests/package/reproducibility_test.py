"""Two runs make the same bytes, wherever and whenever they run."""
import hashlib
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

from package.__main__ import make_all
from package.product import BITNESSES, ROOT, Product


def digests(folder):
    return {path.relative_to(folder).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest()
            for path in folder.rglob('*') if path.is_file()}


def copy_of_tree(folder):
    """What packages are made of, in another folder, with later times."""
    for name in ('CMakeLists.txt', 'idl', 'samples', 'tools'):
        copy = shutil.copytree if (ROOT / name).is_dir() else shutil.copyfile
        copy(ROOT / name, folder / name)
    for bitness in BITNESSES:
        source, target = ROOT / 'build' / bitness, folder / 'build' / bitness
        (target / 'generated/zepkit10').mkdir(parents=True)
        for name in ('zepkit10.dll', 'zepcheck.exe', *(f'generated/zepkit10/Zepkit10{end}' for end in ('.h', '_i.c', '.tlb'))):
            shutil.copyfile(source / name, target / name)
    # The header tells the folder of the build; packages must not.
    header = folder / 'build/x64/generated/zepkit10/Zepkit10.h'
    text = header.read_text(encoding='utf-8')
    header.write_text(re.sub(r'from \S+ -', 'from /elsewhere/Zepkit10.idl -', text, count=1), encoding='utf-8')


class ReproducibilityTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix='zepkit10 zweiter Lauf ')
        tree = pathlib.Path(cls.folder.name) / 'Bäume'
        tree.mkdir()
        copy_of_tree(tree)
        environment = dict(os.environ, PYTHONPATH=str(tree / 'tools'), PYTHONHASHSEED='4711', TZ='Pacific/Auckland',
                           LC_ALL='C', PYTHONUTF8='1')
        subprocess.run([sys.executable, '-m', 'package'], cwd='/', env=environment, check=True, umask=0o077,
                       stdout=subprocess.DEVNULL)
        cls.first, cls.second = digests(ROOT / 'build/package'), digests(tree / 'build/package')

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_two_runs_make_the_same_bytes(self):
        version = Product().version
        self.assertLessEqual({'zepkit10-x64.msi', 'zepkit10-x86.msi', f'zepkit10-{version}.zip',
                              'nuget/Zepkit10.nuspec', 'SHA256SUMS.txt'}, set(self.first))
        self.assertEqual(self.first, self.second)

    def test_another_version_makes_other_packages(self):
        with tempfile.TemporaryDirectory() as name:
            other = pathlib.Path(name) / 'other'
            make_all(Product('9.8.7'), other)
            found = digests(other)
        self.assertIn('zepkit10-9.8.7.zip', found)
        for name in ('zepkit10-x64.msi', 'zepkit10-x86.msi', 'nuget/Zepkit10.nuspec'):
            self.assertNotEqual(self.first[name], found[name])

    def test_the_digests_are_right(self):
        package = ROOT / 'build/package'
        done = subprocess.run(['sha256sum', '--check', '--strict', 'SHA256SUMS.txt'], cwd=package, check=False,
                              stdout=subprocess.PIPE, text=True)
        self.assertEqual(0, done.returncode, done.stdout)
        self.assertEqual(len(self.first) - 1, len(done.stdout.splitlines()))


class TracesTest(unittest.TestCase):
    """What a build could tell of itself, so that no two were the same. `./dev package --twice` compares two."""

    @staticmethod
    def built():
        for bitness in BITNESSES:
            for path in (Product().dll(bitness), Product().zepcheck(bitness), Product().generated(bitness, 'Zepkit10.tlb')):
                yield path, path.read_bytes()

    def test_nothing_tells_the_folder_of_the_build(self):
        for path, content in self.built():
            with self.subTest(path):
                for folder in (str(ROOT), str(ROOT).replace('/', '\\'), str(pathlib.Path.home()) + '/'):
                    self.assertNotIn(folder.encode(), content)
                    self.assertNotIn(folder.encode('utf-16-le'), content)

    def test_nothing_tells_the_time_of_the_build(self):
        for path, content in self.built():
            with self.subTest(path):
                library = content[content.index(b'MSFT\x02\x00\x01\x00'):]
                self.assertEqual([b'Tue Jan  1 00:00:00 1980'], re.findall(rb'Created by WIDL \S+ \S+ at (.{24})', library))
                if path.suffix != '.tlb':
                    headers = struct.unpack_from('<I', content, 0x3c)[0]
                    self.assertEqual((b'PE\0\0', 0), struct.unpack_from('<4s4xI', content, headers))


class CodesTest(unittest.TestCase):
    """What Windows knows an installer by."""

    @staticmethod
    def info(bitness, *query):
        package = ROOT / f'build/package/zepkit10-{bitness}.msi'
        return subprocess.run(['msiinfo', query[0], str(package), *query[1:]], check=True, stdout=subprocess.PIPE,
                              text=True, env=dict(os.environ, TZ='UTC')).stdout

    def test_the_summary_tells_no_time_of_the_build(self):
        for bitness in BITNESSES:
            with self.subTest(bitness):
                summary = self.info(bitness, 'suminfo')
                self.assertIn(f'Subject: Zepkit10 {Product().version} ({bitness})', summary)
                self.assertEqual(['Tue Jan  1 00:00:00 1980'] * 2, re.findall(r'(?:Created|Last saved): (.*)', summary))

    def test_every_installer_has_its_own_codes(self):
        texts = [self.info(bitness, 'export', 'Property') + self.info(bitness, 'suminfo') for bitness in BITNESSES]
        codes = [re.findall(r'^(?:ProductCode\t|UpgradeCode\t|.*\(UUID\): )(\{[0-9A-F-]{36}\})', text, re.MULTILINE)
                 for text in texts]
        self.assertEqual([3, 3], [len(each) for each in codes])
        self.assertEqual(6, len(set(sum(codes, []))))

    def test_what_both_bitnesses_write_to_the_same_keys_is_the_same_component(self):
        # Windows counts its users, so that removing one bitness leaves the other its names.
        components = [dict(line.split('\t')[:2] for line in self.info(bitness, 'export', 'Component').splitlines()[3:])
                      for bitness in BITNESSES]
        shared = components[0].items() & components[1].items()
        self.assertEqual({'names', 'interfaces_x86'}, {name for name, _ in shared})
        self.assertEqual(5, len({*components[0].values(), *components[1].values()}))

    def test_later_versions_replace_this_one(self):
        # These never change: an installer of another upgrade code would be installed beside the old one.
        self.assertEqual('{4A97D2E7-E2FE-55AE-B385-3629D33A0E1B}', Product().code('upgrade', 'x64'))
        self.assertEqual('{08AABF2A-05B5-5A70-9CBB-AAD036C85186}', Product().code('upgrade', 'x86'))


if __name__ == '__main__':
    unittest.main()
