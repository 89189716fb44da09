"""The hand-written pages: Markdown, read into sections and rendered, with links turned into the site's."""
import html
import itertools
import posixpath
import re
from dataclasses import dataclass

import markdown

STACKED = '<table class="stacked">'
WIDEST_CELL = 100  # characters that a column of a phone can take
LINK = re.compile(r'(href|src)="([^"]*)"')


@dataclass
class Document:
    """`path` is relative to the folder of documents, as in guides/vba.md."""
    path: str
    title: str
    lead: str          # what stands before the first section, without the title
    sections: dict     # heading -> Markdown, in order


def read_document(path, text):
    title = re.match(r'# (.*)\n', text)
    if not title:
        raise ValueError(f'{path} has no title')
    lead, sections, heading, fenced = [], {}, None, False
    for line in text[title.end():].splitlines():
        fenced ^= line.startswith('```')
        match = None if fenced else re.fullmatch(r'## (.*)', line)
        if match:
            heading = match[1]
            sections[heading] = []
        else:
            (lead if heading is None else sections[heading]).append(line)
    joined = {name: '\n'.join(lines).strip() for name, lines in sections.items()}
    return Document(path, title[1], '\n'.join(lead).strip(), joined)


def whole(document):
    """The document's Markdown without its title."""
    return '\n\n'.join([document.lead, *(f'## {name}\n\n{text}' for name, text in document.sections.items())])


def with_steps_apart(text):
    """A numbered step that follows an indented line is otherwise taken for a part of that paragraph."""
    return re.sub(r'^((?: {4}|\t).*\n)(?=\d+\. )', r'\1\n', text, flags=re.MULTILINE)


def render(text):
    return markdown.markdown(with_steps_apart(text), extensions=['tables', 'fenced_code', 'toc', 'sane_lists'])


def plain(text):
    """Rendered Markdown as plain text."""
    return without_tags(render(text))


def without_tags(text):
    return html.unescape(re.sub(r'<[^>]*>', '', text))


def framed_tables(text):
    """Rendered tables in frames that scroll. Cells of those that are too much for a phone are labelled, so that it can
    show them one below the other."""
    def framed(match):
        labels = [without_tags(each) for each in re.findall(r'<th\b[^>]*>(.*?)</th>', match[0])]
        cells = [without_tags(each) for each in re.findall(r'<td\b[^>]*>(.*?)</td>', match[0])]
        if len(labels) < 4 and max(map(len, cells), default=0) <= WIDEST_CELL:
            return f'<div class="wide">{match[0]}</div>'
        of_cells = itertools.cycle(labels)
        labelled = re.sub(r'<td\b', lambda _: f'<td data-label="{html.escape(next(of_cells))}"', match[0])
        return f'<div class="wide">{labelled.replace("<table>", STACKED)}</div>'

    return re.sub(r'<table>.*?</table>', framed, text, flags=re.DOTALL)


def error_advice(document, section='Errors'):
    """What to do, as Markdown, and who raises it, as far as the page says so, by error. Read from a section with
    a list of items like `- `zepErrBadCall`: advice` or `- `11` (`Draw`): advice`."""
    found = {}
    for item in re.split(r'^- ', document.sections.get(section, ''), flags=re.MULTILINE)[1:]:
        match = re.match(r'`(\w+)`(?: \((.*?)\))?: (.*)', item, re.DOTALL)
        if not match:
            raise ValueError(f'{document.path}: the section {section} has an item without an error: {item}')
        found[match[1]] = (' '.join(match[3].split()), re.findall(r'\w+', match[2] or ''))
    return found


def redirect(page, text, resolve):
    """Lets `resolve` replace the target, relative to the folder of documents, of every link to a file."""
    folder = posixpath.dirname(page)

    def replacement(match):
        target, mark, anchor = match[2].partition('#')
        if not target or re.match(r'\w+:', target):
            return match[0]
        found = resolve(posixpath.normpath(posixpath.join(folder, target)))
        return f'{match[1]}="{posixpath.relpath(found, folder or ".")}{mark}{anchor}"'

    return LINK.sub(replacement, text)
