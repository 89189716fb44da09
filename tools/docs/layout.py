"""The frame that every page of the site has."""
import html
import posixpath
import re

PAGE = '''<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{title}</title>
<link rel="icon" href="data:,">
<link rel="stylesheet" href="{root}style.css">
<script src="{root}search-index.js" defer></script>
<script src="{root}search.js" defer></script>
</head>
<body data-root="{root}">
<header>
<a class="home" href="{root}index.html">Zepkit10</a>
<label>Search <input id="search" type="search" placeholder="Search: press /" autocomplete="off"
 aria-controls="results" aria-label="Search all members"></label>
<a class="to-contents" href="#contents">Contents</a>
<ol id="results" role="listbox" hidden></ol>
</header>
<main>
{body}
</main>
<nav id="contents" aria-label="Contents">
{navigation}
</nav>
</body>
</html>
'''


def escape(text):
    return html.escape(text, quote=True)


def link(page, target, text):
    """A link on a page to a target of the site, both paths from its root; the text is HTML."""
    path, mark, anchor = target.partition('#')
    if path == page and mark:
        return f'<a href="#{anchor}">{text}</a>'
    return f'<a href="{posixpath.relpath(path, posixpath.dirname(page) or ".")}{mark}{anchor}">{text}</a>'


def breakable(name):
    """A name as HTML that a narrow column breaks between its words."""
    return re.sub(r'(?<=[a-z0-9])(?=[A-Z])', '<wbr>', escape(name))


def navigation(page, groups):
    """Groups are pairs of a heading and its pages, pairs of a path and a text."""
    lines = []
    for heading, entries in groups:
        lines.append(f'<h2>{escape(heading)}</h2>\n<ul>')
        for path, text in entries:
            here = ' aria-current="page"' if path == page else ''
            lines.append(f'<li{here}>{link(page, path, breakable(text))}</li>')
        lines.append('</ul>')
    return '\n'.join(lines)


def layout(page, title, body, groups):
    root = '../' * page.count('/')
    return PAGE.format(title=escape(title if title == 'Zepkit10' else f'{title} – Zepkit10'), root=root, body=body,
                       navigation=navigation(page, groups))
