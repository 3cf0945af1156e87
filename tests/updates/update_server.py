#!/usr/bin/python3
"""update_server.py CERTIFICATE KEY: an https server, and a plain one beside it, on this machine.

Prints the ports of both and serves until its standard input is closed.
"""

import http.server
import json
import ssl
import sys
import threading


def offer(version, **more):
    return json.dumps({"version": version, **more}).encode()


DOCUMENTS = {
    "/newer": offer("4.10.0", page="https://folivex.example/new", note="Faster.\nSmaller."),
    "/same": offer("4.9.2"),
    "/older": offer("4.9.1"),
    "/not-json": b"<html>Welcome!</html>",
    "/huge": b" " * 70000,
    "/full": offer("4.10.0").ljust(65536),
}


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        plain = f"http://localhost:{plain_server.server_port}/newer"
        redirects = {"/to-plain": plain, "/to-file": "file:///etc/passwd", "/to-newer": "/newer",
                     "/loop": "/loop"}
        if self.path in redirects:
            self.send(302, b"", [("Location", redirects[self.path])])
        elif self.path == "/seen":
            self.send(200, offer("4.10.0", note=str(self.headers)), [("Set-Cookie", "id=1")])
        elif self.path == "/endless":
            self.send_response(200)
            self.send_header("Transfer-Encoding", "chunked")
            self.end_headers()
            while True:
                self.wfile.write(b"1000\r\n" + b" " * 4096 + b"\r\n")
        elif self.path == "/hang":
            threading.Event().wait()
        elif self.path in DOCUMENTS:
            self.send(200, DOCUMENTS[self.path])
        else:
            self.send(404, offer("9.9.9"))

    def send(self, status, body, headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, *_):
        pass  # clients hang up on purpose


def serve(server):
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server


context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[1], sys.argv[2])
plain_server = serve(Server(("127.0.0.1", 0), Handler))
secure_server = Server(("127.0.0.1", 0), Handler)
secure_server.socket = context.wrap_socket(secure_server.socket, server_side=True)
serve(secure_server)
print(secure_server.server_port, plain_server.server_port, flush=True)
sys.stdin.read()
