#!/usr/bin/env python3
"""Replaces the time of day that widl writes into a type library, so that the same IDL makes the same bytes.

    settle_type_library.py FILE

The time is there twice, among the library's custom data: in a text, and behind it as a number of seconds.
"""
import pathlib
import re
import struct
import sys

TEXT, SECONDS = b'Tue Jan  1 00:00:00 1980', 315532800
VT_UI4 = struct.pack('<H', 19)
TIMES = re.compile(rb'(Created by WIDL version \S+ at )(.{24})(\nW*' + re.escape(VT_UI4) + rb')(.{4})(WW)', re.DOTALL)


def settled(library):
    """The bytes of a type library with the times replaced."""
    found, count = TIMES.subn(lambda match: match[1] + TEXT + match[3] + struct.pack('<I', SECONDS) + match[5], library)
    if count != 1:
        raise ValueError(f'the time is there {count} times and not once')
    return found


def main():
    path = pathlib.Path(sys.argv[1])
    path.write_bytes(settled(path.read_bytes()))


if __name__ == '__main__':
    main()
