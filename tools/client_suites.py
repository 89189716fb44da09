"""The suite of clients: one conversation with the component in every language, compared with one transcript.

What runs here is built as the beginnings of the samples say, and must print the transcript; lines that begin with a
mark are left out for clients that lack what it names:
    [events]   the client hears events
    [answers]  it changes the arguments of an event
    [sources]  it sees who raised an error
What runs on Windows only is checked for its syntax where there is a checker.
"""
import pathlib
import sys
import tempfile

from test_results import Result, transcript_results

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT / 'samples/conversation'
TRANSCRIPT = SAMPLES / 'transcript.txt'
# Wine's script host passes no events on, and errors of JScript have no source anywhere.
LACKING = {'vbscript.vbs': ('events', 'answers'), 'jscript.js': ('events', 'answers', 'sources')}


def clients(run, windows, generated):
    """Every client that runs on a Windows; `generated` is where the component's header is."""
    with tempfile.TemporaryDirectory() as folder:
        built = {**scripts(windows), **programs(run, windows, generated, pathlib.Path(folder)),
                 **pascal_programs(run, windows)}
        for name, (command, output, code) in built.items():
            if not code:
                output, code = run.program(command)
            yield from transcript_results(name, output, code, TRANSCRIPT, LACKING.get(name, ()))


def scripts(windows):
    """By the sample's name: how it is called, and output and exit code of building it."""
    return {name: (windows.command('cscript', '//nologo', str(SAMPLES.relative_to(ROOT) / name)), '', 0)
            for name in LACKING}


def programs(run, windows, generated, folder):
    """In C++ and C."""
    found = {}
    for name, needed in (('early_bound.cpp', ['Zepkit10_i.c']), ('late_bound.cpp', []), ('vtable.c', ['Zepkit10_i.c'])):
        program = folder / f'{name}.exe'
        compiler = [windows.compiler, '-std=c++20'] if name.endswith('.cpp') else [windows.c_compiler]
        built = run.program([*compiler, '-static', '-Wall', '-Wextra', '-Werror', f'-I{generated}',
                             str(SAMPLES / name), *(str(generated / each) for each in needed), '-o', str(program),
                             '-lole32', '-loleaut32', '-luuid'])
        found[name] = (windows.command(str(program)), *built)
    return found


def pascal_programs(run, windows):
    """In Free Pascal, early bound with the unit that it makes of the type library."""
    folder = ROOT / 'build/pascal' / windows.preset / 'programs'

    def compiled(source):
        return run.program([str(ROOT / 'tools/pascal.sh'), windows.preset, str(source), str(folder)])

    def command(source, *arguments):
        return windows.command(str(folder / f'{source.stem}.exe'), *arguments)

    importer = ROOT / 'tests/clients/import_type_library.pas'
    output, code = compiled(importer)
    if not code:
        output, code = run.program(command(importer, f'Z:{windows.dll}', f'Z:{folder}'))
    early, late = SAMPLES / 'early_bound.pas', SAMPLES / 'late_bound.pas'
    return {early.name: (command(early), *((output, code) if code else compiled(early))),
            late.name: (command(late), *compiled(late))}


def syntax(run):
    """Of the samples that do not run here."""
    checkers = {'.py': [sys.executable, '-c', 'import ast, sys; ast.parse(open(sys.argv[1]).read())'],
                '.cs': ['mcs', '--parse']}
    for path in sorted(SAMPLES.iterdir()):
        if path.suffix in checkers:
            output, code = run.program([*checkers[path.suffix], str(path)])
            yield Result(f'{path.name}: syntax', 'failed' if code else 'passed', output)
