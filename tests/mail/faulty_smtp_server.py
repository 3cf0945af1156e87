"""A mail server that goes wrong at one chosen point."""
import asyncio
import base64
import sys

from smtp_records import parsed, record, serve_until_told

fault, *values = sys.argv[1:]
number = int(values[0]) if values else 0
taken = 0  # mails answered with 250, over all connections


class Connection(asyncio.Protocol):
    def connection_made(self, transport):
        self.transport = transport
        self.buffer = b""
        self.in_data = False
        self.in_login = False
        self.served = 0
        self.content = b""
        if fault == "busy":
            self.say("421 too busy")
            transport.close()
        elif fault != "mute":
            self.say("220 test")

    def say(self, *lines):
        self.transport.write("".join(line + "\r\n" for line in lines).encode())

    def data_received(self, data):
        self.buffer += data
        if self.in_data and fault == "stall-in-mail":
            self.transport.pause_reading()
            return
        if self.in_data and fault == "close-in-mail" and len(self.buffer) > 100000:
            self.transport.abort()
            return
        while True:
            end = b"\r\n.\r\n" if self.in_data else b"\r\n"
            at = self.buffer.find(end)
            if at < 0:
                return
            line, self.buffer = self.buffer[:at], self.buffer[at + len(end):]
            if self.in_data:
                self.mail(line + b"\r\n")
            else:
                self.command(line.decode())

    def mail(self, content):
        global taken
        self.in_data = False
        content = content.replace(b"\r\n..", b"\r\n.")
        hangs = fault == "hang-unanswered" and taken >= number
        accepted = fault not in ("close-unanswered", "code-after-mail") and not hangs
        record(recipients=self.recipients, accepted=accepted, **parsed(content))
        if fault == "close-unanswered":
            self.transport.abort()
        elif fault == "code-after-mail":
            self.say(f"{number} no thanks")
        elif not hangs:
            taken += 1
            self.served += 1
            self.say("250 taken")
            if fault == "close-after" and self.served == number:
                self.transport.close()

    def command(self, line):
        verb = line[:4].upper()
        if self.in_login:
            verb = "AUTH"
        if verb == "EHLO":
            offers = {"login-refused": ["AUTH PLAIN LOGIN"], "odd-login": ["AUTH X-ODD"],
                      "no-ehlo": []}.get(fault, [])
            self.say(*["250-" + o for o in ["test"] + offers], "250 SIZE")
        elif verb == "AUTH":
            # It quotes the login as careless servers do.
            told = line.split(" ")[-1]
            if told == "PLAIN":
                self.in_login = True
                self.say("334 ")
                return
            self.in_login = False
            clear = base64.b64decode(told).replace(b"\0", b" ").decode()
            self.say(f"535 wrong login {told} {clear}")
        elif verb == "MAIL":
            self.recipients = []
            if fault == "limit" and self.served == number:
                self.say("421 too many mails on this connection")
                self.transport.close()
            elif fault == "rate" and taken >= number:
                self.say("451 rate limit, come back later")
            elif fault == "code-at-sender":
                self.say(f"{number} no thanks")
            else:
                self.say("250 ok")
        elif verb == "RCPT":
            self.recipients.append(line[8:].split(">")[0].strip("<"))
            refused = fault == "code-at-recipient" and values[1] in line
            self.say(f"{number} nobody here" if refused else "250 ok")
        elif verb == "DATA":
            self.in_data = True
            self.say("354 go on")
        elif verb == "QUIT":
            if fault != "hang-at-quit":
                self.say("221 bye")
                self.transport.close()
        else:
            self.say("502 what?")


asyncio.run(serve_until_told(Connection))
