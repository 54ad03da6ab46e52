"""What a script expects, counted and told where it does not come."""
import sys


class Expectations:
    def __init__(self, script: str) -> None:
        self._script = script
        self.failed = 0

    def __call__(self, what: str, found: object, wanted: object) -> None:
        if found != wanted:
            self.failed += 1
            print(f"{self._script}: {what}: {found!r}, not {wanted!r}", file=sys.stderr)
