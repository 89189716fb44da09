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
LACKING = {'.vbs': ('events', 'answers'), '.js': ('events', 'answers', 'sources')}
CHECKERS = {'.py': [sys.executable, '-c', 'import ast, sys; ast.parse(open(sys.argv[1]).read())'],
            '.cs': ['mcs', '--parse']}


def clients(run, windows, generated):
    """Every client that runs on a Windows; `generated` is where the component's header is."""
    with tempfile.TemporaryDirectory() as folder:
        for language in (scripts(windows), programs(run, windows, generated, pathlib.Path(folder)),
                         pascal_programs(run, windows)):
            for sample, command, output, code in language:
                if not code:
                    output, code = run.program(command)
                yield from transcript_results(sample.name, output, code, TRANSCRIPT, LACKING.get(sample.suffix, ()))


def samples(*suffixes):
    return [path for path in sorted(SAMPLES.iterdir()) if path.suffix in suffixes]


def scripts(windows):
    """Each sample, how it is called, and output and exit code of building it."""
    for sample in samples('.vbs', '.js'):
        # Script hosts take what begins with a slash for an option.
        yield sample, windows.command('cscript', '//nologo', str(sample.relative_to(ROOT))), '', 0


def programs(run, windows, generated, folder):
    """In C++ and C."""
    for sample in samples('.cpp', '.c'):
        built = folder / f'{sample.name}.exe'
        compiler = [windows.c_compiler] if sample.suffix == '.c' else [windows.compiler, '-std=c++20']
        output, code = run.program([*compiler, '-static', '-Wall', '-Wextra', '-Werror', f'-I{generated}', str(sample),
                                    str(generated / 'Zepkit10_i.c'), '-o', str(built), '-lole32', '-loleaut32',
                                    '-luuid'])
        yield sample, windows.command(str(built)), output, code


def pascal_programs(run, windows):
    """In Free Pascal, which makes a unit of the type library first."""
    folder = ROOT / 'build/pascal' / windows.preset / 'programs'

    def compiled(source):
        return run.program([str(ROOT / 'tools/pascal.sh'), windows.preset, str(source), str(folder)])

    def command(source, *arguments):
        return windows.command(str(folder / f'{source.stem}.exe'), *arguments)

    importer = ROOT / 'tests/clients/import_type_library.pas'
    output, code = compiled(importer)
    if not code:
        output, code = run.program(command(importer, f'Z:{windows.dll}', f'Z:{folder}'))
    for sample in samples('.pas'):
        yield sample, command(sample), *((output, code) if code else compiled(sample))


def others(run):
    """The samples that do not run here say so, and those with a checker have no fault of syntax."""
    for sample in samples('.cls', '.ps1', '.py', '.cs', '.ahk'):
        said = 'Not run by the tests.' in sample.read_text(encoding='utf-8')
        yield Result(f'{sample.name} says that it is not run', 'passed' if said else 'failed')
        if sample.suffix in CHECKERS:
            output, code = run.program([*CHECKERS[sample.suffix], str(sample)])
            yield Result(f'{sample.name}: syntax', 'failed' if code else 'passed', output)
    guide = (ROOT / 'docs/clients.md').read_text(encoding='utf-8')
    missing = [each.name for each in SAMPLES.iterdir() if f'(../samples/conversation/{each.name})' not in guide]
    yield Result('docs/clients.md lists every sample', 'failed' if missing else 'passed', ', '.join(missing))
