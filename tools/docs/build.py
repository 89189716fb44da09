"""Builds the documentation as a static site:

    PYTHONPATH=tools python3 -m docs.build FOLDER [--pictures FOLDER]

The reference comes from idl/Zepkit10.idl and docs/reference, the guides from docs. Pictures that charts draw
are taken from a folder, see pictures.py. Warns of nothing: tests/docs looks at what was built.
"""
import argparse
import pathlib
import posixpath
import re
import shutil
import sys

from docs import help_contexts, search_index
from docs.layout import escape, layout
from docs.markdown_page import error_advice, framed_tables, read_document, redirect, render, whole
from docs.model import TypeLibrary
from docs.reference import Reference

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SOURCE = ROOT / 'docs'
ERRORS, OF_EVERY_CLASS = 'guides/errors.md', 'Errors of every class'  # a document and a section of it
INTERNAL = ('architecture.md',)  # for those who build the component


def read_library():
    return TypeLibrary((ROOT / 'idl/Zepkit10.idl').read_text(encoding='utf-8'))


def read_documents():
    """All documents by their path in docs/."""
    found = {}
    for path in sorted(SOURCE.rglob('*.md')):
        name = path.relative_to(SOURCE).as_posix()
        if name not in INTERNAL:
            found[name] = read_document(name, path.read_text(encoding='utf-8'))
    return found


def page_of(path):
    return re.sub(r'\.md$', '.html', path)


class Site:
    def __init__(self, folder, pictures=None):
        self.folder, self.pictures = pathlib.Path(folder), pictures and pathlib.Path(pictures)
        self.library, self.documents = read_library(), read_documents()
        self.reference = Reference(self.library)
        self.sources = set()  # files outside docs/ that pages link to

    @property
    def guides(self):
        """Those that the first page links to, in its order, then all others."""
        order = re.findall(r'\]\(([\w/-]+\.md)\)', whole(self.documents['index.md']))
        names = [name for name in dict.fromkeys([*order, *self.documents])
                 if name in self.documents and name != 'index.md' and not name.startswith('reference/')]
        return [(page_of(name), self.documents[name]) for name in names]

    def groups(self):
        def entries(names):
            return [(self.reference.path(name), name) for name in names]
        return [('Guides', [(path, document.title) for path, document in self.guides]),
                ('Classes', entries(self.library.classes)), ('Enumerations', entries(self.library.enumerations))]

    def resolve(self, target):
        """Where a link to a file, relative to docs/, leads on the site."""
        if target.endswith('.md') and target in self.documents:
            return page_of(target)
        if target.startswith('../') and (SOURCE / target).is_file():
            self.sources.add(target.removeprefix('../'))
            return f'source/{target.removeprefix("../")}.html'
        if (SOURCE / target).is_file():
            self.copy(SOURCE / target, target)
        elif self.pictures and (self.pictures / posixpath.basename(target)).is_file():
            self.copy(self.pictures / posixpath.basename(target), target)
        return target

    def copy(self, source, target):
        (self.folder / target).parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(source, self.folder / target)

    def write(self, page, title, body):
        path = self.folder / page
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(layout(page, title, body, self.groups()), encoding='utf-8')

    def write_document(self, name):
        document = self.documents[name]
        page = page_of(name)
        body = framed_tables(render(f'# {document.title}\n\n{whole(document)}'))
        self.write(page, document.title, redirect(page, body, self.resolve))

    def write_class(self, described):
        page = self.reference.path(described.name)
        document = self.documents.get(f'reference/{described.name}.md')
        if document is None:
            sys.exit(f'docs/reference/{described.name}.md is missing')
        body = self.reference.class_page(described, document)
        self.write(page, described.name, redirect(page, body, self.resolve_written))

    def advice(self):
        """Where it is told what to do about an error, by its key: addresses by what they are called."""
        found = {}
        for key in error_advice(self.documents[ERRORS], OF_EVERY_CLASS):
            found[key] = {'every class': f'{page_of(ERRORS)}#{OF_EVERY_CLASS.lower().replace(" ", "-")}'}
        for name, described in self.library.classes.items():
            if name != 'Library':  # has what Global has
                for key in [*described.errors, *error_advice(self.documents[f'reference/{name}.md'])]:
                    found.setdefault(key, {})[name] = f'{self.reference.path(name)}#error-{key}'
        return found

    def resolve_written(self, target):
        """Generated links are the site's already."""
        return target if target.endswith('.html') else self.resolve(target)

    def build(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        for name in self.documents:
            if not name.startswith('reference/'):
                self.write_document(name)
        for described in self.library.classes.values():
            self.write_class(described)
        advice = self.advice()
        for enumeration in self.library.enumerations.values():
            self.write(self.reference.path(enumeration.name), enumeration.name,
                       self.reference.enumeration_page(enumeration, advice))
        page = self.library.help_file
        self.write(page, 'Help by number', help_contexts.body(page, self.library, self.reference.path))
        for source in sorted(self.sources):
            text = (ROOT / source).read_text(encoding='utf-8')
            self.write(f'source/{source}.html', posixpath.basename(source),
                       f'<h1>{escape(posixpath.basename(source))}</h1>\n<pre><code>{escape(text)}</code></pre>\n')
        for name in ('style.css', 'search.js'):
            self.copy(ROOT / 'tools/docs' / name, name)
        found = search_index.entries(self.library, self.guides, self.reference.path)
        (self.folder / 'search-index.js').write_text(search_index.script(found), encoding='utf-8')


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('folder')
    parser.add_argument('--pictures')
    arguments = parser.parse_args()
    Site(arguments.folder, arguments.pictures).build()
    print(f'The documentation is {pathlib.Path(arguments.folder).resolve()}/index.html')


if __name__ == '__main__':
    main()
