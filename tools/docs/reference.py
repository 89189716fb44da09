"""The pages of the reference, as HTML: what the type library says, around what is written by hand."""
import re

from docs.layout import escape, link
from docs.markdown_page import error_advice, render
from docs.model import by_reference, type_name

NOUNS = {'property': 'Properties', 'method': 'Methods', 'enumerator': 'Enumeration', 'event': 'Events'}


class Reference:
    def __init__(self, library):
        self.library = library

    def path(self, name):
        return f'reference/{name}.html'

    def type(self, page, name):
        """A type's name, with a link if the library describes it."""
        element = name.removesuffix('()')
        if element in self.library.classes or element in self.library.enumerations:
            return link(page, self.path(element), escape(element)) + ('()' if element != name else '')
        return escape(name)

    def argument(self, page, parameter):
        text = f'{escape(parameter.name)} As {self.type(page, type_name(parameter.type))}'
        # Arrays are by reference for all automation clients.
        if by_reference(parameter):
            text = f'ByRef {text}'
        default = parameter.attributes.get('defaultvalue')
        if default is not None:
            if parameter.type == 'VARIANT_BOOL':
                default = 'True' if default == '-1' else 'False'
            return f'[{text} = {escape(default)}]'
        return f'[{text}]' if 'optional' in parameter.attributes else text

    def signature(self, page, member):
        arguments = [self.argument(page, each) for each in member.arguments]
        if member.vararg:
            arguments[-1] = f'ParamArray {escape(member.arguments[-1].name)}() As Variant'
        text = escape(member.name)
        if arguments or member.kind in ('method', 'event'):
            text += f'({", ".join(arguments)})'
        if member.result:
            text += f' As {self.type(page, member.result)}'
        return 'For Each <var>item</var> In <var>object</var>' if member.kind == 'enumerator' else text

    def mentions(self, page, text, member):
        """A helpstring with links to the enumerations' errors and to the error table."""
        def linked(match):
            return link(page, f'{page}#error-{match[0]}', match[0])
        return re.sub(r'\bzepErr\w*', linked, escape(text)) if member.errors else escape(text)

    def facts(self, member):
        found = []
        if member.kind == 'property':
            names = {'read': 'read', 'write': 'write', 'Set': 'write with Set'}
            found.append('Property, ' + (' and '.join(names[each] for each in member.access) if len(member.access) > 1
                                         else 'read-only'))
        else:
            found.append({'method': 'Method', 'event': 'Event', 'enumerator': 'Enumerator'}[member.kind])
        if member.is_default and member.kind != 'event':
            found.append('default member')
        return ', '.join(found)

    def member(self, page, member):
        texts = dict.fromkeys(member.help.values())
        sentences = ''.join(f'<p>{self.mentions(page, text, member)}.</p>\n' for text in texts)
        errors = ''
        if member.errors:
            errors = '<p class="errors">Errors: ' + ', '.join(
                link(page, f'{page}#error-{key}', escape(key)) for key in member.errors) + '</p>\n'
        return (f'<section class="member" id="{member.anchor}">\n'
                f'<h3>{link(page, f"{page}#{member.anchor}", escape(member.name))} <small>{self.facts(member)}</small></h3>\n'
                f'<p class="signature"><code>{self.signature(page, member)}</code></p>\n{sentences}{errors}</section>\n')

    def members(self, page, members):
        """All members, by kind, after a line that lists them."""
        parts = []
        for kind, heading in NOUNS.items():
            group = sorted((each for each in members if each.kind == kind), key=lambda each: each.name.lower())
            if group:
                names = ', '.join(link(page, f'{page}#{each.anchor}', escape(each.name)) for each in group)
                overview = f'<p class="overview">{names}</p>\n' if len(group) > 3 else ''
                parts.append(f'<h2 id="{heading.lower()}">{heading}</h2>\n{overview}'
                             + ''.join(self.member(page, each) for each in group))
        return ''.join(parts)

    def error_row(self, page, key, members, advice):
        error = self.library.errors[key]
        name = link(page, f'{self.path(error.enumeration)}#{error.constant}', escape(error.constant))
        raised = ', '.join(link(page, f'{page}#{each}', escape(each)) for each in members)
        if key == 'zepErrAwaitTerm':
            raised = 'every member after the deletion'
        inline = re.sub(r'^<p>(.*)</p>$', r'\1', render(advice), flags=re.DOTALL)
        number = f'{error.number}<br> <small>0x{error.hresult:08X}</small>'
        return (f'<tr id="error-{key}"><td>{number}</td><td>{name}<br>{escape(error.text)}</td>'
                f'<td>{raised}</td><td>{inline}</td></tr>\n')

    def errors(self, page, described, advice):
        """A row for each error that the type library names and for each that is only described by hand."""
        named = described.errors
        keys = [*named, *(key for key in advice if key not in named)]
        if not keys:
            return '<h2 id="errors">Errors</h2>\n<p>This class raises no errors of its own.</p>\n'
        rows = []
        for key in keys:
            text, members = advice.get(key, ('', []))
            members = list(dict.fromkeys([*(each.name for each in named.get(key, [])), *members]))
            rows.append(self.error_row(page, key, members, text))
        return ('<h2 id="errors">Errors</h2>\n<div class="wide"><table class="facts errors-of-class">\n<tr><th>Number</th>'
                f'<th>Error</th><th>Raised by</th><th>What to do</th></tr>\n{"".join(rows)}</table></div>\n')

    def jumps(self, page, described, document):
        """Links to the parts of a class's page."""
        kinds = {each.kind for each in described.members + described.events}
        names = ['Example', *(NOUNS[kind] for kind in NOUNS if kind in kinds),
                 *(name for name in document.sections if not name.startswith('Example') and name != 'Errors'), 'Errors']
        links = ' · '.join(link(page, f'{page}#{name.lower().replace(" ", "-")}', escape(name)) for name in names)
        return f'<p class="jumps">{links}</p>\n'

    def class_page(self, described, document):
        page = self.path(described.name)
        made = (f'<code>CreateObject("Zepkit10.{described.name}")</code>' if described.creatable
                else 'Not created by clients: other members return it.')
        body = [f'<h1>{escape(described.name)}</h1>\n', render(document.lead), f'<p class="made">{made}</p>\n',
                self.jumps(page, described, document)]
        for heading, text in document.sections.items():
            if heading.startswith('Example'):
                body.append(render(f'## {heading}\n\n{text}'))
        body.append(self.members(page, described.members + described.events))
        for heading, text in document.sections.items():
            if heading != 'Errors' and not heading.startswith('Example'):
                body.append(render(f'## {heading}\n\n{text}'))
        body.append(self.errors(page, described, error_advice(document)))
        return ''.join(body)

    def enumeration_page(self, enumeration, advice=None):
        """`advice` tells of an error's key where it is told what to do about it: addresses by the links' texts."""
        page, advice = self.path(enumeration.name), advice or {}
        keys = {error.constant: key for key, error in self.library.errors.by_key.items()
                if error.enumeration == enumeration.name}
        hexadecimal = enumeration.name == 'ZepErrors'
        rows = []
        for each in enumeration.constants:
            number = f'{each.value}' + (f'<br> <small>0x{each.value & 0xFFFFFFFF:08X}</small>' if hexadecimal else '')
            comment = re.sub(r'^0x\w+: ', '', each.comment)
            rows.append(f'<tr id="{each.name}"><td><code>{each.name}</code></td><td>{number}</td>'
                        f'<td>{escape(comment)}{self.advised(page, advice.get(keys.get(each.name), {}))}</td></tr>\n')
        users = self.users(enumeration.name)
        used = f'<p>Used by {", ".join(users)}.</p>\n' if users else ''
        return (f'<h1>{enumeration.name}</h1>\n<p>{escape(enumeration.help)}.</p>\n{used}<div class="wide"><table class="facts enumeration">\n'
                f'<tr><th>Constant</th><th>Value</th><th>Meaning</th></tr>\n{"".join(rows)}</table></div>\n')

    @staticmethod
    def advised(page, targets):
        links = ', '.join(link(page, target, escape(text)) for text, target in targets.items())
        return f'<br>\n<small>What to do: {links}</small>' if links else ''

    def users(self, name):
        """Links to the members that take or return an enumeration."""
        page = self.path(name)
        return [link(page, f'{self.path(each.name)}#{member.anchor}', f'{each.name}.{member.name}')
                for each in self.library.classes.values() if each.name != 'Library'
                for member in each.members + each.events
                if name in (member.result, *(parameter.type for parameter in member.arguments))]
