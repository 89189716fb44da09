"""Examples that nothing here can run are at least of a language that is known, and read where a reader exists."""
import pathlib
import subprocess
import tempfile
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

    def test_in_csharp_are_parsed(self):
        found = [(name, each) for name, each in all_examples() if each.language == 'csharp']
        self.assertTrue(found)
        with tempfile.TemporaryDirectory() as folder:
            for name, example in found:
                with self.subTest(f'{name}:{example.line}'):
                    source = pathlib.Path(folder) / 'example.cs'
                    is_whole = 'class ' in example.code
                    source.write_text(example.code if is_whole else f'class Example {{ void Run() {{ {example.code} }} }}',
                                      encoding='utf-8')
                    done = subprocess.run(['mcs', '--parse', source], capture_output=True, text=True, check=False)
                    self.assertEqual(0, done.returncode, done.stdout + done.stderr)

    def test_are_there_for_every_language(self):
        self.assertEqual(LANGUAGES, {each.language for _, each in all_examples()})


if __name__ == '__main__':
    unittest.main()
