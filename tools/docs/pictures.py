"""Draws the pictures of the documents with the component itself:

    PYTHONPATH=tools python3 -m docs.pictures FOLDER

A picture is what a document's script has drawn by then: `![…](pictures/NAME.png)` stands for chart.Picture
after the blocks of VBScript above it. The component must be registered for the English user of tools/wine.sh.
"""
import pathlib
import re
import subprocess
import sys
import tempfile

from doc_examples import examples

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
COMPILER = 'x86_64-w64-mingw32-g++-posix'
PICTURE = re.compile(r'!\[[^]]*\]\(pictures/(\w+)\.png\)')


def picture_script(text, folder):
    """The document's script with a line that saves the chart where a picture stands; empty if it has none."""
    lines = text.splitlines()
    ending = {example.line + example.code.count('\n') - 1: example for example in examples(text)
              if example.language == 'vb' and not example.marked}
    parts, pictures = [], 0
    for number, line in enumerate(lines, 1):
        if number in ending:
            parts.append(ending[number].code)
        match = PICTURE.fullmatch(line)
        if match:
            parts.append(f'Pictures.Save chart.Picture, "Z:{folder}/{match[1]}.png"\n')
            pictures += 1
    return ''.join(parts) if pictures else ''


def run(command):
    done = subprocess.run([str(each) for each in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    if done.returncode:
        sys.exit(f'{command[0]} ended with {done.returncode}:\n{done.stdout.decode(errors="replace")}')


def draw(folder):
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as work:
        program = pathlib.Path(work) / 'script_pictures.exe'
        run([COMPILER, '-std=c++20', '-O1', '-static', ROOT / 'tools/docs/script_pictures.cpp', '-o', program,
             '-lgdiplus', '-lole32', '-loleaut32', '-luuid'])
        for path in sorted((ROOT / 'docs').rglob('*.md')):
            script = picture_script(path.read_text(encoding='utf-8'), folder)
            if script:
                source = pathlib.Path(work) / 'pictures.vbs'
                source.write_text(script, encoding='ascii')
                run([ROOT / 'tools/wine.sh', 'english', program, f'Z:{source}'])


if __name__ == '__main__':
    draw(pathlib.Path(sys.argv[1]).resolve())
