"""What can be searched for: classes, members, constants, errors and guides."""
import json

from docs.markdown_page import plain


def entry(name, of, kind, text, url):
    return {'name': name, 'of': of, 'kind': kind, 'text': text, 'url': url}


def entries(library, guides, path):
    """`guides` are pairs of a path and a document; `path` tells the page of a class or enumeration."""
    found = []
    for each in library.classes.values():
        found.append(entry(each.name, '', 'class', each.help, path(each.name)))
        for member in each.members + each.events:
            found.append(entry(member.name, each.name, member.kind, member.text, f'{path(each.name)}#{member.anchor}'))
    for each in library.enumerations.values():
        found.append(entry(each.name, '', 'enumeration', each.help, path(each.name)))
        for constant in each.constants:
            found.append(entry(constant.name, each.name, 'constant', f'{constant.value}: {constant.comment}',
                               f'{path(each.name)}#{constant.name}'))
    for page, document in guides:
        found.append(entry(document.title, '', 'guide', plain(document.lead.split('\n\n')[0]), page))
        for heading in document.sections:
            found.append(entry(heading, document.title, 'section', '', page))
    return found


def script(found):
    """A script, because pages that come from files may not read others."""
    return 'window.searchIndex = ' + json.dumps(found, ensure_ascii=False, separators=(',', ':')).replace('},', '},\n') + ';\n'
