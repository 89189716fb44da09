"""What all packages have in common: the version, where the parts are, codes that never change."""
import pathlib
import re
import uuid

from idl import read_library

ROOT = pathlib.Path(__file__).resolve().parents[2]
BITNESSES = ('x64', 'x86')
NAME = 'Zepkit10'
TITLE = 'Zepkit10: terms, variables, function charts and other helpers'
TIME = 315532800  # 1980-01-01, the earliest that every format can tell; the time of every packed file


class Product:
    def __init__(self, version=None, root=ROOT):
        """`version` is for tests of upgrades; the version is the one in CMakeLists.txt."""
        self.root = root
        project = (root / 'CMakeLists.txt').read_text(encoding='utf-8')
        self.version = version or re.search(r'project\(Zepkit10 VERSION (\d+\.\d+\.\d+)', project)[1]
        self.idl = root / 'idl/Zepkit10.idl'
        self.library = read_library(self.idl.read_text(encoding='utf-8'))

    @property
    def four_numbers(self):
        return f'{self.version}.0'

    def dll(self, bitness):
        return self.root / 'build' / bitness / 'zepkit10.dll'

    def zepcheck(self, bitness):
        """The program that checks an installation."""
        return self.root / 'build' / bitness / 'zepcheck.exe'

    def generated(self, bitness, name):
        """A file that widl made of the IDL."""
        return self.root / 'build' / bitness / 'generated/zepkit10' / name

    def code(self, *what):
        """A GUID for something, the same in every run."""
        return f"{{{uuid.uuid5(uuid.UUID(self.library.guid), ' '.join(what))}}}".upper()

    def versioned(self, prog_id):
        """The ProgID that only another major version of the type library would change."""
        return f"{prog_id}.{self.library.version.split('.')[0]}"

    @property
    def classes(self):
        """Those that clients may create, in the order of their names."""
        return sorted((each for each in self.library.coclasses if each.creatable), key=lambda each: each.name)

    @property
    def interfaces(self):
        """Those of objects and of events, in the order of their names."""
        found = [*self.library.interfaces.values(), *self.library.events.values()]
        return sorted(found, key=lambda each: each.name)

    def is_dispatch_only(self, interface):
        return interface.name in self.library.events

    def proxy_of(self, interface):
        """The system's class that carries calls of an interface to other apartments."""
        number = '00020420' if self.is_dispatch_only(interface) else '00020424'
        return f'{{{number}-0000-0000-C000-000000000046}}'
