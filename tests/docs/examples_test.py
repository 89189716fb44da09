"""Examples that nothing here can run are at least of a language that is known, and read where a reader exists."""
import unittest

from doc_examples import examples
from docs.build import SOURCE

LANGUAGES = {'vb', 'js', 'cpp', 'vba', 'powershell', 'python', 'csharp', 'autohotkey', 'pascal', 'cxx'}


def all_examples():
    return [(path.relative_to(SOURCE).as_posix(), each) for path in sorted(SOURCE.rglob('*.md'))
            for each in examples(path.read_text(encoding='utf-8'))]


class Examples(unittest.TestCase):
    def test_are_of_a_known_language(self):
        for name, example in all_examples():
            self.assertIn(example.language, LANGUAGES, f'{name}:{example.line}')

    def test_in_python_compile(self):
        found = [(name, each) for name, each in all_examples() if each.language == 'python']
        self.assertTrue(found)
        for name, example in found:
            with self.subTest(f'{name}:{example.line}'):
                compile(example.code, name, 'exec')

    def test_are_there_for_every_language(self):
        self.assertEqual(LANGUAGES, {each.language for _, each in all_examples()})


if __name__ == '__main__':
    unittest.main()
