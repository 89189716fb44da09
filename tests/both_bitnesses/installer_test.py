"""The installers of both bitnesses on one machine.

Windows itself runs an installer in the bitness it is made for. In Wine that is up to the caller: its 64-bit
msiexec keeps the names that a 32-bit installer writes apart from the others.
"""
import unittest

from bitnesses import OTHER, TwoOfThem, register, run_system_program
from wine_machine import ROOT, of_component, registry


def msiexec(bitness, option):
    run_system_program(bitness, 'msiexec', option, f'Z:{ROOT}/build/package/zepkit10-{bitness}.msi', '/qn')


def setUpModule():
    """The first installer that ever runs leaves keys of Windows' own."""
    for bitness in OTHER:
        register(bitness, '/u')
        msiexec(bitness, '/i')
        msiexec(bitness, '/x')


class InstallerTest(TwoOfThem, unittest.TestCase):
    def install(self, bitness):
        msiexec(bitness, '/i')

    def remove(self, bitness):
        msiexec(bitness, '/x')

    def keys(self):
        """Both write their folder for help to one value, and it stays what the last one wrote."""
        return {key: [] if key.endswith(r'\helpdir') else lines for key, lines in of_component(registry()).items()}


if __name__ == '__main__':
    unittest.main()
