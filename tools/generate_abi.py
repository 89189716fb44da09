#!/usr/bin/env python3
"""Writes the ABI of a type library's objects from its IDL.

    generate_abi.py LIBRARY.idl --out DIRECTORY

For every library: enums.h (std-only), classes.h and classes.cpp (class descriptions and the
late-binding tables). For every dual interface _X: x_shim.h, one shim that turns each vtable call into a
call of the C++ class X. For every event interface __X: x_events.h, one proxy that raises the events.
They include each other from their own folder, so that two libraries may be used side by side.
The generator knows IDL, not C++ types: those are the business of platform/automation/abi.h.
"""
import argparse
import pathlib
import re

from idl import Coclass, read_library

HEADER = '// Generated from {source}. Changes belong there or into tools/generate_abi.py.\n'
KINDS = {'func': ('INVOKE_FUNC', '', ''), 'propget': ('INVOKE_PROPERTYGET', 'get_', ''),
         'propput': ('INVOKE_PROPERTYPUT', 'put_', 'Set'),
         'propputref': ('INVOKE_PROPERTYPUTREF', 'putref_', 'Set')}
MAX_PARAMETERS = 16  # kMaxParameters of platform/automation/class_description.h
FIRST_ID = -4        # kFirstId
MAX_MEMBERS = 256    # positions among them are bytes
# IDL type: variant type, field of a VARIANT, type in the C++ header, type an event takes if it may
TYPES = {'long': ('VT_I4', 'lVal', 'LONG', 'std::int32_t'),
         'short': ('VT_I2', 'iVal', 'SHORT', 'std::int16_t'),
         'unsigned char': ('VT_UI1', 'bVal', 'unsigned char', ''),
         'float': ('VT_R4', 'fltVal', 'FLOAT', 'float'),
         'double': ('VT_R8', 'dblVal', 'DOUBLE', 'double'),
         'DATE': ('VT_DATE', 'date', 'DATE', ''),
         'VARIANT_BOOL': ('VT_BOOL', 'boolVal', 'VARIANT_BOOL', 'bool'),
         'BSTR': ('VT_BSTR', 'bstrVal', 'BSTR', 'std::u16string_view'),
         'VARIANT': ('VT_VARIANT', '', 'VARIANT', ''),
         'IUnknown': ('VT_UNKNOWN', 'punkVal', 'IUnknown', ''),
         'IDispatch': ('VT_DISPATCH', 'pdispVal', 'IDispatch', 'IDispatch*')}


def snake(name):
    return re.sub(r'(?<=[a-z0-9])(?=[A-Z])', '_', name.strip('_')).lower()


class Generator:
    def __init__(self, library, source):
        self.library, self.source = library, source
        # A dual interface without a coclass has a C++ class as well, only no CLSID.
        described = {coclass.default for coclass in library.coclasses}
        self.classes = library.coclasses + [Coclass(name.strip('_'), name, clsid='nullptr')
                                            for name in library.interfaces if name not in described]

    def is_interface(self, type_name):
        return type_name in self.library.interfaces or type_name == 'IPictureDisp'

    def is_object(self, type_name):
        return self.is_interface(type_name) or type_name in ('IUnknown', 'IDispatch')

    def is_by_reference(self, parameter):
        return parameter.stars > (1 if self.is_object(parameter.type) else 0)

    def is_optional(self, parameter):
        return 'optional' in parameter.attributes or 'defaultvalue' in parameter.attributes

    def variant_type(self, type_name):
        if type_name.startswith('SAFEARRAY('):
            return f'VT_ARRAY | {self.variant_type(type_name[10:-1])}'
        if type_name in self.library.enumerations:
            return 'VT_I4'
        return 'VT_DISPATCH' if self.is_interface(type_name) else TYPES[type_name][0]

    def variant_field(self, type_name):
        if type_name.startswith('SAFEARRAY('):
            return 'parray'
        if type_name in self.library.enumerations:
            return 'lVal'
        return 'pdispVal' if self.is_interface(type_name) else TYPES[type_name][1]

    def abi_type(self, parameter):
        base = parameter.type
        if base.startswith('SAFEARRAY('):
            return 'SAFEARRAY*' + '*' * parameter.stars
        if base in self.library.enumerations:
            return f'::{base}' + '*' * parameter.stars
        if self.is_interface(base):
            return f'::{base}' + '*' * parameter.stars
        return TYPES[base][2] + '*' * parameter.stars

    # ---- enumerations -------------------------------------------------------------------------

    def enums(self):
        yield '#pragma once\n\n#include <cstdint>\n\nnamespace zepkit10 {\n'
        for name, constants in self.library.enumerations.items():
            yield f'\nenum class {name} : std::int32_t {{\n'
            for constant, value in constants:
                yield f'  {constant} = {value},\n'
            yield '};\n'
        yield '\n}  // namespace zepkit10\n'

    # ---- shims --------------------------------------------------------------------------------

    def from_abi(self, parameter):
        if parameter.type in self.library.enumerations:
            if parameter.stars:
                return f'reinterpret_cast<{parameter.type}*>(Required({parameter.name}))'
            return f'static_cast<{parameter.type}>({parameter.name})'
        if parameter.type == 'VARIANT_BOOL' and not parameter.stars:  # to C++ it is a short
            return f'{parameter.name} != VARIANT_FALSE'
        if self.is_by_reference(parameter) and not self.is_optional(parameter):
            return f'Required({parameter.name})'
        return f'FromAbi({parameter.name})'

    def shim(self, coclass):
        name = coclass.default
        yield f'#pragma once\n\n#include "{self.library.name}.h"\n#include "classes.h"\n#include "enums.h"\n'
        yield '#include "platform/automation/shim.h"\n\n'
        yield 'namespace zepkit10 {\n\n'
        yield f'/// The vtable of {name}; every slot calls the member of the same name of Object.\n'
        yield f'template <class Object>\nclass {coclass.name}Shim final : public Shim<Object, ::{name}> {{\n'
        yield f' public:\n  using Shim<Object, ::{name}>::Shim;\n'
        yield f'  static constexpr const ClassDescription& kClass = k{coclass.name}Class;\n\n'
        for member in self.library.interfaces[name].members:
            yield from self.shim_method(coclass, member)
        yield '};\n\n}  // namespace zepkit10\n'

    def shim_method(self, coclass, member):
        _, abi_prefix, own_prefix = KINDS[member.kind]
        # In C++ only constructors have the name of their class.
        suffix = 'Property' if member.name == coclass.name else ''
        declared = ', '.join(f'{self.abi_type(p)} {p.name}' for p in member.parameters)
        passed = ', '.join(self.from_abi(p) for p in member.arguments)
        call = f'object.{own_prefix}{member.name}{suffix}({passed})'
        yield f'  HRESULT STDMETHODCALLTYPE {abi_prefix}{member.name}({declared}) override {{\n'
        if member.result:
            if member.result.type in self.library.enumerations:
                call = f'static_cast<::{member.result.type}>({call})'
            yield f'    return this->Get({member.result.name}, [&](Object& object) {{ return {call}; }});\n'
        else:
            yield f'    return this->Call([&](Object& object) {{ return {call}; }});\n'
        yield '  }\n'

    # ---- events -------------------------------------------------------------------------------

    def events(self, coclass):
        yield '#pragma once\n\n#include "classes.h"\n#include "enums.h"\n'
        yield '#include "platform/automation/event_source.h"\n\n'
        yield 'namespace zepkit10 {\n\n'
        yield f'/// Raises the events of {coclass.events} into every connected sink.\n'
        yield f'class {coclass.name}Events final : public EventSource {{\n public:\n'
        yield f'  explicit {coclass.name}Events(ObjectCore& owner) : EventSource(owner) {{}}\n\n'
        for event in self.library.events[coclass.events].members:
            declared = ', '.join(self.event_parameter(p) for p in event.parameters)
            passed = ''.join(f', ChangeableFlag({p.name})' if self.is_by_reference(p) else f', {p.name}'
                             for p in event.parameters)
            yield f'  void {event.name}({declared}) {{\n    Raise({event.id}{passed});\n  }}\n'
        yield '};\n\n}  // namespace zepkit10\n'

    def event_parameter(self, parameter):
        if self.is_interface(parameter.type) and not self.is_by_reference(parameter):
            return f'IDispatch* {parameter.name}'
        if parameter.type in self.library.enumerations and not parameter.stars:
            return f'{parameter.type} {parameter.name}'
        passed = TYPES[parameter.type][3] if parameter.type in TYPES else ''
        if self.is_by_reference(parameter):  # only a Boolean comes back from the handlers
            passed = 'bool&' if passed == 'bool' else ''
        if not passed:
            raise ValueError(f'no event can pass {parameter.name}, a {parameter.type}{"*" * parameter.stars}')
        return f'{passed} {parameter.name}'

    # ---- class descriptions and late binding --------------------------------------------------

    def classes_header(self):
        yield '#pragma once\n\n#include "platform/automation/class_description.h"\n\n'
        yield 'namespace zepkit10 {\n\n'
        for coclass in self.classes:
            yield f'extern const ClassDescription k{coclass.name}Class;\n'
        yield '\n}  // namespace zepkit10\n'

    def classes_source(self):
        yield f'#include "classes.h"\n\n#include "{self.library.name}.h"\n\n'
        yield 'namespace zepkit10 {\nnamespace {\n'
        for coclass in self.classes:
            yield from self.interface_table(coclass)
        yield '\n}  // namespace\n\n'
        for coclass in self.classes:
            events = f'&DIID_{coclass.events}' if coclass.events else 'nullptr'
            yield (f'const ClassDescription k{coclass.name}Class{{u"{coclass.name}", {coclass.clsid}, '
                   f'&IID_{coclass.default}, {events}, k{coclass.name}Members, k{coclass.name}Positions}};\n')
        yield '\n}  // namespace zepkit10\n'

    def interface_table(self, coclass):
        members = sorted(self.library.interfaces[coclass.default].members, key=lambda member: member.name.lower())
        yield f'\n// {coclass.default}\n'
        entries = ''
        for member in members:
            thunk = f'{coclass.name}_{KINDS[member.kind][1]}{member.name}'
            yield from self.thunk(coclass, member, thunk)
            parameters = '{}'
            if len(member.arguments) > MAX_PARAMETERS:
                raise ValueError(f'{coclass.default}.{member.name} has more than {MAX_PARAMETERS} parameters')
            if member.arguments:
                parameters = f'k{thunk}'
                yield f'constexpr Parameter {parameters}[] = {{\n'
                for position, parameter in enumerate(member.arguments):
                    last = position == len(member.arguments) - 1
                    yield f'    {self.parameter_entry(parameter, member.vararg and last)},\n'
                yield '};\n'
            result = self.variant_type(member.result.type) if member.result else 'VT_EMPTY'
            entries += (f'    {{L"{member.name}", {member.id}, {KINDS[member.kind][0]}, {result}, '
                        f'{parameters}, {thunk}}},\n')
        yield f'constexpr Member k{coclass.name}Members[] = {{\n{entries}}};\n'
        positions = ', '.join(str(position) for position in self.positions(coclass.default, members))
        yield f'constexpr std::uint8_t k{coclass.name}Positions[] = {{{positions}}};\n'

    def positions(self, interface, members):
        """Where the first member with each DISPID stands, 0 for a DISPID without members."""
        ids = [member.id for member in members]
        if min(ids, default=0) < FIRST_ID or len(ids) > MAX_MEMBERS:
            raise ValueError(f'{interface} has a DISPID below {FIRST_ID} or more than {MAX_MEMBERS} members')
        return [ids.index(each) if each in ids else 0 for each in range(FIRST_ID, max(ids, default=0) + 1)]

    def thunk(self, coclass, member, name):
        last = len(member.arguments) - 1
        arguments = [self.thunk_argument(last - i, p) for i, p in enumerate(member.arguments)]
        result = 'result' if member.result else ''
        if member.result:
            arguments.append(self.thunk_result(member.result))
        used = 'a' if member.arguments else ''
        yield (f'HRESULT {name}(IDispatch* object, const VARIANT* {used}, VARIANT* {result}) {{\n'
               f'  return static_cast<{coclass.default}*>(object)->{KINDS[member.kind][1]}{member.name}('
               f'{", ".join(arguments)});\n}}\n')

    def thunk_argument(self, position, parameter):
        by_reference = self.is_by_reference(parameter)
        if by_reference:
            return f'static_cast<{self.abi_type(parameter)}>(a[{position}].byref)'
        if parameter.type == 'VARIANT':
            return f'a[{position}]'
        text = f'a[{position}].{self.variant_field(parameter.type)}'
        if self.is_interface(parameter.type) or parameter.type in self.library.enumerations:
            return f'static_cast<{self.abi_type(parameter)}>({text})'
        return text

    def thunk_result(self, parameter):
        if parameter.type == 'VARIANT':
            return 'result'
        text = f'&result->{self.variant_field(parameter.type)}'
        if parameter.type in self.library.enumerations or self.is_interface(parameter.type):
            return f'reinterpret_cast<{self.abi_type(parameter)}>({text})'
        return text

    def parameter_entry(self, parameter, vararg):
        flags = []
        if self.is_optional(parameter):
            flags.append('kOptional')
        if 'defaultvalue' in parameter.attributes:
            flags.append('kHasDefault')
        if self.is_by_reference(parameter):
            flags.append('kByReference')
            if 'out' in parameter.attributes:
                flags.append('kWrittenBack')
        if vararg:
            flags.append('kParameterArray')
        iid = f'&IID_{parameter.type}' if self.is_object(parameter.type) else 'nullptr'
        return (f'{{L"{parameter.name}", {self.variant_type(parameter.type)}, '
                f'{" | ".join(flags) or "0"}, {iid}, {self.default(parameter)}}}')

    def default(self, parameter):
        value = parameter.attributes.get('defaultvalue')
        if value is None:
            return '{}'
        if value.startswith('"'):
            return f'{{0, L{value}}}'
        own = self.library.enumerations.get(parameter.type, [])
        for constants in (own, *self.library.enumerations.values()):
            value = str(dict(constants).get(value, value))
        return f'{{{value}, nullptr}}'

    # ---- files --------------------------------------------------------------------------------

    def files(self):
        yield 'enums.h', self.enums()
        yield 'classes.h', self.classes_header()
        yield 'classes.cpp', self.classes_source()
        for coclass in self.classes:
            yield f'{snake(coclass.name)}_shim.h', self.shim(coclass)
            if coclass.events:
                yield f'{snake(coclass.name)}_events.h', self.events(coclass)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('idl', type=pathlib.Path)
    parser.add_argument('--out', type=pathlib.Path, required=True)
    arguments = parser.parse_args()
    library = read_library(arguments.idl.read_text(encoding='utf-8'))
    arguments.out.mkdir(parents=True, exist_ok=True)
    for name, parts in Generator(library, arguments.idl.name).files():
        text = HEADER.format(source=arguments.idl.name) + ''.join(parts)
        path = arguments.out / name
        if not path.exists() or path.read_text(encoding='utf-8') != text:
            path.write_text(text, encoding='utf-8')


if __name__ == '__main__':
    main()
