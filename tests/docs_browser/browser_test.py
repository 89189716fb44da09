"""The site in a real browser: pictures, widths, the search by keyboard. ZEPKIT10_SITE is where it was built."""
import os
import pathlib
import unittest

from browser import Browser
from docs.build import read_library

SITE = pathlib.Path(os.environ['ZEPKIT10_SITE']).resolve()
ENTER, DOWN, ESCAPE = '\ue007', '\ue015', '\ue00c'
PHONE, DESKTOP = (360, 740), (1280, 900)


def address(page):
    return (SITE / page).as_uri()


class InTheBrowser(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser().__enter__()
        cls.addClassCleanup(cls.browser.__exit__)

    def setUp(self):
        self.browser.resize(*DESKTOP)

    def open(self, page):
        self.browser.open(address(page))

    def test_every_page_shows_its_pictures_and_fits_a_phone(self):
        self.browser.resize(*PHONE)
        shown = 0
        for path in sorted(SITE.rglob('*.html')):
            page = path.relative_to(SITE).as_posix()
            with self.subTest(page):
                self.open(page)
                pictures = self.browser.run('return [...document.images].map(each => each.naturalWidth)')
                self.assertNotIn(0, pictures)
                self.assertEqual(PHONE[0], self.browser.run('return innerWidth'))
                self.assertLessEqual(self.browser.run('return document.documentElement.scrollWidth'), PHONE[0])
                self.assertEqual([], self.browser.complaints())
                shown += len(pictures)
        self.assertGreaterEqual(shown, 5)

    def test_search_finds_a_member_by_keyboard(self):
        self.open('index.html')
        self.browser.type('/')
        self.browser.type('counter.incr', '#search')
        self.assertEqual('Counter.Increment', self.first_result())
        self.browser.type(ENTER, '#search')
        self.assertEqual(address('reference/Counter.html') + '#Increment', self.browser.url)
        self.assertTrue(self.browser.run('return document.querySelector(".member:target") !== null'))

    def test_help_leads_on_from_its_number(self):
        self.browser.open(address('Zepkit10.html') + '#3001')
        self.assertEqual(address('reference/Counter.html') + '#Decrement', self.browser.url)
        self.open('Zepkit10.html')
        self.assertEqual(address('Zepkit10.html'), self.browser.url)

    def test_search_is_moved_through_and_left_by_keyboard(self):
        self.open('reference/Counter.html')
        self.browser.type('/')
        self.assertEqual('search', self.browser.run('return document.activeElement.id'))
        self.browser.type('Value', '#search')
        second = self.browser.run('return document.querySelectorAll("#results a")[1].href')
        self.browser.type(DOWN, '#search')
        self.assertEqual(second, self.browser.run('return document.querySelector("#results .chosen a").href'))
        self.browser.type(ESCAPE, '#search')
        self.assertTrue(self.browser.run('return document.getElementById("results").hidden'))
        self.browser.type('no such thing', '#search')
        self.assertTrue(self.browser.run('return document.getElementById("results").hidden'))

    def test_search_finds_every_member(self):
        self.open('index.html')
        library = read_library()
        wanted = [[f'{each.name}.{member.name}', f'reference/{each.name}.html#{member.anchor}']
                  for each in library.classes.values() for member in each.members + each.events]
        wanted += [[constant.name, f'reference/{each.name}.html#{constant.name}']
                   for each in library.enumerations.values() for constant in each.constants]
        missed = self.browser.run('return arguments[0].filter(([text, url]) => '
                                  '!find(text).slice(0, 5).some(entry => entry.url === url))', wanted)
        self.assertEqual([], missed)
        self.assertGreater(len(wanted), 500)

    def test_search_finds_errors_by_their_numbers(self):
        self.open('index.html')
        for query, constant in (('error 11', 'zepVbErrDivisionByZero'), ('-2147220476', 'zepErrItemNotExistant'),
                                ('0x80040404', 'zepErrItemNotExistant'), ('error 457', 'zepVbErrThisKey')):
            with self.subTest(query):
                self.assertIn(constant, self.browser.run('return find(arguments[0])[0].name', query))

    def test_search_results_fit_a_phone(self):
        self.browser.resize(*PHONE)
        self.open('index.html')
        self.browser.type('zepErr', '#search')
        width = self.browser.run('return document.getElementById("results").getBoundingClientRect().right')
        self.assertLessEqual(width, PHONE[0])
        self.assertEqual(40, self.browser.run('return document.querySelectorAll("#results li").length'))

    def test_follows_the_light_and_dark_of_the_system(self):
        self.open('index.html')
        papers = []
        for scheme in ('light', 'dark'):
            self.browser.prefer(scheme)
            papers.append(self.browser.run('return getComputedStyle(document.body).backgroundColor'))
        self.assertEqual(['rgb(255, 255, 255)', 'rgb(21, 25, 29)'], papers)

    def first_result(self):
        return self.browser.run('return document.querySelector("#results a").firstChild.textContent')


if __name__ == '__main__':
    unittest.main()
