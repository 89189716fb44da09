"""Reads the regular style in which this project writes its IDL into plain Python values.

Not a general IDL parser: one library block; enumerations, dual interfaces, dispinterfaces and
coclasses; every attribute in one bracket before what it describes. Whatever does not fit is a
SyntaxError that tells the line.
"""
import re
from dataclasses import dataclass, field

TOKEN = re.compile(r'\s+|//[^\n]*|/\*.*?\*/|("(?:[^"\\]|\\.)*"|[A-Za-z_]\w*|0[xX][0-9A-Fa-f]+|[0-9][\w.-]*|.)',
                   re.S)


@dataclass
class Parameter:
    name: str
    type: str          # "long", "BSTR", "_VarSet", "SAFEARRAY(long)" …, without asterisks
    stars: int
    attributes: dict

    @property
    def is_result(self):
        return 'retval' in self.attributes


@dataclass
class Member:
    name: str
    kind: str          # "func", "propget", "propput", "propputref"
    id: int
    vararg: bool
    parameters: list
    help: str = ''
    hidden: bool = False
    context: int = 0   # the number of its help

    @property
    def result(self):
        last = self.parameters[-1] if self.parameters else None
        return last if last and last.is_result else None

    @property
    def arguments(self):
        return [p for p in self.parameters if not p.is_result]


@dataclass
class Interface:
    name: str
    members: list
    help: str = ''
    guid: str = ''     # as the registry writes it: "{683B888E-…}"
    context: int = 0


@dataclass
class Coclass:
    name: str
    default: str = ''
    events: str = ''
    creatable: bool = True
    clsid: str = ''    # a C++ expression for the address of the CLSID
    help: str = ''
    guid: str = ''
    context: int = 0


@dataclass
class Library:
    name: str = ''
    guid: str = ''
    version: str = ''  # "1.0"
    title: str = ''    # its help string
    help_file: str = ''
    context: int = 0
    enumerations: dict = field(default_factory=dict)   # name -> [(constant, value)]
    interfaces: dict = field(default_factory=dict)     # dual interfaces by name
    events: dict = field(default_factory=dict)         # dispinterfaces by name
    coclasses: list = field(default_factory=list)
    help: dict = field(default_factory=dict)           # of the enumerations, by name
    contexts: dict = field(default_factory=dict)       # of the enumerations, by name


class Reader:
    def __init__(self, text):
        found = [match for match in TOKEN.finditer(text) if match[1]]
        self.tokens = [match[1] for match in found]
        self.lines = [text.count('\n', 0, match.start()) + 1 for match in found]
        self.position = 0

    def peek(self):
        return self.tokens[self.position] if self.position < len(self.tokens) else ''

    def next(self, expected=None):
        token = self.peek()
        if expected is not None and token != expected:
            raise self.error(f'expected {expected!r}, found {token!r}')
        if not token:
            raise self.error('the text ends too early')
        self.position += 1
        return token

    def error(self, what):
        """A SyntaxError at the next token."""
        line = self.lines[min(self.position, len(self.lines) - 1)] if self.lines else 1
        near = ' '.join(self.tokens[max(0, self.position - 8):self.position + 3])
        return SyntaxError(f'line {line}: {what} near: {near}')

    def number(self, text):
        try:
            return int(text.strip('()'), 0)
        except ValueError:
            raise self.error(f'{text!r} is no number') from None

    def skip_to(self, token):
        while self.next() != token:
            pass

    def attributes(self):
        """[a, b(1), c("x")] -> {'a': '', 'b': '1', 'c': '"x"'}"""
        found = {}
        if self.peek() != '[':
            return found
        self.next('[')
        while self.peek() != ']':
            name, value = self.next(), ''
            if self.peek() == '(':
                self.next('(')
                while self.peek() != ')':
                    value += self.next()
                self.next(')')
            found[name] = value
            if self.peek() == ',':
                self.next(',')
        self.next(']')
        return found

    def type(self):
        name = self.next()
        if name in ('enum', 'unsigned'):
            name = self.next() if name == 'enum' else f'unsigned {self.next()}'
        if name == 'SAFEARRAY':
            self.next('(')
            name = f'SAFEARRAY({self.type()[0]})'
            self.next(')')
        stars = 0
        while self.peek() == '*':
            self.next()
            stars += 1
        return name, stars

    def parameter(self):
        attributes = self.attributes()
        kind, stars = self.type()
        return Parameter(self.next(), kind, stars, attributes)

    def member(self):
        attributes = self.attributes()
        self.type()
        name = self.next()
        number = self.member_id(name, attributes)
        self.next('(')
        parameters = []
        while self.peek() != ')':
            if self.peek() == 'void':
                self.next()
                continue
            parameters.append(self.parameter())
            if self.peek() == ',':
                self.next()
        self.next(')')
        self.next(';')
        kind = next((k for k in ('propget', 'propputref', 'propput') if k in attributes), 'func')
        return Member(name, kind, number, 'vararg' in attributes, parameters, help_of(attributes),
                      'hidden' in attributes, context_of(attributes))

    def member_id(self, name, attributes):
        named = {'DISPID_VALUE': 0, 'DISPID_NEWENUM': -4}
        if 'id' not in attributes:
            raise self.error(f'{name} has no id')
        text = attributes['id']
        return named[text] if text in named else self.number(text)

    def members(self):
        self.next('{')
        found = []
        while self.peek() != '}':
            if self.peek() in ('properties', 'methods'):
                self.next()
                self.next(':')
                continue
            found.append(self.member())
        self.next('}')
        self.next(';')
        return found


def help_of(attributes):
    return re.sub(r'\\(.)', r'\1', attributes.get('helpstring', '')[1:-1])


def context_of(attributes):
    return int(attributes.get('helpcontext', '0'))


def guid_of(attributes):
    return f"{{{attributes['uuid'].upper()}}}" if 'uuid' in attributes else ''


def read_enumeration(reader):
    reader.next('enum')
    name = reader.next()
    reader.next('{')
    constants, value = [], -1
    while reader.peek() != '}':
        constant = reader.next()
        value += 1
        if reader.peek() == '=':
            reader.next()
            text = ''
            while reader.peek() not in (',', '}'):
                text += reader.next()
            named = dict(constants)
            value = named[text] if text in named else reader.number(text)
        constants.append((constant, value - (1 << 32) if value >= 1 << 31 else value))
        if reader.peek() == ',':
            reader.next()
    reader.skip_to(';')
    return name, constants


def read_coclass(reader, attributes):
    found = Coclass(reader.next(), creatable='noncreatable' not in attributes,
                    help=help_of(attributes), guid=guid_of(attributes), context=context_of(attributes))
    found.clsid = f'&CLSID_{found.name}'
    if reader.peek() == ';':  # only announced
        reader.next()
        return None
    reader.next('{')
    while reader.peek() != '}':
        entry = reader.attributes()
        reader.next()
        name = reader.next()
        reader.next(';')
        if 'source' in entry:
            found.events = name
        elif 'default' in entry:
            found.default = name
    reader.next('}')
    reader.next(';')
    return found


def read_library(text):
    reader, library = Reader(text), Library()
    while reader.peek() == 'import':
        reader.skip_to(';')
    attributes = reader.attributes()
    library.guid, library.version = guid_of(attributes), attributes.get('version', '')
    library.title, library.context = help_of(attributes), context_of(attributes)
    library.help_file = attributes.get('helpfile', '')[1:-1]
    reader.next('library')
    library.name = reader.next()
    reader.next('{')
    while reader.peek() != '}':
        attributes = reader.attributes()
        keyword = reader.next()
        if keyword == 'importlib':
            reader.skip_to(';')
        elif keyword == 'typedef':
            name, constants = read_enumeration(reader)
            library.enumerations[name] = constants
            library.help[name], library.contexts[name] = help_of(attributes), context_of(attributes)
        elif keyword in ('interface', 'dispinterface'):
            name = reader.next()
            if reader.peek() == ';':
                reader.next()
                continue
            if reader.peek() == ':':
                reader.next()
                reader.next()
            target = library.interfaces if keyword == 'interface' else library.events
            target[name] = Interface(name, reader.members(), help_of(attributes), guid_of(attributes),
                                     context_of(attributes))
        elif keyword == 'coclass':
            found = read_coclass(reader, attributes)
            if found:
                library.coclasses.append(found)
        else:
            raise reader.error(f'unexpected {keyword!r} in the library block')
    return library
