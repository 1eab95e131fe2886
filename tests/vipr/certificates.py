#!/usr/bin/env python3
"""certificates.py confirm|damage NUVLP VERIFY MODELS: has nuvlp write certificates of the models, and both
checkers, `nuvlp verify` and the script VERIFY, judge them.

confirm: each verdict is confirmed by both, also where the certificate is written in another way.
damage: certificates of small models are damaged, word by word, line by line and at random; each that no
longer means what it meant is refused by both, with the same exit code, and so is each that breaks one rule.

Ends with 77, which is no failure, where Python is older than 3.10."""
import contextlib
import hashlib
import importlib.machinery
import importlib.util
import io
import os
import random
import re
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ProcessPoolExecutor
from fractions import Fraction
from pathlib import Path

REFUSED = (5, 65)
SHARE = int(os.environ.get('NUV_TEST_SHARE', '1'))


def load(path):
    """The script as a module: a process for each certificate would take most of the time."""
    loader = importlib.machinery.SourceFileLoader('verify', str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader('verify', loader))
    sys.dont_write_bytecode = True
    loader.exec_module(module)
    return module


class Checkers:
    def __init__(self, nuvlp, script):
        self.nuvlp, self.module = nuvlp, load(script)
        sys.set_int_max_str_digits(0)
        self.folder = Path(tempfile.mkdtemp())

    def solve(self, model, path, numbers='written'):
        command = [self.nuvlp, 'solve', '--quiet', '--numbers', numbers, '--certificate', path, model]
        return subprocess.run(command, capture_output=True, text=True).stdout

    def judge(self, model, text, numbers='written', name='certificate.vipr'):
        """The exit codes of both and what they print."""
        path = self.folder / name
        path.write_bytes(text)
        command = [self.nuvlp, 'verify', '--quiet', '--numbers', numbers, model, path]
        theirs = subprocess.run(command, capture_output=True, text=True)
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed), contextlib.redirect_stderr(printed):
            ours = self.module.main(str(model), str(path), numbers)
        return theirs.returncode, ours, theirs.stdout + theirs.stderr, printed.getvalue()


# What a certificate means -------------------------------------------------------------------------

class Parsed:
    """A certificate taken apart, with indices as they stand; raises where it is none."""

    def __init__(self, text):
        self.words = re.sub(rb'\A(%[^\n]*\n)+', b'', text).split()[::-1]
        self.expect(b'VER', b'1.0', b'VAR')
        self.names = [self.words.pop() for _ in range(self.index())]
        self.expect(b'INT', b'0', b'OBJ')
        self.sense, self.cost = self.words.pop(), self.vector()
        self.expect(b'CON')
        count, self.bounds = self.index(), self.index()
        self.constraints = [self.constraint() for _ in range(count)]
        self.expect(b'RTP')
        self.goal = [self.words.pop()]
        self.goal += [self.value() for _ in range(2 if self.goal[0] == b'range' else 0)]
        self.expect(b'SOL')
        self.points = self.vectors()
        self.rays = []
        if self.goal == [b'unbounded']:
            self.expect(b'RAY')
            self.rays = self.vectors()
        self.expect(b'DER')
        self.derivations = [self.derivation() for _ in range(self.index())]
        if self.words or self.sense not in (b'min', b'max'):
            raise ValueError('surplus')

    def expect(self, *words):
        for word in words:
            if self.words.pop() != word:
                raise ValueError(word)

    def index(self):
        word = self.words.pop()
        if not re.fullmatch(rb'\d{1,18}', word):
            raise ValueError(word)
        return int(word)

    def value(self):
        word = self.words.pop().decode('ascii')
        if not re.fullmatch(r'-?\d+(\.\d+|/\d+)?', word):
            raise ValueError(word)
        return Fraction(word)

    def vector(self):
        pairs = [(self.index(), self.value()) for _ in range(self.index())]
        if len(dict(pairs)) != len(pairs):
            raise ValueError('an index twice')
        return {i: value for i, value in pairs if value}

    def vectors(self):
        return [(self.words.pop(), self.vector())[1] for _ in range(self.index())]

    def constraint(self):
        label, sense, side = self.words.pop(), self.words.pop(), self.value()
        if sense not in (b'L', b'E', b'G'):
            raise ValueError(sense)
        if self.words[-1] == b'OBJ':
            self.words.pop()
            return label, sense, side, self.cost
        return label, sense, side, self.vector()

    def derivation(self):
        constraint = self.constraint()
        self.expect(b'{')
        reason = self.words.pop()
        used = self.vector() if reason in (b'lin', b'rnd') else None
        if reason == b'uns':
            used = [self.index() for _ in range(4)]
        elif reason not in (b'asm', b'lin', b'rnd'):
            raise ValueError(reason)
        self.expect(b'}')
        last = self.words.pop()
        if last != b'-1' and not re.fullmatch(rb'\d+', last):
            raise ValueError(last)
        return constraint, reason, used, int(last)


def named(terms, names):
    return frozenset((names[i], value) for i, value in terms.items())


def is_absurd(sense, side, terms):
    holds = {b'L': 0 <= side, b'E': side == 0, b'G': 0 >= side}[sense]
    return not terms and not holds


def satisfies(vector, constraint, factor):
    _, sense, side, terms = constraint
    value = sum(a * vector.get(i, 0) for i, a in terms.items())
    return {b'L': value <= factor * side, b'E': value == factor * side, b'G': value >= factor * side}[sense]


def meaning(text):
    """What is left of a certificate without labels, order, ways to write numbers, and the choice between
    points, rays or multiples of a contradiction that serve alike; None if it is none."""
    try:
        parsed = Parsed(text)
        names = parsed.names
        if len(set(names)) != len(names):
            return None
        keys = [(sense, side, named(terms, names)) for _, sense, side, terms in parsed.constraints]
        derived = []
        for k, ((_, sense, side, terms), reason, used, _) in enumerate(parsed.derivations, len(keys)):
            if reason != b'lin' or any(i >= k for i in used):
                return None
            absurd = is_absurd(sense, side, terms)
            keys.append('absurd' if absurd else (sense, side, named(terms, names)))
            step = Counter()
            for i, value in used.items():
                step[keys[i]] += value
            # Whatever multiple of a contradiction is one.
            unit = step[min(step, key=repr)] if absurd and step else 1
            derived.append((keys[-1], frozenset((key, value / unit) for key, value in step.items())))
        ends = [last for *_, last in parsed.derivations]
        for k, (_, _, used, _) in enumerate(parsed.derivations, len(parsed.constraints)):
            for i in used:
                place = i - len(parsed.constraints)
                if place >= 0 and ends[place] not in (-1, *range(k, k + 1)) and ends[place] < k:
                    return None
        sign = 1 if parsed.sense == b'min' else -1
        improving = [ray for ray in parsed.rays
                     if sign * sum(a * ray.get(i, 0) for i, a in parsed.cost.items()) < 0]
        reached = {sum((a * point.get(i, 0) for i, a in parsed.cost.items()), Fraction(0))
                   for point in parsed.points}
        serves = (all(satisfies(point, c, 1) for point in parsed.points for c in parsed.constraints) and
                  all(satisfies(ray, c, 0) for ray in parsed.rays for c in parsed.constraints) and
                  (parsed.goal[0] != b'range' or parsed.goal[1] in reached) and
                  (parsed.goal[0] != b'unbounded' or bool(parsed.points and improving)))
        unused = any(max(vector, default=0) >= len(names) for vector in
                     [parsed.cost] + parsed.points + parsed.rays + [c[3] for c in parsed.constraints])
        return None if unused else (frozenset(names), parsed.sense, named(parsed.cost, names),
                                    frozenset(Counter(keys[:len(parsed.constraints)]).items()),
                                    tuple(parsed.goal), serves, tuple(derived))
    except (ValueError, IndexError, ZeroDivisionError, UnicodeDecodeError):
        return None


# The same in another way --------------------------------------------------------------------------

def fraction(value):
    return f'{7 * value.numerator}/{7 * value.denominator}'


def rewritten(text):
    """The certificate with variables and constraints in reverse, unreduced fractions, other labels, a
    comment, and its derivation in two steps, the first of which is used once."""
    parsed = Parsed(text)
    n, m = len(parsed.names), len(parsed.constraints)

    def vector(terms, last):
        return ' '.join([str(len(terms))] + [f'{last - i} {fraction(value)}' for i, value in terms.items()])

    def constraint(label, sense, side, terms):
        return f'{label} {sense.decode()} {fraction(side)} {vector(terms, n - 1)}'

    lines = ['% the same', '%', 'VER 1.0', f'VAR {n}', *(name.decode('latin-1') for name in parsed.names[::-1])]
    lines += ['INT 0', 'OBJ ' + parsed.sense.decode(), vector(parsed.cost, n - 1), f'CON {m} 0']
    lines += [constraint(f'C{k}', *c[1:]) for k, c in enumerate(parsed.constraints[::-1])]
    lines += [' '.join(['RTP', parsed.goal[0].decode()] + [fraction(value) for value in parsed.goal[1:]])]
    lines += [f'SOL {len(parsed.points)}', *('p ' + vector(point, n - 1) for point in parsed.points)]
    if parsed.goal[0] == b'unbounded':
        lines += [f'RAY {len(parsed.rays)}', *('r ' + vector(ray, n - 1) for ray in parsed.rays)]
    if not parsed.derivations:
        return ('\n'.join(lines + ['DER 0', ''])).encode('latin-1')
    (_, sense, side, terms), _, used, _ = parsed.derivations[0]
    first = dict(list(used.items())[:len(used) // 2])
    rest = {i: value for i, value in used.items() if i not in first}
    sums, total, signs = Counter(), Fraction(0), set()
    for i, value in first.items():
        _, relation, right, left = parsed.constraints[i]
        total += value * right
        for j, a in left.items():
            sums[j] += value * a
        signs.add({b'L': -1, b'E': 0, b'G': 1}[relation] * (1 if value > 0 else -1))
    relation = b'G' if 1 in signs else b'L' if -1 in signs else b'E'
    sums = {j: a for j, a in sums.items() if a}
    tail = ' '.join(f'{m - 1 - i} {fraction(value)}' for i, value in rest.items())
    lines += ['DER 2', f'{constraint("half", relation, total, sums)} {{ lin {vector(first, m - 1)} }} {m + 1}',
              f'{constraint("whole", sense, side, terms)} {{ lin {len(rest) + 1} {tail} {m} 1 }} -1', '']
    return '\n'.join(lines).encode('latin-1')


def confirm_one(task):
    nuvlp, script, model, name, numbers = task
    checkers = Checkers(nuvlp, script)
    path = checkers.folder / 'written.vipr'
    report = checkers.solve(model, path, numbers)
    problems = []
    if not path.exists():
        return f'{name}: no certificate was written'
    def found(text):
        objective = re.search(r'objective +(\S+)', text)
        return re.search(r'status +(\w+)', text)[1], float(objective[1]) if objective else None

    for text in (path.read_bytes(), rewritten(path.read_bytes())):
        theirs, ours, said, printed = checkers.judge(model, text, numbers)
        status, exact = re.search(r'status +(\w+)', said), re.search(r'exactly (\S+)', said)
        expected = ', '.join(match[1] for match in (status, exact) if match) + '\n'
        if theirs or ours or found(said) != found(report) or printed != expected:
            problems.append(f'{name}: nuvlp {theirs}, {said.strip()[:200]}; script {ours}, {printed.strip()[:200]}')
    return '\n'.join(problems)


def confirm(nuvlp, script, models):
    files = [path for folder in ('textbook', 'infeas', 'netlib', 'written') for path in sorted((models / folder).iterdir())
             if path.suffix in ('.lp', '.mps', '.gz')]
    # Comments behind fields, which few write.
    files.append(models / 'mpsodd' / 'highs_comment.mps')
    # Few as stored: the fractions are large.
    tasks = [(nuvlp, script, path, f'{path.name}, {numbers}', numbers)
             for numbers in ('written', 'stored') for path in files
             if numbers == 'written' or path.stat().st_size < 6000]
    tasks = tasks[::SHARE]
    with ProcessPoolExecutor() as pool:
        problems = [problem for problem in pool.map(confirm_one, tasks) if problem]
    print(*problems, sep='\n', end='\n' if problems else '')
    print(f'{len(tasks)} verdicts, {len(tasks) - len(problems)} confirmed by both checkers')
    return 1 if problems else 0


# Damage -------------------------------------------------------------------------------------------

def changed_words(word):
    """What may become of a word."""
    yield b''
    if re.fullmatch(rb'-?\d+(/\d+)?', word):
        yield b'%d' % (int(word.split(b'/')[0]) + 1) + word[len(word.split(b'/')[0]):]
        yield word[1:] if word.startswith(b'-') else b'-' + word
        yield word + b'/2'
    elif word in (b'L', b'E', b'G'):
        yield from (other for other in (b'L', b'E', b'G') if other != word)
    else:
        yield {b'min': b'max', b'max': b'min', b'infeas': b'unbounded', b'lin': b'asm'}.get(word, word + b'x')


def systematic(text):
    words = list(re.finditer(rb'\S+', text))
    for match in words:
        for word in changed_words(match[0]):
            yield text[:match.start()] + word + text[match.end():]
    lines = text.splitlines(keepends=True)
    for k in range(len(lines)):
        yield b''.join(lines[:k] + lines[k + 1:])
        yield b''.join(lines[:k] + [lines[k]] + lines[k:])
        yield b''.join(lines[:k])
        yield b''.join(lines[:k] + lines[k + 1:k + 2] + [lines[k]] + lines[k + 2:])


def at_random(text, others, chance):
    words = list(re.finditer(rb'\S+', text))
    lines = text.splitlines(keepends=True)
    kind = chance.randrange(6)
    if kind == 0:  # one byte
        at = chance.randrange(len(text))
        return text[:at] + bytes([chance.choice(b'0123456789-/. GLE')]) + text[at + 1:]
    if kind == 1:  # two words change places
        first, second = sorted(chance.sample(words, 2), key=lambda match: match.start())
        return text[:first.start()] + second[0] + text[first.end():second.start()] + first[0] + text[second.end():]
    if kind == 2:  # a word of elsewhere
        match = chance.choice(words)
        return text[:match.start()] + chance.choice(words)[0] + text[match.end():]
    if kind == 3:  # it ends
        return text[:chance.randrange(len(text))]
    if kind == 4:  # two lines change places
        first, second = chance.sample(range(len(lines)), 2)
        lines[first], lines[second] = lines[second], lines[first]
        return b''.join(lines)
    line = chance.randrange(len(lines))  # a line of another certificate
    return b''.join(lines[:line] + [chance.choice(chance.choice(others).splitlines(keepends=True))] + lines[line + 1:])


def damage_one(task):
    nuvlp, script, model, text, damaged = task
    checkers = Checkers(nuvlp, script)
    meant = meaning(text)
    problems, refused, same = [], 0, 0
    for damage in damaged:
        if meaning(damage) == meant:
            same += 1
            continue
        theirs, ours, said, printed = checkers.judge(model, damage)
        if theirs not in REFUSED or ours != theirs:
            keep = Path(f'{model.name}-{hashlib.sha256(damage).hexdigest()[:8]}.vipr').absolute()
            keep.write_bytes(damage)
            problems.append(f'{keep}: nuvlp {theirs}, {said.strip()[:200]}; script {ours}, {printed.strip()[:200]}')
        else:
            refused += 1
    return problems, refused, same


# Forgeries ----------------------------------------------------------------------------------------

MODEL = b'min x + y st r: 2 <= x + 2 y <= 9\n e: x - y = 1\n bounds y <= 3 end'
HEAD = """VER 1.0 VAR 2 x y INT 0 OBJ min 2 0 1 1 1 CON 6 3 a G 0 1 0 1 b G 0 1 1 1 c L 3 1 1 1
d G 2 2 0 1 1 2 e L 9 2 0 1 1 2 f E 1 2 0 1 1 -1 """
POINT, BOUND = 'SOL 1 p 2 0 4/3 1 1/3 ', 'bound G 5/3 OBJ { lin 2 3 2/3 5 1/3 } -1'
# What follows the head, and whether it is a proof.
PROOFS = [
    ('RTP range 5/3 5/3 ' + POINT + 'DER 1 ' + BOUND, True),
    ('RTP range 5/3 5/3 SOL 2 q 2 0 2 1 1 p 2 0 4/3 1 1/3 DER 1 ' + BOUND, True),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 2 turned L -2 2 0 -1 1 -2 { lin 1 3 -1 } -1 '
     'bound G 5/3 OBJ { lin 2 6 -2/3 5 1/3 } -1', True),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 2 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } 7 '
     'bound G 5/3 OBJ { lin 2 5 1 6 2 } -1', True),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 2 wish G 9 OBJ { asm } -1 ' + BOUND, True),
    # A >= taken from a >= says nothing, nor a <= from a <=.
    ('RTP range 2 2 SOL 1 p 2 0 3/2 1 1/2 DER 1 bound G 2 OBJ { lin 2 3 1 1 -1 } -1', False),
    ('RTP infeas SOL 0 DER 2 less G 1 2 0 1 1 2 { lin 1 3 1 } -1 no G 1 0 { lin 2 3 1 6 -1 } -1', False),
    ('RTP infeas SOL 0 DER 2 more L 10 2 0 1 1 2 { lin 1 4 1 } -1 no L -1 0 { lin 2 4 1 6 -1 } -1', False),
    ('RTP infeas SOL 0 DER 1 no G 7 0 { lin 2 4 1 3 -1 } -1', False),
    ('RTP infeas SOL 0 DER 2 no G 1 0 { asm } -1 no G 1 0 { lin 1 6 1 } -1', False),
    ('RTP infeas SOL 0 DER 1 no G 0 0 { lin 0 } -1', False),
    ('RTP infeas SOL 0 DER 2 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } -1 no G 1 1 1 1 { rnd 1 6 1 } -1', False),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 1 bound G 5/3 OBJ { uns 3 3 3 4 } -1', False),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 1 wish G 5/3 OBJ { asm } -1', False),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 0', False),
    ('RTP range 5/3 5/3 SOL 0 DER 1 ' + BOUND, False),
    ('RTP range 5/3 5/3 SOL 1 q 2 0 2 1 1 DER 1 ' + BOUND, False),
    ('RTP range 5/3 5/3 SOL 2 q 1 0 5/3 p 2 0 4/3 1 1/3 DER 1 ' + BOUND, False),
    ('RTP range 5/3 5/3 SOL 1 q 1 0 5/3 DER 1 ' + BOUND, False),
    ('RTP range 1 5/3 ' + POINT + 'DER 1 ' + BOUND, False),
    ('RTP range -inf inf ' + POINT + 'DER 1 ' + BOUND, False),
    ('RTP range 5/3 5/3 ' + POINT + 'DER 2 y G 1/3 1 1 1 { lin 2 3 1/3 5 -1/3 } 6 '
     'bound G 5/3 OBJ { lin 2 5 1 6 2 } -1', False),
    ('RTP unbounded ' + POINT + 'RAY 1 r 2 0 -1 1 -1 DER 0', False),
    ('RTP unbounded ' + POINT + 'RAY 1 r 0 DER 0', False),
]


def forge(checkers):
    model = checkers.folder / 'forged.lp'
    model.write_bytes(MODEL)
    problems = []
    for text, holds in PROOFS:
        theirs, ours, said, printed = checkers.judge(model, (HEAD + text).encode())
        if (theirs, ours) != ((0, 0) if holds else (5, 5)):
            problems.append(f'{text}: nuvlp {theirs}, {said.strip()}; script {ours}, {printed.strip()}')
    return problems


def damage(nuvlp, script, models):
    names = ['textbook/wyndor.lp', 'textbook/wyndor_infeasible.lp', 'textbook/wyndor_unbounded.lp',
             'textbook/beale_1955.lp', 'textbook/dantzig_transport.lp', 'infeas/itest2.mps', 'infeas/itest6.mps',
             'written/everything.lp', 'netlib/afiro.mps', 'netlib/sc50a.mps']
    checkers = Checkers(nuvlp, script)
    texts = {}
    for name in names:
        path = checkers.folder / 'written.vipr'
        checkers.solve(models / name, path)
        texts[name] = path.read_bytes()
    tasks, chance = [], random.Random(20)
    for name, text in texts.items():
        others = [other for other in texts.values() if other != text]
        # The first of two steps to a contradiction need not be sharp: it may change and serve still.
        for form in (text,) if b'RTP infeas' in text else (text, rewritten(text)):
            if meaning(form) is None or not meaning(form)[5]:
                raise SystemExit(f'{name}: a certificate without damage means nothing')
            damaged = others + [at_random(form, others, chance) for _ in range(50)]
            damaged += systematic(form) if len(form) < 400 and form is text else []
            tasks.append((nuvlp, script, models / name, form, damaged[::SHARE]))
    with ProcessPoolExecutor() as pool:
        results = list(pool.map(damage_one, tasks))
    problems = forge(checkers) + [problem for found, _, _ in results for problem in found]
    refused, same = (sum(result[k] for result in results) for k in (1, 2))
    print(*problems, sep='\n', end='\n' if problems else '')
    print(f'{refused} damaged certificates refused by both checkers, {same} changes without a meaning left out')
    return 1 if problems or refused * SHARE < 500 else 0


if __name__ == '__main__':
    if sys.version_info < (3, 10):
        print('Skipped: this Python is older than 3.10')
        sys.exit(77)
    modes = {'confirm': confirm, 'damage': damage}
    with tempfile.TemporaryDirectory() as folder:
        # The folders of all processes stand in it, and go with it.
        os.environ['TMPDIR'] = tempfile.tempdir = folder
        status = modes[sys.argv[1]](sys.argv[2], Path(sys.argv[3]), Path(sys.argv[4]))
    sys.exit(status)
