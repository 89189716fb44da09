"""The archive for programmers and script writers, and the folder of the NuGet package."""
import pathlib
import subprocess
import tempfile
import unittest
import zipfile
from xml.etree import ElementTree

from package.product import Product
from wine_machine import DLL, PRESET, ROOT, run

PRODUCT = Product()
ARCHIVE = ROOT / f'build/package/zepkit10-{PRODUCT.version}.zip'
NUGET = ROOT / 'build/package/nuget'
FILES = {'README.txt', 'SHA256SUMS.txt', 'constants/zepkit10.js', 'constants/zepkit10.vbs', 'include/Zepkit10.h',
         'include/Zepkit10.idl', 'include/Zepkit10_i.c', 'register-user.cmd', 'samples/host.cpp',
         'samples/host.exe.manifest', 'samples/script.manifest', 'samples/script.vbs', 'unregister-user.cmd',
         'x64/Zepkit10.Classes.manifest', 'x64/Zepkit10.tlb', 'x64/zepcheck.exe', 'x64/zepkit10.dll',
         'x86/Zepkit10.Classes.manifest', 'x86/Zepkit10.tlb', 'x86/zepcheck.exe', 'x86/zepkit10.dll'}
TWICE = 'ZepVbErrors31001To32811_zepVbErrOutOfMemory'  # the second constant of this name


class ArchiveTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix='zepkit10 für Skripte ')
        with zipfile.ZipFile(ARCHIVE) as archive:
            cls.names = archive.namelist()
            archive.extractall(cls.temporary.name)
        cls.root = pathlib.Path(cls.temporary.name) / f'zepkit10-{PRODUCT.version}'

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_it_holds_these_files(self):
        self.assertEqual({f'zepkit10-{PRODUCT.version}/{name}' for name in FILES}, set(self.names))
        self.assertEqual(sorted(self.names), self.names)

    def test_it_holds_what_was_built(self):
        self.assertEqual(DLL.read_bytes(), (self.root / PRESET / 'zepkit10.dll').read_bytes())
        self.assertEqual((DLL.parent / 'zepcheck.exe').read_bytes(), (self.root / PRESET / 'zepcheck.exe').read_bytes())
        idl = (self.root / 'include/Zepkit10.idl').read_bytes().replace(b'\r\n', b'\n')
        self.assertEqual(PRODUCT.idl.read_bytes(), idl)

    def test_its_digests_are_right(self):
        done = subprocess.run(['sha256sum', '--check', '--strict', 'SHA256SUMS.txt'], cwd=self.root, check=False,
                              stdout=subprocess.PIPE, text=True)
        self.assertEqual(0, done.returncode, done.stdout)
        self.assertEqual(len(FILES) - 1, len(done.stdout.splitlines()))

    def test_the_header_does_not_tell_where_it_was_made(self):
        for name in ('Zepkit10.h', 'Zepkit10_i.c'):
            first = (self.root / 'include' / name).read_text(encoding='utf-8').splitlines()[0]
            self.assertEqual(f'/* {name} of Zepkit10 {PRODUCT.version} */', first)

    def constants(self):
        """Names and values as a script sees them; one name is there twice."""
        seen, found = set(), []
        for members in PRODUCT.library.enumerations.values():
            for name, value in members:
                found.append((TWICE if name in seen else name, value))
                seen.add(name)
        self.assertIn(TWICE, dict(found))
        return found

    def echoed(self, name, script):
        path = self.root / name
        path.write_text(script, encoding='ascii')
        output, code = run('cscript', '//nologo', f'Z:{path}')
        self.assertEqual(0, code)
        return output.splitlines()

    def test_constants_of_vbscript(self):
        names = [name for name, _ in self.constants()]
        # In front of the script: Wine's script host knows no ExecuteGlobal.
        text = (self.root / 'constants/zepkit10.vbs').read_text(encoding='ascii')
        script = '\n'.join(['Option Explicit', text, *(f'WScript.Echo {name}' for name in names), ''])
        self.assertEqual([str(value) for _, value in self.constants()], self.echoed('constants.vbs', script))

    def test_constants_of_jscript(self):
        text = (self.root / 'constants/zepkit10.js').read_text(encoding='ascii')
        script = text + ''.join(f'WScript.Echo({name});\n' for name, _ in self.constants())
        self.assertEqual([str(value) for _, value in self.constants()], self.echoed('constants.js', script))


class GuideTest(unittest.TestCase):
    def test_it_tells_names_as_they_are(self):
        guide = (ROOT / 'docs/installing.md').read_text(encoding='utf-8')
        self.assertIn(f'`{ARCHIVE.name}`', guide)
        self.assertIn(f'name="Zepkit10.Classes" version="{PRODUCT.version}.0"', guide)
        for name in ('zepkit10-x64.msi', 'zepkit10-x86.msi', 'SHA256SUMS.txt', 'nuget'):
            self.assertIn(f'`{name}`', guide)
            self.assertTrue((ROOT / 'build/package' / name).exists(), name)


class NugetTest(unittest.TestCase):
    def test_it_holds_these_files(self):
        self.assertEqual(
            {'Zepkit10.nuspec', 'README.md', 'build/Zepkit10.targets', 'buildTransitive/Zepkit10.targets',
             *(f'runtimes/win-{bitness}/native/{name}' for bitness in ('x64', 'x86')
               for name in ('zepkit10.dll', 'Zepkit10.Classes.manifest')),
             'tlb/x64/Zepkit10.tlb', 'tlb/x86/Zepkit10.tlb'},
            {path.relative_to(NUGET).as_posix() for path in NUGET.rglob('*') if path.is_file()})
        self.assertEqual(DLL.read_bytes(), (NUGET / f'runtimes/win-{PRESET}/native/zepkit10.dll').read_bytes())

    def test_it_tells_name_and_version(self):
        tree = ElementTree.parse(NUGET / 'Zepkit10.nuspec').getroot()
        space = tree.tag.removesuffix('package')
        self.assertEqual(['Zepkit10', PRODUCT.version],
                         [tree.find(f'{space}metadata/{space}{name}').text for name in ('id', 'version')])

    def test_it_lists_its_files(self):
        tree = ElementTree.parse(NUGET / 'Zepkit10.nuspec').getroot()
        listed = [(each.get('src'), each.get('target')) for each in tree.iter(tree.tag.removesuffix('package') + 'file')]
        there = {path.relative_to(NUGET).as_posix() for path in NUGET.rglob('*') if path.is_file()}
        self.assertEqual([(name, name) for name in sorted(there - {'Zepkit10.nuspec'})], listed)

    def test_its_targets_name_files_that_are_there(self):
        for folder in ('build', 'buildTransitive'):
            text = (NUGET / folder / 'Zepkit10.targets').read_text(encoding='utf-8')
            tree = ElementTree.fromstring(text)
            properties = {each.tag.split('}')[1]: each.text for each in tree.iter() if each.text and each.text.strip()}
            included = [each.get('Include') for each in tree.iter() if each.get('Include')]
            self.assertEqual(4, len(included))
            for path in included:
                for name, value in (*reversed(properties.items()), ('MSBuildThisFileDirectory', f'{NUGET}/{folder}/')):
                    path = path.replace(f'$({name})', value)
                path = path.replace('$(Zepkit10Bitness)', PRESET).replace('\\', '/')
                self.assertTrue(pathlib.Path(path).exists(), path)

    def test_it_says_that_it_was_not_run(self):
        self.assertIn('**Not run:**', (NUGET / 'README.md').read_text(encoding='utf-8'))


if __name__ == '__main__':
    unittest.main()
