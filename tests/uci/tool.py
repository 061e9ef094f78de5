"""zar-x3-tools, driven through pipes."""

import signal
import subprocess

from engine import Process, program_path

TOO_BAD = 2  # exit status when the command line or a position is at fault


class Tool(Process):
    def __init__(self, *arguments, **settings):
        super().__init__(program_path("ZAR_X3_TOOLS"), *map(str, arguments), **settings)

    def interrupt(self):
        """What Ctrl-C does."""
        self._child.send_signal(signal.SIGINT)


def run_tool(*arguments, text=None):
    """Output lines, exit status and standard error; the text comes through a pipe, if there is one,
    and without it standard input is the null device."""
    with Tool(*arguments, stdin=subprocess.DEVNULL if text is None else subprocess.PIPE) as tool:
        if text is not None:
            tool.send_text(text)
        return tool.finish()
