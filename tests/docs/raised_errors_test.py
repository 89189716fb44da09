"""Every error that a test of the component expects of a class is one that the documentation tells what to do about."""
import re
import unittest

from docs.build import ERRORS, OF_EVERY_CLASS, ROOT, read_documents, read_library
from docs.markdown_page import error_advice

LIBRARY = read_library()
DOCUMENTS = read_documents()
TESTS = ROOT / 'tests/com'
KEYS = {constant.name: str(constant.value) for enumeration in LIBRARY.enumerations.values()
        for constant in enumeration.constants if constant.name.startswith('zepVbErr')}
# The macros that expect an error, and the class whose error that is where no argument tells it.
MACROS = {'EXPECT_ERROR': None, 'EXPECT_ZEP_ERROR': None, 'EXPECT_ROOT_ERROR': 'Global',
          'EXPECT_RUNTIME_ERROR': 'DocHand', 'EXPECT_BUFFER_ERROR': 'ZepVariant',
          'EXPECT_BUFFER_RUNTIME_ERROR': 'ZepVariant'}
CALL = re.compile(rf'\b({"|".join(MACROS)})\(')
TEXT = r'"(?:[^"\\]|\\.)*"'


def arguments(code):
    """The arguments of a call, from behind its opening bracket."""
    found, depth = [''], 0
    for token in re.findall(rf"{TEXT}|'.'|.", code, re.DOTALL):
        depth += (token in '([{') - (token in ')]}')
        if depth < 0:
            return [each.strip() for each in found]
        if token == ',' and depth == 0:
            found.append('')
        else:
            found[-1] += token
    raise ValueError('a bracket is not closed')


def expected_errors(code):
    """Pairs of a class and the key of an error, as far as both are written as they are."""
    for match in CALL.finditer(code):
        given = arguments(code[match.end():])
        name = MACROS[match[1]] or given[2].removeprefix('L').strip('"').removeprefix('Zepkit10.')
        key = re.sub(r'^.*::', '', given[1])
        if name in LIBRARY.classes and re.fullmatch(r'\d+|zep\w+', key):
            yield name, KEYS.get(key, key)


class RaisedErrors(unittest.TestCase):
    @staticmethod
    def numbers(keys):
        """Two constants may stand for one number."""
        return {LIBRARY.errors[key].hresult for key in keys}

    def test_are_documented(self):
        of_every_class = error_advice(DOCUMENTS[ERRORS], OF_EVERY_CLASS)
        documented = {each.name: self.numbers({*each.errors, *error_advice(DOCUMENTS[f'reference/{each.name}.md']), *of_every_class})
                      for each in LIBRARY.classes.values()}
        seen = set()
        for path in sorted(TESTS.rglob('*.cpp')):
            for name, key in expected_errors(path.read_text(encoding='utf-8')):
                seen.add((name, key))
                with self.subTest(f'{path.name}: {name}, {key}'):
                    self.assertLessEqual(self.numbers({key}), documented[name])
        self.assertGreater(len(seen), 100)

    def test_of_the_component_itself_are_documented(self):
        """Also those that tests name without a macro. One file lists the texts of all errors, raised or not."""
        named = {key for path in TESTS.rglob('*.cpp') if path.name != 'zep_error.cpp'
                 for key in re.findall(r'\bzepErr\w+', path.read_text(encoding='utf-8'))}
        documented = set(error_advice(DOCUMENTS[ERRORS], OF_EVERY_CLASS))
        for each in LIBRARY.classes.values():
            documented |= {*each.errors, *error_advice(DOCUMENTS[f'reference/{each.name}.md'])}
        self.assertEqual(set(), named - documented)
        self.assertGreater(len(named), 15)

    def test_of_every_class_are_known(self):
        self.assertLessEqual(set(error_advice(DOCUMENTS[ERRORS], OF_EVERY_CLASS)), set(LIBRARY.errors.by_key))

    def test_are_read_from_calls(self):
        code = ('EXPECT_ERROR(a.Call(L"x, )", {1, 2}), 6, L"Zepkit10.List", L"Overflow"); EXPECT_ROOT_ERROR(f(1),\n'
                'ZepErrors::zepErrBadCall); EXPECT_BUFFER_RUNTIME_ERROR(b, zepVbErrOverflow, L"t"); EXPECT_ERROR(c, n, s, t);')
        self.assertEqual([('List', '6'), ('Global', 'zepErrBadCall'), ('ZepVariant', '6')], list(expected_errors(code)))


if __name__ == '__main__':
    unittest.main()
