"""The registry entries of the component: what DllRegisterServer writes, as a list."""
from dataclasses import dataclass


@dataclass(frozen=True)
class Entry:
    key: str    # below Software\Classes
    name: str   # '' for the key's own value
    value: str


def class_entries(product, dll):
    """`dll` is the DLL's path, or what stands for it."""
    for each in product.classes:
        key, name = rf'CLSID\{each.guid}', f'Zepkit10.{each.name}'
        yield Entry(key, '', name)
        yield Entry(rf'{key}\InprocServer32', '', dll)
        yield Entry(rf'{key}\InprocServer32', 'ThreadingModel', 'Apartment')
        yield Entry(rf'{key}\ProgID', '', product.versioned(name))
        yield Entry(rf'{key}\VersionIndependentProgID', '', name)
        yield Entry(rf'{key}\TypeLib', '', product.library.guid)
        yield Entry(rf'{key}\Version', '', product.library.version)


def name_entries(product):
    """The ProgIDs."""
    for each in product.classes:
        name = f'Zepkit10.{each.name}'
        for prog_id in (name, product.versioned(name)):
            yield Entry(prog_id, '', name)
            yield Entry(rf'{prog_id}\CLSID', '', each.guid)
        yield Entry(rf'{name}\CurVer', '', product.versioned(name))


def _library_key(product):
    # In the registry, the version of a type library is hexadecimal.
    version = '.'.join(f'{int(number):x}' for number in product.library.version.split('.'))
    return rf'TypeLib\{product.library.guid}\{version}'


def library_entries(product, folder):
    """What the type libraries of both bitnesses have in common."""
    key = _library_key(product)
    yield Entry(key, '', product.library.title)
    yield Entry(rf'{key}\FLAGS', '', '8')  # LIBFLAG_FHASDISKIMAGE
    yield Entry(rf'{key}\HELPDIR', '', folder)


def library_path_entries(product, bitness, dll):
    platform = {'x64': 'win64', 'x86': 'win32'}[bitness]
    yield Entry(rf'{_library_key(product)}\0\{platform}', '', dll)


def interface_entries(product):
    for each in product.interfaces:
        key, proxy = rf'Interface\{each.guid}', product.proxy_of(each)
        yield Entry(key, '', each.name)
        yield Entry(rf'{key}\ProxyStubClsid', '', proxy)
        yield Entry(rf'{key}\ProxyStubClsid32', '', proxy)
        yield Entry(rf'{key}\TypeLib', '', product.library.guid)
        yield Entry(rf'{key}\TypeLib', 'Version', product.library.version)
