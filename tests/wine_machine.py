"""The Windows on which tests in Python run programs and look at the registry."""
import os
import pathlib
import re
import struct
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[1]
PRESET = os.environ.get('ZEPKIT10_PRESET', 'x64')
USER = os.environ.get('WINE_USER', 'english')
DLL = ROOT / f'build/{PRESET}/zepkit10.dll'
PLATFORM, MACHINE = ('win32', 'i686') if PRESET.endswith('x86') else ('win64', 'x86_64')
COMPILER = f'{MACHINE}-w64-mingw32-g++-posix'
DRIVE_C = ROOT / 'build/wine' / USER / 'drive_c'
LOCAL_CLASSES = r'HKEY_LOCAL_MACHINE\Software\Classes'
USER_CLASSES = r'HKEY_CURRENT_USER\Software\Classes'


def run(*command, folder=ROOT):
    """What a Windows program prints, and its exit code."""
    done = subprocess.run([str(ROOT / 'tools/wine.sh'), USER, *map(str, command)], check=False, cwd=folder,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return done.stdout.decode('utf-8', 'replace').replace('\r\n', '\n'), done.returncode


def wine(*command):
    """Runs a Windows program that must succeed; its output."""
    output, code = run(*command)
    if code:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {code}\n{output}")
    return output


# Wine writes these anew whenever it starts.
VOLATILE = ('hkey_local_machine\\system\\currentcontrolset\\control\\video', 'hkey_local_machine\\hardware',
            'hkey_current_user\\volatile environment', 'hkey_local_machine\\system\\currentcontrolset\\enum',
            'hkey_local_machine\\system\\currentcontrolset\\control\\deviceclasses')


def export(root, file):
    """Once more where a key goes meanwhile: Wine writes the volatile ones anew whenever it starts."""
    for _ in range(5):
        output, code = run('reg', 'export', root, f'Z:{file}', '/y')
        if code == 0:
            return
    raise AssertionError(f'exporting {root} ended with {code}\n{output}')


def registry():
    """Every lasting key of the machine's and the user's registry, in lower case, with its values."""
    keys = {}
    for root in ('HKLM', 'HKCU'):
        file = ROOT / f'build/{root}-{USER}.reg'
        export(root, file)
        for block in file.read_text(encoding='utf-16').split('\n\n'):
            lines = block.strip().splitlines()
            if lines and lines[0].startswith('[') and not lines[0][1:].lower().startswith(VOLATILE):
                keys[lines[0].strip('[]').lower()] = lines[1:]
        file.unlink()
    return keys


def changes(before, after):
    """What is not the same in two registries: {key: (values before, values after)}, None where there is no key."""
    return {key: (before.get(key), after.get(key)) for key in {*before, *after} if before.get(key) != after.get(key)}


# Where Windows keeps account of what is installed.
ACCOUNTS = re.compile(r'\\(software\\classes\\installer|currentversion\\(installer|uninstall))\\')


def of_component(keys):
    """The keys that an installer writes for the component: without the accounts of Windows."""
    return {key: lines for key, lines in keys.items() if not ACCOUNTS.search(key + '\\')}


def for_all_users(changed):
    """The keys among changed ones that concern more than the current user. A 64-bit Wine 8 writes the interfaces
    of 32-bit programs for all, whoever they are registered for."""
    return [key for key in changed if not key.startswith(USER_CLASSES.lower() + '\\')
            and not ('wow6432node' in key and r'\interface\{' in key)]


def value(keys, key, name='@'):
    """A value in what `registry` returned."""
    name = name if name == '@' else f'"{name}"'
    values = dict(line.split('=', 1) for line in keys[key.lower()] if '=' in line)
    return values[name].strip('"').replace('\\\\', '\\')


def with_library_version(content, major, minor):
    """A program or DLL, as if its type library had another version."""
    found = bytearray(content)
    struct.pack_into('<HH', found, found.index(b'MSFT\x02\x00\x01\x00') + 24, major, minor)
    return bytes(found)
