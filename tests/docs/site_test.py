"""The site as it was built, in the folder ZEPKIT10_SITE: links, pictures, what the search finds."""
import json
import os
import pathlib
import re
import unittest
from html.parser import HTMLParser

from docs.build import read_documents, read_library

SITE = pathlib.Path(os.environ['ZEPKIT10_SITE']).resolve()
VOID = {'meta', 'link', 'br', 'wbr', 'img', 'input', 'hr'}


class Page(HTMLParser):
    """What a page links to, shows and offers as a target."""

    def __init__(self, path):
        super().__init__()
        self.path, self.links, self.images, self.ids, self.open = path, [], [], [], []
        self.feed(path.read_text(encoding='utf-8'))
        self.close()

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if tag not in VOID:
            self.open.append(tag)
        if 'id' in attributes:
            self.ids.append(attributes['id'])
        if tag == 'img':
            self.images.append(attributes)
        self.links += [attributes[name] for name in ('href', 'src') if name in attributes]

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            raise ValueError(f'{self.path}: </{tag}> at {self.getpos()} closes nothing')


PAGES = {path.relative_to(SITE).as_posix(): Page(path) for path in sorted(SITE.rglob('*.html'))}


class EveryPage(unittest.TestCase):
    def test_is_there(self):
        library = read_library()
        names = [re.sub(r'\.md$', '.html', name) for name in read_documents()]
        names += [f'reference/{name}.html' for name in [*library.classes, *library.enumerations]]
        for name in names:
            self.assertIn(name, PAGES)

    def test_closes_what_it_opens(self):
        for name, page in PAGES.items():
            self.assertEqual([], page.open, name)

    def test_has_each_target_once(self):
        for name, page in PAGES.items():
            self.assertEqual(len(page.ids), len(set(page.ids)), name)

    def test_links_to_what_is_there(self):
        for name, page in PAGES.items():
            for link in page.links:
                with self.subTest(f'{name}: {link}'):
                    self.assert_there(page, link)

    def assert_there(self, page, link):
        if link == 'data:,':  # no icon
            return
        self.assertNotRegex(link, r'^\w+:|^//', 'the site needs no network')
        target, _, anchor = link.partition('#')
        path = (page.path.parent / target).resolve() if target else page.path
        self.assertTrue(path.is_file(), 'no such file')
        if anchor:
            self.assertIn(anchor, PAGES[path.relative_to(SITE).as_posix()].ids)

    def test_shows_pictures_with_a_description(self):
        shown = 0
        for name, page in PAGES.items():
            for image in page.images:
                with self.subTest(f'{name}: {image["src"]}'):
                    shown += 1
                    content = (page.path.parent / image['src']).read_bytes()
                    self.assertEqual(b'\x89PNG\r\n\x1a\n', content[:8])
                    self.assertGreater(len(content), 1000)
                    self.assertTrue(image.get('alt'))
        self.assertGreaterEqual(shown, 5)

    def test_is_small(self):
        for name, page in PAGES.items():
            if not name.startswith('source/'):
                self.assertLess(page.path.stat().st_size, 100_000, name)


class Search(unittest.TestCase):
    def setUp(self):
        text = (SITE / 'search-index.js').read_text(encoding='utf-8')
        self.entries = json.loads(re.fullmatch(r'window\.searchIndex = (.*);\n', text, re.DOTALL)[1])

    def test_knows_every_member_and_constant(self):
        known = {(entry['of'], entry['name'], entry['kind']) for entry in self.entries}
        library = read_library()
        for described in library.classes.values():
            self.assertIn(('', described.name, 'class'), known)
            for member in described.members + described.events:
                self.assertIn((described.name, member.name, member.kind), known)
        for enumeration in library.enumerations.values():
            for constant in enumeration.constants:
                self.assertIn((enumeration.name, constant.name, 'constant'), known)

    def test_leads_to_targets_that_are_there(self):
        for entry in self.entries:
            with self.subTest(entry['url']):
                target, _, anchor = entry['url'].partition('#')
                self.assertIn(target, PAGES)
                if anchor:
                    self.assertIn(anchor, PAGES[target].ids)


if __name__ == '__main__':
    unittest.main()
