"""One way to do the work of a case."""

from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Optional


@dataclass(frozen=True)
class Way:
    name: str
    command: list
    most: Optional[float] = None  # the target: the program's time as a multiple of this way's
    reads: str = ""
    writes: str = ""
    finish: Callable[[], None] = lambda: None  # not measured
    once: bool = False  # only in the first round, because it takes minutes
    components: Optional[Path] = None  # the folder of the ERP, if it is not the sandbox
