"""Programs that use the component of the archive without registration, from a folder of any name."""
import pathlib
import subprocess
import tempfile
import unittest
import zipfile
from xml.etree import ElementTree

from package.product import Product
from wine_machine import COMPILER, DLL, PRESET, ROOT, changes, registry, run, wine

PRODUCT = Product()
ARCHIVE = ROOT / f'build/package/zepkit10-{PRODUCT.version}.zip'
ASM = '{urn:schemas-microsoft-com:asm.v1}'
NOT_REGISTERED = '800401f3'  # CO_E_CLASSSTRING: no class of this name


def compile_program(source, include, program):
    subprocess.run([COMPILER, '-std=c++20', '-static', '-municode' if 'context' in source.name else '-mconsole',
                    f'-I{include}', str(source), str(include / 'Zepkit10_i.c'), '-o', str(program), '-lole32',
                    '-loleaut32'], check=True)


class RegistrationFreeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        wine('regsvr32', '/s', '/u', DLL)
        cls.temporary = tempfile.TemporaryDirectory(prefix='zepkit10 ohne Einträge für ')
        root = pathlib.Path(cls.temporary.name)
        with zipfile.ZipFile(ARCHIVE) as archive:
            archive.extractall(root)
        cls.unpacked = root / f'zepkit10-{PRODUCT.version}'
        cls.folder = root / 'Söhne & Töchter'
        cls.folder.mkdir()
        for name in ('zepkit10.dll', 'Zepkit10.Classes.manifest'):
            (cls.folder / name).write_bytes((cls.unpacked / PRESET / name).read_bytes())
        for name in ('host.exe.manifest', 'script.manifest', 'script.vbs'):
            (cls.folder / name).write_bytes((cls.unpacked / 'samples' / name).read_bytes())
        include = cls.unpacked / 'include'
        compile_program(cls.unpacked / 'samples/host.cpp', include, cls.folder / 'host.exe')
        compile_program(ROOT / 'tests/package/context.cpp', include, cls.folder / 'context.exe')
        cls.before = registry()

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_a_program_with_the_manifest_finds_the_component(self):
        self.assertEqual(('2\n', 0), run(self.folder / 'host.exe'))
        self.assertEqual({}, changes(self.before, registry()))

    def test_without_its_manifest_it_does_not(self):
        with tempfile.TemporaryDirectory() as name:
            for each in ('host.exe', 'zepkit10.dll', 'Zepkit10.Classes.manifest'):
                (pathlib.Path(name) / each).write_bytes((self.folder / each).read_bytes())
            self.assertEqual((f'Zepkit10 was not found: {NOT_REGISTERED}\n', 1), run(f'{name}/host.exe'))

    def test_every_class_and_the_type_library_are_found_in_the_context_of_a_script(self):
        names = [f'Zepkit10.{each.name}{version}' for each in PRODUCT.classes for version in ('', '.1')]
        output, code = run(self.folder / 'context.exe', f'Z:{self.folder}/script.manifest', *names)
        self.assertEqual([f"{name}: {name.split('.')[1]}" for name in names] + [f'library: {PRODUCT.library.name}'], output.splitlines())
        self.assertEqual(0, code)

    def test_the_script_runs_where_there_are_contexts_for_scripts(self):
        if run('reg', 'query', r'HKLM\Software\Classes\Microsoft.Windows.ActCtx')[1]:
            self.skipTest('there is no Microsoft.Windows.ActCtx here')
        self.assertEqual(('2\n', 0), run('cscript', '//nologo', f'Z:{self.folder}/script.vbs'))


class ManifestTest(unittest.TestCase):
    def setUp(self):
        with zipfile.ZipFile(ARCHIVE) as archive:
            self.files = {name.split('/', 1)[1]: archive.read(name) for name in archive.namelist()}
        self.assembly = ElementTree.fromstring(self.files[f'{PRESET}/Zepkit10.Classes.manifest'])

    def test_it_lists_every_creatable_class(self):
        classes = self.assembly.findall(f'{ASM}file/{ASM}comClass')
        self.assertEqual([(f'Zepkit10.{each.name}.1', [f'Zepkit10.{each.name}'], each.guid) for each in PRODUCT.classes],
                         [(each.get('progid'), [name.text for name in each.findall(f'{ASM}progid')], each.get('clsid'))
                          for each in classes])
        self.assertEqual({('Apartment', PRODUCT.library.guid)},
                         {(each.get('threadingModel'), each.get('tlbid')) for each in classes})

    def test_it_lists_every_interface(self):
        proxies = self.assembly.findall(f'{ASM}comInterfaceExternalProxyStub')
        self.assertEqual({each.name: each.guid for each in PRODUCT.interfaces},
                         {each.get('name'): each.get('iid') for each in proxies})
        self.assertEqual(len(PRODUCT.library.events),
                         len([each for each in proxies if each.get('proxyStubClsid32').startswith('{00020420')]))

    def test_clients_name_this_assembly(self):
        identity = dict(self.assembly.find(f'{ASM}assemblyIdentity').attrib)
        self.assertEqual({'x64': 'amd64', 'x86': 'x86'}[PRESET], identity.pop('processorArchitecture'))
        self.assertEqual(f'{PRODUCT.version}.0', identity['version'])
        for name in ('host.exe', 'script'):
            client = ElementTree.fromstring(self.files[f'samples/{name}.manifest'])
            wanted = dict(client.find(f'{ASM}dependency/{ASM}dependentAssembly/{ASM}assemblyIdentity').attrib)
            self.assertEqual('*', wanted.pop('processorArchitecture'))
            self.assertEqual(identity, wanted)


if __name__ == '__main__':
    unittest.main()
