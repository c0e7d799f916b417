"""What runs called, wrote and said, without what differs by the moment at which they ran."""

import datetime
import json
import re

MOMENT = re.compile(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d")
DATE_OBJECT = "java:java.util.Date"
FIELDS = ("year", "month", "date", "hours", "minutes", "seconds")


class Clock:
    """The moments since it was made are those of the runs."""

    def __init__(self):
        self.begin = datetime.datetime.now().replace(microsecond=0)

    def _is_now(self, moment):
        return self.begin <= moment <= datetime.datetime.now()

    def _plain_text(self, match):
        return "NOW" if self._is_now(datetime.datetime.strptime(match.group(), "%Y-%m-%d %H:%M:%S")) else match.group()

    def plain(self, value):
        """The value with NOW for each moment of the runs."""
        if isinstance(value, dict):
            return {name: self.plain(part) for name, part in value.items()}
        if isinstance(value, (list, tuple)):
            return [self.plain(part) for part in value]
        return MOMENT.sub(self._plain_text, value) if isinstance(value, str) else value

    def _now_dates(self, lines):
        """The numbers of the date objects that were set to a moment of the runs."""
        fields = {}
        for line in lines:
            if _date_field(line, "set"):
                fields.setdefault(line["object"], {})[_date_field(line, "set")] = line["args"][0]
        result = set()
        for number, found in fields.items():
            year, month, day, hour, minute, second = (found[name] for name in FIELDS)
            if self._is_now(datetime.datetime(year + 1900, month + 1, day, hour, minute, second)):
                result.add(number)
        return result

    def calls(self, path):
        """The lines of a trace."""
        lines = [json.loads(line) for line in path.read_text(encoding="utf-8").splitlines()]
        now = self._now_dates(lines)
        for line in lines:
            if line.get("object") in now and _date_field(line, "set"):
                line["args"] = ["NOW"]
            if line.get("object") in now and _date_field(line, "get"):
                line["result"] = "NOW"
        return self.plain(lines)


def _date_field(line, verb):
    """The field of a program's date object that the line sets or gets, or None."""
    member = line.get("member", "").lower()
    return member[3:] if line.get("progid") == DATE_OBJECT and member.startswith(verb) else None
