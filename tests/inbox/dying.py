"""A process that is killed at a chosen place."""

from __future__ import annotations

import os
import signal
import traceback
from collections.abc import Callable
from typing import Any


def dies_before(step: int, changes: list[tuple[Any, str]], work: Callable[[], object]) -> bool:
    """Does `work` in a process that kills itself before change number `step`, from 0; a change is a call of one of the
    functions in `changes`, each with what holds it and its name there. True when there were fewer."""
    child = os.fork()
    if child == 0:
        left = step

        def counted(change: Callable[..., Any]) -> Callable[..., Any]:
            def call(*given: Any, **named: Any) -> Any:
                nonlocal left
                if left == 0:
                    os.kill(os.getpid(), signal.SIGKILL)
                left -= 1
                return change(*given, **named)
            return call

        for place, name in changes:
            setattr(place, name, counted(getattr(place, name)))
        try:
            work()
        except BaseException:
            traceback.print_exc()
            os._exit(1)
        os._exit(0)
    status = os.waitpid(child, 0)[1]
    assert os.WIFSIGNALED(status) or status == 0, "it failed before it could be killed"
    return status == 0
