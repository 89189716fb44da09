"""Manifests with which programs use the component without registration."""
from xml.sax.saxutils import quoteattr

# Not the DLL's name: Windows would look for the manifest inside the DLL.
ASSEMBLY = 'Zepkit10.Classes'
ARCHITECTURES = {'x64': 'amd64', 'x86': 'x86'}
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>'
OPEN = '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">'


def _text(*lines):
    return '\r\n'.join([*lines, ''])


def _identity(product, name, architecture):
    return (f'<assemblyIdentity type="win32" name="{name}" version="{product.four_numbers}" '
            f'processorArchitecture="{architecture}"/>')


def assembly(product, bitness):
    """Lies beside the DLL of a bitness and lists what registration would."""
    library = product.library
    lines = [HEAD, OPEN, f'  {_identity(product, ASSEMBLY, ARCHITECTURES[bitness])}', '  <file name="zepkit10.dll">']
    for each in product.classes:
        name = f'Zepkit10.{each.name}'
        lines += [f'    <comClass clsid="{each.guid}" threadingModel="Apartment" tlbid="{library.guid}" '
                  f'progid="{product.versioned(name)}" description="{name}">',
                  f'      <progid>{name}</progid>', '    </comClass>']
    lines += [f'    <typelib tlbid="{library.guid}" version="{library.version}" helpdir="" flags="HASDISKIMAGE"/>',
              '  </file>']
    for each in product.interfaces:
        lines.append(f'  <comInterfaceExternalProxyStub name={quoteattr(each.name)} iid="{each.guid}" '
                     f'tlbid="{library.guid}" proxyStubClsid32="{product.proxy_of(each)}"/>')
    return _text(*lines, '</assembly>')


def client(product, name):
    """Lies beside a program or script of that name and has it use the assembly in the same folder."""
    return _text(HEAD, OPEN, f'  {_identity(product, name, "*")}', '  <dependency>', '    <dependentAssembly>',
                 f'      {_identity(product, ASSEMBLY, "*")}', '    </dependentAssembly>', '  </dependency>',
                 '</assembly>')
