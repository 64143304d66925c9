#!/usr/bin/python3
"""Builds the program's icon font from Font Awesome.

The program addresses its icons by private-use code points (U+E602 and so on),
so this script copies fitting Font Awesome glyphs onto those code points and
writes a font whose family is "IconFont", the name the style sheets use.

Usage: make_iconfont.py FONTAWESOME_TTF OUTPUT_TTF
Needs python3-fontforge (Debian's /usr/bin/python3) and fonts-font-awesome.
"""
import os
import sys
from contextlib import contextmanager


@contextmanager
def quiet_stderr():
    """fontforge chatters on stderr when it loads and when it reads Font
    Awesome (glyph names that suggest other code points); none of it concerns
    the glyphs used here. Errors still surface as exceptions."""
    saved = os.dup(2)
    devnull = os.open(os.devnull, os.O_WRONLY)
    os.dup2(devnull, 2)
    try:
        yield
    finally:
        os.dup2(saved, 2)
        os.close(devnull)
        os.close(saved)


with quiet_stderr():
    import fontforge
    import psMat

# code point used by the program -> Font Awesome 4 code point (icon name)
GLYPHS = {
    0xE602: 0xF053,  # chevron-left: back
    0xE607: 0xF068,  # minus: minimise
    0xE609: 0xF059,  # question-circle: help, question box
    0xE60B: 0xF24D,  # clone: restore window
    0xE60E: 0xF096,  # square-o: maximise
    0xE612: 0xF08D,  # thumb-tack: stay on top
    0xE614: 0xF05A,  # info-circle: information and delete boxes
    0xE622: 0xF071,  # exclamation-triangle: warning box
    0xE63B: 0xF013,  # cog: settings
    0xE661: 0xF096,  # square-o: legend entry hidden
    0xE68B: 0xF00D,  # times: close
    0xE6A7: 0xF0D9,  # caret-left: fold the settings column away
    0xE6AE: 0xF0F3,  # bell: remind box
    0xE6AF: 0xF0DA,  # caret-right: unfold the settings column
    0xE6BD: 0xF115,  # folder-open-o: open a file
    0xE6F1: 0xF01E,  # repeat (rotate-right): redo
    0xE717: 0xF0C7,  # floppy-o: save
    0xE762: 0xF1FC,  # paint-brush: skin
    0xE7FE: 0xF0E2,  # undo (rotate-left): undo
    0xEA73: 0xF046,  # check-square-o: legend entry shown
    0xEB01: 0xF0AD,  # wrench: tools menu
}


def main(src_path, out_path):
    with quiet_stderr():
        src = fontforge.open(src_path)
    font = fontforge.font()
    font.encoding = "UnicodeFull"
    font.em = src.em
    font.ascent, font.descent = src.ascent, src.descent
    font.fontname = font.familyname = font.fullname = "IconFont"
    font.weight = "Regular"
    font.copyright = ("Glyphs from Font Awesome 4 by Dave Gandy, "
                      "under the SIL Open Font License 1.1")
    font.version = "1.0"

    for target, source in sorted(GLYPHS.items()):
        src.selection.select(("unicode",), source)
        src.copy()
        font.createChar(target, "uni%04X" % target)
        font.selection.select(("unicode",), target)
        font.paste()
        # every icon gets a square cell with the drawing centred, so that
        # buttons and pixmaps place all icons alike
        glyph = font[target]
        if glyph.width < font.em:
            glyph.transform(psMat.translate((font.em - glyph.width) / 2, 0))
            glyph.width = font.em

    font.generate(out_path)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
