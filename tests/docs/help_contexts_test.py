"""Help context numbers: stable by a rule, and each leads to a place of the site that is there."""
import os
import pathlib
import re
import unittest
from html.parser import HTMLParser

import idl
from docs.build import ROOT

SITE = pathlib.Path(os.environ['ZEPKIT10_SITE']).resolve()
IDL = (ROOT / 'idl/Zepkit10.idl').read_text(encoding='utf-8')
LIBRARY = idl.read_library(IDL)
# What the tests of the type library compare it with.
DUMP = (ROOT / 'tests/com/golden/type_library.txt').read_text(encoding='utf-8')
CLASSES = re.findall(r'^    interface _(\w+);$', IDL, re.MULTILINE)  # in the order of their numbers
EVENTS, ENUMERATIONS = 100000, 200000


class Page(HTMLParser):
    """The ids of a page, and by the id of a table's row the first link in it."""

    def __init__(self, path):
        super().__init__()
        self.ids, self.links, self.row = set(), {}, None
        self.feed(path.read_text(encoding='utf-8'))

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.ids.add(attributes.get('id'))
        if tag == 'tr':
            self.row = attributes.get('id')
        if tag == 'a' and self.row:
            self.links.setdefault(self.row, attributes['href'])


class Numbers(unittest.TestCase):
    def positions(self, members, base):
        """Members are numbered in their order; a property's readers and writers share a number."""
        ids = list(dict.fromkeys(each.id for each in members))
        for each in members:
            with self.subTest(f'{base}: {each.name}'):
                self.assertEqual(base + 1 + ids.index(each.id), each.context)

    def test_of_classes_and_members(self):
        self.assertEqual({f'_{name}' for name in CLASSES}, set(LIBRARY.interfaces))
        for index, name in enumerate(CLASSES, 1):
            interface = LIBRARY.interfaces[f'_{name}']
            self.assertEqual(1000 * index, interface.context)
            self.positions(interface.members, 1000 * index)
        for each in LIBRARY.coclasses:
            self.assertEqual(LIBRARY.interfaces[each.default].context, each.context)

    def test_of_events(self):
        for name, interface in LIBRARY.events.items():
            base = EVENTS + 1000 * (1 + CLASSES.index(name.removeprefix('__')))
            self.assertEqual(base, interface.context)
            self.positions(interface.members, base)

    def test_of_enumerations_and_the_library(self):
        self.assertEqual(1, LIBRARY.context)
        numbers = [ENUMERATIONS + 1000 * index for index in range(1, 1 + len(LIBRARY.enumerations))]
        self.assertEqual(numbers, list(LIBRARY.contexts.values()))


class HelpFile(unittest.TestCase):
    def setUp(self):
        self.page = Page(SITE / LIBRARY.help_file)

    def test_has_every_number_of_the_type_library(self):
        self.assertTrue(DUMP.split('\n')[0].endswith(f' help {LIBRARY.help_file}'))
        numbers = set(re.findall(r'^ +".*" (\d+)$', DUMP, re.MULTILINE))
        self.assertGreater(len(numbers), 350)
        self.assertEqual({*numbers, str(LIBRARY.context)}, set(self.page.links))

    def test_leads_to_places_that_are_there(self):
        pages = {}
        for number, target in self.page.links.items():
            with self.subTest(number):
                name, _, anchor = target.partition('#')
                if name not in pages:
                    pages[name] = Page(SITE / name)
                self.assertTrue(not anchor or anchor in pages[name].ids, target)

    def test_leads_to_what_has_the_number(self):
        for number, target in (('1', 'index.html'), ('3000', 'reference/Counter.html'),
                               ('3003', 'reference/Counter.html#Value'), ('103000', 'reference/Counter.html#events'),
                               ('103001', 'reference/Counter.html#ValueChanged-event'),
                               ('201000', 'reference/ZepErrors.html')):
            self.assertEqual(target, self.page.links[number])


if __name__ == '__main__':
    unittest.main()
