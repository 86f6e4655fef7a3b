"""python -m intake: the program itself, with the same arguments."""

from __future__ import annotations

import os
import sys

from . import _libraries


def main() -> None:
    """Becomes the program intake."""
    program = _libraries.program()
    if program is None:
        sys.exit("there is no program intake beside the libraries or in the PATH")
    os.execv(program, [program, *sys.argv[1:]])


if __name__ == "__main__":
    main()
