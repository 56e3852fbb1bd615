"""Makes one-line faults. Without --apply prints those of the given sources in a random order, one a
line: path, line, kind, new text, parted by tabs; at most one of a source line. script/mutate calls it."""

import random
import re
import signal
import sys

# What may stand in for what: a pattern, its replacements, the kind. The blanks are clang-format's,
# which tell an operator from a template's bracket, a reference or a sign.
SWAPS = [
    (r' < ', [' <= ', ' > '], 'relation'),
    (r' <= ', [' < '], 'relation'),
    (r' > ', [' >= ', ' < '], 'relation'),
    (r' >= ', [' > '], 'relation'),
    (r' == ', [' != '], 'relation'),
    (r' != ', [' == '], 'relation'),
    (r' && ', [' || '], 'logic'),
    (r' \|\| ', [' && '], 'logic'),
    (r' \+ ', [' - '], 'arithmetic'),
    (r' - ', [' + '], 'arithmetic'),
    (r' \* ', [' / '], 'arithmetic'),
    (r' / ', [' * '], 'arithmetic'),
    (r' % ', [' * '], 'arithmetic'),
    (r' \+= ', [' -= '], 'arithmetic'),
    (r' -= ', [' += '], 'arithmetic'),
    (r' \*= ', [' /= '], 'arithmetic'),
    (r'(?<=[ ({])-(?=[\w(])', [''], 'sign'),
    (r'(?<=[ (])!(?=[\w(*])', [''], 'negation'),
    (r'\btrue\b', ['false'], 'constant'),
    (r'\bfalse\b', ['true'], 'constant'),
    (r'\bstd::min\b', ['std::max'], 'call'),
    (r'\bstd::max\b', ['std::min'], 'call'),
    (r'\bbreak;', ['continue;'], 'jump'),
    (r'\bcontinue;', ['break;'], 'jump'),
]
NUMBER = re.compile(r'(?<![\w.])(\d+)(\.\d+)?(?=[uf]?\b)(?![xX.])')
ARGUMENTS = re.compile(r'(?<=\()([\w.>*&\-]+), ([\w.>*&\-]+)(?=\))')
CONDITION = re.compile(r'\b(?:if|while) \((?!auto|constexpr)(.*)\)(?= [\w{*]| \+\+|$)')
STATEMENT = re.compile(r'\s*(?:(?:if|while) \(.*\) )?(?!return|delete|using|goto|else|case|throw\b)'
                       r'(?:\*?[\w.:\->\[\]()*]+ (?:[-+*/|&]?=) .*|[\w.:\->\[\]*]+\(.*\)|(?:\+\+|--)\S+);$')
GUARD = re.compile(r'\s*if \(.*\) (?:return|throw|continue|break)\b.*;$')
STARTS = re.compile(r'[;{}:]\s*$|^\s*$|^\s*//')


def mask(line):
    """The line with what is text, character or comment blanked, so that columns stay."""
    blank = lambda match: '"' * len(match.group())
    line = re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'', blank, line)
    return re.sub(r'//.*', lambda match: ' ' * len(match.group()), line)


def balanced(text):
    depth = 0
    for c in text:
        depth += (c == '(') - (c == ')')
        if depth < 0:
            return False
    return depth == 0


def faults(line, before):
    """The faults of one line as (kind, new text). `before` is the line above."""
    masked = mask(line)
    if re.match(r'\s*(#|//|static_assert|template|using|namespace|CORVANTA_)', line) or 'operator' in masked:
        return
    for pattern, news, kind in SWAPS:
        for found in re.finditer(pattern, masked):
            for new in news:
                yield kind, line[:found.start()] + new + line[found.end():]
    for found in NUMBER.finditer(masked):
        for step in (1, -1):
            if int(found[1]) + step >= 0:
                number = str(int(found[1]) + step) + (found[2] or '')
                yield 'constant', line[:found.start()] + number + line[found.end():]
    for found in ARGUMENTS.finditer(masked):
        if found[1] != found[2]:
            a, b = found.span(1), found.span(2)
            yield 'arguments', line[:a[0]] + line[slice(*b)] + ', ' + line[slice(*a)] + line[b[1]:]
    for found in CONDITION.finditer(masked):
        start, end = found.span(1)
        if balanced(masked[start:end]):
            yield 'condition', line[:start] + '!(' + line[start:end] + ')' + line[end:]
    code = masked.rstrip()
    if balanced(code) and STARTS.search(before):
        indent = re.match(r'\s*', line)[0]
        if indent and STATEMENT.match(code) and not code.endswith('= default;'):
            yield 'statement removed', indent + ';'
        elif GUARD.match(code):
            yield 'guard removed', indent + ';'


def main():
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # who reads may stop early
    seed, *paths = sys.argv[1:]
    if seed == '--apply':
        path, number, new = paths
        with open(path, encoding='utf-8') as source:
            lines = source.read().split('\n')
        lines[int(number) - 1] = new
        with open(path, 'w', encoding='utf-8') as source:
            source.write('\n'.join(lines))
        return
    found = {}
    for path in sorted(paths):
        before = ''
        with open(path, encoding='utf-8') as source:
            for number, line in enumerate(source.read().split('\n'), 1):
                made = list(faults(line, before))
                if made:
                    found[path, number] = made
                before = mask(line) if line.strip() else ''
    chance = random.Random(seed)
    places = list(found)
    chance.shuffle(places)
    for path, number in places:
        kinds = found[path, number]
        kind, new = chance.choice(kinds)
        print(path, number, kind, new, sep='\t')


main()
