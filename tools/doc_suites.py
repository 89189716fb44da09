"""The suites about documents: their examples run, the site made of them is whole, a browser shows it."""
import pathlib
import subprocess
import tempfile

import doc_examples
from test_results import Result

ROOT = pathlib.Path(__file__).resolve().parent.parent
SITE, PICTURES = ROOT / 'build/docs', ROOT / 'build/pictures'
PYTHON = '/usr/bin/python3'  # Debian's, which has Debian's packages


def names():
    """The documents whose examples run."""
    return ['README.md', *sorted(str(path.relative_to(ROOT)) for path in (ROOT / 'docs').rglob('*.md'))]


def documents(run, windows, generated):
    """Examples in documents print what they say; those that cannot run say so."""
    with tempfile.TemporaryDirectory() as folder:
        for name in names():
            text = (ROOT / name).read_text(encoding='utf-8')
            lines = [str(each.line) for each in doc_examples.unmarked(text)]
            yield Result(f'{name}: examples run or say that they do not', 'failed' if lines else 'passed',
                         f'lines {", ".join(lines)}')
            for language, expected, output, code in doc_examples.run(run, windows, text, generated,
                                                                     pathlib.Path(folder)):
                bad = doc_examples.difference(expected, output) or (f'exit code {code}' if code else '')
                yield Result(f'{name}: {language} examples', 'failed' if bad else 'passed', bad)


def build_site(run):
    """A failed Result, or none where the site is built, which it is once in a run."""
    if run.built.get('site'):
        return []
    for module, *arguments in (('docs.pictures', PICTURES), ('docs.build', SITE, '--pictures', PICTURES)):
        output, code = run.program([PYTHON, '-m', module, *map(str, arguments)], PYTHONPATH=str(ROOT / 'tools'))
        if code:
            return [Result(f'the site is built: {module}', 'failed', output)]
    run.built['site'] = True
    return []


def docs(run):
    failures = build_site(run)
    yield from failures or run.unittests('tests/docs', PYTHON, ZEPKIT10_SITE=str(SITE))


def docs_browser(run):
    """Skipped where no browser can be had."""
    done = subprocess.run([ROOT / 'tools/install_packages.sh', 'browser'], stdin=subprocess.DEVNULL, check=False)
    if done.returncode:
        yield Result('there is no browser and none can be installed, see above', 'skipped')
        return
    failures = build_site(run)
    yield from failures or run.unittests('tests/docs_browser', PYTHON, ZEPKIT10_SITE=str(SITE))
