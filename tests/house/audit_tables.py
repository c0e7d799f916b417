#!/usr/bin/env python3
"""docs/components.md has the audit parameters, columns and getters of each table as the tables' sources have them.

Run from the root of the tree. Prints each row that the page lacks; with --print, all rows."""
import pathlib
import re
import sys

PAGE = pathlib.Path("docs/components.md")
TABLES = 17

# Where the ERP's name of a column is not the local one.
LOCAL_NAMES = {"desc": "dsca", "proc": "prod", "user": "ouser", "mopd": "mpod"}

# What a copy by change asks of the record that it reads once more through the manager, and of no other.
READ_AGAIN = ("kFullRecordField", "kFullRecordFields", "kName")

# What calendars give as bounds that no constant holds.
WORDS = {"dates.from": "first start date", "dates.to": "last start date", "code": "calendar"}


def constants(source):
    """The texts of the string constants, members and columns, by their names."""
    return dict(re.findall(r'(?:constexpr const char\*|const Member|const Column) (k\w+) = "([^"]*)";', source))


def texts(source, items):
    """The literals of a list; constants become their texts."""
    names = constants(source)
    return [names[name] if name else text for text, name in re.findall(r'"([^"]*)"|\b(k\w+)', items)]


def initializer(source, name):
    """What stands between the braces behind "name = "; "" where there is none."""
    found = re.search(r"(?<!\w)" + re.escape(name) + r"(?:\[\])? = \{", source)
    if not found:
        return ""
    depth = 1
    for at in range(found.end(), len(source)):
        depth += {"{": 1, "}": -1}.get(source[at], 0)
        if depth == 0:
            return source[found.end():at]
    raise ValueError(f"{name} has no closing brace")


def groups(items):
    """The groups of a list: {"a", "b"}, {"c"}."""
    return re.findall(r"\{([^{}]*)\}", items) or [items]


def field_maps(source, read_again):
    """Getters by local column."""
    getters = {}
    for name in re.findall(r"const FieldMaps? (k\w+) = ", source):
        if (name in READ_AGAIN) == read_again:
            for group in groups(initializer(source, name)):
                column, getter = texts(source, re.sub(r"Conversion::\w+", "", group))
                getters[column.lower()] = getter
    return getters


def parameters(source):
    """Column, lower and upper bound of each."""
    items = initializer(source, ".parameters")
    if items:
        return [texts(source, group) for group in groups(items)]
    found = []  # calendars set theirs one by one
    for call in re.findall(r"SetAuditParameter\(\w+, ([^;]*)\);", source):
        names = constants(source)
        found.append([item[1:-1] if item[0] == '"' else names.get(item) or WORDS[item]
                      for item in re.findall(r'"[^"]*"|[\w.]+', call)])
    return found


def code(names):
    return ", ".join(f"`{name}`" for name in names) or "none"


def row(source):
    listing = re.search(r"InErp\(\) \{\s*return \{(?:\"(\w+)\"|(k\w+))", source)
    table = listing.group(1) or constants(source)[listing.group(2)]
    keys = [texts(source, group)[1] for group in groups(initializer(source, "kKey") or initializer(source, "kSelectKey"))]
    getters = field_maps(source, read_again=False)
    outputs = texts(source, initializer(source, ".outputFields") or initializer(source, "kOutputFields"))
    answered = [(column, getters[LOCAL_NAMES.get(column, column)]) for column in outputs]
    further = [getter for getter in getters.values() if getter not in keys and getter not in dict(answered).values()]
    bounds = ", ".join(f'`{column}` "{low}" to "{high}"' for column, low, high in parameters(source))
    columns = ", ".join(f"`{column}` `{getter}`" for column, getter in answered)
    again = code(field_maps(source, read_again=True).values())
    return f"| `{table}` | {bounds} | {code(keys)} | {columns} | {code(further)} | {again} |"


def main():
    rows = [row(path.read_text()) for path in sorted(pathlib.Path("copy/tables").glob("*.cpp"))]
    if sys.argv[1:] == ["--print"]:
        print("\n".join(rows))
        return 0
    lines = set(PAGE.read_text().splitlines())
    missing = [text for text in rows if text not in lines]
    for text in missing:
        print(f"{PAGE} does not have this row:\n{text}")
    if len(rows) != TABLES:
        print(f"{len(rows)} tables were found in the sources, not {TABLES}")
    return 1 if missing or len(rows) != TABLES else 0


sys.exit(main())
