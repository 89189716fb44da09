"""The summary of an installer, into which wixl writes a random code and the time of day.

It is a property set in a stream of a compound file. The stream is short, and wixl writes it in one
piece, so it can be changed where it stands.
"""
import hashlib
import struct

FORMAT = bytes.fromhex('e0859ff2f94f6810ab9108002b27b3d9')  # {F29F85E0-4FF9-1068-AB91-08002B27B3D9}
REVISION, CREATED, SAVED = 9, 12, 13
VT_LPSTR, VT_FILETIME = 30, 64
CODE_LENGTH = 38
TICKS_UNTIL_1970 = 116444736000000000


def _properties(data):
    """Where the properties are: {number: (type, offset of the value)}."""
    found = data.index(FORMAT)
    if data.find(FORMAT, found + 1) >= 0:
        raise ValueError('the installer has two summaries')
    section = found - 28 + struct.unpack_from('<I', data, found + 16)[0]
    count = struct.unpack_from('<I', data, section + 4)[0]
    entries = (struct.unpack_from('<II', data, section + 8 + 8 * index) for index in range(count))
    return {number: (struct.unpack_from('<I', data, section + offset)[0], section + offset + 4)
            for number, offset in entries}


def settle(path, code_of, time):
    """Puts a fixed time (seconds since 1970) and the code of the installer's digest there."""
    data = bytearray(path.read_bytes())
    properties = _properties(data)
    for number in (CREATED, SAVED):
        kind, offset = properties[number]
        if kind != VT_FILETIME:
            raise ValueError(f'property {number} of the summary is no time')
        struct.pack_into('<Q', data, offset, time * 10**7 + TICKS_UNTIL_1970)
    kind, offset = properties[REVISION]
    length = struct.unpack_from('<I', data, offset)[0]
    code = slice(offset + 4, offset + 4 + CODE_LENGTH)
    if kind != VT_LPSTR or length < CODE_LENGTH or data[code][:1] + data[code][-1:] != b'{}':
        raise ValueError('the summary has no code')
    data[code] = bytes(CODE_LENGTH)
    data[code] = code_of(hashlib.sha256(data).hexdigest()).encode('ascii')
    path.write_bytes(data)
