"""A mail server that keeps everything it gets."""

import asyncio
import email
import email.policy
import random
import socket
from dataclasses import dataclass

from aiosmtpd.controller import Controller

SLOWNESS = 0.004  # seconds at most for a mail, so that a run can be caught between a mail and its answer


@dataclass(frozen=True)
class Mail:
    job: str  # whose subject it carries
    recipients: tuple
    content: bytes

    def attachments(self):
        message = email.message_from_bytes(self.content, policy=email.policy.SMTPUTF8)
        return [part.get_payload(decode=True) for part in message.iter_attachments()]


class Mailbox:
    def __init__(self):
        self.kept = []
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.port = free.getsockname()[1]
        self.server = Controller(self, hostname="127.0.0.1", port=self.port, data_size_limit=0)
        self.server.start()

    async def handle_DATA(self, server, session, envelope):
        await asyncio.sleep(random.uniform(0, SLOWNESS))
        subject = email.message_from_bytes(envelope.content)["subject"]
        self.kept.append(Mail(str(subject), tuple(envelope.rcpt_tos), envelope.content))
        await asyncio.sleep(random.uniform(0, SLOWNESS))
        return "250 kept"

    def of(self, jobs):
        return [mail for mail in self.kept if mail.job in {job.tag for job in jobs}]

    def close(self):
        self.server.stop()
