"""Values as the dump prints them (docs/dump-format.md)."""

from __future__ import annotations

import math
from collections.abc import Iterable
from typing import Any


class Fields(list[tuple[str, Any]]):
    """What is printed as an object. Its keys may come twice."""


_ESCAPES = {code: f"\\u{code:04x}" for code in range(32)} | {ord('"'): '\\"', ord("\\"): "\\\\"}


def text(value: str) -> str:
    return f'"{value.rstrip(" ").translate(_ESCAPES)}"'


def real(value: float) -> str:
    """The shortest form that reads back to the same bits: fixed where that is not longer."""
    if not math.isfinite(value):
        return '"NaN"' if math.isnan(value) else '"Infinity"' if value > 0 else '"-Infinity"'
    shortest = repr(value)
    if 0.001 <= abs(value) < 1e5 or value == 0:
        return shortest
    mantissa, _, exponent = shortest.partition("e")
    sign = "-" if mantissa[0] == "-" else ""
    whole, _, fraction = mantissa.lstrip("-").partition(".")
    power = int(exponent or 0) - len(fraction)
    digits = (whole + fraction).lstrip("0")
    power += len(digits) - len(digits.rstrip("0"))
    digits = digits.rstrip("0")
    leading = power + len(digits) - 1
    point = f".{digits[1:]}" if len(digits) > 1 else ""
    scientific = f"{digits[0]}{point}e{leading:+03d}"
    if power >= 0:
        # All digits of a whole number, which may be more than it takes to read it back.
        fixed, length = f"{abs(value):.0f}.0", len(digits) + power
    elif leading >= 0:
        fixed = digits[: leading + 1] + "." + digits[leading + 1 :]
        length = len(fixed)
    else:
        fixed = "0." + "0" * (-leading - 1) + digits
        length = len(fixed)
    return sign + (fixed if length <= len(scientific) else scientific)


def value(item: Any) -> str:
    if item is None:
        return "null"
    if item is True or item is False:
        return "true" if item else "false"
    if isinstance(item, str):
        return text(item)
    if isinstance(item, int):
        return str(item)
    if isinstance(item, float):
        return real(item)
    if isinstance(item, Fields):
        return object_of(item)
    if isinstance(item, memoryview):
        item = item.tolist()
    return "[" + ",".join(map(value, item)) + "]"


def object_of(fields: Iterable[tuple[str, Any]]) -> str:
    return "{" + ",".join(f"{text(key)}:{value(item)}" for key, item in fields) + "}"
