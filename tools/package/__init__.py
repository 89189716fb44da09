"""Makes what users download: installers, an archive and the folder of a NuGet package.

The same sources give the same bytes: no clock, no random number and no folder's order gets in.
"""
