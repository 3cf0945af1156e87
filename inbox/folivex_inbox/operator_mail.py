"""Mail to the operator: what the journal has of warnings since the last one."""

from __future__ import annotations

import os
import socket
import subprocess
import time
from email.message import EmailMessage
from pathlib import Path

COLLECT_SECONDS = 10.0


def journal_of(name: str, cursor: Path) -> str:
    """What is new. The cursor file then stands behind it."""
    unit = f"folivex-inbox@{name}.service"
    choose = ["-u", unit] if os.geteuid() == 0 else ["--user", "-u", unit]
    return subprocess.run(
        ["journalctl", *choose, "-q", "-b", "-p", "warning", "-o", "short-iso", f"--cursor-file={cursor}"],
        stdout=subprocess.PIPE, check=True, text=True, errors="replace").stdout


def mail_operator(name: str, operator: str, cursor: Path) -> None:
    """Failures that come in while it collects go into one mail. The cursor moves only when the mail left."""
    systemctl = "systemctl" if os.geteuid() == 0 else "systemctl --user"
    time.sleep(COLLECT_SECONDS)
    while True:
        ahead = cursor.with_suffix(".new")
        ahead.write_bytes(cursor.read_bytes() if cursor.exists() else b"")
        text = journal_of(name, ahead)
        if not text.strip():
            return
        mail = EmailMessage()
        mail["To"] = operator
        mail["Subject"] = f"Inbox {name} on {socket.gethostname()} needs a look"
        mail["Auto-Submitted"] = "auto-generated"
        mail.set_content(
            f"{text}\nWhen the inbox itself cannot work (a setting, a full disk), it is looked after no more until\n"
            f"    {systemctl} reset-failed 'folivex-inbox@{name}.*'\n"
            f"    {systemctl} restart folivex-inbox@{name}.path\n")
        subprocess.run(["/usr/sbin/sendmail", "-oi", "-t"], input=mail.as_bytes(), check=True)
        ahead.replace(cursor)
