#!/usr/bin/env python3
"""Compares what the copies on Linux and those through COM left in a folder: rows, calls, messages and failures.

    same_copies.py FOLDER WHAT...       compares all runs so far; WHAT names them in the report
    same_copies.py FOLDER --by-change   has both copy by change from now on, first what changed since the day before yesterday
    same_copies.py FOLDER --employee    prints an employee with a calendar
    same_copies.py FOLDER --calendar    prints a calendar

What differs by nature is replaced before: the moment of a run, and the paths.
"""
import datetime
import glob
import json
import os
import re
import sqlite3
import sys

FOLDER = sys.argv[1]
SIDES = ('linux', 'windows')
DATE = 'java:java.util.Date'
FIELDS = ('year', 'month', 'date', 'hours', 'minutes', 'seconds')
# The clock of the copies that are compared: everything since the folder was made.
BEGIN = datetime.datetime.fromtimestamp(os.stat(f'{FOLDER}/none').st_mtime) - datetime.timedelta(seconds=2)
MOMENT = re.compile(r'\d{4}-\d\d-\d\d \d\d:\d\d:\d\d')


def database(side):
    return sqlite3.connect(f'{FOLDER}/{side}/local.db')


def is_now(moment):
    return BEGIN <= moment <= datetime.datetime.now()


def without_moment(match):
    return 'NOW' if is_now(datetime.datetime.strptime(match.group(), '%Y-%m-%d %H:%M:%S')) else match.group()


def plain(text):
    """A text without what differs by nature."""
    text = text.replace('\\', '/').replace(f'Z:{FOLDER}', FOLDER)
    for side in SIDES:
        text = text.replace(f'{FOLDER}/{side}', f'{FOLDER}/SIDE')
    return MOMENT.sub(without_moment, text)


def plain_value(value):
    if isinstance(value, str):
        return plain(value)
    if isinstance(value, list):
        return [plain_value(one) for one in value]
    if isinstance(value, dict):
        return {key: plain_value(one) for key, one in value.items()}
    return value


def date_field(line, verb):
    """The field of a program's date object that the line sets or gets, or None."""
    member = line.get('member', '').lower()
    return member[3:] if line.get('progid') == DATE and member[:3] == verb else None


def calls(file):
    """The lines of a trace. The program's date objects that were set to the moment of the run say so."""
    lines = [json.loads(line) for line in open(file, encoding='utf-8')]
    dates = {}
    for line in lines:
        if date_field(line, 'set'):
            dates.setdefault(line['object'], {})[date_field(line, 'set')] = line['args'][0]
    now = set()
    for number, fields in dates.items():
        year, month, day, hour, minute, second = (fields[name] for name in FIELDS)
        if is_now(datetime.datetime(year + 1900, month + 1, day, hour, minute, second)):
            now.add(number)
    for line in lines:
        if line.get('object') in now and date_field(line, 'set'):
            line['args'] = ['NOW']
        if line.get('object') in now and date_field(line, 'get'):
            line['result'] = 'NOW'
    return [plain_value(line) for line in lines]


def rows(side):
    with database(side) as connection:
        names = [name for name, in connection.execute("select name from sqlite_master where type = 'table' order by 1")]
        content = {}
        for name in names:
            found = connection.execute(f'select * from {name}').fetchall()
            content[name] = sorted([plain_value(list(row)) for row in found], key=repr)
        return content


def require_same(what, windows, linux):
    if windows == linux:
        return
    print(f'{what} differ:', file=sys.stderr)
    for index, (one, other) in enumerate(zip(windows, linux)):
        if one != other:
            print(f'at {index + 1}\n  through COM: {one}\n  on Linux:    {other}', file=sys.stderr)
            break
    else:
        print(f'through COM {len(windows)}, on Linux {len(linux)}', file=sys.stderr)
    sys.exit(1)


def read(path):
    with open(path, encoding='utf-8') as file:
        return [plain(line) for line in file.read().splitlines()]


def compare(what):
    linux, windows = rows('linux'), rows('windows')
    require_same('the tables', sorted(windows), sorted(linux))
    for table in linux:
        require_same(f'the rows of {table}', windows[table], linux[table])
    filled = [table for table in linux if linux[table]]
    count = 0
    runs = sorted(os.path.basename(path) for path in glob.glob(f'{FOLDER}/linux/*.trace'))
    for run in runs:
        expected = calls(f'{FOLDER}/linux/{run}')
        require_same(f'the calls of run {run}', calls(f'{FOLDER}/windows/{run}'), expected)
        count += len(expected)
    for name in ['board'] + [run.replace('.trace', '.err') for run in runs]:
        require_same(f'the lines of {name}', read(f'{FOLDER}/windows/{name}'), read(f'{FOLDER}/linux/{name}'))
    if len(filled) < 17 or count < 100 * len(runs):
        sys.exit(f'only {len(filled)} tables and {count} calls were compared')
    total = sum(len(found) for found in linux.values())
    print(f'Copies {what}: {len(runs)} runs so far, {total} rows in {len(filled)} tables and {count} calls are the same.')


def by_change():
    since = (datetime.date.today() - datetime.timedelta(days=2)).isoformat() + ' 00:00:00'
    for side in SIDES:
        with database(side) as connection:
            connection.execute('update tstables set syme = 2, lutm = ?', (since,))


def first(query):
    with database('linux') as connection:
        print(connection.execute(query).fetchone()[0])


if sys.argv[2] == '--by-change':
    by_change()
elif sys.argv[2] == '--employee':
    first("select min(emno) from tsmdm140 where ccal <> ''")
elif sys.argv[2] == '--calendar':
    first('select min(ccal) from tcccp030')
else:
    compare(' '.join(sys.argv[2:]))
