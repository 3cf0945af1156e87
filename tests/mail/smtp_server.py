"""A real mail server that takes everything and tells what it got."""
import argparse
import asyncio
import logging
import os
import ssl
import subprocess
import warnings

from aiosmtpd.smtp import SMTP, AuthResult
from smtp_records import parsed, record, serve_until_told


def make_certificate(folder, host):
    pem, key = os.path.join(folder, "server.pem"), os.path.join(folder, "server.key")
    kind = "IP" if host[0].isdigit() else "DNS"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
         "-days", "2", "-subj", f"/CN={host}", "-addext", f"subjectAltName={kind}:{host}",
         "-keyout", key, "-out", pem], check=True, capture_output=True)
    return pem, key


class Recorder:
    async def handle_DATA(self, server, session, envelope):
        record(sender=envelope.mail_from, recipients=envelope.rcpt_tos,
               login=session.authenticated, encrypted=server.transport.get_extra_info("ssl_object") is not None,
               **parsed(envelope.content))
        return "250 taken"


def main():
    # Failed handshakes are what some tests are about.
    logging.disable()
    warnings.simplefilter("ignore")
    options = argparse.ArgumentParser()
    options.add_argument("--security", choices=["none", "ssl", "tls"], default="none")
    options.add_argument("--certificate-host", default="127.0.0.1")
    options.add_argument("--folder")
    options.add_argument("--login")
    options.add_argument("--password")
    arguments = options.parse_args()

    context = None
    if arguments.security != "none":
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*make_certificate(arguments.folder, arguments.certificate_host))

    def check(server, session, envelope, mechanism, data):
        good = (data.login.decode() == arguments.login
                and data.password.decode() == arguments.password)
        return AuthResult(success=good, handled=False)

    def factory():
        return SMTP(
            Recorder(), enable_SMTPUTF8=True, ident="test", data_size_limit=0,
            tls_context=context if arguments.security == "tls" else None,
            require_starttls=arguments.security == "tls",
            auth_required=arguments.login is not None, authenticator=check,
            # An outer SSL is not known to the server's own rule.
            auth_require_tls=arguments.security == "tls")

    asyncio.run(serve_until_told(factory, context if arguments.security == "ssl" else None))


main()
