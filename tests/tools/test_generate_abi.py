"""What the generator writes for the probe's type library is compared with the files in golden/.

ZEPKIT10_UPDATE_GOLDEN=1 rewrites them. They are called .txt so that nobody formats or compiles them.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

from generate_abi import Generator, snake
from idl import read_library

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = ROOT / 'tests/tools/golden'
PROBE = ROOT / 'tests/com/probe/Probe.idl'


def library_with(members, before='', after=''):
    """A library with one class whose default interface has these members."""
    return read_library(f'''
        library Test {{
            {before}
            interface _Thing : IDispatch {{ {members} }};
            coclass Thing {{ [default] interface _Thing; }};
            {after}
        }};''')


def generated(library):
    return {name: ''.join(parts) for name, parts in Generator(library, 'Test.idl').files()}


class GoldenTest(unittest.TestCase):
    maxDiff = None

    def test_probe(self):
        with tempfile.TemporaryDirectory() as out:
            subprocess.run([sys.executable, ROOT / 'tools/generate_abi.py', PROBE, '--out', out], check=True)
            found = {f'{path.name}.txt': path.read_text(encoding='utf-8') for path in pathlib.Path(out).iterdir()}
        if os.environ.get('ZEPKIT10_UPDATE_GOLDEN'):
            GOLDEN.mkdir(exist_ok=True)
            for name, text in found.items():
                (GOLDEN / name).write_text(text, encoding='utf-8')
        self.assertEqual(sorted(path.name for path in GOLDEN.iterdir()), sorted(found))
        for name, text in found.items():
            with self.subTest(file=name):
                self.assertEqual((GOLDEN / name).read_text(encoding='utf-8'), text,
                                 'ZEPKIT10_UPDATE_GOLDEN=1 accepts the difference')

    def test_unchanged_files_keep_their_time(self):
        with tempfile.TemporaryDirectory() as out:
            command = [sys.executable, ROOT / 'tools/generate_abi.py', PROBE, '--out', out]
            subprocess.run(command, check=True)
            files = list(pathlib.Path(out).iterdir())
            for path in files:
                os.utime(path, (1, 1))
            subprocess.run(command, check=True)
            self.assertEqual({1}, {path.stat().st_mtime for path in files})


class GeneratorTest(unittest.TestCase):
    def test_the_components_own_library(self):
        idl = ROOT / 'idl/Zepkit10.idl'
        files = generated(read_library(idl.read_text(encoding='utf-8')))
        self.assertIn('counter_shim.h', files)
        self.assertIn('counter_events.h', files)
        self.assertIn('zepErrAwaitTerm = -2147220480', files['enums.h'])

    def test_file_names(self):
        for name, expected in [('Counter', 'counter'), ('VarSets', 'var_sets'), ('__DocHand', 'doc_hand'),
                               ('DebugPrintOut', 'debug_print_out')]:
            self.assertEqual(expected, snake(name))

    def test_an_interface_without_a_coclass_has_a_class_without_clsid(self):
        files = generated(library_with('[id(1)] HRESULT Do(void);',
                                       after='interface _Other : IDispatch { [id(1)] HRESULT Undo(void); };'))
        self.assertIn('class OtherShim final : public Shim<Object, ::_Other>', files['other_shim.h'])
        self.assertIn('kOtherClass{u"Other", nullptr, &IID__Other, nullptr, kOtherMembers, kOtherPositions}', files['classes.cpp'])
        self.assertIn('kThingClass{u"Thing", &CLSID_Thing, &IID__Thing, nullptr, kThingMembers, kThingPositions}', files['classes.cpp'])

    def test_a_member_named_like_its_class(self):
        shim = generated(library_with('[propget, id(1)] HRESULT Thing([out, retval] long* Result);'))['thing_shim.h']
        self.assertIn('get_Thing(LONG* Result)', shim)
        self.assertIn('object.ThingProperty()', shim)

    def test_a_short_is_no_boolean(self):
        shim = generated(library_with('[id(1)] HRESULT Do([in] short Number, [in] VARIANT_BOOL Flag);'))['thing_shim.h']
        self.assertIn('object.Do(FromAbi(Number), Flag != VARIANT_FALSE)', shim)

    def test_references_must_lead_somewhere_unless_optional(self):
        shim = generated(library_with(
            '[id(1)] HRESULT Do([in, out] long* Number, [in, optional] VARIANT* Other);'))['thing_shim.h']
        self.assertIn('object.Do(Required(Number), FromAbi(Other))', shim)

    def test_only_out_parameters_are_written_back(self):
        table = generated(library_with(
            '[id(1)] HRESULT Do([in] long* Read, [in, out] SAFEARRAY(BSTR)* Changed);'))['classes.cpp']
        self.assertIn('{L"Read", VT_I4, kByReference, nullptr, {}}', table)
        self.assertIn('{L"Changed", VT_ARRAY | VT_BSTR, kByReference | kWrittenBack, nullptr, {}}', table)

    def test_a_default_is_looked_up_in_the_parameters_own_enumeration_first(self):
        table = generated(library_with(
            '[id(1)] HRESULT Do([in, defaultvalue(same)] Second What, [in, defaultvalue(same)] VARIANT Other);',
            before='typedef enum First { same = 1 } First; typedef enum Second { same = 2 } Second;'))['classes.cpp']
        self.assertIn('{L"What", VT_I4, kOptional | kHasDefault, nullptr, {2, nullptr}}', table)
        self.assertIn('{L"Other", VT_VARIANT, kOptional | kHasDefault, nullptr, {1, nullptr}}', table)

    def test_members_are_found_by_name_and_by_dispid(self):
        table = generated(library_with(
            '[id(3)] HRESULT Second(void); [propget, id(0)] HRESULT third([out, retval] long* Result); '
            '[propput, id(0)] HRESULT third([in] long New); [id(1)] HRESULT First(void);'))['classes.cpp']
        names = re.findall(r'^    {L"(\w+)", -?\d+, INVOKE_', table, re.M)
        self.assertEqual(['First', 'Second', 'third', 'third'], names)
        self.assertIn('kThingPositions[] = {0, 0, 0, 0, 2, 0, 0, 1};', table)  # from DISPID -4 on

    def test_members_that_no_table_can_find(self):
        for members in ('[id(-5)] HRESULT Do(void);',
                        ' '.join(f'[id({i})] HRESULT Do{i}(void);' for i in range(257))):
            with self.assertRaisesRegex(ValueError, '_Thing has a DISPID below -4 or more than 256 members'):
                generated(library_with(members))

    def test_thunks_take_the_last_argument_first(self):
        table = generated(library_with('[id(1)] HRESULT Do([in] long First, [in, out] VARIANT* Last);'))['classes.cpp']
        self.assertIn('->Do(a[1].lVal, static_cast<VARIANT*>(a[0].byref));', table)

    def test_too_many_parameters(self):
        parameters = ', '.join(f'[in] long P{i}' for i in range(17))
        with self.assertRaisesRegex(ValueError, r'_Thing\.Do has more than 16 parameters'):
            generated(library_with(f'[id(1)] HRESULT Do({parameters});'))

    def test_what_events_cannot_pass(self):
        for parameter in ('[in] VARIANT What', '[in, out] long* What', '[in] DATE What', '[in, out] _Thing** What'):
            with self.subTest(parameter=parameter), self.assertRaisesRegex(ValueError, 'no event can pass What'):
                generated(read_library(f'''
                    library Test {{
                        interface _Thing : IDispatch {{ }};
                        dispinterface __Thing {{ properties: methods: [id(1)] void Event({parameter}); }};
                        coclass Thing {{ [default] interface _Thing; [default, source] dispinterface __Thing; }};
                    }};'''))

    def test_two_libraries_need_no_common_folder(self):
        for name, text in generated(library_with('[id(1)] HRESULT Do(void);')).items():
            if name.endswith('_shim.h'):
                self.assertIn('#include "classes.h"', text)
                self.assertIn('#include "enums.h"', text)


if __name__ == '__main__':
    unittest.main()
