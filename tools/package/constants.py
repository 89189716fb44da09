"""The type library's constants for script hosts, which see no enumerations."""


def constants(product):
    """By enumeration: its names and values. In a script all share one scope: the second of two constants
    of one name carries its enumeration's name in front, as in the C++ header."""
    seen = set()
    for enumeration, members in product.library.enumerations.items():
        named = []
        for name, value in members:
            named.append((f'{enumeration}_{name}' if name in seen else name, value))
            seen.add(named[-1][0])
        yield enumeration, named


def _script(product, comment, line):
    lines = [f'{comment} The constants of Zepkit10 {product.version}.']
    for enumeration, members in constants(product):
        lines += ['', f'{comment} {enumeration}', *(line.format(*member) for member in members)]
    return '\r\n'.join([*lines, ''])


def vbscript(product):
    return _script(product, "'", 'Const {} = {}')


def jscript(product):
    return _script(product, '//', 'var {} = {};')
