"""The reader of IDL: what it understands, and where it says that it does not."""
import unittest

from idl import read_library


def members(text):
    return read_library(f'library Test {{ interface _Thing : IDispatch {{ {text} }}; }};').interfaces['_Thing'].members


def member(text):
    found, = members(text)
    return found


def constants(text):
    return read_library(f'library Test {{ typedef enum Kind {{ {text} }} Kind; }};').enumerations['Kind']


class MemberTest(unittest.TestCase):
    def test_kinds_and_ids(self):
        found = members('''
            [id(7)] HRESULT Do(void);
            [propget, id(0)] HRESULT Value([out, retval] long* Result);
            [propput, id(DISPID_VALUE)] HRESULT Value([in] long NewValue);
            [propputref, id(0x10)] HRESULT Other([in] _Thing* NewOther);
            [propget, id(DISPID_NEWENUM), restricted, hidden] HRESULT NewEnum([out, retval] IUnknown** Result);
            [propget, id(-5)] HRESULT Negative([out, retval] long* Result);''')
        self.assertEqual([('Do', 'func', 7), ('Value', 'propget', 0), ('Value', 'propput', 0),
                          ('Other', 'propputref', 16), ('NewEnum', 'propget', -4), ('Negative', 'propget', -5)],
                         [(m.name, m.kind, m.id) for m in found])

    def test_types(self):
        found = member('''[id(1)] HRESULT Do([in] unsigned char A, [in, out] BSTR* B, [in] enum Kind C,
            [in] SAFEARRAY(unsigned char) D, [in, out] SAFEARRAY(VARIANT)* E, [out, retval] _Thing** Result);''')
        self.assertEqual([('A', 'unsigned char', 0), ('B', 'BSTR', 1), ('C', 'Kind', 0),
                          ('D', 'SAFEARRAY(unsigned char)', 0), ('E', 'SAFEARRAY(VARIANT)', 1), ('Result', '_Thing', 2)],
                         [(p.name, p.type, p.stars) for p in found.parameters])
        self.assertEqual('Result', found.result.name)
        self.assertEqual(['A', 'B', 'C', 'D', 'E'], [p.name for p in found.arguments])

    def test_without_parameters(self):
        for empty in ('', 'void'):
            found = member(f'[id(1)] HRESULT Do({empty});')
            self.assertEqual([], found.parameters)
            self.assertIsNone(found.result)

    def test_a_last_parameter_need_not_be_the_result(self):
        self.assertIsNone(member('[id(1)] HRESULT Do([in, out] long* Changed);').result)

    def test_defaults(self):
        found = member(r'''[id(1)] HRESULT Do([in, defaultvalue(-1)] long A, [in, defaultvalue("a, \"b\" (c) [d] // e")] BSTR B,
            [in, optional, defaultvalue(zepOne)] Kind C, [in, optional] VARIANT D, [in, defaultvalue("")] BSTR E);''')
        self.assertEqual(['-1', r'"a, \"b\" (c) [d] // e"', 'zepOne', None, '""'],
                         [p.attributes.get('defaultvalue') for p in found.parameters])
        self.assertEqual([False, False, True, True, False], ['optional' in p.attributes for p in found.parameters])

    def test_parameter_arrays(self):
        self.assertTrue(member('[id(1), vararg] HRESULT Do([in] SAFEARRAY(VARIANT)* Items);').vararg)
        self.assertFalse(member('[id(1)] HRESULT Do([in] SAFEARRAY(VARIANT)* Items);').vararg)

    def test_comments_and_line_ends(self):
        found = member('''// HRESULT Not([in] long A);
            [id(1), /* id(2), */
             helpstring("no // comment; /* neither */ HRESULT Not();")]   // ] }
            HRESULT
            Do([in]   // first
               long A,\r\n/* several
            lines */ [in] long
            B
            );''')
        self.assertEqual(('Do', 1, ['A', 'B']), (found.name, found.id, [p.name for p in found.parameters]))


    def test_help(self):
        found = member(r'[id(1), hidden, helpstring("Says \"no\"; error 5")] HRESULT Do();')
        self.assertEqual(('Says "no"; error 5', True), (found.help, found.hidden))
        self.assertEqual('', member('[id(1)] HRESULT Do();').help)


class EnumerationTest(unittest.TestCase):
    def test_values(self):
        self.assertEqual([('a', -3), ('b', -2), ('c', 255), ('d', 256), ('e', -2147220480), ('f', -2147483648),
                          ('g', -2147483648), ('h', 5)],
                         constants('a = -3, b, c = 0xff, d, e = 0x80040400, f = -2147483648, g = f, h = (5)'))

    def test_they_start_at_0_and_may_end_in_a_comma(self):
        self.assertEqual([('a', 0), ('b', 1)], constants('a, b, // last\n'))


class LibraryTest(unittest.TestCase):
    def test_everything_around(self):
        library = read_library('''
            import "oaidl.idl"; import "ocidl.idl";
            [uuid(683b888e-f570-4ce9-b6ec-24b89a672510), version(1.0), helpstring("a library { of } things")]
            library Things {
                importlib("stdole2.tlb");
                interface _Thing;
                coclass Thing;
                [uuid(12345678-0000-0000-0000-000000000001), helpstring("Kinds of things")]
                typedef enum Kind { one = 1 } Kind;
                [object, dual, uuid(fb42348c-3f80-44ca-bcf1-d34cc310195c)] interface _Thing : IDispatch { };
                [hidden] dispinterface __Thing { properties: methods: [id(1)] void Event([in] long A); };
                [uuid(12345678-0000-0000-0000-000000000000), noncreatable, helpstring("A thing")] coclass Thing {
                    [default] interface _Thing;
                    [default, source] dispinterface __Thing;
                };
                coclass Other { [default] interface _Thing; };
            };''')
        self.assertEqual(('Things', '{683B888E-F570-4CE9-B6EC-24B89A672510}', '1.0', 'a library { of } things'),
                         (library.name, library.guid, library.version, library.title))
        self.assertEqual(['{12345678-0000-0000-0000-000000000000}', ''], [c.guid for c in library.coclasses])
        self.assertEqual('{FB42348C-3F80-44CA-BCF1-D34CC310195C}', library.interfaces['_Thing'].guid)
        self.assertEqual([('Thing', '_Thing', '__Thing', False), ('Other', '_Thing', '', True)],
                         [(c.name, c.default, c.events, c.creatable) for c in library.coclasses])
        self.assertEqual('Kinds of things', library.help['Kind'])
        self.assertEqual('A thing', library.coclasses[0].help)
        self.assertEqual(['Event'], [e.name for e in library.events['__Thing'].members])


class ErrorTest(unittest.TestCase):
    def assert_error(self, text, message):
        with self.assertRaisesRegex(SyntaxError, message):
            read_library(text)

    def test_they_tell_the_line(self):
        start = 'library Test {\n  interface _Thing : IDispatch {\n'
        self.assert_error(start + '    [id(1)] HRESULT Do([in] long A)\n  };\n};', r"line 4: expected ';', found '}'")
        self.assert_error(start + '\n    HRESULT Do();\n  };\n};', 'line 4: Do has no id')
        self.assert_error(start + '    [id(one)] HRESULT Do();\n  };\n};', "line 3: 'one' is no number")
        self.assert_error('library Test {\n  typedef enum E {\n a = 1 + 1\n } E;\n};', r"line 4: '1\+1' is no number")
        self.assert_error('library Test {\n\n  struct Thing { };\n};', "line 3: unexpected 'struct'")
        self.assert_error('import "a.idl";\nlibary Test {};', "line 2: expected 'library', found 'libary'")

    def test_a_text_that_ends_too_early(self):
        whole = ('import "a.idl"; [version(1.0)] library Test { importlib("b"); typedef enum E { a = 1, b } E; '
                 'interface _T : IDispatch { [id(1)] HRESULT Do([in] SAFEARRAY(long)* A); }; '
                 'coclass T { [default] interface _T; }; }')
        read_library(whole)
        for end in range(len(whole)):
            with self.subTest(text=whole[:end]), self.assertRaises(SyntaxError):
                read_library(whole[:end])


if __name__ == '__main__':
    unittest.main()
