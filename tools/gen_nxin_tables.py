#!/usr/bin/env python3
"""Generates the data tables of the nxin library.

Writes platform/nxin/src/nxin_tables.cpp: the maps of the 8-bit code sets to
and from Unicode, the Unicode case properties of the BMP and the collation
order tables of code sets 1, 2, 3 and 253; and platform/nxin/src/nxin_words.cpp:
the words for orders (symbol, accent and accented letter names), checked
against those tables.  Only the Python standard library
is used (unicodedata, codecs), so the output depends on the Unicode version of
the Python that runs it; the committed file was made with Unicode 14.0.

    tools/gen_nxin_tables.py           regenerate the table sources
    tools/gen_nxin_tables.py --check   exit 1 when a committed file differs

The collation scheme (see also tools/README.md):

  orders 1..79      spaces, controls and other ignorable characters
                    1 controls, 2 format characters, 3..11 line and tab
                    characters, 13 deliberately undefined characters,
                    14..29 space characters, 40 + accent number for a
                    combining mark, 72 other combining marks
  orders 80..16127  symbols: 80 + symbol number
  orders 0x3F00..   digits: 0x3F00 + 10 * digit, bit 0 for compatibility
                    digits (superscripts, fractions, circled, full width)
  orders 0x4000..   letters: bit 14, case << 12, accent << 7, letter << 2 |
                    extension
"""

import argparse
import codecs
import os
import re
import sys
import unicodedata

HERE = os.path.dirname(os.path.abspath(__file__))
OUT_DIR = os.path.normpath(os.path.join(HERE, '..', 'platform', 'nxin', 'src'))
OUT_NAME = 'nxin_tables.cpp'
WORDS_NAME = 'nxin_words.cpp'

# --------------------------------------------------------------------------
# Code sets and languages.

EIGHT_BIT = [  # (number, Python codec)
    (1, 'cp1252'),
    (2, 'latin_1'),
    (3, 'iso8859_2'),
    (4, 'iso8859_5'),
    (5, 'iso8859_7'),
    (6, 'cp037'),
]
OWN_TABLE_8 = (1, 2, 3)

NEUTRAL, DE_PB, ES_TRAD, SV, DA, CS, EL, RU = range(1, 9)

STATE_NONE, STATE_LATIN, STATE_GREEK, STATE_CYRILLIC = 0, 1, 2, 3


def decode_table(codec):
    """Unicode value of every byte.  A byte that the codec can't decode maps
    to the C1 control of the same value when it is in 0x80..0x9F, else to
    U+FFFD (one way only)."""
    table = []
    for b in range(256):
        try:
            u = ord(bytes([b]).decode(codec))
        except UnicodeDecodeError:
            u = b if 0x80 <= b <= 0x9F else 0xFFFD
        table.append(u)
    return table


# --------------------------------------------------------------------------
# Accents.  1..14 are the named accents; 15..31 are our own.

ACC_CEDILLA, ACC_ACUTE, ACC_GRAVE, ACC_CIRCUMFLEX, ACC_TILDE = 1, 2, 3, 4, 5
ACC_DIAERESIS, ACC_RING, ACC_STROKE, ACC_CARON, ACC_MACRON = 6, 7, 8, 9, 10
ACC_BREVE, ACC_DOT, ACC_OGONEK, ACC_DACUTE = 11, 12, 13, 14
ACC_DOT_BELOW, ACC_HOOK_ABOVE, ACC_HORN, ACC_COMMA_BELOW = 15, 16, 17, 18
ACC_RING_BELOW, ACC_LINE_BELOW, ACC_CIRC_BELOW, ACC_TILDE_BELOW = 19, 20, 21, 22
ACC_BREVE_BELOW, ACC_YPOGEGRAMMENI, ACC_DGRAVE, ACC_INV_BREVE = 23, 24, 25, 26
ACC_HOOK, ACC_OTHER, ACC_PSILI, ACC_DASIA, ACC_PERISPOMENI = 27, 28, 29, 30, 31

MARK_ACCENT = {
    0x0327: ACC_CEDILLA, 0x0301: ACC_ACUTE, 0x0341: ACC_ACUTE,
    0x0300: ACC_GRAVE, 0x0340: ACC_GRAVE, 0x0302: ACC_CIRCUMFLEX,
    0x0303: ACC_TILDE, 0x0308: ACC_DIAERESIS, 0x030A: ACC_RING,
    0x0335: ACC_STROKE, 0x0336: ACC_STROKE, 0x0337: ACC_STROKE,
    0x0338: ACC_STROKE, 0x030C: ACC_CARON, 0x0304: ACC_MACRON,
    0x0306: ACC_BREVE, 0x0307: ACC_DOT, 0x0328: ACC_OGONEK,
    0x030B: ACC_DACUTE, 0x0323: ACC_DOT_BELOW, 0x0309: ACC_HOOK_ABOVE,
    0x031B: ACC_HORN, 0x0326: ACC_COMMA_BELOW, 0x0325: ACC_RING_BELOW,
    0x0331: ACC_LINE_BELOW, 0x0332: ACC_LINE_BELOW, 0x0324: ACC_LINE_BELOW,
    0x032D: ACC_CIRC_BELOW, 0x0330: ACC_TILDE_BELOW, 0x032E: ACC_BREVE_BELOW,
    0x0345: ACC_YPOGEGRAMMENI, 0x030F: ACC_DGRAVE, 0x0311: ACC_INV_BREVE,
    0x0313: ACC_PSILI, 0x0343: ACC_PSILI, 0x0314: ACC_DASIA,
    0x0342: ACC_PERISPOMENI,
}

# Words of character names ("... WITH STROKE") that name an accent.
NAME_ACCENT = {
    'CEDILLA': ACC_CEDILLA, 'ACUTE': ACC_ACUTE, 'GRAVE': ACC_GRAVE,
    'CIRCUMFLEX': ACC_CIRCUMFLEX, 'TILDE': ACC_TILDE,
    'DIAERESIS': ACC_DIAERESIS, 'RING ABOVE': ACC_RING, 'STROKE': ACC_STROKE,
    'CARON': ACC_CARON, 'MACRON': ACC_MACRON, 'BREVE': ACC_BREVE,
    'DOT ABOVE': ACC_DOT, 'OGONEK': ACC_OGONEK, 'DOUBLE ACUTE': ACC_DACUTE,
    'DOT BELOW': ACC_DOT_BELOW, 'HOOK ABOVE': ACC_HOOK_ABOVE, 'HORN': ACC_HORN,
    'COMMA BELOW': ACC_COMMA_BELOW, 'RING BELOW': ACC_RING_BELOW,
    'LINE BELOW': ACC_LINE_BELOW, 'CIRCUMFLEX BELOW': ACC_CIRC_BELOW,
    'TILDE BELOW': ACC_TILDE_BELOW, 'BREVE BELOW': ACC_BREVE_BELOW,
    'DOUBLE GRAVE': ACC_DGRAVE, 'INVERTED BREVE': ACC_INV_BREVE,
}

# When a letter carries several marks, its order takes the first of them in
# this list (the mark that makes a letter of its own in the alphabets that
# use it: Vietnamese horn, breve and circumflex before the tone marks, the
# Greek diaeresis before the tonos); the other marks follow as expansion
# orders of combining marks (40 + accent), so that no two letters coincide.
ACCENT_PRIORITY = [
    ACC_HORN, ACC_BREVE, ACC_CIRCUMFLEX, ACC_RING, ACC_DIAERESIS, ACC_STROKE,
    ACC_CEDILLA, ACC_OGONEK, ACC_CARON, ACC_COMMA_BELOW, ACC_TILDE,
    ACC_MACRON, ACC_DOT, ACC_DACUTE, ACC_ACUTE, ACC_GRAVE, ACC_PERISPOMENI,
    ACC_PSILI, ACC_DASIA, ACC_DGRAVE, ACC_INV_BREVE, ACC_HOOK_ABOVE,
    ACC_DOT_BELOW, ACC_RING_BELOW, ACC_LINE_BELOW, ACC_CIRC_BELOW,
    ACC_TILDE_BELOW, ACC_BREVE_BELOW, ACC_YPOGEGRAMMENI, ACC_HOOK, ACC_OTHER,
]

# --------------------------------------------------------------------------
# Spaces (orders below 80).

ORD_CONTROL = 1
ORD_FORMAT = 2
ORD_UNDEFINED = 13
ORD_SPACE_OTHER = 14
ORD_MARK_BASE = 40
ORD_MARK_OTHER = 72

SPACES = {
    0x0009: 3, 0x000A: 4, 0x000B: 5, 0x000C: 6, 0x000D: 7,
    0x001C: 8, 0x001D: 8, 0x001E: 8, 0x001F: 8,
    0x0085: 9, 0x2028: 10, 0x2029: 11,
    0x0020: 14, 0x00A0: 15,
    0x2000: 16, 0x2001: 17, 0x2002: 18, 0x2003: 19, 0x2004: 20, 0x2005: 21,
    0x2006: 22, 0x2007: 23, 0x2008: 24, 0x2009: 25, 0x200A: 26,
    0x202F: 27, 0x205F: 28, 0x3000: 29,
}

# --------------------------------------------------------------------------
# Symbols.  The numbers 32..139 below are the symbol numbers of the order
# naming functions; a few more fill the gaps next to their relatives.  Every
# other symbol is numbered from 140 on by SYMBOL_GROUPS.

FIXED_SYMBOLS = {
    0x005F: 32, 0x2017: 33, 0x00AF: 34, 0x00AD: 35, 0x002D: 36, 0x002C: 37,
    0x003B: 38, 0x003A: 39, 0x0021: 40, 0x00A1: 41, 0x003F: 42, 0x203D: 43,
    0x002F: 44, 0x2044: 45, 0x002E: 46, 0x2026: 47, 0x2025: 48, 0x00B7: 49,
    0x00B8: 50, 0x2022: 51, 0x0027: 52, 0x2018: 53, 0x2019: 54, 0x0022: 55,
    0x201C: 56, 0x201D: 57, 0x00AB: 58, 0x00BB: 59, 0x0028: 60, 0x0029: 62,
    0x005B: 64, 0x005D: 65, 0x007B: 66, 0x007D: 67, 0x00A7: 68, 0x00B6: 69,
    0x00A9: 70, 0x00AE: 71, 0x2122: 72, 0x0040: 73, 0x00A4: 74, 0x00A2: 75,
    0x0024: 76, 0x00A3: 77, 0x00A5: 78, 0x002A: 79, 0x005C: 80, 0x0026: 81,
    0x0023: 82, 0x0025: 83, 0x2030: 84, 0x002B: 85, 0x2212: 86, 0x00B1: 87,
    0x00B4: 88, 0x0060: 89, 0x02C6: 90, 0x005E: 91, 0x02C7: 92, 0x02D8: 93,
    0x00A8: 94, 0x02D9: 95, 0x007E: 96, 0x02DC: 97, 0x00F7: 98, 0x00D7: 99,
    0x2260: 100, 0x003C: 101, 0x2264: 102, 0x003D: 103, 0x2265: 104,
    0x003E: 105, 0x00AC: 106, 0x007C: 107, 0x00A6: 108, 0x00B0: 109,
    0x00B5: 110, 0x00BF: 139,
}
FIRST_GROUP_SYMBOL = 140

# Groups of the further symbols, in this order; inside a group by code.
QUOTES = {0x201A, 0x201B, 0x201E, 0x201F, 0x2039, 0x203A, 0x2E42}


def symbol_group(cp):
    cat = unicodedata.category(chr(cp))
    if cat == 'Pd':
        return 0  # dashes and hyphens
    if cat in ('Pi', 'Pf') or cp in QUOTES:
        return 1  # quotation marks
    if cat in ('Po', 'Pc'):
        return 2  # other punctuation
    if cat in ('Ps', 'Pe'):
        return 3  # brackets
    if cat in ('Sk', 'Lm'):
        return 4  # spacing accents and modifier marks
    if cat == 'Sc':
        return 5 if cp != 0x20AC else 4.5  # currency, the euro first
    if 0x2190 <= cp <= 0x21FF:
        return 8  # arrows
    if cat == 'Sm':
        return 7  # mathematics
    return 6  # other symbols, number forms without a decomposition


# --------------------------------------------------------------------------
# Letters.

GREEK_SEQ = ['ALPHA', 'BETA', 'GAMMA', 'DELTA', 'EPSILON', 'ZETA', 'ETA',
             'THETA', 'IOTA', 'KAPPA', 'LAMDA', 'MU', 'NU', 'XI', 'OMICRON',
             'PI', 'RHO', 'SIGMA', 'TAU', 'UPSILON', 'PHI', 'CHI', 'PSI',
             'OMEGA']
GREEK_PACKED = {name: (3 + i) << 2 for i, name in enumerate(GREEK_SEQ)}
GREEK_PACKED.update({
    'DIGAMMA': GREEK_PACKED['EPSILON'] | 1, 'STIGMA': GREEK_PACKED['EPSILON'] | 2,
    'HETA': GREEK_PACKED['ETA'] | 1, 'YOT': GREEK_PACKED['IOTA'] | 1,
    'KOPPA': GREEK_PACKED['PI'] | 1, 'ARCHAIC KOPPA': GREEK_PACKED['PI'] | 2,
    'SAN': GREEK_PACKED['SIGMA'] | 1, 'SHO': GREEK_PACKED['RHO'] | 1,
    'SAMPI': GREEK_PACKED['OMEGA'] | 1, 'ARCHAIC SAMPI': GREEK_PACKED['OMEGA'] | 2,
})

# Cyrillic letters in one sequence: the Russian alphabet with the letters of
# the other Cyrillic alphabets placed where those alphabets put them.  The
# letter and extension fields together count along it from 12 on, since the
# alphabet is longer than the 29 letter values.
CYRILLIC_SEQ = [
    'A', 'SCHWA', 'BE', 'VE', 'GHE', 'GHE WITH UPTURN', 'GHE WITH STROKE',
    'DE', 'DJE', 'IE', 'UKRAINIAN IE', 'ZHE', 'ZE', 'DZE', 'I',
    'BYELORUSSIAN-UKRAINIAN I', 'YI', 'SHORT I', 'JE', 'KA',
    'KA WITH DESCENDER', 'EL', 'LJE', 'EM', 'EN', 'EN WITH DESCENDER', 'NJE',
    'O', 'BARRED O', 'PE', 'ER', 'ES', 'TE', 'TSHE', 'U', 'SHORT U',
    'STRAIGHT U', 'STRAIGHT U WITH STROKE', 'EF', 'HA', 'SHHA', 'TSE', 'CHE',
    'DZHE', 'SHA', 'SHCHA', 'HARD SIGN', 'YERU', 'SOFT SIGN', 'YAT', 'E',
    'YU', 'YA', 'FITA', 'IZHITSA',
]
CYRILLIC_PACKED = {name: 12 + i for i, name in enumerate(CYRILLIC_SEQ)}

THORN_PACKED = (31 << 2) | 3  # after every letter, also after z, æ, ø, å

LATIN_NAMED = {  # letters without a base letter in their name
    'ETH': ('D', ACC_STROKE), 'KRA': ('Q', ACC_OTHER), 'ENG': ('N', ACC_OTHER),
    'SCHWA': ('E', ACC_OTHER), 'EZH': ('Z', ACC_OTHER),
    'WYNN': ('W', ACC_OTHER), 'YOGH': ('Y', ACC_OTHER), 'ESH': ('S', ACC_OTHER),
    'GAMMA': ('G', ACC_OTHER), 'IOTA': ('I', ACC_OTHER), 'ALPHA': ('A', ACC_OTHER),
    'UPSILON': ('U', ACC_OTHER), 'GLOTTAL STOP': None,
}
# Letters named as a pair or triple of letters: ligatures and digraphs.
LATIN_LIGATURES = {'AE', 'OE', 'IJ', 'OI', 'OU', 'AA', 'AO', 'AU', 'AV', 'AY',
                   'OO', 'VY', 'TZ', 'HV', 'DZ', 'LJ', 'NJ', 'FF', 'FI', 'FL',
                   'FFI', 'FFL', 'ST'}
LATIN_EXPANDED = {'SHARP S': 'SS'}

COMPAT_TAGS = ('<wide>', '<narrow>', '<small>', '<font>', '<super>', '<sub>',
               '<circle>', '<fraction>', '<noBreak>')

# Blocks that the Unicode order table covers.
COVERAGE = [
    (0x0000, 0x052F),  # Latin, IPA, modifiers, combining marks, Greek, Cyrillic
    (0x1E00, 0x1FFF),  # Latin Extended Additional, Greek Extended
    (0x2000, 0x22FF),  # punctuation, scripts, currency, letterlike, arrows, maths
    (0x2460, 0x24FF),  # enclosed alphanumerics
    (0x2C60, 0x2C7F),  # Latin Extended-C
    (0x3000, 0x303F),  # CJK symbols and punctuation
    (0xA720, 0xA7FF),  # Latin Extended-D
    (0xFB00, 0xFB06),  # Latin ligatures
    (0xFE50, 0xFE6B),  # small forms
    (0xFF00, 0xFFEF),  # full and half width forms
]


def letter(packed, case, accent=0):
    return 0x4000 | (case << 12) | (accent << 7) | packed


def latin(ch, case, accent=0, ext=0):
    return letter(((ord(ch) - ord('A') + 3) << 2) | ext, case, accent)


def is_letter_order(o):
    return 0x4000 <= o < 0x8000


def accent_of(o):
    return (o >> 7) & 0x1F


def with_accent(o, acc):
    return (o & ~(0x1F << 7)) | (acc << 7)


def digit_order(d, compat=False):
    return 0x3F00 + 10 * d + (1 if compat else 0)


def is_digit_order(o):
    return 0x3F00 <= o < 0x4000


# Placeholder orders for symbols numbered later: SYMBOL_MARK + code.
SYMBOL_MARK = 0x100000


class Rec:
    """A collation record in the making."""

    def __init__(self, order, state=STATE_NONE, expansion=()):
        self.order = order
        self.state = state
        self.expansion = tuple(expansion)
        self.nexts = []     # [(unicode value, Rec)]
        self.variants = []  # [(language, Rec)]

    def simple(self):
        return not self.expansion and not self.nexts and not self.variants

    def orders(self):
        return [self.order] + list(self.expansion)


def case_of(c):
    cat = unicodedata.category(c)
    if cat == 'Lu' or cat == 'Lt':
        return 0
    if cat == 'Ll':
        return 1
    return 1 if 'SMALL' in unicodedata.name(c, '') else 0


def pick_accents(accents):
    """The primary accent and the others, in their order."""
    known = [a for a in accents if a]
    if not known:
        return 0, []
    primary = min(known, key=ACCENT_PRIORITY.index)
    rest = list(known)
    rest.remove(primary)
    return primary, rest


def mark_order(acc):
    return ORD_MARK_BASE + acc if acc else ORD_MARK_OTHER


class Builder:
    def __init__(self):
        self.memo = {}
        self.group_symbols = set()

    def compute(self, cp):
        if cp in self.memo:
            return self.memo[cp]
        self.memo[cp] = None  # guards against cycles
        rec = self._compute(cp)
        self.memo[cp] = rec
        return rec

    def sequence(self, text, compat):
        """One record for a sequence of characters: the first order and the
        rest as expansion.  Compatibility forms carry a mark: letters without
        an accent get the accent "other form", digits bit 0."""
        orders = []
        state = STATE_NONE
        for ch in text:
            r = self.compute(ord(ch))
            if r is None:
                return None
            if state == STATE_NONE:
                state = r.state
            orders.extend(r.orders())
        if compat:
            orders = [o | 1 if is_digit_order(o) else o for o in orders]
            if is_letter_order(orders[0]) and accent_of(orders[0]) == 0:
                orders[0] = with_accent(orders[0], ACC_OTHER)
        return Rec(orders[0], state, orders[1:])

    def combine(self, base_cp, marks):
        base = self.compute(base_cp)
        if base is None:
            return None
        first = base.order
        mark_accents = [MARK_ACCENT.get(m, 0) for m in marks]
        if is_letter_order(first):
            primary, rest = pick_accents([accent_of(first)] + mark_accents)
            unknown = [m for m in marks if m not in MARK_ACCENT]
            tail = [mark_order(a) for a in rest] + [ORD_MARK_OTHER for _ in unknown]
            return Rec(with_accent(first, primary), base.state,
                       list(base.expansion) + tail)
        tail = [mark_order(a) for a in mark_accents]
        return Rec(first, base.state, list(base.expansion) + tail)

    def named_letter(self, c, cp):
        name = unicodedata.name(c, '')
        case = case_of(c)
        m = re.fullmatch(r'GREEK (CAPITAL |SMALL )?LETTER (.*)', name)
        if m:
            rest = m.group(2)
            if rest == 'FINAL SIGMA':
                return Rec(letter(GREEK_PACKED['SIGMA'], 2), STATE_GREEK)
            if rest in GREEK_PACKED:
                return Rec(letter(GREEK_PACKED[rest], case), STATE_GREEK)
            return None
        m = re.fullmatch(r'CYRILLIC (CAPITAL |SMALL )?LETTER (.*)', name)
        if m:
            rest = m.group(2)
            if rest in CYRILLIC_PACKED:
                return Rec(letter(CYRILLIC_PACKED[rest], case), STATE_CYRILLIC)
            if ' WITH ' in rest:
                head, mods = rest.split(' WITH ', 1)
                if head in CYRILLIC_PACKED:
                    return Rec(letter(CYRILLIC_PACKED[head], case,
                                      self.accents_from_words(mods)[0]),
                               STATE_CYRILLIC)
            return None
        m = re.fullmatch(r'LATIN (?:(?:CAPITAL|SMALL) )?(?:LETTER|LIGATURE) (.*)', name)
        if not m:
            return None
        rest = m.group(1)
        mods = None
        if ' WITH ' in rest:
            rest, mods = rest.split(' WITH ', 1)
        words = rest.split(' ')
        accents = []
        if rest == 'THORN':
            return Rec(letter(THORN_PACKED, case), STATE_LATIN)
        if rest in LATIN_EXPANDED:
            text = LATIN_EXPANDED[rest]
            return self.sequence(text if case == 0 else text.lower(), True)
        if rest in LATIN_NAMED:
            if LATIN_NAMED[rest] is None:
                return None
            base, acc = LATIN_NAMED[rest]
            accents.append(acc)
        elif len(words[-1]) == 1 and 'A' <= words[-1] <= 'Z':
            base = words[-1]
            if len(words) > 1:
                accents.append(ACC_OTHER)  # turned, small capital, dotless...
        elif rest in LATIN_LIGATURES and mods is None:
            text = rest if case == 0 else rest.lower()
            return self.sequence(text, True)  # ligatures such as AE, OE, IJ
        else:
            return None
        primary, others = pick_accents(
            accents + (self.accents_from_words(mods) if mods else []))
        order = latin(base, case, primary)
        return Rec(order, STATE_LATIN, [mark_order(a) for a in others])

    @staticmethod
    def accents_from_words(mods):
        result = []
        for part in mods.split(' AND '):
            if part in NAME_ACCENT:
                result.append(NAME_ACCENT[part])
            elif any(w in part for w in ('HOOK', 'TAIL', 'CURL', 'DESCENDER',
                                         'BELT', 'FLOURISH', 'TOPBAR')):
                result.append(ACC_HOOK)
            elif 'STROKE' in part or 'BAR' in part:
                result.append(ACC_STROKE)
            else:
                result.append(ACC_OTHER)
        return result

    def _compute(self, cp):
        c = chr(cp)
        cat = unicodedata.category(c)
        if cat in ('Cn', 'Cs', 'Co'):
            return None
        if cp in SPACES:
            return Rec(SPACES[cp])
        if cp in FIXED_SYMBOLS:
            return Rec(80 + FIXED_SYMBOLS[cp])
        if cat == 'Cc':
            return Rec(ORD_CONTROL)
        if cat == 'Cf':
            return Rec(ORD_FORMAT)
        if cat in ('Mn', 'Me', 'Mc'):
            return Rec(mark_order(MARK_ACCENT.get(cp, 0)))
        if cat == 'Zs':
            return Rec(ORD_SPACE_OTHER)
        name = unicodedata.name(c, '')
        m = re.fullmatch(r'CYRILLIC (CAPITAL |SMALL )?LETTER (.*)', name)
        if m and m.group(2) in CYRILLIC_PACKED:
            return self.named_letter(c, cp)  # also short i, short u, yi
        nfd = unicodedata.normalize('NFD', c)
        if nfd != c:
            if len(nfd) == 1:
                return self.compute(ord(nfd))  # canonical singleton
            if all(unicodedata.category(x).startswith('M') for x in nfd[1:]):
                return self.combine(ord(nfd[0]), [ord(x) for x in nfd[1:]])
            return self.sequence(nfd, False)
        decomposition = unicodedata.decomposition(c)
        if decomposition.startswith('<'):
            tag = decomposition.split(' ', 1)[0]
            if cat[0] in 'LN' or tag in COMPAT_TAGS:
                nfkc = unicodedata.normalize('NFKC', c)
                r = self.sequence(nfkc, True) if nfkc != c else None
                if r is not None:
                    return r
        if cat == 'Nd':
            return Rec(digit_order(unicodedata.digit(c)))
        if cat[0] == 'L':
            r = self.named_letter(c, cp)
            if r is not None:
                return r
        if cat[0] in 'PS' or cat in ('Lm', 'No', 'Nl'):
            self.group_symbols.add(cp)
            return Rec(SYMBOL_MARK + cp)
        return None

    def add_languages(self, uni):
        def get(ch):
            return uni[ord(ch)]

        def variant(ch, lang, rec):
            get(ch).variants.append((lang, rec))

        # German phone book: ä ö ü sort as ae oe ue; the first order keeps the
        # diaeresis, so "ä" and "ae" differ at the accent level.
        for ch, e in (('ä', 'e'), ('ö', 'e'), ('ü', 'e'), ('Ä', 'E'),
                      ('Ö', 'E'), ('Ü', 'E')):
            base = get(ch)
            variant(ch, DE_PB, Rec(base.order, STATE_LATIN, [get(e).order]))

        # Spanish traditional: ch after c, ll after l, ñ after n.
        for first, second, base in (('c', 'h', 'C'), ('l', 'l', 'L')):
            self.contraction(uni, ES_TRAD, first, second, latin(base, 0, 0, 1))
        for ch in 'ñÑ':
            o = get(ch).order
            variant(ch, ES_TRAD, Rec(latin('N', case_of(ch), accent_of(o), 1), STATE_LATIN))

        # Czech: č ř š ž after their base letters, ch after h.
        for ch in 'čřšžČŘŠŽ':
            o = get(ch).order
            variant(ch, CS, Rec(o | 1, STATE_LATIN))
        self.contraction(uni, CS, 'c', 'h', latin('H', 0, 0, 1))

        # Swedish: å ä ö after z; æ with ä, ø with ö, ü with y.
        sv = {'å': (29, 0), 'ä': (30, 0), 'ö': (31, 0), 'æ': (30, ACC_OTHER),
              'ø': (31, ACC_STROKE)}
        # Danish and Norwegian: æ ø å after z, ä with æ, ö with ø, ü with y,
        # and aa as å.
        da = {'æ': (29, 0), 'ä': (29, ACC_DIAERESIS), 'ø': (30, 0),
              'ö': (30, ACC_DIAERESIS), 'ő': (30, ACC_DACUTE), 'å': (31, 0)}
        for lang, table in ((SV, sv), (DA, da)):
            for ch, (num, acc) in table.items():
                for x in (ch, ch.upper()):
                    variant(x, lang, Rec(letter(num << 2, case_of(x), acc), STATE_LATIN))
            for x in 'üÜ':
                variant(x, lang, Rec(latin('Y', case_of(x), ACC_DIAERESIS), STATE_LATIN))
        self.contraction(uni, DA, 'a', 'a', letter(31 << 2, 0, ACC_OTHER))

    def contraction(self, uni, lang, first, second, upper_order):
        """A two-letter contraction on both cases of `first`: the variant
        record of `first` continues with `second` in either case; the case
        of the result is that of the first letter."""
        for f in (first, first.upper()):
            base = uni[ord(f)]
            var = None
            for l, v in base.variants:
                if l == lang:
                    var = v
            if var is None:
                var = Rec(base.order, base.state, base.expansion)
                base.variants.append((lang, var))
            case = case_of(f)
            for s in (second, second.upper()):
                var.nexts.append((ord(s), Rec(upper_order | (case << 12), STATE_LATIN)))


# --------------------------------------------------------------------------
# The words of the order naming functions: how an order is told to a person.
# The texts are the type manager's own and stand exactly as it shows them;
# each is tied here to the collation data above, so that a name can't drift
# away from the order it names.

# Symbols 32..139 with a name: (symbol number, the character of that number
# in FIXED_SYMBOLS, name, plain 7-bit character).  "." stands in for a symbol
# without a plain 7-bit character.
SYMBOL_WORDS = [
    (32, 0x005F, '_', '_'),
    (34, 0x00AF, 'macron sign', '.'),
    (35, 0x00AD, 'soft hyphen', '.'),
    (36, 0x002D, '-', '-'),
    (37, 0x002C, ',', ','),
    (38, 0x003B, ';', ';'),
    (39, 0x003A, ':', ':'),
    (40, 0x0021, '!', '!'),
    (41, 0x00A1, 'inverted exclamation mark', '.'),
    (42, 0x003F, '?', '?'),
    (44, 0x002F, 'solidus', '/'),
    (46, 0x002E, 'full stop', '.'),
    (49, 0x00B7, 'middle dot', '.'),
    (50, 0x00B8, 'cedilla', '.'),
    (52, 0x0027, 'apostrophe', "'"),
    (55, 0x0022, '"', '"'),
    (58, 0x00AB, 'left pointing double angle quotation mark', '.'),
    (59, 0x00BB, 'right pointing double angle quotation mark', '.'),
    (60, 0x0028, '(', '('),
    (62, 0x0029, ')', ')'),
    (64, 0x005B, '[', '['),
    (65, 0x005D, ']', ']'),
    (66, 0x007B, '{', '{'),
    (67, 0x007D, '}', '}'),
    (68, 0x00A7, 'section sign', '.'),
    (69, 0x00B6, 'pilcrow sign', '.'),
    (70, 0x00A9, 'copyright sign', '.'),
    (71, 0x00AE, 'registered sign', '.'),
    (73, 0x0040, '@', '@'),
    (74, 0x00A4, 'currency sign', '.'),
    (75, 0x00A2, 'cent sign', '.'),
    (76, 0x0024, '$', '$'),
    (77, 0x00A3, 'pound sign', '.'),
    (78, 0x00A5, 'yen sign', '.'),
    (79, 0x002A, '*', '*'),
    (80, 0x005C, 'reverse solidus', '.'),
    (81, 0x0026, '&', '&'),
    (82, 0x0023, '#', '#'),
    (83, 0x0025, '%', '%'),
    (85, 0x002B, '+', '+'),
    (87, 0x00B1, 'plus minus sign', '.'),
    (88, 0x00B4, "'", "'"),
    (89, 0x0060, '`', '`'),
    (91, 0x005E, '^', '^'),
    (94, 0x00A8, 'diaeresis', '.'),
    (96, 0x007E, '~', '~'),
    (98, 0x00F7, 'division sign', '.'),
    (99, 0x00D7, 'multiplication sign', '.'),
    (101, 0x003C, '<', '<'),
    (103, 0x003D, '=', '='),
    (105, 0x003E, '>', '>'),
    (106, 0x00AC, 'not sign', '.'),
    (107, 0x007C, '|', '|'),
    (108, 0x00A6, 'broken bar', '.'),
    (109, 0x00B0, 'degree sign', '.'),
    (110, 0x00B5, 'micron sign', '.'),
    (139, 0x00BF, 'inverted question mark', '.'),
]
FIRST_WORD_SYMBOL, LAST_WORD_SYMBOL = 32, 139

# Names of the accents 1..14; 15..31 are the collation's own and have none.
ACCENT_WORDS = {
    ACC_CEDILLA: 'cedilla', ACC_ACUTE: 'accent acute', ACC_GRAVE: 'accent grave',
    ACC_CIRCUMFLEX: 'accent circumflex', ACC_TILDE: 'tilde',
    ACC_DIAERESIS: 'diaeresis', ACC_RING: 'ring above', ACC_STROKE: 'stroke',
    ACC_CARON: 'accent caron', ACC_MACRON: 'accent macron',
    ACC_BREVE: 'accent breve', ACC_DOT: 'dot above', ACC_OGONEK: 'ogonek',
    ACC_DACUTE: 'accent double acute',
}

# Names of the accented letters among the characters 128..255 of code set 1:
# a backslash, the mark and the letter.  (mark, accent, codes and letters)
ACCENTED_WORDS = [
    ('`', ACC_GRAVE, '192 A, 200 E, 204 I, 210 O, 217 U, 224 a, 232 e, 236 i, 242 o, 249 u'),
    ("'", ACC_ACUTE, '193 A, 201 E, 205 I, 211 O, 218 U, 221 Y, 225 a, 233 e, 237 i, '
                     '243 o, 250 u, 253 y'),
    ('^', ACC_CIRCUMFLEX, '194 A, 202 E, 206 I, 212 O, 219 U, 226 a, 234 e, 238 i, 244 o, '
                          '251 u'),
    ('~', ACC_TILDE, '195 A, 209 N, 213 O, 227 a, 241 n, 245 o'),
    ('"', ACC_DIAERESIS, '196 A, 203 E, 207 I, 214 O, 220 U, 228 a, 235 e, 239 i, 246 o, '
                         '252 u, 255 y'),
    (',', ACC_CEDILLA, '199 C, 231 c'),
    ('-', ACC_STROKE, '208 D, 216 O, 240 d, 248 o'),
]
# Letters of code set 1 with a name of their own.
LETTER_WORDS = {197: r'\AA', 198: r'\AE', 222: r'\TH', 223: r'\ss', 229: r'\aa',
                230: r'\ae', 254: r'\th'}


def order_words(d):
    """The symbol, accent and character names, checked against the data:
    each symbol name belongs to the symbol number of its character, and each
    accented name to a character of code set 1 whose collation order is that
    letter with that accent."""
    symbols = {}
    for number, cp, name, plain in SYMBOL_WORDS:
        assert FIXED_SYMBOLS.get(cp) == number, 'symbol %d is not U+%04X' % (number, cp)
        assert d.uni[cp].order == 80 + number, 'U+%04X has another order' % cp
        assert FIRST_WORD_SYMBOL <= number <= LAST_WORD_SYMBOL and len(plain) == 1
        assert ord(plain) < 0x80 and all(ord(c) < 0x80 for c in name)
        symbols[number] = (name, plain)
    names = {}
    for mark, acc, items in ACCENTED_WORDS:
        for item in items.split(', '):
            code, base = item.split(' ')
            code = int(code)
            o = d.uni[d.to_uni[1][code]].order
            want = latin(base.upper(), 0 if base.isupper() else 1, acc)
            assert o == want, 'code %d of code set 1 is not %s with accent %d' % (code, base, acc)
            names[code] = '\\' + mark + base
    for code, name in LETTER_WORDS.items():
        o = d.uni[d.to_uni[1][code]].order
        assert is_letter_order(o), 'code %d of code set 1 is no letter' % code
        names[code] = name
    return symbols, names


def c_string(text):
    return '"%s"' % text.replace('\\', '\\\\').replace('"', '\\"')


def c_char(ch):
    return "'\\''" if ch == "'" else ("'\\\\'" if ch == '\\' else "'%s'" % ch)


def generated_start():
    """The lines that open each generated source, up to its namespace."""
    return ['// Generated by tools/gen_nxin_tables.py from the Unicode %s data of Python.'
            % unicodedata.unidata_version,
            '// Do not edit by hand: change the generator and run it again.',
            '// clang-format off',
            '#include "nxin_data.h"',
            '',
            'namespace nxin_detail {']


def generate_words(d):
    symbols, names = order_words(d)
    out = generated_start()
    out.append('')
    out.append('// Symbols %d..%d: name (null: none) and plain character (0: none).'
               % (FIRST_WORD_SYMBOL, LAST_WORD_SYMBOL))
    out.append('const NxSymbolWords kSymbolWords[%d] = {'
               % (LAST_WORD_SYMBOL - FIRST_WORD_SYMBOL + 1))
    for n in range(FIRST_WORD_SYMBOL, LAST_WORD_SYMBOL + 1):
        if n in symbols:
            name, plain = symbols[n]
            out.append('    {%s, %s},  // %d' % (c_string(name), c_char(plain), n))
        else:
            out.append('    {nullptr, 0},  // %d' % n)
    out.append('};')
    out.append('')
    out.append('// Accents 0..31: name, or null for none.')
    out.append('const char* const kAccentWords[32] = {')
    out.extend(wrap([c_string(ACCENT_WORDS[a]) if a in ACCENT_WORDS else 'nullptr'
                     for a in range(32)], 4))
    out.append('};')
    out.append('')
    out.append('// Characters 128..255 of code set 1: name, or "" for none.')
    out.append('const char* const kCharacterWords[128] = {')
    out.extend(wrap([c_string(names.get(code, '')) for code in range(128, 256)], 4))
    out.append('};')
    out.append('')
    out.append('}  // namespace nxin_detail')
    return '\n'.join(out) + '\n'


# --------------------------------------------------------------------------
# Building the data.


class Data:
    def __init__(self):
        b = Builder()
        uni = {}
        for lo, hi in COVERAGE:
            for cp in range(lo, hi + 1):
                r = b.compute(cp)
                if r is not None:
                    uni[cp] = r
        for cp in range(512):
            if cp not in uni:
                uni[cp] = Rec(ORD_UNDEFINED)
        # Format characters are ignorable wherever they stand, also outside
        # the covered blocks (the byte order mark, the Arabic letter mark, the
        # interlinear annotation characters): without a record they would be
        # unknown characters and move the text into state 20.
        for cp in range(0x10000):
            if cp not in uni and unicodedata.category(chr(cp)) == 'Cf':
                uni[cp] = Rec(ORD_FORMAT)
        # Number the further symbols.
        numbers = {}
        n = FIRST_GROUP_SYMBOL
        for cp in sorted(b.group_symbols, key=lambda x: (symbol_group(x), x)):
            numbers[cp] = n
            n += 1
        assert n < 16048, 'too many symbols'
        self.symbol_count = n

        def fix(o):
            return 80 + numbers[o - SYMBOL_MARK] if o >= SYMBOL_MARK else o

        for r in uni.values():
            r.order = fix(r.order)
            r.expansion = tuple(fix(o) for o in r.expansion)
        b.add_languages(uni)
        self.uni = uni
        self.to_uni = {n: decode_table(codec) for n, codec in EIGHT_BIT}
        self.from_uni = {}
        for n, _ in EIGHT_BIT:
            m = {}
            for byte, u in enumerate(self.to_uni[n]):
                if u != 0xFFFD:
                    m.setdefault(u, byte)
            self.from_uni[n] = m
        for n in OWN_TABLE_8:
            for byte, u in enumerate(self.to_uni[n]):
                assert u in uni, 'code set %d byte %d has no record' % (n, byte)


# --------------------------------------------------------------------------
# Writing C++.


class Pool:
    """Deduplicated arrays of 16-bit values and of language pointers."""

    def __init__(self):
        self.u16 = []
        self.u16_index = {}
        self.langs = []
        self.lang_index = {}

    def add_u16(self, values):
        values = tuple(values)
        if not values:
            return None
        if values not in self.u16_index:
            self.u16_index[values] = len(self.u16)
            self.u16.extend(values)
        return self.u16_index[values]

    def add_langs(self, langs):
        langs = tuple(langs)
        if langs not in self.lang_index:
            self.lang_index[langs] = len(self.langs)
            self.langs.extend(langs)
        return self.lang_index[langs]


STATE_EXPR = {STATE_NONE: 'nullptr', STATE_LATIN: 'kLatin', STATE_GREEK: 'kGreek',
              STATE_CYRILLIC: 'kCyrillic'}


def wlist(pool, values):
    off = pool.add_u16(values)
    if off is None:
        return 'NxWCharList()'
    return 'NxWCharList(%d, kU16 + %d)' % (len(values), off)


class TableWriter:
    """Writes one order table: pools of records by depth, then the low array
    and the high blocks."""

    def __init__(self, name, pool):
        self.name = name
        self.pool = pool
        self.levels = {}  # id -> level
        self.where = {}   # id -> (level, index)
        self.by_level = {}
        self.ptrs = {}    # level -> list of pointer expressions
        self.ptr_index = {}

    def level(self, rec):
        key = id(rec)
        if key not in self.levels:
            refs = [r for _, r in rec.nexts] + [r for _, r in rec.variants]
            self.levels[key] = 1 + max((self.level(r) for r in refs), default=-1)
        return self.levels[key]

    def place(self, rec):
        """Puts a record that is referenced by pointer into a pool."""
        key = id(rec)
        if key in self.where:
            return self.where[key]
        for _, r in rec.nexts + rec.variants:
            self.place(r)
        lv = self.level(rec)
        lst = self.by_level.setdefault(lv, [])
        self.where[key] = (lv, len(lst))
        lst.append(rec)
        return self.where[key]

    def ptr_list(self, level, recs):
        exprs = []
        for r in recs:
            lv, i = self.where[id(r)]
            exprs.append('&k%s_R%d[%d]' % (self.name, lv, i))
        key = (level, tuple(exprs))
        if key not in self.ptr_index:
            lst = self.ptrs.setdefault(level, [])
            self.ptr_index[key] = len(lst)
            lst.extend(exprs)
        return 'k%s_P%d + %d' % (self.name, level, self.ptr_index[key])

    def rec_text(self, rec, level):
        st = STATE_EXPR[rec.state]
        if rec.simple():
            return 'NXR(0x%04X, %s)' % (rec.order, st)
        nn = len(rec.nexts)
        nv = len(rec.variants)
        np_ = self.ptr_list(level, [r for _, r in rec.nexts]) if nn else 'nullptr'
        if nv:
            lang = 'kLangs + %d' % self.pool.add_langs([l for l, _ in rec.variants])
            vp = self.ptr_list(level, [r for _, r in rec.variants])
        else:
            lang = vp = 'nullptr'
        return 'NXX(%s, %d, %s, %d, %s, %s, 0x%04X, %s, %s, %d, %d, %d)' % (
            st, nn, np_, nv, lang, vp, rec.order, wlist(self.pool, rec.expansion),
            wlist(self.pool, [c for c, _ in rec.nexts]), 1 if nn else 0,
            1 if nv else 0, 1 if rec.expansion else 0)

    def write(self, out, low, high):
        for r in low:
            for _, x in r.nexts + r.variants:
                self.place(x)
        for cp in sorted(high):
            self.place(high[cp])
        top = max(self.by_level, default=-1) + 1
        # Records of a level refer to records of lower levels only.
        texts = {}
        for lv in sorted(self.by_level):
            texts[lv] = [self.rec_text(r, lv) for r in self.by_level[lv]]
        low_texts = [self.rec_text(r, top) for r in low]
        for lv in range(top + 1):
            if lv in self.ptrs:
                out.append('constexpr const NxOrderRecord* k%s_P%d[] = {' % (self.name, lv))
                out.extend(wrap(self.ptrs[lv], 4))
                out.append('};')
            if lv in texts:
                out.append('constexpr NxOrderRecord k%s_R%d[] = {' % (self.name, lv))
                out.extend('    %s,' % t for t in texts[lv])
                out.append('};')
        out.append('constexpr NxOrderRecord k%s_Low[512] = {' % self.name)
        out.extend('    %s,  // %04X' % (t, i) for i, t in enumerate(low_texts))
        out.append('};')
        blocks = {}
        for cp in sorted(high):
            blocks.setdefault(cp >> 8, {})[cp & 0xFF] = high[cp]
        for blk in sorted(blocks):
            items = []
            for i in range(256):
                r = blocks[blk].get(i)
                if r is None:
                    items.append('nullptr')
                else:
                    lv, idx = self.where[id(r)]
                    items.append('&k%s_R%d[%d]' % (self.name, lv, idx))
            out.append('constexpr const NxOrderRecord* k%s_B%02X[256] = {' % (self.name, blk))
            out.extend(wrap(items, 4))
            out.append('};')
        if blocks:
            items = ['k%s_B%02X' % (self.name, i) if i in blocks else 'nullptr'
                     for i in range(256)]
            out.append('constexpr const NxOrderRecord* const* k%s_High[256] = {' % self.name)
            out.extend(wrap(items, 4))
            out.append('};')
            return 'k%s_High' % self.name
        return 'kNoHigh'


def wrap(items, indent, width=100):
    lines = []
    line = ' ' * indent
    for it in items:
        piece = it + ','
        if len(line) + len(piece) + 1 > width and line.strip():
            lines.append(line.rstrip())
            line = ' ' * indent
        line += piece + ' '
    if line.strip():
        lines.append(line.rstrip())
    return lines


def translate(rec, fwd, memo):
    """The record for an 8-bit table: contraction continuations become bytes
    of the code set; those it lacks are dropped."""
    key = id(rec)
    if key in memo:
        return memo[key]
    if rec.simple():
        memo[key] = rec
        return rec
    r = Rec(rec.order, rec.state, rec.expansion)
    for c, x in rec.nexts:
        if c in fwd:
            r.nexts.append((fwd[c], translate(x, fwd, memo)))
    for l, x in rec.variants:
        r.variants.append((l, translate(x, fwd, memo)))
    memo[key] = r
    return r


def generate(d):
    pool = Pool()
    body = []

    # Order tables.
    undefined = Rec(ORD_UNDEFINED)
    table_names = {}
    for n in OWN_TABLE_8:
        fwd = d.from_uni[n]
        memo = {}
        low = [translate(d.uni[d.to_uni[n][b]], fwd, memo) for b in range(256)]
        low += [undefined] * 256
        body.append('')
        body.append('// Order table of code set %d, indexed by the code set\'s bytes.' % n)
        high_name = TableWriter('T%d' % n, pool).write(body, low, {})
        table_names[n] = ('kT%d_Low' % n, high_name)
    low = [d.uni[cp] for cp in range(512)]
    high = {cp: r for cp, r in d.uni.items() if cp >= 512}
    body.append('')
    body.append('// Order table of Unicode (code set 253).')
    high_name = TableWriter('T253', pool).write(body, low, high)
    table_names[253] = ('kT253_Low', high_name)

    # Code set maps.
    maps = []
    exported = []
    for n, codec in EIGHT_BIT:
        maps.append('')
        maps.append('// Code set %d (%s).' % (n, codec))
        exported.append('constexpr unsigned short kToUnicode%d[256] = {' % n)
        exported.extend(wrap(['0x%04X' % u for u in d.to_uni[n]], 4))
        exported.append('};')
        blocks = {}
        for u, b in d.from_uni[n].items():
            blocks.setdefault(u >> 8, [0] * 256)[u & 0xFF] = b
        for blk in sorted(blocks):
            maps.append('constexpr unsigned char kFromU%d_%02X[256] = {' % (n, blk))
            maps.extend(wrap(['%d' % b for b in blocks[blk]], 4))
            maps.append('};')
        exported.append('constexpr const unsigned char* kFromUnicode%d[256] = {' % n)
        exported.extend(wrap(['kFromU%d_%02X' % (n, i) if i in blocks else 'nullptr'
                          for i in range(256)], 4))
        exported.append('};')

    # Unicode properties.
    props = ['{0, NxWCharList(), 0}']
    index = {}
    for cp in range(0x10000):
        if 0xD800 <= cp <= 0xDFFF:
            continue
        c = chr(cp)
        up, lo = c.upper(), c.lower()
        upper = ord(up[0]) if up != c else 0
        overflow = [ord(x) for x in up[1:]]
        lower = ord(lo[0]) if lo != c else 0
        if upper == 0 and lower == 0:
            continue
        index[cp] = len(props)
        props.append('{0x%04X, %s, 0x%04X}' % (upper, wlist(pool, overflow), lower))
    pblocks = {}
    for cp, i in index.items():
        pblocks.setdefault(cp >> 8, [0] * 256)[cp & 0xFF] = i
    pout = ['', '// Unicode case properties: index blocks into kUnicodeProps (0: none).']
    exported.append('constexpr NxUnicodeProps kUnicodeProps[%d] = {' % len(props))
    exported.extend(wrap(props, 4))
    exported.append('};')
    for blk in sorted(pblocks):
        pout.append('constexpr unsigned short kPropIdx_%02X[256] = {' % blk)
        pout.extend(wrap(['%d' % i for i in pblocks[blk]], 4))
        pout.append('};')

    out = generated_start()
    out.append('namespace {')
    out.append('')
    out.append('constexpr unsigned char kStates[4] = {0, 1, 2, 3};')
    out.append('constexpr const unsigned char* kLatin = kStates + 1;')
    out.append('constexpr const unsigned char* kGreek = kStates + 2;')
    out.append('constexpr const unsigned char* kCyrillic = kStates + 3;')
    out.append('')
    out.append('#define NXR(o, s) {s, {0, nullptr}, {0, nullptr}, {0, nullptr}, o, NxWCharList(), NxWCharList(), 0, 0, 0}')
    out.append('#define NXX(s, nn, np, nv, lp, vp, o, e, n, hn, hv, he) {s, {nn, np}, {nv, lp}, {nv, vp}, o, e, n, hn, hv, he}')
    out.append('')
    # The pools must come first, but are complete only now.
    pre = []
    pre.append('constexpr unsigned short kU16[] = {')
    pre.extend(wrap(['0x%04X' % v for v in pool.u16] or ['0'], 4))
    pre.append('};')
    if pool.langs:
        pre.append('constexpr const NxLanguage* kLangs[] = {')
        pre.extend(wrap(['&kLanguages[%d]' % l for l in pool.langs], 4))
        pre.append('};')
    pre.append('constexpr const NxOrderRecord* const* kNoHigh[256] = {};')
    out.extend(pre)
    out.extend(body)
    out.extend(maps)
    out.extend(pout)
    out.append('')
    out.append('#undef NXR')
    out.append('#undef NXX')
    out.append('')
    out.append('}  // namespace')
    out.append('')
    for n in (1, 2, 3, 253):
        out.append('constexpr NxOrderTable kOrderTable%d(%s, %s);' % ((n,) + table_names[n]))
    out.extend(exported)
    out.append('constexpr const unsigned short* kUnicodePropsIndex[256] = {')
    out.extend(wrap(['kPropIdx_%02X' % i if i in pblocks else 'nullptr'
                     for i in range(256)], 4))
    out.append('};')
    out.append('')
    out.append('}  // namespace nxin_detail')
    return '\n'.join(out) + '\n'


def main():
    ap = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    ap.add_argument('--check', action='store_true',
                    help='compare with the committed files instead of writing them')
    ap.add_argument('--output', default=OUT_DIR, help='directory of the output')
    args = ap.parse_args()
    d = Data()
    outputs = [(OUT_NAME, generate(d)), (WORDS_NAME, generate_words(d))]
    status = 0
    for name, text in outputs:
        path = os.path.join(args.output, name)
        if args.check:
            try:
                with open(path, encoding='utf-8') as f:
                    old = f.read()
            except OSError:
                old = None
            if old != text:
                print('%s is out of date: run tools/gen_nxin_tables.py' % path, file=sys.stderr)
                status = 1
            else:
                print('%s is up to date' % path)
            continue
        with open(path, 'w', encoding='utf-8', newline='\n') as f:
            f.write(text)
        print('wrote %s (%d bytes)' % (path, len(text.encode('utf-8'))))
    return status


if __name__ == '__main__':
    sys.exit(main())
