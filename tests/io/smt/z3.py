#!/usr/bin/env python3
"""z3.py NUVLP MODELS: asks z3, of the textbook models in SMT-LIB as nuvlp has converted them, what nuvlp says
of the models: whether there is a feasible point, whether one has the optimum, and whether one is better. Ends
with 77, which is no failure, where z3 is not installed."""
import json
import re
import shutil
import subprocess
import sys
from pathlib import Path

FAR = '1000000000000000000.0'


def run(*command, text=None):
    return subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout


def smt(fraction):
    parts = [part + '.0' for part in fraction.lstrip('-').split('/')]
    value = parts[0] if len(parts) == 1 else f'(/ {parts[0]} {parts[1]})'
    return f'(- {value})' if fraction.startswith('-') else value


def expected(nuvlp, model, maximise):
    """The verdict, and pairs of an assertion and what z3 is to say of it."""
    report = json.loads(run(nuvlp, 'solve', '--json', model))
    better = '>' if maximise else '<'
    if report['status'] == 'infeasible':
        return 'infeasible', [('true', 'unsat')]
    if report['status'] == 'unbounded':
        far = FAR if maximise else f'(- {FAR})'
        return 'unbounded', [('true', 'sat'), (f'({better} %objective {far})', 'sat')]
    value = smt(report['proof']['objective'])
    return 'optimal', [('true', 'sat'), (f'(= %objective {value})', 'sat'),
                       (f'({better} %objective {value})', 'unsat')]


def main(nuvlp, models):
    if not shutil.which('z3'):
        print('Skipped: there is no z3 (Debian: z3)')
        return 77
    seen, wrong = {}, 0
    for model in sorted(models.glob('textbook/*.lp')) + sorted(models.glob('written/*.lp')):
        text = run(nuvlp, 'convert', '--to', 'smt2', model)
        maximise = re.search(r'(?im)^\s*max', model.read_text()) is not None
        verdict, questions = expected(nuvlp, model, maximise)
        asked = ''.join(f'(push 1)\n(assert {assertion})\n(check-sat)\n(pop 1)\n' for assertion, _ in questions)
        answers = run('z3', '-in', text=text.replace('(check-sat)\n', asked)).split()
        seen[verdict] = seen.get(verdict, 0) + 1
        if answers != [answer for _, answer in questions]:
            wrong += 1
            print(f'{model.name}: {verdict}, but z3 says {answers} to {questions}')
    print(', '.join(f'{count} {verdict}' for verdict, count in seen.items()), f'of which {wrong} are not confirmed' if wrong else 'confirmed by z3')
    return 1 if wrong or len(seen) != 3 else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv[1], Path(sys.argv[2])))
