"""What both mail servers of the tests tell: JSON lines on standard output, the port at once and the
mails at the end, so that nobody has to read along."""
import asyncio
import base64
import email
import email.policy
import json
import sys


mails = []


def record(**mail):
    mails.append(mail)


def tell(**line):
    sys.stdout.write(json.dumps(line) + "\n")
    sys.stdout.flush()


def parsed(content):
    """A mail as Python's e-mail package understands it."""
    message = email.message_from_bytes(content, policy=email.policy.SMTPUTF8)
    body = message.get_body(("html", "plain"))
    return {
        "headers": [name for name in message.keys()],
        "from": [[a.display_name, a.addr_spec] for a in message["from"].addresses],
        "to": [a.addr_spec for a in message["to"].addresses],
        "cc": [a.addr_spec for a in message["cc"].addresses] if message["cc"] else [],
        "subject": str(message["subject"]),
        "date": str(message["date"]),
        "id": str(message["message-id"]),
        "bodyType": body.get_content_type(),
        "body": body.get_content(),
        "attachments": [
            {"name": part.get_filename(), "type": part.get_content_type(),
             "bytes": base64.b64encode(part.get_payload(decode=True)).decode()}
            for part in message.iter_attachments()
        ] if message.is_multipart() else [],
        "defects": [str(d) for part in message.walk() for d in part.defects]
                   + [str(d) for value in message.values() for d in value.defects],
        "longestLine": max(len(line) for line in content.split(b"\r\n")),
        "bareLineEnds": content.replace(b"\r\n", b"").count(b"\n") + content.replace(b"\r\n", b"").count(b"\r"),
    }


async def serve_until_told(factory, ssl=None):
    """Serves on a port of the system's choosing until standard input ends."""
    connections = 0

    def counted():
        nonlocal connections
        connections += 1
        return factory()

    loop = asyncio.get_running_loop()
    server = await loop.create_server(counted, "127.0.0.1", 0, ssl=ssl)
    tell(port=server.sockets[0].getsockname()[1])
    await loop.run_in_executor(None, sys.stdin.read)
    for mail in mails:
        tell(**mail)
    tell(connections=connections)
    server.close()
