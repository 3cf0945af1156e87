"""smtp_server.py [FAULT [VALUE ...]]: a mail server that takes everything, or goes wrong at one chosen point.

It prints its port, then answers each line of standard input, a JSON list: a fault to begin anew with, or nothing.
The answer is what came in since the last beginning, a line a mail, and the number of connections.
"""
import asyncio
import base64
import email
import email.policy
import json
import logging
import ssl
import subprocess
import sys
import warnings

from aiosmtpd.smtp import SMTP, AuthResult

LOGIN = ("me@example.org".encode(), "pässwört §3cret".encode())


class Case:
    """A fault, and what came in under it."""

    def __init__(self, fault="", *values):
        self.fault, self.values = fault, values
        self.number = int(values[0]) if values and values[0].isdigit() else 0
        self.mails, self.taken, self.connections = [], 0, 0


case = Case(*sys.argv[1:])


def tell(**line):
    print(json.dumps(line), flush=True)


def parsed(content):
    """A mail as Python's e-mail package understands it."""
    message = email.message_from_bytes(content, policy=email.policy.SMTPUTF8)
    body = message.get_body(("html", "plain"))
    bare = content.replace(b"\r\n", b"")
    return {
        "headers": [name for name in message.keys() if not name.startswith("X-")],
        "from": [[a.display_name, a.addr_spec] for a in message["from"].addresses],
        "to": [a.addr_spec for a in message["to"].addresses],
        "cc": [a.addr_spec for a in message["cc"].addresses] if message["cc"] else [],
        "subject": str(message["subject"]),
        "bodyType": body.get_content_type(),
        "body": body.get_content(),
        "attachments": [
            {"name": part.get_filename(), "type": part.get_content_type(),
             "bytes": base64.b64encode(part.get_payload(decode=True)).decode()}
            for part in message.iter_attachments()
        ] if message.is_multipart() else [],
        "defects": [str(d) for part in [*message.walk(), *message.values()] for d in part.defects]
                   + ["long line" for line in content.split(b"\r\n") if len(line) > 998]
                   + ["bare line end" for end in (b"\r", b"\n") if end in bare],
    }


class Faults:
    """What is answered to the commands of a connection."""

    async def handle_EHLO(self, server, session, envelope, hostname, offers):
        session.host_name = hostname
        login = {"odd-login": ["250-AUTH X-ODD"], "none": [], "no-login": []}.get(server.case.fault)
        return offers if login is None else offers[:1] + login + [o for o in offers[1:] if "AUTH" not in o]

    async def handle_MAIL(self, server, session, envelope, address, options):
        case = server.case
        if case.fault == "limit" and server.served == case.number:
            server.loop.call_soon(server.transport.close)
            return "421 too many mails on this connection"
        if case.fault == "rate" and case.taken >= case.number:
            return "451 rate limit, come back later"
        while case.fault == "endless-answer" and not server.transport.is_closing():
            await server.push("250-and so on")
            await asyncio.sleep(0.001)  # the client ends a flood for its size
        if case.fault == "code-at-sender":
            return f"{case.number} no thanks"
        envelope.mail_from = address
        return "250 ok"

    async def handle_RCPT(self, server, session, envelope, address, options):
        if server.case.fault == "hang-at-recipient" and server.case.values[0] in address:
            await asyncio.Event().wait()
        if server.case.fault == "code-at-recipient" and server.case.values[1] in address:
            return f"{server.case.number} nobody here"
        envelope.rcpt_tos.append(address)
        return "250 ok"

    async def handle_DATA(self, server, session, envelope):
        case = server.case
        hangs = case.fault == "close-unanswered" or case.fault == "hang-unanswered" and case.taken >= case.number
        accepted = not hangs and case.fault != "code-after-mail"
        case.mails.append(dict(
            recipients=envelope.rcpt_tos, accepted=accepted, login=session.authenticated,
            encrypted=server.transport.get_extra_info("ssl_object") is not None, **parsed(envelope.content)))
        if case.fault == "close-unanswered":
            server.transport.abort()
        if hangs:
            await asyncio.Event().wait()
        case.taken += accepted
        server.served += accepted
        if case.fault == "close-after" and server.served == case.number:
            server.loop.call_soon(server.transport.close)
        return "250 taken" if accepted else f"{case.number} no thanks"

    async def handle_QUIT(self, server, session, envelope):
        if server.case.fault == "hang-at-quit":
            await asyncio.Event().wait()
        return "221 bye"


class Connection(SMTP):
    def __init__(self):
        self.case, self.served, self.in_data = case, 0, False
        case.connections += 1
        tls = case.fault == "tls"
        super().__init__(
            Faults(), hostname="test", data_size_limit=0, enable_SMTPUTF8=not case.fault.startswith("no"), authenticator=check,
            auth_required=case.fault in ("login", "ssl", "tls"), auth_require_tls=tls,  # it knows no outer SSL
            require_starttls=tls, tls_context=context if tls else None)

    async def push(self, status):
        self.in_data = str(status).startswith("354")
        if self.case.fault != "mute":
            await super().push("421 too busy" if self.case.fault == "busy" else status)
        if self.case.fault == "busy":
            self.transport.close()

    def data_received(self, data):
        if self.in_data and self.case.fault == "stall-in-mail":
            self.transport.pause_reading()
        elif self.in_data and self.case.fault == "close-in-mail":
            self.transport.abort()
        else:
            super().data_received(data)


def check(server, session, envelope, mechanism, data):
    if (data.login, data.password) == LOGIN:
        return AuthResult(success=True)
    # It quotes the login as careless servers do.
    told = base64.b64encode(b"\0" + data.login + b"\0" + data.password).decode()
    return AuthResult(success=False, handled=False,
                      message=f"535 wrong login {told} {data.login.decode()} {data.password.decode()}")


def encryption(folder, host):
    """For a certificate made on the spot, which it leaves as server.pem."""
    pem, key = folder + "/server.pem", folder + "/server.key"
    kind = "IP" if host[0].isdigit() else "DNS"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
         "-days", "2", "-subj", f"/CN={host}", "-addext", f"subjectAltName={kind}:{host}",
         "-keyout", key, "-out", pem], check=True, capture_output=True)
    made = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    made.load_cert_chain(pem, key)
    return made


async def serve():
    global case
    loop = asyncio.get_running_loop()
    server = await loop.create_server(Connection, "127.0.0.1", 0, ssl=context if case.fault == "ssl" else None)
    tell(port=server.sockets[0].getsockname()[1])
    while line := await loop.run_in_executor(None, sys.stdin.readline):
        if fault := json.loads(line):
            case = Case(*fault)
        for mail in case.mails:
            tell(**mail)
        tell(connections=case.connections)


# Failed handshakes are what some tests are about.
logging.disable()
warnings.simplefilter("ignore")
context = encryption(*case.values) if case.fault in ("ssl", "tls") else None
asyncio.run(serve())
