#!/usr/bin/env python3
"""Writes one skin's style sheet from the shared template and that skin's palette.

usage: make_skin.py TEMPLATE PALETTE SKIN OUT

The template is the sheet both skins share. In it:
  @name@          the palette's value for name (colours and other values that differ
                  between the skins);
  [SKIN] text     a line that only the sheet of SKIN ("default" or "white") has, e.g.
                  a comment in that sheet's language or a rule the other skin lacks;
  // text         a note on the template itself, in neither sheet.
The palette is a list of "name: value;" entries, /* comments */ allowed. The entry
"byte-order-mark: yes;" starts the sheet with a UTF-8 byte order mark.

A name used in the template and missing from the palette, or a palette entry the
template never uses, stops the build: a colour added to one skin only is a mistake
that would otherwise show as a broken rule at run time."""
import re
import sys

SKINS = ('default', 'white')
PLACEHOLDER = re.compile(r'@([A-Za-z0-9-]+)@')
ONLY = re.compile(r'^\[(%s)\] ?(.*)$' % '|'.join(SKINS), re.S)


def read_palette(path):
    text = re.sub(r'/\*.*?\*/', '', open(path, encoding='utf-8').read(), flags=re.S)
    palette = {}
    for entry in text.split(';'):
        if not entry.strip():
            continue
        name, sep, value = entry.partition(':')
        if not sep:
            sys.exit('%s: "%s" is not "name: value;"' % (path, entry.strip()))
        palette[name.strip()] = value.strip()
    return palette


def render(template, palette, skin, where):
    bom = palette.pop('byte-order-mark', 'no') == 'yes'
    used = set()

    def value(m):
        name = m.group(1)
        if name not in palette:
            sys.exit('%s: @%s@ is not in the %s palette' % (where, name, skin))
        used.add(name)
        return palette[name]

    lines = []
    for line in template.splitlines(keepends=True):
        if line.startswith('//'):
            continue
        only = ONLY.match(line)
        if only:
            if only.group(1) != skin:
                continue
            line = only.group(2)
        lines.append(PLACEHOLDER.sub(value, line))
    unused = sorted(set(palette) - used)
    if unused:
        sys.exit('%s: the %s palette has entries the template never uses: %s'
                 % (where, skin, ', '.join(unused)))
    return ('\ufeff' if bom else '') + ''.join(lines)


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    template_path, palette_path, skin, out = sys.argv[1:]
    if skin not in SKINS:
        sys.exit('unknown skin %s (%s)' % (skin, ', '.join(SKINS)))
    sheet = render(open(template_path, encoding='utf-8').read(), read_palette(palette_path),
                   skin, template_path)
    with open(out, 'w', encoding='utf-8', newline='') as f:
        f.write(sheet)


if __name__ == '__main__':
    main()
