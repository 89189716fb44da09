"""The conversation in Python with pywin32, early bound. Not run by the tests.

    python win32com_client.py
"""
import os
import tempfile

import pywintypes
from win32com.client import DispatchWithEvents
from win32com.client.gencache import EnsureDispatch

zepkit = EnsureDispatch('Zepkit10.Global')


class CounterEvents:
    def OnValueChanged(self, now, before):
        print(f'  event: the counter goes from {before} to {now}')


class BufferEvents:
    def OnBeforeROChange(self, now, cancel):
        print('  event: may the buffer be protected? No.')
        return True  # becomes the value of Cancel


class LetterEvents:
    def OnStatusChange(self, status):
        print(f'  event: the status is {status}')


def terms():
    print('Terms')
    print(f"  2*SIN(0)^2+|1-3| is {zepkit.Compute('2*SIN(0)^2+|1-3|'):g}")
    letters = zepkit.VarSets.Add('letters')
    letters.Item('x').Value = 3
    term = EnsureDispatch('Zepkit10.Expression')
    term.VarSet = letters
    term.EString = 'x^2/4'
    print(f'  x^2/4 is {term.Value:g} where x is 3')
    letters.Delete()


def variables(circle):
    """A variable holds a number or a term, which follows the variables that it names."""
    print('Variables')
    circle.Item('r').Value = 2
    circle.Item('d').Expression.EString = '2*r'
    print(f"  radius 2, diameter {circle.Item('d').Value:g}")
    circle.Item('r').Value = 5
    print(f"  radius 5, diameter {circle.Item('d').Value:g}")


def collections(circle):
    print('Collections')
    for variable in circle:
        print(f'  {variable.Name} = {variable.Expression.EString}')
    print(f'  {circle.Count} variables, the first is {circle.Item(1).Name}')


def events():
    print('Events')
    counter = DispatchWithEvents('Zepkit10.Counter', CounterEvents)
    counter.Increment(3)
    counter.Decrement()
    print(f'  the counter is at {counter.Value}')
    buffer = DispatchWithEvents('Zepkit10.ZepVariant', BufferEvents)
    try:
        buffer.ReadOnly = True
    except pywintypes.com_error as error:
        show(error)


def buffers():
    """A view shows a part of a buffer; both follow each other."""
    print('Buffers')
    buffer = EnsureDispatch('Zepkit10.ZepVariant')
    buffer.DataString = 'Dear Ada'
    view = buffer.Range(6, 3)
    view.DataString = 'Grace'
    print(f'  {buffer.DataString}')
    buffer.SetRangeString(6, 5, 'GRACE')  # how pywin32 writes a property with arguments
    print(f'  {view.DataString}, {view.RangeLength} bytes from byte {view.RangeStart}')
    print(f'  the first byte is {buffer.DataByte(1)}')


def document():
    print('Document')
    path = os.path.join(tempfile.gettempdir(), 'zepkit10-letter.txt')
    letter = EnsureDispatch('Zepkit10.DocHand')
    letter.NewFile()
    letter.Content.DataString = 'Dear Ada'
    letter.SaveAs(path)
    letter = DispatchWithEvents(letter, LetterEvents)
    letter.Content.SetRangeString(6, 3, 'Grace')
    letter.Save()
    letter.CloseFile()
    letter.OpenFile(path)
    print(f'  {letter.FileTitle}: {letter.Content.DataString}')
    letter.CloseFile()
    os.remove(path)


def lists():
    print('Lists')
    colours = EnsureDispatch('Zepkit10.List')
    colours.ListString = 'red green blue'
    colours.AddItem('black', 1)
    colours.RemoveItem(3)
    print(f'  {colours.Count} colours: {colours.ListString}')


def arrays():
    """Arrays arrive as tuples, which count from 0, and are passed as any sequence."""
    print('Arrays')
    words = zepkit.ListToStringArray('one two three')
    print(f'  word {len(words)} is {words[-1]}')
    both = zepkit.MergeArrays(words[1:], words, 1)
    print(f"  {zepkit.StringArrayToList(both, '-')}")
    print(f'  the greatest is {zepkit.Max([3, 12, 7])}')
    result, number = zepkit.Incr(5, 2)  # what a member changes comes behind its result
    print(f'  5 and 2 more are {number}')


def errors():
    print('Errors')
    term = EnsureDispatch('Zepkit10.Expression')
    term.EString = '1/0'
    for call in (lambda: term.Value, lambda: zepkit.VarSets.Item('nowhere')):
        try:
            call()
        except pywintypes.com_error as error:
            show(error)


def show(error):
    """The lower half of the number is that of ZepErrors or of the runtime error."""
    _, source, text, _, _, number = error.excepinfo
    print(f'  error {number & 0xFFFF}: {text}')
    print(f'    raised by {source}')


def main():
    circle = zepkit.VarSets.Add('circle')
    terms()
    variables(circle)
    collections(circle)
    events()
    buffers()
    document()
    lists()
    arrays()
    errors()
    circle.Delete()


main()
