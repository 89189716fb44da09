#!/usr/bin/env python3
"""Makes every package of the components that tools/build.sh has built.

    PYTHONPATH=tools python3 -m package [--out FOLDER]

The folder, build/package if none is named, is emptied first.
"""
import argparse
import pathlib
import shutil
import sys

from package import archive, installer, nuget
from package.product import BITNESSES, ROOT, Product


def make_all(product, folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    readme = archive.windows_text(archive.content(product, 'README.txt')).decode('utf-8')
    for bitness in BITNESSES:
        installer.make(product, bitness, readme, folder / f'zepkit10-{bitness}.msi')
    archive.make(product, folder / f'zepkit10-{product.version}.zip')
    nuget.make(product, folder / 'nuget')
    made = {path.relative_to(folder).as_posix(): path.read_bytes() for path in folder.rglob('*') if path.is_file()}
    (folder / 'SHA256SUMS.txt').write_bytes(archive.checksums(made))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('--out', type=pathlib.Path, default=ROOT / 'build/package')
    folder, product = parser.parse_args().out.resolve(), Product()
    missing = [str(path) for bitness in BITNESSES for path in (product.dll(bitness), product.zepcheck(bitness))
               if not path.exists()]
    if missing:
        sys.exit(f"There is no {' and no '.join(missing)}; ./dev package builds them first.")
    make_all(product, folder)
    for path in sorted(folder.iterdir()):
        size = f'{path.stat().st_size:>10,} bytes' if path.is_file() else f"{'a folder':>16}"
        print(f'{size}  {path}')


if __name__ == '__main__':
    main()
