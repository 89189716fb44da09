"""The installers: a package of the Windows Installer for each bitness, made by wixl."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path
from xml.sax.saxutils import quoteattr

from package import registry, summary
from package.product import NAME, TIME, TITLE

FOLDER_KEY = r'Software\Zepkit10'
PROGRAM_FILES = {'x64': 'ProgramFiles64Folder', 'x86': 'ProgramFilesFolder'}


def _element(tag, content=(), **attributes):
    """An element as lines; an attribute of None is left out."""
    text = ''.join(f' {name}={quoteattr(value)}' for name, value in attributes.items() if value is not None)
    inner = [f'  {line}' for line in content]
    return [f'<{tag}{text}>', *inner, f'</{tag}>'] if inner else [f'<{tag}{text}/>']


def _values(entries, is_key_path):
    lines = []
    for index, entry in enumerate(entries):
        lines += _element('RegistryValue', Root='HKLM', Key=rf'Software\Classes\{entry.key}', Name=entry.name or None,
                          Type='string', Value=entry.value, KeyPath='yes' if is_key_path and not index else None)
    return lines


def _remembered_folder(is_64_bit):
    """Removing and replacing find the folder that was chosen where installing wrote it."""
    place = {'Root': 'HKLM', 'Key': FOLDER_KEY, 'Name': 'Folder'}
    search = _element('RegistrySearch', Id='folder', Type='raw', Win64='yes' if is_64_bit else None, **place)
    return (_element('Property', search, Id='INSTALLDIR'),
            _element('RegistryValue', Type='string', Value='[INSTALLDIR]', **place))


def _file(name, **attributes):
    return _element('File', Id=name, Name=name, Source=name, **attributes)


def _component(product, name, content, code, is_64_bit):
    return _element('Component', content, Id=name, Guid=product.code('component', *code),
                    Win64='yes' if is_64_bit else None)


def _components(product, bitness):
    """Components of the same code are the same thing for the installers of both bitnesses: Windows
    counts who uses them, and what one has installed is not removed by the other."""
    is_64_bit, dll = bitness == 'x64', '[#zepkit10.dll]'
    files = [*_file('zepkit10.dll', KeyPath='yes'), *_file('README.txt')]
    own = [*registry.class_entries(product, dll), *registry.library_path_entries(product, bitness, dll)]
    names = [*registry.name_entries(product), *registry.library_entries(product, '[INSTALLDIR]')]
    content = [*files, *_values(own, False), *_remembered_folder(is_64_bit)[1]]
    yield 'component', _component(product, 'component', content, ['dll', bitness], is_64_bit)
    yield 'names', _component(product, 'names', _values(names, True), ['names'], is_64_bit)
    for view in ('x64', 'x86') if is_64_bit else ('x86',):
        yield f'interfaces_{view}', _component(product, f'interfaces_{view}',
                                               _values(registry.interface_entries(product), True),
                                               ['interfaces', view], view == 'x64')


def description(product, bitness):
    """What wixl makes an installer of."""
    components = dict(_components(product, bitness))
    folder = _element('Directory', sum(components.values(), []), Id='INSTALLDIR', Name=NAME)
    programs = _element('Directory', folder, Id=PROGRAM_FILES[bitness], Name='PFiles')
    content = [
        *_element('Package', InstallerVersion='200', Compressed='yes', InstallScope='perMachine',
                  Description=f'{NAME} {product.version} ({bitness})', Comments=TITLE),
        *_element('MajorUpgrade', DowngradeErrorMessage=f'A newer version of {NAME} is installed.'),
        *_element('Media', Id='1', Cabinet='zepkit10.cab', EmbedCab='yes'),
        *_element('Property', Id='ARPNOMODIFY', Value='1'),
        *_remembered_folder(bitness == 'x64')[0],
        *_element('Directory', programs, Id='TARGETDIR', Name='SourceDir'),
        *_element('Feature', sum((_element('ComponentRef', Id=name) for name in components), []), Id='all', Level='1',
                  Title=NAME)]
    root = _element('Product', content, Id=product.code('product', product.version, bitness),
                    Name=f'{NAME} ({bitness})', Language='1033', Codepage='1252', Version=product.version,
                    Manufacturer=NAME, UpgradeCode=product.code('upgrade', bitness))
    lines = _element('Wix', root, xmlns='http://schemas.microsoft.com/wix/2006/wi')
    return '\n'.join(['<?xml version="1.0" encoding="utf-8"?>', *lines, ''])


def _run(*command, folder):
    environment = dict(os.environ, TZ='UTC', LC_ALL='C.UTF-8')
    done = subprocess.run(command, cwd=folder, env=environment, check=False, capture_output=True, text=True)
    if done.returncode:
        raise RuntimeError(f"{' '.join(command)}\n{done.stdout}{done.stderr}")


def _changes(product):
    """What wixl cannot be told."""
    # Without its version Windows takes the DLL for older than any other and keeps that one.
    yield (f"UPDATE `File` SET `Version` = '{product.four_numbers}', `Language` = '1033' "
           "WHERE `File` = 'zepkit10.dll'")
    # Without it Windows may forget the folder when it asks for an administrator.
    yield ("UPDATE `Property` SET `Value` = 'INSTALLDIR;WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED' "
           "WHERE `Property` = 'SecureCustomProperties'")


def make(product, bitness, readme, path):
    """Writes the installer of a bitness."""
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        shutil.copy(product.dll(bitness), folder / 'zepkit10.dll')
        (folder / 'README.txt').write_text(readme, encoding='utf-8', newline='')
        (folder / 'zepkit10.wxs').write_text(description(product, bitness), encoding='utf-8')
        for each in folder.iterdir():
            each.chmod(0o644)
            os.utime(each, (TIME, TIME))
        _run('wixl', '-a', bitness, '-o', 'zepkit10.msi', 'zepkit10.wxs', folder=folder)
        for change in _changes(product):
            _run('msibuild', 'zepkit10.msi', '-q', change, folder=folder)
        summary.settle(folder / 'zepkit10.msi', lambda digest: product.code('package', digest), TIME)
        path.write_bytes((folder / 'zepkit10.msi').read_bytes())
