#!/usr/bin/env python3
"""Every preset treats warnings as errors. A build without a preset does not, so that another compiler's warning does not stop it."""

import json
import sys
from pathlib import Path

SETTING = "QMX_WARNINGS_ARE_ERRORS"
presets = {preset["name"]: preset for preset in json.loads(Path("CMakePresets.json").read_text())["configurePresets"]}


def setting(name):
    own = presets[name].get("cacheVariables", {}).get(SETTING)
    return own if own or "inherits" not in presets[name] else setting(presets[name]["inherits"])


lenient = [name for name in presets if setting(name) != "ON"]
if lenient:
    sys.exit(f"These presets do not set {SETTING}: {', '.join(lenient)}.")
lines = [line.strip() for line in Path("cmake/rooms.cmake").read_text().splitlines()]
places = [number for number, line in enumerate(lines) if "-Werror" in line]
if not places or any(lines[number - 1] != f"if({SETTING})" for number in places):
    sys.exit(f"cmake/rooms.cmake must have -Werror only where {SETTING} is on.")
