"""The time of day is taken out of type libraries, and nothing else."""
import unittest

from settle_type_library import settled

HEAD, TAIL = b'MSFT\x02\x00 at noon\nWW', b'\x13\x00\x2b\x02\x00\x07WW the rest'
NOON, EVENING = (b'Created by WIDL version 8.0 at Sat Nov 21 12:00:00 2026\nWW', b'\x13\x00\x40\x2f\x02\x6b'), (
    b'Created by WIDL version 8.0 at Sun Nov 22 21:09:08 2026\nWW', b'\x13\x00\x0a\x57\x57\x6b')


def library(text, seconds):
    return HEAD + text + seconds + b'WW' + TAIL


class SettleTypeLibraryTest(unittest.TestCase):
    def test_libraries_of_different_times_become_the_same(self):
        expected = library(b'Created by WIDL version 8.0 at Tue Jan  1 00:00:00 1980\nWW', b'\x13\x00\x00\xa6\xce\x12')
        self.assertEqual(expected, settled(library(*NOON)))
        self.assertEqual(expected, settled(library(*EVENING)))
        self.assertEqual(expected, settled(expected))

    def test_a_library_without_a_time_is_refused(self):
        for content in (HEAD + TAIL, library(*NOON) + library(*EVENING)):
            with self.assertRaises(ValueError):
                settled(content)


if __name__ == '__main__':
    unittest.main()
