"""What two runs called, without what differs by the moment at which they ran."""

import json
import re

MOMENT = re.compile(r"\d{4}-\d{2}-\d{2}( \d{2}:\d{2}:\d{2})?")
DATE_OBJECT = "java:java.util.Date"


def _without_moments(value, since):
    """Moments since then, those of the clock, become one text."""
    if isinstance(value, dict):
        return {name: _without_moments(part, since) for name, part in value.items()}
    if isinstance(value, list):
        return [_without_moments(part, since) for part in value]
    if isinstance(value, str):
        return MOMENT.sub(lambda found: "NOW" if found.group() >= since else found.group(), value)
    return value


def calls(path, since):
    """The lines of a trace. Date objects get the clock's hours and seconds, so only the order of their calls is kept."""
    result = []
    for line in path.read_text(encoding="utf-8").splitlines():
        call = _without_moments(json.loads(line), since)
        if call.get("progid") == DATE_OBJECT and call["op"] == "call":
            call = {"object": call["object"], "member": call["member"], "arguments": len(call["args"])}
        result.append(call)
    return result
