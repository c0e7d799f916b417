"""A way to do the work of a case."""

from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Optional


@dataclass(frozen=True)
class Way:
    name: str
    command: list
    most: Optional[float] = None  # what the program may take, as a multiple of this way
    reads: str = ""
    writes: str = ""
    finish: Callable[[], None] = lambda: None  # not measured
    once: bool = False  # in the first round only: it takes minutes
    components: Optional[Path] = None  # the folder of the ERP, where it is not the sandbox
