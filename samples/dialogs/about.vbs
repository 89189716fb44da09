' An about window with the library's icon. Close it with OK, Enter or Escape.
Option Explicit

Dim zep, authors
Set zep = CreateObject("Zepkit10.Global")
authors = Array("Terms: Ada", "Charts: Grace")

zep.ShowAbout "About Curve Painter", zep.LoadZepIcon(0), "Curve Painter 2.1", _
  "Draws the curves of functions and finds where they meet.", "", authors
WScript.Echo "Closed."
