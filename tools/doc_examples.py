"""The examples in documents, as scripts and programs that the tests run.

A fenced block of VBScript (vb), JScript (js) or C++ (cpp) runs, unless the line before it says that it
is not run by the tests; a block of any other language must be marked so. The blocks of a script language
are one script, from the first of the document to its last, so that later ones may use what earlier ones
made. A line that prints ends in a comment that says what.
"""
import dataclasses
import re

COMMENT = {'vb': "'", 'js': '//', 'cpp': '//'}
MARK = 'not run by the tests'
END = 'end of the examples'


@dataclasses.dataclass
class Example:
    language: str
    line: int  # of its first line in the document
    code: str
    marked: bool  # as not run

    @property
    def expected(self):
        """The lines that it prints."""
        return [match[1].strip() for match in
                re.finditer(rf'^.*(?:Echo|printf).*?\s{COMMENT[self.language]} (.*)$', self.code, re.MULTILINE)]


def examples(text):
    found, before, block = [], '', None
    for number, line in enumerate(text.splitlines(), 1):
        fence = re.fullmatch(r'```(\w*)', line.strip())
        if block is not None and fence:
            language, first, marked, lines = block
            found.append(Example(language, first, '\n'.join(lines) + '\n', marked))
            block = None
        elif block is not None:
            block[3].append(line)
        elif fence:
            block = (fence[1], number + 1, MARK in before.lower(), [])
        before = line if line.strip() else before
    return found


def unmarked(text):
    """Examples that neither run nor say so."""
    return [each for each in examples(text) if each.language not in COMMENT and not each.marked]


def scripts(text):
    """By language: the script of all examples, and the lines that it prints."""
    joined = {}
    for example in examples(text):
        if example.language in ('vb', 'js') and not example.marked:
            code, expected = joined.setdefault(example.language, ([], []))
            code.append(example.code)
            expected += example.expected
    return {language: (''.join(code), expected) for language, (code, expected) in joined.items()}


def programs(text):
    return [each for each in examples(text) if each.language == 'cpp' and not each.marked]


def run(runner, windows, text, generated, folder):
    """Runs the scripts and programs of a document, whose files go into a folder.

    Yields for each one its name, the lines that it must print, its output and its exit code. `generated`
    is where the component's header is.
    """
    for language, (code, expected) in scripts(text).items():
        path = folder / ('examples.vbs' if language == 'vb' else 'examples.js')
        # Script hosts are silent about errors: only a last line proves that all of it ran.
        path.write_text(f'{code}\nWScript.Echo("{END}")\n', encoding='ascii')
        yield language, [*expected, END], *runner.program(windows.command('cscript', '//nologo', f'Z:{path}'))
    for number, program in enumerate(programs(text), 1):
        source, built = folder / 'example.cpp', folder / f'example{number}.exe'
        source.write_text(program.code, encoding='ascii')
        output, code = runner.program([windows.compiler, '-std=c++20', '-static', f'-I{generated}', str(source),
                                       str(generated / 'Zepkit10_i.c'), '-o', str(built), '-lole32', '-loleaut32'])
        if code == 0:
            output, code = runner.program(windows.command(str(built)))
        yield f'cpp {number}', program.expected, output, code


def difference(expected, output):
    """What printed lines lack or add, empty if they are as they should be."""
    printed = [line.strip() for line in output.splitlines() if line.strip()]
    if printed == expected:
        return ''
    return '\n'.join(['expected', *expected, 'printed', *printed])
