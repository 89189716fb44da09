"""What the generator of the site makes of small texts."""
import re
import unittest

from docs.layout import breakable, link
from docs.markdown_page import error_advice, framed_tables, read_document, redirect, render
from docs.model import TypeLibrary
from docs.pictures import picture_script
from docs.reference import Reference

IDL = '''
library Things {
    [helpstring("Kinds of things")]
    typedef enum ZepErrors {
        zepErrBad = -2147220479  // 0x80040401: It is bad
    } ZepErrors;
    typedef enum ZepVbErrors3To98 { zepVbErrOverflow = 6  // Overflow
    } ZepVbErrors3To98;
    typedef enum ZepVbErrors298To746 { zepOther = 300 } ZepVbErrors298To746;
    typedef enum ZepVbErrors31001To32811 { zepAnother = 31001 } ZepVbErrors31001To32811;
    [] interface _Thing : IDispatch {
        [id(1), helpstring("Adds; zepErrBad")] HRESULT Add([in, defaultvalue(-1)] VARIANT_BOOL Fast,
            [in, out] VARIANT* What, [in, optional] BSTR Name, [out, retval] _Thing** Result);
        [id(2), vararg, helpstring("Takes all; error 6 for many")] HRESULT Take([in] SAFEARRAY(VARIANT)* Items);
        [propget, id(0), helpstring("The size")] HRESULT Size([out, retval] long* Result);
        [propput, id(0), helpstring("Sets the size")] HRESULT Size([in] long NewSize);
        [propget, id(3), helpstring("The names")] HRESULT Names([in] ZepErrors Kind, [out, retval] SAFEARRAY(BSTR)* Result);
        [propget, id(DISPID_NEWENUM), helpstring("All, for For Each")] HRESULT NewEnum([out, retval] IUnknown** Result);
    };
    [] dispinterface __Thing { properties: methods: [id(1), helpstring("It grew")] void Grew([in] short By); };
    [helpstring("A thing")] coclass Thing { [default] interface _Thing; [default, source] dispinterface __Thing; };
};
'''

PAGE = '''# Thing

What it is.

## Example
```vb
## no heading
x = 1
```

## Errors
- `zepErrBad`: Do
  better.
- `6` (`Take`, `Size`): Take less.
'''


class Documents(unittest.TestCase):
    def test_are_divided_at_headings_outside_of_code(self):
        document = read_document('reference/Thing.md', PAGE)
        self.assertEqual(('Thing', 'What it is.', ['Example', 'Errors']),
                         (document.title, document.lead, list(document.sections)))
        self.assertIn('## no heading', document.sections['Example'])

    def test_need_a_title(self):
        with self.assertRaisesRegex(ValueError, 'a.md has no title'):
            read_document('a.md', 'text')

    def test_advise_about_errors(self):
        self.assertEqual({'zepErrBad': ('Do better.', []), '6': ('Take less.', ['Take', 'Size'])},
                         error_advice(read_document('a.md', PAGE)))
        with self.assertRaisesRegex(ValueError, 'item without an error'):
            error_advice(read_document('a.md', '# A\n\n## Errors\n- nothing\n'))

    def test_have_steps_of_their_own_behind_indented_lines(self):
        text = '1.  Do:\n\n        this\n\n    and that.\n2.  Try:\n\n        it\n3.  End.\n'
        self.assertEqual(3, render(text).count('<li>'))

    def test_have_tables_that_a_phone_can_show(self):
        self.assertRegex(framed_tables(render('| a | b |\n|---|---|\n| 1 | 2 |\n')), r'<div class="wide"><table>\n<thead>')
        text = framed_tables(render(f'| a | <b>&</b> |\n|---|---|\n| 1 | {"x" * 101} |\n| 2 | y |\n'))
        self.assertIn('<div class="wide"><table class="stacked">', text)
        self.assertEqual(['a', '&amp;', 'a', '&amp;'], re.findall('data-label="(.*?)"', text))

    def test_links_are_resolved_from_their_page(self):
        def resolve(target):
            return {'guides/b.md': 'guides/b.html', '../x.cpp': 'source/x.cpp.html'}[target]
        self.assertEqual('<a href="../guides/b.html#c"><a href="../source/x.cpp.html"><a href="#d"><a href="http://e">',
                         redirect('reference/a.html', '<a href="../guides/b.md#c"><a href="../../x.cpp"><a href="#d">'
                                  '<a href="http://e">', resolve))

    def test_links_of_pages(self):
        self.assertEqual('<a href="#c">x</a>', link('a/b.html', 'a/b.html#c', 'x'))
        self.assertEqual('<a href="../d.html#c">x</a>', link('a/b.html', 'd.html#c', 'x'))


    def test_long_names_break_between_words(self):
        self.assertEqual('Zep<wbr>Vb<wbr>Errors298<wbr>To746', breakable('ZepVbErrors298To746'))
        self.assertEqual('C++ &amp; VBA', breakable('C++ & VBA'))


class Members(unittest.TestCase):
    def setUp(self):
        self.library = TypeLibrary(IDL)
        self.thing = self.library.classes['Thing']
        self.reference = Reference(self.library)

    def signature(self, name):
        member = next(each for each in self.thing.members + self.thing.events if each.name == name)
        return self.reference.signature('reference/Thing.html', member)

    def test_signatures(self):
        thing = '<a href="Thing.html">Thing</a>'
        self.assertEqual(f'Add([Fast As Boolean = True], ByRef What As Variant, [Name As String]) As {thing}',
                         self.signature('Add'))
        self.assertEqual('Take(ParamArray Items() As Variant)', self.signature('Take'))
        self.assertEqual('Size As Long', self.signature('Size'))
        self.assertEqual('Names(Kind As <a href="ZepErrors.html">ZepErrors</a>) As String()', self.signature('Names'))
        self.assertEqual('For Each <var>item</var> In <var>object</var>', self.signature('NewEnum'))
        self.assertEqual('Grew(By As Integer)', self.signature('Grew'))

    def test_readers_and_writers_are_one(self):
        size = next(each for each in self.thing.members if each.name == 'Size')
        self.assertEqual((['read', 'write'], True, {'read': 'The size', 'write': 'Sets the size'}),
                         (size.access, size.is_default, size.help))
        self.assertEqual('Property, read and write, default member', self.reference.facts(size))

    def test_errors(self):
        self.assertEqual({'zepErrBad': ['Add'], '6': ['Take']},
                         {key: [each.name for each in found] for key, found in self.thing.errors.items()})
        bad, overflow = self.library.errors['zepErrBad'], self.library.errors['6']
        self.assertEqual((0x80040401, 'It is bad', -2147220479), (bad.hresult, bad.text, bad.number))
        self.assertEqual((0x800A0006, 'zepVbErrOverflow'), (overflow.hresult, overflow.constant))
        with self.assertRaisesRegex(KeyError, 'error 7'):
            self.library.errors['7']


    def test_errors_lead_to_what_to_do(self):
        page = self.reference.enumeration_page(self.library.enumerations['ZepErrors'],
                                               {'zepErrBad': {'Thing': 'reference/Thing.html#error-zepErrBad'}})
        self.assertIn('<small>What to do: <a href="Thing.html#error-zepErrBad">Thing</a></small>', page)


class Pictures(unittest.TestCase):
    def test_are_what_the_blocks_above_have_drawn(self):
        text = '# A\n\n```vb\na\n```\n\n![x](pictures/one.png)\n\nNot run by the tests:\n\n```vb\nb\n```\n\n```vb\nc\n```\n'
        self.assertEqual('a\nPictures.Save chart.Picture, "Z:/f/one.png"\nc\n', picture_script(text, '/f'))
        self.assertEqual('', picture_script(text.replace('!', ''), '/f'))


if __name__ == '__main__':
    unittest.main()
