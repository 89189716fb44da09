"""The page that the type library names as its help file: it leads from the number of a help context to the place
in the reference where the class, member, event or enumeration of that number is described."""
from docs.layout import escape, link

# The browser shows the row of the number behind #; this takes its reader on.
SCRIPT = """<script>
function follow() {
  const row = document.getElementById(location.hash.slice(1));
  if (row && row.matches("tr")) location.replace(row.querySelector("a").href);
}
window.addEventListener("hashchange", follow);
follow();
</script>
"""


def targets(library, path):
    """{number: (name, address)}; `path` tells the page of a class or enumeration."""
    found = {library.context: ('Zepkit10', 'index.html')}
    for each in library.classes.values():
        page = path(each.name)
        found[each.context] = (each.name, page)
        if each.events:
            found[each.events_context] = (f'Events of {each.name}', f'{page}#events')
        for member in each.members + each.events:
            found[member.context] = (f'{each.name}.{member.name}', f'{page}#{member.anchor}')
    for each in library.enumerations.values():
        found[each.context] = (each.name, path(each.name))
    return dict(sorted(found.items()))


def body(page, library, path):
    rows = (f'<tr id="{number}"><td>{number}</td><td>{link(page, target, escape(name))}</td></tr>\n'
            for number, (name, target) in targets(library, path).items())
    return ('<h1>Help by number</h1>\n<p>The help context numbers of the type library, and where they lead: '
            f'<code>{page}#3001</code> leads to <code>Counter.Decrement</code>.</p>\n'
            '<div class="wide"><table class="facts">\n'
            f'<tr><th>Number</th><th>Describes</th></tr>\n{"".join(rows)}</table></div>\n{SCRIPT}')
