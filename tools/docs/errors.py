"""Which errors a helpstring names, and what is known of each from the enumerations of errors."""
import re
from dataclasses import dataclass

RUNTIME = ('ZepVbErrors3To98', 'ZepVbErrors298To746', 'ZepVbErrors31001To32811')
FACILITY = 0x800A0000  # a runtime error's HRESULT is this plus its number


@dataclass(frozen=True)
class Error:
    """`key` is what pages and helpstrings call it: zepErrBadCall or 5."""
    key: str
    number: int        # as Err.Number tells it to a script
    hresult: int
    constant: str
    text: str
    enumeration: str


def errors_in(help_text):
    """Keys in order of appearance. A number counts behind the word error and in the enumeration after it:
    error 13 for a, 481 for b, 361 or 7 where c."""
    found = []
    for match in re.finditer(r'\bzepErr\w*|\berrors? (?!\d+ to )(\d.*)', help_text):
        found += numbers_of(match[1]) if match[1] else [match[0]]
        if match[1]:
            found += re.findall(r'\bzepErr\w*', match[1])
    return list(dict.fromkeys(found))


def numbers_of(text):
    """The error numbers in what follows the word error: the first, and each that a comma or "or" precedes and
    what tells its circumstances follows."""
    found = re.findall(r'(?:^|, | or |error )(\d+)(?=,| or \d| or \d+| for | if | where | outside | at | beyond| below)', text)
    return found or re.findall(r'^\d+', text)


class Catalogue:
    """All errors of the type library, found by key."""

    def __init__(self, enumerations):
        self.by_key = {}
        for constant in enumerations['ZepErrors'].constants:
            self.add(constant, constant.name, constant.value, 'ZepErrors')
        for name in RUNTIME:
            for constant in enumerations[name].constants:
                self.add(constant, str(constant.value), FACILITY + constant.value, name)

    def add(self, constant, key, hresult, enumeration):
        text = re.sub(r'^0x\w+: ', '', constant.comment)
        self.by_key.setdefault(key, Error(key, constant.value, hresult & 0xFFFFFFFF, constant.name, text, enumeration))

    def __getitem__(self, key):
        if key not in self:
            raise KeyError(f'a text names the error {key}, which no enumeration has')
        return self.by_key[key]

    def __contains__(self, key):
        return key in self.by_key
