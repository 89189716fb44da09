"""The type library as its readers see it: classes with properties, methods and events; enumerations."""
import re
from dataclasses import dataclass, field

import idl
from docs.errors import Catalogue, errors_in

TYPES = {'long': 'Long', 'short': 'Integer', 'double': 'Double', 'float': 'Single', 'BSTR': 'String', 'DATE': 'Date',
         'VARIANT': 'Variant', 'VARIANT_BOOL': 'Boolean', 'unsigned char': 'Byte', 'IDispatch': 'Object',
         'IPictureDisp': 'Picture', 'IUnknown': 'Object'}


@dataclass
class Constant:
    name: str
    value: int
    comment: str


@dataclass
class Enumeration:
    name: str
    help: str
    constants: list
    context: int = 0   # the number of its help


@dataclass
class Member:
    """A method, property or event; a property's readers and writers are one."""
    name: str
    kind: str          # "property", "method", "event", "enumerator"
    id: int
    arguments: list
    result: str = ''   # type, empty for none
    vararg: bool = False
    access: list = field(default_factory=list)   # of a property: "read", "write", "Set"
    help: dict = field(default_factory=dict)     # text by access; by "call" for all others
    context: int = 0

    @property
    def anchor(self):
        return f'{self.name}-event' if self.kind == 'event' else self.name

    @property
    def is_default(self):
        return self.id == 0

    @property
    def errors(self):
        return list(dict.fromkeys(key for text in self.help.values() for key in errors_in(text)))

    @property
    def text(self):
        """The sentence that stands for the member where there is room for one."""
        return next(iter(self.help.values()))


@dataclass
class Class:
    name: str
    help: str
    creatable: bool
    members: list
    events: list
    context: int = 0
    events_context: int = 0  # of the interface of its events

    @property
    def errors(self):
        """Members by the key of an error that they name, in the order of the keys' first appearance."""
        found = {}
        for member in self.members:
            for key in member.errors:
                found.setdefault(key, []).append(member)
        return found


def type_name(name):
    """What automation clients call a type of the IDL."""
    array = re.fullmatch(r'SAFEARRAY\((.*)\)', name)
    if array:
        return f'{type_name(array[1])}()'
    return TYPES.get(name, name.removeprefix('_'))


def by_reference(parameter):
    return 'out' in parameter.attributes


ACCESS = {'propget': 'read', 'propput': 'write', 'propputref': 'Set'}


def members_of(interface, kind):
    """A property's readers and writers share an id."""
    found = {}
    for each in interface.members:
        if kind == 'event':
            member = Member(each.name, 'event', each.id, each.arguments, help={'call': each.help}, context=each.context)
        elif each.id == -4:
            member = Member('NewEnum', 'enumerator', each.id, [], help={'call': each.help},
                            context=each.context)
        elif each.kind == 'func':
            result = type_name(each.result.type) if each.result else ''
            member = Member(each.name, 'method', each.id, each.arguments, result, each.vararg, help={'call': each.help},
                            context=each.context)
        else:
            member = found.get(each.id) or Member(each.name, 'property', each.id, each.arguments, context=each.context)
            member.access.append(ACCESS[each.kind])
            member.help[ACCESS[each.kind]] = each.help
            if each.result:
                member.result = type_name(each.result.type)
        found[each.id if kind != 'event' else (each.id, 'event')] = member
    return list(found.values())


class TypeLibrary:
    def __init__(self, text):
        library = idl.read_library(text)
        self.help_file, self.context = library.help_file, library.context
        comments = dict(re.findall(r'^\s*(zep\w+) = [^/\n]*// (.*)$', text, re.MULTILINE))
        self.enumerations = {
            name: Enumeration(name, library.help[name],
                              [Constant(each, value, comments.get(each, '')) for each, value in constants],
                              library.contexts[name])
            for name, constants in library.enumerations.items()}
        self.classes = {each.name: self.read_class(library, each) for each in library.coclasses}
        shown = {each.default for each in library.coclasses}
        for name, interface in library.interfaces.items():
            if name not in shown:  # an interface that clients meet without a class
                plain = name.removeprefix('_')
                self.classes[plain] = Class(plain, interface.help, False, members_of(interface, 'member'), [],
                                            interface.context)
        self.errors = Catalogue(self.enumerations)

    @staticmethod
    def read_class(library, coclass):
        source = library.events.get(coclass.events)
        events = members_of(source, 'event') if source else []
        members = members_of(library.interfaces[coclass.default], 'member')
        return Class(coclass.name, coclass.help, coclass.creatable, members, events, coclass.context,
                     source.context if source else 0)
