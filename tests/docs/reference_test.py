"""Every member of the type library is documented by hand and by example, and so is every error."""
import re
import unittest

from doc_examples import examples
from docs.build import SOURCE, read_documents, read_library
from docs.errors import errors_in
from docs.markdown_page import error_advice, whole

LIBRARY = read_library()
DOCUMENTS = read_documents()
# Library has the members of Global, and its page sends its readers there.
EXAMPLES_ELSEWHERE = {'Library': 'Global'}


def document(name):
    return DOCUMENTS[f'reference/{name}.md']


def code_of(name):
    return '\n'.join(each.code for each in examples(whole(document(name))))


def is_shown(member, code):
    """Whether code uses a member, early or late bound, or handles an event."""
    if member.kind == 'enumerator':
        return bool(re.search(r'\bFor Each \w+ In ', code))
    if member.kind == 'event':
        return bool(re.search(rf'\bSub \w+_{member.name}\b', code))
    return bool(re.search(rf'\.{member.name}\b', code))


def members():
    return [(described, member) for described in LIBRARY.classes.values()
            for member in described.members + described.events]


class EveryClass(unittest.TestCase):
    def test_has_a_page_with_a_sentence_an_example_and_remarks(self):
        for name in LIBRARY.classes:
            with self.subTest(name):
                self.assertEqual(name, document(name).title)
                self.assertRegex(document(name).lead.split('\n\n')[0], r'\.$')
                self.assertIn('Example', document(name).sections)
                self.assertIn('Remarks', document(name).sections)

    def test_has_an_example_that_runs(self):
        for name in LIBRARY.classes:
            with self.subTest(name):
                self.assertTrue([each for each in examples(whole(document(name))) if not each.marked and each.expected])

    def test_there_are_no_other_pages(self):
        pages = {path.stem for path in (SOURCE / 'reference').glob('*')}
        self.assertEqual(set(LIBRARY.classes), pages)


class EveryMember(unittest.TestCase):
    def test_has_a_text_for_each_of_its_uses(self):
        for described, member in members():
            for use in member.access or ['call']:
                with self.subTest(f'{described.name}.{member.name}, {use}'):
                    self.assertGreater(len(member.help[use]), 10)

    def test_is_shown_by_an_example(self):
        for described, member in members():
            with self.subTest(f'{described.name}.{member.name}'):
                self.assertTrue(is_shown(member, code_of(EXAMPLES_ELSEWHERE.get(described.name, described.name))))

    def test_examples_elsewhere_show_the_same_members(self):
        for name, other in EXAMPLES_ELSEWHERE.items():
            names = {member.name for member in LIBRARY.classes[name].members}
            self.assertLessEqual(names, {member.name for member in LIBRARY.classes[other].members})
            self.assertIn(f'[{other}]({other}.md)', document(name).sections['Remarks'])

    def test_all_are_there(self):
        self.assertEqual(22, len(LIBRARY.classes))
        self.assertLessEqual({'Increment', 'Decrement', 'Value'},
                             {member.name for member in LIBRARY.classes['Counter'].members})
        self.assertEqual(['read', 'write', 'Set'],
                         next(each for each in LIBRARY.classes['ZepVariant'].members if each.name == 'Range').access)


class EveryError(unittest.TestCase):
    def test_is_known(self):
        for described in LIBRARY.classes.values():
            for key in described.errors:
                with self.subTest(f'{described.name}: {key}'):
                    self.assertIn(key, LIBRARY.errors)
                    self.assertTrue(LIBRARY.errors[key].text)

    def test_has_advice(self):
        for described in LIBRARY.classes.values():
            advice = error_advice(document(described.name))
            for key in described.errors:
                with self.subTest(f'{described.name}: {key}'):
                    self.assertIn(key, advice)
            for key, (text, raised_by) in advice.items():
                with self.subTest(f'{described.name}: {key}'):
                    self.assertIn(key, LIBRARY.errors)
                    self.assertGreater(len(text), 10)
                    self.assertTrue(key in described.errors or raised_by)
                    self.assertLessEqual(set(raised_by), {member.name for member in described.members})

    def test_in_texts_is_found(self):
        self.assertEqual(['zepErrBadCall', '6'], errors_in('zepErrBadCall for a, error 6 for b from U+8000 upward'))
        self.assertEqual(['13', '481', '361', '7', 'zepErrBadCall'],
                         errors_in('error 13 for a, zepErrBadCall for b, 481 for an Icon, 361 or 7 where no window'))
        self.assertEqual(['5', '6', '11', 'zepErrBadCallContext'],
                         errors_in('Value; error 5, 6 or 11 for faults, zepErrBadCallContext for 1 to 3'))
        self.assertEqual(['9', 'zepErrItemNotExistant'], errors_in('(error 9 outside 1 to 3) or (zepErrItemNotExistant)'))
        self.assertEqual([], errors_in('How often each runtime error 1 to 76 befell a sample: 76 counters'))


class EveryEnumeration(unittest.TestCase):
    def test_says_what_each_constant_means(self):
        for enumeration in LIBRARY.enumerations.values():
            self.assertTrue(enumeration.help, enumeration.name)
            for constant in enumeration.constants:
                with self.subTest(constant.name):
                    self.assertTrue(constant.comment)


if __name__ == '__main__':
    unittest.main()
