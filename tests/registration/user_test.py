"""Registering and unregistering for the current user alone, from a folder of any name.

Keys are all there is to look at: Wine's COM looks for classes of all users only.
"""
import pathlib
import tempfile
import unittest

from wine_machine import DLL, LOCAL_CLASSES, USER_CLASSES, changes, for_all_users, registry, run, wine


def below(root, changed):
    """The new keys below a root, as they would be below any; Wine shows some of them twice."""
    return {key.removeprefix(root.lower()): after for key, (_, after) in changed.items()
            if key.startswith(root.lower() + '\\') and 'wow6432node' not in key}


class UserTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory(prefix='zepkit10 für mich ')
        cls.dll = pathlib.Path(cls.temporary.name) / 'zepkit10.dll'
        cls.dll.write_bytes(DLL.read_bytes())
        wine('regsvr32', '/s', '/u', DLL)
        # The first classes of a user leave the keys that hold all classes.
        wine('regsvr32', '/s', '/n', '/i:user', cls.dll)
        wine('regsvr32', '/s', '/u', '/n', '/i:user', cls.dll)
        wine('regsvr32', '/s', '/u', '/n', '/i:user', cls.dll)  # twice does no harm
        cls.before = registry()
        wine('regsvr32', '/s', '/n', '/i:user', cls.dll)
        cls.registered = registry()
        wine('regsvr32', '/s', '/u', '/n', '/i:user', cls.dll)
        cls.after = registry()

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def test_it_writes_below_the_user_only(self):
        changed = changes(self.before, self.registered)
        self.assertTrue(changed)
        self.assertEqual([], for_all_users(changed))

    def test_it_writes_there_what_registration_writes_for_all(self):
        wine('regsvr32', '/s', self.dll)
        for_all = below(LOCAL_CLASSES, changes(self.before, registry()))
        wine('regsvr32', '/s', '/u', self.dll)
        self.assertGreater(len(for_all), 100)
        self.assertEqual(for_all, below(USER_CLASSES, changes(self.before, self.registered)))

    def test_unregistering_leaves_nothing(self):
        self.assertEqual({}, changes(self.before, self.after))

    def test_other_words_are_refused(self):
        for word in ('nobody', 'users', 'u'):
            for undo in ((), ('/u',)):
                with self.subTest(word=word, undo=undo):
                    self.assertNotEqual(0, run('regsvr32', '/s', *undo, '/n', f'/i:{word}', self.dll)[1])
        self.assertEqual({}, changes(self.before, registry()))

    def test_the_word_may_be_written_in_any_case(self):
        wine('regsvr32', '/s', '/n', '/i:User', self.dll)
        self.assertEqual(self.registered, registry())
        wine('regsvr32', '/s', '/u', '/n', '/i:USER', self.dll)
        self.assertEqual({}, changes(self.before, registry()))

    def test_without_a_word_it_is_for_all(self):
        wine('regsvr32', '/s', '/n', '/i', self.dll)
        self.assertGreater(len(below(LOCAL_CLASSES, changes(self.before, registry()))), 100)
        wine('regsvr32', '/s', '/u', '/n', '/i', self.dll)
        self.assertEqual({}, changes(self.before, registry()))


if __name__ == '__main__':
    unittest.main()
