"""Examples in documents are found, run and compared as their authors expect."""
import unittest

from doc_examples import difference, examples, programs, scripts, unmarked

DOCUMENT = '''\
# Title

```vb
x = 1
WScript.Echo x   ' 1
```

More text.

```vb
WScript.Echo "it's " & x  ' it's 1
```

C#, not run by the tests:

```csharp
Use(x);
```

*VBScript. Not run by the tests.*

```vb
WScript.Echo "waits"  ' for ever
```

```cpp
std::printf("%d\\n", 2);  // 2
```
'''


class DocExamples(unittest.TestCase):
    def test_finds_blocks_with_their_lines(self):
        self.assertEqual([('vb', 4, False), ('vb', 11, False), ('csharp', 17, True), ('vb', 23, True),
                          ('cpp', 27, False)],
                         [(each.language, each.line, each.marked) for each in examples(DOCUMENT)])

    def test_blocks_of_a_script_language_are_one_script(self):
        code, expected = scripts(DOCUMENT)['vb']
        self.assertTrue(code.startswith('x = 1\n'))
        self.assertNotIn('waits', code)
        self.assertEqual(['1', "it's 1"], expected)
        self.assertEqual(['vb'], list(scripts(DOCUMENT)))

    def test_programs_stand_alone(self):
        self.assertEqual([['2']], [each.expected for each in programs(DOCUMENT)])

    def test_other_languages_must_be_marked(self):
        self.assertEqual([], unmarked(DOCUMENT))
        self.assertEqual([17], [each.line for each in unmarked(DOCUMENT.replace('C#, not run', 'C#, run'))])

    def test_compares_line_by_line(self):
        self.assertEqual('', difference(['1', 'a'], '1\r\n\r\n  a\r\n'))
        self.assertIn('printed\n1', difference(['1', 'a'], '1\n'))


if __name__ == '__main__':
    unittest.main()
