"""The conversation in Python with comtypes, early bound. Not run by the tests.

    python comtypes_client.py
"""
import os
import tempfile

from comtypes import COMError
from comtypes.automation import IEnumVARIANT
from comtypes.client import CreateObject, GetEvents

zepkit = CreateObject('Zepkit10.Global')


class CounterEvents:
    def ValueChanged(self, now, before):
        print(f'  event: the counter goes from {before} to {now}')


class BufferEvents:
    def BeforeROChange(self, now, cancel):
        print('  event: may the buffer be protected? No.')
        cancel[0] = True


class LetterEvents:
    def StatusChange(self, status):
        print(f'  event: the status is {status}')


def terms():
    print('Terms')
    print(f"  2*SIN(0)^2+|1-3| is {zepkit.Compute('2*SIN(0)^2+|1-3|'):g}")
    letters = zepkit.VarSets.Add('letters')
    letters.Item['x'].Value = 3
    term = CreateObject('Zepkit10.Expression')
    term.VarSet = letters
    term.EString = 'x^2/4'
    print(f'  x^2/4 is {term.Value:g} where x is 3')
    letters.Delete()


def variables(circle):
    """A variable holds a number or a term, which follows the variables that it names."""
    print('Variables')
    circle.Item['r'].Value = 2
    circle.Item['d'].Expression.EString = '2*r'
    print(f"  radius 2, diameter {circle.Item['d'].Value:g}")
    circle.Item['r'].Value = 5
    print(f"  radius 5, diameter {circle.Item['d'].Value:g}")


def collections(circle):
    print('Collections')
    for variable in circle.NewEnum.QueryInterface(IEnumVARIANT):
        print(f'  {variable.Name} = {variable.Expression.EString}')
    print(f'  {circle.Count} variables, the first is {circle.Item[1].Name}')


def events():
    print('Events')
    counter = CreateObject('Zepkit10.Counter')
    counting = GetEvents(counter, CounterEvents())  # until it is let go
    counter.Increment(3)
    counter.Decrement()
    print(f'  the counter is at {counter.Value}')
    buffer = CreateObject('Zepkit10.ZepVariant')
    guarding = GetEvents(buffer, BufferEvents())
    try:
        buffer.ReadOnly = True
    except COMError as error:
        show(error)


def buffers():
    """A view shows a part of a buffer; both follow each other."""
    print('Buffers')
    buffer = CreateObject('Zepkit10.ZepVariant')
    buffer.DataString = 'Dear Ada'
    view = buffer.Range[6, 3]
    view.DataString = 'Grace'
    print(f'  {buffer.DataString}')
    buffer.RangeString[6, 5] = 'GRACE'
    print(f'  {view.DataString}, {view.RangeLength} bytes from byte {view.RangeStart}')
    print(f'  the first byte is {buffer.DataByte[1]}')


def document():
    print('Document')
    path = os.path.join(tempfile.gettempdir(), 'zepkit10-letter.txt')
    letter = CreateObject('Zepkit10.DocHand')
    letter.NewFile()
    letter.Content.DataString = 'Dear Ada'
    letter.SaveAs(path)
    listening = GetEvents(letter, LetterEvents())
    letter.Content.RangeString[6, 3] = 'Grace'
    letter.Save()
    letter.CloseFile()
    letter.OpenFile(path)
    print(f'  {letter.FileTitle}: {letter.Content.DataString}')
    letter.CloseFile()
    os.remove(path)


def lists():
    print('Lists')
    colours = CreateObject('Zepkit10.List')
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
    number, result = zepkit.Incr(5, 2)  # what a member changes comes before its result
    print(f'  5 and 2 more are {number}')


def errors():
    print('Errors')
    term = CreateObject('Zepkit10.Expression')
    term.EString = '1/0'
    for call in (lambda: term.Value, lambda: zepkit.VarSets.Item['nowhere']):
        try:
            call()
        except COMError as error:
            show(error)


def show(error):
    """The lower half of the number is that of ZepErrors or of the runtime error."""
    text, source = error.details[:2]
    print(f'  error {error.hresult & 0xFFFF}: {text}')
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
