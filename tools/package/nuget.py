"""The folder of a NuGet package, laid out for .NET clients."""
from xml.sax.saxutils import escape

from package import archive, manifests
from package.product import BITNESSES, NAME, TITLE


def _nuspec(product, names):
    lines = '\n'.join(f'    <file src="{name}" target="{name}"/>' for name in sorted(names))
    return f'''<?xml version="1.0" encoding="utf-8"?>
<package xmlns="http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd">
  <metadata>
    <id>{NAME}</id>
    <version>{product.version}</version>
    <authors>{NAME}</authors>
    <description>{escape(TITLE)}. A component for Windows clients of both bitnesses.</description>
    <tags>com automation charts terms native</tags>
  </metadata>
  <files>
{lines}
  </files>
</package>
'''


def files(product):
    """What is in the folder: {name: bytes}."""
    found = {'README.md': archive.content(product, 'nuget.md').encode('utf-8')}
    for folder in ('build', 'buildTransitive'):
        found[f'{folder}/{NAME}.targets'] = archive.content(product, 'nuget.targets').encode('utf-8')
    for bitness in BITNESSES:
        native = f'runtimes/win-{bitness}/native'
        found[f'{native}/zepkit10.dll'] = product.dll(bitness).read_bytes()
        found[f'{native}/{manifests.ASSEMBLY}.manifest'] = manifests.assembly(product, bitness).encode('utf-8')
        found[f'tlb/{bitness}/Zepkit10.tlb'] = product.generated(bitness, 'Zepkit10.tlb').read_bytes()
    return {**found, f'{NAME}.nuspec': _nuspec(product, found).encode('utf-8')}


def make(product, folder):
    for name, data in files(product).items():
        path = folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
